#pragma once

// A painter onto an image: what a canvas shows, without a window.

#include <QImage>
#include <vector>

#include "platform/canvas.h"
#include "platform/qt/qt_layer.h"

namespace kelvane {

class QtImagePainter final : public Image {
 public:
  // `pixels` device pixels show the logical rectangle `shown`, of which `ratio` make a logical pixel. A
  // transparent background keeps what is not painted see-through.
  QtImagePainter(QSize pixels, const Box& shown, double ratio, const QColor& background);

  const QImage& Picture() const { return layer_.Image(); }

  int PixelWidth() const override { return Picture().width(); }
  int PixelHeight() const override { return Picture().height(); }
  std::string Png(int dotsPerInch) const override;
  std::vector<ScreenFace> MissingFaces() const override { return missing_; }

  void FillBox(const Box& box, ColourValue colour) override;
  void DrawLine(Point from, Point to, const Pen& pen) override;
  void StrokePath(const Path& path, const Pen& pen) override;
  void FillPath(const Path& path, ColourValue colour) override;
  void DrawText(const ScreenFace& face, float em, std::string_view codes, std::span<const Point> origins,
                ColourValue colour) override;

 private:
  // The points on the image; empty if one of them is no place.
  std::span<const FixedPoint> ToDevice(std::span<const Point> points);

  QtLayer layer_;
  const Box shown_;
  double scaleX_ = 1;  // device pixels
  double scaleY_ = 1;
  double ratio_;
  std::vector<ScreenFace> missing_;
  std::vector<FixedPoint> points_;  // reused from call to call
};

}  // namespace kelvane
