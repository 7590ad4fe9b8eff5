#pragma once

// Ready-made images of the glyphs of one face, or of the program's own fonts, at one size. Qt's own text
// drawing puts baselines on whole pixels; these stand at quarters of a pixel in both directions, so that text
// lies where it is printed, and blending one costs less than a call of the painter.

#include <array>
#include <atomic>
#include <cstdint>
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
  explicit GlyphImages(double em);
  ~GlyphImages();
  GlyphImages(const GlyphImages&) = delete;
  GlyphImages& operator=(const GlyphImages&) = delete;

  // Bytes that all images of all sizes take, and how many are kept; the size in use comes on top of these.
  static std::size_t Held();
  static constexpr std::size_t kMostHeld = std::size_t{8} << 20;

  double Em() const { return em_; }
  // Has the outline of a code made, the origin at (0, 0), if it is not there. Only one thread may prepare.
  template <typename Make>
  void Prepare(unsigned char code, Make make) {
    if (glyphs_[code] == nullptr) Keep(code, make());
  }
  // The image of a prepared code whose origin lies stepX / kSteps and stepY / kSteps inside a pixel; null
  // for others. Several threads may ask at the same time, each with a coverage of its own.
  const GlyphImage* At(unsigned char code, int stepX, int stepY, Coverage& coverage);
  // Its outline, null for others, and the pixels that hold it if its origin is the corner of one.
  const FlatPath* Outline(unsigned char code) const;
  QRect Bounds(unsigned char code) const { return glyphs_[code]->bounds; }
  // How far ink may lie from the origin of any of the prepared codes, in pixels.
  int Reach() const { return reach_; }

 private:
  struct Glyph {
    FlatPath outline;
    QRect bounds;
    std::array<std::atomic<GlyphImage*>, std::size_t{kSteps} * kSteps> images{};
    ~Glyph();
  };

  void Keep(unsigned char code, const FlatPath& outline);
  void Hold(std::size_t bytes);

  double em_;
  std::atomic<int> reach_ = 0;
  std::atomic<std::size_t> bytes_;
  std::array<std::unique_ptr<Glyph>, 256> glyphs_;
};

// Whose images: the address of a face, or of what stands for one, and an edition of it.
struct GlyphOwner {
  const void* face = nullptr;
  std::uint32_t edition = 0;
  bool operator==(const GlyphOwner&) const = default;
};
// The images at an em in pixels, rounded to 1/64. They stay until TrimGlyphImages.
GlyphImages& ImagesOf(const GlyphOwner& owner, double em);
// Those of a face, prepared for codes.
GlyphImages& PreparedImages(QtFace& face, double em, std::string_view codes);
// Those of one of the program's own fonts, prepared for a glyph. The widths of its lines are pixels, of which
// `ratio` device pixels make one.
GlyphImages& PreparedImages(const GlyphLines& glyph, double em, double ratio);
// When all faces together hold too much, what has not been used for longest goes.
void TrimGlyphImages();

}  // namespace kelvane
