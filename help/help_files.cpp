#include "help/help_files.h"

#include <cstddef>
#include <string>
#include <string_view>

#include "document/fields.h"
#include "document/lines.h"
#include "platform/controls.h"
#include "platform/failure.h"
#include "platform/files.h"

namespace kelvane {

std::vector<std::int64_t> HelpPageStarts;

namespace {

constexpr int kContentsLevels = 5;
constexpr int kIndexLevels = 6;
// The list shows an index line from its start; the page behind these blanks is out of sight.
constexpr std::size_t kIndexGap = 80;

// Tags are known in any letter case: lines are searched in capitals.
bool StartsPage(std::string_view upperLine) {
  return upperLine.find("<PAGE>") != std::string_view::npos;
}

std::vector<std::int64_t> FindPages(std::string_view help) {
  std::vector<std::int64_t> starts;
  std::string_view rest = help;
  while (!rest.empty()) {
    const std::size_t position = help.size() - rest.size();
    const std::string_view line = TakeLine(rest);
    if (line.find('<') == line.npos || !StartsPage(UpperCase(line))) continue;
    if (starts.size() == kMostHelpPages) {
      throw Failure("ERROR: QRX.HLP has more than " + std::to_string(kMostHelpPages) + " pages");
    }
    starts.push_back(static_cast<std::int64_t>(position));
  }
  return starts;
}

// A heading within its line; the views point into the line.
struct Heading {
  std::string_view before;  // up to and including the digit of the opening tag
  std::string_view text;
  std::string_view after;  // from the ">" of the opening tag on
};

bool FindHeading(std::string_view line, std::string_view upperLine, int level, Heading& heading) {
  const std::string digit = std::to_string(level);
  const std::string openingTag = "<H" + digit + ">";
  const std::size_t opening = upperLine.find(openingTag);
  const std::size_t closing = upperLine.find("</H" + digit + ">");
  if (opening == std::string_view::npos || closing == std::string_view::npos) return false;
  const std::size_t textStart = opening + openingTag.size();
  if (closing <= textStart) return false;
  heading = {line.substr(0, textStart - 1), line.substr(textStart, closing - textStart),
             line.substr(textStart - 1)};
  return true;
}

std::string ContentsLine(const Heading& heading, int page) {
  return std::string(heading.before) + " #" + std::to_string(page) + std::string(heading.after) + "\r\n";
}

std::string IndexLine(const Heading& heading, int page) {
  return std::string(heading.text) + std::string(kIndexGap, ' ') + "<#" + std::to_string(page) + ">\r\n";
}

// One line for each heading of levels 1 to `levels`, in file order.
std::string ListHeadings(std::string_view help, int levels, std::string (*makeLine)(const Heading&, int)) {
  std::string list;
  int page = 0;
  while (!help.empty()) {
    const std::string_view line = TakeLine(help);
    const std::string upperLine = UpperCase(line);
    if (StartsPage(upperLine)) ++page;
    Heading heading;
    for (int level = 1; level <= levels; ++level) {
      if (FindHeading(line, upperLine, level, heading)) list += makeLine(heading, page);
    }
  }
  return list;
}

}  // namespace

std::string ContentsOfHelp(std::string_view help) {
  return ListHeadings(help, kContentsLevels, ContentsLine);
}

std::string IndexOfHelp(std::string_view help) {
  return ListHeadings(help, kIndexLevels, IndexLine);
}

void IndexHelpFile() {
  const std::string path = ProgramFolder + "QRX.HLP";
  if (!TheFiles->Exists(path)) throw Failure("ERROR: Missing file QRX.HLP");
  const std::string help = TheFiles->ReadWhole(path);
  HelpPageStarts = FindPages(help);

  const std::string contents = ProgramFolder + "QRX.HCT";
  const std::string index = ProgramFolder + "QRX.HIX";
  try {
    if (!TheFiles->Exists(contents)) {
      WriteFileSafely(contents, ContentsOfHelp(help));
    }
    if (!TheFiles->Exists(index)) WriteFileSafely(index, IndexOfHelp(help));
  } catch (const Failure& failure) {
    // The program folder may be one that the person cannot write to. The editor works without the two lists,
    // so this must not end the start of the program.
    TheDialogs->Message(std::string("The help has no contents or index: ") + failure.what());
  }
}

}  // namespace kelvane
