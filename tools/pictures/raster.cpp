#include "tools/pictures/raster.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <numbers>

namespace kelvane::pictures {

namespace {

constexpr int kSamples = 8;  // to a pixel, each way
constexpr int kCurvePieces = 32;

// Which of its 64 samples of every pixel are inside the shape being painted.
class Coverage {
 public:
  Coverage(int width, int height)
      : width_(width), height_(height), masks_(static_cast<std::size_t>(width * height)) {}

  int SampleColumns() const { return width_ * kSamples; }
  int SampleRows() const { return height_ * kSamples; }

  void Set(int column, int row) {
    const int index = (row / kSamples) * width_ + column / kSamples;
    masks_[static_cast<std::size_t>(index)] |= std::uint64_t{1}
                                               << (row % kSamples * kSamples + column % kSamples);
  }

  void Paint(Picture& picture, Pixel colour) const {
    for (std::size_t i = 0; i < masks_.size(); ++i) {
      const int opacity = std::popcount(masks_[i]) * colour.alpha;
      Pixel& pixel = picture.pixels[i];
      pixel.red = Mix(pixel.red, colour.red, opacity);
      pixel.green = Mix(pixel.green, colour.green, opacity);
      pixel.blue = Mix(pixel.blue, colour.blue, opacity);
    }
  }

 private:
  // Whole numbers only, so that every machine makes the same bytes.
  static std::uint8_t Mix(int below, int above, int opacity) {
    constexpr int kFull = kSamples * kSamples * 255;
    return static_cast<std::uint8_t>((above * opacity + below * (kFull - opacity) + kFull / 2) / kFull);
  }

  int width_;
  int height_;
  std::vector<std::uint64_t> masks_;
};

double SampleCentre(int sample) {
  return (sample + 0.5) / kSamples;
}
int FirstSampleFrom(double position) {
  return static_cast<int>(std::ceil(position * kSamples - 0.5));
}

struct Crossing {
  double x;
  int direction;
};

std::vector<Crossing> CrossingsAt(const Polylines& area, double y) {
  std::vector<Crossing> crossings;
  for (const Polyline& line : area) {
    for (std::size_t i = 0; i < line.size(); ++i) {
      const Point from = line[i];
      const Point to = line[(i + 1) % line.size()];
      if ((from.y <= y) == (to.y <= y)) continue;
      const double x = from.x + (y - from.y) * (to.x - from.x) / (to.y - from.y);
      crossings.push_back({x, to.y > from.y ? 1 : -1});
    }
  }
  std::sort(crossings.begin(), crossings.end(),
            [](const Crossing& a, const Crossing& b) { return a.x < b.x; });
  return crossings;
}

// Takes the pen's ellipse to the unit circle, so that a stroke is all points within 1 of its line.
class PenSpace {
 public:
  explicit PenSpace(const Pen& pen)
      : cosine_(std::cos(pen.angle * std::numbers::pi / 180)),
        sine_(std::sin(pen.angle * std::numbers::pi / 180)),
        along_(2 / pen.width),
        across_(2 / pen.thickness) {}

  Point To(Point p) const {
    return {(p.x * cosine_ - p.y * sine_) * along_, (p.x * sine_ + p.y * cosine_) * across_};
  }

 private:
  double cosine_;
  double sine_;
  double along_;
  double across_;
};

double SquaredDistance(Point p, Point from, Point to) {
  const double dx = to.x - from.x;
  const double dy = to.y - from.y;
  const double length = dx * dx + dy * dy;
  double t = length > 0 ? ((p.x - from.x) * dx + (p.y - from.y) * dy) / length : 0;
  t = std::clamp(t, 0.0, 1.0);
  const double x = p.x - from.x - t * dx;
  const double y = p.y - from.y - t * dy;
  return x * x + y * y;
}

void CoverSegment(Coverage& coverage, Point from, Point to, const Pen& pen, const PenSpace& space) {
  const double reach = std::max(pen.width, pen.thickness) / 2;
  const int left = std::max(0, FirstSampleFrom(std::min(from.x, to.x) - reach));
  const int right = std::min(coverage.SampleColumns(), FirstSampleFrom(std::max(from.x, to.x) + reach) + 1);
  const int top = std::max(0, FirstSampleFrom(std::min(from.y, to.y) - reach));
  const int bottom = std::min(coverage.SampleRows(), FirstSampleFrom(std::max(from.y, to.y) + reach) + 1);
  const Point start = space.To(from);
  const Point end = space.To(to);
  for (int row = top; row < bottom; ++row) {
    for (int column = left; column < right; ++column) {
      const Point sample = space.To({SampleCentre(column), SampleCentre(row)});
      if (SquaredDistance(sample, start, end) <= 1) coverage.Set(column, row);
    }
  }
}

}  // namespace

Picture::Picture(int pictureWidth, int pictureHeight, Pixel ground)
    : width(pictureWidth),
      height(pictureHeight),
      pixels(static_cast<std::size_t>(pictureWidth * pictureHeight), ground) {}

void AppendCurve(Polyline& line, Point from, Point a, Point b, Point to) {
  for (int i = 1; i <= kCurvePieces; ++i) {
    const double t = static_cast<double>(i) / kCurvePieces;
    const double s = 1 - t;
    const double weights[] = {s * s * s, 3 * s * s * t, 3 * s * t * t, t * t * t};
    line.push_back({weights[0] * from.x + weights[1] * a.x + weights[2] * b.x + weights[3] * to.x,
                    weights[0] * from.y + weights[1] * a.y + weights[2] * b.y + weights[3] * to.y});
  }
}

void FillArea(Picture& picture, const Polylines& area, Pixel colour) {
  Coverage coverage(picture.width, picture.height);
  for (int row = 0; row < coverage.SampleRows(); ++row) {
    const std::vector<Crossing> crossings = CrossingsAt(area, SampleCentre(row));
    int winding = 0;
    for (std::size_t i = 0; i + 1 < crossings.size(); ++i) {
      winding += crossings[i].direction;
      if (winding == 0) continue;
      const int end = std::min(coverage.SampleColumns(), FirstSampleFrom(crossings[i + 1].x));
      for (int column = std::max(0, FirstSampleFrom(crossings[i].x)); column < end; ++column)
        coverage.Set(column, row);
    }
  }
  coverage.Paint(picture, colour);
}

void StrokeLines(Picture& picture, const Polylines& lines, const Pen& pen, Pixel colour) {
  Coverage coverage(picture.width, picture.height);
  const PenSpace space(pen);
  for (const Polyline& line : lines)
    for (std::size_t i = 0; i < line.size(); ++i)
      CoverSegment(coverage, line[i > 0 ? i - 1 : 0], line[i], pen, space);
  coverage.Paint(picture, colour);
}

}  // namespace kelvane::pictures
