#include "platform/qt/font_file.h"

#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_OUTLINE_H

#include <QFile>

namespace kelvane {
namespace {

// Never ended: faces are kept until the program ends.
FT_Library Library() {
  static const FT_Library library = [] {
    FT_Library made = nullptr;
    return FT_Init_FreeType(&made) == 0 ? made : nullptr;
  }();
  return library;
}

// Where an outline goes, and what a unit of the font is there.
struct Target {
  QPainterPath path;
  double unit;
  QPointF At(const FT_Vector* point) const {
    return {static_cast<double>(point->x) * unit, -static_cast<double>(point->y) * unit};
  }
};

Target& ToTarget(void* target) {
  return *static_cast<Target*>(target);
}

int MoveTo(const FT_Vector* to, void* target) {
  ToTarget(target).path.closeSubpath();
  ToTarget(target).path.moveTo(ToTarget(target).At(to));
  return 0;
}
int LineTo(const FT_Vector* to, void* target) {
  ToTarget(target).path.lineTo(ToTarget(target).At(to));
  return 0;
}
int QuadTo(const FT_Vector* control, const FT_Vector* to, void* target) {
  ToTarget(target).path.quadTo(ToTarget(target).At(control), ToTarget(target).At(to));
  return 0;
}
int CubicTo(const FT_Vector* first, const FT_Vector* second, const FT_Vector* to, void* target) {
  ToTarget(target).path.cubicTo(ToTarget(target).At(first), ToTarget(target).At(second),
                                ToTarget(target).At(to));
  return 0;
}

}  // namespace

FontFile::FontFile(const QString& path) {
  FT_Face face = nullptr;
  if (Library() == nullptr || FT_New_Face(Library(), QFile::encodeName(path).constData(), 0, &face) != 0)
    return;
  face_.reset(face, FT_Done_Face);
  // Its own units are pixels then.
  const FT_F26Dot6 em = face->units_per_EM * 64;
  if (!FT_IS_SCALABLE(face) || FT_Set_Char_Size(face, em, em, 0, 0) != 0) face_.reset();
}

QString FontFile::FamilyName() const {
  return QString::fromUtf8(face_->family_name);
}

QString FontFile::StyleName() const {
  return QString::fromUtf8(face_->style_name);
}

quint32 FontFile::GlyphOf(char16_t character) const {
  return FT_Get_Char_Index(face_.get(), character);
}

QPainterPath FontFile::OutlineOf(quint32 glyph, double em) const {
  Target target{{}, em / face_->units_per_EM / 64};
  if (FT_Load_Glyph(face_.get(), glyph, FT_LOAD_NO_BITMAP) != 0 ||
      face_->glyph->format != FT_GLYPH_FORMAT_OUTLINE)
    return {};
  // What grows keeps room for more. Each point is an element, and so is the end of each contour.
  FT_Outline& outline = face_->glyph->outline;
  target.path.reserve(outline.n_points + outline.n_contours);
  const FT_Outline_Funcs to = {MoveTo, LineTo, QuadTo, CubicTo, 0, 0};
  if (FT_Outline_Decompose(&outline, &to, &target) != 0) return {};
  target.path.closeSubpath();
  return target.path;
}

}  // namespace kelvane
