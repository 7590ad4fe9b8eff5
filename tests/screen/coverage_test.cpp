// Coverage of shapes, their strokes, and blending by vectors.

#include "platform/qt/coverage.h"

#include <gtest/gtest.h>

#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <functional>
#include <random>
#include <vector>

#include "platform/qt/blending.h"

namespace kelvane {
namespace {

constexpr int kSide = 120;

// Random lines and curves, and the same lines for Qt's painter.
struct Random {
  explicit Random(unsigned seed) {
    std::minstd_rand random(seed);
    std::uniform_real_distribution<double> place(-20, kSide + 20);
    const auto point = [&] {
      return ToFixed(std::round(place(random) * 64) / 64, std::round(place(random) * 64) / 64);
    };
    shape.MoveTo(point());
    for (int i = 0; i < 2; ++i) {
      shape.LineTo(point());
      const FixedPoint control1 = point(), control2 = point();
      shape.CurveTo(control1, control2, point());
    }
    for (const FixedPoint& at : shape.Points()) {
      const QPointF to(static_cast<double>(at.x) / kPixel, static_cast<double>(at.y) / kPixel);
      path.elementCount() == 0 ? path.moveTo(to) : path.lineTo(to);
    }
    path.setFillRule(Qt::WindingFill);
  }
  QPainterPath path;
  FlatPath shape;
};

QImage Covered(const FlatPath& shape, FixedPoint shift, const QRect& clip) {
  QImage image(kSide, kSide, QImage::Format_Grayscale8);
  image.fill(0);
  static Coverage coverage;  // one for all, as the canvas has it
  coverage.Cover(shape, shift, clip, [&](int y, int x, const unsigned char* covered, int count) {
    std::copy_n(covered, count, image.scanLine(y) + x);
  });
  return image;
}

QImage Painted(const std::function<void(QPainter&)>& paint) {
  QImage image(kSide, kSide, QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::black);
  QPainter painter(&image);
  painter.setRenderHint(QPainter::Antialiasing);
  paint(painter);
  painter.end();
  return image.convertToFormat(QImage::Format_Grayscale8);
}

// How many pixels differ by more than so much.
int Different(const QImage& one, const QImage& other, int most) {
  int different = 0;
  for (int y = 0; y < kSide; ++y) {
    for (int x = 0; x < kSide; ++x)
      different += std::abs(one.constScanLine(y)[x] - other.constScanLine(y)[x]) > most ? 1 : 0;
  }
  return different;
}

constexpr QRect kWhole(0, 0, kSide, kSide);

TEST(CoverageTest, AreasAndStrokesAreThoseOfThePainter) {
  for (unsigned seed = 1; seed <= 40; ++seed) {
    SCOPED_TRACE(seed);
    const Random given(seed);
    const QImage area = Painted([&](QPainter& painter) { painter.fillPath(given.path, Qt::white); });
    EXPECT_EQ(Different(Covered(given.shape, {}, kWhole), area, 8), 0);
    for (const double width : {1.5, 4.0, 11.0}) {
      const QImage line = Painted([&](QPainter& painter) {
        painter.strokePath(given.path, QPen(Qt::white, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
      });
      FlatPath stroke;
      Stroker().Add(stroke, given.shape, width);
      EXPECT_LE(Different(Covered(stroke, {}, kWhole), line, 40), 30) << width;
    }
  }
}

TEST(CoverageTest, StaysTheSameWhereverItLiesAndWhateverIsAskedFor) {
  for (unsigned seed = 1; seed <= 40; ++seed) {
    SCOPED_TRACE(seed);
    const Random given(seed);
    FlatPath shape;
    Stroker().Add(shape, given.shape, 0.7 + seed % 5);
    const QImage whole = Covered(shape, {}, kWhole);
    for (const QRect clip : {QRect(0, 0, 50, 30), QRect(31, 7, 1, 90), QRect(77, 64, 43, 56)})
      EXPECT_EQ(Covered(shape, {}, clip).copy(clip), whole.copy(clip));
    // Moved to where much of it is cut off, and the line itself moved before its width was known.
    const QImage moved = Covered(shape, {-35 * kPixel, 20 * kPixel}, kWhole);
    EXPECT_EQ(moved.copy(0, 20, kSide - 35, kSide - 20), whole.copy(35, 0, kSide - 35, kSide - 20));
    FlatPath lines;
    for (const FixedPoint& point : given.shape.Points()) {
      const FixedPoint at = {point.x - 35 * kPixel, point.y + 20 * kPixel};
      lines.Empty() ? lines.MoveTo(at) : lines.LineTo(at);
    }
    FlatPath stroke;
    Stroker().Add(stroke, lines, 0.7 + seed % 5);
    EXPECT_EQ(Covered(stroke, {}, kWhole), moved);
  }
}

// A line that goes on in pieces is as dark at their ends as between them.
TEST(CoverageTest, PiecesOfALineHaveNoSeams) {
  for (const double width : {1.0, 2.0, 3.5}) {
    FlatPath lines;
    lines.MoveTo(ToFixed(10, 60.5));
    for (double x = 16.3; x < 110; x += 6.3) lines.LineTo(ToFixed(x, 60.5));
    FlatPath stroke;
    Stroker().Add(stroke, lines, width);
    const QImage image = Covered(stroke, {}, kWhole);
    for (int y = 55; y < 66; ++y) {
      for (int x = 20; x < 100; ++x) EXPECT_EQ(image.constScanLine(y)[x], image.constScanLine(y)[15]) << x;
    }
    EXPECT_EQ(image.constScanLine(60)[50], 255);
  }
}

TEST(CoverageTest, VectorsSumToTheSameBytes) {
  std::minstd_rand random(1);
  for (int round = 0; round < 20000; ++round) {
    std::vector<std::int32_t> rises(kRisesTogether), plain;
    // From less than what is seen to a pixel covered several times over.
    const int most = 2 << random() % 19;
    const auto some = [&] { return static_cast<std::int32_t>(random() % (2 * most + 1)) - most; };
    for (std::int32_t& rise : rises) rise = some();
    plain = rises;
    const std::int32_t before = some();
    std::vector<uchar> amounts(kRisesTogether), expected(kRisesTogether);
    const std::int32_t sum = SumRisesPlainly(plain.data(), expected.data(), before);
    ASSERT_EQ(SumRises(rises.data(), amounts.data(), before), sum) << round;
    ASSERT_EQ(amounts, expected) << round;
    ASSERT_EQ(rises, plain) << round;
  }
}

TEST(CoverageTest, AllFormsBlendToTheSameBytes) {
  std::minstd_rand random(1);
  for (int round = 0; round < 2000; ++round) {
    constexpr int kStride = 40, kRows = 3;
    std::vector<QRgb> pixels(kStride * kRows);
    std::vector<uchar> coverage(kStride * kRows);
    for (QRgb& pixel : pixels) pixel = static_cast<QRgb>(random() * 2654435761U);
    for (std::size_t i = 0; i < coverage.size(); ++i) {
      const unsigned kind = random() % 4;
      // Often the same for several pixels.
      coverage[i] = kind == 0 ? 0 : kind == 1 ? 255 : static_cast<uchar>(random());
      if (i > 0 && random() % 8 != 0) coverage[i] = coverage[i - 1];
    }
    const auto colour = static_cast<QRgb>(random() * 2654435761U);
    const int count = static_cast<int>(random() % 35);
    std::vector<QRgb> expected;
    for (const BlendForm form : BlendForms()) {
      std::vector<QRgb> blended = pixels;
      form({.pixels = blended.data() + 3,
            .stride = kStride - 1,
            .coverage = coverage.data() + 2,
            .coverageStride = kStride,
            .count = count,
            .rows = kRows},
           colour);
      if (expected.empty()) expected = blended;
      ASSERT_EQ(blended, expected) << round;
    }
  }
}

}  // namespace
}  // namespace kelvane
