#pragma once

// A toolkit of Qt's with dialogs from a script, for tests of what is on the screen.

#include <gtest/gtest.h>

#include <QTest>

#include "platform/qt/qt_toolkit.h"
#include "tests/support/scripted_dialogs.h"

namespace kelvane {

class ScreenTest : public ::testing::Test {
 protected:
  void SetUp() override {
    TheToolkit = &toolkit;
    TheDialogs = &dialogs;
    window = static_cast<QtWindow*>(toolkit.NewWindow(true));
  }
  void TearDown() override {
    EXPECT_TRUE(dialogs.AllAnswered());
    TheDialogs = nullptr;
    TheToolkit = nullptr;
  }

  // The one widget of a kind in the window.
  template <class Widget>
  Widget* TheOnly() const {
    const QList<Widget*> all = window->Frame().findChildren<Widget*>();
    EXPECT_EQ(all.size(), 1);
    return all.value(0);
  }
  void Show() {
    window->Show();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&window->Frame()));
  }

  ScriptedDialogs dialogs;
  QtToolkit toolkit;
  QtWindow* window = nullptr;
};

}  // namespace kelvane
