#include "platform/qt/qt_outlines.h"

#include "platform/outlines.h"
#include "platform/qt/qt_fonts.h"

namespace kelvane {

Path QtOutline(const ScreenFace& face, unsigned char code) {
  static_assert(QtFace::kOutlineEm == kOutlineEm);
  Path path;
  AddOutline(path, FaceFor(face).Outline(code), [](const QPainterPath::Element& element) {
    return Point{static_cast<float>(element.x), static_cast<float>(element.y)};
  });
  return path;
}

}  // namespace kelvane
