#pragma once

// Line colours and thicknesses and their menus.

#include <array>
#include <cstdint>

#include "platform/controls.h"

namespace kelvane {

extern std::int16_t LineColour;  // 0 to 15
extern double LineWidth;         // points

extern MenuEntry* ColourMenu[16];
extern MenuEntry* ThicknessMenu[7];

inline constexpr std::array<double, 7> kThicknesses = {0.1, 0.25, 0.5, 0.75, 1.0, 1.5, 2.0};

inline constexpr std::int16_t kBlack = 0;
inline constexpr std::int16_t kLightGrey = 7;
inline constexpr std::int16_t kDarkGrey = 8;
inline constexpr std::int16_t kBlue = 9;
inline constexpr std::int16_t kCyan = 11;
inline constexpr std::int16_t kRed = 12;
inline constexpr std::int16_t kMagenta = 13;
inline constexpr std::int16_t kWhite = 15;

void ResetColours();

// Colour value 0x00BBGGRR of a colour number; black outside 0 to 15.
ColourValue PaletteColour(std::int16_t number);

// Components 0 to 255 of a colour value.
std::int16_t ColourRed(std::int32_t value);
std::int16_t ColourGreen(std::int32_t value);
std::int16_t ColourBlue(std::int32_t value);

// Choosing from the menus: sets the value and the one check mark.
void ChooseColour(std::int16_t number);
void ChooseThickness(double width);
void CheckColourMenu(std::int16_t number);
void CheckThicknessMenu(double width);

}  // namespace kelvane
