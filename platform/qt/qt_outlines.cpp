#include "platform/qt/qt_outlines.h"

#include "platform/outlines.h"
#include "platform/qt/qt_fonts.h"

namespace kelvane {

Path QtOutline(const ScreenFace& face, unsigned char code) {
  static_assert(QtFace::kOutlineEm == kOutlineEm);
  const QPainterPath& outline = FaceFor(face).Outline(code);
  Path path;
  const auto at = [&](int i) {
    const QPainterPath::Element element = outline.elementAt(i);
    return Point{static_cast<float>(element.x), static_cast<float>(element.y)};
  };
  for (int i = 0; i < outline.elementCount(); ++i) {
    switch (outline.elementAt(i).type) {
      case QPainterPath::MoveToElement:
        path.MoveTo(at(i));
        break;
      case QPainterPath::LineToElement:
        path.LineTo(at(i));
        break;
      default:
        path.CurveTo(at(i), at(i + 1), at(i + 2));
        i += 2;
    }
  }
  return path;
}

}  // namespace kelvane
