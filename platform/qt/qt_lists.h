#pragma once

// Tabs, lists and longer texts of a window.

#include <QPlainTextEdit>
#include <QTabBar>
#include <QTreeWidget>
#include <string>
#include <vector>

#include "platform/qt/qt_controls.h"
#include "platform/text_view.h"

namespace kelvane {

class QtTabs final : public QtControl<Tabs, QTabBar> {
 public:
  QtTabs(QWidget* parent, const std::string& accessibleName);
  void AddTab(const std::string& caption) override;
  void Choose(int tab) override;
  int Chosen() const override { return widget_->currentIndex(); }
};

class QtList final : public QtControl<List, QTreeWidget> {
 public:
  QtList(QWidget* parent, const std::string& accessibleName);
  void SetRows(const std::vector<Row>& rows) override;
  void Choose(int row) override;
  void Focus() override;

 private:
  std::vector<QTreeWidgetItem*> items_;  // by row
};

class QtTextArea final : public QtControl<TextArea, QPlainTextEdit> {
 public:
  QtTextArea(QWidget* parent, const std::string& accessibleName);
  void SetText(const std::string& text) override;
  std::string Text() const override;
  void Focus() override;
};

}  // namespace kelvane
