// Codes and the characters that stand for them.

#include <gtest/gtest.h>

#include <QSet>

#include "platform/qt/qt_fonts.h"
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

TEST(TextTest, TypedCharactersFollowTheCodePage) {
  EXPECT_EQ(CodeOfTyped(u'a'), 'a');
  EXPECT_EQ(CodeOfTyped(u'\u20AC'), 128);
  EXPECT_EQ(CodeOfTyped(u'\u0178'), 159);
  EXPECT_EQ(CodeOfTyped(u'\u00E9'), 233);
  for (const char16_t none : {u'\u0081', u'\u03B1', u'\u007F', u'\u0008', u'\u0100'}) {
    EXPECT_FALSE(CodeOfTyped(none)) << std::hex << static_cast<int>(none);
  }
  // In a run the code 233 is a switch of typeface, so the letter has none.
  EXPECT_FALSE(CodeOfVisible(u'\u00E9'));
  EXPECT_EQ(CodeOfVisible(u'\u00A0'), 160);
}

TEST(TextTest, PlainTextsAreFileNamesOrCodes) {
  EXPECT_EQ(PlainText("Cannot read /home/\xC3\x89tude.001"), QStringLiteral("Cannot read /home/Étude.001"));
  EXPECT_EQ(PlainText("\xC9tude \x80"), QStringLiteral("Étude €"));
}

TEST(FontTest, EveryCharacterOfEveryFaceHasAGlyph) {
  for (const char* family : {"Times New Roman", "Arial", "Courier New", "Script", "Symbol"}) {
    const bool symbol = std::string(family) == "Symbol";
    QtFace& face = FaceFor({family, false, false});
    for (unsigned code = 32; code < 224; ++code) {
      const auto byte = static_cast<unsigned char>(code);
      const char16_t character = symbol ? UnicodeOfSymbol(byte) : UnicodeOfText(byte);
      EXPECT_EQ(face.Glyph(byte) != 0, character != 0) << family << " " << code;
    }
  }
}

TEST(FontTest, SymbolCodesGiveTheCharactersOfTheirEncoding) {
  // Shapes that no mistaken table would give: a radical reaches high, an integral-like product is wide, a
  // minus is flat, epsilon is as low as a small letter.
  QtFace& symbol = FaceFor({"Symbol", false, false});
  const auto box = [&](unsigned char code) { return symbol.Outline(code).boundingRect(); };
  EXPECT_LT(box('-').height(), 100);
  EXPECT_GT(box(214).height(), 900);
  EXPECT_GT(box(213).width(), 700);
  EXPECT_LT(box('e').height(), 560);
  EXPECT_GT(box('f').height(), 800);
}

TEST(FontTest, SlantedSymbolLeansByTwelveDegrees) {
  const QRectF upright = FaceFor({"Symbol", false, false}).Outline('|').boundingRect();
  const QRectF slanted = FaceFor({"Symbol", false, true}).Outline('|').boundingRect();
  EXPECT_DOUBLE_EQ(slanted.height(), upright.height());
  EXPECT_NEAR(slanted.width() - upright.width(), 0.2125565617 * upright.height(), 0.5);
}

}  // namespace
}  // namespace kelvane
