#pragma once

// Formulas by notation: one line of text in, entries and drawings of a page out. This is all that the rest of
// the program sees of the folder; nothing here knows windows, the cursor or the page in memory.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "document/page.h"
#include "platform/canvas.h"

namespace kelvane {

struct FormulaStyle {
  float size = 11;      // points
  bool display = true;  // set off from the text, otherwise within a line of it
  std::int16_t font =
      0;  // typeface of the text around: Helvetica's family sets in Helvetica, others in Times
};

// Why nothing can be set: the bytes of the notation that are meant, and one short sentence without a full
// stop, such as "no closing brace" or "unknown name \foo".
struct FormulaError {
  std::size_t begin = 0;
  std::size_t end = 0;
  std::string message;
};

// A text entry of a formula. All points are relative to the left end of the formula's baseline, y downwards.
struct FormulaEntry {
  std::string run;
  std::int16_t font = 0;
  float size = 0;
  Point at;
  int anchor = 0;
};

// Where a place of the notation is on paper: the baseline point and the size of what stands there.
struct FormulaPlace {
  std::size_t offset = 0;  // byte of the notation
  Point at;
  float size = 0;  // points
};

struct Formula {
  std::vector<FormulaEntry> entries;
  std::vector<Drawing> drawings;
  Box ink;           // of no size without any
  float width = 0;   // to where the line goes on, points
  float height = 0;  // above the baseline
  float depth = 0;   // below it
  // The empty places of the notation, in its order: "\frac{}{}" has them at 6 and 8. Each takes room on
  // paper, half an em, and has no ink.
  std::vector<FormulaPlace> empty;
  // Where each sign of the notation begins, and a last one for its end; in the order of the notation.
  std::vector<FormulaPlace> signs;
};

inline constexpr std::size_t kLongestNotation = 16384;  // bytes

// Sets a notation in UTF-8. What stands round a pasted formula is taken off: dollar signs, \[ \] and \( \),
// the environments of displayed equations, comments, numbers and labels.
std::variant<Formula, FormulaError> SetFormula(std::string_view notation, const FormulaStyle& style);

// The formula with its baseline's left end at a point, as lines and records of a page: what is put on a page,
// and through PageItems what is drawn before that.
Page PageOfFormula(const Formula& formula, Point at);

// Where a caret before that byte of the notation goes.
FormulaPlace CaretOfFormula(const Formula& formula, std::size_t offset);

// A notation that ends in the middle with what is open there closed and what is missing empty, so that it can
// be shown while it is typed.
std::string CompletedNotation(std::string_view notation);

// Names of the notation that are no signs of the table, as they are typed with their empty places:
// "\frac{}{}", "\begin{pmatrix}\end{pmatrix}", "\sin". Those whose name begins so, without the backslash.
std::vector<std::string> FormulaNames(std::string_view beginning);

}  // namespace kelvane
