#include "tools/pictures/image_files.h"

#include <cstdint>

namespace kelvane::pictures {

namespace {

// Little-endian, as every number in these files.
void Append16(std::string& bytes, int value) {
  bytes += static_cast<char>(value & 0xFF);
  bytes += static_cast<char>(value >> 8 & 0xFF);
}

void Append32(std::string& bytes, std::size_t value) {
  Append16(bytes, static_cast<int>(value & 0xFFFF));
  Append16(bytes, static_cast<int>(value >> 16 & 0xFFFF));
}

void AppendColour(std::string& bytes, Pixel pixel) {
  bytes += static_cast<char>(pixel.blue);
  bytes += static_cast<char>(pixel.green);
  bytes += static_cast<char>(pixel.red);
}

constexpr std::size_t kInfoHeaderSize = 40;

// The header that both kinds of file share. `rows` counts the rows of the mask too where there is one.
void AppendInfoHeader(std::string& bytes, int width, int rows, int bitsPerPixel, std::size_t imageSize) {
  constexpr std::size_t kDotsPerMetre = 3780;  // 96 to the inch
  Append32(bytes, kInfoHeaderSize);
  Append32(bytes, static_cast<std::size_t>(width));
  Append32(bytes, static_cast<std::size_t>(rows));
  Append16(bytes, 1);  // planes
  Append16(bytes, bitsPerPixel);
  Append32(bytes, 0);  // not compressed
  Append32(bytes, imageSize);
  Append32(bytes, kDotsPerMetre);
  Append32(bytes, kDotsPerMetre);
  Append32(bytes, 0);  // no palette
  Append32(bytes, 0);
}

std::string BitmapRows(const Picture& picture) {
  std::string rows;
  for (int y = picture.height - 1; y >= 0; --y) {
    for (int x = 0; x < picture.width; ++x) AppendColour(rows, picture.At(x, y));
    while (rows.size() % 4 != 0) rows += '\0';
  }
  return rows;
}

std::string PointerRows(const Picture& picture) {
  std::string rows;
  for (int y = picture.height - 1; y >= 0; --y) {
    for (int x = 0; x < picture.width; ++x) {
      AppendColour(rows, picture.At(x, y));
      rows += static_cast<char>(picture.At(x, y).alpha);
    }
  }
  return rows;
}

// One bit a pixel, set where the screen shows through, for readers that know no alpha.
std::string MaskRows(const Picture& picture) {
  std::string rows;
  for (int y = picture.height - 1; y >= 0; --y) {
    for (int x = 0; x < picture.width; x += 8) {
      int bits = 0;
      for (int i = 0; i < 8; ++i) bits = bits << 1 | (picture.At(x + i, y).alpha == 0 ? 1 : 0);
      rows += static_cast<char>(bits);
    }
  }
  return rows;
}

}  // namespace

std::string BitmapFile(const Picture& picture) {
  constexpr std::size_t kHeaderSize = 14 + kInfoHeaderSize;
  const std::string rows = BitmapRows(picture);
  std::string bytes = "BM";
  Append32(bytes, kHeaderSize + rows.size());
  Append32(bytes, 0);
  Append32(bytes, kHeaderSize);
  AppendInfoHeader(bytes, picture.width, picture.height, 24, rows.size());
  return bytes + rows;
}

std::string PointerFile(const Picture& picture, int hotX, int hotY) {
  constexpr std::size_t kDirectorySize = 6 + 16;
  const std::string rows = PointerRows(picture) + MaskRows(picture);
  std::string bytes;
  Append16(bytes, 0);
  Append16(bytes, 2);  // pointers; 1 would be icons
  Append16(bytes, 1);  // one image
  bytes += static_cast<char>(picture.width);
  bytes += static_cast<char>(picture.height);
  Append16(bytes, 0);  // no palette
  Append16(bytes, hotX);
  Append16(bytes, hotY);
  Append32(bytes, kInfoHeaderSize + rows.size());
  Append32(bytes, kDirectorySize);
  AppendInfoHeader(bytes, picture.width, 2 * picture.height, 32, rows.size());
  return bytes + rows;
}

}  // namespace kelvane::pictures
