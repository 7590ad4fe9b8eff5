#include "platform/qt/qt_glyphs.h"

#include <algorithm>
#include <cmath>
#include <list>
#include <utility>

#include "platform/qt/qt_fonts.h"
#include "platform/qt/qt_outlines.h"

namespace kelvane {
namespace {

// The outline of a code at an em in pixels.
FlatPath OutlineOf(QtFace& face, unsigned char code, double em) {
  const double scale = em / QtFace::kOutlineEm;
  FlatPath shape;
  AddOutline(shape, face.Outline(code), [scale](const QPainterPath::Element& element) {
    return ToFixed(element.x * scale, element.y * scale);
  });
  return shape;
}

std::unique_ptr<GlyphImage> MakeImage(const FlatPath& outline, const QRect& box, FixedPoint shift,
                                      Coverage& coverage) {
  constexpr int kGroup = 4;  // pixels that are blended together: rows end with a whole one
  auto image = std::make_unique<GlyphImage>();
  if (outline.Empty()) return image;
  image->left = box.left();
  image->top = box.top();
  image->width = (box.width() + kGroup - 1) / kGroup * kGroup;
  image->height = box.height();
  image->coverage.resize(static_cast<std::size_t>(image->width) * static_cast<std::size_t>(image->height));
  coverage.Cover(outline, shift, box, [&](int y, int x, const uchar* covered, int count) {
    uchar* const row = image->coverage.data() + static_cast<std::ptrdiff_t>(y - image->top) * image->width;
    std::copy_n(covered, count, row + x - image->left);
  });
  return image;
}

std::atomic<std::size_t> heldBytes = 0;

constexpr std::size_t kAroundBlock = 16;  // bytes that a block takes in the heap beyond its own

}  // namespace

GlyphImages::GlyphImages(double em) : em_(em), bytes_(sizeof(GlyphImages)) {
  heldBytes += bytes_;
}

GlyphImages::~GlyphImages() {
  heldBytes -= bytes_;
}

std::size_t GlyphImages::Held() {
  return heldBytes;
}

GlyphImages::Glyph::~Glyph() {
  for (std::atomic<GlyphImage*>& image : images) delete image.load();
}

void GlyphImages::Keep(unsigned char code, const FlatPath& outline) {
  auto glyph = std::make_unique<Glyph>();
  glyph->outline = outline;  // a copy: the outline was made with room for more
  // The origin may lie anywhere in its pixel.
  glyph->bounds = glyph->outline.Bounds().adjusted(0, 0, 1, 1);
  const QRect& box = glyph->bounds;
  reach_ = std::max({reach_.load(), -box.left(), -box.top(), box.right(), box.bottom()});
  Hold(sizeof(Glyph) + outline.Points().size_bytes() + outline.Parts() * sizeof(std::size_t) +
       3 * kAroundBlock);
  glyphs_[code] = std::move(glyph);
}

const FlatPath* GlyphImages::Outline(unsigned char code) const {
  return glyphs_[code] == nullptr ? nullptr : &glyphs_[code]->outline;
}

const GlyphImage* GlyphImages::At(unsigned char code, int stepX, int stepY, Coverage& coverage) {
  if (glyphs_[code] == nullptr) return nullptr;
  std::atomic<GlyphImage*>& place =
      glyphs_[code]->images[static_cast<std::size_t>(stepY) * kSteps + static_cast<std::size_t>(stepX)];
  GlyphImage* image = place.load(std::memory_order_acquire);
  if (image != nullptr) return image;
  constexpr int kStep = kPixel / kSteps;
  auto made =
      MakeImage(glyphs_[code]->outline, glyphs_[code]->bounds, {stepX * kStep, stepY * kStep}, coverage);
  // Another thread may have made the same one meanwhile.
  if (!place.compare_exchange_strong(image, made.get(), std::memory_order_acq_rel)) return image;
  Hold(sizeof(GlyphImage) + made->coverage.capacity() + 2 * kAroundBlock);
  return made.release();
}

void GlyphImages::Hold(std::size_t bytes) {
  bytes_ += bytes;
  heldBytes += bytes;
}

namespace {

struct Size {
  Size(const GlyphOwner& of, int size) : owner(of), em(size), images(size / 64.0) {}
  GlyphOwner owner;
  int em;  // 1/64 pixel
  GlyphImages images;
};

// The one used last in front. Most calls find theirs among the first few.
std::list<Size>& Sizes() {
  static std::list<Size>& sizes = *new std::list<Size>;
  return sizes;
}

}  // namespace

GlyphImages& ImagesOf(const GlyphOwner& owner, double em) {
  std::list<Size>& sizes = Sizes();
  const int size = static_cast<int>(std::lround(em * 64));
  const auto found = std::find_if(sizes.begin(), sizes.end(),
                                  [&](const Size& kept) { return kept.em == size && kept.owner == owner; });
  if (found == sizes.end()) {
    sizes.emplace_front(owner, size);
  } else if (found != sizes.begin()) {
    sizes.splice(sizes.begin(), sizes, found);
  }
  return sizes.front().images;
}

GlyphImages& PreparedImages(QtFace& face, double em, std::string_view codes) {
  GlyphImages& images = ImagesOf({&face, 0}, em);
  for (const char character : codes) {
    const auto code = static_cast<unsigned char>(character);
    if (face.Glyph(code) != 0) images.Prepare(code, [&] { return OutlineOf(face, code, images.Em()); });
  }
  return images;
}

GlyphImages& PreparedImages(const GlyphLines& glyph, double em, double ratio) {
  static constexpr char kFonts[4] = {};
  GlyphImages& images = ImagesOf({&kFonts[glyph.font % 4], glyph.edition}, em);
  images.Prepare(static_cast<unsigned char>(glyph.code), [&] {
    const double unit = kGlyphUnit * images.Em();
    FlatPath area;
    Stroker stroker;
    for (const auto& [path, width] : glyph.lines) {
      if (path == nullptr) continue;
      std::vector<FixedPoint> points;
      for (const Point& point : path->points) points.push_back(ToFixed(point.x * unit, -point.y * unit));
      FlatPath lines;
      lines.Add(path->steps, points);
      stroker.Add(area, lines, width * ratio);
    }
    return area;
  });
  return images;
}

void TrimGlyphImages() {
  while (GlyphImages::Held() > GlyphImages::kMostHeld && Sizes().size() > 1) Sizes().pop_back();
}

}  // namespace kelvane
