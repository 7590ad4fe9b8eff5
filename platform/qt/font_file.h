#pragma once

// A font read from a file by the library that the font system has its outlines from. Asking the font system
// itself for the outlines of a file makes it look for what it knows of such fonts, which takes a millisecond
// each time.

#include <QPainterPath>
#include <QString>
#include <memory>

struct FT_FaceRec_;

namespace kelvane {

class FontFile {
 public:
  FontFile() = default;
  // Nothing if the file is none, or no font with outlines.
  explicit FontFile(const QString& path);

  bool IsValid() const { return face_ != nullptr; }
  QString FamilyName() const;
  QString StyleName() const;
  // The glyph of a character, 0 if there is none.
  quint32 GlyphOf(char16_t character) const;
  // Its outline at an em of so many units, y downwards.
  QPainterPath OutlineOf(quint32 glyph, double em) const;

 private:
  std::shared_ptr<FT_FaceRec_> face_;
};

}  // namespace kelvane
