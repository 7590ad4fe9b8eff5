// Windows and menus: who decides about check marks, closing, keys and places.

#include <QAction>
#include <QApplication>
#include <QDialog>
#include <QMenu>
#include <QScreen>
#include <QShortcut>

#include "platform/failure.h"
#include "tests/screen/screen_test.h"

namespace kelvane {
namespace {

class WindowTest : public ScreenTest {
 protected:
  QAction* ActionOf(const QString& text) const {
    for (QAction* action : window->Frame().findChildren<QAction*>()) {
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
  QAction* action = ActionOf("&Grid");
  action->trigger();
  EXPECT_TRUE(checkedWhenChosen);
  EXPECT_TRUE(action->isChecked());
  entry->OnChosen = [&] { entry->SetChecked(false); };
  action->trigger();
  EXPECT_FALSE(action->isChecked());
}

TEST_F(WindowTest, TheMarkOfChangesLeavesTheTitleAsItIs) {
  for (const bool changed : {false, true, true, false}) {
    window->SetChanged(changed);
    window->SetTitle("A[*].001");
    EXPECT_EQ(window->Frame().isWindowModified(), changed);
    EXPECT_EQ(window->Frame().windowTitle(),
              changed ? QStringLiteral("A[*][*].001[*]") : QStringLiteral("A[*][*].001"));
  }
}

TEST_F(WindowTest, LiteralCaptionShowsWhatARunHolds) {
  MenuEntry* entry = window->AddMenu("&Macros")->AddEntry("none", "");
  entry->SetLiteralCaption("a&b\xF0");
  EXPECT_EQ(entry->Caption(), "a&b\xF0");
  EXPECT_NE(ActionOf(QStringLiteral("a&&b↑")), nullptr);
}

TEST_F(WindowTest, MenuIsRefreshedBeforeItOpens) {
  Menu* menu = window->AddMenu("&Edit");
  MenuEntry* entry = menu->AddEntry("&Undo", "");
  menu->OnOpen = [&] { entry->SetEnabled(false); };
  emit ActionOf("&Edit")->menu()->aboutToShow();
  EXPECT_FALSE(ActionOf("&Undo")->isEnabled());
}

// Refused twice, once by a failure, which is shown as that of a menu entry is.
TEST_F(WindowTest, OwnerMayRefuseTheClosing) {
  int asked = 0;
  window->OnCloseRequest = [&] {
    if (++asked == 1) throw Failure("The page cannot be written.");
    return asked > 2;
  };
  window->AddMenu("&File")->AddEntry("&Open", "")->OnChosen = [] { throw Failure("Cannot read it."); };
  Show();
  for (const bool visible : {true, true, false}) {
    window->Frame().close();
    EXPECT_EQ(window->Visible(), visible) << asked;
  }
  ActionOf("&Open")->trigger();
  EXPECT_EQ(dialogs.messages, (std::vector<std::string>{"The page cannot be written.", "Cannot read it."}));
}

TEST_F(WindowTest, KeysWorkWhereverTheFocusIs) {
  std::string keys;
  window->AddShortcut("PgUp", [&] { keys += "up "; });
  window->AddMenu("&View")->AddEntry("&Refresh", "F5")->OnChosen = [&] { keys += "refresh "; };
  Canvas* canvas = window->AddCanvas();
  window->SetCanvasPlace(canvas, {0, 30, 100, 100});
  TextBox* box = window->AddTextBox("Run", true);
  Show();
  const auto press = [&](QWidget* focused) {
    for (const Qt::Key key : {Qt::Key_PageUp, Qt::Key_F5}) QTest::keyClick(focused, key);
  };
  canvas->Focus();
  press(static_cast<QtCanvas*>(canvas));
  box->Focus();
  press(TheOnly<QLineEdit>());
  EXPECT_EQ(keys, "up refresh up refresh ");
}

TEST_F(WindowTest, EntriesMadeBehindTheFirstPictureHearTheFirstKey) {
  std::string done;
  Menu* menu = window->AddMenu("&View");
  const auto addEntry = [&](const std::string& key) {
    done += "made " + key + " ";
    menu->AddEntry("&Entry", key)->OnChosen = [&done, key] { done += key + " "; };
  };
  window->WhenShown([&] { addEntry("F5"); });
  EXPECT_EQ(done, "");
  Show();
  EXPECT_TRUE(QTest::qWaitFor([&] { return done == "made F5 "; })) << done;
  window->WhenShown([&] { addEntry("F6"); });
  for (const Qt::Key key : {Qt::Key_F6, Qt::Key_F5}) QTest::keyClick(&window->Frame(), key);
  EXPECT_EQ(done, "made F5 made F6 F6 F5 ");
}

// The same key stands in the menu bar and in a popup, where it only shows.
TEST_F(WindowTest, APopupOpensAtItsPixelAndLeavesTheKeysToTheMenuBar) {
  int deleted = 0;
  window->AddMenu("&Edit")->AddEntry("&Delete", "Del")->OnChosen = [&] { ++deleted; };
  Menu* popup = window->AddPopup();
  popup->AddEntry("&Delete", "Del")->OnChosen = [&] { deleted += 10; };
  int opened = 0;
  popup->OnOpen = [&] { ++opened; };
  Canvas* canvas = window->AddCanvas();
  window->SetCanvasPlace(canvas, {20, 30, 100, 100});
  Show();
  auto* page = static_cast<QtCanvas*>(canvas);
  QTest::keyClick(page, Qt::Key_Delete);
  EXPECT_EQ(deleted, 1);
  window->ShowPopup(popup, canvas, 40, 50);
  QWidget* menu = QApplication::activePopupWidget();
  ASSERT_NE(menu, nullptr);
  EXPECT_EQ(menu->pos(), page->mapToGlobal(QPoint(40, 50)));
  EXPECT_EQ(opened, 1);
  QTest::keyClick(menu, Qt::Key_D);
  EXPECT_EQ(deleted, 11);
}

TEST_F(WindowTest, PlaceIsKeptAndBroughtOntoAScreen) {
  window->SetWindowPlace({300, 450, 4500, 3000});
  const WindowPlace place = window->GetWindowPlace();
  EXPECT_EQ(place.left, 300);
  EXPECT_EQ(place.top, 450);
  Show();
  window->Frame().showMaximized();
  QTest::qWait(0);
  ASSERT_GT(window->Frame().width(), 300);
  EXPECT_EQ(window->GetWindowPlace().width, 4500);
  EXPECT_EQ(window->GetWindowPlace().height, 3000);
  window->Frame().showNormal();

  const QRect screen = window->Frame().screen()->availableGeometry();
  for (const auto& [left, top] : {std::pair(-9e5F, 0.0F), {9e5F, 9e5F}, {0.0F, -9e5F}, {1e30F, -1e30F}}) {
    window->SetWindowPlace({left, top, 4500, 3000});
    EXPECT_TRUE(screen.contains(QRect(window->Frame().pos(), window->Frame().size()))) << left << ' ' << top;
  }
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

TEST_F(WindowTest, WindowsThatGoGiveTheKeysToTheDialogThatWaits) {
  Show();
  auto* beside = static_cast<QtWindow*>(toolkit.NewSeparateWindow());
  QDialog dialog(&window->Frame());
  for (const bool waits : {true, false}) {
    if (waits) dialog.open();
    beside->Show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&beside->Frame()));
    beside->Hide();
    QWidget* next = waits ? static_cast<QWidget*>(&dialog) : &window->Frame();
    EXPECT_TRUE(QTest::qWaitForWindowActive(next));
    dialog.close();
  }
}

}  // namespace
}  // namespace kelvane
