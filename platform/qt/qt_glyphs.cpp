#include "platform/qt/qt_glyphs.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <list>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

#include "platform/qt/qt_fonts.h"
#include "platform/qt/qt_outlines.h"

namespace kelvane {
namespace {

// `over` with the given coverage on top of `under`, all four channels at once, two in each product.
QRgb Blend(QRgb under, QRgb over, unsigned coverage) {
  const auto mix = [coverage](unsigned below, unsigned above) {
    const unsigned sum = above * coverage + below * (255 - coverage);
    return (sum + ((sum >> 8) & 0xFF00FFU) + 0x800080U) >> 8 & 0xFF00FFU;
  };
  return mix(under & 0xFF00FFU, over & 0xFF00FFU) | mix(under >> 8 & 0xFF00FFU, over >> 8 & 0xFF00FFU) << 8;
}

#ifdef __SSE2__
// Blends four pixels; what Blend does, in eight lanes of 16 bits twice.
__m128i BlendFour(__m128i under, __m128i over, __m128i coverage) {
  const __m128i all = _mm_set1_epi16(255), half = _mm_set1_epi16(128);
  const auto mix = [&](__m128i below, __m128i above, __m128i covered) {
    const __m128i sum =
        _mm_add_epi16(_mm_mullo_epi16(above, covered), _mm_mullo_epi16(below, _mm_sub_epi16(all, covered)));
    return _mm_srli_epi16(_mm_add_epi16(_mm_add_epi16(sum, _mm_srli_epi16(sum, 8)), half), 8);
  };
  const __m128i zero = _mm_setzero_si128();
  return _mm_packus_epi16(mix(_mm_unpacklo_epi8(under, zero), over, _mm_unpacklo_epi8(coverage, zero)),
                          mix(_mm_unpackhi_epi8(under, zero), over, _mm_unpackhi_epi8(coverage, zero)));
}
#endif

// The outline of a code at an em in pixels.
FlatPath OutlineOf(QtFace& face, unsigned char code, double em) {
  const double scale = em / QtFace::kOutlineEm;
  FlatPath shape;
  AddOutline(shape, face.Outline(code), [scale](const QPainterPath::Element& element) {
    return ToFixed(element.x * scale, element.y * scale);
  });
  return shape;
}

std::size_t heldBytes = 0;

}  // namespace

void BlendRowPlainly(QRgb* pixels, const uchar* coverage, int count, QRgb colour) {
  for (int i = 0; i < count; ++i) {
    const unsigned here = coverage[i];
    if (here == 255) {
      pixels[i] = colour;
    } else if (here != 0) {
      pixels[i] = Blend(pixels[i], colour, here);
    }
  }
}

void BlendRow(QRgb* pixels, const uchar* coverage, int count, QRgb colour) {
  int i = 0;
#ifdef __SSE2__
  const __m128i four = _mm_set1_epi32(static_cast<int>(colour));
  const __m128i over = _mm_unpacklo_epi8(four, _mm_setzero_si128());
  for (; i + 4 <= count; i += 4) {
    std::uint32_t covered;
    std::memcpy(&covered, coverage + i, sizeof covered);
    if (covered == 0) continue;
    auto* const place = reinterpret_cast<__m128i*>(pixels + i);
    if (covered == 0xFFFFFFFFU) {
      _mm_storeu_si128(place, four);
      continue;
    }
    // Each pixel's coverage four times, once for each of its channels.
    __m128i each = _mm_cvtsi32_si128(static_cast<int>(covered));
    each = _mm_unpacklo_epi8(each, each);
    each = _mm_unpacklo_epi16(each, each);
    _mm_storeu_si128(place, BlendFour(_mm_loadu_si128(place), over, each));
  }
#endif
  BlendRowPlainly(pixels + i, coverage + i, count - i, colour);
}

GlyphImages::GlyphImages(QtFace& face, double em) : face_(face), em_(em), bytes_(sizeof(GlyphImages)) {
  heldBytes += bytes_;
}

GlyphImages::~GlyphImages() {
  heldBytes -= bytes_;
}

std::size_t GlyphImages::Held() {
  return heldBytes;
}

void GlyphImages::Make(GlyphImage& image, const FlatPath& outline, FixedPoint shift) {
  static Coverage& coverage = *new Coverage;
  constexpr int kGroup = 4;  // pixels that are blended together: rows end with a whole one
  image.made = true;
  if (outline.Empty()) return;
  const QRect box = outline.Bounds().adjusted(0, 0, 1, 1);
  image.left = box.left();
  image.top = box.top();
  image.width = (box.width() + kGroup - 1) / kGroup * kGroup;
  image.height = box.height();
  image.coverage.resize(static_cast<std::size_t>(image.width) * static_cast<std::size_t>(image.height));
  coverage.Cover(outline, shift, box, [&](int y, int x, const uchar* covered, int count) {
    uchar* const row = image.coverage.data() + static_cast<std::ptrdiff_t>(y - image.top) * image.width;
    std::copy_n(covered, count, row + x - image.left);
  });
}

GlyphImages::Glyph& GlyphImages::Of(unsigned char code) {
  std::unique_ptr<Glyph>& glyph = glyphs_[code];
  if (glyph == nullptr) {
    glyph = std::make_unique<Glyph>();
    glyph->outline = OutlineOf(face_, code, em_);
    Hold(sizeof(Glyph) + glyph->outline.Points().size_bytes());
  }
  return *glyph;
}

const GlyphImage& GlyphImages::At(unsigned char code, int stepX, int stepY) {
  Glyph& glyph = Of(code);
  GlyphImage& image =
      glyph.images[static_cast<std::size_t>(stepY) * kSteps + static_cast<std::size_t>(stepX)];
  if (!image.made) {
    constexpr int kStep = kPixel / kSteps;
    Make(image, glyph.outline, {stepX * kStep, stepY * kStep});
    Hold(image.coverage.capacity());
  }
  return image;
}

void GlyphImages::Hold(std::size_t bytes) {
  bytes_ += bytes;
  heldBytes += bytes;
}

GlyphImages& ImagesOf(QtFace& face, double em) {
  struct Size {
    Size(QtFace& of, int size) : face(&of), em(size), images(of, size / 64.0) {}
    const QtFace* face;
    int em;  // 1/64 pixel
    GlyphImages images;
  };
  // The one used last in front. Most calls find theirs among the first few.
  static std::list<Size>& sizes = *new std::list<Size>;
  const int size = static_cast<int>(std::lround(em * 64));
  const auto found = std::find_if(sizes.begin(), sizes.end(),
                                  [&](const Size& kept) { return kept.em == size && kept.face == &face; });
  if (found == sizes.end()) {
    sizes.emplace_front(face, size);
  } else if (found != sizes.begin()) {
    sizes.splice(sizes.begin(), sizes, found);
  }
  while (GlyphImages::Held() > GlyphImages::kMostHeld && sizes.size() > 1) sizes.pop_back();
  return sizes.front().images;
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
    const uchar* const coverage = glyph.coverage.data() + static_cast<std::ptrdiff_t>(row) * glyph.width;
    BlendRow(bits + (top + row) * stride + left + firstColumn, coverage + firstColumn,
             lastColumn - firstColumn, colour);
  }
}

}  // namespace kelvane
