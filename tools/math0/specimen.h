#pragma once

// The specimen's second part, made apart from the rest.

#include "tools/math0/specimen_page.h"

namespace kelvane::math0 {

// Formulas in two columns, downwards from the baseline `y` of the first line.
void PutFormulas(Page& page, float y);

}  // namespace kelvane::math0
