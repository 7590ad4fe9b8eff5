// The desktop's clipboard: what other programs see of runs and lines, and what comes back from them.

#include "platform/qt/qt_clipboard.h"

#include <gtest/gtest.h>
#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>

namespace kelvane {
namespace {

TEST(ClipboardTest, LinesComeBackFromATextEditor) {
  QtClipboard clipboard;
  std::string lines;
  for (int code = 1; code < 256; ++code)
    if (code != '\r' && code != '\n') lines += static_cast<char>(code);
  lines = "1 2 m 11 F0 (" + lines + ") 3 s\r\n72 140 m 0.5 lw 120 0 rl stroke\r\n";
  clipboard.Put(lines, lines);
  EXPECT_EQ(clipboard.Items(), lines);
  const QString shown = QGuiApplication::clipboard()->text();
  EXPECT_EQ(shown.count(u'\n'), 2);
  EXPECT_TRUE(shown.endsWith(QStringLiteral("\n72 140 m 0.5 lw 120 0 rl stroke\n")));
  for (const char* lineEnd : {"\n", "\r\n"}) {
    QGuiApplication::clipboard()->setText(QString(shown).replace(u'\n', QString(lineEnd)));
    EXPECT_EQ(clipboard.Items(), "");
    std::string untypable;
    std::string codes = clipboard.CodesOf(clipboard.Text(), untypable);
    EXPECT_EQ(untypable, "");
    for (std::size_t at = 0; (at = codes.find('\n', at)) != std::string::npos; at += 2)
      codes.insert(at, 1, '\r');
    EXPECT_EQ(codes, lines);
  }
}

TEST(ClipboardTest, TellsWhatHasNoCode) {
  QtClipboard clipboard;
  QGuiApplication::clipboard()->setText(QStringLiteral("a\tb\u2029\u4E2Dc\U0001D465\u4E2D\u2550\u2026"));
  std::string untypable;
  EXPECT_EQ(clipboard.CodesOf(clipboard.Text(), untypable), "a b\nc\x85");
  EXPECT_EQ(untypable, "\u4E2D \U0001D465 \u2550");
  QGuiApplication::clipboard()->clear();
  EXPECT_EQ(clipboard.Text() + clipboard.Items(), "");
}

}  // namespace
}  // namespace kelvane
