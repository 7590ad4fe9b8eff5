#include "output/postscript.h"

// A job is the prolog, then for each page its lines with the runs made into PostScript strings and a trailer
// that shows the page, then the byte that ends a job. It is made page by page; the file it goes to takes its
// place when it is complete, so that an output file is never a part of a job.

#include <array>
#include <cstddef>
#include <functional>
#include <string_view>
#include <utility>
#include <vector>

#include "document/fields.h"
#include "document/lines.h"
#include "document/numbers.h"
#include "document/page.h"
#include "document/paper.h"
#include "output/page_output.h"
#include "platform/failure.h"
#include "platform/files.h"
#include "typography/view.h"

namespace kelvane {
namespace {

constexpr std::string_view kLineEnd = "\r\n";
constexpr std::array<std::string_view, 3> kPageTrailer = {"%-------", "\tgsave showpage grestore /FN -1 def",
                                                          "%-------"};
constexpr char kEndOfJob = 4;

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

bool NeedsEscapes(std::string_view run) {
  for (const char special : {'\\', '(', ')'}) {
    if (run.find(special) != std::string_view::npos) return true;
  }
  return false;
}

void AppendPageLine(std::string& part, std::string_view line) {
  std::size_t begin = 0;
  std::size_t end = 0;
  if (FindRun(line, begin, end) && NeedsEscapes(line.substr(begin, end - begin))) {
    part += line.substr(0, begin);
    part += EscapePostScriptString(line.substr(begin, end - begin));
    part += line.substr(end);
  } else {
    part += line;
  }
  part += kLineEnd;
}

// Finds the end of a page in the lines of a job, as the prolog does: the three lines of a trailer, one behind
// the other. On a page they would part it, and print sheets that no page asks for.
class PageEnd {
 public:
  // True if this line completes a trailer.
  bool Passes(std::string_view line) {
    if (line != kPageTrailer[matched]) matched = 0;
    if (line == kPageTrailer[matched]) ++matched;
    if (matched < kPageTrailer.size()) return false;
    matched = 0;
    return true;
  }

 private:
  std::size_t matched = 0;
};

void AddPage(const std::function<void(std::string_view)>& job, const std::string& pageFile,
             PageEnd& pageEnd) {
  const std::string content = TheFiles->ReadWhole(pageFile);
  std::string part;
  part.reserve(content.size() + content.size() / 8);
  for (std::string_view rest = content; !rest.empty();) {
    const std::string_view line = TakeLine(rest);
    if (line.empty()) continue;
    if (pageEnd.Passes(line)) {
      throw Failure("Cannot print the page file " + MachinePath(pageFile) +
                    ": it holds the three lines that end a page in print.");
    }
    AppendPageLine(part, line);
  }
  for (const std::string_view line : kPageTrailer) {
    pageEnd.Passes(line);
    part.append(line).append(kLineEnd);
  }
  job(part);
}

std::string JobOf(const std::vector<std::string>& pageFiles) {
  std::string whole;
  MakeJob([&](std::string_view part) { whole += part; }, pageFiles);
  return whole;
}

std::vector<std::string> PagesOfPaper(const std::string& pageFile) {
  std::vector<std::string> pages;
  for (int number = 1; number <= kLastPage; ++number) {
    std::string page = PageFileName(pageFile, number);
    if (TheFiles->Exists(page)) pages.push_back(std::move(page));
  }
  return pages;
}

// What marks a file as our own output: a PostScript header, which has changed, and the line behind it. The
// header alone begins the output of many programs.
bool IsOwnOutput(const std::string& path) {
  if (!TheFiles->Exists(path)) return false;
  const auto secondLine = [](std::string_view text) {
    const std::string_view header = text.empty() ? text : TakeLine(text);
    return header.starts_with("%!PS") && !text.empty() ? TakeLine(text) : std::string_view();
  };
  const std::string prologue = Prologue();
  const std::string output = TheFiles->ReadWhole(path);
  return !secondLine(prologue).empty() && secondLine(output) == secondLine(prologue);
}

std::string Print(std::vector<std::string> (*pagesFor)(const std::string&)) {
  PageOutput choice;
  if (!ChoosePageOutput("PS", "Print", choice)) return {};
  if (!MayReplace(choice.outputPath, IsOwnOutput(choice.outputPath))) return {};
  SafeFile output(choice.outputPath);
  MakeJob([&](std::string_view part) { output.Append(part); }, pagesFor(choice.pageFile));
  output.PutInPlace();
  return choice.outputPath;
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

void MakeJob(const std::function<void(std::string_view)>& job, const std::vector<std::string>& pageFiles) {
  PageEnd pageEnd;
  job(Prologue());
  for (const std::string& pageFile : pageFiles) AddPage(job, pageFile, pageEnd);
  job({&kEndOfJob, 1});
}

std::string OnePageJob(const std::string& pageFile) {
  return JobOf({pageFile});
}

std::string WholePaperJob(const std::string& pageFile) {
  return JobOf(PagesOfPaper(pageFile));
}

std::string PrintOnePage() {
  return Print([](const std::string& pageFile) { return std::vector<std::string>{pageFile}; });
}

std::string PrintPaper() {
  return Print(PagesOfPaper);
}

}  // namespace kelvane
