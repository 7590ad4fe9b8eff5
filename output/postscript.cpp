#include "output/postscript.h"

// A job is the prolog, then for each page its lines with the runs made into PostScript strings and a trailer
// that shows the page, then the byte that ends a job. It is made in memory and written in one step, so that
// an output file is never a part of a job.

#include <cstddef>
#include <string_view>

#include "document/fields.h"
#include "document/lines.h"
#include "document/numbers.h"
#include "document/page.h"
#include "document/paper.h"
#include "output/page_output.h"
#include "platform/files.h"
#include "typography/view.h"

namespace kelvane {
namespace {

constexpr std::string_view kLineEnd = "\r\n";
constexpr std::string_view kPageTrailer =
    "%-------\r\n"
    "\tgsave showpage grestore /FN -1 def\r\n"
    "%-------\r\n";
constexpr char kEndOfJob = 4;
constexpr int kLastPage = 999;

// The value of a placeholder; empty for a name that is none. The prolog turns the sheet over, y downwards
// from the top, which is why its offset in y is the height of the paper.
std::string PlaceholderValue(std::string_view name) {
  if (name == "tx") return FormatSingle(0);
  if (name == "ty" || name == "ph") return FormatSingle(PaperHeight);
  if (name == "pw") return FormatSingle(PaperWidth);
  return {};
}

// A line of the prolog with `<name>` replaced. Dictionary brackets keep a whole line as it is; what is in
// single brackets and no placeholder may be a hexadecimal string and stays too.
std::string ExpandPlaceholders(std::string_view line) {
  if (line.find("<<") != std::string_view::npos) return std::string(line);
  std::string result;
  for (;;) {
    const std::size_t open = line.find('<');
    const std::size_t close = open == std::string_view::npos ? open : line.find('>', open);
    if (close == std::string_view::npos) return result.append(line);
    const std::string value = PlaceholderValue(line.substr(open + 1, close - open - 1));
    if (value.empty()) {
      result += line.substr(0, close + 1);
    } else {
      result.append(line.substr(0, open)).append(value);
    }
    line.remove_prefix(close + 1);
  }
}

void AppendPageLine(std::string& job, std::string_view line) {
  std::size_t begin = 0;
  std::size_t end = 0;
  if (FindRun(line, begin, end)) {
    job += line.substr(0, begin);
    job += EscapePostScriptString(line.substr(begin, end - begin));
    job += line.substr(end);
  } else {
    job += line;
  }
  job += kLineEnd;
}

void AppendPage(std::string& job, const std::string& pageFile) {
  const std::string content = TheFiles->ReadWhole(pageFile);
  std::string_view rest = content;
  while (!rest.empty()) {
    const std::string_view line = TakeLine(rest);
    if (!line.empty()) AppendPageLine(job, line);
  }
  job += kPageTrailer;
}

// What marks a file as our own output: its first two lines. The first alone begins the output of many
// programs.
std::string_view Heading(std::string_view job) {
  std::string_view rest = job;
  for (int line = 0; line < 2 && !rest.empty(); ++line) TakeLine(rest);
  return job.substr(0, job.size() - rest.size());
}

bool IsOwnOutput(const std::string& path, std::string_view job) {
  const std::string_view heading = Heading(job);
  return !heading.empty() && TheFiles->Exists(path) && TheFiles->ReadWhole(path).starts_with(heading);
}

std::string Print(std::string (*makeJob)(const std::string&)) {
  PageOutput choice;
  if (!ChoosePageOutput("PS", "Print", choice)) return {};
  const std::string job = makeJob(choice.pageFile);
  const bool written = WriteOutput(choice.outputPath, job, IsOwnOutput(choice.outputPath, job));
  return written ? choice.outputPath : std::string();
}

}  // namespace

std::string Prologue() {
  const std::string content = TheFiles->ReadWhole(ProgramFolder + "QRX.PRO");
  std::string_view rest = content;
  std::string prologue;
  while (!rest.empty()) prologue.append(ExpandPlaceholders(TakeLine(rest))).append(kLineEnd);
  return prologue;
}

void WritePrologue(const std::string& outputPath) {
  WriteFileSafely(outputPath, Prologue());
}

std::string OnePageJob(const std::string& pageFile) {
  std::string job = Prologue();
  AppendPage(job, pageFile);
  return job + kEndOfJob;
}

std::string WholePaperJob(const std::string& pageFile) {
  std::string job = Prologue();
  for (int number = 1; number <= kLastPage; ++number) {
    const std::string page = PageFileName(pageFile, number);
    if (TheFiles->Exists(page)) AppendPage(job, page);
  }
  return job + kEndOfJob;
}

std::string PrintOnePage() {
  return Print(OnePageJob);
}

std::string PrintPaper() {
  return Print(WholePaperJob);
}

}  // namespace kelvane
