#pragma once

// One layer of a canvas: an image in device pixels, painted on at once. What is painted lands on the same
// pixels with the same colours wherever the clip and the edges of the image are.
//
// `Inked` covers everything drawn since the layer was cleared, `TakeDirty` everything that changed since it
// was last asked.

#include <QColor>
#include <QImage>
#include <QRect>
#include <memory>
#include <span>
#include <string_view>

#include "platform/canvas.h"
#include "platform/qt/coverage.h"
#include "platform/qt/ink.h"

namespace kelvane {

inline QRgb ToRgb(ColourValue colour) {
  return qRgb(colour & 0xFF, (colour >> 8) & 0xFF, (colour >> 16) & 0xFF);
}

class QtLayer {
 public:
  // An opaque layer is cleared to a colour, the other one to nothing.
  explicit QtLayer(bool opaque) : opaque_(opaque) {}
  QtLayer(const QtLayer&) = delete;
  QtLayer& operator=(const QtLayer&) = delete;

  // Makes the image anew; an opaque one holds no picture until it is cleared. Sizes are device pixels.
  void Resize(QSize size);
  QSize Size() const { return image_.size(); }
  const QImage& Image() const { return image_; }
  QRect Inked() const { return inked_; }
  QRect TakeDirty();

  // Keeps what lies outside a rectangle as it is, until the next call; a null rectangle is all of the layer.
  void SetClip(const QRect& clip);
  void Clear(const QColor& background);
  // Moves the picture by whole pixels, to the right and down. What it leaves behind holds no picture.
  void Move(QPoint by);

  // What is drawn while one of these lives is painted at its end at the latest, if it is much by several
  // threads.
  class Together {
   public:
    explicit Together(QtLayer& layer) : layer_(layer) { layer_.Collect(); }
    ~Together() { layer_.PaintCollected(); }
    Together(const Together&) = delete;
    Together& operator=(const Together&) = delete;

   private:
    QtLayer& layer_;
  };

  // Sizes and widths are device pixels. What lies outside the image costs nothing.
  void FillBox(FixedPoint from, FixedPoint to, QRgb colour);
  // A `crisp` line parallel to an axis is put on whole pixels.
  void DrawLine(FixedPoint from, FixedPoint to, QRgb colour, double width, bool crisp);
  // The points are those of the path.
  void StrokePath(const Path& path, std::span<const FixedPoint> points, QRgb colour, double width);
  void FillPath(const Path& path, std::span<const FixedPoint> points, QRgb colour);
  void DrawText(const ScreenFace& face, double em, std::string_view codes,
                std::span<const FixedPoint> origins, QRgb colour);
  void DrawGlyph(const GlyphLines& glyph, double em, double ratio, FixedPoint origin, QRgb colour);
  // The corner goes to the nearest edge between pixels.
  void DrawImage(const QImage& picture, FixedPoint corner);

 private:
  // Marks a rectangle as changed; false if nothing of it is within the clip.
  bool Touch(const QRect& touched);
  void Collect();
  void PaintCollected();
  void PutCharacters(GlyphImages& images, const QRect& box, std::string_view codes,
                     std::span<const FixedPoint> origins, QRgb colour);
  // Paints or collects.
  void Put(const Ink& ink);
  PixelRows ImageRows();

  bool opaque_;
  // Of the image once it was moved: half as large again, so that few moves copy it.
  std::unique_ptr<QRgb[]> memory_;
  QImage image_;
  QRect inked_;
  QRect dirty_;
  QRect clip_;

  bool collecting_ = false;
  InkCollector collector_;
  InkPainter painter_;
};

}  // namespace kelvane
