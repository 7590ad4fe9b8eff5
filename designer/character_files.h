#pragma once

// The definition files of the program's own font: MATH0.PSF, MATH0.WT, MATH0.TXT and the same sections in
// QRX.PRO.

#include <cstdint>
#include <string>
#include <vector>

namespace kelvane {

// The design grid: x to the right, y downwards, one em wide and high.
inline constexpr float kDesignSide = 50;
inline constexpr float kDesignBaseline = 40;

// Fills CharacterDefs from MATH0.PSF. One that is damaged is kept under another name and made anew, from the
// sections of QRX.PRO and the shipped MATH0.ORG. Throws Failure "ERROR: Missing file MATH0.PSF", or
// "ERROR: MATH0.PSF file format" if there is nothing to make it of. First finishes a saving that was cut
// short.
void LoadCharacterDefs();
// Before the width tables are read: makes a MATH0.WT that is too short anew, by the widths of MATH0.PSF.
void MendGlyphWidths();

// The procedure and the width (glyph units) of a glyph drawn as strokes: lines `x0 y0 cx cy x1 y1 ...` in
// design coordinates 0 to 50, y downwards, baseline at 40. Strokes of four or fewer numbers are skipped.
struct GlyphProcedure {
  std::string text;
  float width = 0;
  float bearing = 0;  // from the origin to the leftmost end of a segment, and as much on the right
};
GlyphProcedure BuildGlyph(const std::vector<std::string>& strokes);

// Puts a glyph (code 32 to 127) into the four files and then into memory. The files are checked first; on
// Failure each file is whole, old or new, and memory is as it was.
void SaveGlyph(std::int16_t code, const std::vector<std::string>& strokes);

// The procedure with which a character was shipped, from MATH0.ORG. Throws Failure if there is no such file,
// or it is no font.
std::string ShippedProcedure(std::int16_t code);

}  // namespace kelvane
