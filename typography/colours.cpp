#include "typography/colours.h"

#include <cstdio>

#include "document/fields.h"

namespace kelvane {

std::int16_t LineColour = kBlack;
double LineWidth = 0.25;
MenuEntry* ColourMenu[16];
MenuEntry* ThicknessMenu[7];

namespace {

constexpr ColourValue kPalette[16] = {
    0x000000, 0x800000, 0x008000, 0x808000, 0x000080, 0x800080, 0x008080, 0xC0C0C0,
    0x808080, 0xFF0000, 0x00FF00, 0xFFFF00, 0x0000FF, 0xFF00FF, 0x00FFFF, 0xFFFFFF,
};

// Two hexadecimal digits, from the 1-based position `first`, of the value with a leading 1 that keeps zeros.
std::int16_t Component(std::int32_t value, std::size_t first) {
  char digits[16];
  std::snprintf(digits, sizeof digits, "%X", static_cast<unsigned>(value) + 0x1000000U);
  const std::string_view all(digits);
  return first > all.size() ? std::int16_t{0} : HexToInt(all.substr(first - 1, 2));
}

}  // namespace

void ResetColours() {
  LineColour = kBlack;
  LineWidth = 0.25;
}

ColourValue PaletteColour(std::int16_t number) {
  return number >= 0 && number < 16 ? kPalette[number] : kPalette[kBlack];
}

std::int16_t ColourRed(std::int32_t value) {
  return Component(value, 6);
}
std::int16_t ColourGreen(std::int32_t value) {
  return Component(value, 4);
}
std::int16_t ColourBlue(std::int32_t value) {
  return Component(value, 2);
}

void ChooseColour(std::int16_t number) {
  LineColour = number;
  CheckColourMenu(LineColour);
}

void ChooseThickness(double width) {
  LineWidth = width;
  CheckThicknessMenu(LineWidth);
}

void CheckColourMenu(std::int16_t number) {
  for (std::int16_t i = 0; i < 16; ++i) {
    if (ColourMenu[i]) ColourMenu[i]->SetChecked(i == number);
  }
}

void CheckThicknessMenu(double width) {
  for (std::size_t i = 0; i < kThicknesses.size(); ++i) {
    if (ThicknessMenu[i]) ThicknessMenu[i]->SetChecked(kThicknesses[i] == width);
  }
}

}  // namespace kelvane
