// What makes the start quick must show the same: outlines that come from the file itself, and a picture that
// is loaded when it is needed.

#include <gtest/gtest.h>

#include <QApplication>
#include <QRawFont>
#include <QStyle>
#include <QStyleFactory>

#include "platform/qt/font_file.h"
#include "platform/qt/qt_start.h"

namespace kelvane {
namespace {

TEST(StartTest, OutlinesOfAFileAreThoseOfTheFontSystem) {
  for (const char* name : {"NimbusRoman-Italic.otf", "StandardSymbolsPS.otf"}) {
    const QString path = QStringLiteral("/usr/share/fonts/opentype/urw-base35/") + QLatin1String(name);
    const FontFile file(path);
    const QRawFont font(path, 1000, QFont::PreferNoHinting);
    ASSERT_TRUE(file.IsValid());
    EXPECT_EQ(file.FamilyName(), font.familyName());
    EXPECT_EQ(file.StyleName(), font.styleName());
    for (const char16_t character : u"g8%\u03B1\u222B\uFFFE") {
      const QList<quint32> glyphs = font.glyphIndexesForString(QString(QChar(character)));
      EXPECT_EQ(file.GlyphOf(character), glyphs.value(0)) << std::hex << int{character};
      EXPECT_EQ(file.OutlineOf(file.GlyphOf(character), 1000), font.pathForGlyph(glyphs.value(0)))
          << std::hex << int{character};
    }
  }
  EXPECT_FALSE(FontFile(QStringLiteral("/dev/null")).IsValid());
  EXPECT_FALSE(FontFile(QStringLiteral("/no/such.otf")).IsValid());
}

TEST(StartTest, TheMenuBarStillHasThePictureOfTheDesktop) {
  constexpr auto kPicture = QStyle::SP_ToolBarHorizontalExtensionButton;
  const QString usual = QApplication::style()->name();
  const QImage shown = QApplication::style()->standardIcon(kPicture).pixmap(16).toImage();
  UseStyleWithoutPictures();
  EXPECT_FALSE(shown.isNull());
  EXPECT_EQ(QApplication::style()->standardIcon(kPicture).pixmap(16).toImage(), shown);
  QApplication::setStyle(QStyleFactory::create(usual));
}

}  // namespace
}  // namespace kelvane
