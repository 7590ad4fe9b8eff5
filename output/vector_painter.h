#pragma once

// What the painters of documents share: text goes character by character, and one's own glyphs with it, so
// that it stays text.

#include "output/pdf_fonts.h"
#include "platform/canvas.h"

namespace kelvane {

class VectorPainter : public Painter {
 public:
  void DrawLine(Point from, Point to, const Pen& pen) override {
    Path path;
    path.MoveTo(from);
    path.LineTo(to);
    StrokePath(path, pen);
  }

  void DrawText(const ScreenFace& face, float em, std::string_view codes, std::span<const Point> origins,
                ColourValue colour) override {
    const std::int16_t typeface = TypefaceOf(face);
    for (std::size_t i = 0; i < codes.size(); ++i)
      Show({typeface, static_cast<unsigned char>(codes[i]), em, origins[i], colour});
  }

  bool TakeGlyph(const GlyphOnPage& glyph) override {
    Show(glyph);
    return true;
  }

  bool KeepsText() const override { return true; }

 private:
  // A character of any typeface.
  virtual void Show(const GlyphOnPage& glyph) = 0;
};

}  // namespace kelvane
