#include "platform/mail.h"

#include <string_view>

#include "platform/failure.h"

namespace kelvane {
namespace {

constexpr char kMailProgram[] = "xdg-email";
constexpr char kTransport[] = "sendmail";
// Transports lie where PATH seldom leads.
constexpr const char* kTransportFolders[] = {"/usr/sbin/", "/usr/lib/"};

std::string FindTransport() {
  if (std::string found = FindProgram(kTransport); !found.empty()) return found;
  for (const char* folder : kTransportFolders) {
    std::string path = std::string(folder) + kTransport;
    if (CanRun(path)) return path;
  }
  return {};
}

std::string Base64(std::string_view bytes) {
  static constexpr char kDigits[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string text;
  for (std::size_t i = 0; i < bytes.size(); i += 3) {
    unsigned value = 0;
    for (std::size_t j = 0; j < 3; ++j)
      value = value << 8 | (i + j < bytes.size() ? static_cast<unsigned char>(bytes[i + j]) : 0U);
    for (std::size_t j = 0; j < 4; ++j)
      text += i + j > bytes.size() ? '=' : kDigits[value >> (18 - 6 * j) & 63U];
  }
  return text;
}

bool IsAscii(std::string_view text) {
  for (const char character : text)
    if (static_cast<unsigned char>(character) > 126) return false;
  return true;
}

// A subject as headers have it: other letters than ASCII in encoded words of at most 75 characters.
std::string HeaderText(std::string_view text) {
  if (IsAscii(text)) return std::string(text);
  constexpr std::size_t kBytes = 42;
  std::string header;
  while (!text.empty()) {
    std::size_t end = std::min(kBytes, text.size());
    while (end < text.size() && end > 1 && (static_cast<unsigned char>(text[end]) & 0xC0U) == 0x80U) --end;
    if (!header.empty()) header += "\n ";
    header += "=?UTF-8?B?" + Base64(text.substr(0, end)) + "?=";
    text.remove_prefix(end);
  }
  return header;
}

bool IsAddress(std::string_view text) {
  const std::size_t at = text.find('@');
  return at != std::string_view::npos && at > 0 && at + 1 < text.size() && text.front() != '-' &&
         text.find_first_of(" ,;<>()\"\\") == std::string_view::npos && IsAscii(text) && IsOneLine(text);
}

}  // namespace

void Mail::SignOn() {
  running.reset();
  sending = false;
  path = FindProgram(kMailProgram);
  byProgram = !path.empty();
  if (byProgram) {
    // It has nothing to sign on to, but it must be there and work.
    running = std::make_unique<RunningProgram>(std::vector<std::string>{path, "--version"}, "");
    return;
  }
  path = FindTransport();
  if (path.empty()) throw Failure("There is no mail program: neither xdg-email nor sendmail is installed.");
}

void Mail::Compose(const MailMessage& message) {
  if (!message.from.empty() && !IsAddress(message.from))
    throw Failure("\"" + message.from + "\" is no mail address.");
  if (!IsOneLine(message.subject)) throw Failure("The subject must be one line.");
  input.clear();
  if (byProgram) {
    // The mail program knows the person's address; the one given here is where an answer is wanted.
    const std::string answer = message.from.empty() ? "" : "\n\nAnswer to: " + message.from + "\n";
    arguments = {path, "--utf8"};
    const auto add = [this](const char* option, const std::string& value) {
      // xdg-email refuses an option whose value is empty.
      if (!value.empty()) arguments.insert(arguments.end(), {option, value});
    };
    add("--subject", message.subject);
    add("--body", message.body + answer);
    arguments.push_back(message.to);
    return;
  }
  arguments = {path, "-i", "--", message.to};
  if (!message.from.empty()) input += "From: " + message.from + "\n";
  input +=
      "To: " + message.to + "\nSubject: " + HeaderText(message.subject) +
      "\nMIME-Version: 1.0\nContent-Type: text/plain; charset=utf-8\nContent-Transfer-Encoding: 8bit\n\n" +
      message.body + "\n";
}

void Mail::Send() {
  sending = true;
  running = std::make_unique<RunningProgram>(arguments, input);
}

Mail::Progress Mail::Ask() {
  if (!running) return Progress::Done;
  if (!running->Ended()) return Progress::Working;
  return running->Status() == 0 ? Progress::Done : Progress::Failed;
}

std::string Mail::Error() const {
  std::string text = running ? running->Output() : "";
  text.erase(text.find_last_not_of(" \r\n") + 1);
  if (text.empty() && running)
    text = path + " ended with status " + std::to_string(running->Status()) + " and gave no reason.";
  return text;
}

void Mail::GiveUp() {
  if (running && !(byProgram && sending)) running->Stop();
  running.reset();
}

}  // namespace kelvane
