#include "output/plain_text.h"

#include <cstddef>
#include <set>
#include <string_view>

#include "document/lines.h"
#include "document/page.h"
#include "output/page_output.h"
#include "platform/characters.h"
#include "platform/files.h"
#include "typography/typefaces.h"

namespace kelvane {
namespace {

// Text files written since the program started. Nothing inside a text file tells whose it is.
std::set<std::string> writtenTexts;

// The run in code page 1252: as it is, but without its codes, and with the letters that a text face has
// elsewhere.
std::string TextOf(std::string_view run, std::int16_t font) {
  constexpr char16_t kDotlessI = 0x131;
  std::string text;
  for (const char c : run) {
    const auto code = static_cast<unsigned char>(c);
    if (code >= kFirstSwitchCode) {
      if (code < kFirstScriptCode) font = static_cast<std::int16_t>(code - kFirstSwitchCode);
      continue;
    }
    const char16_t character = IsTextFace(font) ? UnicodeOfText(code) : u'\0';
    const bool latin = character >= 160 && character < 256;
    text += latin ? static_cast<char>(character) : character == kDotlessI ? 'i' : c;
  }
  return text;
}

std::int16_t FontOf(std::string_view line) {
  TextEntry entry;
  return ParseTextEntry(line, entry) ? entry.font : std::int16_t{0};
}

}  // namespace

void ResetPlainText() {
  writtenTexts.clear();
}

std::string PlainText(const std::string& pageFile) {
  const std::string content = TheFiles->ReadWhole(pageFile);
  std::string_view rest = content;
  std::string text;
  while (!rest.empty()) {
    const std::string_view line = TakeLine(rest);
    std::size_t begin = 0;
    std::size_t end = 0;
    if (FindRun(line, begin, end)) text += TextOf(line.substr(begin, end - begin), FontOf(line)) + "\r\n";
  }
  return text + "\r\n";
}

std::string OutputAsText() {
  PageOutput choice;
  if (!ChoosePageOutput("TXT", "Write Text", choice)) return {};
  const bool ours = writtenTexts.contains(choice.outputPath);
  if (!WriteOutput(choice.outputPath, PlainText(choice.pageFile), ours)) return {};
  writtenTexts.insert(choice.outputPath);
  return choice.outputPath;
}

}  // namespace kelvane
