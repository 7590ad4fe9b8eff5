// Laid out text, lists and longer texts under the person's hands, and painting onto images.

#include "platform/text_view.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QSettings>
#include <QTemporaryDir>
#include <QTextBlock>
#include <QTextBrowser>
#include <QTreeWidget>
#include <QWheelEvent>

#include "platform/files.h"
#include "platform/qt/qt_image_painter.h"
#include "tests/screen/screen_test.h"

namespace kelvane {
namespace {

using Kind = TextBlock::Kind;

class TextViewTest : public ScreenTest {
 protected:
  void SetUp() override {
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, settings.path());
    QCoreApplication::setOrganizationName(QStringLiteral("KelvaneTest"));
    ScreenTest::SetUp();
    view = window->AddTextView("Page");
    view->SetPlace({0, 0, 400, 200});
    browser = TheOnly<QTextBrowser>();
    ScreenTest::Show();
  }
  static TextBlock Block(Kind kind, const std::string& text, int level = 0) {
    return {kind, level, {{{.text = text}}}};
  }
  // A heading, forty paragraphs and a table.
  void ShowLongPage() {
    std::vector<TextBlock> blocks = {Block(Kind::Heading, "Title", 1)};
    for (int i = 0; i < 40; ++i)
      blocks.push_back(Block(Kind::Paragraph, "Paragraph " + std::to_string(i) + " end"));
    blocks.push_back({Kind::Table, 0, {{{.text = "one  1"}}, {{.text = "two  2"}}}});
    view->Show(blocks);
  }

