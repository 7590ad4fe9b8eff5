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
#include "formula/result.h"
#include "platform/canvas.h"

namespace kelvane {

struct FormulaStyle {
  float size = 11;      // points
  bool display = true;  // set off from the text, otherwise within a line of it
  std::int16_t font =
      0;  // typeface of the text around: Helvetica's family sets in Helvetica, others in Times
};

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
