#pragma once

// Formulas that were placed by their notation, as long as the program runs: what they became, so that their
// notation can be had again. Their items are known by what they are and how they lie, which undo, redo and
// copying leave as it is.

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "document/page.h"
#include "formula/formula.h"

namespace kelvane {

// What the edit is called that places one.
inline constexpr char kPlacingFormula[] = "formula";

struct PlacedFormula {
  std::string notation;
  FormulaStyle style;
  std::int16_t mode = 0;           // the anchor it was placed with, 1 to 9
  Point cursor;                    // the cursor point
  Page page;                       // its entries and drawings as they were placed
  std::vector<std::uint64_t> ids;  // of its items on the page, once it is looked for
};

void ResetPlacedFormulas();
void KeepPlacedFormula(PlacedFormula placed);
// The same for a notation of which that is known which was typed; nothing if it cannot be set.
void KeepPlacedNotation(const std::string& notation, const FormulaStyle& style, std::int16_t mode,
                        Point cursor);

// The formula that an item belongs to, at the place where it is now, the largest if there are several;
// nothing once one of its items was changed otherwise than by moving them all.
std::optional<PlacedFormula> PlacedFormulaOf(std::uint64_t id);

}  // namespace kelvane
