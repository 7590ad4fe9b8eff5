#pragma once

// A top-level window with its menus, client area and status line.

#include <QMainWindow>
#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/controls.h"
#include "platform/qt/qt_canvas.h"
#include "platform/qt/qt_controls.h"
#include "platform/qt/qt_menus.h"

namespace kelvane {

class QtWindow final : public Window {
 public:
  enum class Kind { Main, Tool, Separate };  // closing the main one ends the program

  // `main`: the main window, which a tool window stays above; null for itself.
  QtWindow(Kind kind, QtWindow* main);
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
  void WhenShown(std::function<void()> handler) override { whenShown_ = std::move(handler); }
  Menu* AddMenu(const std::string& caption) override;
  Menu* AddPopup() override;
  void ShowPopup(Menu* popup, Canvas* canvas, float pixelX, float pixelY) override;
  Canvas* AddCanvas() override;
  void SetCanvasPlace(Canvas* canvas, const Place& place) override;
  Label* AddLabel(const std::string& text) override;
  Button* AddButton(const std::string& caption, const IconDrawing& icon, const std::string& toolTip) override;
  TextBox* AddTextBox(const std::string& accessibleName, bool fixedPitch) override;
  TextBox* AddPlainTextBox(const std::string& accessibleName) override;
  ScrollBar* AddScrollBar(bool horizontal) override;
  TextView* AddTextView(const std::string& accessibleName) override;
  Tabs* AddTabs(const std::string& accessibleName) override;
  List* AddList(const std::string& accessibleName) override;
  TextArea* AddTextArea(const std::string& accessibleName) override;
  Browser* AddBrowser(const std::string& accessibleName) override;
  Label* AddStatusText(int width) override;
  void AddShortcut(const std::string& key, std::function<void()> handler) override;
  int RowHeight() const override;
  void KeepPlaceAs(const std::string& name, const WindowPlace& first) override;
  std::string NameUnderPointer() const override;

  QMainWindow& Frame() const;

 private:
  class MainFrame;
  class ClientArea;

  // Asks the owner; true if the window may close.
  bool MayClose();
  void LayOut() const;
  void StorePlace() const;
  void PlaceOnScreen(WindowPlace place);
  void ShowTitle();
  void DoWhenShown();
  // Takes over a control and shows it.
  template <class Kept>
  Kept* Keep(std::unique_ptr<Kept> control) {
    // Otherwise it is shown along with the window, when it has its place: before, Qt would find a size for
    // it.
    QWidget* const widget = control->GetWidget();
    if (widget->parentWidget()->isVisible()) widget->show();
    Kept* kept = control.get();
    controls_.push_back(std::move(control));
    return kept;
  }

  std::unique_ptr<MainFrame> frame_;
  ClientArea* client_;
  std::string title_;
  std::string placeKeptAs_;
  bool changed_ = false;
  std::function<void()> whenShown_;
  int horizontalBars_ = 0;
  int verticalBars_ = 0;
  std::deque<QtMenu> menus_;
  std::vector<std::unique_ptr<Control>> controls_;
};

}  // namespace kelvane
