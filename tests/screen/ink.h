#pragma once

// The ink of a picture.

#include <QImage>
#include <algorithm>
#include <string>

namespace kelvane {

// A pixel that a tenth of it covers has ink: less cannot be seen.
inline bool HasInk(QRgb pixel) {
  return std::min({qRed(pixel), qGreen(pixel), qBlue(pixel)}) < 230;
}

inline QRect InkBox(const QImage& image, const QRect& cell) {
  QRect box;
  for (int y = cell.top(); y <= cell.bottom(); ++y) {
    const auto* line = reinterpret_cast<const QRgb*>(image.constScanLine(y));
    for (int x = cell.left(); x <= cell.right(); ++x) {
      if (HasInk(line[x])) box |= QRect(x, y, 1, 1);
    }
  }
  return box;
}

inline std::string Edges(const QRect& box) {
  if (box.isEmpty()) return "no ink";
  return std::to_string(box.left()) + ' ' + std::to_string(box.top()) + ' ' + std::to_string(box.right()) +
         ' ' + std::to_string(box.bottom());
}

}  // namespace kelvane
