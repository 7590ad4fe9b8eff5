#pragma once

// A small rasteriser for the drawn pictures: areas and pen strokes, 64 samples to a pixel.

#include <cstdint>
#include <vector>

namespace kelvane::pictures {

struct Pixel {
  std::uint8_t red = 0;
  std::uint8_t green = 0;
  std::uint8_t blue = 0;
  std::uint8_t alpha = 0;
  bool operator==(const Pixel&) const = default;
};

// Rows from the top, left to right.
struct Picture {
  int width = 0;
  int height = 0;
  std::vector<Pixel> pixels;

  Picture() = default;
  Picture(int pictureWidth, int pictureHeight, Pixel ground);
  Pixel& At(int x, int y) { return pixels[static_cast<std::size_t>(y * width + x)]; }
  const Pixel& At(int x, int y) const { return pixels[static_cast<std::size_t>(y * width + x)]; }
};

struct Point {
  double x = 0;
  double y = 0;
};

// Straight pieces; pixel (0, 0) covers the square from (0, 0) to (1, 1), y downwards.
using Polyline = std::vector<Point>;
using Polylines = std::vector<Polyline>;

// A broad nib: an ellipse `width` long and `thickness` across, its length turned `angle` degrees
// anticlockwise from the horizontal. Width and thickness alike make a round pen.
struct Pen {
  double width = 1;
  double thickness = 1;
  double angle = 0;
};

// The points of a Bezier curve from `from` on, without `from` itself: cubic with controls a and b.
void AppendCurve(Polyline& line, Point from, Point a, Point b, Point to);

// Paint over an opaque picture. Several pieces make one area (non-zero winding, each closed back to its
// start) or one stroke: where they overlap, a translucent colour counts once.
void FillArea(Picture& picture, const Polylines& area, Pixel colour);
void StrokeLines(Picture& picture, const Polylines& lines, const Pen& pen, Pixel colour);

}  // namespace kelvane::pictures
