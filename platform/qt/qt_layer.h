#pragma once

// One layer of a canvas: an image in device pixels, painted on at once.
//
// 1. One painter stays open over a burst of drawing; Image() closes it. Opening one for each call would cost
//    more than most calls.
// 2. Polylines of one pen that continue each other are held back and drawn as one, so that a path of many
//    curves is stroked once, with joins. Every other routine draws what is held back first.
// 3. `Inked` covers everything drawn since the layer was cleared, `TakeDirty` everything that changed since
//    it was last asked.

#include <QColor>
#include <QImage>
#include <QList>
#include <QPainter>
#include <QPointF>
#include <QRect>
#include <span>
#include <string_view>

#include "platform/canvas.h"

namespace kelvane {

class QtFace;

class QtLayer {
 public:
  // An opaque layer is cleared to a colour, the other one to nothing.
  explicit QtLayer(bool opaque) : opaque_(opaque) {}
  ~QtLayer();
  QtLayer(const QtLayer&) = delete;
  QtLayer& operator=(const QtLayer&) = delete;

  // Makes the image anew, cleared. Sizes are device pixels.
  void Resize(QSize size, const QColor& background);
  QSize Size() const { return image_.size(); }
  // The finished image.
  const QImage& Image();
  QRect Inked() const { return inked_; }
  QRect TakeDirty();

  void Clear(const QColor& background);

  // Positions, widths and sizes below are device pixels. What lies outside the image costs nothing.
  void FillBox(QRectF box, const QColor& colour);
  // A `crisp` line parallel to an axis is put on whole pixels.
  void DrawLine(QPointF from, QPointF to, ColourValue colour, double width, bool crisp);
  void DrawPolyline(std::span<const QPointF> points, ColourValue colour, double width);
  void FillPolygon(std::span<const QPointF> points, ColourValue colour);
  void DrawCircle(QPointF centre, double radius, ColourValue colour, double width);
  void DrawText(const ScreenFace& face, double em, std::string_view codes, std::span<const QPointF> origins,
                ColourValue colour);

 private:
  QPainter& Painter();
  // Marks a rectangle as changed; false if nothing of it is on the image.
  bool Touch(double left, double top, double right, double bottom);
  bool Touch(std::span<const QPointF> points, double margin);
  void UsePen(ColourValue colour, double width);
  void DrawHeldLine();
  // Where the origin of a character must lie to leave ink on the image.
  QRectF Reached(double em) const;
  void DrawGlyphs(QtFace& face, double em, std::string_view codes, std::span<const QPointF> origins,
                  ColourValue colour);
  void DrawOutlines(QtFace& face, double em, std::string_view codes, std::span<const QPointF> origins,
                    ColourValue colour);

  bool opaque_;
  QImage image_;
  QPainter painter_;
  QRect inked_;
  QRect dirty_;

  ColourValue penColour_ = 0;
  double penWidth_ = -1;  // -1: the painter has no pen of ours

  QList<QPointF> held_;
  ColourValue heldColour_ = 0;
  double heldWidth_ = 0;
};

}  // namespace kelvane
