#pragma once

// Reading a notation: text in, a tree out, or why not. What it costs grows with the length of the text.

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "formula/result.h"
#include "formula/tree.h"

namespace kelvane::formula {

// Longer ones are no formulas, and would fill more than a page.
inline constexpr int kDeepestNesting = 60;  // groups within groups

struct Reading {
  Tree tree;
  std::vector<std::size_t> empty;  // offsets of the empty places
};

// Throws FormulaError.
Reading ReadNotation(std::string_view notation);

}  // namespace kelvane::formula
