#pragma once

// Width tables, ink boxes and leans of the twelve text typefaces, made from the AFM files of the fonts that
// pages are shown and printed with. Screen and print both advance by these numbers, so they must come from
// one place.

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "platform/canvas.h"

namespace kelvane {

// Advances in thousandths of an em by character code. Entry 0 is the unit, 600: a run advances by
// width / unit * 0.6 * size.
using WidthTable = std::array<float, 256>;

// The table `<name>.WT` and the AFM file (without its extension) it is made from.
struct WidthTableSource {
  const char* name;
  const char* afm;
  bool ownEncoding;  // codes as the AFM has them; otherwise those of the text faces, by glyph name
};

// In the order of the typeface numbers 0 to 11.
inline constexpr std::array<WidthTableSource, 12> kWidthTableSources = {{
    {"TN", "NimbusRoman-Regular", false},
    {"TB", "NimbusRoman-Bold", false},
    {"TI", "NimbusRoman-Italic", false},
    {"TX", "NimbusRoman-BoldItalic", false},
    {"HN", "NimbusSans-Regular", false},
    {"HB", "NimbusSans-Bold", false},
    {"HI", "NimbusSans-Italic", false},
    {"HX", "NimbusSans-BoldItalic", false},
    {"GN", "StandardSymbolsPS", true},
    {"CB", "NimbusMonoPS-Bold", false},
    {"GI", "StandardSymbolsPS", true},
    {"ZI", "Z003-MediumItalic", false},
}};

// The table of an AFM file's text. Throws Failure if a character of the encoding has no metrics there.
WidthTable MakeWidthTable(std::string_view afmText, bool ownEncoding);

// The 1024 bytes of a .WT file: little-endian single-precision values.
std::string WidthTableBytes(const WidthTable& table);

// What a character's ink covers, thousandths of an em from its origin, y upwards; all 0 without ink.
struct InkBox {
  std::int16_t left = 0;
  std::int16_t bottom = 0;
  std::int16_t right = 0;
  std::int16_t top = 0;
  bool operator==(const InkBox&) const = default;
};
using InkTable = std::array<InkBox, 256>;

// Symbol-Italic is Symbol, leaning by kSlant.
inline constexpr std::size_t kSlantedFace = 10;

// The ink boxes of an AFM file's text. A slanted box holds the slanted ink, with some room left and right.
InkTable MakeInkTable(std::string_view afmText, bool ownEncoding, double slant);

// The bytes of INK.TAB.
std::string InkTableBytes(const std::array<InkTable, 12>& tables);

// How a character leans, thousandths of an em: see LoadLeans.
struct CharacterLean {
  std::int16_t correction = 0;
  std::int16_t accent = 0;
  bool operator==(const CharacterLean&) const = default;
};
using LeanTable = std::array<CharacterLean, 256>;

// The leans of an AFM file's text. `slant` is the tangent by which its characters are slanted beyond their
// own.
LeanTable MakeLeanTable(std::string_view afmText, bool ownEncoding, double slant);

// The bytes of LEAN.TAB.
std::string LeanTableBytes(const std::array<LeanTable, 12>& tables);

// PostScript lines (CR LF) with the widths of codes 1 to 223 of twelve tables, as the prolog holds them
// between its two marker lines.
std::string PrologWidthLines(const std::array<WidthTable, 12>& tables);

// The prolog with the lines between its markers replaced. Throws Failure if it has no markers.
std::string ReplacePrologWidths(std::string_view prolog, const std::array<WidthTable, 12>& tables);

}  // namespace kelvane
