// The shipped pictures come from their sources, and every pointer points where its mark is.

#include <gtest/gtest.h>

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

}  // namespace
}  // namespace kelvane::pictures
