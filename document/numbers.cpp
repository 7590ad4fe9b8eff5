#include "document/numbers.h"

// Built on std::from_chars and std::to_chars, which know no locale.

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <limits>
#include <system_error>

namespace kelvane {
namespace {

constexpr int kSingleDigits = 7;
constexpr std::size_t kLongestFixed = 400;  // 309 digits of the largest double, sign, point and decimals

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

// Whether a number that is out of range is too small rather than too large: the power of ten of its first
// digit that is not zero is negative. `digits` is an unsigned decimal number.
bool IsTooSmall(std::string_view digits) {
  const std::size_t exponentAt = digits.find_first_of("eE");
  const std::string_view mantissa = digits.substr(0, exponentAt);
  const std::size_t point = std::min(mantissa.find('.'), mantissa.size());
  const std::size_t first = std::min(mantissa.find_first_of("123456789"), mantissa.size());
  long long power = 0;
  if (exponentAt != std::string_view::npos) {
    std::string_view exponent = digits.substr(exponentAt + 1);
    const bool negative = exponent.starts_with('-');
    if (exponent.starts_with('+')) exponent.remove_prefix(1);
    const auto read = std::from_chars(exponent.data(), exponent.data() + exponent.size(), power);
    // Beside such an exponent the place of the first digit, at most the length of a file, is nothing.
    constexpr long long kHuge = std::numeric_limits<long long>::max() / 2;
    if (read.ec == std::errc::result_out_of_range || power > kHuge || power < -kHuge) return negative;
  }
  return power + static_cast<long long>(point) - static_cast<long long>(first) <= 0;
}

template <typename T>
T ReadNumber(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
  const bool negative = text.starts_with('-');
  if (negative || text.starts_with('+')) text.remove_prefix(1);
  // What follows must be a digit, or from_chars would take a second sign and the words for no number.
  const std::size_t digit = text.starts_with('.') ? 1 : 0;
  if (digit >= text.size() || !IsDigit(text[digit])) return 0;
  T value = 0;
  const auto read = std::from_chars(text.data(), text.data() + text.size(), value);
  if (read.ec == std::errc::result_out_of_range) {
    const std::string_view digits(text.data(), static_cast<std::size_t>(read.ptr - text.data()));
    value = IsTooSmall(digits) ? 0 : std::numeric_limits<T>::max();
  }
  value = std::min(value, std::numeric_limits<T>::max());
  return negative && value != 0 ? -value : value;
}

// A number of the size that places on paper have, in seven digits.
struct SevenDigits {
  long long digits = 0;  // of the number without its sign, times `scale`
  long long scale = 1;
};

// Nothing for other sizes, and halfway between two such numbers, where the product may have been rounded.
std::optional<SevenDigits> InSevenDigits(float value) {
  constexpr double kLeast = 0.001;
  constexpr double kSevenDigits = 1e6;
  constexpr double kTooNear = 1e-6;
  const double size = std::fabs(static_cast<double>(value));
  if (!(size >= kLeast && size < kSevenDigits)) return std::nullopt;
  long long scale = 1;
  while (size * static_cast<double>(scale) < kSevenDigits) scale *= 10;
  const double scaled = size * static_cast<double>(scale);
  if (std::fabs(scaled - std::floor(scaled) - 0.5) < kTooNear) return std::nullopt;
  return SevenDigits{static_cast<long long>(std::nearbyint(scaled)), scale};
}

// Writes such a number and returns the end: several times as quick as std::to_chars. Null for other ones.
char* WriteUsual(float value, char* to) {
  const std::optional<SevenDigits> usual = InSevenDigits(value);
  if (!usual) return nullptr;
  auto [digits, scale] = *usual;
  if (value < 0) *to++ = '-';
  to = std::to_chars(to, to + kSingleDigits + 1, digits / scale).ptr;
  long long rest = digits % scale;
  if (rest != 0) *to++ = '.';
  for (; rest != 0; rest %= scale) {
    scale /= 10;
    *to++ = static_cast<char>('0' + rest / scale);
  }
  return to;
}

}  // namespace

std::string FormatSingle(float value) {
  if (value == 0 || std::isnan(value)) return "0";
  constexpr float kLargest = std::numeric_limits<float>::max();
  std::array<char, 32> buffer;
  if (char* end = WriteUsual(value, buffer.data())) return {buffer.data(), end};
  const auto written =
      std::to_chars(buffer.data(), buffer.data() + buffer.size(), std::clamp(value, -kLargest, kLargest),
                    std::chars_format::general, kSingleDigits);
  return {buffer.data(), written.ptr};
}

float AsWritten(float value) {
  const std::optional<SevenDigits> usual = InSevenDigits(value);
  if (!usual) return ReadSingle(FormatSingle(value));
  const double size = static_cast<double>(usual->digits) / static_cast<double>(usual->scale);
  return static_cast<float>(std::copysign(size, value));
}

float ReadSingle(std::string_view text) {
  return ReadNumber<float>(text);
}

std::optional<float> NumberOf(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
  text = text.substr(0, text.find_last_not_of(' ') + 1);
  if (text.starts_with('+') && !text.starts_with("+-")) text.remove_prefix(1);
  float value = 0;
  const auto read = std::from_chars(text.data(), text.data() + text.size(), value);
  const bool whole = read.ec == std::errc{} && read.ptr == text.data() + text.size();
  return whole && std::isfinite(value) ? std::optional(value) : std::nullopt;
}

std::int16_t CountOf(std::string_view text) {
  std::int16_t value = 0;
  const bool digits = !text.empty() && std::ranges::all_of(text, IsDigit);
  const auto read = std::from_chars(text.data(), text.data() + text.size(), value);
  return digits && read.ec == std::errc{} ? value : std::int16_t{0};
}

double ReadDouble(std::string_view text) {
  return ReadNumber<double>(text);
}

std::int16_t RoundToInt16(float value) {
  if (std::isnan(value)) return 0;
  constexpr float kLeast = std::numeric_limits<std::int16_t>::min();
  constexpr float kMost = std::numeric_limits<std::int16_t>::max();
  return static_cast<std::int16_t>(std::clamp(std::nearbyint(value), kLeast, kMost));
}

std::string FormatFixed(double value, int decimals, bool leadingZero) {
  if (!std::isfinite(value))
    value = std::isnan(value) ? 0 : std::copysign(std::numeric_limits<double>::max(), value);
  // The standard formatter takes ties to even; rounding first, in the wider type, takes them away from zero.
  const long double scale = std::pow(10.0L, decimals);
  const auto rounded =
      static_cast<double>(std::round(std::fabs(static_cast<long double>(value)) * scale) / scale);
  std::array<char, kLongestFixed> buffer;
  const auto written = std::to_chars(buffer.data(), buffer.data() + buffer.size(), rounded,
                                     std::chars_format::fixed, decimals);
  std::string text(buffer.data(), written.ptr);
  if (!leadingZero && text.starts_with("0.")) text.erase(0, 1);
  if (value < 0 && rounded != 0) text.insert(0, "-");
  return text;
}

std::string FormatUpTo(double value, int decimals) {
  std::string text = FormatFixed(value, decimals, true);
  if (decimals > 0) text.erase(text.find_last_not_of('0') + 1);
  if (text.ends_with('.')) text.pop_back();
  return text;
}

}  // namespace kelvane
