#pragma once

// The reduced PostScript of glyph procedures, executed into pieces in glyph units.

#include <string>
#include <vector>

#include "typography/glyphs.h"

namespace kelvane {

struct GlyphPiece {
  enum class Kind { Line, Curve, Circle };
  Kind kind = Kind::Line;
  CurvePoints points;  // glyph units, y upwards; Line uses the first two, Circle the first as its centre
  float radius = 0;
};

// Executes a procedure. It stops at a 21st operand or at an operator that finds too few; the pieces drawn
// before that stand.
std::vector<GlyphPiece> ExecuteGlyph(const std::string& procedure);

}  // namespace kelvane
