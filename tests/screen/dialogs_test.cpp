// Message boxes and file dialogs, answered as a person would.

#include "platform/qt/qt_dialogs.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QFile>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <functional>

#include "platform/files.h"

namespace kelvane {
namespace {

// Acts on the next dialog of a kind once it is shown; one that never comes fails the test.
template <class Dialog>
void Next(std::function<void(Dialog&)> act, int tries = 500) {
  QTimer::singleShot(2, qApp, [act = std::move(act), tries] {
    QWidget* widget = QApplication::activeModalWidget();
    auto* dialog = qobject_cast<Dialog*>(widget);
    if (dialog != nullptr && dialog->isVisible()) {
      act(*dialog);
    } else if (tries > 0) {
      Next<Dialog>(act, tries - 1);
    } else {
      ADD_FAILURE() << "no such dialog";
      if (widget != nullptr) widget->close();
    }
  });
}

void Press(QWidget& dialog, Qt::Key key) {
  QTest::keyClick(&dialog, key);
}

TEST(DialogsTest, EscapeMeansNoAndEnterTakesTheDefault) {
  QtDialogs dialogs;
  Next<QMessageBox>([](QMessageBox& box) {
    EXPECT_EQ(box.text(), QStringLiteral("Save <b>A&B</b>?"));
    EXPECT_EQ(box.textFormat(), Qt::PlainText);
    Press(box, Qt::Key_Escape);
  });
  EXPECT_FALSE(dialogs.Ask("Save <b>A&B</b>?", true));
  for (const bool yesIsDefault : {true, false}) {
    Next<QMessageBox>([](QMessageBox& box) { Press(box, Qt::Key_Return); });
    EXPECT_EQ(dialogs.Ask("Save?", yesIsDefault), yesIsDefault);
  }
}

TEST(DialogsTest, EscapeBeforeALossIsNoAnswer) {
  QtDialogs dialogs;
  for (const auto& [key, answer] :
       {std::pair{Qt::Key_Escape, Answer::Neither}, {Qt::Key_Return, Answer::Yes}, {Qt::Key_N, Answer::No}}) {
    Next<QMessageBox>([key = key](QMessageBox& box) {
      EXPECT_FALSE(box.button(QMessageBox::Cancel)->isVisible());
      Press(box, key);
    });
    EXPECT_EQ(dialogs.AskBeforeLosing("Save?"), answer);
  }
  Next<QMessageBox>([](QMessageBox& box) { box.close(); });
  EXPECT_EQ(dialogs.AskBeforeLosing("Save?"), Answer::Neither);
}

class FileDialogsTest : public ::testing::Test {
 protected:
  void SetUp() override {
    existing = folder.filePath(QStringLiteral("Essay.001"));
    QFile file(existing);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  }
  static void Enter(QFileDialog& dialog, const QString& name) {
    auto* edit = dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
    edit->setText(name);
    QMetaObject::invokeMethod(&dialog, "accept");
  }
  std::string Folder() const { return BackslashPath(folder.path().toStdString()); }
  std::string Save() { return dialogs.ChooseToSave("Save As", "*.001|*.001", Folder()); }

  QtDialogs dialogs;
  QTemporaryDir folder;
  QString existing;
};

TEST_F(FileDialogsTest, OpensWithBackslashPathFromTheGivenFolder) {
  Next<QFileDialog>([this](QFileDialog& dialog) {
    EXPECT_EQ(dialog.directory().path(), folder.path());
    EXPECT_EQ(dialog.nameFilters(), QStringList(QStringLiteral("*.001")));
    Enter(dialog, QStringLiteral("Essay.001"));
  });
  EXPECT_EQ(dialogs.ChooseToOpen("Open", "*.001|*.001", Folder()), Folder() + "\\Essay.001");
  Next<QFileDialog>([](QFileDialog& dialog) { Press(dialog, Qt::Key_Escape); });
  EXPECT_EQ(dialogs.ChooseToOpen("Open", "*.001|*.001", Folder()), "");
}

TEST_F(FileDialogsTest, AsksBeforeAFileIsReplaced) {
  Next<QFileDialog>([this](QFileDialog& dialog) {
    Next<QMessageBox>([this](QMessageBox& question) {
      EXPECT_TRUE(question.text().contains(existing));
      Next<QFileDialog>([](QFileDialog& again) { Enter(again, QStringLiteral("New.001")); });
      Press(question, Qt::Key_Return);
    });
    Enter(dialog, QStringLiteral("Essay.001"));
  });
  EXPECT_EQ(Save(), Folder() + "\\New.001");
}

TEST_F(FileDialogsTest, RefusesABackslashInAName) {
  Next<QFileDialog>([](QFileDialog& dialog) {
    Next<QMessageBox>([](QMessageBox& refusal) {
      EXPECT_TRUE(refusal.text().contains(QStringLiteral("a\\b.001")));
      Next<QFileDialog>([](QFileDialog& again) { Press(again, Qt::Key_Escape); });
      Press(refusal, Qt::Key_Return);
    });
    Enter(dialog, QStringLiteral("a\\b.001"));
  });
  EXPECT_EQ(Save(), "");
}

}  // namespace
}  // namespace kelvane
