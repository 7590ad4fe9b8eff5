#pragma once

// Push buttons that show a mode, with a caption or with a drawn icon.

#include <QPushButton>

#include "platform/controls.h"

namespace kelvane {

// Stays down or up as its owner sets it; a click does not toggle it. Takes the focus by Tab only, so that a
// click leaves it on the page.
class ModeButton : public QPushButton {
 public:
  explicit ModeButton(QWidget* parent);

 protected:
  void nextCheckState() override {}
  void keyPressEvent(QKeyEvent* event) override;
};

// Flat, with an icon in the palette's colours, sharp at any size and pixel ratio.
class IconButton final : public ModeButton {
 public:
  IconButton(QWidget* parent, const IconDrawing& icon);
  QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  void PaintBackground(QPainter& painter) const;

  IconDrawing icon_;
};

}  // namespace kelvane
