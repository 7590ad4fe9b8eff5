#pragma once

// Menus and their entries.

#include <QAction>
#include <QMenu>
#include <deque>
#include <memory>
#include <string>

#include "platform/controls.h"

namespace kelvane {

class QtMenuEntry final : public MenuEntry {
 public:
  // The action belongs to the menu that shows it.
  QtMenuEntry(QAction* action, const std::string& caption, const std::string& key);
  QtMenuEntry(const QtMenuEntry&) = delete;
  QtMenuEntry& operator=(const QtMenuEntry&) = delete;

  void SetCaption(const std::string& caption) override;
  void SetLiteralCaption(const std::string& caption) override;
  std::string Caption() const override { return caption_; }
  void SetChecked(bool checked) override;
  bool Checked() const override { return checked_; }
  void SetEnabled(bool enabled) override;
  void SetPicture(const MenuPicture& picture) override { picture_ = picture; }
  // Whether there is one that is still to be painted, and painting it.
  bool HasPicture() const { return picture_.paint != nullptr; }
  void ShowPicture(double ratio);

 private:
  QAction* action_;
  std::string caption_;
  bool checked_ = false;
  MenuPicture picture_;  // not painted yet
};

class QtMenu final : public Menu {
 public:
  // The menu belongs to the menu bar or menu that shows it.
  explicit QtMenu(QMenu* menu);
  QtMenu(const QtMenu&) = delete;
  QtMenu& operator=(const QtMenu&) = delete;

  Menu* AddMenu(const std::string& caption) override;
  MenuEntry* AddEntry(const std::string& caption, const std::string& key) override;
  void AddSeparator() override;

  void Popup(QPoint at) { menu_->popup(at); }

 private:
  void ShowPictures();

  QMenu* menu_;
  std::deque<QtMenu> menus_;
  std::deque<QtMenuEntry> entries_;
};

}  // namespace kelvane
