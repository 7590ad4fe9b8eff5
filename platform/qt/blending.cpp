#include "platform/qt/blending.h"

#include <cstdint>
#include <cstring>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace kelvane {
namespace {

constexpr int kTogether = 4;  // pixels

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
  BlendRows(pixels, 0, coverage, 0, count, 1, colour);
}

void BlendRows(QRgb* pixels, std::ptrdiff_t stride, const uchar* coverage, std::ptrdiff_t coverageStride,
               int count, int rows, QRgb colour) {
  const int whole = count / kTogether * kTogether;
#ifdef __SSE2__
  const __m128i four = _mm_set1_epi32(static_cast<int>(colour));
  const __m128i over = _mm_unpacklo_epi8(four, _mm_setzero_si128());
#endif
  for (; rows > 0; --rows, pixels += stride, coverage += coverageStride) {
#ifdef __SSE2__
    for (int i = 0; i < whole; i += kTogether) {
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
#else
    BlendRowPlainly(pixels, coverage, whole, colour);
#endif
    if (whole < count) BlendRowPlainly(pixels + whole, coverage + whole, count - whole, colour);
  }
}

}  // namespace kelvane