  QTemporaryDir settings;
  TextView* view = nullptr;
  QTextBrowser* browser = nullptr;
};

TEST_F(TextViewTest, LaysOutEachKindAndFollowsTheWidth) {
  std::string words;
  for (int i = 0; i < 60; ++i) words += "word ";
  view->Show({Block(Kind::Heading, "Title", 1), Block(Kind::Heading, "Small", 4),
              Block(Kind::Paragraph, words), Block(Kind::Table, std::string(200, 'x')),
              Block(Kind::Note, "caf\xE9 <b>&amp;")});
  const auto block = [&](int i) { return browser->document()->findBlockByNumber(i); };
  const auto points = [&](int i) { return QTextCursor(block(i)).blockCharFormat().font().pointSizeF(); };
  EXPECT_GT(points(0), points(1));
  EXPECT_GT(block(2).layout()->lineCount(), 2);
  EXPECT_EQ(block(3).layout()->lineCount(), 1) << "tables are not broken";
  EXPECT_GT(browser->horizontalScrollBar()->maximum(), 0);
  EXPECT_EQ(block(4).text(), QStringLiteral("café <b>&amp;")) << "text is no markup";
  EXPECT_TRUE(QFontInfo(QTextCursor(block(3)).blockCharFormat().font()).fixedPitch());
  const int lines = block(2).layout()->lineCount();
  view->SetPlace({0, 0, 800, 200});
  EXPECT_LT(block(2).layout()->lineCount(), lines);
}

TEST_F(TextViewTest, PicturesAreNeverWiderThanTheView) {
  const QString file = settings.filePath(QStringLiteral("wide.png"));
  ASSERT_TRUE(QImage(1000, 100, QImage::Format_RGB32).save(file));
  view->Show({Block(Kind::Picture, BackslashPath(file.toStdString())), Block(Kind::Picture, "\\gone.png")});
  const auto width = [&] {
    QTextCursor cursor(browser->document());
    cursor.movePosition(QTextCursor::NextCharacter);
    const QTextImageFormat format = cursor.charFormat().toImageFormat();
    return format.width() > 0 ? format.width() : 1000;
  };
  EXPECT_LT(width(), 400);
  EXPECT_EQ(browser->horizontalScrollBar()->maximum(), 0);
  EXPECT_NEAR(browser->document()->firstBlock().layout()->boundingRect().height(), width() / 10, 8);
  EXPECT_NE(browser->toPlainText().indexOf(QStringLiteral("/gone.png cannot be shown")), -1);
  view->SetPlace({0, 0, 700, 200});
  EXPECT_GT(width(), 600);
  view->SetPlace({0, 0, 1300, 200});
  EXPECT_EQ(width(), 1000);
}

TEST_F(TextViewTest, KeepsItsPlaceWhenLettersGrow) {
  ShowLongPage();
  view->GoTo({30, 0});
  EXPECT_EQ(view->Top(), (TextPlace{30, 0}));
  view->ChangeTextSize(3);
  EXPECT_EQ(view->Top(), (TextPlace{30, 0}));
  QWheelEvent wheel(QPointF(5, 5), browser->mapToGlobal(QPointF(5, 5)), {}, QPoint(0, 120), Qt::NoButton,
                    Qt::ControlModifier, Qt::NoScrollPhase, false);
  const double before = QTextCursor(browser->document()).blockCharFormat().font().pointSizeF();
  QCoreApplication::sendEvent(browser->viewport(), &wheel);
  EXPECT_GT(QTextCursor(browser->document()).blockCharFormat().font().pointSizeF(), before);
  view->ChangeTextSize(0);
  view->GoTo({41, 1});
  view->GoTo({99, 0});
  EXPECT_GT(browser->verticalScrollBar()->value(), 0);
}

TEST_F(TextViewTest, FindsGoingRoundAndMarksEveryPlace) {
  ShowLongPage();
  EXPECT_TRUE(view->Find("PARAGRAPH 7", false));
  EXPECT_EQ(browser->textCursor().selectedText(), "Paragraph 7");
  EXPECT_TRUE(view->Find("title", false)) << "round the end";
  EXPECT_TRUE(view->Find("two", true)) << "and back over the start";
  EXPECT_FALSE(view->Find("nowhere", false));
  EXPECT_EQ(browser->textCursor().selectedText(), "two");
  view->Mark({"END", "TITLE"});
  EXPECT_EQ(browser->extraSelections().size(), 41);
  view->ChangeTextSize(1);
  EXPECT_EQ(browser->extraSelections().size(), 41) << "laid out anew";
  view->CopyAll();
  EXPECT_TRUE(QGuiApplication::clipboard()->text().startsWith("Title\nParagraph 0 end"));
}

TEST_F(TextViewTest, LinksAndSignsGoToTheOwner) {
  std::string followed;
  std::string painted;
  view->OnLink = [&](const std::string& link) { followed = link; };
  view->OnPaintPicture = [&](const std::string& picture, float em, float, Painter& painter) {
    painted += picture + ";";
    painter.FillBox({0, -em / 2, em / 2, 0}, 0);
  };
  view->Show({{Kind::Table, 0, {{{.picture = "sign 1", .columns = 4}, {.text = "key"}}}},
              {Kind::Paragraph, 0, {{{.text = "go", .link = "help:2.0"}}}}});
  EXPECT_EQ(painted, "sign 1;");
  const QImage shown = browser->grab().toImage();
  const QRect link = browser->cursorRect(QTextCursor(browser->document()->lastBlock()));
  QTest::mouseClick(browser->viewport(), Qt::LeftButton, {}, link.center() + QPoint(6, 0));
  EXPECT_EQ(followed, "help:2.0");
  // On dark ground the sign is light: it has the colour of the text.
  QPalette dark;
  dark.setColor(QPalette::Base, Qt::black);
  dark.setColor(QPalette::Text, Qt::yellow);
  browser->setPalette(dark);
  const QVariant sign =
      browser->document()->resource(QTextDocument::ImageResource, QUrl(QStringLiteral("sign:sign 1")));
  const QImage image = sign.value<QImage>();
  bool yellow = false;
  for (int y = 0; y < image.height(); ++y)
    for (int x = 0; x < image.width(); ++x) yellow |= image.pixelColor(x, y) == QColor(Qt::yellow);
  EXPECT_TRUE(yellow);
}

TEST_F(TextViewTest, PlaceAndTextSizeAreKept) {
  view->KeepTextSizeAs("test/size");
  view->ChangeTextSize(4);
  const double points = QTextCursor(browser->document()).blockCharFormat().font().pointSizeF();
  auto* again = static_cast<QtWindow*>(toolkit.NewSeparateWindow());
  again->KeepPlaceAs("test/place", {150, 150, 3000, 3000});
  again->AddTextView("Page")->KeepTextSizeAs("test/size");
  EXPECT_EQ(QTextCursor(again->Frame().findChild<QTextBrowser*>()->document())
                .blockCharFormat()
                .font()
                .pointSizeF(),
            points);
  again->Show();
  again->SetWindowPlace({300, 450, 3600, 3300});
  again->Hide();
  auto* third = static_cast<QtWindow*>(toolkit.NewSeparateWindow());
  third->KeepPlaceAs("test/place", {150, 150, 3000, 3000});
  EXPECT_EQ(third->GetWindowPlace().left, 300);
  EXPECT_EQ(third->GetWindowPlace().width, 3600);
}

TEST_F(TextViewTest, ListNestsByLevelAndTellsOnlyOfThePerson) {
  List* list = window->AddList("Contents");
  list->SetPlace({0, 0, 200, 150});
  std::string chosen;
  list->OnChosen = [&](int row) { chosen += std::to_string(row) + " "; };
  list->SetRows({{"A", 1}, {"A.1", 3}, {"A.2", 3}, {"B", 1, true}, {"B.1", 2}});
  auto* tree = TheOnly<QTreeWidget>();
  ASSERT_EQ(tree->topLevelItemCount(), 2);
  EXPECT_EQ(tree->topLevelItem(0)->childCount(), 2);
  EXPECT_FALSE(tree->topLevelItem(0)->isExpanded());
  EXPECT_TRUE(tree->topLevelItem(1)->isExpanded());
  list->Choose(2);
  EXPECT_TRUE(tree->topLevelItem(0)->isExpanded()) << "the row is brought into view";
  EXPECT_EQ(chosen, "");
  list->Focus();
  QTest::keyClick(tree, Qt::Key_Down);
  EXPECT_EQ(chosen, "3 ");
  list->Choose(-1);
  list->SetRows({});
}

TEST_F(TextViewTest, PlainBoxesAndAreasHoldEveryLanguage) {
  TextBox* box = window->AddPlainTextBox("Subject");
  TextArea* area = window->AddTextArea("Comment");
  int changes = 0;
  box->OnChange = area->OnChange = [&] { ++changes; };
  const std::string words = "\xC3\xA9 \xE2\x88\x91 \xD0\x96";
  box->SetText(words);
  area->SetText(words + "\nline");
  EXPECT_EQ(box->Text(), words);
  EXPECT_EQ(area->Text(), words + "\nline");
  EXPECT_EQ(changes, 0);
  QTest::keyClicks(window->Frame().findChild<QPlainTextEdit*>(), "x");
  QTest::keyClicks(window->Frame().findChild<QLineEdit*>(), "y");
  EXPECT_EQ(changes, 2);
}

TEST(ImagePainter, PaintsItsRectangleAtItsRatio) {
  QtImagePainter painter(QSize(40, 20), {10, 10, 30, 20}, 2, Qt::white);
  painter.FillBox({20, 10, 30, 15}, 0x0000FF);
  painter.DrawLine({10, 17.5F}, {30, 17.5F}, {.colour = 0, .width = 1, .crisp = false});
  const QImage& image = painter.Image();
  EXPECT_EQ(image.pixelColor(25, 5), QColor(Qt::red));
  EXPECT_EQ(image.pixelColor(15, 5), QColor(Qt::white));
  EXPECT_EQ(image.pixelColor(5, 15), QColor(Qt::black));
  EXPECT_EQ(image.pixelColor(5, 12), QColor(Qt::white)) << "a pixel of the screen wide, two of the device";
  QtImagePainter clear(QSize(4, 4), {0, 0, 4, 4}, 1, Qt::transparent);
  clear.FillBox({0, 0, 2, 4}, 0);
  EXPECT_EQ(clear.Image().pixelColor(3, 1).alpha(), 0);
  EXPECT_EQ(clear.Image().pixelColor(1, 1).alpha(), 255);
}

}  // namespace
}  // namespace kelvane
