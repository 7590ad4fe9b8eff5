// build_formulas SOURCE DATA: makes the sample paper FORMULAS in the folder DATA from a text of notations.
// Lines of SOURCE: "page" begins one, "title" and "head" are headings, "text" is a line of text, "both" shows
// a notation and beside it what comes of it, anything else is a formula in the middle.

#include <algorithm>
#include <cstdio>
#include <string>

#include "designer/character_files.h"
#include "document/lines.h"
#include "document/page.h"
#include "document/paper.h"
#include "formula/formula.h"
#include "platform/failure.h"
#include "platform/files.h"
#include "typography/metrics.h"

namespace kelvane {
namespace {

constexpr float kMiddle = 297, kLeft = 60, kResult = 330;
constexpr float kTop = 60, kFoot = 800;

class PaperMaker {
 public:
  void Add(std::string_view line) {
    const std::size_t blank = line.find(' ');
    const std::string_view word = line.substr(0, blank);
    const std::string_view rest = blank == line.npos ? std::string_view() : line.substr(blank + 1);
    if (line == "page") {
      Finish();
    } else if (word == "title") {
      Text(rest, 1, 18, kMiddle, 8, 26);
    } else if (word == "head") {
      y_ += 14;
      Text(rest, 1, 11, kLeft, 3, 10);
    } else if (word == "text") {
      Text(rest, 0, 11, kLeft, 3, 14);
    } else if (word == "both") {
      Both(rest);
    } else {
      const Formula formula = Set(line);
      y_ += formula.height + 6;
      Put(formula, kMiddle - formula.width / 2);
      y_ += formula.depth + 8;
    }
    if (y_ > kFoot) throw Failure("A page of formulas is too long at: " + std::string(line));
  }

  void Finish() {
    if (page_.Empty()) return;
    ThePage = page_;
    WritePageSorted(PageFileName(ProgramFolder + "FORMULAS.001", number_++));
    page_ = {};
    y_ = kTop;
  }

 private:
  static Formula Set(std::string_view notation) {
    auto set = SetFormula(notation, {});
    if (const auto* error = std::get_if<FormulaError>(&set))
      throw Failure(std::string(notation) + ": " + error->message);
    return std::get<Formula>(set);
  }

  void Text(std::string_view text, std::int16_t font, float size, float x, int anchor, float down) {
    TextEntry entry;
    entry.x = x;
    entry.y = y_;
    entry.size = size;
    entry.font = font;
    entry.text = text;
    entry.anchor = anchor;
    page_.text += LineOfEntry(entry) + "\r\n";
    y_ += down;
  }

  void Put(const Formula& formula, float x) {
    const Page placed = PageOfFormula(formula, {x, y_});
    page_.text += placed.text;
    page_.drawings += placed.drawings;
    page_.drawingCount = static_cast<std::int16_t>(page_.drawingCount + placed.drawingCount);
  }

  void Both(std::string_view notation) {
    const Formula formula = Set(notation);
    y_ += std::max(formula.height, 7.0F) + 4;
    Text(notation, 9, 8, kLeft, 3, 0);
    Put(formula, kResult);
    y_ += formula.depth + 4;
  }

  Page page_;
  int number_ = 1;
  float y_ = kTop;
};

void Build(const std::string& source) {
  LoadCharacterDefs();
  LoadWidthTables();
  LoadInkBoxes();
  LoadLeans();
  const std::string text = DiskFiles().ReadWhole(BackslashPath(source));
  PaperMaker paper;
  for (std::string_view rest = text; !rest.empty();) {
    const std::string_view line = TakeLine(rest);
    if (!line.empty()) paper.Add(line);
  }
  paper.Finish();
}

}  // namespace
}  // namespace kelvane

int main(int argumentCount, char** arguments) {
  using namespace kelvane;
  if (argumentCount != 3) {
    std::fputs("Usage: build_formulas SOURCE DATA\n", stderr);
    return 2;
  }
  try {
    ProgramFolder = BackslashPath(arguments[2]) + "\\";
    Build(arguments[1]);
  } catch (const Failure& failure) {
    std::fprintf(stderr, "%s\n", failure.what());
    return 1;
  }
  return 0;
}
