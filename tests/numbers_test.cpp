#include "document/numbers.h"

#include <gtest/gtest.h>

#include <cfloat>
#include <clocale>
#include <cmath>
#include <limits>
#include <locale>
#include <random>
#include <string>
#include <utility>

namespace kelvane {
namespace {

TEST(Numbers, WritesTheShortestFormOfSevenDigits) {
  const std::pair<float, const char*> cases[] = {
      {72, "72"},           {72.5F, "72.5"}, {-3.25F, "-3.25"},   {0.1F, "0.1"}, {100.0F / 3, "33.33333"},
      {9999999, "9999999"}, {1e7F, "1e+07"}, {0.00001F, "1e-05"}, {-0.0F, "0"},  {std::nanf(""), "0"}};
  for (const auto& [value, text] : cases) EXPECT_EQ(FormatSingle(value), text);
}

TEST(Numbers, ReadsTheNumberInFront) {
  const std::pair<const char*, float> cases[] = {
      {"12abc", 12}, {"  -3.25 7", -3.25F}, {"+4", 4},  {".5", 0.5F}, {"5.", 5}, {"1e3", 1000},
      {"1e", 1},     {"1e+x", 1},           {"1,5", 1}, {"1 5", 1}};
  for (const auto& [text, value] : cases) EXPECT_EQ(ReadSingle(text), value) << text;
}

TEST(Numbers, ReadsWhatIsNoNumberOrTooSmallAsZero) {
  const std::string small = "0." + std::string(60, '0') + "1";
  for (const char* text : {"",
                           " ",
                           "-",
                           "+",
                           ".",
                           "-.",
                           "e5",
                           "abc",
                           "nan",
                           "inf",
                           "-inf",
                           "--5",
                           "+-5",
                           "\t5",
                           "0x10",
                           "1e-999999999999999999999",
                           "-1e-60",
                           "100000e-60",
                           "22E-9223372036854775807",
                           "1e-9223372036854775808",
                           small.c_str()})
    EXPECT_EQ(ReadSingle(text), 0) << text;
  EXPECT_FALSE(std::signbit(ReadSingle("-0")));
}

TEST(Numbers, TellsNumbersFromOtherTexts) {
  EXPECT_EQ(NumberOf(" 12.5 "), 12.5F);
  EXPECT_EQ(NumberOf("+3"), 3.0F);
  EXPECT_EQ(NumberOf("-.5"), -0.5F);
  for (const char* text : {"", " ", "12x", "1 2", "1,5", "+-3", "+", "nan", "inf", "1e99"})
    EXPECT_EQ(NumberOf(text), std::nullopt) << text;
}

TEST(Numbers, StaysInRange) {
  for (const std::string& text : {std::string(60, '9'), std::string("1e39"), std::string("0.001e60"),
                                  std::string("2E9223372036854775807")})
    EXPECT_EQ(ReadSingle(text), FLT_MAX) << text;
  EXPECT_EQ(ReadSingle("-1e999999999999999999999"), -FLT_MAX);
  EXPECT_EQ(ReadDouble("1e39"), 1e39);
  EXPECT_EQ(ReadDouble("1e999"), DBL_MAX);
  const float infinity = std::numeric_limits<float>::infinity();
  EXPECT_EQ(ReadSingle(FormatSingle(-infinity)), ReadSingle(FormatSingle(-FLT_MAX)));
}

// Seven digits do not tell all singles apart, but what was written once is written the same ever after, or a
// page would change each time it is saved.
TEST(Numbers, WrittenNumbersStay) {
  std::mt19937 random(7);
  std::uniform_real_distribution<float> values(-2000, 2000);
  for (int i = 0; i < 20000; ++i) {
    const float value = values(random);
    const std::string written = FormatSingle(value);
    ASSERT_EQ(FormatSingle(ReadSingle(written)), written);
    ASSERT_EQ(AsWritten(value), ReadSingle(written));
  }
}

class DecimalComma : public std::numpunct<char> {
  char do_decimal_point() const override { return ','; }
};

TEST(Numbers, IgnoresTheLocale) {
  const std::string before = std::setlocale(LC_ALL, nullptr);
  const std::locale streams = std::locale::global(std::locale(std::locale::classic(), new DecimalComma));
  std::setlocale(LC_ALL, "de_DE.UTF-8");  // where it is installed
  EXPECT_EQ(FormatSingle(1.5F), "1.5");
  EXPECT_EQ(ReadSingle("1.5"), 1.5F);
  EXPECT_EQ(FormatFixed(1.5, 2, true), "1.50");
  std::locale::global(streams);
  std::setlocale(LC_ALL, before.c_str());
}

TEST(Numbers, RoundsToWholeNumbers) {
  const std::pair<float, int> cases[] = {{2.5F, 2},      {3.5F, 4},        {-2.5F, -2},       {2.51F, 3},
                                         {40000, 32767}, {-1e30F, -32768}, {std::nanf(""), 0}};
  for (const auto& [value, rounded] : cases) EXPECT_EQ(RoundToInt16(value), rounded) << value;
}

TEST(Numbers, WritesFixedDecimals) {
  const std::pair<double, const char*> bare[] = {{11, "11.00"}, {0.5, ".50"}, {-0.5, "-.50"}, {0, ".00"}};
  for (const auto& [value, text] : bare) EXPECT_EQ(FormatFixed(value, 2, false), text);
  // Ties go away from zero.
  const std::pair<double, const char*> full[] = {
      {0.125, "0.13"}, {-0.125, "-0.13"}, {-0.001, "0.00"}, {99.999, "100.00"}};
  for (const auto& [value, text] : full) EXPECT_EQ(FormatFixed(value, 2, true), text);
  EXPECT_EQ(FormatFixed(0.5, 6, true), "0.500000");
  EXPECT_EQ(FormatFixed(2.5, 0, true), "3");
  EXPECT_EQ(FormatFixed(1e30, 2, true).size(), 34U);
}

}  // namespace
}  // namespace kelvane
