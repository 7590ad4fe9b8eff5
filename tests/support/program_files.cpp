#include "tests/support/program_files.h"

#include <bit>
#include <cstdint>

#include "typography/glyphs.h"
#include "typography/typefaces.h"

namespace kelvane {
namespace {

void AppendSingle(std::string& bytes, float value) {
  const auto bits = std::bit_cast<std::uint32_t>(value);
  for (int shift = 0; shift < 32; shift += 8) bytes += static_cast<char>(bits >> shift & 0xFFU);
}

// The three sections of the font: advance widths, bounding boxes, procedures.
std::string FontSections() {
  std::string advances = "/Metrics 97 dict def\r\n/.notdef 0 def\r\n";
  std::string boxes = "/BBox 97 dict def\r\n/.notdef [0 0 0 0] def\r\n";
  std::string procedures = "/CharacterDefs 97 dict def\r\n/.notdef { } def\r\n";
  for (int code = kFirstGlyph; code < kFirstGlyph + kGlyphs; ++code) {
    const std::string name = "/c" + std::to_string(code);
    advances += name + " 25 def\r\n";
    boxes += name + " [-2 -12 27 42] def\r\n";
    procedures += name + " { 0 0 moveto " + std::to_string(code) + " 0 rlineto st } def\r\n";
  }
  return advances + boxes + procedures + "end\r\n";
}

std::string WidthText() {
  std::string text;
  for (int code = kFirstGlyph; code < kFirstGlyph + kGlyphs; ++code) text += "0.500000\r\n";
  return text;
}

}  // namespace

float TestWidth(int font, int code) {
  return static_cast<float>(200 + 11 * font + 3 * code);
}

std::string WidthFile(int font) {
  std::string bytes;
  AppendSingle(bytes, kTestWidthUnit);
  for (int code = 1; code < 256; ++code) AppendSingle(bytes, TestWidth(font, code));
  return bytes;
}

void FillWidths() {
  for (int font = 0; font <= kFirstGlyphFont; ++font) {
    TypefaceRecord& face = TypefaceTable[font];
    face.WidthUnit = kTestWidthUnit;
    face.Widths[0] = kTestWidthUnit;
    for (int code = 1; code < 256; ++code) {
      face.Widths[static_cast<std::size_t>(code)] = TestWidth(font, code);
    }
  }
}

void PutProgramFiles(MemoryFiles& files) {
  for (int font = 0; font <= kFirstGlyphFont; ++font) {
    files.contents[ProgramFolder + TypefaceTable[font].Name + ".WT"] = WidthFile(font);
  }
  files.contents[ProgramFolder + "MATH0.PSF"] = FontSections();
  files.contents[ProgramFolder + "MATH0.TXT"] = WidthText();
  files.contents[ProgramFolder + "QRX.PRO"] =
      "%!PS-Adobe-3.0\r\n% Kelvane\r\n<pw> <ph> sheet\r\n" + FontSections();
  files.contents[ProgramFolder + "QRX.HLP"] = "<PAGE>\r\n<H1>Kelvane</H1>\r\nHelp.\r\n";
}

}  // namespace kelvane
