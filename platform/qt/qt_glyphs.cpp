#include "platform/qt/qt_glyphs.h"

#include <algorithm>
#include <cmath>
#include <list>

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

std::unique_ptr<GlyphImage> MakeImage(const FlatPath& outline, FixedPoint shift, Coverage& coverage) {
  constexpr int kGroup = 4;  // pixels that are blended together: rows end with a whole one
  auto image = std::make_unique<GlyphImage>();
  if (outline.Empty()) return image;
  const QRect box = outline.Bounds().adjusted(0, 0, 1, 1);
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

}  // namespace

GlyphImages::GlyphImages(QtFace& face, double em) : face_(face), em_(em), bytes_(sizeof(GlyphImages)) {
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

void GlyphImages::Prepare(std::string_view codes) {
  for (const char character : codes) {
    const auto code = static_cast<unsigned char>(character);
    std::unique_ptr<Glyph>& glyph = glyphs_[code];
    if (glyph != nullptr || face_.Glyph(code) == 0) continue;
    glyph = std::make_unique<Glyph>();
    glyph->outline = OutlineOf(face_, code, em_);
    Hold(sizeof(Glyph) + glyph->outline.Points().size_bytes());
  }
}

const FlatPath* GlyphImages::Outline(unsigned char code) const {
  return glyphs_[code] == nullptr ? nullptr : &glyphs_[code]->outline;
}

int GlyphImages::Reach() const {
  return static_cast<int>(std::ceil(em_ * kGlyphReach)) + 1;
}

const GlyphImage* GlyphImages::At(unsigned char code, int stepX, int stepY, Coverage& coverage) {
  if (glyphs_[code] == nullptr) return nullptr;
  std::atomic<GlyphImage*>& place =
      glyphs_[code]->images[static_cast<std::size_t>(stepY) * kSteps + static_cast<std::size_t>(stepX)];
  GlyphImage* image = place.load(std::memory_order_acquire);
  if (image != nullptr) return image;
  constexpr int kStep = kPixel / kSteps;
  auto made = MakeImage(glyphs_[code]->outline, {stepX * kStep, stepY * kStep}, coverage);
  // Another thread may have made the same one meanwhile.
  if (!place.compare_exchange_strong(image, made.get(), std::memory_order_acq_rel)) return image;
  Hold(sizeof(GlyphImage) + made->coverage.capacity());
  return made.release();
}

void GlyphImages::Hold(std::size_t bytes) {
  bytes_ += bytes;
  heldBytes += bytes;
}

namespace {

struct Size {
  Size(QtFace& of, int size) : face(&of), em(size), images(of, size / 64.0) {}
  const QtFace* face;
  int em;  // 1/64 pixel
  GlyphImages images;
};

// The one used last in front. Most calls find theirs among the first few.
std::list<Size>& Sizes() {
  static std::list<Size>& sizes = *new std::list<Size>;
  return sizes;
}

}  // namespace

GlyphImages& ImagesOf(QtFace& face, double em) {
  std::list<Size>& sizes = Sizes();
  const int size = static_cast<int>(std::lround(em * 64));
  const auto found = std::find_if(sizes.begin(), sizes.end(),
                                  [&](const Size& kept) { return kept.em == size && kept.face == &face; });
  if (found == sizes.end()) {
    sizes.emplace_front(face, size);
  } else if (found != sizes.begin()) {
    sizes.splice(sizes.begin(), sizes, found);
  }
  return sizes.front().images;
}

void TrimGlyphImages() {
  while (GlyphImages::Held() > GlyphImages::kMostHeld && Sizes().size() > 1) Sizes().pop_back();
}

}  // namespace kelvane
