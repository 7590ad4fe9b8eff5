#pragma once

// A top-level window with its menus, client area and status line.

#include <QMainWindow>
#include <deque>
#include <memory>
#include <string>
#include <vector>

#include "platform/controls.h"
#include "platform/qt/qt_canvas.h"
#include "platform/qt/qt_controls.h"
#include "platform/qt/qt_menus.h"

namespace kelvane {

class QtWindow final : public Window {
 public:
  // `parent`: the window it stays above; null for the main window, whose closing ends the program.
  explicit QtWindow(QtWindow* parent);
  ~QtWindow() override;
  QtWindow(const QtWindow&) = delete;
  QtWindow& operator=(const QtWindow&) = delete;

  void SetTitle(const std::string& title) override;
  void SetChanged(bool changed) override;
  void SetWindowPlace(const WindowPlace& place) override;
  WindowPlace GetWindowPlace() const override;
  float InnerWidth() const override;
  float InnerHeight() const override;
  void Show() override;
  void Hide() override;
  bool Visible() const override;
  Menu* AddMenu(const std::string& caption) override;
  Canvas* AddCanvas() override;
  void SetCanvasPlace(Canvas* canvas, const Place& place) override;
  Label* AddLabel(const std::string& text) override;
  Button* AddButton(const std::string& caption, const IconDrawing& icon, const std::string& toolTip) override;
  TextBox* AddTextBox(const std::string& accessibleName, bool fixedPitch) override;
  ScrollBar* AddScrollBar(bool horizontal) override;
  Label* AddStatusText(int width) override;
  void AddShortcut(const std::string& key, std::function<void()> handler) override;

  QMainWindow& Frame() const;

 private:
  class MainFrame;
  class ClientArea;

  // Asks the owner; true if the window may close.
  bool MayClose();
  void LayOut() const;
  void ShowTitle();
  // Takes over a control and shows it.
  template <class Kind>
  Kind* Keep(std::unique_ptr<Kind> control) {
    control->GetWidget()->show();
    Kind* kept = control.get();
    controls_.push_back(std::move(control));
    return kept;
  }

  std::unique_ptr<MainFrame> frame_;
  ClientArea* client_;
  std::string title_;
  bool changed_ = false;
  int horizontalBars_ = 0;
  int verticalBars_ = 0;
  std::deque<QtMenu> menus_;
  std::vector<std::unique_ptr<Control>> controls_;
};

}  // namespace kelvane
