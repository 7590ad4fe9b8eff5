#pragma once

#include <QPainterPath>

#include "platform/canvas.h"

namespace kelvane {

// The outline of a character of the screen's typefaces, as ScreenOutline gives it.
Path QtOutline(const ScreenFace& face, unsigned char code);

// Adds an outline to a path of another kind, whose points are `at` of its elements.
template <typename Kind, typename At>
void AddOutline(Kind& path, const QPainterPath& outline, At at) {
  const auto point = [&](int i) { return at(outline.elementAt(i)); };
  for (int i = 0; i < outline.elementCount(); ++i) {
    switch (outline.elementAt(i).type) {
      case QPainterPath::MoveToElement:
        path.MoveTo(point(i));
        break;
      case QPainterPath::LineToElement:
        path.LineTo(point(i));
        break;
      default:
        path.CurveTo(point(i), point(i + 1), point(i + 2));
        i += 2;
    }
  }
}

}  // namespace kelvane
