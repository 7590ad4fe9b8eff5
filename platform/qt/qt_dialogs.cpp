#include "platform/qt/qt_dialogs.h"

#include <QApplication>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QLineEdit>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QShortcut>
#include <algorithm>

#include "platform/files.h"
#include "platform/handlers.h"
#include "platform/qt/qt_text.h"

namespace kelvane {
namespace {

const QString kTitle = QStringLiteral("Kelvane");

// The window that a dialog stands above. Afterwards it gets the keys back: not every desktop sees to that.
class Asker {
 public:
  Asker() : window_(QApplication::activeWindow()) {
    for (QWidget* widget : QApplication::topLevelWidgets()) {
      if (window_ == nullptr && widget->isVisible() && widget->parentWidget() == nullptr) window_ = widget;
    }
  }
  ~Asker() {
    if (window_ != nullptr) window_->activateWindow();
  }
  Asker(const Asker&) = delete;
  Asker& operator=(const Asker&) = delete;
  QWidget* Window() const { return window_; }

 private:
  QPointer<QWidget> window_;
};

// Shows a dialog until it is answered. It blocks the window below it and no other, so that the help opened
// from it with F1 can be read.
int Run(QDialog& dialog, const std::string& about) {
  dialog.setWindowModality(Qt::WindowModal);
  const QShortcut help(QKeySequence(Qt::Key_F1), &dialog);
  QObject::connect(&help, &QShortcut::activated, &dialog, [&about] {
    RunHandler([&about] {
      if (TheDialogs->OnHelp) TheDialogs->OnHelp(about);
    });
  });
  return dialog.exec();
}

// "caption|pattern|caption|pattern" as Qt's list of filters.
QStringList NameFilters(const std::string& filter) {
  const QStringList parts = PlainText(filter).split(u'|');
  QStringList filters;
  for (qsizetype i = 0; i + 1 < parts.size(); i += 2) {
    const QString patterns = QString(parts[i + 1]).replace(u';', u' ');
    // Brackets in the caption would be taken for the patterns.
    const QString caption = parts[i].section(u'(', 0, 0).trimmed();
    filters += caption == patterns ? patterns : QStringLiteral("%1 (%2)").arg(caption, patterns);
  }
  return filters;
}

// A file to start at is there to be taken with Enter.
void StartAt(QFileDialog& dialog, const std::string& start) {
  if (start.empty()) return;
  const QFileInfo place(QFile::decodeName(MachinePath(start).c_str()));
  dialog.setDirectory(place.isFile() ? place.path() : place.filePath());
  if (!place.isFile()) return;
  dialog.selectFile(place.fileName());
  for (QLineEdit* name : dialog.findChildren<QLineEdit*>()) name->selectAll();
}

}  // namespace

void QtDialogs::Message(const std::string& text) {
  const Asker asker;
  QMessageBox box(QMessageBox::Information, kTitle, PlainText(text), QMessageBox::Ok, asker.Window());
  box.setTextFormat(Qt::PlainText);
  Run(box, text);
}

bool QtDialogs::Ask(const std::string& text, bool yesIsDefault) {
  const Asker asker;
  QMessageBox box(QMessageBox::Question, kTitle, PlainText(text), QMessageBox::Yes | QMessageBox::No,
                  asker.Window());
  box.setTextFormat(Qt::PlainText);
  box.setDefaultButton(yesIsDefault ? QMessageBox::Yes : QMessageBox::No);
  box.setEscapeButton(QMessageBox::No);
  return Run(box, text) == QMessageBox::Yes;
}

Answer QtDialogs::AskBeforeLosing(const std::string& text) {
  const Asker asker;
  QMessageBox box(QMessageBox::Question, kTitle, PlainText(text), QMessageBox::Yes | QMessageBox::No,
                  asker.Window());
  box.setTextFormat(Qt::PlainText);
  box.setDefaultButton(QMessageBox::Yes);
  // A box can only be left by a button, so Escape has one of its own that is not shown.
  QPushButton* neither = box.addButton(QMessageBox::Cancel);
  neither->hide();
  box.setEscapeButton(neither);
  const int pressed = Run(box, text);
  if (pressed == QMessageBox::Yes) return Answer::Yes;
  return pressed == QMessageBox::No ? Answer::No : Answer::Neither;
}

int QtDialogs::Choose(const std::string& text, const std::vector<std::string>& labels, int defaultIndex,
                      int escapeIndex) {
  const Asker asker;
  QMessageBox box(QMessageBox::Question, kTitle, PlainText(text), QMessageBox::NoButton, asker.Window());
  box.setTextFormat(Qt::PlainText);
  int index = 0;
  std::vector<QAbstractButton*> buttons;
  for (const std::string& label : labels) {
    // Buttons of one role stand in the order in which they were added.
    QPushButton* button = box.addButton(PlainText(label), QMessageBox::AcceptRole);
    if (index == defaultIndex) box.setDefaultButton(button);
    if (index == escapeIndex) box.setEscapeButton(button);
    buttons.push_back(button);
    ++index;
  }
  Run(box, text);
  const auto clicked = std::find(buttons.begin(), buttons.end(), box.clickedButton());
  return clicked == buttons.end() ? escapeIndex : static_cast<int>(clicked - buttons.begin());
}

std::string QtDialogs::ChooseToOpen(const std::string& title, const std::string& filter,
                                    const std::string& start, const std::string& acceptLabel) {
  return ChooseFile(title, filter, start, acceptLabel);
}

std::string QtDialogs::ChooseToSave(const std::string& title, const std::string& filter,
                                    const std::string& start) {
  return ChooseFile(title, filter, start, {});
}

std::string QtDialogs::ChooseFile(const std::string& title, const std::string& filter,
                                  const std::string& start, const std::string& openLabel) {
  const bool save = openLabel.empty();
  // A refused choice starts with a new dialog: one shown again may return what it had returned before.
  for (;;) {
    const Asker asker;
    QFileDialog dialog(asker.Window(), PlainText(title));
    dialog.setOption(QFileDialog::DontUseNativeDialog);
    dialog.setOption(QFileDialog::DontConfirmOverwrite);  // asked below, names shown as plain text
    dialog.setAcceptMode(save ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
    dialog.setFileMode(save ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
    if (!save) dialog.setLabelText(QFileDialog::Accept, PlainText(openLabel));
    dialog.setNameFilters(NameFilters(filter));
    StartAt(dialog, start);
    if (Run(dialog, title) != QDialog::Accepted) return {};
    const QString chosen = dialog.selectedFiles().value(0);
    const std::string name = QFile::encodeName(chosen).toStdString();
    if (chosen.contains(u'\\')) {
      // A backslash separates folders wherever the program keeps a path.
      Message("The name of a paper and of its folders cannot contain a backslash: " + name);
    } else if (!save || !QFile::exists(chosen) || Ask("Replace the file " + name + "?", false)) {
      return BackslashPath(name);
    }
  }
}

}  // namespace kelvane
