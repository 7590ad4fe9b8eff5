#pragma once

// Ready-made images of the glyphs of one face at one size. Qt's own text drawing puts baselines on whole
// pixels; these stand at quarters of a pixel in both directions, so that text lies where it is printed, and
// blending one costs less than a call of the painter.

#include <QImage>
#include <QRgb>
#include <array>
#include <memory>
#include <vector>

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
  explicit GlyphImages(double em);
  ~GlyphImages();
  GlyphImages(const GlyphImages&) = delete;
  GlyphImages& operator=(const GlyphImages&) = delete;

  // Bytes that all images of all sizes take.
  static std::size_t Held();

  // The image of a code whose origin lies stepX / kSteps and stepY / kSteps inside a pixel.
  const GlyphImage& At(QtFace& face, unsigned char code, int stepX, int stepY);

 private:
  using Positions = std::array<GlyphImage, std::size_t{kSteps} * kSteps>;

  double em_;
  std::size_t bytes_;
  std::array<std::unique_ptr<Positions>, 256> images_;
};

// Blends a glyph's image into a 32-bit image, RGB32 or premultiplied; (x, y) is the pixel of its origin.
// Parts outside the clip, which lies within the target, are left out.
void BlendGlyph(QImage& target, const QRect& clip, int x, int y, const GlyphImage& glyph, QRgb colour);

}  // namespace kelvane
