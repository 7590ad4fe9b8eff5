#include "output/svg.h"

#include <algorithm>
#include <bitset>
#include <cmath>
#include <cstddef>
#include <set>
#include <string_view>
#include <utility>
#include <vector>

#include "document/numbers.h"
#include "output/pdf_fonts.h"
#include "output/type1_font.h"
#include "output/vector_painter.h"
#include "platform/characters.h"
#include "platform/outlines.h"
#include "typography/glyph_shapes.h"
#include "typography/renderer.h"
#include "typography/signs.h"
#include "typography/typefaces.h"
#include "typography/view.h"

namespace kelvane {
namespace {

constexpr int kDecimals = 3;
// The picture is measured in pixels of 1/96 inch, and the page in it in points: programs into which it is
// pasted may take its numbers for pixels, whatever unit its size has.
constexpr double kPixels = 96.0 / 72;  // of a point

std::string Number(double value) {
  return FormatUpTo(value, kDecimals);
}

std::string Attribute(const char* name, const std::string& value) {
  return std::string(" ") + name + "=\"" + value + "\"";
}

std::string Hex(ColourValue colour) {
  std::string text = "#";
  for (const int shift : {4, 0, 12, 8, 20, 16}) text += "0123456789abcdef"[colour >> shift & 15];
  return text;
}

void AppendEscaped(std::string& text, char32_t character) {
  switch (character) {
    case '<':
      text += "&lt;";
      break;
    case '>':
      text += "&gt;";
      break;
    case '&':
      text += "&amp;";
      break;
    default:
      text += WriteUtf8(character);
  }
}

std::string DataOf(const Path& path, float scale, float scaleY) {
  std::string data;
  const Point* point = path.points.data();
  const auto put = [&] {
    const auto [x, y] = *point++;
    data += Number(x * scale) + " " + Number(y * scaleY) + " ";
  };
  for (const Path::Step step : path.steps) {
    data += step == Path::Step::Move ? 'M' : step == Path::Step::Line ? 'L' : 'C';
    put();
    if (step == Path::Step::Curve) {
      put();
      put();
    }
  }
  if (!data.empty()) data.pop_back();
  return data;
}

// The families by which programs know a text face: those that it is printed with, and those of the same
// widths.
const char* FamiliesOf(std::string_view family) {
  if (family == "Arial") return "'Nimbus Sans', Helvetica, Arial, sans-serif";
  if (family == "Courier New") return "'Nimbus Mono PS', Courier, 'Courier New', monospace";
  if (family == "Script") return "Z003, 'URW Chancery L', 'Zapf Chancery', cursive";
  return "'Nimbus Roman', Times, 'Times New Roman', serif";
}

class SvgPainter final : public VectorPainter {
 public:
  std::string Body() {
    EndText();
    return std::move(body_);
  }
  // The shapes that the body uses.
  const std::string& Shapes() const { return shapes_; }
  // The faces that have no font.
  const std::set<std::int16_t>& Missing() const { return missing_; }

  void FillBox(const Box& box, ColourValue colour) override {
    EndText();
    body_ += "<rect" + Attribute("x", Number(box.left)) + Attribute("y", Number(box.top)) +
             Attribute("width", Number(box.right - box.left)) +
             Attribute("height", Number(box.bottom - box.top)) + Attribute("fill", Hex(colour)) + "/>\n";
  }

  void StrokePath(const Path& path, const Pen& pen) override {
    AddPath(path, Attribute("fill", "none") + Attribute("stroke", Hex(pen.colour)) +
                      Attribute("stroke-width", Number(pen.width)) + kRound);
  }

  void FillPath(const Path& path, ColourValue colour) override {
    AddPath(path, Attribute("fill", Hex(colour)));
  }

  // Pieces are shapes, which say nothing themselves; what they say together stands with the first of them.
  void SayTogether(std::string_view text) override {
    together_ = text;
    saysTogether_ = !text.empty();
  }

 private:
  static constexpr const char* kRound = " stroke-linecap=\"round\" stroke-linejoin=\"round\"";

  void AddPath(const Path& path, const std::string& style) {
    const bool places =
        std::ranges::all_of(path.points, [](Point p) { return std::isfinite(p.x) && std::isfinite(p.y); });
    if (path.Empty() || !places) return;
    EndText();
    body_ += "<path" + style + Attribute("d", DataOf(path, 1, 1)) + "/>\n";
  }

  void Show(const GlyphOnPage& glyph) override {
    const auto [x, y] = glyph.origin;
    if (!(glyph.em > 0) || !std::isfinite(glyph.em) || !std::isfinite(x) || !std::isfinite(y)) return;
    const char32_t character = CharacterOf(glyph.font, glyph.code);
    if (IsTextFace(glyph.font) && (character == ' ' || HasFont(glyph.font))) {
      if (character != 0) ShowText(glyph, character);
    } else {
      ShowShape(glyph, character);
    }
  }

  // Each character has its own place: what draws the picture has other ideas of kerning and of ligatures.
  // A blank goes with the character before it, so that words are found as such.
  void ShowText(const GlyphOnPage& glyph, char32_t character) {
    const std::string line = "<text" + Attribute("y", Number(glyph.origin.y)) + StyleOf(glyph) + ">";
    if (line != line_) {
      EndText();
      if (character == ' ') return;
      body_ += line;
      line_ = line;
    }
    if (character == ' ') {
      body_.insert(body_.size() - kEndOfSpan.size(), " ");
      return;
    }
    body_ += "<tspan" + Attribute("x", Number(glyph.origin.x)) + ">";
    AppendEscaped(body_, character);
    body_ += kEndOfSpan;
  }

