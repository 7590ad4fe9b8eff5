#include "platform/qt/qt_lists.h"

#include <QHeaderView>
#include <QSignalBlocker>

#include "platform/handlers.h"
#include "platform/qt/qt_text.h"

namespace kelvane {
namespace {

constexpr int kRowRole = Qt::UserRole;

}  // namespace

QtTabs::QtTabs(QWidget* parent, const std::string& accessibleName) : QtControl(new QTabBar(parent)) {
  widget_->setAccessibleName(PlainText(accessibleName));
  widget_->setExpanding(true);
  widget_->setUsesScrollButtons(true);
  QObject::connect(widget_, &QTabBar::currentChanged, widget_, [this](int tab) {
    RunHandler([this, tab] {
      if (OnChosen && tab >= 0) OnChosen(tab);
    });
  });
}

void QtTabs::AddTab(const std::string& caption) {
  const QSignalBlocker silent(widget_);
  widget_->addTab(PlainText(caption));
}

void QtTabs::Choose(int tab) {
  const QSignalBlocker silent(widget_);
  widget_->setCurrentIndex(tab);
}

QtList::QtList(QWidget* parent, const std::string& accessibleName) : QtControl(new QTreeWidget(parent)) {
  widget_->setAccessibleName(PlainText(accessibleName));
  widget_->setColumnCount(1);
  widget_->setHeaderHidden(true);
  widget_->setUniformRowHeights(true);
  // Long rows are reached sideways instead of being cut.
  widget_->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
  widget_->header()->setStretchLastSection(false);
  const auto chosen = [this](const QTreeWidgetItem* item) {
    if (item == nullptr) return;
    const int row = item->data(0, kRowRole).toInt();
    RunHandler([this, row] {
      if (OnChosen) OnChosen(row);
    });
  };
  QObject::connect(widget_, &QTreeWidget::currentItemChanged, widget_,
                   [chosen](const QTreeWidgetItem* item, const QTreeWidgetItem*) { chosen(item); });
  // A click on the row that is chosen already goes there again.
  QObject::connect(widget_, &QTreeWidget::itemClicked, widget_,
                   [chosen](const QTreeWidgetItem* item, int) { chosen(item); });
}

void QtList::SetRows(const std::vector<Row>& rows) {
  const QSignalBlocker silent(widget_);
  widget_->clear();
  items_.clear();
  std::vector<std::pair<int, QTreeWidgetItem*>> above;  // the last item of each level that is open
  bool levels = false;
  for (const Row& row : rows) {
    auto* item = new QTreeWidgetItem(QStringList(PlainText(row.text)));
    item->setData(0, kRowRole, static_cast<int>(items_.size()));
    item->setToolTip(0, PlainText(row.text).toHtmlEscaped());
    items_.push_back(item);
    while (!above.empty() && above.back().first >= row.level) above.pop_back();
    if (above.empty()) {
      widget_->addTopLevelItem(item);
    } else {
      above.back().second->addChild(item);
      levels = true;
    }
    above.emplace_back(row.level, item);
  }
  // Items can be opened once those below them are there.
  for (std::size_t i = 0; i < rows.size(); ++i) items_[i]->setExpanded(rows[i].open);
  widget_->setRootIsDecorated(levels);
}

void QtList::Choose(int row) {
  const QSignalBlocker silent(widget_);
  QTreeWidgetItem* item =
      row >= 0 && row < static_cast<int>(items_.size()) ? items_[static_cast<std::size_t>(row)] : nullptr;
  widget_->setCurrentItem(item);
  if (item != nullptr) widget_->scrollToItem(item);
}

void QtList::Focus() {
  widget_->setFocus(Qt::OtherFocusReason);
}

QtTextArea::QtTextArea(QWidget* parent, const std::string& accessibleName)
    : QtControl(new QPlainTextEdit(parent)) {
  widget_->setAccessibleName(PlainText(accessibleName));
  widget_->setTabChangesFocus(true);
  QObject::connect(widget_, &QPlainTextEdit::textChanged, widget_, [this] { RunHandler(OnChange); });
}

void QtTextArea::SetText(const std::string& text) {
  const QSignalBlocker silent(widget_);
  widget_->setPlainText(PlainText(text));
  widget_->moveCursor(QTextCursor::End);
}

std::string QtTextArea::Text() const {
  return widget_->toPlainText().toStdString();
}

void QtTextArea::Focus() {
  widget_->setFocus(Qt::OtherFocusReason);
}

}  // namespace kelvane
