#include "tools/math0/font_files.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "designer/character_files.h"
#include "document/lines.h"
#include "platform/failure.h"
#include "platform/files.h"
#include "tools/math0/glyphs.h"
#include "typography/glyphs.h"
#include "typography/typefaces.h"

namespace kelvane::math0 {
namespace {

constexpr float kWidthUnit = 0.6F;  // widths are in ems, and an advance is 0.6 of width over divisor

// The line with its first field, the glyph's name, replaced.
std::string Named(const Glyph& glyph, std::string_view line) {
  return '/' + std::string(glyph.name) + std::string(line.substr(line.find(' ')));
}

// Puts the names of the 96 glyphs into the lines that follow each of the three .notdef lines.
void NameSections(const std::string& path, const std::vector<Glyph>& glyphs) {
  const std::string content = TheFiles->ReadWhole(path);
  std::string_view rest = content;
  std::string named;
  std::size_t next = glyphs.size();
  int section = 0;
  while (!rest.empty()) {
    const std::string_view line = TakeLine(rest);
    const bool inSection = next < glyphs.size();
    named += inSection ? Named(glyphs[next++], line) : std::string(line);
    named += "\r\n";
    if (!inSection && line.starts_with("/.notdef") && section < 3) {
      ++section;
      next = 0;
    }
  }
  WriteFileSafely(path, named);
}

void ClearWidths() {
  ResetTypefaces();
  TypefaceTable[kFirstGlyphFont].WidthUnit = kWidthUnit;
  std::string text;
  for (int i = 0; i < kGlyphs; ++i) text += "0.000000\r\n";
  WriteFileSafely(ProgramFolder + "MATH0.TXT", text);
}

}  // namespace

void BuildFontFiles() {
  const std::vector<Glyph> glyphs = AllGlyphs();
  if (glyphs.size() != static_cast<std::size_t>(kGlyphs)) throw Failure("Math0 wants 96 characters.");
  for (const char* name : {"MATH0.PSF", "QRX.PRO"}) NameSections(ProgramFolder + name, glyphs);
  ClearWidths();
  for (const Glyph& glyph : glyphs) SaveGlyph(glyph.key, Strokes(glyph));
}

}  // namespace kelvane::math0
