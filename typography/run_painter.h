#pragma once

// Painting of text runs, character by character, as the printed page shows them.

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/canvas.h"
#include "typography/metrics.h"
#include "typography/view.h"

namespace kelvane {

class RunPainter {
 public:
  RunPainter(Painter& to, const View& shown) : painter_(to), view_(shown) {}

  struct Run {
    std::string_view text;
    std::int16_t font = 0;  // one outside 0 to 15 counts as 0
    float size = 0;         // points
    Point origin;           // of the first character, on the baseline, points
    std::int16_t colour = 0;
    float extraSpace = 0;  // points behind each blank
    bool frame = false;    // boxes round glyphs; blanks then get no extra space
  };
  // Returns the pen at the run's end.
  RunPen Paint(const Run& run);

  // One character of code 0 to 255.
  void PaintCharacter(int code, const RunPen& pen, ColourValue colour, bool frame);
  // Characters are held back until those of one face and size can go together: call at the end.
  void Flush();

 private:
  void HoldBack(int code, const RunPen& pen, ColourValue colour);
  void PaintGlyph(int code, const RunPen& pen, ColourValue colour);
  void PaintFrame(int code, const RunPen& pen, ColourValue colour);

  Painter& painter_;
  const View& view_;

  std::int16_t heldFont_ = 0;
  float heldSize_ = 0;
  ColourValue heldColour_ = 0;
  std::string heldCodes_;
  std::vector<Point> heldOrigins_;
  Path path_;  // reused from glyph to glyph
};

// Words beside what is drawn, in one text face: an em of so many pixels, on a painter with so many pixels a
// unit.
void PaintWords(Painter& painter, std::string_view words, std::int16_t font, float em, float scale, Point at,
                ColourValue colour);

}  // namespace kelvane
