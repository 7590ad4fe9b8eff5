#include "platform/qt/qt_image_painter.h"

namespace kelvane {

QtImagePainter::QtImagePainter(QSize pixels, const Box& shown, double ratio, const QColor& background)
    : layer_(background.alpha() == 255), ratio_(ratio) {
  layer_.Resize(pixels, background);
  const double scaleX = pixels.width() / static_cast<double>(shown.right - shown.left);
  const double scaleY = pixels.height() / static_cast<double>(shown.bottom - shown.top);
  toDevice_ = QTransform(scaleX, 0, 0, scaleY, -shown.left * scaleX, -shown.top * scaleY);
}

void QtImagePainter::FillBox(const Box& box, ColourValue colour) {
  layer_.FillBox(QRectF(ToDevice({box.left, box.top}), ToDevice({box.right, box.bottom})),
                 QColor(colour & 0xFF, (colour >> 8) & 0xFF, (colour >> 16) & 0xFF));
}

void QtImagePainter::DrawLine(Point from, Point to, const Pen& pen) {
  layer_.DrawLine(ToDevice(from), ToDevice(to), pen.colour, pen.width * ratio_, pen.crisp);
}

void QtImagePainter::StrokePath(const Path& path, const Pen& pen) {
  layer_.StrokePath(path, toDevice_, pen.colour, pen.width * ratio_);
}

void QtImagePainter::FillPath(const Path& path, ColourValue colour) {
  layer_.FillPath(path, toDevice_, colour);
}

void QtImagePainter::DrawText(const ScreenFace& face, float em, std::string_view codes,
                              std::span<const Point> origins, ColourValue colour) {
  origins_.clear();
  for (const Point& origin : origins) origins_.push_back(ToDevice(origin));
  layer_.DrawText(face, em * ratio_, codes, origins_, colour);
}

}  // namespace kelvane
