#include "platform/qt/qt_dialogs.h"

#include <QApplication>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QLineEdit>
#include <QListView>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>

#include "platform/failure.h"
#include "platform/files.h"
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

// While a path is typed, the dialog's completion selects the folders of its beginnings in the list and takes
// the last one back; of a folder with a name of one letter the selection stays (Qt 6.4), unseen, and Enter
// would go to that folder instead of taking the path.
void LetTypedPathsCount(QFileDialog& dialog) {
  auto* list = dialog.findChild<QListView*>(QStringLiteral("listView"));
  for (QLineEdit* name : dialog.findChildren<QLineEdit*>()) {
    QObject::connect(name, &QLineEdit::textChanged, list, [list](const QString& text) {
      if (text.contains(u'/')) list->clearSelection();
    });
  }
}

}  // namespace

void QtDialogs::Message(const std::string& text) {
  const Asker asker;
  QMessageBox box(QMessageBox::Information, kTitle, PlainText(text), QMessageBox::Ok, asker.Window());
  box.setTextFormat(Qt::PlainText);
  box.exec();
}

bool QtDialogs::Ask(const std::string& text, bool yesIsDefault) {
  const Asker asker;
  QMessageBox box(QMessageBox::Question, kTitle, PlainText(text), QMessageBox::Yes | QMessageBox::No,
                  asker.Window());
  box.setTextFormat(Qt::PlainText);
  box.setDefaultButton(yesIsDefault ? QMessageBox::Yes : QMessageBox::No);
  box.setEscapeButton(QMessageBox::No);
  return box.exec() == QMessageBox::Yes;
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
  const int pressed = box.exec();
  if (pressed == QMessageBox::Yes) return Answer::Yes;
  return pressed == QMessageBox::No ? Answer::No : Answer::Neither;
}

std::string QtDialogs::ChooseToOpen(const std::string& title, const std::string& filter,
                                    const std::string& start) {
  return Choose(false, title, filter, start);
}

std::string QtDialogs::ChooseToSave(const std::string& title, const std::string& filter,
                                    const std::string& start) {
  return Choose(true, title, filter, start);
}

std::string QtDialogs::Choose(bool save, const std::string& title, const std::string& filter,
                              const std::string& start) {
  // A refused choice starts with a new dialog: one shown again may return what it had returned before.
  for (;;) {
    const Asker asker;
    QFileDialog dialog(asker.Window(), PlainText(title));
    dialog.setOption(QFileDialog::DontUseNativeDialog);
    dialog.setOption(QFileDialog::DontConfirmOverwrite);  // asked below, names shown as plain text
    dialog.setAcceptMode(save ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
    dialog.setFileMode(save ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
    dialog.setNameFilters(NameFilters(filter));
    StartAt(dialog, start);
    LetTypedPathsCount(dialog);
    if (dialog.exec() != QDialog::Accepted) return {};
    const QString chosen = dialog.selectedFiles().value(0);
    const std::string name = QFile::encodeName(chosen).toStdString();
    try {
      const std::string path = BackslashPath(name);
      if (!save || !QFile::exists(chosen) || Ask("Replace the file " + name + "?", false)) return path;
    } catch (const Failure& failure) {
      Message(failure.what());
    }
  }
}

}  // namespace kelvane
