#include "platform/qt/qt_dialogs.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QShortcut>
#include <QVBoxLayout>
#include <algorithm>

#include "platform/failure.h"
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
    // Between two dialogs no window has the keys.
    static QPointer<QWidget>& last = *new QPointer<QWidget>;
    if (window_ == nullptr && last != nullptr && last->isVisible()) window_ = last;
    for (QWidget* widget : QApplication::topLevelWidgets()) {
      if (window_ == nullptr && widget->isVisible() && widget->parentWidget() == nullptr) window_ = widget;
    }
    last = window_;
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

// Where somebody types on while it comes up, a letter must not press the button that it is underlined in;
// with Alt it does.
class QuestionBox final : public QMessageBox {
 public:
  using QMessageBox::QMessageBox;

 protected:
  void keyPressEvent(QKeyEvent* event) override {
    const QString typed = event->text();
    const bool plain = (event->modifiers() & (Qt::AltModifier | Qt::ControlModifier | Qt::MetaModifier)) == 0;
    if (plain && !typed.isEmpty() && typed[0].isLetterOrNumber()) return;
    QMessageBox::keyPressEvent(event);
  }
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
  const bool file = place.isFile() || (dialog.acceptMode() == QFileDialog::AcceptSave && !place.isDir());
  dialog.setDirectory(file ? place.path() : place.filePath());
  if (!file) return;
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

int RunDialog(QDialog& dialog, const std::string& about) {
  dialog.setWindowModality(Qt::WindowModal);
  const QShortcut help(QKeySequence(Qt::Key_F1), &dialog);
  QObject::connect(&help, &QShortcut::activated, &dialog, [&about] {
    RunHandler([&about] {
      if (TheDialogs->OnHelp) TheDialogs->OnHelp(about);
    });
  });
  return dialog.exec();
}

void QtDialogs::Message(const std::string& text) {
  const Asker asker;
  QuestionBox box(QMessageBox::Information, kTitle, PlainText(text), QMessageBox::Ok, asker.Window());
  box.setTextFormat(Qt::PlainText);
  RunDialog(box, text);
}

bool QtDialogs::Ask(const std::string& text, bool yesIsDefault) {
  const Asker asker;
  QuestionBox box(QMessageBox::Question, kTitle, PlainText(text), QMessageBox::Yes | QMessageBox::No,
                  asker.Window());
  box.setTextFormat(Qt::PlainText);
  box.setDefaultButton(yesIsDefault ? QMessageBox::Yes : QMessageBox::No);
  box.setEscapeButton(QMessageBox::No);
  return RunDialog(box, text) == QMessageBox::Yes;
}

Answer QtDialogs::AskBeforeLosing(const std::string& text) {
  constexpr Answer kAnswers[] = {Answer::Yes, Answer::No, Answer::Neither};
  return kAnswers[Choose(text, {"&Yes, Save", "&No, Don't Save", "Cancel"}, 0, 2)];
}

int QtDialogs::Choose(const std::string& text, const std::vector<std::string>& labels, int onEnter,
                      int onEscape) {
  const Asker asker;
  QuestionBox box(QMessageBox::Question, kTitle, PlainText(text), QMessageBox::NoButton, asker.Window());
  box.setTextFormat(Qt::PlainText);
  QList<QAbstractButton*> buttons;
  for (const std::string& label : labels) {
    const auto number = static_cast<int>(buttons.size());
    // The desktop orders the buttons by their roles.
    const auto role = number == onEscape ? QMessageBox::RejectRole : QMessageBox::AcceptRole;
    QPushButton* button = box.addButton(PlainText(label), role);
    buttons += button;
    if (number == onEnter) box.setDefaultButton(button);
    if (number == onEscape) box.setEscapeButton(button);
  }
  RunDialog(box, text);
  const auto pressed = static_cast<int>(buttons.indexOf(box.clickedButton()));
  return pressed < 0 ? onEscape : pressed;
}

std::optional<std::string> QtDialogs::AskText(const std::string& title, const std::string& label,
                                              const std::string& value,
                                              const std::function<std::string(const std::string&)>& check) {
  const Asker asker;
  QDialog dialog(asker.Window());
  dialog.setWindowTitle(PlainText(title));
  auto* const question = new QLabel(PlainText(label));
  auto* const box = new QLineEdit(PlainText(value));
  auto* const refusal = new QLabel;
  for (QLabel* text : {question, refusal}) text->setTextFormat(Qt::PlainText);
  question->setBuddy(box);
  box->setAccessibleName(PlainText(label));
  box->selectAll();
  auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
  auto* const layout = new QVBoxLayout(&dialog);
  for (QWidget* part : std::initializer_list<QWidget*>{question, box, refusal, buttons})
    layout->addWidget(part);
  const auto entered = [&] { return box->text().toUtf8().toStdString(); };
  QObject::connect(box, &QLineEdit::textEdited, refusal, &QLabel::clear);
  QObject::connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
  QObject::connect(buttons, &QDialogButtonBox::accepted, &dialog, [&] {
    const std::string reason = check(entered());
    if (reason.empty()) return dialog.accept();
    refusal->setText(PlainText(reason));
    box->setFocus();
    box->selectAll();
  });
  if (RunDialog(dialog, title) != QDialog::Accepted) return {};
  return entered();
}

std::string QtDialogs::ChooseToOpen(const std::string& title, const std::string& filter,
                                    const std::string& start, const std::string& accept) {
  return ChooseFile(title, filter, start, accept);
}

std::string QtDialogs::ChooseToSave(const std::string& title, const std::string& filter,
                                    const std::string& start) {
  return ChooseFile(title, filter, start, {});
}

std::string QtDialogs::ChooseFile(const std::string& title, const std::string& filter,
                                  const std::string& start, const std::string& accept) {
  const bool save = accept.empty();
  // A refused choice starts with a new dialog: one shown again may return what it had returned before.
  for (;;) {
    const Asker asker;
    QFileDialog dialog(asker.Window(), PlainText(title));
    dialog.setOption(QFileDialog::DontUseNativeDialog);
    dialog.setOption(QFileDialog::DontConfirmOverwrite);  // asked below, names shown as plain text
    dialog.setAcceptMode(save ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
    dialog.setFileMode(save ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
    if (!save) dialog.setLabelText(QFileDialog::Accept, PlainText(accept));
    dialog.setNameFilters(NameFilters(filter));
    StartAt(dialog, start);
    LetTypedPathsCount(dialog);
    if (RunDialog(dialog, save ? title : accept) != QDialog::Accepted) return {};
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
