#include "typography/renderer.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "document/fields.h"
#include "document/lines.h"
#include "document/numbers.h"
#include "typography/colours.h"
#include "typography/glyphs.h"
#include "typography/metrics.h"
#include "typography/view.h"

namespace kelvane {

std::function<void()> PaintOverlay;

namespace {

// Horizontal lines begin one choice earlier than vertical ones: the start-up grid (3 and 2) shows lines of
// writing without boxing the page in.
constexpr int kFirstHorizontalChoice = 2;
constexpr int kFirstVerticalChoice = 3;
constexpr std::size_t kMostFillPoints = 1000;

void SetTransform() {
  const float width = static_cast<float>(Picture1->PixelWidth()) / SCALE;
  const float height = static_cast<float>(Picture1->PixelHeight()) / SCALE;
  VisibleLeft = STARTX - 0.5F * width;
  VisibleTop = STARTY - 0.5F * height;
  VisibleRight = VisibleLeft + width;
  VisibleBottom = VisibleTop + height;
  Picture1->SetCoordinates(VisibleLeft, VisibleTop, width, height);
}

// Calls draw with each multiple of `spacing` from 0 to `end` that lies within the visible stretch. The index
// is a whole number, so that the lines do not drift.
template <typename Draw>
void ForGrid(int spacing, float end, float visibleFrom, float visibleTo, Draw draw) {
  const double first = std::max(0.0, std::ceil(static_cast<double>(visibleFrom) / spacing));
  const double last =
      std::floor(std::min(static_cast<double>(end), static_cast<double>(visibleTo)) / spacing);
  for (double i = first; i <= last; ++i) draw(static_cast<float>(i * spacing));
}

void PaintGrid() {
  if (SCALE < 1) return;
  const Pen pen{PaletteColour(kCyan), 1, true};
  if (GridStepV >= kFirstHorizontalChoice) {
    ForGrid(2 * GridStepV, PaperHeight, VisibleTop, VisibleBottom, [&](float y) {
      Picture1->DrawLine({0, y}, {PaperWidth, y}, pen);
    });
  }
  if (GridStepH >= kFirstVerticalChoice) {
    ForGrid(2 * GridStepH, PaperWidth, VisibleLeft, VisibleRight, [&](float x) {
      Picture1->DrawLine({x, 0}, {x, PaperHeight}, pen);
    });
  }
}

void PaintGuides() {
  const Pen pen{PaletteColour(kBlue), 1, true};
  for (const float x : GuideX) {
    if (x == 0) break;
    Picture1->DrawLine({x, 0}, {x, PaperHeight}, pen);
  }
  for (const float y : GuideY) {
    if (y == 0) break;
    Picture1->DrawLine({0, y}, {PaperWidth, y}, pen);
  }
}

std::vector<float> RecordNumbers(std::string_view record) {
  std::vector<float> numbers;
  for (const std::string_view token : SplitFields(record, " ")) numbers.push_back(ReadSingle(token));
  return numbers;
}

void StrokeDrawing(const std::vector<float>& n, const LineStyle& style, float penWidth) {
  Point current{n[0], n[1]};
  for (std::size_t i = 2; i + 4 < n.size(); i += 4) {
    DrawCurve(current.x, current.y, n[i], n[i + 1], n[i + 2], n[i + 3], penWidth, style.colour, 1);
    current = {n[i + 2], n[i + 3]};
  }
}

// The path as points, a straight segment as its end alone. Empty when it would pass kMostFillPoints.
std::vector<Point> FlattenDrawing(const std::vector<float>& n) {
  std::vector<Point> points{{n[0], n[1]}};
  for (std::size_t i = 2; i + 4 < n.size(); i += 4) {
    const Point start = points.back();
    const Point control{n[i], n[i + 1]};
    const Point end{n[i + 2], n[i + 3]};
    if (control.x == (start.x + end.x) * 0.5F && control.y == (start.y + end.y) * 0.5F) {
      points.push_back(end);
    } else {
      const CurvePoints curve = FlattenCurve(start, control, end);
      points.insert(points.end(), curve.begin() + 1, curve.end());
    }
    if (points.size() > kMostFillPoints) return {};
  }
  return points;
}

void PaintDrawing(std::string_view record) {
  const std::vector<float> n = RecordNumbers(record);
  if (n.size() < 7) return;
  const LineStyle style = DecodeLineStyle(n.back());
  const bool closed = n[0] == n[n.size() - 3] && n[1] == n[n.size() - 2];
  const std::vector<Point> area = closed ? FlattenDrawing(n) : std::vector<Point>{};
  if (!area.empty()) {
    Picture1->FillPolygon(area, PaletteColour(style.colour));
    return;
  }
  // An area of too many points is shown by its outline, so that the person can see and mend it.
  const float pixels = std::floor(style.width * SCALE);
  StrokeDrawing(n, style, closed || !(pixels > 1) ? 1 : pixels);
}

void PaintDrawings() {
  for (std::string_view rest = DrawingList; !rest.empty();) PaintDrawing(TakeLine(rest));
}

bool NeedsWidth(const TextEntry& entry) {
  return entry.justified || entry.anchor > 3;
}

}  // namespace

void RedrawPage() {
  if (!CanvasIsLaidOut()) return;
  Picture1->SelectLayer(Layer::Page);
  SetTransform();
  Picture1->Clear();
  Picture1->FillBox(0, 0, PaperWidth, PaperHeight, PaletteColour(kWhite));
  PaintGrid();
  PaintGuides();
  PaintDrawings();
  for (std::string_view rest = PageText; !rest.empty();) PaintTextLine(TakeLine(rest));
  if (PaintOverlay) PaintOverlay();
}

void PaintTextLine(std::string_view line) {
  TextEntry entry;
  if (!ParseTextEntry(line, entry)) return;
  const float width = NeedsWidth(entry) ? MeasureRun(entry.text, entry.font, entry.size) : 0;
  const float extra = entry.justified ? JustificationSpace(entry.text, entry.amount, width) : 0;
  const Point at = AlignAtAnchor({entry.x, entry.y}, entry.anchor, width, entry.size);
  JustificationOn = entry.justified;
  PaintRun(extra, entry.text, entry.font, entry.size, at, kBlack, false);
  JustificationOn = false;
}

Point AlignAtAnchor(Point at, int anchor, float width, float size) {
  if (anchor < 1 || anchor > 9) return at;
  // Anchors run round the item: 1 to 3 down its left side, 4 and 8 its middle, 5 to 7 up its right side.
  const bool middle = anchor == 4 || anchor == 8 || anchor == 9;
  const bool right = anchor >= 5 && anchor <= 7;
  const bool top = anchor == 1 || anchor == 7 || anchor == 8;
  const bool centre = anchor == 2 || anchor == 6 || anchor == 9;
  const double dx = right ? 1 : middle ? 0.5 : 0;
  const double dy = top ? 0.6 : centre ? 0.3 : 0;
  return {static_cast<float>(at.x - dx * width), static_cast<float>(at.y + dy * size)};
}

float JustificationSpace(std::string_view text, float amount, float width) {
  const auto blanks = std::count(text.begin(), text.end(), ' ');
  return blanks == 0 ? 0 : (amount - width) / static_cast<float>(blanks);
}

LineStyle DecodeLineStyle(float value) {
  const double colour = std::floor(value * 0.1);
  if (!(std::abs(colour) < 32767)) return {kBlack, 0};
  return {static_cast<std::int16_t>(colour), static_cast<float>(value - 10 * colour)};
}

}  // namespace kelvane
