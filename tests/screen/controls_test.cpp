// Text boxes, buttons and scroll bars under the person's hands.

#include <QApplication>
#include <QClipboard>
#include <QStatusBar>
#include <QToolTip>

#include "tests/screen/screen_test.h"

namespace kelvane {
namespace {

class BoxTest : public ScreenTest {
 protected:
  void SetUp() override {
    ScreenTest::SetUp();
    box = window->AddTextBox("Run", true);
    box->SetPlace({0, 0, 300, 24});
    box->OnChange = [this] { changes += box->Text() + ";"; };
    edit = TheOnly<QLineEdit>();
    Show();
    box->Focus();
  }
  void ExpectPasted(const QString& text, const std::string& expected) {
    QApplication::clipboard()->setText(text);
    edit->paste();
    EXPECT_EQ(box->Text(), expected);
  }

  TextBox* box = nullptr;
  QLineEdit* edit = nullptr;
  std::string changes;
};

TEST_F(BoxTest, HoldsEveryCodeOfARun) {
  std::string run;
  for (int code = 1; code < 256; ++code) {
    if (code != '\r' && code != '\n') run += static_cast<char>(code);
  }
  box->SetText(run);
  EXPECT_EQ(box->Text(), run);
  QTest::keyClick(edit, Qt::Key_End);
  QTest::keyClicks(edit, "x");
  EXPECT_EQ(changes, run + "x;");
}

TEST_F(BoxTest, EnteredByTabGoesOnBehindTheRun) {
  const auto enterAndType = [&](const char* keys) {
    edit->setFocus(Qt::TabFocusReason);
    QTest::keyClicks(edit, keys);
    edit->clearFocus();
  };
  box->SetText("typed so far");
  edit->clearFocus();
  enterAndType("!");
  EXPECT_EQ(box->Text(), "typed so far!");
  box->SelectAll();
  enterAndType("new");
  EXPECT_EQ(box->Text(), "new") << "selected by the owner";
}

TEST_F(BoxTest, AsksItsOwnerForWhatHasNoCode) {
  std::string asked;
  box->SignsFor = [&](const std::string& before, const std::string& utf8) {
    asked += before + "|" + utf8 + ";";
    return std::string(utf8 == "π" ? "\xE8p\xE0" : "");
  };
  box->SetText("ab\xF0");
  edit->setCursorPosition(1);
  ExpectPasted(QStringLiteral("cé±πñ中d"),
               "ac\x0F\xB1\xE8p\xE0\x16"
               "db\xF0");
  QTest::keyClicks(edit, "e");
  EXPECT_EQ(box->Text(),
            "ac\x0F\xB1\xE8p\xE0\x16"
            "deb\xF0");
  EXPECT_EQ(asked, "ac\x0F\xB1|π;ac\x0F\xB1\xE8p\xE0\x16|中;");
}

TEST_F(BoxTest, RefusesAnEditOfCharactersWithoutCodeAlone) {
  box->SetText("ab\xF0");
  QTest::keyClick(edit, Qt::Key_End);
  QTest::sendKeyEvent(QTest::Click, edit, Qt::Key_unknown, QStringLiteral("\u4E2D"), Qt::NoModifier);
  edit->selectAll();
  ExpectPasted(QStringLiteral("\u4E2D"), "ab\xF0");
  EXPECT_EQ(changes, "");
  EXPECT_EQ(QToolTip::text(), QStringLiteral("There is no code for \u4E2D."));
  edit->setCursorPosition(3);
  ExpectPasted(QStringLiteral("\u2026"), "ab\xF0\x85");
  edit->undo();
  EXPECT_EQ(box->Text(), "ab\xF0");
  ExpectPasted(QStringLiteral("\u00A0"), "ab\xF0\xA0");
}

TEST_F(BoxTest, LineEndsBecomeBlanks) {
  ExpectPasted(QStringLiteral("a\nb\rc"), "a b c");
  box->SetText(std::string("a\0b\r\nc", 6));
  EXPECT_EQ(box->Text(), "a b  c");
}

TEST_F(BoxTest, EnterAndEscapeReachTheOwner) {
  std::string keys;
  box->OnEnter = [&] { keys += "enter "; };
  box->OnEscape = [&] { keys += "escape "; };
  window->OnEscape = [&] { keys += "window "; };
  QTest::keyClick(edit, Qt::Key_Return);
  QTest::keyClick(edit, Qt::Key_Enter, Qt::ControlModifier);
  QTest::keyClick(edit, Qt::Key_Escape);
  EXPECT_EQ(keys, "enter enter escape ");
  EXPECT_EQ(changes, "");
}

class ControlsTest : public ScreenTest {};

TEST_F(ControlsTest, ButtonStaysAsItsOwnerSetIt) {
  const IconDrawing icon{{IconShape::Kind::Disc, 12, 12, 6, 0, true, false, ""}};
  Button* button = window->AddButton("Top Left", icon, "Top Left");
  auto* widget = TheOnly<QPushButton>();
  int clicks = 0;
  button->OnClick = [&] { ++clicks; };
  for (const bool down : {true, false}) {
    button->SetDown(down);
    widget->click();
    EXPECT_EQ(widget->isChecked(), down);
  }
  EXPECT_EQ(clicks, 2);
  EXPECT_EQ(widget->accessibleName(), "Top Left");
  button->SetVisible(false);
  button->SetPlace({0, 0, 60, 24});
  EXPECT_TRUE(widget->isHidden()) << "laying out showed what its owner hides";
}

TEST_F(ControlsTest, TheClickThatEntersASmallBoxSelectsItsText) {
  TextBox* box = window->AddTextBox("Font Size", false);
  box->SetPlace({0, 0, 100, 24});
  box->SetText("11");
  auto* edit = TheOnly<QLineEdit>();
  Canvas* canvas = window->AddCanvas();
  window->SetCanvasPlace(canvas, {0, 30, 100, 100});
  Show();
  canvas->Focus();
  QTest::mouseClick(edit, Qt::LeftButton);
  QTest::keyClicks(edit, "14");
  EXPECT_EQ(box->Text(), "14");
  QTest::mouseClick(edit, Qt::LeftButton, {}, QPoint(90, 12));
  QTest::keyClicks(edit, ".5");
  EXPECT_EQ(box->Text(), "14.5");
}

TEST_F(ControlsTest, ButtonsLeaveTheFocusAndEscapeToOthers) {
  Canvas* canvas = window->AddCanvas();
  window->SetCanvasPlace(canvas, {0, 30, 100, 100});
  window->AddButton("OK", {}, "OK")->SetPlace({0, 0, 60, 24});
  auto* button = TheOnly<QPushButton>();
  int escapes = 0;
  window->OnEscape = [&] { ++escapes; };
  Show();
  canvas->Focus();
  QTest::mouseClick(button, Qt::LeftButton);
  EXPECT_TRUE(static_cast<QtCanvas*>(canvas)->hasFocus());
  button->setFocus();
  QTest::keyClick(button, Qt::Key_Escape);
  EXPECT_EQ(escapes, 1);
}

TEST_F(ControlsTest, ScrollBarSpeaksInItsOwnersUnits) {
  ScrollBar* bar = window->AddScrollBar(false);
  std::vector<float> scrolled;
  bar->OnScroll = [&](float value) { scrolled.push_back(value); };
  bar->SetRange(-10, 90, 25, 40);
  EXPECT_TRUE(scrolled.empty());
  for (const auto& [action, value] : {std::pair(QScrollBar::SliderToMaximum, 65.0F),
                                      {QScrollBar::SliderPageStepSub, 40.0F},
                                      {QScrollBar::SliderToMinimum, -10.0F}}) {
    TheOnly<QScrollBar>()->triggerAction(action);
    ASSERT_FALSE(scrolled.empty());
    EXPECT_NEAR(scrolled.back(), value, 0.01);
  }
}

TEST_F(ControlsTest, WordsFitTheirPlaces) {
  const std::string words = "ZapfChancery-MediumItalic 10.50pts";
  Label* label = window->AddLabel(words);
  auto* shown = TheOnly<QLabel>();
  const int usual = shown->font().pointSize();
  for (const int width : {1000, 200, 60}) {
    label->SetPlace({0, 0, width, 24});
    EXPECT_LE(QFontMetrics(shown->font()).horizontalAdvance(shown->text()), shown->width()) << width;
    EXPECT_EQ(label->Text(), words);
    EXPECT_TRUE(shown->text().endsWith(u's')) << "the size counts most";
  }
  EXPECT_EQ(shown->toolTip().toStdString(), words);
  label->SetText("short");
  EXPECT_EQ(shown->text(), QStringLiteral("short"));
  EXPECT_EQ(shown->toolTip(), QString());
  EXPECT_EQ(shown->font().pointSize(), usual);

  window->AddButton("Pg Up", {}, "Previous Page")->SetPlace({0, 30, 30, 24});
  auto* button = TheOnly<QPushButton>();
  EXPECT_LT(QFontInfo(button->font()).pixelSize(), QFontInfo(window->Frame().font()).pixelSize());
}

TEST_F(ControlsTest, TheNoteAtTheFootTakesTheFreeRoomAndKeepsItsEnd) {
  window->SetWindowPlace({0, 0, 800 * kTwipsPerPixel, 300 * kTwipsPerPixel});
  Label* hint = window->AddStatusText(320);
  Label* note = window->AddStatusText(280);
  hint->SetText("Click a place");
  Show();
  const QList<QLabel*> shown = window->Frame().statusBar()->findChildren<QLabel*>();
  ASSERT_EQ(shown.size(), 2);
  note->SetText("Saved: /home/ada/a folder with a longer name/Essay.001");
  QTest::qWait(20);
  EXPECT_EQ(shown[1]->text().toStdString(), note->Text());
  note->SetText("Saved: /" + std::string(300, 'x') + "/Essay.001");
  QTest::qWait(20);
  EXPECT_GT(shown[1]->width(), 500);
  EXPECT_TRUE(shown[1]->text().startsWith("Saved") && shown[1]->text().endsWith("/Essay.001"));
  EXPECT_EQ(shown[1]->toolTip().toStdString(), note->Text());
  EXPECT_EQ(shown[0]->text(), QStringLiteral("Click a place"));
}

TEST_F(ControlsTest, LargeFontsAreNotCut) {
  QFont large = window->Frame().font();
  large.setPixelSize(26);
  window->Frame().setFont(large);
  window->AddButton("Pg Up", {}, "Previous Page")->SetPlace({0, 0, 40, 24});
  window->AddLabel("Font Size")->SetPlace({60, 0, 56, 24});
  window->AddTextBox("Run", true)->SetPlace({0, 30, 200, 22});
  EXPECT_EQ(TheOnly<QLabel>()->text(), QStringLiteral("Font Size"));
  EXPECT_LT(TheOnly<QPushButton>()->fontMetrics().horizontalAdvance(QStringLiteral("Pg Up")), 40);
  EXPECT_LE(TheOnly<QLineEdit>()->fontMetrics().height(), 22);
}

}  // namespace
}  // namespace kelvane
