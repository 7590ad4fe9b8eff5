#pragma once

// A painter onto whatever QPainter paints on, with logical coordinates and pixels in its units: for paper,
// where sizes hold and pixels do not count.

#include <QPainter>

#include "platform/canvas.h"

namespace kelvane {

class QtPrintPainter final : public Painter {
 public:
  // `embedsFonts`: characters go there as text of their font, otherwise as their outlines.
  QtPrintPainter(QPainter& painter, bool embedsFonts) : painter_(painter), embedsFonts_(embedsFonts) {}

  void FillBox(const Box& box, ColourValue colour) override;
  void DrawLine(Point from, Point to, const Pen& pen) override;
  void StrokePath(const Path& path, const Pen& pen) override;
  void FillPath(const Path& path, ColourValue colour) override;
  void DrawText(const ScreenFace& face, float em, std::string_view codes, std::span<const Point> origins,
                ColourValue colour) override;

 private:
  QPainter& painter_;
  const bool embedsFonts_;
};

}  // namespace kelvane
