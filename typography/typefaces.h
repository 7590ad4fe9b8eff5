#pragma once

// The sixteen typefaces: their names, screen faces and widths, and the choice of typeface and size.

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "platform/canvas.h"
#include "platform/controls.h"

namespace kelvane {

inline constexpr std::int16_t kTypefaces = 16;
inline constexpr std::int16_t kFirstGlyphFont = 12;  // 12 to 15 are drawn by the glyph interpreter
inline constexpr int kFirstSwitchCode = 224;         // 224 + n in a run switches to typeface n
inline constexpr int kFirstScriptCode = 240;         // from here on codes for scripts and fixed spaces
inline constexpr std::int16_t kSymbol = 8;
inline constexpr std::int16_t kSymbolItalic = 10;
inline constexpr std::int16_t kMath0 = 12;
inline constexpr std::int16_t kMath3 = 15;  // the same glyphs, without widths

// How a character of a slanted typeface leans, ems from its origin.
struct Lean {
  float correction = 0;  // from its advance to where its ink ends, if that is further to the right
  float accent = 0;      // the middle of an accent over it
};

struct TypefaceRecord {
  std::string Name;                 // base name of the width file; empty without one
  std::array<float, 256> Widths{};  // advances in the typeface's own units
  float WidthUnit = 0;              // divisor of all widths
  std::vector<Box> Ink;             // of the codes from 0 on, ems from the origin; may end early
  std::vector<Lean> Leans;          // of the codes from 0 on; empty where nothing leans
  float AscentFactor = 0;           // cell top above the baseline, in ems
  float ScreenSizeFactor = 0;       // part of the canvas font size
};

struct TypefaceNames {
  const char* menuCaption;
  const char* postScriptName;
  ScreenFace screen;  // empty family for the glyph fonts
};

// Built by ResetTypefaces, widths filled by LoadWidthTables and by saving a glyph, ink by
// LoadInkBoxes.
extern TypefaceRecord TypefaceTable[kTypefaces];
extern const TypefaceNames kTypefaceNames[kTypefaces];

extern std::int16_t BaseFont;     // the entry being typed starts in it; checked in the menu
extern std::int16_t CurrentFont;  // in force at the end of the entry being typed
extern float FontSize;            // points
inline constexpr float kDefaultFontSize = 11;

extern Label* FontLabel;
extern MenuEntry* FontMenu[kTypefaces];
extern TextBox* Text1;  // "Font Size"

void ResetTypefaces();

// True for 0 to 15. Drawing and measuring take typeface 0 for any other number.
bool IsTypeface(std::int16_t font);
// Whether it has the codes of the text faces, or those of the Symbol encoding.
bool IsTextFace(std::int16_t font);
bool IsSymbolFace(std::int16_t font);

// Name, a blank, the size as "#.00", "pts": "Times-Roman 11.00pts", " .50pts" for a number outside 0 to 15.
std::string FontLabelText(std::int16_t font, float size);
void ShowFontLabel(std::int16_t font, float size);
void CheckFontMenu(std::int16_t font);

// The size box changed: FontSize is its number, CurrentFont is BaseFont again.
void SizeBoxChanged(const std::string& text);

}  // namespace kelvane
