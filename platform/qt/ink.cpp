#include "platform/qt/ink.h"

#include <QRegion>
#include <QSemaphore>
#include <QThreadPool>
#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "platform/qt/blending.h"
#include "platform/qt/qt_glyphs.h"

namespace kelvane {
namespace {

// So much is collected at a time: what is beyond the processor's caches is read more slowly than it is made.
constexpr std::size_t kMostInks = 1024;
constexpr std::size_t kMostPoints = 16384;

// What painting costs, roughly and in nanoseconds, and from where on a second thread is worth waking.
constexpr double kManyNanoseconds = 400'000;
constexpr int kMostBands = 4;

double Cost(const Ink& ink) {
  const double width = ink.box.width(), height = ink.box.height();
  switch (ink.kind) {
    case Ink::Kind::Box:
      return width * height / 16;
    case Ink::Kind::Stroke:
      return 100 * (width + height) + 150 * static_cast<double>(ink.points.size());
    case Ink::Kind::Fill:
      return width * height / 8 + 50 * (width + height);
    case Ink::Kind::Glyphs:
      return static_cast<double>(ink.codes.size()) * (20 + height * height / 16);
    case Ink::Kind::Outlines:
      return width * height / 2;
  }
  return 0;
}
double CostOfCollecting(const Ink& ink) {
  return 100 + 40 * static_cast<double>(ink.points.size());
}

// The rows of the clip in bands, one for each thread.
class Bands {
 public:
  Bands(std::span<const Ink> inks, const QRect& clip) : clip_(clip) {
    for (const Ink& ink : inks) Add(ink);
  }

  // All of about the same cost, but for the first: whoever paints that collects as much again meanwhile, if
  // there is `more`.
  std::vector<QRect> Parted(int bands, bool more) const {
    if (cost_ < kManyNanoseconds) bands = 1;
    constexpr double kLeastShare = 0.1;
    const double each = (cost_ + (more ? collecting_ : 0)) / bands;
    const double first = std::max(each - (more ? collecting_ : 0), kLeastShare * cost_);
    const double other = (cost_ - first) / std::max(bands - 1, 1);
    std::vector<QRect> parts;
    int top = clip_.top();
    double above = 0;
    for (int slice = 0; slice < kSlices; ++slice) {
      above += costs_[static_cast<std::size_t>(slice)];
      const bool last = slice + 1 == kSlices;
      const int end = last ? clip_.bottom() + 1 : RowOf(slice + 1);
      const auto made = static_cast<int>(parts.size());
      const bool full = above >= first + other * made && made + 1 < bands;
      if (end == top || !(last || full)) continue;
      parts.emplace_back(QPoint(clip_.left(), top), QPoint(clip_.right(), end - 1));
      top = end;
    }
    return parts;
  }

 private:
  static constexpr int kSlices = 64;
  int RowOf(int slice) const { return clip_.top() + clip_.height() * slice / kSlices; }
  int SliceOf(int row) const { return (row - clip_.top()) * kSlices / clip_.height(); }

  void Add(const Ink& ink) {
    collecting_ += CostOfCollecting(ink);
    const QRect box = ink.box & clip_;
    if (box.isEmpty()) return;
    const int first = SliceOf(box.top()), last = SliceOf(box.bottom());
    const double cost = kelvane::Cost(ink);
    for (int slice = first; slice <= last; ++slice)
      costs_[static_cast<std::size_t>(slice)] += cost / (last - first + 1);
    cost_ += cost;
  }

