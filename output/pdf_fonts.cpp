#include "output/pdf_fonts.h"

#include <optional>
#include <set>
#include <vector>

#include "output/type1_font.h"
#include "platform/characters.h"
#include "platform/outlines.h"
#include "typography/glyph_names.h"
#include "typography/glyph_shapes.h"
#include "typography/metrics.h"
#include "typography/signs.h"

namespace kelvane {
namespace {

using Codes = std::bitset<256>;

// A font of shapes measures in glyph units, as those of the program's own fonts are drawn.
constexpr double kShapeUnit = 0.02;  // ems

template <typename Act>
void ForEach(const Codes& codes, Act act) {
  for (int code = 0; code < 256; ++code) {
    if (codes[static_cast<std::size_t>(code)]) act(code);
  }
}

int FirstOf(const Codes& codes) {
  int first = 0;
  while (!codes[static_cast<std::size_t>(first)]) ++first;
  return first;
}

int LastOf(const Codes& codes) {
  int last = 255;
  while (!codes[static_cast<std::size_t>(last)]) --last;
  return last;
}

// Six capitals that tell subsets of one font apart, and the font's name.
std::string SubsetName(const std::string& name, const Codes& codes) {
  std::uint32_t hash = 2166136261U;
  ForEach(codes, [&](int code) { hash = (hash ^ static_cast<std::uint32_t>(code)) * 16777619U; });
  std::string tag;
  for (int i = 0; i < 6; ++i, hash /= 26) tag += static_cast<char>('A' + hash % 26);
  return tag + "+" + name;
}

std::string Hex(int code) {
  constexpr char kDigits[] = "0123456789ABCDEF";
  return {kDigits[code >> 4 & 15], kDigits[code & 15]};
}

// What the codes mean, for finding and copying.
int WriteCharacters(PdfFile& file, std::int16_t typeface, const Codes& codes) {
  constexpr int kMostLines = 100;  // in one list
  std::vector<std::string> lines;
  ForEach(codes, [&](int code) {
    // What means nothing by itself, such as the shaft of an arrow, says nothing. Without an entry readers
    // would take its code for a letter.
    constexpr char32_t kNothing = 0x200B;
    const char32_t character = CharacterOf(typeface, code);
    const std::string text = PdfText(WriteUtf8(character != 0 ? character : kNothing));
    lines.push_back("<" + Hex(code) + "><" + text.substr(5) + "\n");  // without the byte order mark
  });
  std::string map =
      "/CIDInit/ProcSet findresource begin\n12 dict begin\nbegincmap\n"
      "/CIDSystemInfo<</Registry(Adobe)/Ordering(UCS)/Supplement 0>>def\n"
      "/CMapName/Adobe-Identity-UCS def\n/CMapType 2 def\n"
      "1 begincodespacerange\n<00><FF>\nendcodespacerange\n";
  for (std::size_t i = 0; i < lines.size(); i += kMostLines) {
    const std::size_t count = std::min<std::size_t>(kMostLines, lines.size() - i);
    map += std::to_string(count) + " beginbfchar\n";
    for (std::size_t k = i; k < i + count; ++k) map += lines[k];
    map += "endbfchar\n";
  }
  return file.WriteStream("", map + "endcmap\nCMapName currentdict/CMap defineresource pop\nend\nend\n");
}

// The entries that all fonts share; widths in `unit` ems.
std::string CommonEntries(PdfFile& file, std::int16_t typeface, const Codes& codes, double unit) {
  std::string widths;
  for (int code = FirstOf(codes); code <= LastOf(codes); ++code) {
    const bool used = codes[static_cast<std::size_t>(code)];
    widths += (used ? PdfNumber(Advance(code, typeface, 1) / unit) : "0") + " ";
  }
  return "/FirstChar " + std::to_string(FirstOf(codes)) + "/LastChar " + std::to_string(LastOf(codes)) +
         "/Widths[" + widths + "]/ToUnicode " + PdfReference(WriteCharacters(file, typeface, codes));
}

std::string Encoding(const Codes& codes, const std::function<std::string(int)>& nameOf) {
  std::string differences;
  int next = -1;
  ForEach(codes, [&](int code) {
    if (code != next) differences += " " + std::to_string(code);
    differences += "/" + nameOf(code);
    next = code + 1;
  });
  return "/Encoding<</Type/Encoding/Differences[" + differences + "]>>";
}

void WriteInstalled(PdfFile& file, int object, std::int16_t typeface, const Codes& codes,
                    const Type1Font& font) {
  const auto nameOf = [&](int code) -> std::string {
    if (IsSymbolFace(typeface)) return font.encoding[static_cast<std::size_t>(code)];
    return GlyphNameOfText(code);
  };
  std::set<std::string> glyphs;
  ForEach(codes, [&](int code) { glyphs.insert(nameOf(code)); });
  const std::string name = SubsetName(font.name, codes);
  const Type1Subset subset = SubsetOf(font, glyphs, name);
  const int program =
      file.WriteStream("/Length1 " + std::to_string(subset.clearSize) + "/Length2 " +
                           std::to_string(subset.program.size() - subset.clearSize) + "/Length3 0",
                       subset.program);
  // Nothing depends on the heights; the box tells them well enough.
  const int descriptor =
      file.Write("<</Type/FontDescriptor/FontName/" + name + "/Flags 4/FontBBox[" + font.box +
                 "]/ItalicAngle " + font.italicAngle + "/Ascent 700/Descent -220/CapHeight 660/StemV " +
                 font.stem + "/FontFile " + PdfReference(program) + ">>");
  file.Write(object, "<</Type/Font/Subtype/Type1/BaseFont/" + name +
                         CommonEntries(file, typeface, codes, 0.001) + "/FontDescriptor " +
                         PdfReference(descriptor) + Encoding(codes, nameOf) + ">>");
}

// A character of a font of shapes, in units of that font.
struct Shape {
  Path path;
  bool filled = true;
  double lineWidth = 0;
};

std::optional<Shape> ShapeOf(std::int16_t typeface, int code) {
  if (typeface >= kFirstGlyphFont) {
    const GlyphShape* glyph = ShapeOfGlyph(code, typeface);
    if (!glyph) return std::nullopt;
    return Shape{glyph->path, glyph->filled, glyph->edgeWidth};
  }
  if (!ScreenOutline) return std::nullopt;
  Shape shape{ScreenOutline(kTypefaceNames[typeface].screen, static_cast<unsigned char>(code))};
  constexpr auto kUnits = static_cast<float>(1 / (kOutlineEm * kShapeUnit));
  for (Point& point : shape.path.points) point = {point.x * kUnits, -point.y * kUnits};
  return shape;
}

// The drawing of a character. It says its width alone and no box: what is kept by its box as an image is put
// on whole pixels, and the pieces of a tall bracket would not join.
std::string Procedure(const Shape& shape, double width) {
  std::string drawing = PdfNumber(width) + " 0 d0\n";
  if (!shape.filled) drawing += PdfNumber(shape.lineWidth) + " w 1 J 1 j\n";
  AppendPdfPath(drawing, shape.path, [](Point point) { return point; });
  return drawing + (shape.filled ? "f\n" : "S\n");
}

void WriteShapes(PdfFile& file, int object, std::int16_t typeface, const Codes& codes) {
  const auto nameOf = [](int code) { return "c" + std::to_string(code); };
  std::string procedures;
  ForEach(codes, [&](int code) {
    const Shape shape = ShapeOf(typeface, code).value_or(Shape{});
    const std::string drawing = Procedure(shape, Advance(code, typeface, 1) / kShapeUnit);
    procedures += "/" + nameOf(code) + " " + PdfReference(file.WriteStream("", drawing));
  });
  const std::string name = SubsetName(kTypefaceNames[typeface].postScriptName, codes);
  file.Write(object, "<</Type/Font/Subtype/Type3/Name/" + PdfFonts::NameOf(typeface) + "/BaseFont/" + name +
                         "/FontBBox[0 0 0 0]/FontMatrix[" + PdfNumber(kShapeUnit) + " 0 0 " +
                         PdfNumber(kShapeUnit) + " 0 0]/CharProcs<<" + procedures + ">>/Resources<<>>" +
                         CommonEntries(file, typeface, codes, kShapeUnit) + Encoding(codes, nameOf) + ">>");
}

}  // namespace

std::int16_t FontShowing(std::int16_t typeface) {
  if (typeface == kSymbolItalic) return kSymbol;
  return typeface == kMath3 ? kMath0 : typeface;
}

std::int16_t TypefaceOf(const ScreenFace& face) {
  for (std::int16_t font = 0; font < kFirstGlyphFont; ++font) {
    const ScreenFace& known = kTypefaceNames[font].screen;
    if (known.family == face.family && known.bold == face.bold && known.italic == face.italic) return font;
  }
  return 0;
}

std::string PdfFonts::NameOf(std::int16_t typeface) {
  return std::string("F") + "0123456789ABCDEF"[FontShowing(typeface)];
}

bool PdfFonts::Use(std::int16_t typeface, int code) {
  const std::int16_t font = FontShowing(typeface);
  const bool there = IsTextFace(font)         ? GlyphNameOfText(code) != nullptr
                     : font < kFirstGlyphFont ? UnicodeOfSymbol(static_cast<unsigned char>(code)) != 0
                                              : ShapeOfGlyph(code, font) != nullptr;
  if (there) used_[font].set(static_cast<std::size_t>(code));
  return there;
}

double PdfFonts::WidthOf(std::int16_t typeface, int code) {
  return Advance(code, FontShowing(typeface), 1);
}

std::string PdfFonts::Write(PdfFile& file, int resources) const {
  std::string names;
  std::set<std::int16_t> missing;
  for (std::int16_t typeface = 0; typeface < kTypefaces; ++typeface) {
    const Codes& codes = used_[typeface];
    if (codes.none()) continue;
    const int object = file.Reserve();
    const auto font = typeface < kFirstGlyphFont ? FontOfFace(typeface) : std::nullopt;
    if (font) {
      WriteInstalled(file, object, typeface, codes, *font);
    } else {
      WriteShapes(file, object, typeface, codes);
      if (typeface < kFirstGlyphFont) missing.insert(typeface);
    }
    names += "/" + NameOf(typeface) + " " + PdfReference(object);
  }
  file.Write(resources, "<</Font<<" + names + ">>>>");
  return MissingFonts(missing);
}

}  // namespace kelvane
