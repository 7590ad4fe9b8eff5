#pragma once

// The fonts of a PDF document: which characters it uses, and the fonts that hold just these.

#include <bitset>
#include <cstdint>
#include <string>

#include "output/pdf_file.h"
#include "platform/canvas.h"
#include "typography/typefaces.h"

namespace kelvane {

// The typeface whose font shows a typeface's characters: Symbol those of its slanted form, Math0 those of
// Math3.
std::int16_t FontShowing(std::int16_t typeface);
// The typeface of a screen face.
std::int16_t TypefaceOf(const ScreenFace& face);

class PdfFonts {
 public:
  // The name of a typeface's font in the content of pages. Notes that the character is used; false if the
  // typeface has none of that code.
  static std::string NameOf(std::int16_t typeface);
  bool Use(std::int16_t typeface, int code);
  // The width of a character as the document tells it, ems.
  static double WidthOf(std::int16_t typeface, int code);

  // Writes the fonts, and the dictionary that names them as object `resources`. Returns what the person
  // should be told of fonts that are missing.
  std::string Write(PdfFile& file, int resources) const;

 private:
  std::bitset<256> used_[kTypefaces];  // by the typeface whose font it is
};

}  // namespace kelvane
