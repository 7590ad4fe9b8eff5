#include "document/fields.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "platform/failure.h"

namespace kelvane {
namespace {

TEST(Fields, EndWhereTheDelimitersStand) {
  struct Case {
    const char* text;
    const char* delimiter;
    std::vector<std::string_view> fields;
  };
  const Case cases[] = {
      {"", " ", {""}},
      {"1 2 m\r\n", "\r\n", {"1 2 m", ""}},
      {"a  b", " ", {"a", "", "b"}},
      // Half a delimiter is text, and no delimiter makes one field, with its quotes.
      {"a\rb\nc\r\nd", "\r\n", {"a\rb\nc", "d"}},
      {"\"a\" b", "", {"\"a\" b"}},
      // Quotes hide delimiters at the start of a field only; what follows the second one is dropped.
      {"\"x y\" z", " ", {"x y", "z"}},
      {"\"x y\"dropped z", " ", {"x y", "z"}},
      {"a\"b c\" d", " ", {"a\"b", "c\"", "d"}},
      {"\"\" x", " ", {"", "x"}},
      // Without its second quote a field takes the rest.
      {"a \"b c", " ", {"a", "b c"}},
      {"\"", " ", {""}},
  };
  for (const auto& [text, delimiter, fields] : cases) EXPECT_EQ(SplitFields(text, delimiter), fields) << text;
}

TEST(Fields, AreCountedUpToTheLargestNumberAndEmptyOutside) {
  for (const std::int16_t index : {0, -1, 3, 32767}) EXPECT_EQ(GetField("a b", index, " "), "") << index;
  const std::string most(32766, ' ');
  EXPECT_EQ(CountFields(most, " "), 32767);
  EXPECT_THROW(CountFields(most + " ", " "), Failure);
  EXPECT_EQ(SplitFields(most + " ", " ").size(), 32768U);
}

TEST(Fields, ReplacesAFieldAndKeepsItsDelimiter) {
  const auto replaced = [](std::string text, std::int16_t index) {
    ReplaceField(text, index, " ", "New");
    return text;
  };
  EXPECT_EQ(replaced("a b c", 2), "a New c");
  EXPECT_EQ(replaced("a b", 3), "a b");
  EXPECT_EQ(replaced("a b", 0), "a b");
  EXPECT_EQ(replaced("a ", 2), "a ") << "the empty field behind the last delimiter";
  EXPECT_EQ(replaced("a  b", 2), "a New b");
  EXPECT_EQ(replaced("\"x y\" z", 1), "New z") << "with its quotes";
  EXPECT_EQ(replaced("a \"x y", 2), "a New");
}

// Counting, reading, splitting and replacing must agree on where fields end, or a list loses a field when it
// is rebuilt.
TEST(Fields, RoutinesAgreeOnAnyText) {
  std::mt19937 random(20);
  for (int round = 0; round < 2000; ++round) {
    std::string text;
    for (unsigned i = random() % 12; i > 0; --i) text += "a\" \r\n"[random() % 5];
    for (const char* delimiter : {" ", "\r\n", ""}) {
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
  const char* cases[][4] = {
      {"a\r\n@\r\nb", "\r\n@", "", "a\r\nb"}, {" ", " ", "x", " "},     {"  ", " ", "x", "xx"},
      {"aaa", "a", "aa", "aaaaaa"},           {"aaa", "aa", "b", "ba"}, {"abc", "", "x", "abc"}};
  for (const auto& [text, from, to, replaced] : cases) EXPECT_EQ(ReplaceAll(text, from, to), replaced);
  EXPECT_EQ(ReplaceAll(std::string(32766, '-') + "a", "a", "").size(), 32766U);
  EXPECT_THROW(ReplaceAll(std::string(32767, '-') + "a", "a", ""), Failure);
  EXPECT_THROW(ReplaceAll(std::string(20000, 'a'), "a", "aa"), Failure);
}

TEST(Fields, FindsTheLastOccurrence) {
  EXPECT_EQ(LastIndexOf("a\\b\\c", "\\"), 4);
  for (const char* none : {"x", ""}) EXPECT_EQ(LastIndexOf("abc", none), 0);
  EXPECT_EQ(LastIndexOf("aaa", "aa"), 1) << "occurrences do not overlap";
}

TEST(Fields, ReadsUpperCaseHexadecimal) {
  const std::pair<const char*, int> cases[] = {{"FF", 255}, {"7FFF", 32767}, {"ff", -17}, {"", 0}};
  for (const auto& [text, value] : cases) EXPECT_EQ(HexToInt(text), value) << text;
  // No step may leave 16 bits.
  for (const char* text : {"8000", "800x", "x0000"}) EXPECT_THROW(HexToInt(text), Failure) << text;
}

TEST(Fields, TakesPathsApart) {
  EXPECT_EQ(ChangeExtension("C:\\P\\a.b.c", "001"), "C:\\P\\a.001");
  EXPECT_EQ(ChangeExtension("C:\\Dir.x\\paper", "002"), "C:\\Dir.x\\paper.002");
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
