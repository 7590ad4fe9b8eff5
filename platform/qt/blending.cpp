#include "platform/qt/blending.h"

#include <cstdint>
#include <cstring>

#ifdef __SSE2__
#include <immintrin.h>
#endif

namespace kelvane {
namespace {

// `over` with the given coverage on top of `under`, all four channels at once, two in each product.
[[gnu::always_inline]] inline QRgb BlendOne(QRgb under, QRgb over, unsigned coverage) {
  const auto mix = [coverage](unsigned below, unsigned above) {
    const unsigned sum = above * coverage + below * (255 - coverage);
    return (sum + ((sum >> 8) & 0xFF00FFU) + 0x800080U) >> 8 & 0xFF00FFU;
  };
  return mix(under & 0xFF00FFU, over & 0xFF00FFU) | mix(under >> 8 & 0xFF00FFU, over >> 8 & 0xFF00FFU) << 8;
}

[[gnu::always_inline]] inline void BlendPixels(QRgb* pixels, const uchar* coverage, int count, QRgb colour) {
  for (int i = 0; i < count; ++i) {
    const unsigned here = coverage[i];
    if (here == 255) {
      pixels[i] = colour;
    } else if (here != 0) {
      pixels[i] = BlendOne(pixels[i], colour, here);
    }
  }
}

template <typename Row>
void ForRows(CoveredRows rows, Row row) {
  for (; rows.rows > 0; --rows.rows, rows.pixels += rows.stride, rows.coverage += rows.coverageStride)
    row(rows.pixels, rows.coverage);
}

void BlendPlainly(const CoveredRows& rows, QRgb colour) {
  ForRows(rows,
          [&](QRgb* pixels, const uchar* coverage) { BlendPixels(pixels, coverage, rows.count, colour); });
}

#ifdef __SSE2__
// What BlendOne does, in eight lanes of 16 bits twice. `over` is the colour in such lanes. A call from the
// form with more lanes would cost more than the blending.
[[gnu::always_inline]] inline void BlendFour(QRgb* pixels, std::uint32_t coverage, __m128i over) {
  const __m128i zero = _mm_setzero_si128(), all = _mm_set1_epi16(255), half = _mm_set1_epi16(128);
  const auto mix = [&](__m128i below, __m128i covered) {
    const __m128i sum =
        _mm_add_epi16(_mm_mullo_epi16(over, covered), _mm_mullo_epi16(below, _mm_sub_epi16(all, covered)));
    return _mm_srli_epi16(_mm_add_epi16(_mm_add_epi16(sum, _mm_srli_epi16(sum, 8)), half), 8);
  };
  // Each pixel's coverage four times, once for each of its channels.
  __m128i each = _mm_cvtsi32_si128(static_cast<int>(coverage));
  each = _mm_unpacklo_epi8(each, each);
  each = _mm_unpacklo_epi16(each, each);
  auto* const place = reinterpret_cast<__m128i*>(pixels);
  const __m128i under = _mm_loadu_si128(place);
  _mm_storeu_si128(place,
                   _mm_packus_epi16(mix(_mm_unpacklo_epi8(under, zero), _mm_unpacklo_epi8(each, zero)),
                                    mix(_mm_unpackhi_epi8(under, zero), _mm_unpackhi_epi8(each, zero))));
}

// Of a row from a pixel on.
[[gnu::always_inline]] inline void BlendByFours(QRgb* pixels, const uchar* coverage, int i, int count,
                                                QRgb colour, __m128i over) {
  for (; i + 4 <= count; i += 4) {
    std::uint32_t covered;
    std::memcpy(&covered, coverage + i, sizeof covered);
    if (covered == 0xFFFFFFFFU) {
      _mm_storeu_si128(reinterpret_cast<__m128i*>(pixels + i), _mm_set1_epi32(static_cast<int>(colour)));
    } else if (covered != 0) {
      BlendFour(pixels + i, covered, over);
    }
  }
  BlendPixels(pixels + i, coverage + i, count - i, colour);
}

[[gnu::always_inline]] inline __m128i InLanes(QRgb colour) {
  return _mm_unpacklo_epi8(_mm_set1_epi32(static_cast<int>(colour)), _mm_setzero_si128());
}

void BlendWithSse2(const CoveredRows& rows, QRgb colour) {
  const __m128i over = InLanes(colour);
  ForRows(rows, [&](QRgb* pixels, const uchar* coverage) {
    BlendByFours(pixels, coverage, 0, rows.count, colour, over);
  });
}

// The same with twice as many lanes.
__attribute__((target("avx2"))) void BlendWithAvx2(const CoveredRows& rows, QRgb colour) {
  const __m128i over = InLanes(colour);
  const __m256i overTwice = _mm256_broadcastsi128_si256(over);
  const __m256i zero = _mm256_setzero_si256(), all = _mm256_set1_epi16(255), half = _mm256_set1_epi16(128);
  const __m256i spread = _mm256_setr_epi8(0, 0, 0, 0, 1, 1, 1, 1, 2, 2, 2, 2, 3, 3, 3, 3,  //
                                          4, 4, 4, 4, 5, 5, 5, 5, 6, 6, 6, 6, 7, 7, 7, 7);
  const auto mix = [&](__m256i below, __m256i covered) __attribute__((target("avx2"))) {
    const __m256i sum = _mm256_add_epi16(_mm256_mullo_epi16(overTwice, covered),
                                         _mm256_mullo_epi16(below, _mm256_sub_epi16(all, covered)));
    return _mm256_srli_epi16(_mm256_add_epi16(_mm256_add_epi16(sum, _mm256_srli_epi16(sum, 8)), half), 8);
  };
  QRgb* pixels = rows.pixels;
  const uchar* coverage = rows.coverage;
  for (int row = 0; row < rows.rows; ++row, pixels += rows.stride, coverage += rows.coverageStride) {
    int i = 0;
    for (; i + 8 <= rows.count; i += 8) {
      std::uint64_t covered;
      std::memcpy(&covered, coverage + i, sizeof covered);
      auto* const place = reinterpret_cast<__m256i*>(pixels + i);
      if (covered == ~std::uint64_t{0}) {
        _mm256_storeu_si256(place, _mm256_set1_epi32(static_cast<int>(colour)));
      } else if (covered != 0) {
        const __m256i each = _mm256_shuffle_epi8(_mm256_set1_epi64x(static_cast<long long>(covered)), spread);
        const __m256i under = _mm256_loadu_si256(place);
        _mm256_storeu_si256(
            place,
            _mm256_packus_epi16(mix(_mm256_unpacklo_epi8(under, zero), _mm256_unpacklo_epi8(each, zero)),
                                mix(_mm256_unpackhi_epi8(under, zero), _mm256_unpackhi_epi8(each, zero))));
      }
    }
    if (i < rows.count) BlendByFours(pixels, coverage, i, rows.count, colour, over);
  }
}
#endif

}  // namespace

std::span<const BlendForm> BlendForms() {
#ifdef __SSE2__
  static constexpr BlendForm kForms[] = {BlendPlainly, BlendWithSse2, BlendWithAvx2};
  static const std::size_t usable = __builtin_cpu_supports("avx2") ? 3 : 2;
#else
  static constexpr BlendForm kForms[] = {BlendPlainly};
  static constexpr std::size_t usable = 1;
#endif
  return std::span(kForms).first(usable);
}

void Blend(const CoveredRows& rows, QRgb colour) {
  static const BlendForm best = BlendForms().back();
  best(rows, colour);
}

}  // namespace kelvane
