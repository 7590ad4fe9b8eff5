#pragma once

// One layer of a canvas: an image in device pixels, painted on at once.
//
// One painter stays open over a burst of drawing; Image() closes it. Opening one for each call would cost more
// than most calls. `Inked` covers everything drawn since the layer was cleared, `TakeDirty` everything that
// changed since it was last asked.

#include <QColor>
#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <QPointF>
#include <QRect>
#include <span>
#include <string_view>
#include <vector>

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

  // Keeps what lies outside a rectangle as it is, until the next call; a null rectangle is all of the layer.
  void SetClip(const QRect& clip);
  void Clear(const QColor& background);

  // Positions, widths and sizes below are device pixels. What lies outside the image costs nothing.
  void FillBox(QRectF box, const QColor& colour);
  // A `crisp` line parallel to an axis is put on whole pixels.
  void DrawLine(QPointF from, QPointF to, ColourValue colour, double width, bool crisp);
  // Paths are mapped by `toDevice` first.
  void StrokePath(const Path& path, const QTransform& toDevice, ColourValue colour, double width);
  void FillPath(const Path& path, const QTransform& toDevice, ColourValue colour);
  void DrawText(const ScreenFace& face, double em, std::string_view codes, std::span<const QPointF> origins,
                ColourValue colour);

 private:
  QPainter& Painter();
  // Marks a rectangle as changed; false if nothing of it is on the image.
  bool Touch(double left, double top, double right, double bottom);
  bool Touch(std::span<const QPointF> points, double margin);
  // The points of a path on the layer; empty if nothing of it, with its margin, can be seen.
  std::span<const QPointF> Map(const Path& path, const QTransform& toDevice, double margin);
  void UsePen(ColourValue colour, double width);
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

  QRect clip_;
  std::vector<QPointF> mapped_;  // reused from path to path
};

}  // namespace kelvane
