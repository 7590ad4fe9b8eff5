#pragma once

// The outlines of the screen's typefaces: for each code the glyph of one font, never a substitute from
// another, with no hinting, so that the screen shows the very shapes that are printed.

#include <QPainterPath>
#include <QRawFont>
#include <array>
#include <optional>
#include <string>
#include <vector>

#include "platform/canvas.h"
#include "platform/qt/font_file.h"

namespace kelvane {

// One face, loaded when it is first asked for.
class QtFace {
 public:
  explicit QtFace(const ScreenFace& face);

  // The glyph of a code; 0 where the face has none and nothing is drawn.
  quint32 Glyph(unsigned char code) const { return glyphs_[code]; }
  // The outline of a code at an em of kOutlineEm, y downwards, slanted where the face is.
  const QPainterPath& Outline(unsigned char code);
  static constexpr double kOutlineEm = 1000;
  // The font as documents embed it, which take only those that the desktop knows; upright where this face is
  // slanted. Null where that is another font.
  struct Embeddable {
    QRawFont font;
    std::array<quint32, 256> glyphs{};  // as Glyph has them
  };
  const Embeddable* ForDocuments();
  bool IsSlanted() const { return slanted_; }
  // Whether this is another font than the page is printed with, since that is not on the machine.
  bool IsMissing() const { return missing_; }

 private:
  struct CachedOutline {
    bool made = false;
    QPainterPath path;
  };

  QString FamilyName() const;
  QString StyleName() const;

  const ScreenFace face_;
  FontFile file_;                         // if the font is on the machine
  QRawFont base_;                         // what stands for it otherwise
  std::optional<Embeddable> embeddable_;  // loaded when it is first asked for
  bool slanted_ = false;
  bool missing_ = false;
  std::array<quint32, 256> glyphs_{};
  std::vector<CachedOutline> outlines_;  // by code, empty until one is asked for
};

// The face by its name and style; the reference stays valid.
QtFace& FaceFor(const ScreenFace& face);

}  // namespace kelvane
