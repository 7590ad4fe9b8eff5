#pragma once

// What is painted on a layer, in device pixels, and how it comes on the pixels: at once, or collected first
// and then painted by several threads, each in a band of rows. What a shape covers does not depend on the
// clip, so the bands fit together as if they had been painted in one.

#include <QRect>
#include <QRgb>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string_view>
#include <vector>

#include "platform/canvas.h"
#include "platform/qt/coverage.h"

namespace kelvane {

class GlyphImages;

// 32-bit pixels, RGB32 or premultiplied.
struct PixelRows {
  QRgb* At(int y) const { return first + static_cast<std::ptrdiff_t>(y) * stride; }
  QRgb* first = nullptr;
  std::ptrdiff_t stride = 0;  // pixels from row to row
};

struct Ink {
  enum class Kind : std::uint8_t { Box, Stroke, Fill, Glyphs, Outlines };
  Kind kind = Kind::Box;
  QRgb colour = 0;
  QRect box;         // what a box fills; of others what they touch at most
  double width = 0;  // of a stroke
  // Of a path, or the origins of characters.
  std::span<const FixedPoint> points{};
  std::span<const Path::Step> steps{};
  std::string_view codes{};
  GlyphImages* images = nullptr;  // prepared for these codes
};

// Paints things one after the other. What it works with is kept from call to call.
class InkPainter {
 public:
  // Pixels outside the clip are left as they are.
  void Paint(const Ink& ink, const PixelRows& pixels, const QRect& clip);

 private:
  void Stroke(const Ink& ink, const PixelRows& pixels, const QRect& clip);
  void Fill(const FlatPath& area, FixedPoint shift, QRgb colour, const PixelRows& pixels, const QRect& clip);
  void Glyphs(const Ink& ink, const PixelRows& pixels, const QRect& clip);
  void Outlines(const Ink& ink, const PixelRows& pixels, const QRect& clip);
  void TakeLines(const Ink& ink);

  FlatPath lines_;
  Stroker stroker_;
  FlatPath area_;
  Coverage coverage_;
};

// Copies of what is to be painted.
class InkList {
 public:
  // False if there is no room for it any more; an empty list has room for all but giants.
  bool Add(const Ink& ink);
  std::span<const Ink> Inks() const { return inks_; }
  void Clear();

 private:
  // Never more than was reserved, so that what the copies point to stays where it is.
  std::vector<Ink> inks_;
  std::vector<FixedPoint> points_;
  std::vector<Path::Step> steps_;
  std::vector<char> codes_;
};

// Paints what it is given in its order, if it is much by several threads. While they paint, more is taken.
class InkCollector {
 public:
  InkCollector();
  ~InkCollector();

  void Begin(const PixelRows& pixels, const QRect& clip);
  void Add(const Ink& ink);
  // Returns when all is painted.
  void Finish();

 private:
  void Paint(std::span<const Ink> inks, bool more);
  // For what other threads paint.
  void Wait();

  PixelRows pixels_;
  QRect clip_;
  InkList lists_[2];  // one is filled while the other is painted
  InkList* filled_ = &lists_[0];
  struct Threads;
  std::unique_ptr<Threads> threads_;
};

}  // namespace kelvane
