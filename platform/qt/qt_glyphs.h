#pragma once

// Ready-made images of the glyphs of one face at one size. Qt's own text drawing puts baselines on whole
// pixels; these stand at quarters of a pixel in both directions, so that text lies where it is printed, and
// blending one costs less than a call of the painter.

#include <array>
#include <atomic>
#include <memory>
#include <string_view>
#include <vector>

#include "platform/qt/coverage.h"

namespace kelvane {

class QtFace;

// How far ink may lie from a character's origin, in ems.
inline constexpr double kGlyphReach = 1.5;

// Coverage 0 to 255 of the pixels of a rectangle; left and top count from the pixel that holds the origin.
struct GlyphImage {
  int left = 0;
  int top = 0;
  int width = 0;  // 0: no ink
  int height = 0;
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

  // Takes the outlines of codes from the face, which the two below need; only one thread may use faces.
  void Prepare(std::string_view codes);
  // The image of a prepared code whose origin lies stepX / kSteps and stepY / kSteps inside a pixel; none if
  // the face has no glyph for it. Several threads may ask at the same time, each with a coverage of its own.
  const GlyphImage* At(unsigned char code, int stepX, int stepY, Coverage& coverage);
  // Its outline, the origin at (0, 0).
  const FlatPath* Outline(unsigned char code) const;
  // How far ink may lie from a character's origin, in pixels.
  int Reach() const;

 private:
  struct Glyph {
    FlatPath outline;
    std::array<std::atomic<GlyphImage*>, std::size_t{kSteps} * kSteps> images{};
    ~Glyph();
  };

  void Hold(std::size_t bytes);

  QtFace& face_;
  double em_;
  std::atomic<std::size_t> bytes_;
  std::array<std::unique_ptr<Glyph>, 256> glyphs_;
};

// The images of a face at an em in pixels, rounded to 1/64. They stay until TrimGlyphImages.
GlyphImages& ImagesOf(QtFace& face, double em);
// When all faces together hold too much, what has not been used for longest goes.
void TrimGlyphImages();

}  // namespace kelvane
