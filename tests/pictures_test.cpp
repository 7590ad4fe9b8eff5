// The shipped pictures come from their sources, and every pointer points where its mark is.

#include <gtest/gtest.h>

#include "platform/failure.h"
#include "platform/files.h"
#include "tools/pictures/image_files.h"
#include "tools/pictures/pictures.h"

namespace kelvane::pictures {
namespace {

const std::string kSources = BackslashPath(KELVANE_SOURCE_DIR) + "\\tools\\pictures\\";
const std::string kData = BackslashPath(KELVANE_SOURCE_DIR) + "\\data\\";
constexpr int kSide = 32;

struct Pointer {
  int hotX;
  int hotY;
  Picture picture{kSide, kSide, {}};
  std::string mask;
};

Pointer ReadPointer(const std::string& name) {
  const std::string bytes = DiskFiles().ReadWhole(kData + "PVQ" + name + ".ICO");
  EXPECT_EQ(bytes.size(), 6u + 16 + 40 + kSide * kSide * 4 + kSide * 4);
  const auto at = [&](int offset) {
    return static_cast<unsigned char>(bytes[static_cast<std::size_t>(offset)]);
  };
  EXPECT_EQ(at(2), 2) << "the type of a pointer";
  Pointer pointer{at(10), at(12), Picture(kSide, kSide, {}), bytes.substr(62 + kSide * kSide * 4)};
  for (int y = 0; y < kSide; ++y) {
    for (int x = 0; x < kSide; ++x) {
      const int offset = 62 + ((kSide - 1 - y) * kSide + x) * 4;
      pointer.picture.At(x, y) = {at(offset + 2), at(offset + 1), at(offset), at(offset + 3)};
    }
  }
  return pointer;
}

TEST(Pictures, ShippedFilesAreMadeFromTheSources) {
  const auto built = BuildPictures(kSources);
  EXPECT_EQ(built.size(), 12u);
  for (const auto& [name, bytes] : built)
    EXPECT_TRUE(bytes == DiskFiles().ReadWhole(kData + name)) << name << ": run build_pictures again";
}

// The hot spot is the marked point, and the box of the item lies on the proper side of it: counts how much is
// painted to each side. The mask lets the screen through where nothing is painted.
TEST(Pictures, PointersPointAtTheirMarkAndShowTheAnchor) {
  constexpr int kAnySide = 2;
  const struct {
    const char* name;
    int horizontal;  // -1: the item extends to the right of the mark, 0: to both sides, 1: to the left
    int vertical;    // -1: downwards, 0: both, 1: upwards
  } pointers[] = {{"tplt", -1, -1},
                  {"left", -1, 0},
                  {"btlt", -1, 1},
                  {"bot", 0, 1},
                  {"btrt", 1, 1},
                  {"right", 1, 0},
                  {"tprt", 1, -1},
                  {"top", 0, -1},
                  {"mid", 0, 0},
                  {"cross", 0, 0},
                  {"point", kAnySide, kAnySide}};
  for (const auto& [name, itemHorizontal, itemVertical] : pointers) {
    SCOPED_TRACE(name);
    const Pointer pointer = ReadPointer(name);
    ASSERT_TRUE(pointer.hotX < kSide && pointer.hotY < kSide);
    EXPECT_EQ(pointer.picture.At(pointer.hotX, pointer.hotY), kAccent);
    int horizontal = 0;
    int vertical = 0;
    for (int y = 0; y < kSide; ++y) {
      for (int x = 0; x < kSide; ++x) {
        const bool opaque = pointer.picture.At(x, y).alpha > 0;
        const char maskByte = pointer.mask[static_cast<std::size_t>((kSide - 1 - y) * 4 + x / 8)];
        EXPECT_EQ((maskByte >> (7 - x % 8) & 1) == 0, opaque) << x << ", " << y;
        if (!opaque) continue;
        horizontal += (x < pointer.hotX) - (x > pointer.hotX);
        vertical += (y < pointer.hotY) - (y > pointer.hotY);
      }
    }
    const auto sign = [](int balance) { return (balance > 0) - (balance < 0); };
    if (itemHorizontal == kAnySide) continue;
    EXPECT_EQ(sign(horizontal), itemHorizontal);
    EXPECT_EQ(sign(vertical), itemVertical);
  }
}

TEST(Raster, AreasAndStrokesCoverTheirPixels) {
  const Pixel white = {255, 255, 255, 255};
  const Pixel black = {0, 0, 0, 255};
  // A square with a hole in it that runs the other way round; its right edge halves the pixels of column 6.
  Picture picture(8, 8, white);
  FillArea(picture, {{{1, 1}, {6.5, 1}, {6.5, 7}, {1, 7}}, {{3, 3}, {3, 5}, {5, 5}, {5, 3}}}, black);
  for (const auto& [x, y] : {std::pair(0, 0), {3, 3}, {4, 4}}) EXPECT_EQ(picture.At(x, y), white);
  for (const auto& [x, y] : {std::pair(1, 1), {2, 6}}) EXPECT_EQ(picture.At(x, y), black);
  EXPECT_EQ(picture.At(6, 1).red, 128);

  // Two lines that cross: the translucent crossing is no darker than the rest.
  Picture crossing(9, 9, white);
  StrokeLines(crossing, {{{0, 4.5}, {9, 4.5}}, {{4.5, 0}, {4.5, 9}}}, {1, 1, 0}, {0, 0, 0, 128});
  EXPECT_EQ(crossing.At(4, 4), crossing.At(4, 1));
  EXPECT_EQ(crossing.At(4, 1).red, 127);
  EXPECT_EQ(crossing.At(1, 1), white);

  // A broad nib held level draws broad uprights and thin crossbars.
  Picture nib(16, 16, white);
  StrokeLines(nib, {{{8, 2}, {8, 14}}}, {6, 2, 0}, black);
  for (const auto& [x, y] : {std::pair(5, 8), {10, 8}}) EXPECT_EQ(nib.At(x, y), black);
  for (const auto& [x, y] : {std::pair(4, 8), {8, 15}}) EXPECT_EQ(nib.At(x, y), white);
}

TEST(Pictures, AWrongLineIsNamed) {
  const auto pointers = [](const char* source) { BuildPointers(source, "p.txt"); };
  const auto drawing = [](const char* source) { BuildDrawing(source, "p.txt"); };
  const struct {
    void (*build)(const char*);
    const char* source;
    const char* message;
  } cases[] = {
      {pointers, "shape a\n#.#\n#.\n\n", "line 3: rows of unlike length."},
      {pointers, "\npointer X.ICO box 3 3\n", "line 2: no shape named box."},
      {pointers, "shape a\n#\n\npointer X.ICO a 32 3\n",
       "line 4: a pointer without a hot spot in its picture."},
      {drawing, "size 4 4 ffffffff\nstroke L 1 1\n", "line 2: the path does not begin with M."},
      {drawing, "size 4 4 ffffffff\nfill M 1\n", "line 2: something is missing at its end."},
      {drawing, "size 4 4 fff\n", "line 1: \"fff\" is not a colour."},
  };
  for (const auto& [build, source, message] : cases) {
    try {
      build(source);
      ADD_FAILURE() << "no failure of " << source;
    } catch (const Failure& failure) {
      EXPECT_EQ(failure.what(), std::string("p.txt, ") + message);
    }
  }
}

}  // namespace
}  // namespace kelvane::pictures
