#include "platform/qt/coverage.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <numbers>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace kelvane {
namespace {

// How far lines may lie from the curve that they stand for.
constexpr double kFlatness = 0.06 * kPixel;
constexpr int kMostCurveLines = 512;
constexpr int kFarthest = 1 << 21;  // pixels

// A band's sums stay within a processor's cache.
constexpr int kBandSums = 1 << 16;
constexpr int kLeastBandRows = 8;

std::int64_t FloorDivide(std::int64_t a, std::int64_t b) {
  // Processors divide short numbers several times quicker.
  if (a == static_cast<std::int32_t>(a) && b == static_cast<std::int32_t>(b)) {
    const auto shortA = static_cast<std::int32_t>(a), shortB = static_cast<std::int32_t>(b);
    return shortA / shortB - (shortA % shortB < 0 ? 1 : 0);
  }
  const std::int64_t quotient = a / b;
  return quotient - (a % b < 0 ? 1 : 0);
}

// The nearest whole number, the larger one of two, of what lies within the range of the integer. The routine
// of the library is a call.
template <typename Integer>
Integer Nearest(double value) {
  const auto towardsZero = static_cast<Integer>(value + 0.5);
  return towardsZero - (value + 0.5 < static_cast<double>(towardsZero) ? 1 : 0);
}

void Touch(std::uint64_t* row, int group) {
  row[group >> 6] |= std::uint64_t{1} << (group & 63);
}

int PixelOf(int position) {
  return position >> 8;
}
static_assert(kPixel == 1 << 8);

}  // namespace

FixedPoint ToFixed(double x, double y, QPoint origin) {
  static constexpr std::int64_t kMost = std::int64_t{kFarthest} * kPixel;
  static constexpr double kAbsurd = 1e15;
  const auto fixed = [](double value, int from) {
    const auto position = Nearest<std::int64_t>(std::clamp(value * kPixel, -kAbsurd, kAbsurd));
    return static_cast<int>(std::clamp(position - std::int64_t{from} * kPixel, -kMost, kMost));
  };
  return {fixed(x, origin.x()), fixed(y, origin.y())};
}

void FlatPath::Clear() {
  points_.clear();
  starts_.clear();
}

void FlatPath::MoveTo(FixedPoint to) {
  starts_.push_back(points_.size());
  points_.push_back(to);
}

void FlatPath::CurveTo(FixedPoint control1, FixedPoint control2, FixedPoint to) {
  // From the start, so that a curve keeps its lines wherever it lies.
  const FixedPoint from = points_.back();
  const double x1 = control1.x - from.x, x2 = control2.x - from.x, x3 = to.x - from.x;
  const double y1 = control1.y - from.y, y2 = control2.y - from.y, y3 = to.y - from.y;
  const double bend =
      std::sqrt(std::max((x2 - 2 * x1) * (x2 - 2 * x1) + (y2 - 2 * y1) * (y2 - 2 * y1),
                         (x3 - 2 * x2 + x1) * (x3 - 2 * x2 + x1) + (y3 - 2 * y2 + y1) * (y3 - 2 * y2 + y1)));
  const int lines =
      std::clamp(static_cast<int>(std::ceil(std::sqrt(0.75 * bend / kFlatness))), 1, kMostCurveLines);
  for (int i = 1; i < lines; ++i) {
    const double t = static_cast<double>(i) / lines, u = 1 - t;
    const double a = 3 * u * u * t, b = 3 * u * t * t, c = t * t * t;
    points_.push_back(
        {from.x + Nearest<int>(a * x1 + b * x2 + c * x3), from.y + Nearest<int>(a * y1 + b * y2 + c * y3)});
  }
  points_.push_back(to);
}

void FlatPath::Add(std::span<const Path::Step> steps, std::span<const FixedPoint> points) {
  const FixedPoint* point = points.data();
  for (const Path::Step step : steps) {
    switch (step) {
      case Path::Step::Move:
        MoveTo(*point++);
        break;
      case Path::Step::Line:
        LineTo(*point++);
        break;
      case Path::Step::Curve:
        CurveTo(point[0], point[1], point[2]);
        point += 3;
        break;
    }
  }
}

std::span<const FixedPoint> FlatPath::Part(std::size_t part) const {
  const std::size_t end = part + 1 < starts_.size() ? starts_[part + 1] : points_.size();
  return std::span(points_).subspan(starts_[part], end - starts_[part]);
}

QRect FlatPath::Bounds() const {
  if (points_.empty()) return {};
  FixedPoint least = points_[0], most = least;
  for (const FixedPoint& point : points_) {
    least = {std::min(least.x, point.x), std::min(least.y, point.y)};
    most = {std::max(most.x, point.x), std::max(most.y, point.y)};
  }
  return {QPoint(PixelOf(least.x), PixelOf(least.y)), QPoint(PixelOf(most.x), PixelOf(most.y))};
}

