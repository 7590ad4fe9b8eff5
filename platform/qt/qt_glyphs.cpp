#include "platform/qt/qt_glyphs.h"

#include <QPainter>
#include <algorithm>

#include "platform/qt/qt_fonts.h"

namespace kelvane {
namespace {

GlyphImage Rasterise(const QPainterPath& outline, const QTransform& place) {
  GlyphImage glyph;
  glyph.made = true;
  const QRect box = place.map(outline).controlPointRect().toAlignedRect();
  if (box.isEmpty()) return glyph;
  QImage image(box.size(), QImage::Format_Alpha8);
  image.fill(0);
  QPainter painter(&image);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setTransform(place * QTransform::fromTranslate(-box.left(), -box.top()));
  painter.fillPath(outline, Qt::black);
  painter.end();
  glyph.left = box.left();
  glyph.top = box.top();
  glyph.width = box.width();
  glyph.height = box.height();
  glyph.coverage.reserve(static_cast<std::size_t>(glyph.width) * static_cast<std::size_t>(glyph.height));
  for (int row = 0; row < glyph.height; ++row) {
    const uchar* line = image.constScanLine(row);
    glyph.coverage.insert(glyph.coverage.end(), line, line + glyph.width);
  }
  return glyph;
}

// `over` with the given coverage on top of `under`, all four channels at once, two in each product.
QRgb Blend(QRgb under, QRgb over, unsigned coverage) {
  const auto mix = [coverage](unsigned below, unsigned above) {
    const unsigned sum = above * coverage + below * (255 - coverage);
    return (sum + ((sum >> 8) & 0xFF00FFU) + 0x800080U) >> 8 & 0xFF00FFU;
  };
  return mix(under & 0xFF00FFU, over & 0xFF00FFU) | mix(under >> 8 & 0xFF00FFU, over >> 8 & 0xFF00FFU) << 8;
}

std::size_t heldBytes = 0;

}  // namespace

GlyphImages::GlyphImages(double em) : em_(em), bytes_(sizeof(GlyphImages)) {
  heldBytes += bytes_;
}

GlyphImages::~GlyphImages() {
  heldBytes -= bytes_;
}

std::size_t GlyphImages::Held() {
  return heldBytes;
}

const GlyphImage& GlyphImages::At(QtFace& face, unsigned char code, int stepX, int stepY) {
  std::unique_ptr<Positions>& positions = images_[code];
  const std::size_t before = bytes_;
  if (positions == nullptr) {
    positions = std::make_unique<Positions>();
    bytes_ += sizeof(Positions);
  }
  GlyphImage& glyph =
      (*positions)[static_cast<std::size_t>(stepY) * kSteps + static_cast<std::size_t>(stepX)];
  if (!glyph.made) {
    const double scale = em_ / QtFace::kOutlineEm;
    const double step = 1.0 / kSteps;
    glyph = Rasterise(face.Outline(code), QTransform(scale, 0, 0, scale, stepX * step, stepY * step));
    bytes_ += glyph.coverage.capacity();
  }
  heldBytes += bytes_ - before;
  return glyph;
}

void BlendGlyph(QImage& target, const QRect& clip, int x, int y, const GlyphImage& glyph, QRgb colour) {
  const int left = x + glyph.left;
  const int top = y + glyph.top;
  const int firstColumn = std::max(clip.left() - left, 0);
  const int lastColumn = std::min(glyph.width, clip.right() + 1 - left);
  const int firstRow = std::max(clip.top() - top, 0);
  const int lastRow = std::min(glyph.height, clip.bottom() + 1 - top);
  if (firstColumn >= lastColumn || firstRow >= lastRow) return;
  auto* const bits = reinterpret_cast<QRgb*>(target.bits());
  const qsizetype stride = target.bytesPerLine() / static_cast<qsizetype>(sizeof(QRgb));
  for (int row = firstRow; row < lastRow; ++row) {
    QRgb* const line = bits + (top + row) * stride + left;
    const uchar* const coverage = glyph.coverage.data() + static_cast<std::ptrdiff_t>(row) * glyph.width;
    for (int column = firstColumn; column < lastColumn; ++column) {
      const unsigned here = coverage[column];
      if (here == 255) {
        line[column] = colour;
      } else if (here != 0) {
        line[column] = Blend(line[column], colour, here);
      }
    }
  }
}

}  // namespace kelvane