  void EndText() {
    if (!line_.empty()) body_ += "</text>\n";
    line_.clear();
  }

  static std::string StyleOf(const GlyphOnPage& glyph) {
    const ScreenFace& face = kTypefaceNames[glyph.font].screen;
    std::string style = Attribute("font-family", FamiliesOf(face.family)) +
                        Attribute("font-size", Number(glyph.em)) + Attribute("xml:space", "preserve");
    if (face.bold) style += Attribute("font-weight", "bold");
    if (face.italic && face.family != "Script") style += Attribute("font-style", "italic");
    if (glyph.colour != 0) style += Attribute("fill", Hex(glyph.colour));
    return style;
  }

  // A shape once, and each use of it. What it says lies over it unseen, to be found and copied.
  void ShowShape(const GlyphOnPage& glyph, char32_t character) {
    EndText();
    const std::int16_t font = FontShowing(glyph.font);
    const std::string name = "g" + std::to_string(font) + "-" + std::to_string(glyph.code);
    const bool known = known_.contains(name);
    if (!known && !AddShape(name, font, glyph.code)) return;
    known_.insert(name);
    const double em = glyph.em;
    const double slant = glyph.font == kSymbolItalic ? -kSlant * em : 0;
    const auto [x, y] = glyph.origin;
    body_ +=
        "<use" + Attribute("xlink:href", "#" + name) +
        Attribute("transform", "matrix(" + Matrix(em) + " 0 " + Matrix(slant) + " " + Matrix(em) + " " +
                                   Number(x) + " " + Number(y) + ")") +
        (glyph.colour != 0 ? Attribute("fill", Hex(glyph.colour)) + Attribute("stroke", Hex(glyph.colour))
                           : "") +
        "/>\n";
    std::string says = saysTogether_ ? std::exchange(together_, {}) : std::string();
    if (!saysTogether_ && character != 0 && character != ' ') AppendEscaped(says, character);
    if (says.empty()) return;
    body_ += "<text" + Attribute("x", Number(x)) + Attribute("y", Number(y)) +
             Attribute("font-size", Number(em)) + Attribute("fill", "none") + ">" + says + "</text>\n";
  }

  // Shapes are kept at an em of this many units, so that their numbers need few decimals.
  static constexpr float kShapeEm = 1000;
  static std::string Matrix(double em) { return FormatUpTo(em / kShapeEm, 6); }

  // False if there is nothing to draw.
  bool AddShape(const std::string& name, std::int16_t font, int code) {
    std::string style;
    std::string data;
    if (font >= kFirstGlyphFont) {
      const GlyphShape* shape = ShapeOfGlyph(code, font);
      if (!shape) return false;
      constexpr float kUnit = kGlyphUnit * kShapeEm;
      data = DataOf(shape->path, kUnit, -kUnit);
      if (!shape->filled)
        style = Attribute("fill", "none") + Attribute("stroke", "#000000") +
                Attribute("stroke-width", Number(shape->edgeWidth * kUnit)) + kRound;
    } else if (ScreenOutline) {
      HasFont(font);  // a missing one is to be named
      const Path path = ScreenOutline(kTypefaceNames[font].screen, static_cast<unsigned char>(code));
      data = DataOf(path, kShapeEm / kOutlineEm, kShapeEm / kOutlineEm);
    }
    if (data.empty()) return false;
    shapes_ += "<path" + Attribute("id", name) + style + Attribute("d", data) + "/>\n";
    return true;
  }

  bool HasFont(std::int16_t typeface) {
    const auto bit = static_cast<std::size_t>(typeface);
    if (!looked_[bit]) {
      looked_[bit] = true;
      if (!FontOfFace(typeface)) missing_.insert(typeface);
    }
    return !missing_.contains(typeface);
  }

  static constexpr std::string_view kEndOfSpan = "</tspan>";

  std::string body_;
  std::string shapes_;
  std::set<std::int16_t> missing_;
  std::string line_;  // how the text element that is open began; empty for none
  std::set<std::string> known_;
  std::bitset<kTypefaces> looked_;
  std::string together_;
  bool saysTogether_ = false;
};

}  // namespace

std::string SvgOf(const PageItems& items, const Box& area, bool white, std::string* missing) {
  SvgPainter painter;
  if (white) painter.FillBox(area, 0xFFFFFF);
  PaintPage(painter, PrintedView(area, 1, false), items, area);
  const float width = area.right - area.left;
  const float height = area.bottom - area.top;
  std::string view;
  for (const float length : {area.left, area.top, width, height})
    view += (view.empty() ? "" : " ") + Number(length * kPixels);
  const std::string body = painter.Body();
  if (missing) *missing = MissingFonts(painter.Missing());
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<svg xmlns=\"http://www.w3.org/2000/svg\" "
         "xmlns:xlink=\"http://www.w3.org/1999/xlink\" version=\"1.1\"" +
         Attribute("width", Number(width) + "pt") + Attribute("height", Number(height) + "pt") +
         Attribute("viewBox", view) + ">\n<defs>\n" + painter.Shapes() + "</defs>\n<g" +
         Attribute("transform", "scale(1.3333333)") + ">\n" + body + "</g>\n</svg>\n";
}

}  // namespace kelvane