namespace {

double Cross(PathVector a, PathVector b) {
  return a.x * b.y - a.y * b.x;
}
double Dot(PathVector a, PathVector b) {
  return a.x * b.x + a.y * b.y;
}
PathVector Back(PathVector normal) {
  return {-normal.x, -normal.y};
}

FixedPoint Beside(FixedPoint point, PathVector by) {
  return {point.x + Nearest<int>(by.x), point.y + Nearest<int>(by.y)};
}

}  // namespace

void Stroker::Add(FlatPath& area, const FlatPath& lines, double width) {
  if (!(width > 0)) return;
  if (width != width_) UseWidth(width);
  for (std::size_t part = 0; part < lines.Parts(); ++part) {
    if (lines.Part(part).size() > 1) AddPart(area, lines.Part(part));
  }
}

void Stroker::UseWidth(double width) {
  width_ = width;
  half_ = std::min(width, static_cast<double>(kFarthest)) * kPixel / 2;
  const double step = 2 * std::acos(std::max(1 - kFlatness / half_, 0.0));
  capSteps_ = std::max(static_cast<int>(std::ceil(std::numbers::pi / step)), 2);
  const double turn = std::numbers::pi / capSteps_;
  cos_ = std::cos(turn);
  sin_ = std::sin(turn);
}

// Walks along one side of a line and round its end, then back along the other and round its start.
void Stroker::AddPart(FlatPath& area, std::span<const FixedPoint> line) {
  points_.clear();
  for (const FixedPoint& point : line) {
    if (points_.empty() || points_.back() != point) points_.push_back(point);
  }
  normals_.clear();
  for (std::size_t i = 0; i + 1 < points_.size(); ++i) {
    const double dx = points_[i + 1].x - points_[i].x, dy = points_[i + 1].y - points_[i].y;
    const double factor = half_ / std::sqrt(dx * dx + dy * dy);
    normals_.push_back({dy * factor, -dx * factor});
  }
  if (normals_.empty()) normals_.push_back({half_, 0});  // a dot
  const std::size_t segments = normals_.size();
  const std::size_t last = points_.size() - 1;
  area.MoveTo(Beside(points_[0], normals_[0]));
  for (std::size_t i = 1; i < segments; ++i) Join(area, points_[i], normals_[i - 1], normals_[i]);
  area.LineTo(Beside(points_[last], normals_[segments - 1]));
  Cap(area, points_[last], normals_[segments - 1]);
  for (std::size_t i = segments; i-- > 1;) Join(area, points_[i], Back(normals_[i]), Back(normals_[i - 1]));
  area.LineTo(Beside(points_[0], Back(normals_[0])));
  Cap(area, points_[0], Back(normals_[0]));
}

PathVector Stroker::Turned(PathVector normal) const {
  return {normal.x * cos_ - normal.y * sin_, normal.x * sin_ + normal.y * cos_};
}

void Stroker::Cap(FlatPath& area, FixedPoint point, PathVector normal) const {
  for (int i = 0; i < capSteps_; ++i) area.LineTo(Beside(point, normal = Turned(normal)));
}

void Stroker::Join(FlatPath& area, FixedPoint point, PathVector before, PathVector after) const {
  constexpr double kSmoothTurn = 0.95;  // cosine of what needs no arc
  constexpr double kAlmostBack = 0.9999;
  const double cosine = Dot(before, after) / (half_ * half_);
  if (cosine > kSmoothTurn) {
    const double factor = 1 / (1 + cosine);
    area.LineTo(Beside(point, {(before.x + after.x) * factor, (before.y + after.y) * factor}));
    return;
  }
  area.LineTo(Beside(point, before));
  if (Cross(before, after) > 0 || cosine < -kAlmostBack) {
    PathVector normal = Turned(before);
    for (int i = 1; i < capSteps_ && Cross(normal, after) > 0; ++i, normal = Turned(normal))
      area.LineTo(Beside(point, normal));
  } else {
    area.LineTo(point);  // the inner side, within what is covered anyway
  }
  area.LineTo(Beside(point, after));
}

