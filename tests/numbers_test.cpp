#include "document/numbers.h"

#include <gtest/gtest.h>

#include <cfloat>
#include <clocale>
#include <cmath>
#include <limits>
#include <locale>
#include <random>
#include <string>

namespace kelvane {
namespace {

TEST(Numbers, WritesTheShortestFormOfSevenDigits) {
  EXPECT_EQ(FormatSingle(72), "72");
  EXPECT_EQ(FormatSingle(72.5F), "72.5");
  EXPECT_EQ(FormatSingle(-3.25F), "-3.25");
  EXPECT_EQ(FormatSingle(0.1F), "0.1");
  EXPECT_EQ(FormatSingle(100.0F / 3), "33.33333");
  EXPECT_EQ(FormatSingle(9999999), "9999999");
  EXPECT_EQ(FormatSingle(1e7F), "1e+07");
  EXPECT_EQ(FormatSingle(0.00001F), "1e-05");
  EXPECT_EQ(FormatSingle(-0.0F), "0");
}

TEST(Numbers, ReadsTheNumberInFront) {
  EXPECT_EQ(ReadSingle("12abc"), 12);
  EXPECT_EQ(ReadSingle("  -3.25 7"), -3.25F);
  EXPECT_EQ(ReadSingle("+4"), 4);
  EXPECT_EQ(ReadSingle(".5"), 0.5F);
  EXPECT_EQ(ReadSingle("5."), 5);
  EXPECT_EQ(ReadSingle("1e3"), 1000);
  EXPECT_EQ(ReadSingle("1e"), 1);
  EXPECT_EQ(ReadSingle("1e+x"), 1);
  EXPECT_EQ(ReadSingle("1,5"), 1);
  EXPECT_EQ(ReadSingle("1 5"), 1);
}

TEST(Numbers, ReadsWhatIsNoNumberAsZero) {
  for (const char* text :
       {"", " ", "-", "+", ".", "-.", "e5", "abc", "nan", "inf", "-inf", "--5", "+-5", "\t5"})
    EXPECT_EQ(ReadSingle(text), 0) << text;
  EXPECT_EQ(ReadSingle("0x10"), 0);
  EXPECT_FALSE(std::signbit(ReadSingle("-0")));
}

TEST(Numbers, StaysInRange) {
  EXPECT_EQ(ReadSingle("1e39"), FLT_MAX);
  EXPECT_EQ(ReadSingle("-1e999999999999999999999"), -FLT_MAX);
  EXPECT_EQ(ReadSingle(std::string(60, '9')), FLT_MAX);
  EXPECT_EQ(ReadSingle("0.001e60"), FLT_MAX);
  EXPECT_EQ(ReadSingle("1e-999999999999999999999"), 0);
  EXPECT_EQ(ReadSingle("-1e-60"), 0);
  EXPECT_EQ(ReadSingle("0." + std::string(60, '0') + "1"), 0);
  EXPECT_EQ(ReadSingle("100000e-60"), 0);
  EXPECT_EQ(ReadDouble("1e39"), 1e39);
  EXPECT_EQ(ReadDouble("1e999"), DBL_MAX);
  const float infinity = std::numeric_limits<float>::infinity();
  EXPECT_EQ(ReadSingle(FormatSingle(-infinity)), ReadSingle(FormatSingle(-FLT_MAX)));
  EXPECT_EQ(FormatSingle(std::nanf("")), "0");
}

// Seven digits do not tell all singles apart, but what was written once is written the same ever after, or a
// page would change each time it is saved.
TEST(Numbers, WrittenNumbersStay) {
  std::mt19937 random(7);
  std::uniform_real_distribution<float> values(-2000, 2000);
  for (int i = 0; i < 20000; ++i) {
    const std::string written = FormatSingle(values(random));
    ASSERT_EQ(FormatSingle(ReadSingle(written)), written);
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
  EXPECT_EQ(RoundToInt16(2.5F), 2);
  EXPECT_EQ(RoundToInt16(3.5F), 4);
  EXPECT_EQ(RoundToInt16(-2.5F), -2);
  EXPECT_EQ(RoundToInt16(2.51F), 3);
  EXPECT_EQ(RoundToInt16(40000), 32767);
  EXPECT_EQ(RoundToInt16(-1e30F), -32768);
  EXPECT_EQ(RoundToInt16(std::nanf("")), 0);
}

TEST(Numbers, WritesFixedDecimals) {
  EXPECT_EQ(FormatFixed(11, 2, false), "11.00");
  EXPECT_EQ(FormatFixed(0.5, 2, false), ".50");
  EXPECT_EQ(FormatFixed(-0.5, 2, false), "-.50");
  EXPECT_EQ(FormatFixed(0, 2, false), ".00");
  EXPECT_EQ(FormatFixed(0.5, 6, true), "0.500000");
  EXPECT_EQ(FormatFixed(0.125, 2, true), "0.13") << "ties go away from zero";
  EXPECT_EQ(FormatFixed(-0.125, 2, true), "-0.13");
  EXPECT_EQ(FormatFixed(2.5, 0, true), "3");
  EXPECT_EQ(FormatFixed(-0.001, 2, true), "0.00");
  EXPECT_EQ(FormatFixed(99.999, 2, true), "100.00");
  EXPECT_EQ(FormatFixed(1e30, 2, true).size(), 34U);
}

}  // namespace
}  // namespace kelvane
