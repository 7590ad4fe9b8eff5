// Message boxes and file dialogs, answered as a person would.

#include "platform/qt/qt_dialogs.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QLabel>
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

void Click(const QMessageBox& box, const QString& caption) {
  for (QAbstractButton* button : box.buttons())
    if (button->text() == caption) button->click();
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
       {std::pair{Qt::Key_Escape, Answer::Neither}, {Qt::Key_Return, Answer::Yes}}) {
    Next<QMessageBox>([key = key](QMessageBox& box) {
      for (const QAbstractButton* button : box.buttons()) EXPECT_TRUE(button->isVisible());
      EXPECT_EQ(box.buttons().size(), 3);
      Press(box, key);
    });
    EXPECT_EQ(dialogs.AskBeforeLosing("Save?"), answer);
  }
  // Whoever types on has not answered.
  Next<QMessageBox>([](QMessageBox& box) {
    QTest::keyClicks(&box, QStringLiteral("nYn1"));
    QTest::qWait(150);
    EXPECT_TRUE(box.isVisible());
    Click(box, QStringLiteral("&No, Don't Save"));
  });
  EXPECT_EQ(dialogs.AskBeforeLosing("Save?"), Answer::No);
  Next<QMessageBox>([](QMessageBox& box) { box.close(); });
  EXPECT_EQ(dialogs.AskBeforeLosing("Save?"), Answer::Neither);
}

TEST(DialogsTest, AChoiceIsTheNumberOfItsButton) {
  QtDialogs dialogs;
  const std::vector<std::string> labels = {"&Replace", "&Save As", "&Cancel"};
  for (const auto& [key, number] : {std::pair{Qt::Key_Return, 1}, {Qt::Key_Escape, 2}}) {
    Next<QMessageBox>([key = key](QMessageBox& box) { Press(box, key); });
    EXPECT_EQ(dialogs.Choose("The file was changed.", labels, 1, 2), number);
  }
  for (const auto& [caption, number] : {std::pair{"&Replace", 0}, {"&Cancel", 2}}) {
    Next<QMessageBox>([caption = caption](QMessageBox& box) { Click(box, QString::fromLatin1(caption)); });
    EXPECT_EQ(dialogs.Choose("The file was changed.", labels, 1, 2), number);
  }
}

TEST(DialogsTest, ARefusedTextKeepsItsBoxOpenWithTheReason) {
  QtDialogs dialogs;
  const auto ask = [&] {
    return dialogs.AskText("Size", "Size in <b>points</b>:", "11",
                           [](const std::string& text) { return text == "12" ? "" : "No size: " + text; });
  };
  Next<QDialog>([](QDialog& dialog) {
    auto* box = dialog.findChild<QLineEdit*>();
    EXPECT_EQ(box->selectedText(), QStringLiteral("11"));
    QTest::keyClicks(box, QStringLiteral("x"));
    Press(*box, Qt::Key_Return);
    EXPECT_TRUE(dialog.isVisible());
    const QList<QLabel*> labels = dialog.findChildren<QLabel*>();
    EXPECT_EQ(labels.at(1)->text(), QStringLiteral("No size: x"));
    QTest::keyClicks(box, QStringLiteral("12"));
    EXPECT_EQ(labels.at(1)->text(), QString());
    Press(*box, Qt::Key_Return);
    if (dialog.isVisible()) dialog.reject();
  });
  EXPECT_EQ(ask(), "12");
  Next<QDialog>([](QDialog& dialog) { Press(dialog, Qt::Key_Escape); });
  EXPECT_EQ(ask(), std::nullopt);
}

class FileDialogsTest : public ::testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(QFile(existing).open(QIODevice::WriteOnly)); }

  static void Enter(QFileDialog& dialog, const char* name) {
    dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))->setText(name);
    QMetaObject::invokeMethod(&dialog, "accept");
  }
  // Enters a name in the next file dialog, and behind the message that comes of it another one, or none.
  void EnterTwice(const char* name, const QString& inMessage, const char* other) {
    Next<QFileDialog>([=](QFileDialog& dialog) {
      Next<QMessageBox>([=](QMessageBox& message) {
        EXPECT_TRUE(message.text().contains(inMessage)) << message.text().toStdString();
        Next<QFileDialog>([=](QFileDialog& again) {
          if (other != nullptr) Enter(again, other);
          if (other == nullptr) Press(again, Qt::Key_Escape);
        });
        Press(message, Qt::Key_Return);
      });
      Enter(dialog, name);
    });
  }
  std::string Save() { return dialogs.ChooseToSave("Save As", "*.001|*.001", path); }
  std::string Open() { return dialogs.ChooseToOpen("Open", "*.001|*.001", path, "Print"); }

  QtDialogs dialogs;
  QTemporaryDir folder;
  const QString existing = folder.filePath(QStringLiteral("Essay.001"));
  const std::string path = BackslashPath(folder.path().toStdString());
};

TEST_F(FileDialogsTest, OpensWithBackslashPathFromTheGivenFolder) {
  Next<QFileDialog>([this](QFileDialog& dialog) {
    EXPECT_EQ(dialog.directory().path(), folder.path());
    EXPECT_EQ(dialog.labelText(QFileDialog::Accept), QStringLiteral("Print"));
    EXPECT_EQ(dialog.nameFilters(), QStringList(QStringLiteral("*.001")));
    Enter(dialog, "Essay.001");
  });
  EXPECT_EQ(Open(), path + "\\Essay.001");
  Next<QFileDialog>([](QFileDialog& dialog) {
    EXPECT_EQ(dialog.labelText(QFileDialog::Accept), QStringLiteral("Print"));
    Press(dialog, Qt::Key_Escape);
  });
  EXPECT_EQ(dialogs.ChooseToOpen("Open", "*.001|*.001", path, "Print"), "");
}

TEST_F(FileDialogsTest, AsksBeforeAFileIsReplacedAndRefusesABackslash) {
  EnterTwice("Essay.001", existing, "New.001");
  EXPECT_EQ(Save(), path + "\\New.001");
  EnterTwice("a\\b.001", QStringLiteral("a\\b.001"), nullptr);
  EXPECT_EQ(Save(), "");
}

// Typed key by key, while the list fills: Qt's completion selects folders of one letter unseen.
TEST_F(FileDialogsTest, TakesATypedPathThroughFoldersOfOneLetter) {
  const QDir top(folder.path());
  const QString file = top.filePath(QStringLiteral("w/k/a/Essay.001"));
  ASSERT_TRUE(top.mkpath(QStringLiteral("w/k/a/b")));
  ASSERT_TRUE(top.mkpath(QStringLiteral("w/b/c")));
  ASSERT_TRUE(QFile(file).open(QIODevice::WriteOnly));
  const QString before = QDir::currentPath();
  for (const char* current : {"", "w", "w/k"}) {
    ASSERT_TRUE(QDir::setCurrent(top.filePath(current)));
    for (const char* start : {"", "w/k/a", "w/b"}) {
      Next<QFileDialog>([&](QFileDialog& dialog) {
        auto* name = dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
        QTest::keyClicks(name, file, Qt::NoModifier, 2);
        QTest::keyClick(name, Qt::Key_Return);
        if (dialog.isVisible()) dialog.reject();
      });
      const std::string at = BackslashPath(top.filePath(start).toStdString());
      EXPECT_EQ(dialogs.ChooseToOpen("Open", "*.001|*.001", at), BackslashPath(file.toStdString()))
          << '"' << current << "\" \"" << start << '"';
    }
  }
  QDir::setCurrent(before);
}

}  // namespace
}  // namespace kelvane
