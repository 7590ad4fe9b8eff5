#include "platform/qt/qt_menus.h"

#include <QKeySequence>

#include "platform/handlers.h"
#include "platform/qt/qt_text.h"

namespace kelvane {

QtMenuEntry::QtMenuEntry(QAction* action, const std::string& caption, const std::string& key)
    : action_(action) {
  SetCaption(caption);
  if (!key.empty())
    action_->setShortcut(QKeySequence::fromString(PlainText(key), QKeySequence::PortableText));
  QObject::connect(action_, &QAction::triggered, action_, [this] {
    // Choosing toggled it; the owner decides.
    if (action_->isCheckable()) action_->setChecked(checked_);
    RunHandler(OnChosen);
  });
}

void QtMenuEntry::SetCaption(const std::string& caption) {
  caption_ = caption;
  action_->setText(PlainText(caption));
}

void QtMenuEntry::SetLiteralCaption(const std::string& caption) {
  caption_ = caption;
  action_->setText(VisibleText(caption).replace(u'&', QStringLiteral("&&")));
}

void QtMenuEntry::SetChecked(bool checked) {
  checked_ = checked;
  action_->setCheckable(true);
  action_->setChecked(checked);
}

void QtMenuEntry::SetEnabled(bool enabled) {
  action_->setEnabled(enabled);
}

QtMenu::QtMenu(QMenu* menu) : menu_(menu) {
  QObject::connect(menu_, &QMenu::aboutToShow, menu_, [this] { RunHandler(OnOpen); });
}

Menu* QtMenu::AddMenu(const std::string& caption) {
  return &menus_.emplace_back(menu_->addMenu(PlainText(caption)));
}

MenuEntry* QtMenu::AddEntry(const std::string& caption, const std::string& key) {
  return &entries_.emplace_back(menu_->addAction(QString()), caption, key);
}

void QtMenu::AddSeparator() {
  menu_->addSeparator();
}

}  // namespace kelvane
