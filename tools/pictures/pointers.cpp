// Pointers from rows of signs.

#include <algorithm>
#include <sstream>
#include <vector>

#include "document/lines.h"
#include "platform/failure.h"
#include "tools/pictures/image_files.h"
#include "tools/pictures/pictures.h"

namespace kelvane::pictures {

namespace {

constexpr int kSize = 32;
constexpr Pixel kInk = {28, 32, 40, 255};
constexpr Pixel kRim = {255, 255, 255, 235};
constexpr int kHalfStrength = 140;  // of 255

struct Shape {
  std::vector<std::string> rows;
};

bool IsSign(char sign) {
  return std::string_view("#*+-.").find(sign) != std::string_view::npos;
}

// The pixel of a sign; alpha 0 for nothing.
Pixel PixelOf(char sign) {
  if (sign == '.') return {};
  Pixel pixel = sign == '#' || sign == '+' ? kInk : kAccent;
  if (sign == '+' || sign == '-') pixel.alpha = kHalfStrength;
  return pixel;
}

// `above` laid over `below`, both possibly translucent.
Pixel Over(Pixel above, Pixel below) {
  const int rest = below.alpha * (255 - above.alpha) / 255;
  const int alpha = above.alpha + rest;
  if (alpha == 0) return {};
  const auto mix = [&](int a, int b) {
    return static_cast<std::uint8_t>((a * above.alpha + b * rest + alpha / 2) / alpha);
  };
  return {mix(above.red, below.red), mix(above.green, below.green), mix(above.blue, below.blue),
          static_cast<std::uint8_t>(alpha)};
}

void LayOver(Picture& picture, int x, int y, Pixel pixel) {
  if (x < 0 || y < 0 || x >= picture.width || y >= picture.height) return;
  picture.At(x, y) = Over(pixel, picture.At(x, y));
}

// Calls visit(x, y, pixel) for every painted pixel of a shape whose middle is at (middleX, middleY).
template <typename Visitor>
void VisitShape(const Shape& shape, int middleX, int middleY, Visitor visit) {
  const int top = middleY - static_cast<int>(shape.rows.size()) / 2;
  for (std::size_t row = 0; row < shape.rows.size(); ++row) {
    const int left = middleX - static_cast<int>(shape.rows[row].size()) / 2;
    for (std::size_t column = 0; column < shape.rows[row].size(); ++column) {
      const Pixel pixel = PixelOf(shape.rows[row][column]);
      if (pixel.alpha > 0) visit(left + static_cast<int>(column), top + static_cast<int>(row), pixel);
    }
  }
}

void DrawShape(Picture& picture, const Shape& shape, int middleX, int middleY) {
  Picture rim(picture.width, picture.height, {});
  VisitShape(shape, middleX, middleY, [&](int x, int y, Pixel) {
    for (int dy = -1; dy <= 1; ++dy)
      for (int dx = -1; dx <= 1; ++dx)
        if (x + dx >= 0 && y + dy >= 0 && x + dx < rim.width && y + dy < rim.height)
          rim.At(x + dx, y + dy) = kRim;
  });
  for (int y = 0; y < rim.height; ++y)
    for (int x = 0; x < rim.width; ++x) LayOver(picture, x, y, rim.At(x, y));
  VisitShape(shape, middleX, middleY, [&](int x, int y, Pixel pixel) { LayOver(picture, x, y, pixel); });
}

class PointerReader {
 public:
  PointerReader(std::string_view source, std::string name) : rest_(source), name_(std::move(name)) {}

  std::map<std::string, std::string> Read() {
    std::map<std::string, std::string> files;
    while (!rest_.empty()) {
      std::istringstream words{std::string(NextLine())};
      std::string word;
      if (!(words >> word) || word[0] == '#') continue;
      std::string subject;
      words >> subject;
      if (word == "shape")
        shapes_[subject] = ReadShape();
      else if (word == "pointer")
        files[subject] = ReadPointer(words);
      else
        Refuse("neither a shape nor a pointer");
    }
    return files;
  }

 private:
  [[noreturn]] void Refuse(const std::string& reason) const {
    throw Failure(name_ + ", line " + std::to_string(line_) + ": " + reason + ".");
  }

  std::string_view NextLine() {
    ++line_;
    return TakeLine(rest_);
  }

  Shape ReadShape() {
    Shape shape;
    while (!rest_.empty()) {
      const std::string_view row = NextLine();
      if (row.empty()) break;
      if (!std::all_of(row.begin(), row.end(), IsSign)) Refuse("a sign that no shape has");
      if (row.size() != (shape.rows.empty() ? row.size() : shape.rows[0].size()))
        Refuse("rows of unlike length");
      shape.rows.emplace_back(row);
    }
    if (shape.rows.size() % 2 == 0 || shape.rows[0].size() % 2 == 0)
      Refuse("the shape above has no middle pixel");
    return shape;
  }

  std::string ReadPointer(std::istringstream& words) {
    Picture picture(kSize, kSize, {});
    std::string shape;
    int x = -1;
    int y = -1;
    while (words >> shape) {
      const auto known = shapes_.find(shape);
      if (known == shapes_.end()) Refuse("no shape named " + shape);
      if (!(words >> x >> y)) Refuse("a shape without its place");
      DrawShape(picture, known->second, x, y);
    }
    if (x < 0 || y < 0 || x >= kSize || y >= kSize) Refuse("a pointer without a hot spot in its picture");
    return PointerFile(picture, x, y);
  }

  std::string_view rest_;
  std::string name_;
  int line_ = 0;
  std::map<std::string, Shape> shapes_;
};

}  // namespace

std::map<std::string, std::string> BuildPointers(std::string_view source, const std::string& name) {
  return PointerReader(source, name).Read();
}

}  // namespace kelvane::pictures
