#pragma once

// The page, or what is selected of it, as a picture: in a file and on the clipboard.

#include <string>

#include "document/page_items.h"
#include "platform/canvas.h"

namespace kelvane {

inline constexpr int kLeastResolution = 72;  // dots per inch
inline constexpr int kMostResolution = 1200;

struct PictureChoice {
  bool selection = false;  // only what is selected, in the size of its ink
  bool svg = false;        // PNG otherwise
  bool transparent = false;
  int resolution = 300;  // of a PNG
};

// Made as chosen last; the clipboard's PNG follows it, too.
extern PictureChoice LastPictureChoice;
void ResetPictures();

// The width and height in pixels that a PNG would have.
struct PictureSize {
  int width = 0;
  int height = 0;
};
PictureSize SizeOfPicture(const PictureChoice& choice);
// Why it cannot be made, empty if it can.
std::string RefusalOfPicture(const PictureChoice& choice);

// What lies in `area` (points) as the content of a PNG file. `missing` is told as by SvgOf. Throws Failure if
// there is no memory for it.
std::string PngOf(const PageItems& items, const Box& area, int resolution, bool transparent,
                  std::string* missing = nullptr);

// Asks for a file and writes the picture there. Returns its path, or nothing if the person cancelled.
// Throws Failure; no part of a file is left.
std::string ExportPicture(const PictureChoice& choice);

// Puts the selection, or the page if nothing is selected, on the clipboard as SVG, PDF and PNG. Returns what
// was copied.
std::string CopyAsPicture();

}  // namespace kelvane
