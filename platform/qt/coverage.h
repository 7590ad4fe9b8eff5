#pragma once

// How much of each pixel a shape covers, exactly, in whole numbers: a shape that is moved by whole pixels, or
// of which only a part is asked for, covers its pixels by the very same amounts. So a picture that was
// scrolled, or painted in part, equals one that was painted whole.

#include <QPoint>
#include <QRect>
#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <span>
#include <utility>
#include <vector>

#include "platform/canvas.h"

namespace kelvane {

// Device pixels in parts of kPixel.
inline constexpr int kPixel = 256;
struct FixedPoint {
  int x = 0;
  int y = 0;
  bool operator==(const FixedPoint&) const = default;
};
// The point nearest to a place in device pixels, counted from a pixel; one that is absurdly far away comes
// nearer.
FixedPoint ToFixed(double x, double y, QPoint origin = {});

// Parts of straight lines, each begun by MoveTo. As an area each part is joined to its start.
class FlatPath {
 public:
  void Clear();
  void MoveTo(FixedPoint to);
  void LineTo(FixedPoint to) { points_.push_back(to); }
  // A cubic curve from where the part stands, as lines that leave it by no more than can be seen.
  void CurveTo(FixedPoint control1, FixedPoint control2, FixedPoint to);

  // The steps of a path with its points.
  void Add(std::span<const Path::Step> steps, std::span<const FixedPoint> points);

  bool Empty() const { return points_.empty(); }
  std::size_t Parts() const { return starts_.size(); }
  std::span<const FixedPoint> Part(std::size_t part) const;
  std::span<const FixedPoint> Points() const { return points_; }
  // The pixels that hold all points; empty without points.
  QRect Bounds() const;

 private:
  std::vector<FixedPoint> points_;
  std::vector<std::size_t> starts_;
};

struct PathVector {
  double x = 0;
  double y = 0;
};

// Adds the areas that lines of a width, in device pixels, cover: ends and joins are round.
class Stroker {
 public:
  void Add(FlatPath& area, const FlatPath& lines, double width);

 private:
  void UseWidth(double width);
  void AddPart(FlatPath& area, std::span<const FixedPoint> line);
  void Cap(FlatPath& area, FixedPoint point, PathVector normal) const;
  void Join(FlatPath& area, FixedPoint point, PathVector before, PathVector after) const;
  PathVector Turned(PathVector normal) const;

  double width_ = 0;
  double half_ = 0;
  // A half circle in so many steps, and one of them.
  int capSteps_ = 0;
  double cos_ = 1;
  double sin_ = 0;
  // Reused from call to call.
  std::vector<FixedPoint> points_;
  std::vector<PathVector> normals_;
};

// What the rises of a fully covered pixel add up to.
inline constexpr int kFull = 2 * kPixel * kPixel;
// The coverage, 0 to 255, that rises add up to.
inline unsigned char AmountOf(std::int32_t sum) {
  const auto whole = static_cast<unsigned>(std::min(std::abs(sum), kFull));
  return static_cast<unsigned char>((whole * 255 + kFull / 2) / kFull);
}
// Makes amounts of eight rises, which are 0 then, and returns their sum with that of those before them.
inline constexpr int kRisesTogether = 8;
std::int32_t SumRises(std::int32_t* rises, unsigned char* amounts, std::int32_t before);
// The same one by one: what the other one does for machines without vectors.
std::int32_t SumRisesPlainly(std::int32_t* rises, unsigned char* amounts, std::int32_t before);

class Coverage {
 public:
  // Non-zero winding. Calls take(y, x, coverage, count) for each row of the clip with ink in it; coverage is
  // 0 to 255 for each of `count` pixels from x on.
  template <typename Take>
  void Cover(const FlatPath& shape, FixedPoint shift, const QRect& clip, Take take) {
    if (!Begin(shape, shift, clip)) return;
    for (int top = box_.top(); top <= box_.bottom(); top += bandRows_) {
      AddBand(shape, shift, top);
      for (int y = top; y < bandBottom_; ++y) TakeRow(y, take);
    }
  }

 private:
  // Columns of a row. Only groups of them that an edge touches are looked at one by one: between the two
  // sides of a thin line, and from one piece of a path to the next, most of a row is empty or evenly full.
  static constexpr int kGroup = kRisesTogether;
  static constexpr int kWordBits = 64;
  bool Begin(const FlatPath& shape, FixedPoint shift, const QRect& clip);
  void AddBand(const FlatPath& shape, FixedPoint shift, int top);
  void AddEdge(FixedPoint from, FixedPoint to);
  void AddStretch(std::int32_t* rises, std::uint64_t* touched, int from, int to, int height);
  void AddWideStretch(std::int32_t* rises, std::uint64_t* touched, int from, int to, int height);
  std::uint64_t* TouchedIn(int row) {
    return touched_.data() + static_cast<std::ptrdiff_t>(row - bandTop_) * words_;
  }
  std::int32_t* RisesIn(int row) {
    return rises_.data() + static_cast<std::ptrdiff_t>(row - bandTop_) * groups_ * kGroup;
  }
  // Calls `take` for the stretches of a row with ink in them and leaves its rises 0.
  template <typename Take>
  void TakeRow(int y, Take& take) {
    std::uint64_t* const touched = TouchedIn(y);
    std::int32_t* const rises = RisesIn(y);
    unsigned char* const covered = coverage_.data();
    std::int32_t sum = 0;
    int first = 0, end = 0;  // groups of the stretch
    const auto takeStretch = [&] {
      const int from = first * kGroup, to = std::min(end * kGroup, box_.width());
      if (from < to) take(y, box_.left() + from, covered + from, to - from);
    };
    // Between two groups that edges touch, coverage is even.
    const auto goOn = [&](int group) {
      const unsigned char here = AmountOf(sum);
      if (here == 0) {
        takeStretch();
        first = group;
      } else {
        std::fill_n(covered + end * kGroup, (group - end) * kGroup, here);
      }
      end = group;
    };
    for (int word = 0; word < words_; ++word) {
      for (std::uint64_t bits = std::exchange(touched[word], 0); bits != 0; bits &= bits - 1) {
        const int group = word * kWordBits + std::countr_zero(bits);
        if (group != end) goOn(group);
        sum = SumRises(rises + group * kGroup, covered + group * kGroup, sum);
        end = group + 1;
      }
    }
    if (end < groups_) goOn(groups_);
    takeStretch();
  }

  QRect box_;  // what of the shape's bounds lies in the clip
  int bandRows_ = 0;
  int bandTop_ = 0;
  int bandBottom_ = 0;
  int groups_ = 0;  // of a row, which has one column more than the box
  int words_ = 0;   // that hold as many bits
  // For each row of the band and each group a bit, and for each column how much the coverage rises there. All
  // 0 between two bands.
  std::vector<std::uint64_t> touched_;
  std::vector<std::int32_t> rises_;
  std::vector<unsigned char> coverage_;  // of a row
};

}  // namespace kelvane