bool Coverage::Begin(const FlatPath& shape, FixedPoint shift, const QRect& clip) {
  if (shape.Empty()) return false;
  // Moved by the whole pixels of the shift, and one more for the rest of it.
  const QRect bounds = shape.Bounds().translated(PixelOf(shift.x), PixelOf(shift.y)).adjusted(0, 0, 1, 1);
  box_ = bounds & clip;
  if (box_.isEmpty()) return false;
  groups_ = box_.width() / kGroup + 1;
  words_ = (groups_ + kWordBits - 1) / kWordBits;
  const auto sums = static_cast<std::size_t>(groups_) * kGroup;
  bandRows_ = std::min(std::max(kBandSums / static_cast<int>(sums), kLeastBandRows), box_.height());
  const auto rows = static_cast<std::size_t>(bandRows_);
  // One more, where the last stretch of a row may add nothing.
  if (rises_.size() < sums * rows + 1) rises_.resize(sums * rows + 1);
  if (touched_.size() < static_cast<std::size_t>(words_) * rows)
    touched_.resize(static_cast<std::size_t>(words_) * rows);
  if (coverage_.size() < sums) coverage_.resize(sums);
  return true;
}

void Coverage::AddBand(const FlatPath& shape, FixedPoint shift, int top) {
  bandTop_ = top;
  bandBottom_ = std::min(top + bandRows_, box_.bottom() + 1);
  // Counted from the left side of the box.
  const int left = shift.x - box_.left() * kPixel;
  const auto moved = [=](FixedPoint point) { return FixedPoint{point.x + left, point.y + shift.y}; };
  for (std::size_t i = 0; i < shape.Parts(); ++i) {
    const std::span<const FixedPoint> part = shape.Part(i);
    FixedPoint from = moved(part.back());
    for (const FixedPoint& point : part) {
      const FixedPoint to = moved(point);
      AddEdge(from, to);
      from = to;
    }
  }
}

// The rises of a stretch of an edge within one row: `height` of it, below 0 for one that goes upwards, within
// one column. `inside` is twice the way from the column's left side to the middle of the stretch.
inline void AddRise(std::int32_t* column, int inside, int height) {
  const int beyond = inside * height;
  column[0] += 2 * kPixel * height - beyond;
  column[1] += beyond;
}

// A stretch of an edge within one row, through any columns, also of those outside of the clip.
void Coverage::AddWideStretch(std::int32_t* rises, std::uint64_t* touched, int from, int to, int height) {
  const int width = box_.width();
  int column = PixelOf(from);
  const int lastColumn = PixelOf(to);
  if (column >= width) return;  // up to the clip's edge what was covered stays covered
  const int lastGroup = std::min(std::max(lastColumn, 0) + 1, width) / kGroup;
  for (int group = std::max(column, 0) / kGroup; group <= lastGroup; ++group) Touch(touched, group);
  if (lastColumn < 0) {
    AddRise(rises, 0, height);
    return;
  }
  const int dx = to - from;
  const auto heightAt = [=](int x) {
    constexpr int kShort = 1 << 22;  // products of that and a height fit into 32 bits, which divide quicker
    return dx < kShort ? height * (x - from) / dx
                       : static_cast<int>(static_cast<std::int64_t>(height) * (x - from) / dx);
  };
  int inside = from & (kPixel - 1);
  int done = 0;
  if (column < 0) {
    inside = 0;
    done = heightAt(0);
    AddRise(rises, 0, done);
    column = 0;
  }
  const int end = std::min(lastColumn, width);
  if (column < end) {
    int next = heightAt((column + 1) * kPixel);
    AddRise(rises + column, inside + kPixel, next - done);
    done = next;
    inside = 0;
    if (++column < end) {
      // From column to column by sums.
      const int sign = height < 0 ? -1 : 1;
      const std::int64_t way = static_cast<std::int64_t>(height) * (column * kPixel - from);
      const int step = height * kPixel / dx, stepRest = sign * (height * kPixel - step * dx);
      for (int rest = sign * static_cast<int>(way - static_cast<std::int64_t>(next) * dx); column < end;
           ++column) {
        next += step;
        rest += stepRest;
        if (rest >= dx) {
          rest -= dx;
          next += sign;
        }
        AddRise(rises + column, kPixel, next - done);
        done = next;
      }
    }
  }
  if (column < width) AddRise(rises + column, inside + (to & (kPixel - 1)), height - done);
}

inline void Coverage::AddStretch(std::int32_t* rises, std::uint64_t* touched, int from, int to, int height) {
  if (from > to) std::swap(from, to);
  const int column = PixelOf(from), lastColumn = PixelOf(to);
  if (from < 0 || to >= box_.width() * kPixel || lastColumn > column + 1) {
    AddWideStretch(rises, touched, from, to, height);
    return;
  }
  // One column or two without a branch: no processor can guess which, and one that guesses wrong waits longer
  // than all of this takes.
  const int two = column - lastColumn;  // all bits or none
  const int inside = from & (kPixel - 1), insideLast = to & (kPixel - 1);
  const int way = std::max(to - from, 1);
  const int first = height * (way + ((kPixel - inside - way) & two)) / way, rest = height - first;
  const int beyond = (inside + insideLast + ((kPixel - insideLast) & two)) * first;
  const int beyondLast = insideLast * rest;
  // Each column is read and written once: what was just written in another size is slow to read.
  rises[column] += 2 * kPixel * first - beyond;
  rises[column + 1] += beyond + 2 * kPixel * rest - beyondLast;
  rises[column + 2] += beyondLast;
  Touch(touched, column / kGroup);
  Touch(touched, (lastColumn + 1) / kGroup);
}

