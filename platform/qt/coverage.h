#pragma once

// How much of each pixel a shape covers, exactly, in whole numbers: a shape that is moved by whole pixels, or
// of which only a part is asked for, covers its pixels by the very same amounts. So a picture that was
// scrolled, or painted in part, equals one that was painted whole.

#include <QPoint>
#include <QRect>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

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

// Adds the areas that lines of a width, in device pixels, cover: ends and joins are round.
void AddStroke(FlatPath& area, const FlatPath& lines, double width);

class Coverage {
 public:
  // Non-zero winding. Calls take(y, x, coverage, count) for each row of the clip with ink in it; coverage is
  // 0 to 255 for each of `count` pixels from x on.
  template <typename Take>
  void Cover(const FlatPath& shape, FixedPoint shift, const QRect& clip, Take take) {
    if (!Begin(shape, shift, clip)) return;
    for (int top = box_.top(); top <= box_.bottom(); top += bandRows_) {
      AddBand(shape, shift, top);
      for (std::size_t row = 0; row < rows_.size(); ++row) {
        const int count = SumRow(row);
        if (count > 0)
          take(top + static_cast<int>(row), box_.left() + rows_[row].first, coverage_.data(), count);
      }
    }
  }

 private:
  struct Row {
    int first;  // touched columns of the box
    int last;
  };

  bool Begin(const FlatPath& shape, FixedPoint shift, const QRect& clip);
  void AddBand(const FlatPath& shape, FixedPoint shift, int top);
  void AddEdge(FixedPoint from, FixedPoint to);
  void AddStretch(int row, int from, int to, int height, int sign);
  int SumRow(std::size_t row);

  QRect box_;  // what of the shape's bounds lies in the clip
  int bandRows_ = 0;
  int bandTop_ = 0;
  int bandBottom_ = 0;
  std::vector<Row> rows_;  // of the band
  // For each row of the band and column of the box, and one column more, how much the coverage rises there.
  // All 0 between two bands.
  std::vector<std::int32_t> rises_;
  std::vector<unsigned char> coverage_;  // of a row
};

}  // namespace kelvane
