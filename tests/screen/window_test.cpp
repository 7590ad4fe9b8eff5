// Windows and menus: who decides about check marks, closing, keys and places.

#include <QAction>
#include <QMenu>
#include <QScreen>
#include <QShortcut>

#include "platform/failure.h"
#include "tests/screen/screen_test.h"

namespace kelvane {
namespace {

class WindowTest : public ScreenTest {
 protected:
  static QAction* ActionOf(const QWidget& frame, const QString& text) {
    for (QAction* action : frame.findChildren<QAction*>()) {
      if (action->text() == text) return action;
    }
    ADD_FAILURE() << "no entry " << text.toStdString();
    return nullptr;
  }
};

TEST_F(WindowTest, ChoosingAnEntryDoesNotToggleItsMark) {
  MenuEntry* entry = window->AddMenu("&View")->AddEntry("&Grid", "");
  entry->SetChecked(true);
  bool checkedWhenChosen = false;
  entry->OnChosen = [&] { checkedWhenChosen = entry->Checked(); };
  QAction* action = ActionOf(window->Frame(), "&Grid");
  action->trigger();
  EXPECT_TRUE(checkedWhenChosen);
  EXPECT_TRUE(action->isChecked());
  entry->OnChosen = [&] { entry->SetChecked(false); };
  action->trigger();
  EXPECT_FALSE(action->isChecked());
}

TEST_F(WindowTest, LiteralCaptionShowsWhatARunHolds) {
  MenuEntry* entry = window->AddMenu("&Macros")->AddEntry("none", "");
  entry->SetLiteralCaption("a&b\xF0");
  EXPECT_EQ(entry->Caption(), "a&b\xF0");
  EXPECT_NE(ActionOf(window->Frame(), QStringLiteral("a&&b↑")), nullptr);
}

TEST_F(WindowTest, MenuIsRefreshedBeforeItOpens) {
  Menu* menu = window->AddMenu("&Edit");
  MenuEntry* entry = menu->AddEntry("&Undo", "");
  menu->OnOpen = [&] { entry->SetEnabled(false); };
  emit ActionOf(window->Frame(), "&Edit")->menu()->aboutToShow();
  EXPECT_FALSE(ActionOf(window->Frame(), "&Undo")->isEnabled());
}

TEST_F(WindowTest, OwnerMayRefuseTheClosing) {
  int asked = 0;
  window->OnCloseRequest = [&] { return ++asked > 1; };
  Show();
  window->Frame().close();
  EXPECT_TRUE(window->Visible());
  window->Frame().close();
  EXPECT_FALSE(window->Visible());
  EXPECT_EQ(asked, 2);
}

TEST_F(WindowTest, FailedClosingKeepsTheWindow) {
  window->OnCloseRequest = []() -> bool { throw Failure("The page cannot be written."); };
  Show();
  window->Frame().close();
  EXPECT_TRUE(window->Visible());
  EXPECT_EQ(dialogs.messages, std::vector<std::string>{"The page cannot be written."});
  window->Close();
  EXPECT_FALSE(window->Visible());
  EXPECT_EQ(dialogs.messages.size(), 1u);
}

TEST_F(WindowTest, FailureOfAnEntryIsShown) {
  MenuEntry* entry = window->AddMenu("&File")->AddEntry("&Open", "");
  entry->OnChosen = [] { throw Failure("Cannot read it."); };
  ActionOf(window->Frame(), "&Open")->trigger();
  EXPECT_EQ(dialogs.messages, std::vector<std::string>{"Cannot read it."});
}

TEST_F(WindowTest, KeysWorkWhereverTheFocusIs) {
  std::string keys;
  window->AddShortcut("PgUp", [&] { keys += "up "; });
  window->AddMenu("&View")->AddEntry("&Refresh", "F5")->OnChosen = [&] { keys += "refresh "; };
  Canvas* canvas = window->AddCanvas();
  auto* widget = static_cast<QtCanvas*>(canvas);
  window->SetCanvasPlace(canvas, {0, 30, 100, 100});
  TextBox* box = window->AddTextBox("Run", true);
  Show();
  canvas->Focus();
  QTest::keyClick(widget, Qt::Key_PageUp);
  QTest::keyClick(widget, Qt::Key_F5);
  box->Focus();
  QTest::keyClick(TheOnly<QLineEdit>(), Qt::Key_PageUp);
  QTest::keyClick(TheOnly<QLineEdit>(), Qt::Key_F5);
  EXPECT_EQ(keys, "up refresh up refresh ");
}

TEST_F(WindowTest, PlaceIsKeptAndBroughtOntoAScreen) {
  window->SetWindowPlace({300, 450, 4500, 3000});
  WindowPlace place = window->GetWindowPlace();
  EXPECT_EQ(place.left, 300);
  EXPECT_EQ(place.top, 450);
  EXPECT_EQ(place.width, 4500);
  EXPECT_EQ(place.height, 3000);

  const QRect screen = window->Frame().screen()->availableGeometry();
  for (const auto& [left, top] : {std::pair(-900000.0F, 0.0F), std::pair(900000.0F, 900000.0F),
                                  std::pair(0.0F, -900000.0F), std::pair(1e30F, -1e30F)}) {
    window->SetWindowPlace({left, top, 4500, 3000});
    EXPECT_TRUE(screen.contains(QRect(window->Frame().pos(), window->Frame().size())));
  }
}

TEST_F(WindowTest, MaximisedWindowRemembersItsPlace) {
  window->SetWindowPlace({300, 450, 4500, 3000});
  Show();
  window->Frame().showMaximized();
  QTest::qWait(0);
  ASSERT_GT(window->Frame().width(), 300);
  const WindowPlace place = window->GetWindowPlace();
  EXPECT_EQ(place.width, 4500);
  EXPECT_EQ(place.height, 3000);
}

TEST_F(WindowTest, InnerSizeLeavesOutMenuBarStatusLineAndScrollBars) {
  window->AddMenu("&File");
  window->AddStatusText(100);
  window->SetWindowPlace({0, 0, 6000, 4500});
  EXPECT_EQ(window->InnerWidth(), 6000);
  EXPECT_LT(window->InnerHeight(), 4500 - 30 * kTwipsPerPixel);
  window->AddScrollBar(false);
  EXPECT_EQ(window->InnerWidth(), 6000 - kScrollBarPixels * kTwipsPerPixel);
  const float before = window->InnerHeight();
  int resized = 0;
  window->OnResize = [&] { ++resized; };
  Show();
  EXPECT_EQ(window->InnerHeight(), before);
  resized = 0;
  window->SetWindowPlace({0, 0, 6600, 4500});
  EXPECT_GE(resized, 1);
}

}  // namespace
}  // namespace kelvane
