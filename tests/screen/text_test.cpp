// Codes and the characters that stand for them. That each code has its glyph shows in the comparison of
// screen and paper.

#include <gtest/gtest.h>

#include <QSet>

#include "platform/qt/qt_text.h"

namespace kelvane {
namespace {

std::string AllCodes() {
  std::string codes;
  for (int code = 0; code < 256; ++code) codes += static_cast<char>(code);
  return codes;
}

TEST(TextTest, EveryCodeHasAVisibleSignOfItsOwn) {
  const QString signs = VisibleText(AllCodes());
  ASSERT_EQ(signs.size(), 256);
  EXPECT_EQ(RunOfVisible(signs), AllCodes());
  for (const QChar sign : signs) {
    if (sign == u' ') continue;
    EXPECT_TRUE(sign.isPrint() && !sign.isSpace() && sign.category() != QChar::Other_Format)
        << std::hex << static_cast<int>(sign.unicode());
  }
}

TEST(TextTest, SignsOfScriptAndTypefaceCodes) {
  EXPECT_EQ(VisibleText("x\xF0y\xF1z\xF2"), QStringLiteral("x↑y↖z↗"));
  EXPECT_EQ(VisibleText("\xF3\xF4\xF5 \xF6\xF7\xF8 \xF9\xFA\xFB"), QStringLiteral("↓↙↘ ⇑⇖⇗ ⇓⇙⇘"));
  EXPECT_EQ(VisibleText("\xE1\xE9\xEA\xEF"), QStringLiteral("①⑨ᴀꜰ"));
}

TEST(TextTest, LettersStandForThemselves) {
  EXPECT_EQ(VisibleText("\x01\x0F\x83\x9D\xDF"), QStringLiteral("àéıÿß"));
  EXPECT_EQ(CodeOfVisible(u'\u00E9'), 15);
  EXPECT_EQ(CodeOfVisible(u'\u00A0'), 160);
  EXPECT_FALSE(CodeOfVisible(u'\u03B1'));
  EXPECT_EQ(ListOf(QStringLiteral("é\u0007é\U0001D400")), "é U+0007 \U0001D400");
}

TEST(TextTest, PlainTextsAreFileNamesOrCodes) {
  EXPECT_EQ(PlainText("Cannot read /home/\xC3\x89tude.001"), QStringLiteral("Cannot read /home/Étude.001"));
  EXPECT_EQ(PlainText("\xC9tude \x80"), QStringLiteral("Étude €"));
}

}  // namespace
}  // namespace kelvane
