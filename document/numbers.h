#pragma once

// The one writer and the one reader of numbers in files and boxes. Never the machine's locale.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace kelvane {

// Shortest general form with up to 7 significant digits: 72, 72.5, -3.25, 0.1. Minus zero is "0".
std::string FormatSingle(float value);

// What is read again after it was written: ReadSingle(FormatSingle(value)), but quicker.
float AsWritten(float value);

// The number at the start of the text after blanks: sign, digits, point, exponent. Reading stops at the first
// character that cannot go on a number; no number gives 0. Out of range gives the largest single of that
// sign.
float ReadSingle(std::string_view text);

// The number that makes up the whole text, blanks at its ends aside; nothing for what is no number, or one
// out of range.
std::optional<float> NumberOf(std::string_view text);

// The number that digits alone make up; 0 for what is none, and for one beyond 16 bits.
std::int16_t CountOf(std::string_view text);

// The same as ReadSingle in double precision, for values that are not page coordinates.
double ReadDouble(std::string_view text);

// Nearest whole number, ties to even, held within 16 bits.
std::int16_t RoundToInt16(float value);

// Fixed decimals, half away from zero. `leadingZero` false writes .50 instead of 0.50.
std::string FormatFixed(double value, int decimals, bool leadingZero);

// The same without zeros behind the last decimal, and without a point if none is left: 0.5, 12, -3.25.
std::string FormatUpTo(double value, int decimals);

}  // namespace kelvane
