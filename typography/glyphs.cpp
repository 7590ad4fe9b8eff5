#include "typography/glyphs.h"

#include <cmath>
#include <vector>

#include "platform/failure.h"
#include "typography/colours.h"
#include "typography/glyph_procedures.h"
#include "typography/typefaces.h"
#include "typography/view.h"

namespace kelvane {

std::string CharacterDefs[kGlyphs][4];
Canvas* Picture1;
Canvas* DesignerCanvas;
bool JustificationOn;

namespace {

// The canvas font size of a typeface is its screen size factor times this times the size and the scale, and
// the canvas's resolution factor over 15. The factor is calibrated so that the em on the canvas is exactly
// size * SCALE pixels: outlines on screen and on paper are then the same ones.
constexpr double kCanvasFont = 0.6 * 1.2;
double ResolutionFactor(const TypefaceRecord& face) {
  return 15 / (kCanvasFont * face.ScreenSizeFactor);
}

float CanvasFontSize(const TypefaceRecord& face, float size) {
  return static_cast<float>(face.ScreenSizeFactor * kCanvasFont * size * SCALE / 15 * ResolutionFactor(face));
}

// The canvas takes baselines; its cells are calibrated to begin AscentFactor ems above them.
float CanvasBaseline(const TypefaceRecord& face, float size, float y) {
  const double top = y - static_cast<double>(face.AscentFactor) * size;
  return static_cast<float>(top + static_cast<double>(face.AscentFactor) * size);
}

// Characters of one text face and size that follow each other go to the canvas together.
struct Stretch {
  std::int16_t font = 0;
  float size = 0;
  ColourValue colour = 0;
  std::string codes;
  std::vector<Point> origins;

