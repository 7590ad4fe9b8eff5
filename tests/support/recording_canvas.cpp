#include "tests/support/recording_canvas.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <initializer_list>

#include "document/numbers.h"

namespace kelvane {

const void* FocusedControl = nullptr;

namespace {

std::string Rounded(float value) {
  return FormatSingle(std::round(value * 100) / 100);
}

std::string Numbers(std::initializer_list<float> values) {
  std::string text;
  for (const float value : values) text += " " + Rounded(value);
  return text;
}

std::string Steps(const Path& path) {
  std::string text;
  const Point* point = path.points.data();
  for (const Path::Step step : path.steps) {
    text += step == Path::Step::Move ? " M" : step == Path::Step::Line ? " L" : " C";
    for (int left = step == Path::Step::Curve ? 3 : 1; left > 0; --left, ++point)
      text += Numbers({point->x, point->y});
  }
  return text;
}

std::string Points(std::span<const Point> points) {
  std::string text;
  for (const Point& point : points) text += Numbers({point.x, point.y});
  return text;
}

std::string Colour(ColourValue colour) {
  char text[16];
  std::snprintf(text, sizeof text, " #%06X", static_cast<unsigned>(colour));
  return text;
}

std::string Style(const Pen& pen) {
  return Colour(pen.colour) + " w " + Rounded(pen.width);
}

std::string Codes(std::string_view codes) {
  std::string text;
  for (const char c : codes) {
    const auto code = static_cast<unsigned char>(c);
    char escaped[8];
    std::snprintf(escaped, sizeof escaped, "\\x%02X", code);
    text += code >= 32 && code < 127 && c != '\\' ? std::string(1, c) : escaped;
  }
  return text;
}

}  // namespace

void RecordingCanvas::ForgetDrawn() {
  for (std::string& layer : drawn) layer.clear();
  for (int& count : paints) count = 0;
  areas.clear();
}

void RecordingCanvas::ShowNow() {
  for (const Layer layer : {Layer::Page, Layer::Overlay}) {
    if (!invalid[Index(layer)]) continue;
    invalid[Index(layer)] = false;
    if (!OnPaint) continue;
    SelectLayer(layer);
    Clear();
    OnPaint(layer, {viewLeft, viewTop, viewLeft + viewWidth, viewTop + viewHeight});
  }
  SelectLayer(Layer::Page);
}

const std::string& RecordingCanvas::Drawn(Layer layer) {
  ShowNow();
  return drawn[Index(layer)];
}

int RecordingCanvas::Paints(Layer layer) {
  ShowNow();
  return paints[Index(layer)];
}

void RecordingCanvas::Invalidate(Layer layer) {
  invalid[Index(layer)] = true;
  if (layer == Layer::Page) areas += "all\n";
}

void RecordingCanvas::Invalidate(Layer layer, const Box& area) {
  invalid[Index(layer)] = true;
  if (layer == Layer::Page) areas += Numbers({area.left, area.top, area.right, area.bottom}).substr(1) + "\n";
}

void RecordingCanvas::Press(int code) {
  if (OnKeyPress) OnKeyPress(code);
}

void RecordingCanvas::Type(std::string_view text) {
  for (const char c : text) Press(static_cast<unsigned char>(c));
}

MouseEvent RecordingCanvas::EventAt(float x, float y, MouseButton button) const {
  const float pixelX = (x - viewLeft) / viewWidth * static_cast<float>(pixelWidth);
  const float pixelY = (y - viewTop) / viewHeight * static_cast<float>(pixelHeight);
  return {button, x, y, pixelX, pixelY, shift, control, alt, clicks};
}

void RecordingCanvas::Down(float x, float y, MouseButton button) {
  if (OnMouseDown) OnMouseDown(EventAt(x, y, button));
}

void RecordingCanvas::Move(float x, float y, MouseButton button) {
  if (OnMouseMove) OnMouseMove(EventAt(x, y, button));
}

void RecordingCanvas::Up(float x, float y, MouseButton button) {
  if (OnMouseUp) OnMouseUp(EventAt(x, y, button));
}

void RecordingCanvas::Click(float x, float y, MouseButton button) {
  Down(x, y, button);
  Up(x, y, button);
}

void RecordingCanvas::DoubleClick(float x, float y, MouseButton button) {
  Click(x, y, button);
  clicks = 2;
  Click(x, y, button);
  clicks = 1;
}

void RecordingCanvas::Wheel(const WheelEvent& event) {
  if (OnWheel) OnWheel(event);
}

void RecordingCanvas::SetCoordinates(float left, float top, float width, float height) {
  EXPECT_GT(width, 0);
  EXPECT_GT(height, 0);
  viewLeft = left;
  viewTop = top;
  viewWidth = width;
  viewHeight = height;
  coordinates = Numbers({left, top, width, height}).substr(1);
}

void RecordingCanvas::ScrollTo(float left, float top, float width, float height) {
  // What stays where it was is not painted again.
  const std::string before = coordinates;
  SetCoordinates(left, top, width, height);
  if (coordinates != before) Invalidate(Layer::Page);
  Invalidate(Layer::Overlay);
}

void RecordingCanvas::Clear() {
  drawn[selected].clear();
  ++paints[selected];
}

void RecordingCanvas::FillBox(const Box& box, ColourValue colour) {
  Record("box" + Numbers({box.left, box.top, box.right, box.bottom}) + Colour(colour));
}

void RecordingCanvas::DrawLine(Point from, Point to, const Pen& pen) {
  Record("line" + Numbers({from.x, from.y, to.x, to.y}) + Style(pen));
}

void RecordingCanvas::StrokePath(const Path& path, const Pen& pen) {
  Record("stroke" + Steps(path) + Style(pen));
}

void RecordingCanvas::FillPath(const Path& path, ColourValue colour) {
  Record("fill" + Steps(path) + Colour(colour));
}

void RecordingCanvas::DrawText(const ScreenFace& face, float em, std::string_view codes,
                               std::span<const Point> origins, ColourValue colour) {
  EXPECT_EQ(codes.size(), origins.size());
  Record("text " + std::string(face.family) + (face.bold ? " bold" : "") + (face.italic ? " italic" : "") +
         Numbers({em}) + " (" + Codes(codes) + ")" + Points(origins) + Colour(colour));
}

bool RecordingCanvas::SetPointerIcon(const std::string& path) {
  const bool found = std::find(icons.begin(), icons.end(), path) != icons.end();
  pointer = found ? path : std::string();
  return found;
}

void RecordingCanvas::Focus() {
  FocusedControl = static_cast<Canvas*>(this);
}

}  // namespace kelvane
