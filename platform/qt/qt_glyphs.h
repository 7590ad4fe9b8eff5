#pragma once

// Ready-made images of the glyphs of one face at one size. Qt's own text drawing puts baselines on whole
// pixels; these stand at quarters of a pixel in both directions, so that text lies where it is printed, and
// blending one costs less than a call of the painter.

#include <QImage>
#include <QRgb>
#include <array>
#include <memory>
#include <vector>

#include "platform/qt/coverage.h"

namespace kelvane {

class QtFace;

// Coverage 0 to 255 of the pixels of a rectangle; left and top count from the pixel that holds the origin.
struct GlyphImage {
  int left = 0;
  int top = 0;
  int width = 0;  // 0: no ink
  int height = 0;
  bool made = false;
  std::vector<uchar> coverage;
};

class GlyphImages {
 public:
  static constexpr int kSteps = 4;  // positions within a pixel, each way

  // `em` in pixels.
  GlyphImages(QtFace& face, double em);
  ~GlyphImages();
  GlyphImages(const GlyphImages&) = delete;
  GlyphImages& operator=(const GlyphImages&) = delete;

  // Bytes that all images of all sizes take, and how many are kept; the size in use comes on top of these.
  static std::size_t Held();
  static constexpr std::size_t kMostHeld = std::size_t{8} << 20;

  // The image of a code whose origin lies stepX / kSteps and stepY / kSteps inside a pixel.
  const GlyphImage& At(unsigned char code, int stepX, int stepY);
  // Its outline, the origin at (0, 0).
  const FlatPath& Outline(unsigned char code) { return Of(code).outline; }

 private:
  struct Glyph {
    FlatPath outline;
    std::array<GlyphImage, std::size_t{kSteps} * kSteps> images;
  };

  void Hold(std::size_t bytes);
  Glyph& Of(unsigned char code);
  void Make(GlyphImage& image, const FlatPath& outline, FixedPoint shift);

  QtFace& face_;
  double em_;
  std::size_t bytes_;
  std::array<std::unique_ptr<Glyph>, 256> glyphs_;
};

// The images of a face at an em in pixels, rounded to 1/64. Valid until the next call, for whatever face.
// What has not been used for longest goes first when all faces together hold too much.
GlyphImages& ImagesOf(QtFace& face, double em);

// Blends `colour` into a row of pixels, RGB32 or premultiplied, as far as each is covered.
void BlendRow(QRgb* pixels, const uchar* coverage, int count, QRgb colour);
// The same, pixel by pixel: what the other one does for machines without vectors and for the last few.
void BlendRowPlainly(QRgb* pixels, const uchar* coverage, int count, QRgb colour);

// Blends a glyph's image into a 32-bit image; (x, y) is the pixel of its origin. Parts outside the clip,
// which lies within the target, are left out.
void BlendGlyph(QImage& target, const QRect& clip, int x, int y, const GlyphImage& glyph, QRgb colour);

}  // namespace kelvane
