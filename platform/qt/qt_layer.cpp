#include "platform/qt/qt_layer.h"

#include <QPainter>
#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <utility>

#include "platform/qt/qt_fonts.h"
#include "platform/qt/qt_glyphs.h"

namespace kelvane {
namespace {

// Up to this em, in device pixels, characters come from ready-made images; those of larger ones would take
// more memory than they save time.
constexpr double kLargestImageEm = 128;
// Beyond this em, in device pixels, no letter can be told from a stain, and filling one takes ever longer.
constexpr double kLargestEm = 32000;
// How far ink may lie from a character's origin, in ems.
constexpr double kGlyphReach = 1.5;

// The nearest edge between pixels.
int EdgeAt(int position) {
  return static_cast<int>(std::floor(static_cast<double>(position) / kPixel + 0.5));
}

// The pixels within a distance of any of the points.
QRect Around(std::span<const FixedPoint> points, double reach) {
  FixedPoint least = points[0], most = least;
  for (const FixedPoint& point : points) {
    least = {std::min(least.x, point.x), std::min(least.y, point.y)};
    most = {std::max(most.x, point.x), std::max(most.y, point.y)};
  }
  const int margin = static_cast<int>(std::ceil(reach)) + 1;
  return QRect(QPoint(least.x / kPixel, least.y / kPixel), QPoint(most.x / kPixel, most.y / kPixel))
      .adjusted(-margin, -margin, margin, margin);
}

// An image that shows nothing. Its rows come from the machine cleared, and only those take room that are
// drawn on, which above a page are few.
QImage EmptyImage(QSize size) {
  const qsizetype row = size.width() * qsizetype{sizeof(QRgb)};
  void* const rows = std::calloc(static_cast<std::size_t>(size.height()), static_cast<std::size_t>(row));
  return QImage(static_cast<uchar*>(rows), size.width(), size.height(), row,
                QImage::Format_ARGB32_Premultiplied, std::free, rows);
}

}  // namespace

void QtLayer::Resize(QSize size, const QColor& background) {
  clip_ = QRect(QPoint(0, 0), size);
  image_ = opaque_ ? QImage(size, QImage::Format_RGB32) : EmptyImage(size);
  if (opaque_ && !image_.isNull()) image_.fill(background);
  inked_ = QRect();
  dirty_ = image_.rect();
}

QRect QtLayer::TakeDirty() {
  return std::exchange(dirty_, QRect());
}

void QtLayer::SetClip(const QRect& clip) {
  clip_ = clip.isNull() ? image_.rect() : clip & image_.rect();
}

void QtLayer::Clear(const QColor& background) {
  if (image_.isNull()) return;
  const QRect cleared = opaque_ ? clip_ : clip_ & inked_;
  if (!cleared.isEmpty()) {
    FillPixels(cleared, opaque_ ? background.rgb() : QRgb{0});
    dirty_ |= cleared;
  }
  if (clip_ == image_.rect()) inked_ = QRect();
}

void QtLayer::Move(QPoint by) {
  const QRect kept = image_.rect().translated(by) & image_.rect();
  dirty_ = image_.rect();
  inked_ = inked_.translated(by) & image_.rect();
  uchar* const bits = image_.bits();
  const qsizetype stride = image_.bytesPerLine();
  constexpr auto kBytes = static_cast<qsizetype>(sizeof(QRgb));
  // In the order in which no row is written before it was read.
  for (int i = 0; i < kept.height(); ++i) {
    const int y = by.y() > 0 ? kept.bottom() - i : kept.top() + i;
    std::memmove(bits + y * stride + kept.left() * kBytes,
                 bits + (y - by.y()) * stride + (kept.left() - by.x()) * kBytes,
                 static_cast<std::size_t>(kept.width() * kBytes));
  }
}

bool QtLayer::Touch(const QRect& box) {
  const QRect touched = box & clip_;
  if (touched.isEmpty()) return false;
  inked_ |= touched;
  dirty_ |= touched;
  return true;
}

bool QtLayer::Touch(std::span<const FixedPoint> points, double reach) {
  return !points.empty() && Touch(Around(points, reach));
}

void QtLayer::FillPixels(const QRect& box, QRgb colour) {
  uchar* const bits = image_.bits();
  for (int y = box.top(); y <= box.bottom(); ++y) {
    auto* const row = reinterpret_cast<QRgb*>(bits + y * image_.bytesPerLine());
    std::fill_n(row + box.left(), box.width(), colour);
  }
}

void QtLayer::FillBox(FixedPoint from, FixedPoint to, QRgb colour) {
  const int left = EdgeAt(std::min(from.x, to.x)), top = EdgeAt(std::min(from.y, to.y));
  const int right = std::max(EdgeAt(std::max(from.x, to.x)), left + 1);
  const int bottom = std::max(EdgeAt(std::max(from.y, to.y)), top + 1);
  const QRect box(QPoint(left, top), QPoint(right - 1, bottom - 1));
  if (Touch(box)) FillPixels(box & clip_, colour);
}

void QtLayer::DrawLine(FixedPoint from, FixedPoint to, QRgb colour, double width, bool crisp) {
  const bool upright = from.x == to.x;
  if (!crisp || upright == (from.y == to.y)) {
    const FixedPoint points[] = {from, to};
    if (!Touch(points, width / 2)) return;
    lines_.Clear();
    lines_.MoveTo(from);
    lines_.LineTo(to);
    Stroke(colour, width);
    return;
  }
  // The whole pixels that the line covers most of.
  const int thick = std::max(static_cast<int>(std::lround(width)), 1) * kPixel;
  (upright ? from.x : from.y) = EdgeAt((upright ? from.x : from.y) - thick / 2) * kPixel;
  (upright ? to.x : to.y) = (upright ? from.x : from.y) + thick;
  FillBox(from, to, colour);
}

void QtLayer::Take(const Path& path, std::span<const FixedPoint> points) {
  lines_.Clear();
  const FixedPoint* point = points.data();
  for (const Path::Step step : path.steps) {
    switch (step) {
      case Path::Step::Move:
        lines_.MoveTo(*point++);
        break;
      case Path::Step::Line:
        lines_.LineTo(*point++);
        break;
      case Path::Step::Curve:
        lines_.CurveTo(point[0], point[1], point[2]);
        point += 3;
        break;
    }
  }
}

void QtLayer::Stroke(QRgb colour, double width) {
  area_.Clear();
  AddStroke(area_, lines_, width);
  Fill(area_, {}, colour);
}

void QtLayer::Fill(const FlatPath& area, FixedPoint shift, QRgb colour) {
  uchar* const bits = image_.bits();
  const qsizetype stride = image_.bytesPerLine();
  // The picture is larger than the processor's caches, and most shapes go on below.
  constexpr int kRowsAhead = 8;
  coverage_.Cover(area, shift, clip_, [&](int y, int x, const uchar* covered, int count) {
    auto* const pixels = reinterpret_cast<QRgb*>(bits + y * stride) + x;
    __builtin_prefetch(reinterpret_cast<uchar*>(pixels) + kRowsAhead * stride, 1);
    BlendRow(pixels, covered, count, colour);
  });
}

void QtLayer::StrokePath(const Path& path, std::span<const FixedPoint> points, QRgb colour, double width) {
  if (!Touch(points, width / 2)) return;
  Take(path, points);
  Stroke(colour, width);
}

void QtLayer::FillPath(const Path& path, std::span<const FixedPoint> points, QRgb colour) {
  if (!Touch(points, 0)) return;
  Take(path, points);
  Fill(lines_, {}, colour);
}

void QtLayer::DrawText(const ScreenFace& face, double em, std::string_view codes,
                       std::span<const FixedPoint> origins, QRgb colour) {
  if (!(em > 0 && em <= kLargestEm) || !Touch(origins, em * kGlyphReach)) return;
  QtFace& font = FaceFor(face);
  if (em > kLargestImageEm) {
    DrawOutlines(font, em, codes, origins, colour);
  } else {
    DrawGlyphs(font, em, codes, origins, colour);
  }
}

void QtLayer::DrawImage(const QImage& picture, FixedPoint corner) {
  const QPoint at(EdgeAt(corner.x), EdgeAt(corner.y));
  if (!Touch(QRect(at, picture.size()))) return;
  QPainter painter(&image_);
  painter.setClipRect(clip_);
  painter.drawImage(at, picture);
}

void QtLayer::DrawGlyphs(QtFace& face, double em, std::string_view codes, std::span<const FixedPoint> origins,
                         QRgb colour) {
  constexpr int kStep = kPixel / GlyphImages::kSteps;
  GlyphImages& images = ImagesOf(face, em);
  const int reach = static_cast<int>(std::ceil(em * kGlyphReach)) + 1;
  const QRect reached = clip_.adjusted(-reach, -reach, reach, reach);
  for (std::size_t i = 0; i < codes.size(); ++i) {
    const auto code = static_cast<unsigned char>(codes[i]);
    const int x = origins[i].x + kStep / 2, y = origins[i].y + kStep / 2;
    const int pixelX = x >> 8, pixelY = y >> 8;
    if (face.Glyph(code) == 0 || !reached.contains(pixelX, pixelY)) continue;
    const GlyphImage& glyph = images.At(code, (x & (kPixel - 1)) / kStep, (y & (kPixel - 1)) / kStep);
    BlendGlyph(image_, clip_, pixelX, pixelY, glyph, colour);
  }
}

void QtLayer::DrawOutlines(QtFace& face, double em, std::string_view codes,
                           std::span<const FixedPoint> origins, QRgb colour) {
  GlyphImages& images = ImagesOf(face, em);
  for (std::size_t i = 0; i < codes.size(); ++i) {
    const auto code = static_cast<unsigned char>(codes[i]);
    if (face.Glyph(code) == 0 || !Around(origins.subspan(i, 1), em * kGlyphReach).intersects(clip_)) continue;
    Fill(images.Outline(code), origins[i], colour);
  }
}

}  // namespace kelvane
