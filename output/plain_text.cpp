#include "output/plain_text.h"

#include <cstddef>
#include <set>
#include <string_view>

#include "document/fields.h"
#include "document/lines.h"
#include "document/page.h"
#include "output/page_output.h"
#include "platform/files.h"

namespace kelvane {
namespace {

// Text files written since the program started. Nothing inside a text file tells whose it is.
std::set<std::string> writtenTexts;

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
    if (FindRun(line, begin, end)) text += StripHighChars(line.substr(begin, end - begin)) + "\r\n";
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
