#include "designer/design_grid.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>

#include "designer/character_files.h"
#include "designer/grid_painting.h"
#include "typography/curves.h"
#include "typography/glyphs.h"

namespace kelvane {

StrokeEditor Design;
bool DrawTool = false;
bool QuarterSteps = false;
BackgroundCharacter Background;
std::function<void()> DesignChanged;
std::function<void()> PenMoved;

namespace {

constexpr float kMargin = 4;  // shown round the grid and round the glyph, design units

// Pixels.
constexpr float kReach = 7;  // how near the mouse must come to a point
constexpr float kStill = 2;  // what it moves by being clicked
constexpr float kLeastUnit = 2;
constexpr float kMostUnit = 80;
constexpr float kWheelPixels = 48;
constexpr float kWheelZoom = 1.15F;

// The middle of the canvas, and pixels for a unit.
Point Middle{25, 25};
float Unit = 8;
bool Fitted = true;  // the view follows the size of the canvas

Point PenPoint{25, kDesignBaseline};

// What the mouse does while a button is down.
enum class Press { None, Bend, Points, Segment, Rubber, Pan };
struct Held {
  Press press = Press::None;
  Point from;             // where it was pressed
  Point grabbed;          // the point it took hold of
  PointPlace place;       // of that point, or of the segment's control point
  PointSelection before;  // what was selected
  bool moved = false;
  Point to;  // the rubber's other corner
};
Held Mouse;

float Step() {
  return QuarterSteps ? 0.25F : 1;
}

Point Snap(Point at) {
  const float steps = 1 / Step();
  return {std::round(at.x * steps) / steps, std::round(at.y * steps) / steps};
}

float Reach() {
  return kReach / Unit;
}

Point Minus(Point a, Point b) {
  return {a.x - b.x, a.y - b.y};
}

void PlaceView() {
  if (!DesignerCanvas || DesignerCanvas->PixelWidth() <= 0 || DesignerCanvas->PixelHeight() <= 0) return;
  const float width = static_cast<float>(DesignerCanvas->PixelWidth()) / Unit;
  const float height = static_cast<float>(DesignerCanvas->PixelHeight()) / Unit;
  DesignerCanvas->SetCoordinates(Middle.x - width / 2, Middle.y - height / 2, width, height);
  DesignerCanvas->Invalidate(Layer::Page);
  DesignerCanvas->Invalidate(Layer::Overlay);
}

void MovePen(Point to) {
  if (to == PenPoint) return;
  PenPoint = to;
  DesignerCanvas->Invalidate(Layer::Overlay);
  if (PenMoved) PenMoved();
}

void PaintDesignLayer(Layer layer, const Box& area) {
  if (layer == Layer::Page) {
    PaintDesign(*DesignerCanvas, Design, Background, Unit, area);
    return;
  }
  if (Mouse.press == Press::Rubber && Mouse.moved)
    PaintRubber(*DesignerCanvas, BoxBetween(Mouse.from, Mouse.to));
  if (!DrawTool) return;
  PaintPen(*DesignerCanvas, PenPoint, kReach / Unit);
  if (Design.Drawing() && Mouse.press == Press::None)
    PaintNextSegment(*DesignerCanvas, Design.Strokes().back().back(), PenPoint);
}

// ---- Mouse ----

void PressDraw(Point at) {
  Point place = Snap(at);
  // Near its start a stroke is closed, whatever the grid.
  if (Design.Drawing()) {
    const Point start = Design.Strokes().back().front();
    if (Design.Strokes().back().size() > 1 && std::hypot(start.x - at.x, start.y - at.y) <= Reach())
      place = start;
  }
  Design.Draw(place);
  PenPoint = place;
  Mouse = {Press::Bend, place, place, {}, {}, false, place};
}

void PressSelect(Point at, bool shift) {
  Mouse = {Press::Rubber, at, at, {}, Design.Selection(), false, at};
  const GlyphStrokes& strokes = Design.Strokes();
  if (const auto point = PointNear(strokes, at, Reach())) {
    if (shift) {
      Design.Toggle({*point});
      Mouse.press = Press::None;
      return;
    }
    if (!Design.Selection().contains(*point)) Design.Select({*point});
    Mouse.press = Press::Points;
    Mouse.place = *point;
    Mouse.grabbed = strokes[point->stroke][point->point];
  } else if (const auto segment = SegmentNear(strokes, at, Reach())) {
    const PointSelection whole = PointsOfStroke(strokes, segment->stroke);
    if (shift) {
      Design.Toggle(whole);
      Mouse.press = Press::None;
      return;
    }
    const bool selected = std::ranges::includes(Design.Selection(), whole);
    Mouse.press = selected ? Press::Points : Press::Segment;
    Mouse.place = *segment;
    Mouse.grabbed = selected ? Snap(at) : strokes[segment->stroke][segment->point];
  } else if (!shift) {
    Design.Select({});
    Mouse.before.clear();
  }
  Design.BeginDrag();
}

void MouseDown(const MouseEvent& event) {
  const Point at{event.x, event.y};
  if (event.button == MouseButton::Middle) {
    Mouse = {Press::Pan, {event.pixelX, event.pixelY}, Middle, {}, {}, false, at};
    return;
  }
  DesignerCanvas->Focus();
  if (event.button == MouseButton::Right) {
    Design.EndDrawing();
  } else if (DrawTool) {
    PressDraw(at);
  } else {
    PressSelect(at, event.shift);
  }
  ShowDesign();
}

// The mouse pulls the middle of a curve, and its control point goes further than that.
Point PulledControl(Point at) {
  constexpr float kPull = static_cast<float>(1 / (0.75 * kCurveFactor));
  return Snap(
      {Mouse.grabbed.x + kPull * (at.x - Mouse.from.x), Mouse.grabbed.y + kPull * (at.y - Mouse.from.y)});
}

bool Still(Point at) {
  return !Mouse.moved && std::hypot(at.x - Mouse.from.x, at.y - Mouse.from.y) <= kStill / Unit;
}

void Drag(Point at) {
  const Point place = Snap(at);
  switch (Mouse.press) {
    case Press::Bend:
      if (!Mouse.moved && place == Mouse.from) return;
      Design.BendDrawn(place);
      break;
    case Press::Points:
      // A point off the grid stays there until the mouse has gone somewhere.
      if (Still(at)) return;
      Design.DragSelection(Minus(place, Mouse.grabbed));
      break;
    case Press::Segment:
      if (Still(at)) return;
      Design.DragPoint(Mouse.place, PulledControl(at));
      break;
    case Press::Rubber: {
      Mouse.to = at;
      PointSelection points = PointsIn(Design.Strokes(), BoxBetween(Mouse.from, at));
      points.insert(Mouse.before.begin(), Mouse.before.end());
      Design.Select(std::move(points));
      break;
    }
    default:
      return;
  }
  Mouse.moved = true;
  ShowDesign();
}

void MouseMove(const MouseEvent& event) {
  if (Mouse.press == Press::Pan) {
    Fitted = false;
    Middle = {Mouse.grabbed.x - (event.pixelX - Mouse.from.x) / Unit,
              Mouse.grabbed.y - (event.pixelY - Mouse.from.y) / Unit};
    PlaceView();
    return;
  }
  MovePen(Snap({event.x, event.y}));
  Drag({event.x, event.y});
}

void MouseUp(const MouseEvent& event) {
  const Held held = std::exchange(Mouse, {});
  if (event.button != MouseButton::Left) return;
  if (held.press == Press::Segment && !held.moved)
    Design.Select(PointsOfStroke(Design.Strokes(), held.place.stroke));
  if (held.press == Press::Points || held.press == Press::Segment) Design.EndDrag();
  ShowDesign();
}

void Wheel(const WheelEvent& event) {
  if (event.control) {
    ZoomDesign(std::pow(kWheelZoom, event.steps));
    return;
  }
  Fitted = false;
  const float way = kWheelPixels / Unit;
  Middle.x -= way * (event.shift ? event.steps : event.sideSteps);
  if (!event.shift) Middle.y -= way * event.steps;
  PlaceView();
}

// ---- Keys ----

void MoveByKey(Point by) {
  by = {by.x * Step(), by.y * Step()};
  if (!DrawTool && !Design.Selection().empty()) {
    Design.Move(by);
    return;
  }
  PenPoint = Snap({PenPoint.x + by.x, PenPoint.y + by.y});
}

// Enter and the blank do at the pen what a click does there.
void ClickAtPen() {
  if (DrawTool) {
    PressDraw(PenPoint);
  } else {
    PressSelect(PenPoint, true);
  }
  Mouse = {};
}

void LeaveOff() {
  if (Design.Drawing()) {
    Design.EndDrawing();
  } else if (!Design.Selection().empty()) {
    Design.Select({});
  } else {
    DrawTool = false;
  }
}

bool ActOnKey(int code) {
  switch (code) {
    case kKeyLeft:
      MoveByKey({-1, 0});
      return true;
    case kKeyRight:
      MoveByKey({1, 0});
      return true;
    case kKeyUp:
      MoveByKey({0, -1});
      return true;
    case kKeyDown:
      MoveByKey({0, 1});
      return true;
    case ' ':
      ClickAtPen();
      return true;
    case kKeyEnter:
      Design.EndDrawing();
      return true;
    case kKeyEscape:
      LeaveOff();
      return true;
    case kKeyBackspace:
      Design.TakeBackDrawn();
      return true;
    case 'b':
    case 'B':
      if (DrawTool) Design.BendDrawn(PenPoint);
      return true;
    case '.':
      Design.SelectNext(false);
      return true;
    case ',':
      Design.SelectNext(true);
      return true;
    default:
      return false;
  }
}

}  // namespace

void ResetDesignGrid() {
  Design = {};
  DrawTool = false;
  QuarterSteps = false;
  Background = {};
  DesignChanged = nullptr;
  PenMoved = nullptr;
  Fitted = true;
  PenPoint = {kDesignSide / 2, kDesignBaseline};
  Mouse = {};
}

void ConnectDesignGrid(Canvas& canvas) {
  DesignerCanvas = &canvas;
  canvas.OnPaint = PaintDesignLayer;
  canvas.OnMouseDown = MouseDown;
  canvas.OnMouseMove = MouseMove;
  canvas.OnMouseUp = MouseUp;
  canvas.OnWheel = Wheel;
  canvas.OnKeyPress = [](int code) {
    if (ActOnKey(code)) ShowDesign();
  };
}

void ShowDesign() {
  if (!DesignerCanvas) return;
  DesignerCanvas->Invalidate(Layer::Page);
  DesignerCanvas->Invalidate(Layer::Overlay);
  if (DesignChanged) DesignChanged();
}

void ChooseTool(bool draw) {
  Design.EndDrawing();
  if (draw) Design.Select({});
  DrawTool = draw;
  ShowDesign();
}

Point PenPlace() {
  return PenPoint;
}

void FitDesign() {
  Fitted = true;
  if (!DesignerCanvas || DesignerCanvas->PixelWidth() <= 0 || DesignerCanvas->PixelHeight() <= 0) return;
  GrowingBox bounds = BoundsOfStrokes(Design.Strokes());
  bounds.Add(Box{0, 0, kDesignSide, kDesignSide});
  const Box shown{bounds.box.left - kMargin, bounds.box.top - kMargin, bounds.box.right + kMargin,
                  bounds.box.bottom + kMargin};
  Middle = {(shown.left + shown.right) / 2, (shown.top + shown.bottom) / 2};
  Unit = std::max(std::min(static_cast<float>(DesignerCanvas->PixelWidth()) / (shown.right - shown.left),
                           static_cast<float>(DesignerCanvas->PixelHeight()) / (shown.bottom - shown.top)),
                  kLeastUnit);
  PlaceView();
}

void ZoomDesign(float factor) {
  Fitted = false;
  Unit = std::clamp(Unit * factor, kLeastUnit, kMostUnit);
  PlaceView();
}

void DesignGridResized() {
  if (Fitted) {
    FitDesign();
  } else {
    PlaceView();
  }
}

}  // namespace kelvane