  void Add(int code, std::int16_t nextFont, float nextSize, Point origin, ColourValue nextColour) {
    if (nextFont != font || nextSize != size || nextColour != colour) Flush();
    font = nextFont;
    size = nextSize;
    colour = nextColour;
    codes.push_back(static_cast<char>(code));
    origins.push_back(origin);
  }
  void Flush() {
    if (!codes.empty() && Picture1) {
      Picture1->DrawText(kTypefaceNames[font].screen, CanvasFontSize(TypefaceTable[font], size), codes,
                         origins, colour);
    }
    codes.clear();
    origins.clear();
  }
};
Stretch OpenStretch;

// Procedures are executed once and drawn many times; the text they came from tells when to execute anew.
struct DrawnGlyph {
  std::string procedure;
  std::vector<GlyphPiece> pieces;
};
DrawnGlyph DrawnGlyphs[kGlyphs][3];

const std::vector<GlyphPiece>& Pieces(int glyph, int column) {
  DrawnGlyph& drawn = DrawnGlyphs[glyph][column];
  if (drawn.procedure != CharacterDefs[glyph][column]) {
    drawn.procedure = CharacterDefs[glyph][column];
    drawn.pieces = ExecuteGlyph(drawn.procedure);
  }
  return drawn.pieces;
}

void DrawPiece(const GlyphPiece& piece, Point origin, float unit, const Pen& pen) {
  CurvePoints points;
  const auto place = [&](int i) {
    points[i] = {origin.x + piece.points[i].x * unit, origin.y - piece.points[i].y * unit};
  };
  switch (piece.kind) {
    case GlyphPiece::Kind::Line:
      place(0);
      place(1);
      Picture1->DrawLine(points[0], points[1], pen);
      break;
    case GlyphPiece::Kind::Curve:
      for (int i = 0; i < kCurvePoints; ++i) place(i);
      Picture1->DrawPolyline(points, pen);
      break;
    case GlyphPiece::Kind::Circle:
      place(0);
      Picture1->DrawCircle(points[0], std::abs(piece.radius * unit), pen);
      break;
  }
}

void DrawFrame(int code, const TypefaceRecord& face, float size, Point origin, const Pen& pen) {
  const float right = origin.x + face.Widths[static_cast<std::size_t>(code)] * size;
  const float bottom = static_cast<float>(origin.y + 0.2 * size);
  const float top = static_cast<float>(origin.y - 0.8 * size);
  const Point corners[] = {
      {origin.x, bottom}, {right, bottom}, {right, top}, {origin.x, top}, {origin.x, bottom}};
  Picture1->DrawPolyline(corners, pen);
}

void DrawGlyph(int code, std::int16_t font, float size, Point origin, ColourValue colour, bool frame) {
  if (!Picture1) return;
  const Pen pen{colour, 1};
  if (code >= kFirstGlyph && code < kFirstGlyph + kGlyphs) {
    // Math3 shows the glyphs of Math0: pages of old papers use it as a second name for them.
    for (const GlyphPiece& piece : Pieces(code - kFirstGlyph, font % 3)) {
      DrawPiece(piece, origin, kGlyphUnit * size, pen);
    }
  }
  if (frame) DrawFrame(code, TypefaceTable[font], size, origin, pen);
}

// One character of a run. Text characters are left in the open stretch.
void PlaceChar(int code, std::int16_t font, float size, float& x, float y, ColourValue colour, bool frame) {
  if (font < kFirstGlyphFont) {
    OpenStretch.Add(code, font, size, {x, CanvasBaseline(TypefaceTable[font], size, y)}, colour);
  } else {
    OpenStretch.Flush();
    DrawGlyph(code, font, size, {x, y}, colour, frame);
  }
  x += Advance(code, font, size);
}

}  // namespace

bool CanvasIsLaidOut() {
  return Picture1 && Picture1->PixelWidth() > 0 && Picture1->PixelHeight() > 0;
}

void ResetGlyphs() {
  for (auto& columns : CharacterDefs) {
    for (std::string& procedure : columns) procedure.clear();
  }
  JustificationOn = false;
}

void DrawChar(int code, std::int16_t font, float size, float& x, float y, std::int16_t colour, bool frame) {
  if (code < 0 || code > 255) throw Failure("There is no character of code " + std::to_string(code) + ".");
  PlaceChar(code, IsTypeface(font) ? font : std::int16_t{0}, size, x, y, PaletteColour(colour), frame);
  OpenStretch.Flush();
}

RunPen PaintRun(float extraSpace, std::string_view text, std::int16_t font, float size, Point at,
                std::int16_t colour, bool frame) {
  RunPen pen;
  pen.font = IsTypeface(font) ? font : std::int16_t{0};
  pen.size = size;
  pen.x = at.x;
  pen.y = at.y;
  const ColourValue value = PaletteColour(colour);
  for (const char c : text) {
    const int code = static_cast<unsigned char>(c);
    if (code >= kFirstSwitchCode) {
      ApplyRunCode(pen, code);
      continue;
    }
    PlaceChar(code, pen.font, pen.size, pen.x, pen.y, value, frame);
    if (c == ' ' && !frame && JustificationOn) pen.x += extraSpace;
  }
  OpenStretch.Flush();
  return pen;
}

void DrawRun(float extraSpace, std::string_view text, std::int16_t font, float size, float& x, float& y,
             std::int16_t colour, bool frame) {
  CurrentFont = font;
  ShowFontLabel(CurrentFont, size);
  const RunPen pen = PaintRun(extraSpace, text, font, size, {x, y}, colour, frame);
  CurrentFont = pen.font;
  ShowFontLabel(CurrentFont, pen.size);
  x = pen.x;
  y = pen.y;
}

CurvePoints FlattenCurve(Point start, Point control, Point end) {
  constexpr int kLevels = 4;
  struct Cubic {
    int level;
    Point p[4];
  };
  const auto towards = [](Point from, Point to) {
    return Point{static_cast<float>(from.x + kCurveFactor * (to.x - from.x)),
                 static_cast<float>(from.y + kCurveFactor * (to.y - from.y))};
  };
  const auto middle = [](Point a, Point b) { return Point{(a.x + b.x) * 0.5F, (a.y + b.y) * 0.5F}; };

  CurvePoints points;
  points[0] = start;
  int count = 1;
  Cubic pending[kLevels + 1];
  int depth = 0;
  pending[depth++] = {0, {start, towards(start, control), towards(end, control), end}};
  while (depth > 0) {
    const Cubic c = pending[--depth];
    if (c.level == kLevels) {
      points[count++] = c.p[3];
      continue;
    }
    const Point ab = middle(c.p[0], c.p[1]);
    const Point bc = middle(c.p[1], c.p[2]);
    const Point cd = middle(c.p[2], c.p[3]);
    const Point abc = middle(ab, bc);
    const Point bcd = middle(bc, cd);
    const Point split = middle(abc, bcd);
    pending[depth++] = {c.level + 1, {split, bcd, cd, c.p[3]}};
    pending[depth++] = {c.level + 1, {c.p[0], ab, abc, split}};
  }
  return points;
}

void DrawCurve(float x0, float y0, float x1, float y1, float x2, float y2, float lineWidth,
               std::int16_t colour, std::int16_t target) {
  Canvas* canvas = target == 1 ? Picture1 : target == 2 ? DesignerCanvas : nullptr;
  if (!canvas) return;
  canvas->DrawPolyline(FlattenCurve({x0, y0}, {x1, y1}, {x2, y2}), Pen{PaletteColour(colour), lineWidth});
}

}  // namespace kelvane
