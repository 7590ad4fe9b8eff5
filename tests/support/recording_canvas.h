#pragma once

// A canvas that keeps what was drawn as text, one call a line with numbers rounded to 0.01, so that an
// expected drawing reads as a diff.

#include <string>
#include <string_view>
#include <vector>

#include "platform/canvas.h"

namespace kelvane {

class RecordingCanvas : public Canvas {
 public:
  int pixelWidth = 600;
  int pixelHeight = 400;
  // "left top width height" of the last SetCoordinates.
  std::string coordinates;
  // Path of the icon in use, empty for the arrow.
  std::string pointer;
  // Icon files that load; any other is missing.
  std::vector<std::string> icons;

  // Lines drawn on a layer since it was last cleared, each ended by "\n":
  //   box L T R B #BBGGRR
  //   line X Y X Y #BBGGRR w W
  //   polyline X Y X Y ... #BBGGRR w W
  //   fill X Y X Y ... #BBGGRR
  //   circle X Y R #BBGGRR w W
  //   text FAMILY[ bold][ italic] EM (CODES) X Y X Y ... #BBGGRR
  // Codes outside ASCII and backslashes are written \xHH.
  const std::string& Drawn(Layer layer) const { return drawn[Index(layer)]; }
  // How often a layer was cleared.
  int Clears(Layer layer) const { return clears[Index(layer)]; }
  void ForgetDrawn();

  // What a person does. Positions are logical; those in pixels follow from the coordinates in force.
  void Press(int code);
  void Type(std::string_view text);
  void Down(float x, float y, MouseButton button = MouseButton::Left);
  void Move(float x, float y, MouseButton button = MouseButton::Left);
  void Up(float x, float y, MouseButton button = MouseButton::Left);
  void Click(float x, float y, MouseButton button = MouseButton::Left);
  void Wheel(const WheelEvent& event);

  int PixelWidth() const override { return pixelWidth; }
  int PixelHeight() const override { return pixelHeight; }
  void SetCoordinates(float left, float top, float width, float height) override;
  void SelectLayer(Layer layer) override { selected = Index(layer); }
  void Clear() override;
  void FillBox(float left, float top, float right, float bottom, ColourValue colour) override;
  void DrawLine(Point from, Point to, const Pen& pen) override;
  void DrawPolyline(std::span<const Point> points, const Pen& pen) override;
  void FillPolygon(std::span<const Point> points, ColourValue colour) override;
  void DrawCircle(Point centre, float radius, const Pen& pen) override;
  void DrawText(const ScreenFace& face, float em, std::string_view codes, std::span<const Point> origins,
                ColourValue colour) override;
  void SetPointerArrow() override { pointer.clear(); }
  bool SetPointerIcon(const std::string& path) override;
  void Focus() override;

 private:
  static std::size_t Index(Layer layer) { return layer == Layer::Page ? 0 : 1; }
  MouseEvent EventAt(float x, float y, MouseButton button) const;
  void Record(const std::string& line) { drawn[selected] += line + "\n"; }

  std::string drawn[2];
  int clears[2] = {0, 0};
  std::size_t selected = 0;
  float viewLeft = 0;
  float viewTop = 0;
  float viewWidth = 1;
  float viewHeight = 1;
};

// The control that has the focus, of whatever kind; null if none has.
extern const void* FocusedControl;

}  // namespace kelvane
