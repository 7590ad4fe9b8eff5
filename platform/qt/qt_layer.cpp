#include "platform/qt/qt_layer.h"

#include <QPen>
#include <algorithm>
#include <cmath>
#include <utility>

#include "platform/qt/qt_fonts.h"

namespace kelvane {
namespace {

// Up to this em, in device pixels, characters come from ready-made images; those of larger ones would take
// more memory than they save time.
constexpr double kLargestImageEm = 128;
// Beyond this em, in device pixels, no letter can be told from a stain, and filling one takes ever longer.
constexpr double kLargestEm = 32000;
// How far ink may lie from a character's origin, in ems.
constexpr double kGlyphReach = 1.5;
// Joining a stroke of wide lines that cross costs more than linearly, so long paths go to the painter in parts.
// Thin lines can go together, which keeps the ink of glyphs from being laid twice where lines meet.
constexpr double kThinLine = 2;  // device pixels
constexpr int kMostWideSteps = 16;
constexpr int kMostThinSteps = 512;

QColor ToQColor(ColourValue colour) {
  return QColor(colour & 0xFF, (colour >> 8) & 0xFF, (colour >> 16) & 0xFF);
}

}  // namespace

QtLayer::~QtLayer() {
  if (painter_.isActive()) painter_.end();
}

void QtLayer::Resize(QSize size, const QColor& background) {
  if (painter_.isActive()) painter_.end();
  clip_ = QRect(QPoint(0, 0), size);
  image_ = QImage(size, opaque_ ? QImage::Format_RGB32 : QImage::Format_ARGB32_Premultiplied);
  if (!image_.isNull()) image_.fill(opaque_ ? background : QColor(Qt::transparent));
  inked_ = QRect();
  dirty_ = image_.rect();
}

const QImage& QtLayer::Image() {
  if (painter_.isActive()) painter_.end();
  return image_;
}

QRect QtLayer::TakeDirty() {
  return std::exchange(dirty_, QRect());
}

QPainter& QtLayer::Painter() {
  if (!painter_.isActive()) {
    painter_.begin(&image_);
    painter_.setRenderHint(QPainter::Antialiasing);
    if (clip_ != image_.rect()) painter_.setClipRect(clip_);
    penWidth_ = -1;
  }
  return painter_;
}

void QtLayer::SetClip(const QRect& clip) {
  const QRect next = clip.isNull() ? image_.rect() : clip & image_.rect();
  if (next == clip_) return;
  clip_ = next;
  if (painter_.isActive()) painter_.end();
}

void QtLayer::Clear(const QColor& background) {
  if (image_.isNull()) return;
  const QRect cleared = opaque_ ? clip_ : clip_ & inked_;
  if (!cleared.isEmpty()) {
    QPainter& painter = Painter();
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.fillRect(cleared, opaque_ ? background : QColor(Qt::transparent));
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    dirty_ |= cleared;
  }
  if (clip_ == image_.rect()) inked_ = QRect();
}

bool QtLayer::Touch(double left, double top, double right, double bottom) {
  // Written so that a value which is no number touches nothing.
  if (!(left < image_.width() && right > 0 && top < image_.height() && bottom > 0)) return false;
  const int x0 = static_cast<int>(std::floor(std::max(left, 0.0)));
  const int y0 = static_cast<int>(std::floor(std::max(top, 0.0)));
  const int x1 = static_cast<int>(std::ceil(std::min<double>(right, image_.width())));
  const int y1 = static_cast<int>(std::ceil(std::min<double>(bottom, image_.height())));
  const QRect touched = QRect(x0, y0, x1 - x0, y1 - y0) & clip_;
  if (touched.isEmpty()) return false;
  inked_ |= touched;
  dirty_ |= touched;
  return true;
}

bool QtLayer::Touch(std::span<const QPointF> points, double margin) {
  if (points.empty()) return false;
  double left = points[0].x(), right = left, top = points[0].y(), bottom = top;
  for (const QPointF& point : points) {
    if (!std::isfinite(point.x()) || !std::isfinite(point.y())) return false;
    left = std::min(left, point.x());
    right = std::max(right, point.x());
    top = std::min(top, point.y());
    bottom = std::max(bottom, point.y());
  }
  return Touch(left - margin, top - margin, right + margin, bottom + margin);
}

void QtLayer::UsePen(ColourValue colour, double width) {
  QPainter& painter = Painter();
  if (penColour_ == colour && penWidth_ == width) return;
  painter.setPen(QPen(ToQColor(colour), width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  penColour_ = colour;
  penWidth_ = width;
}

void QtLayer::FillBox(QRectF box, const QColor& colour) {
  box = box.normalized();
  const double left = std::round(box.left());
  const double top = std::round(box.top());
  const double right = std::max(std::round(box.right()), left + 1);
  const double bottom = std::max(std::round(box.bottom()), top + 1);
  if (!Touch(left, top, right, bottom)) return;
  const QRectF whole(QPointF(left, top), QPointF(right, bottom));
  Painter().fillRect(whole.intersected(QRectF(image_.rect())).toRect(), colour);
}

void QtLayer::DrawLine(QPointF from, QPointF to, ColourValue colour, double width, bool crisp) {
  const bool upright = from.x() == to.x();
  if (!crisp || upright == (from.y() == to.y())) {
    const QPointF points[] = {from, to};
    if (!Touch(points, width / 2 + 1)) return;
    UsePen(colour, width);
    painter_.drawLine(from, to);
    return;
  }
  const double thick = std::max(std::round(width), 1.0);
  const QPointF least(std::min(from.x(), to.x()), std::min(from.y(), to.y()));
  const QPointF most(std::max(from.x(), to.x()), std::max(from.y(), to.y()));
  // The whole pixels that the line covers most of.
  const double across = std::round((upright ? from.x() : from.y()) - thick / 2);
  const QRectF box = upright ? QRectF(QPointF(across, least.y()), QPointF(across + thick, most.y()))
                             : QRectF(QPointF(least.x(), across), QPointF(most.x(), across + thick));
  FillBox(box, ToQColor(colour));
}

std::span<const QPointF> QtLayer::Map(const Path& path, const QTransform& toDevice, double margin) {
  mapped_.clear();
  for (const Point& point : path.points) mapped_.push_back(toDevice.map(QPointF(point.x, point.y)));
  if (!Touch(mapped_, margin)) return {};
  return mapped_;
}

namespace {

// Adds a step to a painter's path and moves on to the next one's points.
void AddStep(QPainterPath& path, Path::Step step, const QPointF*& point) {
  switch (step) {
    case Path::Step::Move:
      path.moveTo(*point++);
      break;
    case Path::Step::Line:
      path.lineTo(*point++);
      break;
    case Path::Step::Curve:
      path.cubicTo(point[0], point[1], point[2]);
      point += 3;
      break;
  }
}

}  // namespace

void QtLayer::StrokePath(const Path& path, const QTransform& toDevice, ColourValue colour, double width) {
  const std::span<const QPointF> points = Map(path, toDevice, width / 2 + 1);
  if (points.empty()) return;
  UsePen(colour, width);
  const QPointF* point = points.data();
  QPainterPath part;
  const int most = width <= kThinLine ? kMostThinSteps : kMostWideSteps;
  int steps = 0;
  for (const Path::Step step : path.steps) {
    if (steps == most) {
      const QPointF end = part.currentPosition();
      painter_.drawPath(part);
      part.clear();
      part.moveTo(end);
      steps = 0;
    }
    AddStep(part, step, point);
    ++steps;
  }
  painter_.drawPath(part);
}

void QtLayer::FillPath(const Path& path, const QTransform& toDevice, ColourValue colour) {
  const std::span<const QPointF> points = Map(path, toDevice, 1);
  if (points.empty()) return;
  const QPointF* point = points.data();
  QPainterPath area;
  area.setFillRule(Qt::WindingFill);
  for (const Path::Step step : path.steps) AddStep(area, step, point);
  Painter().fillPath(area, ToQColor(colour));
}

void QtLayer::DrawText(const ScreenFace& face, double em, std::string_view codes,
                       std::span<const QPointF> origins, ColourValue colour) {
  if (!(em > 0 && em <= kLargestEm) || !Touch(origins, em * kGlyphReach)) return;
  QtFace& font = FaceFor(face);
  if (em > kLargestImageEm) {
    DrawOutlines(font, em, codes, origins, colour);
  } else {
    DrawGlyphs(font, em, codes, origins, colour);
  }
}

void QtLayer::DrawGlyphs(QtFace& face, double em, std::string_view codes, std::span<const QPointF> origins,
                         ColourValue colour) {
  constexpr int kSteps = GlyphImages::kSteps;
  constexpr double kHalfStep = 0.5 / kSteps;
  GlyphImages& images = face.At(em);
  const QRectF reached = Reached(em);
  const QRgb rgb = ToQColor(colour).rgb();
  for (std::size_t i = 0; i < codes.size(); ++i) {
    const auto code = static_cast<unsigned char>(codes[i]);
    if (face.Glyph(code) == 0 || !reached.contains(origins[i])) continue;
    const double x = origins[i].x() + kHalfStep;
    const double y = origins[i].y() + kHalfStep;
    const int pixelX = static_cast<int>(std::floor(x));
    const int pixelY = static_cast<int>(std::floor(y));
    const GlyphImage& glyph = images.At(face, code, static_cast<int>((x - pixelX) * kSteps),
                                        static_cast<int>((y - pixelY) * kSteps));
    BlendGlyph(image_, clip_, pixelX, pixelY, glyph, rgb);
  }
}

QRectF QtLayer::Reached(double em) const {
  const double reach = em * kGlyphReach;
  return QRectF(clip_).adjusted(-reach, -reach, reach, reach);
}

void QtLayer::DrawOutlines(QtFace& face, double em, std::string_view codes, std::span<const QPointF> origins,
                           ColourValue colour) {
  QPainter& painter = Painter();
  const QBrush brush(ToQColor(colour));
  const double scale = em / QtFace::kOutlineEm;
  const QRectF reached = Reached(em);
  for (std::size_t i = 0; i < codes.size(); ++i) {
    const auto code = static_cast<unsigned char>(codes[i]);
    if (face.Glyph(code) == 0 || !reached.contains(origins[i])) continue;
    const QPainterPath& outline = face.Outline(code);
    const QTransform place(scale, 0, 0, scale, origins[i].x(), origins[i].y());
    if (!place.mapRect(outline.boundingRect()).intersects(QRectF(image_.rect()))) continue;
    painter.setTransform(place);
    painter.fillPath(outline, brush);
  }
  painter.resetTransform();
}

}  // namespace kelvane