void Coverage::AddEdge(FixedPoint from, FixedPoint to) {
  if (from.y == to.y) return;
  const int sign = from.y < to.y ? 1 : -1;
  if (sign < 0) std::swap(from, to);
  const int lastRow = PixelOf(to.y - 1);
  const int first = std::max(PixelOf(from.y), bandTop_);
  const int last = std::min(lastRow, bandBottom_ - 1);
  if (first > last) return;
  int x = from.x, y = from.y;
  // Where the edge crosses into the next row, from its own ends whatever the band is; from row to row by
  // sums.
  std::int64_t way = 0, rest = 0, rowStep = 0, rowRest = 0;
  const std::int64_t dx = to.x - from.x, dy = to.y - from.y;
  if (PixelOf(from.y) != lastRow) {
    y = std::max(first * kPixel, from.y);
    if (y != from.y) x += static_cast<int>(FloorDivide(dx * (y - from.y), dy));
    const std::int64_t nextWay = dx * ((first + 1) * kPixel - from.y);
    way = FloorDivide(nextWay, dy);
    rest = nextWay - way * dy;
  }
  if (lastRow > first + 1) {
    rowStep = FloorDivide(dx * kPixel, dy);
    rowRest = dx * kPixel - rowStep * dy;
  }
  std::int32_t* rises = RisesIn(first);
  std::uint64_t* touched = TouchedIn(first);
  for (int row = first; row <= last; ++row) {
    const bool ends = row == lastRow;
    const int nextX = ends ? to.x : from.x + static_cast<int>(way);
    const int nextY = ends ? to.y : (row + 1) * kPixel;
    AddStretch(rises, touched, x, nextX, sign * (nextY - y));
    rises += static_cast<std::ptrdiff_t>(groups_) * kGroup;
    touched += words_;
    x = nextX;
    y = nextY;
    way += rowStep;
    rest += rowRest;
    const std::int64_t over = (dy - 1 - rest) >> 63;  // all bits or none
    rest -= dy & over;
    way -= over;
  }
}

std::int32_t SumRisesPlainly(std::int32_t* rises, unsigned char* amounts, std::int32_t before) {
  for (int i = 0; i < kRisesTogether; ++i) {
    before += rises[i];
    rises[i] = 0;
    amounts[i] = AmountOf(before);
  }
  return before;
}

std::int32_t SumRises(std::int32_t* rises, unsigned char* amounts, std::int32_t before) {
#ifdef __SSE2__
  static_assert(kFull == 1 << 17 && kRisesTogether == 8);
  auto* const places = reinterpret_cast<__m128i*>(rises);
  const __m128i most = _mm_set1_epi32(kFull), half = _mm_set1_epi32(kFull / 2);
  const auto sumsOf = [](__m128i four, __m128i start) {
    four = _mm_add_epi32(four, _mm_slli_si128(four, 4));
    return _mm_add_epi32(_mm_add_epi32(four, _mm_slli_si128(four, 8)), start);
  };
  const auto amountsOf = [&](__m128i sums) {
    const __m128i negative = _mm_srai_epi32(sums, 31);
    __m128i whole = _mm_sub_epi32(_mm_xor_si128(sums, negative), negative);
    const __m128i over = _mm_cmpgt_epi32(whole, most);
    whole = _mm_or_si128(_mm_and_si128(over, most), _mm_andnot_si128(over, whole));
    const __m128i scaled = _mm_sub_epi32(_mm_slli_epi32(whole, 8), whole);
    return _mm_srli_epi32(_mm_add_epi32(scaled, half), 17);
  };
  const __m128i first = sumsOf(_mm_loadu_si128(places), _mm_set1_epi32(before));
  const __m128i second = sumsOf(_mm_loadu_si128(places + 1), _mm_shuffle_epi32(first, 0xFF));
  const __m128i words = _mm_packs_epi32(amountsOf(first), amountsOf(second));
  _mm_storel_epi64(reinterpret_cast<__m128i*>(amounts), _mm_packus_epi16(words, words));
  _mm_storeu_si128(places, _mm_setzero_si128());
  _mm_storeu_si128(places + 1, _mm_setzero_si128());
  return _mm_cvtsi128_si32(_mm_shuffle_epi32(second, 0xFF));
#else
  return SumRisesPlainly(rises, amounts, before);
#endif
}

}  // namespace kelvane
