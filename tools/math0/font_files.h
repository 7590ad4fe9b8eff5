#pragma once

// Makes the font's shipped files from the drawings.

namespace kelvane::math0 {

// Makes MATH0.PSF, MATH0.WT, MATH0.TXT and the font's sections of QRX.PRO in the program folder anew: the
// names into the sections of the two PostScript files, then every glyph by the designer's own saving. Widths
// and outlines of the folder's old files do not matter, only the text round their sections. Leaves the glyphs
// in memory. Throws Failure.
void BuildFontFiles();

// Writes SPECIMEN.001 and the pages after it into the program folder: every character with its key, code and
// name, then joined pieces and formulas.
void BuildSpecimen();

}  // namespace kelvane::math0
