#pragma once

// Labels, buttons, text boxes and scroll bars of a window. Each owns nothing but its words; the widget
// belongs to the window's frame and lives as long.

#include <QAbstractButton>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QStatusBar>
#include <string>

#include "platform/controls.h"

namespace kelvane {

// What all controls have, over the widget of one.
template <class Interface, class Widget>
class QtControl : public Interface {
 public:
  QtControl() = default;
  QtControl(const QtControl&) = delete;
  QtControl& operator=(const QtControl&) = delete;

  void SetPlace(const Place& place) override {
    widget_->setGeometry(place.left, place.top, place.width, place.height);
    hasRoom_ = place.width > 0 && place.height > 0;
    widget_->setVisible(visible_ && hasRoom_);
  }
  void SetVisible(bool visible) override {
    visible_ = visible;
    widget_->setVisible(visible_ && hasRoom_);
  }
  Widget* GetWidget() const { return widget_; }

 protected:
  explicit QtControl(Widget* widget) : widget_(widget) {}
  Widget* widget_;

 private:
  bool visible_ = true;
  bool hasRoom_ = true;
};

class QtLabel final : public QtControl<Label, QLabel> {
 public:
  QtLabel(QWidget* parent, const std::string& text);
  // A label whose place a status bar gives, if it can with room for `width` pixels.
  QtLabel(QStatusBar* bar, int width);
  // A text too long for its place is set smaller, and then shortened in its middle; the tool tip has it
  // whole.
  void SetPlace(const Place& place) override;
  void SetText(const std::string& text) override;
  std::string Text() const override { return text_; }
  void Repaint() override;

 private:
  class FootLabel;

  void Fit();

  std::string text_;
  bool placed_ = false;
  bool foot_ = false;
};

class QtButton final : public QtControl<Button, QPushButton> {
 public:
  QtButton(QWidget* parent, const std::string& caption, const IconDrawing& icon, const std::string& toolTip);
  // A caption too long for its place is set smaller.
  void SetPlace(const Place& place) override;
  void SetDown(bool down) override;
  void SetEnabled(bool enabled) override { widget_->setEnabled(enabled); }
};

class QtTextBox final : public QtControl<TextBox, QLineEdit> {
 public:
  enum class Holds { Codes, Run, Words };  // codes; codes, shown in a fixed-pitch face; UTF-8

  QtTextBox(QWidget* parent, const std::string& accessibleName, Holds holds);
  void SetText(const std::string& text) override;
  std::string Text() const override;
  void Focus() override;
  void SelectAll() override;
  // A font too high for the box is set smaller.
  void SetPlace(const Place& place) override;

 private:
  void FitFont(const QFont& usual);
  // Gives a run its fixed-pitch font once there is one: loading it for an empty box would only cost time.
  void FitRun();

  void Edited(bool accepted);

  Holds holds_;
  bool runFitted_ = false;
};

class QtScrollBar final : public QtControl<ScrollBar, QScrollBar> {
 public:
  QtScrollBar(QWidget* parent, bool horizontal);
  void SetRange(float least, float most, float page, float value) override;

 private:
  float least_ = 0;
  float valuePerStep_ = 1;
};

}  // namespace kelvane
