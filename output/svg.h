#pragma once

// A page, or a part of it, as an SVG picture: text as text, the signs of the program's own font as shapes.

#include <string>

#include "document/page_items.h"
#include "platform/canvas.h"

namespace kelvane {

// What lies in `area` (points) as a picture of that size, on white or on nothing. `missing` is told which
// typefaces have no font on this machine, as PdfDocument::Finish tells it.
std::string SvgOf(const PageItems& items, const Box& area, bool white, std::string* missing = nullptr);

}  // namespace kelvane
