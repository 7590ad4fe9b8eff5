#pragma once

// The drawing canvas as a widget: two layers, logical coordinates, keys and mouse.

#include <QPoint>
#include <QRegion>
#include <QWidget>
#include <span>
#include <string>
#include <vector>

#include "platform/controls.h"
#include "platform/qt/qt_layer.h"

namespace kelvane {

class QtCanvas final : public QWidget, public Canvas {
 public:
  explicit QtCanvas(QWidget* parent);

  int PixelWidth() const override;
  int PixelHeight() const override;
  void SetCoordinates(float left, float top, float width, float height) override;
  void ScrollTo(float left, float top, float width, float height) override;
  float PixelRatio() const override;
  void SelectLayer(Layer layer) override;
  void Clear() override;
  void DrawImage(const Image& image, Point corner) override;
  void Invalidate(Layer layer) override;
  void Invalidate(Layer layer, const Box& area) override;
  void ShowNow() override { ShowDrawn(); }
  void FillBox(const Box& box, ColourValue colour) override;
  void DrawLine(Point from, Point to, const Pen& pen) override;
  void StrokePath(const Path& path, const Pen& pen) override;
  void FillPath(const Path& path, ColourValue colour) override;
  void DrawText(const ScreenFace& face, float em, std::string_view codes, std::span<const Point> origins,
                ColourValue colour) override;
  void DrawGlyph(const GlyphLines& glyph, Point origin, ColourValue colour) override;
  void SetPointerArrow() override;
  bool SetPointerIcon(const std::string& path) override;
  void SetPointerShape(PointerShape shape) override;
  void Focus() override;
  void SetName(const std::string& name) override;
  void SetToolTip(const std::string& text) override;

  // Takes effect at once, shown or not.
  void SetPlace(const Place& place);
  // Set by the window: the drawing was lost because the screen's pixel ratio changed and is to be redone.
  std::function<void()> OnLost;

 protected:
  bool event(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  bool focusNextPrevChild(bool next) override;
  void inputMethodEvent(QInputMethodEvent* event) override;
  QVariant inputMethodQuery(Qt::InputMethodQuery query) const override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void leaveEvent(QEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;

 private:
  QColor DeskColour() const;
  void ResizeLayers();
  // Sets what follows from the coordinates and the size.
  void UseCoordinates();
  // The points on the layers; empty if one of them is no place.
  std::span<const FixedPoint> ToDevice(std::span<const Point> points);
  MouseEvent ToMouseEvent(const QMouseEvent& event, Qt::MouseButton button);
  void SendKey(int code);
  // Text that the keyboard or an input method gave.
  void SendText(const QString& text);
  // Has what was drawn shown at the next pass of the event loop.
  void Drawn();
  void ShowDrawn();
  // Has an area on the screen before anything else of the window is painted: fields and bars that follow it
  // take longer than it does. False if the window cannot be painted on yet.
  bool ShowAhead(const QRect& area);
  void PaintLayers(QPainter& painter, const QRegion& region) const;
  // Has the owner paint what was asked for.
  void PaintInvalid();

  QtLayer page_{true};
  QtLayer overlay_{false};
  QtLayer* layer_ = &page_;
  double ratio_ = 1;  // device pixels per logical pixel
  bool showPending_ = false;
  int clicks_ = 1;  // of the last press
  QString making_;  // what an input method has in the making
  QString made_;    // what came of the last composition, until something else is typed
  // The part of each layer, in device pixels, that is to be painted before it is shown.
  QRegion invalid_[2];

  // The logical rectangle of SetCoordinates.
  double left_ = 0;
  double top_ = 0;
  double width_ = 1;
  double height_ = 1;

  // Device pixels per logical unit, and where the corner of the canvas lies in them. That is a whole number:
  // what is scrolled would not lie on the pixels otherwise.
  double scaleX_ = 1;
  double scaleY_ = 1;
  QPoint corner_;

  std::vector<FixedPoint> points_;  // reused from call to call
};

}  // namespace kelvane
