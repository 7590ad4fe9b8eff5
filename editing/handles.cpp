#include "editing/handles.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "document/numbers.h"
#include "editing/arrange.h"
#include "editing/properties.h"
#include "typography/colours.h"

namespace kelvane {

namespace {

// Pixels.
constexpr float kReach = 5;     // of a press
constexpr float kHalfSide = 3;  // of a handle
constexpr float kGap = 7;       // between the ink and the corners
constexpr float kAbove = 20;    // from there to the handle that turns

constexpr float kLeastFactor = 0.01F;
constexpr float kLeastExtent = 0.01F;  // points; what has less cannot be scaled that way
constexpr float kTurnStep = 15;        // degrees, with Shift

Handle Held = Handle::None;
Point HeldFrom;
Box Frame;
Scaling Scales;
float Degrees = 0;

Point CornerOf(const Box& box, Handle handle) {
  const bool left = handle == Handle::TopLeft || handle == Handle::BottomLeft;
  const bool top = handle == Handle::TopLeft || handle == Handle::TopRight;
  return {left ? box.left : box.right, top ? box.top : box.bottom};
}

Handle Opposite(Handle handle) {
  switch (handle) {
    case Handle::TopLeft:
      return Handle::BottomRight;
    case Handle::TopRight:
      return Handle::BottomLeft;
    case Handle::BottomRight:
      return Handle::TopLeft;
    default:
      return Handle::TopRight;
  }
}

Point CentreOf(const Box& box) {
  return {(box.left + box.right) / 2, (box.top + box.bottom) / 2};
}

Point PlaceOf(Handle handle) {
  const float gap = Pixels(kGap);
  const Box box{MarkedLeft - gap, MarkedBottom - gap, MarkedRight + gap, MarkedTop + gap};
  if (handle == Handle::Turn) return {CentreOf(box).x, box.top - Pixels(kAbove)};
  return CornerOf(box, handle);
}

constexpr Handle kHandles[] = {Handle::TopLeft, Handle::TopRight, Handle::BottomRight, Handle::BottomLeft,
                               Handle::Turn};

bool IsThere(Handle handle) {
  return handle == Handle::Turn ? CanTurn() : SelectedProperties().Count() > 0;
}

float AngleFromCentre(Point at) {
  const Point centre = CentreOf(Frame);
  return static_cast<float>(
      std::atan2(static_cast<double>(at.y) - centre.y, static_cast<double>(at.x) - centre.x) * 180 /
      std::numbers::pi);
}

void TurnTo(const Pointer& pointer) {
  const float step = pointer.shift ? kTurnStep : 0.1F;
  const float angle = AngleFromCentre(pointer.at) - AngleFromCentre(HeldFrom);
  // Between -180 and 180, as seen.
  Degrees = std::round(std::remainder(angle, 360.0F) / step) * step;
}

void ScaleTo(const Pointer& pointer) {
  const Point corner = CornerOf(Frame, Held);
  Point to{corner.x + pointer.at.x - HeldFrom.x, corner.y + pointer.at.y - HeldFrom.y};
  if (!pointer.alt) to = {SnapToGrid(to.x, GridStepH), SnapToGrid(to.y, GridStepV)};
  Scales.fixed = CornerOf(Frame, Opposite(Held));
  const Point before{corner.x - Scales.fixed.x, corner.y - Scales.fixed.y};
  const Point after{to.x - Scales.fixed.x, to.y - Scales.fixed.y};
  const auto factor = [](float from, float length) {
    return std::abs(from) < kLeastExtent ? 1.0F : std::max(length / from, kLeastFactor);
  };
  Scales.x = factor(before.x, after.x);
  Scales.y = factor(before.y, after.y);
  if (!pointer.shift && SelectedProperties().drawings > 0) return;
  const float square = before.x * before.x + before.y * before.y;
  const float along = after.x * before.x + after.y * before.y;
  Scales.x = Scales.y = square > 0 ? std::max(along / square, kLeastFactor) : 1;
}

Point ByHandle(Point point) {
  return Held == Handle::Turn ? Turned(point, CentreOf(Frame), Degrees) : Scaled(point, Scales);
}

std::string Percent(float factor) {
  return FormatUpTo(factor * 100, 1) + " %";
}

}  // namespace

Handle HandleAt(Point at) {
  for (const Handle handle : kHandles) {
    const Point place = PlaceOf(handle);
    const float reach = Pixels(kReach);
    if (IsThere(handle) && std::abs(at.x - place.x) <= reach && std::abs(at.y - place.y) <= reach)
      return handle;
  }
  return Handle::None;
}

PointerShape ShapeOf(Handle handle) {
  if (handle == Handle::Turn) return PointerShape::Turn;
  const bool falling = handle == Handle::TopLeft || handle == Handle::BottomRight;
  return falling ? PointerShape::ResizeFalling : PointerShape::ResizeRising;
}

void PaintHandles(Painter& painter) {
  const ColourValue blue = PaletteColour(kBlue);
  for (const Handle handle : kHandles) {
    if (!IsThere(handle)) continue;
    const Point place = PlaceOf(handle);
    const auto box = [&](float half) {
      const float side = Pixels(half);
      return Box{place.x - side, place.y - side, place.x + side, place.y + side};
    };
    painter.FillBox(box(kHalfSide), blue);
    painter.FillBox(box(kHalfSide - 1), handle == Handle::Turn ? blue : PaletteColour(kWhite));
  }
}

void TakeHandle(Handle handle, Point at) {
  Held = handle;
  HeldFrom = at;
  Frame = FrameOf(Selection());
  Scales = {};
  Degrees = 0;
}

void DragHandle(const Pointer& pointer) {
  Held == Handle::Turn ? TurnTo(pointer) : ScaleTo(pointer);
}

bool ChangeByHandle(TextEntry& entry) {
  if (Held != Handle::Turn) Scale(entry, Scales);
  return Held != Handle::Turn;
}

bool ChangeByHandle(Drawing& drawing) {
  MapDrawing(drawing, ByHandle);
  return true;
}

void PaintFrame(Painter& painter) {
  const Pen pen{PaletteColour(kBlue), 1};
  Path path;
  path.MoveTo(ByHandle({Frame.left, Frame.top}));
  path.LineTo(ByHandle({Frame.right, Frame.top}));
  path.LineTo(ByHandle({Frame.right, Frame.bottom}));
  path.LineTo(ByHandle({Frame.left, Frame.bottom}));
  path.LineTo(ByHandle({Frame.left, Frame.top}));
  painter.StrokePath(path, pen);
}

std::string HandleHint() {
  if (Held != Handle::Turn) return Percent(Scales.x) + " across, " + Percent(Scales.y) + " down";
  const std::string angle = FormatUpTo(Degrees, 1) + " degrees";
  return SelectedProperties().texts > 0 ? angle + ". " + kRunsDoNotTurn : angle;
}

void ReleaseHandle() {
  if (Held == Handle::Turn) {
    TurnSelected(CentreOf(Frame), Degrees);
  } else {
    ScaleSelected(Scales);
  }
}

}  // namespace kelvane
