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

constexpr double kFarthestReach = 1 << 28;

// The nearest edge between pixels.
int EdgeAt(int position) {
  return static_cast<int>(std::floor(static_cast<double>(position) / kPixel + 0.5));
}

// The pixels within a distance of any of the points; none without points.
QRect Around(std::span<const FixedPoint> points, double reach) {
  if (points.empty()) return {};
  FixedPoint least = points[0], most = least;
  for (const FixedPoint& point : points) {
    least = {std::min(least.x, point.x), std::min(least.y, point.y)};
    most = {std::max(most.x, point.x), std::max(most.y, point.y)};
  }
  const int margin = static_cast<int>(std::ceil(std::min(reach, kFarthestReach))) + 1;
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

void QtLayer::Resize(QSize size) {
  clip_ = QRect(QPoint(0, 0), size);
  memory_.reset();
  image_ = opaque_ ? QImage(size, QImage::Format_RGB32) : EmptyImage(size);
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
    dirty_ |= cleared;
    Put({.kind = Ink::Kind::Box, .colour = opaque_ ? background.rgb() : QRgb{0}, .box = cleared});
  }
  if (clip_ == image_.rect()) inked_ = QRect();
}

void QtLayer::Move(QPoint by) {
  dirty_ = image_.rect();
  inked_ = inked_.translated(by) & image_.rect();
  // Pixels go on behind each other from row to row, so all of them move when the image begins elsewhere.
  const auto width = static_cast<std::ptrdiff_t>(image_.width());
  const std::ptrdiff_t all = image_.height() * width, room = all / 2, way = by.y() * width + by.x();
  const auto beginAt = [this](QRgb* start) {
    image_ = QImage(reinterpret_cast<uchar*>(start), image_.width(), image_.height(), image_.bytesPerLine(),
                    image_.format());
  };
  QRgb* const from = reinterpret_cast<QRgb*>(image_.bits());
  if (memory_ != nullptr) {
    const std::ptrdiff_t start = from - memory_.get() - way;
    if (start >= 0 && start <= room) return beginAt(memory_.get() + start);
  }
  const QImage before = image_;
  if (memory_ == nullptr)
    memory_ = std::make_unique_for_overwrite<QRgb[]>(static_cast<std::size_t>(all + room));
  // What goes on moving that way has all of the room before it.
  QRgb* const to = memory_.get() + (way > 0 ? room : 0);
  const std::ptrdiff_t kept = all - std::abs(way);
  if (kept > 0)
    std::memmove(to + std::max<std::ptrdiff_t>(way, 0), from - std::min<std::ptrdiff_t>(way, 0),
                 static_cast<std::size_t>(kept) * sizeof(QRgb));
  beginAt(to);
}

bool QtLayer::Touch(const QRect& box) {
  const QRect touched = box & clip_;
  if (touched.isEmpty()) return false;
  inked_ |= touched;
  dirty_ |= touched;
  return true;
}

PixelRows QtLayer::ImageRows() {
  return {reinterpret_cast<QRgb*>(image_.bits()),
          static_cast<std::ptrdiff_t>(image_.bytesPerLine() / static_cast<qsizetype>(sizeof(QRgb)))};
}

void QtLayer::Collect() {
  collecting_ = !image_.isNull();
  if (collecting_) collector_.Begin(ImageRows(), clip_);
}

void QtLayer::PaintCollected() {
  if (!std::exchange(collecting_, false)) return;
  collector_.Finish();
  TrimGlyphImages();
}

void QtLayer::Put(const Ink& ink) {
  if (collecting_) {
    collector_.Add(ink);
  } else {
    painter_.Paint(ink, ImageRows(), clip_);
    TrimGlyphImages();
  }
}

void QtLayer::FillBox(FixedPoint from, FixedPoint to, QRgb colour) {
  const int left = EdgeAt(std::min(from.x, to.x)), top = EdgeAt(std::min(from.y, to.y));
  const int right = std::max(EdgeAt(std::max(from.x, to.x)), left + 1);
  const int bottom = std::max(EdgeAt(std::max(from.y, to.y)), top + 1);
  const QRect box(QPoint(left, top), QPoint(right - 1, bottom - 1));
  if (Touch(box)) Put({.kind = Ink::Kind::Box, .colour = colour, .box = box});
}

void QtLayer::DrawLine(FixedPoint from, FixedPoint to, QRgb colour, double width, bool crisp) {
  const bool upright = from.x == to.x;
  if (!crisp || upright == (from.y == to.y)) {
    static const Path line{{Path::Step::Move, Path::Step::Line}, {}};
    const FixedPoint points[] = {from, to};
    StrokePath(line, points, colour, width);
    return;
  }
  // The whole pixels that the line covers most of.
  const int thick = std::max(static_cast<int>(std::lround(width)), 1) * kPixel;
  (upright ? from.x : from.y) = EdgeAt((upright ? from.x : from.y) - thick / 2) * kPixel;
  (upright ? to.x : to.y) = (upright ? from.x : from.y) + thick;
  FillBox(from, to, colour);
}

void QtLayer::StrokePath(const Path& path, std::span<const FixedPoint> points, QRgb colour, double width) {
  const QRect box = Around(points, width / 2);
  if (!Touch(box)) return;
  Put({.kind = Ink::Kind::Stroke,
       .colour = colour,
       .box = box,
       .width = width,
       .points = points,
       .steps = path.steps});
}

void QtLayer::FillPath(const Path& path, std::span<const FixedPoint> points, QRgb colour) {
  const QRect box = Around(points, 0);
  if (!Touch(box)) return;
  Put({.kind = Ink::Kind::Fill, .colour = colour, .box = box, .points = points, .steps = path.steps});
}

void QtLayer::DrawText(const ScreenFace& face, double em, std::string_view codes,
                       std::span<const FixedPoint> origins, QRgb colour) {
  if (!(em > 0 && em <= kLargestEm)) return;
  const QRect box = Around(origins, em * kGlyphReach);
  if (!Touch(box)) return;
  PutCharacters(PreparedImages(FaceFor(face), em, codes), box, codes, origins, colour);
}

void QtLayer::DrawGlyph(const GlyphLines& glyph, double em, double ratio, FixedPoint origin, QRgb colour) {
  if (!(em > 0 && em <= kLargestEm)) return;
  GlyphImages& images = PreparedImages(glyph, em, ratio);
  const char code = static_cast<char>(glyph.code);
  // Half a step to the right or down at most.
  const QRect box = images.Bounds(static_cast<unsigned char>(code))
                        .translated(origin.x >> 8, origin.y >> 8)
                        .adjusted(0, 0, 1, 1);
  if (Touch(box)) PutCharacters(images, box, {&code, 1}, {&origin, 1}, colour);
}

void QtLayer::PutCharacters(GlyphImages& images, const QRect& box, std::string_view codes,
                            std::span<const FixedPoint> origins, QRgb colour) {
  Put({.kind = images.Em() > kLargestImageEm ? Ink::Kind::Outlines : Ink::Kind::Glyphs,
       .colour = colour,
       .box = box,
       .points = origins,
       .codes = codes,
       .images = &images});
}

void QtLayer::DrawImage(const QImage& picture, FixedPoint corner) {
  const QPoint at(EdgeAt(corner.x), EdgeAt(corner.y));
  if (!Touch(QRect(at, picture.size()))) return;
  const bool collecting = collecting_;
  PaintCollected();
  QPainter painter(&image_);
  painter.setClipRect(clip_);
  painter.drawImage(at, picture);
  painter.end();
  if (collecting) Collect();
}

}  // namespace kelvane
