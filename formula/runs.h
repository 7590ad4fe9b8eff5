#pragma once

// Runs made of characters in their places: neighbours become one run with typeface switches, script codes and
// fixed spaces wherever their arithmetic comes to the same place.

#include <vector>

#include "formula/layout.h"
#include "formula/result.h"

namespace kelvane::formula {

// The entries of a layout, none of whose ink boxes holds ink of another where that can be helped.
std::vector<FormulaEntry> MakeRuns(const Layout& layout);

}  // namespace kelvane::formula
