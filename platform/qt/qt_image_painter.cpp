#include "platform/qt/qt_image_painter.h"

#include <QBuffer>
#include <algorithm>
#include <cmath>

#include "platform/failure.h"
#include "platform/qt/qt_fonts.h"

namespace kelvane {

QtImagePainter::QtImagePainter(QSize pixels, const Box& shown, double ratio, const QColor& background)
    : layer_(background.alpha() == 255), shown_(shown), ratio_(ratio) {
  layer_.Resize(pixels);
  layer_.Clear(background);
  scaleX_ = pixels.width() / static_cast<double>(shown.right - shown.left);
  scaleY_ = pixels.height() / static_cast<double>(shown.bottom - shown.top);
}

std::string QtImagePainter::Png(int dotsPerInch) const {
  constexpr double kInchesPerMetre = 1 / 0.0254;
  const auto dotsPerMetre = static_cast<int>(std::lround(dotsPerInch * kInchesPerMetre));
  QImage image = Picture();  // shares the pixels
  QByteArray content;
  QBuffer buffer(&content);
  image.setDotsPerMeterX(dotsPerMetre);
  image.setDotsPerMeterY(dotsPerMetre);
  if (!image.save(&buffer, "PNG"))
    throw Failure("The picture could not be made: there is not enough memory.");
  return content.toStdString();
}

std::span<const FixedPoint> QtImagePainter::ToDevice(std::span<const Point> points) {
  points_.clear();
  for (const Point& point : points) {
    if (!std::isfinite(point.x) || !std::isfinite(point.y)) return {};
    points_.push_back(ToFixed((point.x - shown_.left) * scaleX_, (point.y - shown_.top) * scaleY_));
  }
  return points_;
}

void QtImagePainter::FillBox(const Box& box, ColourValue colour) {
  const Point corners[] = {{box.left, box.top}, {box.right, box.bottom}};
  const std::span<const FixedPoint> device = ToDevice(corners);
  if (!device.empty()) layer_.FillBox(device[0], device[1], ToRgb(colour));
}

void QtImagePainter::DrawLine(Point from, Point to, const Pen& pen) {
  const Point ends[] = {from, to};
  const std::span<const FixedPoint> device = ToDevice(ends);
  if (!device.empty())
    layer_.DrawLine(device[0], device[1], ToRgb(pen.colour), pen.width * ratio_, pen.crisp);
}

void QtImagePainter::StrokePath(const Path& path, const Pen& pen) {
  layer_.StrokePath(path, ToDevice(path.points), ToRgb(pen.colour), pen.width * ratio_);
}

void QtImagePainter::FillPath(const Path& path, ColourValue colour) {
  layer_.FillPath(path, ToDevice(path.points), ToRgb(colour));
}

void QtImagePainter::DrawText(const ScreenFace& face, float em, std::string_view codes,
                              std::span<const Point> origins, ColourValue colour) {
  if (FaceFor(face).IsMissing() && std::ranges::find(missing_, face) == missing_.end())
    missing_.push_back(face);
  layer_.DrawText(face, em * ratio_, codes, ToDevice(origins), ToRgb(colour));
}

}  // namespace kelvane
