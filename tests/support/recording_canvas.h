#pragma once

// A canvas that keeps what was drawn as text, one call a line with numbers rounded to 0.01, so that an
// expected drawing reads as a diff.

#include <string>
#include <string_view>
#include <vector>

#include "platform/canvas.h"

namespace kelvane {

// A picture that keeps what was drawn as the canvas below does.
class RecordingImage : public Image {
 public:
  RecordingImage(int width, int height, bool isTransparent)
      : transparent(isTransparent), pixelWidth(width), pixelHeight(height) {}
  const bool transparent;
  std::string drawn;

  int PixelWidth() const override { return pixelWidth; }
  int PixelHeight() const override { return pixelHeight; }
  // What was drawn, behind a line "PNG WIDTH HEIGHT DPI" and " transparent" if it is.
  std::string Png(int dotsPerInch) const override;
  void FillBox(const Box& box, ColourValue colour) override;
  void DrawLine(Point from, Point to, const Pen& pen) override;
  void StrokePath(const Path& path, const Pen& pen) override;
  void FillPath(const Path& path, ColourValue colour) override;
  void DrawText(const ScreenFace& face, float em, std::string_view codes, std::span<const Point> origins,
                ColourValue colour) override;

 private:
  const int pixelWidth;
  const int pixelHeight;
};

class RecordingCanvas : public Canvas {
 public:
  int pixelWidth = 600;
  int pixelHeight = 400;
  // "left top width height" of the last SetCoordinates.
  std::string coordinates;
  // Path of the icon in use, empty for the arrow.
  std::string pointer;
  PointerShape shape = PointerShape::Arrow;
  // Keys held while the mouse does something.
  bool shift = false;
  bool control = false;
  bool alt = false;
  // Icon files that load; any other is missing.
  std::vector<std::string> icons;
  std::string name;
  std::string toolTip;
  // "left top right bottom" of the page areas asked for since the page was last painted, one a line; "all\n"
  // for the whole of it.
  std::string areas;

  // Lines drawn on a layer since it was last cleared, each ended by "\n":
  //   box L T R B #BBGGRR
  //   line X Y X Y #BBGGRR w W
  //   stroke M X Y L X Y C X Y X Y X Y ... #BBGGRR w W
  //   fill M X Y L X Y C X Y X Y X Y ... #BBGGRR
  //   image WIDTH HEIGHT X Y and what was drawn on it, indented
  //   text FAMILY[ bold][ italic] EM (CODES) X Y X Y ... #BBGGRR
  // Codes outside ASCII and backslashes are written \xHH.
  // What was asked for is painted first, all of the layer.
  const std::string& Drawn(Layer layer);
  // How often a layer was painted.
  int Paints(Layer layer);
  // Shows the canvas as the end of an act does: each layer that was asked for is painted once.
  void ShowNow() override;
  void ForgetDrawn();

  // What a person does. Positions are logical; those in pixels follow from the coordinates in force.
  void Press(int code);
  void Type(std::string_view text);
  void Down(float x, float y, MouseButton button = MouseButton::Left);
  void Move(float x, float y, MouseButton button = MouseButton::Left);
  void Up(float x, float y, MouseButton button = MouseButton::Left);
  void Click(float x, float y, MouseButton button = MouseButton::Left);
  void DoubleClick(float x, float y, MouseButton button = MouseButton::Left);
  void Wheel(const WheelEvent& event);

  int PixelWidth() const override { return pixelWidth; }
  int PixelHeight() const override { return pixelHeight; }
  void SetCoordinates(float left, float top, float width, float height) override;
  void ScrollTo(float left, float top, float width, float height) override;
  void SelectLayer(Layer layer) override { selected = Index(layer); }
  float PixelRatio() const override { return 1; }
  void Clear() override;
  void DrawImage(const Image& image, Point corner) override;
  void Invalidate(Layer layer) override;
  // Noted as the last area; painted as if it were all of the layer.
  void Invalidate(Layer layer, const Box& area) override;
  void FillBox(const Box& box, ColourValue colour) override;
  void DrawLine(Point from, Point to, const Pen& pen) override;
  void StrokePath(const Path& path, const Pen& pen) override;
  void FillPath(const Path& path, ColourValue colour) override;
  void DrawText(const ScreenFace& face, float em, std::string_view codes, std::span<const Point> origins,
                ColourValue colour) override;
  void SetPointerArrow() override {
    pointer.clear();
    shape = PointerShape::Arrow;
  }
  void SetPointerShape(PointerShape newShape) override { shape = newShape; }
  bool SetPointerIcon(const std::string& path) override;
  void Focus() override;
  void SetName(const std::string& newName) override { name = newName; }
  void SetToolTip(const std::string& text) override { toolTip = text; }

 private:
  static std::size_t Index(Layer layer) { return layer == Layer::Page ? 0 : 1; }
  MouseEvent EventAt(float x, float y, MouseButton button) const;
  void Record(const std::string& line) { drawn[selected] += line + "\n"; }

  std::string drawn[2];
  int paints[2] = {0, 0};
  bool invalid[2] = {false, false};
  std::size_t selected = 0;
  int clicks = 1;
  float viewLeft = 0;
  float viewTop = 0;
  float viewWidth = 1;
  float viewHeight = 1;
};

// The control that has the focus, of whatever kind; null if none has.
extern const void* FocusedControl;

}  // namespace kelvane
