#include "typography/typefaces.h"

#include "document/numbers.h"

namespace kelvane {

TypefaceRecord TypefaceTable[kTypefaces];
std::int16_t BaseFont = 0;
std::int16_t CurrentFont = 0;
float FontSize = kDefaultFontSize;
Label* FontLabel;
MenuEntry* FontMenu[kTypefaces];
TextBox* Text1;

// The table is irregular on purpose: one Courier, which is bold; a slanted Symbol of its own; "(reserve)" in
// the menu for fonts that the label and the output call Math1 to Math3.
const TypefaceNames kTypefaceNames[kTypefaces] = {
    {"Times-Roman", "Times-Roman", {"Times New Roman", false, false}},
    {"Times-Bold", "Times-Bold", {"Times New Roman", true, false}},
    {"Times-Italic", "Times-Italic", {"Times New Roman", false, true}},
    {"Times-BoldItalic", "Times-BoldItalic", {"Times New Roman", true, true}},
    {"Helvetica", "Helvetica", {"Arial", false, false}},
    {"Helvetica-Bold", "Helvetica-Bold", {"Arial", true, false}},
    {"Helvetica-Oblique", "Helvetica-Oblique", {"Arial", false, true}},
    {"Helvetica-BoldOblique", "Helvetica-BoldOblique", {"Arial", true, true}},
    {"Symbol", "Symbol", {"Symbol", false, false}},
    {"Courier-Bold", "Courier-Bold", {"Courier New", true, false}},
    {"Symbol-Italic", "Symbol-Italic", {"Symbol", false, true}},
    {"ZapfChancery-MediumItalic", "ZapfChancery-MediumItalic", {"Script", false, true}},
    {"Math0", "Math0", {}},
    {"(reserve)", "Math1", {}},
    {"(reserve)", "Math2", {}},
    {"(reserve)", "Math3", {}},
};

namespace {

struct FaceFactors {
  const char* widthFile;
  float ascent;
  float screenSize;
};

constexpr FaceFactors kFactors[kTypefaces] = {
    {"TN", 0.82F, 0.96F}, {"TB", 0.84F, 0.94F}, {"TI", 0.82F, 0.96F}, {"TX", 0.82F, 0.94F},
    {"HN", 0.75F, 0.87F}, {"HB", 0.75F, 0.85F}, {"HI", 0.75F, 0.87F}, {"HX", 0.75F, 0.85F},
    {"GN", 0.92F, 0.95F}, {"CB", 0.88F, 1.1F},  {"GI", 0.92F, 0.95F}, {"ZI", 0.72F, 1.0F},
    {"MATH0", 0, 0},      {"", 0, 0},           {"", 0, 0},           {"", 0, 0},
};

}  // namespace

bool IsTypeface(std::int16_t font) {
  return font >= 0 && font < kTypefaces;
}

bool IsSymbolFace(std::int16_t font) {
  return font == kSymbol || font == kSymbolItalic;
}

bool IsTextFace(std::int16_t font) {
  return font >= 0 && font < kFirstGlyphFont && !IsSymbolFace(font);
}

void ResetTypefaces() {
  for (int i = 0; i < kTypefaces; ++i) {
    TypefaceTable[i] = TypefaceRecord{};
    TypefaceTable[i].Name = kFactors[i].widthFile;
    TypefaceTable[i].AscentFactor = kFactors[i].ascent;
    TypefaceTable[i].ScreenSizeFactor = kFactors[i].screenSize;
  }
  BaseFont = 0;
  CurrentFont = 0;
  FontSize = kDefaultFontSize;
}

namespace {
// The table is there from the first moment, whoever asks.
[[maybe_unused]] const bool kTableBuilt = (ResetTypefaces(), true);
}  // namespace

std::string FontLabelText(std::int16_t font, float size) {
  std::string text = IsTypeface(font) ? kTypefaceNames[font].postScriptName : "";
  return text + " " + FormatFixed(size, 2, false) + "pts";
}

void ShowFontLabel(std::int16_t font, float size) {
  const std::string text = FontLabelText(font, size);
  // Each key asks for it, and painting it again would come before what was typed.
  if (!FontLabel || FontLabel->Text() == text) return;
  FontLabel->SetText(text);
  FontLabel->Repaint();
}

void CheckFontMenu(std::int16_t font) {
  for (std::int16_t i = 0; i < kTypefaces; ++i) {
    if (FontMenu[i]) FontMenu[i]->SetChecked(i == font);
  }
}

void SizeBoxChanged(const std::string& text) {
  FontSize = ReadSingle(text);
  CurrentFont = BaseFont;
  ShowFontLabel(CurrentFont, FontSize);
}

}  // namespace kelvane
