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

struct Pointer {
  int type;
  int hotX;
  int hotY;
  Picture picture{32, 32, {}};
  std::string mask;
};

Pointer ReadPointer(const std::string& name) {
  const std::string bytes = DiskFiles().ReadWhole(kData + name);
  EXPECT_EQ(bytes.size(), 6u + 16 + 40 + 32 * 32 * 4 + 32 * 4);
  const auto at = [&](int offset) {
    return static_cast<unsigned char>(bytes[static_cast<std::size_t>(offset)]);
  };
  Pointer pointer{at(2), at(10), at(12), Picture(32, 32, {}), bytes.substr(62 + 4096)};
  for (int y = 0; y < 32; ++y) {
    for (int x = 0; x < 32; ++x) {
      const int offset = 62 + ((31 - y) * 32 + x) * 4;
      pointer.picture.At(x, y) = {at(offset + 2), at(offset + 1), at(offset), at(offset + 3)};
    }
  }
  return pointer;
}

bool Opaque(const Pointer& pointer, int x, int y) {
  return pointer.picture.At(x, y).alpha > 0;
}

TEST(Pictures, ShippedFilesAreMadeFromTheSources) {
  const auto built = BuildPictures(kSources);
  EXPECT_EQ(built.size(), 12u);
  for (const auto& [name, bytes] : built)
    EXPECT_TRUE(bytes == DiskFiles().ReadWhole(kData + name)) << name << ": run build_pictures again";
}

TEST(Pictures, HotSpotIsTheMarkedPoint) {
  for (const char* name :
       {"tplt", "left", "btlt", "bot", "btrt", "right", "tprt", "top", "mid", "point", "cross"}) {
    const Pointer pointer = ReadPointer(std::string("PVQ") + name + ".ICO");
    EXPECT_EQ(pointer.type, 2) << name;
    ASSERT_TRUE(pointer.hotX < 32 && pointer.hotY < 32) << name;
    EXPECT_EQ(pointer.picture.At(pointer.hotX, pointer.hotY), kAccent) << name;
  }
}

// The box of the item must lie on the proper side of its mark: counts how much is painted to each side.
TEST(Pictures, ItemLiesAsItsAnchorSays) {
  const struct {
    const char* name;
    int horizontal;  // -1: the item extends to the right of the mark, 0: to both sides, 1: to the left
    int vertical;    // -1: downwards, 0: both, 1: upwards
  } anchors[] = {{"tplt", -1, -1}, {"left", -1, 0}, {"btlt", -1, 1}, {"bot", 0, 1}, {"btrt", 1, 1},
                 {"right", 1, 0},  {"tprt", 1, -1}, {"top", 0, -1},  {"mid", 0, 0}};
  for (const auto& anchor : anchors) {
    const Pointer pointer = ReadPointer(std::string("PVQ") + anchor.name + ".ICO");
    int horizontal = 0;
    int vertical = 0;
    for (int y = 0; y < 32; ++y) {
      for (int x = 0; x < 32; ++x) {
        if (!Opaque(pointer, x, y)) continue;
        horizontal += (x < pointer.hotX) - (x > pointer.hotX);
        vertical += (y < pointer.hotY) - (y > pointer.hotY);
      }
    }
    const auto sign = [](int balance) { return (balance > 0) - (balance < 0); };
    EXPECT_EQ(sign(horizontal), anchor.horizontal) << anchor.name;
    EXPECT_EQ(sign(vertical), anchor.vertical) << anchor.name;
  }
}

TEST(Pictures, MaskLetsTheScreenThroughWhereNothingIsPainted) {
  const Pointer pointer = ReadPointer("PVQbtlt.ICO");
  for (int y = 0; y < 32; ++y) {
    for (int x = 0; x < 32; ++x) {
      const auto byte =
          static_cast<unsigned char>(pointer.mask[static_cast<std::size_t>((31 - y) * 4 + x / 8)]);
      EXPECT_EQ((byte >> (7 - x % 8) & 1) == 0, Opaque(pointer, x, y)) << x << ", " << y;
    }
  }
}

TEST(Raster, AreasAndStrokesCoverTheirPixels) {
  const Pixel white = {255, 255, 255, 255};
  const Pixel black = {0, 0, 0, 255};
  Picture picture(8, 8, white);
  // A square with a hole in it that runs the other way round; its right edge halves the pixels of column 6.
  FillArea(picture, {{{1, 1}, {6.5, 1}, {6.5, 7}, {1, 7}}, {{3, 3}, {3, 5}, {5, 5}, {5, 3}}}, black);
  EXPECT_EQ(picture.At(0, 0), white);
  EXPECT_EQ(picture.At(1, 1), black);
  EXPECT_EQ(picture.At(2, 6), black);
  EXPECT_EQ(picture.At(3, 3), white);
  EXPECT_EQ(picture.At(4, 4), white);
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
  EXPECT_EQ(nib.At(5, 8), black);
  EXPECT_EQ(nib.At(10, 8), black);
  EXPECT_EQ(nib.At(4, 8), white);
  EXPECT_EQ(nib.At(8, 15), white);
}

std::string MessageOf(void (*action)()) {
  try {
    action();
  } catch (const Failure& failure) {
    return failure.what();
  }
  return "no failure";
}

TEST(Pictures, AWrongLineIsNamed) {
  EXPECT_EQ(MessageOf([] { BuildPointers("shape a\n#.#\n#.\n\n", "p.txt"); }),
            "p.txt, line 3: rows of unlike length.");
  EXPECT_EQ(MessageOf([] { BuildPointers("\npointer X.ICO box 3 3\n", "p.txt"); }),
            "p.txt, line 2: no shape named box.");
  EXPECT_EQ(MessageOf([] { BuildPointers("shape a\n#\n\npointer X.ICO a 32 3\n", "p.txt"); }),
            "p.txt, line 4: a pointer without a hot spot in its picture.");
  EXPECT_EQ(MessageOf([] { BuildDrawing("size 4 4 ffffffff\nstroke L 1 1\n", "d.txt"); }),
            "d.txt, line 2: the path does not begin with M.");
  EXPECT_EQ(MessageOf([] { BuildDrawing("size 4 4 ffffffff\nfill M 1\n", "d.txt"); }),
            "d.txt, line 2: something is missing at its end.");
  EXPECT_EQ(MessageOf([] { BuildDrawing("size 4 4 fff\n", "d.txt"); }),
            "d.txt, line 1: \"fff\" is not a colour.");
}

}  // namespace
}  // namespace kelvane::pictures
