#include "document/fields.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

#include "platform/failure.h"

namespace kelvane {
namespace {

TEST(Fields, EndsAndEmptyFields) {
  EXPECT_EQ(CountFields("", " "), 1);
  EXPECT_EQ(CountFields("1 2 m\r\n", "\r\n"), 2);
  EXPECT_EQ(GetField("1 2 m\r\n", 1, "\r\n"), "1 2 m");
  EXPECT_EQ(GetField("1 2 m\r\n", 2, "\r\n"), "");
  EXPECT_EQ(GetField("a  b", 2, " "), "");
  EXPECT_EQ(GetField("a  b", 3, " "), "b");
  EXPECT_EQ(GetField("a b", 0, " "), "");
  EXPECT_EQ(GetField("a b", -1, " "), "");
  EXPECT_EQ(GetField("a b", 3, " "), "");
  EXPECT_EQ(GetField("a b", 32767, " "), "");
  // Half a delimiter is text.
  EXPECT_EQ(CountFields("a\rb\nc\r\nd", "\r\n"), 2);
  EXPECT_EQ(GetField("a\rb\nc\r\nd", 1, "\r\n"), "a\rb\nc");
}

TEST(Fields, QuotesHideDelimitersOnlyAtTheStartOfAField) {
  const std::string text = "\"x y\" z";
  EXPECT_EQ(CountFields(text, " "), 2);
  EXPECT_EQ(GetField(text, 1, " "), "x y");
  EXPECT_EQ(GetField(text, 2, " "), "z");
  EXPECT_EQ(GetField("\"x y\"dropped z", 1, " "), "x y");
  EXPECT_EQ(GetField("\"x y\"dropped z", 2, " "), "z");
  EXPECT_EQ(CountFields("a\"b c\" d", " "), 3);
  EXPECT_EQ(GetField("a\"b c\" d", 2, " "), "c\"");
  // Without its second quote a field takes the rest.
  EXPECT_EQ(CountFields("a \"b c", " "), 2);
  EXPECT_EQ(GetField("a \"b c", 2, " "), "b c");
  EXPECT_EQ(GetField("a \"b c", 3, " "), "");
  EXPECT_EQ(GetField("\"", 1, " "), "");
  EXPECT_EQ(CountFields("\"\" x", " "), 2);
}

TEST(Fields, AnEmptyDelimiterMakesOneField) {
  EXPECT_EQ(CountFields("a b", ""), 1);
  EXPECT_EQ(GetField("a b", 1, ""), "a b");
  EXPECT_EQ(GetField("a b", 2, ""), "");
  EXPECT_EQ(SplitFields("a b", "").size(), 1U);
  EXPECT_EQ(GetField("\"a\" b", 1, ""), "\"a\" b") << "no quote is taken off";
}

TEST(Fields, CountsUpToTheLargestNumberOfFields) {
  const std::string most(32766, ' ');
  EXPECT_EQ(CountFields(most, " "), 32767);
  EXPECT_THROW(CountFields(most + " ", " "), Failure);
  EXPECT_EQ(SplitFields(most + " ", " ").size(), 32768U);
}

TEST(Fields, ReplacesAFieldAndKeepsItsDelimiter) {
  const auto replaced = [](std::string text, std::int16_t index, std::string_view value) {
    ReplaceField(text, index, " ", value);
    return text;
  };
  EXPECT_EQ(replaced("a b c", 2, "X"), "a X c");
  EXPECT_EQ(replaced("a b c", 3, "XYZ"), "a b XYZ");
  EXPECT_EQ(replaced("a b", 3, "X"), "a b");
  EXPECT_EQ(replaced("a b", 0, "X"), "a b");
  EXPECT_EQ(replaced("", 1, "X"), "");
  EXPECT_EQ(replaced("a ", 2, "X"), "a ") << "the empty field behind the last delimiter";
  EXPECT_EQ(replaced("a  b", 2, "X"), "a X b");
  EXPECT_EQ(replaced("\"x y\" z", 1, "X"), "X z") << "with its quotes";
  EXPECT_EQ(replaced("a \"x y", 2, "X"), "a X");
}

// Counting, reading, splitting and replacing must agree on where fields end, or a list loses a field when it
// is rebuilt.
TEST(Fields, RoutinesAgreeOnAnyText) {
  std::mt19937 random(20);
  for (int round = 0; round < 2000; ++round) {
    std::string text;
    for (unsigned i = random() % 12; i > 0; --i) text += "a\" \r\n"[random() % 5];
    for (const char* delimiter : {" ", "\r\n"}) {
      const auto fields = SplitFields(text, delimiter);
      ASSERT_EQ(CountFields(text, delimiter), static_cast<int>(fields.size())) << text;
      for (std::size_t i = 0; i < fields.size(); ++i)
        ASSERT_EQ(GetField(text, static_cast<std::int16_t>(i + 1), delimiter), fields[i]) << text;
      std::string marked = text;
      const auto last = static_cast<std::int16_t>(fields.size());
      ReplaceField(marked, last, delimiter, "new");
      const bool nothingToReplace = marked == text;
      ASSERT_TRUE(nothingToReplace || GetField(marked, last, delimiter) == "new") << text;
    }
  }
}

TEST(Fields, ReplacesAllOccurrencesOnce) {
  EXPECT_EQ(ReplaceAll("a\r\n@\r\nb", "\r\n@", ""), "a\r\nb");
  EXPECT_EQ(ReplaceAll(" ", " ", "x"), " ");
  EXPECT_EQ(ReplaceAll("  ", " ", "x"), "xx");
  EXPECT_EQ(ReplaceAll("aaa", "a", "aa"), "aaaaaa");
  EXPECT_EQ(ReplaceAll("aaa", "aa", "b"), "ba");
  EXPECT_EQ(ReplaceAll("abc", "", "x"), "abc");
  EXPECT_EQ(ReplaceAll(std::string(32766, '-') + "a", "a", "").size(), 32766U);
  EXPECT_THROW(ReplaceAll(std::string(32767, '-') + "a", "a", ""), Failure);
  EXPECT_THROW(ReplaceAll(std::string(20000, 'a'), "a", "aa"), Failure);
}

TEST(Fields, FindsTheLastOccurrence) {
  EXPECT_EQ(LastIndexOf("a\\b\\c", "\\"), 4);
  EXPECT_EQ(LastIndexOf("abc", "x"), 0);
  EXPECT_EQ(LastIndexOf("abc", ""), 0);
  EXPECT_EQ(LastIndexOf("aaa", "aa"), 1) << "occurrences do not overlap";
}

TEST(Fields, ReadsUpperCaseHexadecimal) {
  EXPECT_EQ(HexToInt("FF"), 255);
  EXPECT_EQ(HexToInt("7FFF"), 32767);
  EXPECT_EQ(HexToInt("ff"), -17);
  EXPECT_EQ(HexToInt(""), 0);
  EXPECT_THROW(HexToInt("8000"), Failure);
  EXPECT_THROW(HexToInt("800x"), Failure) << "no step may leave 16 bits";
  EXPECT_THROW(HexToInt("x0000"), Failure);
}

TEST(Fields, TakesPathsApart) {
  EXPECT_EQ(ChangeExtension("C:\\P\\a.b.c", "001"), "C:\\P\\a.001");
  EXPECT_EQ(ChangeExtension("C:\\Dir.x\\paper", "002"), "C:\\Dir.x\\paper.002");
  EXPECT_EQ(ChangeExtension("paper", "PS"), "paper.PS");
  EXPECT_EQ(FolderOf("C:\\P\\a.001"), "C:\\P");
  EXPECT_EQ(FolderOf("\\a.001"), "");
  EXPECT_EQ(FolderOf("a.001"), "");
  EXPECT_EQ(FileTitleOf("C:\\Dir.x\\a.b.c"), "a");
  EXPECT_EQ(FileTitleOf("C:\\Dir.x\\paper"), "paper");
}

TEST(Fields, PreparesTextForOutput) {
  EXPECT_EQ(EscapePostScriptString("a\\(b)"), "a\\\\\\(b\\)");
  EXPECT_EQ(StripHighChars("a\xDF\xE0 b\xFF\x01"), "a\xDF b\x01");
}

}  // namespace
}  // namespace kelvane
