#include "platform/qt/qt_icons.h"

#include <QFontInfo>
#include <QKeyEvent>
#include <QPainter>
#include <algorithm>
#include <cmath>

#include "platform/qt/qt_text.h"

namespace kelvane {
namespace {

constexpr int kIconSize = 24;         // the grid of icon drawings
constexpr double kStrokeWidth = 1.2;  // grid units
constexpr double kCornerRadius = 3;   // logical pixels
constexpr int kHoverAlpha = 26;
constexpr int kDownAlpha = 80;

// Draws the shapes of an icon in device pixels, its straight strokes on whole ones.
class IconPainter {
 public:
  // `unit`: device pixels of a grid unit; `origin`: where the grid's top-left corner is.
  IconPainter(QPainter& painter, double unit, QPointF origin)
      : painter_(painter),
        unit_(unit),
        origin_(origin),
        stroke_(std::max(std::round(kStrokeWidth * unit), 1.0)),
        shift_(std::fmod(stroke_, 2) / 2) {}

  void Draw(const IconShape& shape, const QColor& colour) const {
    painter_.setPen(QPen(colour, stroke_, Qt::SolidLine, Qt::RoundCap, Qt::MiterJoin));
    painter_.setBrush(Qt::NoBrush);
    switch (shape.kind) {
      case IconShape::Kind::Line:
        painter_.drawLine(Snapped(shape.x0, shape.y0), Snapped(shape.x1, shape.y1));
        break;
      case IconShape::Kind::Box:
        painter_.drawRect(QRectF(Snapped(shape.x0, shape.y0), Snapped(shape.x1, shape.y1)));
        break;
      case IconShape::Kind::Disc:
        painter_.setPen(Qt::NoPen);
        painter_.setBrush(colour);
        painter_.drawEllipse(Snapped(shape.x0, shape.y0), shape.x1 * unit_, shape.x1 * unit_);
        break;
      case IconShape::Kind::Letters:
        DrawLetters(shape);
        break;
    }
  }

 private:
  QPointF Snapped(double x, double y) const {
    return {std::floor(origin_.x() + x * unit_) + shift_, std::floor(origin_.y() + y * unit_) + shift_};
  }

  // The letters of the usual font made larger or smaller, and slanted: a font of each size, and of each
  // style, would have to be loaded at the start.
  void DrawLetters(const IconShape& shape) const {
    constexpr double kItalic = -0.2;
    const double scale = shape.x1 * unit_ / QFontInfo(painter_.font()).pixelSize();
    painter_.save();
    painter_.translate(Snapped(shape.x0, shape.y0));
    painter_.scale(scale, scale);
    if (shape.italic) painter_.shear(kItalic, 0);
    painter_.drawText(0, 0, PlainText(shape.letters));
    painter_.restore();
  }

  QPainter& painter_;
  double unit_;
  QPointF origin_;
  double stroke_;
  double shift_;
};

QColor WithAlpha(QColor colour, int alpha) {
  colour.setAlpha(alpha);
  return colour;
}

}  // namespace

ModeButton::ModeButton(QWidget* parent) : QPushButton(parent) {
  setFocusPolicy(Qt::TabFocus);
}

void ModeButton::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
    click();
  } else {
    QPushButton::keyPressEvent(event);
  }
}

IconButton::IconButton(QWidget* parent, const IconDrawing& icon) : ModeButton(parent), icon_(icon) {
  setAttribute(Qt::WA_Hover);
}

QSize IconButton::sizeHint() const {
  return {kIconSize, kIconSize};
}

void IconButton::PaintBackground(QPainter& painter) const {
  const QColor strong = palette().color(QPalette::Highlight);
  const bool pressed = isDown() || isChecked();
  painter.setPen(Qt::NoPen);
  if (pressed) {
    painter.setBrush(WithAlpha(strong, kDownAlpha));
  } else if (isEnabled() && underMouse()) {
    painter.setBrush(WithAlpha(palette().color(QPalette::ButtonText), kHoverAlpha));
  }
  if (hasFocus() || pressed) painter.setPen(QPen(strong, hasFocus() ? 2 : 1));
  const double inset = hasFocus() ? 1 : 0.5;
  painter.drawRoundedRect(QRectF(rect()).adjusted(inset, inset, -inset, -inset), kCornerRadius,
                          kCornerRadius);
}

void IconButton::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  PaintBackground(painter);
  const double ratio = devicePixelRatioF();
  painter.scale(1 / ratio, 1 / ratio);
  const double unit = std::min(width(), height()) * ratio / kIconSize;
  const QPointF origin((width() * ratio - unit * kIconSize) / 2, (height() * ratio - unit * kIconSize) / 2);
  const IconPainter drawing(painter, unit, origin);
  const QColor plain = palette().color(QPalette::ButtonText);
  const QColor accent = isEnabled() ? palette().color(QPalette::Link) : plain;
  for (const IconShape& shape : icon_) drawing.Draw(shape, shape.accent ? accent : plain);
}

}  // namespace kelvane
