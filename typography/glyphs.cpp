#include "typography/glyphs.h"

#include <string>

#include "platform/failure.h"
#include "typography/colours.h"
#include "typography/run_painter.h"
#include "typography/typefaces.h"

namespace kelvane {

Canvas* DesignerCanvas;
bool JustificationOn;

void ResetGlyphs() {
  for (auto& columns : CharacterDefs) {
    for (std::string& procedure : columns) procedure.clear();
  }
  JustificationOn = false;
}

void DrawChar(int code, std::int16_t font, float size, float& x, float y, std::int16_t colour, bool frame) {
  if (code < 0 || code > 255) throw Failure("There is no character of code " + std::to_string(code) + ".");
  const RunPen pen = PenAt({x, y}, font, size);
  if (Picture1) {
    const View view = CurrentView();
    RunPainter painter(*Picture1, view);
    painter.PaintCharacter(code, pen, PaletteColour(colour), frame);
    painter.Flush();
  }
  x += Advance(code, pen.font, size);
}

void DrawRun(float extraSpace, std::string_view text, std::int16_t font, float size, float& x, float& y,
             std::int16_t colour, bool frame) {
  CurrentFont = font;
  ShowFontLabel(CurrentFont, size);
  if (!Picture1) return;
  const View view = CurrentView();
  const RunPen pen = RunPainter(*Picture1, view)
                         .Paint({text, font, size, {x, y}, colour, JustificationOn ? extraSpace : 0, frame});
  CurrentFont = pen.font;
  ShowFontLabel(CurrentFont, pen.size);
  x = pen.x;
  y = pen.y;
}

void DrawCurve(float x0, float y0, float x1, float y1, float x2, float y2, float lineWidth,
               std::int16_t colour, std::int16_t target) {
  Canvas* canvas = target == 1 ? Picture1 : target == 2 ? DesignerCanvas : nullptr;
  if (!canvas) return;
  const CurvePoints points = FlattenCurve({x0, y0}, {x1, y1}, {x2, y2});
  Path path;
  path.MoveTo(points[0]);
  for (int i = 1; i < kCurvePoints; ++i) path.LineTo(points[i]);
  canvas->StrokePath(path, {PaletteColour(colour), lineWidth});
}

}  // namespace kelvane
