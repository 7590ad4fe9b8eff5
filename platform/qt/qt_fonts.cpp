#include "platform/qt/qt_fonts.h"

#include <QFont>
#include <QTransform>
#include <deque>
#include <iterator>

#include "platform/characters.h"

namespace kelvane {
namespace {

// What stands for a family of the typeface table. The files are the ones Ghostscript prints with; where they
// are not installed, the font system finds the nearest of the named families.
struct Family {
  const char* name;
  const char* files[4];  // plain, bold, italic, bold italic
  const char* substitutes[3];
  QFont::StyleHint hint;
};

constexpr const char* kFontFolder = "/usr/share/fonts/opentype/urw-base35/";

constexpr Family kFamilies[] = {
    {"Times New Roman",
     {"NimbusRoman-Regular.otf", "NimbusRoman-Bold.otf", "NimbusRoman-Italic.otf",
      "NimbusRoman-BoldItalic.otf"},
     {"Nimbus Roman", "Times New Roman", "Liberation Serif"},
     QFont::Serif},
    {"Arial",
     {"NimbusSans-Regular.otf", "NimbusSans-Bold.otf", "NimbusSans-Italic.otf", "NimbusSans-BoldItalic.otf"},
     {"Nimbus Sans", "Arial", "Liberation Sans"},
     QFont::SansSerif},
    {"Courier New",
     {"NimbusMonoPS-Regular.otf", "NimbusMonoPS-Bold.otf", "NimbusMonoPS-Italic.otf",
      "NimbusMonoPS-BoldItalic.otf"},
     {"Nimbus Mono PS", "Courier New", "Liberation Mono"},
     QFont::TypeWriter},
    {"Symbol",
     {"StandardSymbolsPS.otf", "StandardSymbolsPS.otf", "StandardSymbolsPS.otf", "StandardSymbolsPS.otf"},
     {"Standard Symbols PS", "Symbol", "DejaVu Sans"},
     QFont::AnyStyle},
    {"Script",
     {"Z003-MediumItalic.otf", "Z003-MediumItalic.otf", "Z003-MediumItalic.otf", "Z003-MediumItalic.otf"},
     {"Z003", "URW Chancery L", "Zapf Chancery"},
     QFont::Cursive},
};

const Family& FamilyNamed(std::string_view name) {
  for (const Family& family : kFamilies) {
    if (name == family.name) return family;
  }
  return kFamilies[0];
}

QRawFont InstalledFont(const Family& family, const ScreenFace& face, bool italic) {
  QFont font(QStringList(std::begin(family.substitutes), std::end(family.substitutes)));
  font.setStyleHint(family.hint);
  font.setBold(face.bold);
  font.setItalic(italic);
  font.setPixelSize(static_cast<int>(QtFace::kOutlineEm));
  font.setHintingPreference(QFont::PreferNoHinting);
  font.setStyleStrategy(QFont::NoFontMerging);
  return QRawFont::fromFont(font);
}

QString FileOf(const Family& family, const ScreenFace& face, bool italic) {
  const int style = (face.bold ? 1 : 0) + (italic ? 2 : 0);
  return QLatin1String(kFontFolder) + QLatin1String(family.files[style]);
}

quint32 GlyphOf(const FontFile& font, char16_t character) {
  return font.GlyphOf(character);
}

quint32 GlyphOf(const QRawFont& font, char16_t character) {
  const QChar text(character);
  quint32 glyph = 0;
  int count = 1;
  if (!font.glyphIndexesForChars(&text, 1, &glyph, &count) || count != 1) return 0;
  return glyph;
}

// Characters that fonts file under either of two code points.
char16_t Twin(char16_t character) {
  switch (character) {
    case 0x0394:
      return 0x2206;
    case 0x03A9:
      return 0x2126;
    case 0x03BC:
      return 0x00B5;
    case 0x03C6:
      return 0x03D5;
    case 0x03D5:
      return 0x03C6;
    case 0x2044:
      return 0x2215;
    case 0x22C5:
      return 0x00B7;
    case 0x23AF:
      return 0x2500;
    case 0x23D0:
      return 0x2502;
    default:
      return character;
  }
}

// The glyphs of a font by the codes of the screen.
template <typename Font>
std::array<quint32, 256> GlyphsOf(const Font& font, bool symbol) {
  std::array<quint32, 256> glyphs{};
  // Symbol fonts come in two kinds: with Unicode code points, or with the codes of the encoding in their
  // place, plain or moved to the private area at F000. A Greek letter tells which one this is.
  const bool unicode = !symbol || GlyphOf(font, 0x03B1) != 0;
  for (unsigned code = 1; code < 224; ++code) {
    const auto byte = static_cast<unsigned char>(code);
    const char16_t character = symbol ? UnicodeOfSymbol(byte) : UnicodeOfText(byte);
    if (character == 0) continue;
    quint32& glyph = glyphs[code];
    glyph = GlyphOf(font, unicode ? character : static_cast<char16_t>(code));
    if (glyph != 0) continue;
    glyph = GlyphOf(font, unicode ? Twin(character) : static_cast<char16_t>(0xF000 + code));
  }
  return glyphs;
}

}  // namespace

QtFace::QtFace(const ScreenFace& face) : face_{FamilyNamed(face.family).name, face.bold, face.italic} {
  const Family& family = FamilyNamed(face.family);
  const bool symbol = face.family == "Symbol";
  slanted_ = symbol && face.italic;
  const bool italic = face.italic && !symbol;
  file_ = FontFile(FileOf(family, face, italic));
  if (!file_.IsValid()) base_ = InstalledFont(family, face, italic);
  missing_ = !FamilyName().startsWith(QLatin1String(family.substitutes[0]));
  glyphs_ = file_.IsValid() ? GlyphsOf(file_, symbol) : GlyphsOf(base_, symbol);
}

QString QtFace::FamilyName() const {
  return file_.IsValid() ? file_.FamilyName() : base_.familyName();
}

QString QtFace::StyleName() const {
  return file_.IsValid() ? file_.StyleName() : base_.styleName();
}

const QtFace::Embeddable* QtFace::ForDocuments() {
  if (!embeddable_) {
    embeddable_.emplace();
    embeddable_->font = InstalledFont(FamilyNamed(face_.family), face_, face_.italic && !slanted_);
    embeddable_->glyphs = GlyphsOf(embeddable_->font, face_.family == "Symbol");
  }
  // The desktop may put the maker behind the name.
  const QRawFont& font = embeddable_->font;
  const bool same = font.familyName().startsWith(FamilyName()) && font.styleName() == StyleName();
  return same ? &*embeddable_ : nullptr;
}

const QPainterPath& QtFace::Outline(unsigned char code) {
  if (outlines_.empty()) outlines_.resize(256);
  CachedOutline& outline = outlines_[code];
  if (!outline.made) {
    outline.made = true;
    outline.path =
        file_.IsValid() ? file_.OutlineOf(glyphs_[code], kOutlineEm) : base_.pathForGlyph(glyphs_[code]);
    if (slanted_) outline.path = QTransform(1, 0, -kSlant, 1, 0, 0).map(outline.path);
    outline.path.setFillRule(Qt::WindingFill);
  }
  return outline.path;
}

QtFace& FaceFor(const ScreenFace& face) {
  struct Loaded {
    std::string family;
    bool bold;
    bool italic;
    QtFace face;
  };
  // Never destroyed: at exit the font system would be gone before them.
  static std::deque<Loaded>& faces = *new std::deque<Loaded>;
  for (Loaded& loaded : faces) {
    if (loaded.bold == face.bold && loaded.italic == face.italic && loaded.family == face.family) {
      return loaded.face;
    }
  }
  return faces.emplace_back(Loaded{std::string(face.family), face.bold, face.italic, QtFace(face)}).face;
}

}  // namespace kelvane
