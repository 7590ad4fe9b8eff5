#include "platform/qt/qt_print_painter.h"

#include <QGlyphRun>
#include <QPainterPath>
#include <cmath>

#include "platform/qt/qt_fonts.h"
#include "platform/qt/qt_layer.h"

namespace kelvane {
namespace {

bool IsPlace(const Point& point) {
  return std::isfinite(point.x) && std::isfinite(point.y);
}

QPointF ToQt(const Point& point) {
  return {point.x, point.y};
}

// Empty if one of its points is no place.
QPainterPath ToQt(const Path& path) {
  QPainterPath result;
  for (const Point& point : path.points)
    if (!IsPlace(point)) return result;
  result.setFillRule(Qt::WindingFill);
  const Point* point = path.points.data();
  for (const Path::Step step : path.steps) {
    switch (step) {
      case Path::Step::Move:
        result.moveTo(ToQt(*point++));
        break;
      case Path::Step::Line:
        result.lineTo(ToQt(*point++));
        break;
      case Path::Step::Curve:
        result.cubicTo(ToQt(point[0]), ToQt(point[1]), ToQt(point[2]));
        point += 3;
        break;
    }
  }
  return result;
}

QPen ToQt(const Pen& pen) {
  return {QColor(ToRgb(pen.colour)), pen.width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin};
}

}  // namespace

void QtPrintPainter::FillBox(const Box& box, ColourValue colour) {
  painter_.fillRect(QRectF(QPointF(box.left, box.top), QPointF(box.right, box.bottom)),
                    QColor(ToRgb(colour)));
}

void QtPrintPainter::DrawLine(Point from, Point to, const Pen& pen) {
  if (!IsPlace(from) || !IsPlace(to)) return;
  painter_.setPen(ToQt(pen));
  painter_.drawLine(ToQt(from), ToQt(to));
}

void QtPrintPainter::StrokePath(const Path& path, const Pen& pen) {
  painter_.strokePath(ToQt(path), ToQt(pen));
}

void QtPrintPainter::FillPath(const Path& path, ColourValue colour) {
  painter_.fillPath(ToQt(path), QColor(ToRgb(colour)));
}

void QtPrintPainter::DrawText(const ScreenFace& face, float em, std::string_view codes,
                              std::span<const Point> origins, ColourValue colour) {
  constexpr float kLargestEm = 32000;  // points
  if (!(em > 0 && em <= kLargestEm)) return;
  QtFace& font = FaceFor(face);
  const QColor ink(ToRgb(colour));
  const QtFace::Embeddable* embeddable = embedsFonts_ ? font.ForDocuments() : nullptr;
  QList<quint32> glyphs;
  QList<QPointF> places;
  for (std::size_t i = 0; i < codes.size(); ++i) {
    const auto code = static_cast<unsigned char>(codes[i]);
    if (font.Glyph(code) == 0 || !IsPlace(origins[i])) continue;
    if (embeddable != nullptr && embeddable->glyphs[code] != 0) {
      glyphs += embeddable->glyphs[code];
      places += ToQt(origins[i]);
    } else {
      const double scale = em / QtFace::kOutlineEm;
      const QTransform place(scale, 0, 0, scale, origins[i].x, origins[i].y);
      painter_.fillPath(place.map(font.Outline(code)), ink);
    }
  }
  if (glyphs.isEmpty()) return;
  QRawFont sized = embeddable->font;
  sized.setPixelSize(em);
  QGlyphRun run;
  run.setRawFont(sized);
  painter_.setPen(ink);
  if (!font.IsSlanted()) {
    run.setGlyphIndexes(glyphs);
    run.setPositions(places);
    painter_.drawGlyphRun({}, run);
    return;
  }
  run.setPositions({QPointF()});
  for (qsizetype i = 0; i < glyphs.size(); ++i) {
    run.setGlyphIndexes({glyphs[i]});
    painter_.save();
    painter_.translate(places[i]);
    painter_.shear(-kSlant, 0);
    painter_.drawGlyphRun({}, run);
    painter_.restore();
  }
}

}  // namespace kelvane