  QRect clip_;
  std::array<double, kSlices> costs_{};
  double cost_ = 0;
  double collecting_ = 0;
};

void PaintAll(InkPainter& painter, std::span<const Ink> inks, const PixelRows& pixels, const QRect& clip) {
  for (std::size_t i = 0; i < inks.size(); ++i) {
    const Ink& ink = inks[i];
    if (!ink.box.intersects(clip)) continue;
    // The paper lies on most of the ground that was cleared.
    const bool both = ink.kind == Ink::Kind::Box && i + 1 < inks.size() && inks[i + 1].kind == Ink::Kind::Box;
    if (!both) {
      painter.Paint(ink, pixels, clip);
      continue;
    }
    for (const QRect& seen : QRegion(ink.box & clip) - inks[i + 1].box) painter.Paint(ink, pixels, seen);
  }
}

// Blends a glyph's image; (x, y) is the pixel of its origin.
void BlendGlyph(const PixelRows& target, const QRect& clip, int x, int y, const GlyphImage& glyph,
                QRgb colour) {
  const int left = x + glyph.left;
  const int top = y + glyph.top;
  const int firstColumn = std::max(clip.left() - left, 0);
  const int lastColumn = std::min(glyph.width, clip.right() + 1 - left);
  const int firstRow = std::max(clip.top() - top, 0);
  const int lastRow = std::min(glyph.height, clip.bottom() + 1 - top);
  if (firstColumn >= lastColumn || firstRow >= lastRow) return;
  Blend(
      {.pixels = target.At(top + firstRow) + left + firstColumn,
       .stride = target.stride,
       .coverage = glyph.coverage.data() + static_cast<std::ptrdiff_t>(firstRow) * glyph.width + firstColumn,
       .coverageStride = glyph.width,
       .count = lastColumn - firstColumn,
       .rows = lastRow - firstRow},
      colour);
}

}  // namespace

void InkPainter::Paint(const Ink& ink, const PixelRows& pixels, const QRect& clip) {
  switch (ink.kind) {
    case Ink::Kind::Box: {
      const QRect box = ink.box & clip;
      for (int y = box.top(); y <= box.bottom(); ++y)
        std::fill_n(pixels.At(y) + box.left(), box.width(), ink.colour);
      break;
    }
    case Ink::Kind::Stroke:
      Stroke(ink, pixels, clip);
      break;
    case Ink::Kind::Fill:
      TakeLines(ink);
      Fill(lines_, {}, ink.colour, pixels, clip);
      break;
    case Ink::Kind::Glyphs:
      Glyphs(ink, pixels, clip);
      break;
    case Ink::Kind::Outlines:
      Outlines(ink, pixels, clip);
      break;
  }
}

void InkPainter::TakeLines(const Ink& ink) {
  lines_.Clear();
  lines_.Add(ink.steps, ink.points);
}

void InkPainter::Stroke(const Ink& ink, const PixelRows& pixels, const QRect& clip) {
  TakeLines(ink);
  area_.Clear();
  stroker_.Add(area_, lines_, ink.width);
  Fill(area_, {}, ink.colour, pixels, clip);
}

void InkPainter::Fill(const FlatPath& area, FixedPoint shift, QRgb colour, const PixelRows& pixels,
                      const QRect& clip) {
  // The picture is larger than the processor's caches, and most shapes go on below.
  constexpr int kRowsAhead = 8;
  coverage_.Cover(area, shift, clip, [&](int y, int x, const uchar* covered, int count) {
    QRgb* const row = pixels.At(y) + x;
    __builtin_prefetch(row + kRowsAhead * pixels.stride, 1);
    Blend({.pixels = row, .coverage = covered, .count = count}, colour);
  });
}

void InkPainter::Glyphs(const Ink& ink, const PixelRows& pixels, const QRect& clip) {
  constexpr int kStep = kPixel / GlyphImages::kSteps;
  const int reach = ink.images->Reach();
  const QRect reached = clip.adjusted(-reach, -reach, reach, reach);
  for (std::size_t i = 0; i < ink.codes.size(); ++i) {
    const int x = ink.points[i].x + kStep / 2, y = ink.points[i].y + kStep / 2;
    if (!reached.contains(x >> 8, y >> 8)) continue;
    const GlyphImage* const glyph =
        ink.images->At(static_cast<unsigned char>(ink.codes[i]), (x & (kPixel - 1)) / kStep,
                       (y & (kPixel - 1)) / kStep, coverage_);
    if (glyph != nullptr) BlendGlyph(pixels, clip, x >> 8, y >> 8, *glyph, ink.colour);
  }
}

void InkPainter::Outlines(const Ink& ink, const PixelRows& pixels, const QRect& clip) {
  const int reach = ink.images->Reach();
  const QRect reached = clip.adjusted(-reach, -reach, reach, reach);
  for (std::size_t i = 0; i < ink.codes.size(); ++i) {
    if (!reached.contains(ink.points[i].x >> 8, ink.points[i].y >> 8)) continue;
    const FlatPath* const outline = ink.images->Outline(static_cast<unsigned char>(ink.codes[i]));
    if (outline != nullptr) Fill(*outline, ink.points[i], ink.colour, pixels, clip);
  }
}

// The threads that paint beside the one that asks, and what each paints with. An idle one waits without
// waking up.
struct InkCollector::Threads {
  Threads() {
    pool.setMaxThreadCount(std::clamp(QThreadPool::globalInstance()->maxThreadCount(), 1, kMostBands) - 1);
    pool.setExpiryTimeout(-1);
  }
  std::array<InkPainter, kMostBands> painters;
  QSemaphore painted;
  int painting = 0;
  QThreadPool pool;  // the first to go: it waits for what still uses the others
};

InkCollector::InkCollector() = default;
InkCollector::~InkCollector() {
  Wait();
}

void InkCollector::Begin(const PixelRows& pixels, const QRect& clip) {
  Wait();  // for what an exception has left behind
  filled_->Clear();
  pixels_ = pixels;
  clip_ = clip;
}

void InkCollector::Add(const Ink& ink) {
  if (filled_->Add(ink)) return;
  Paint(filled_->Inks(), true);
  filled_ = filled_ == &lists_[0] ? &lists_[1] : &lists_[0];
  filled_->Clear();
  if (filled_->Add(ink)) return;
  Paint({&ink, 1}, false);
  Wait();
}

void InkCollector::Finish() {
  Paint(filled_->Inks(), false);
  Wait();
  filled_->Clear();
}

void InkCollector::Paint(std::span<const Ink> inks, bool more) {
  Wait();
  if (inks.empty() || clip_.isEmpty()) return;
  if (threads_ == nullptr) threads_ = std::make_unique<Threads>();
  const std::vector<QRect> parts = Bands(inks, clip_).Parted(threads_->pool.maxThreadCount() + 1, more);
  for (std::size_t i = 1; i < parts.size(); ++i) {
    threads_->pool.start([this, inks, part = parts[i], &painter = threads_->painters[i]] {
      PaintAll(painter, inks, pixels_, part);
      threads_->painted.release();
    });
    ++threads_->painting;
  }
  PaintAll(threads_->painters[0], inks, pixels_, parts[0]);
}

void InkCollector::Wait() {
  if (threads_ != nullptr) threads_->painted.acquire(std::exchange(threads_->painting, 0));
}

bool InkList::Add(const Ink& ink) {
  if (inks_.capacity() == 0) {
    inks_.reserve(kMostInks);
    points_.reserve(kMostPoints);
    steps_.reserve(kMostPoints);
    codes_.reserve(kMostPoints);
  }
  if (inks_.size() == kMostInks || points_.size() + ink.points.size() > kMostPoints ||
      steps_.size() + ink.steps.size() > kMostPoints || codes_.size() + ink.codes.size() > kMostPoints)
    return false;
  const auto copy = [](auto& to, const auto& from) {
    const std::size_t begin = to.size();
    to.insert(to.end(), from.begin(), from.end());
    return to.data() + begin;
  };
  Ink& kept = inks_.emplace_back(ink);
  kept.points = {copy(points_, ink.points), ink.points.size()};
  kept.steps = {copy(steps_, ink.steps), ink.steps.size()};
  kept.codes = {copy(codes_, ink.codes), ink.codes.size()};
  return true;
}

void InkList::Clear() {
  inks_.clear();
  points_.clear();
  steps_.clear();
  codes_.clear();
}

}  // namespace kelvane
