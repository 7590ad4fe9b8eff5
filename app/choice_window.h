#pragma once

// What the small windows share in which one chooses how something is exported: choices in rows, and below
// them a button that exports and one that gives it up.

#include <functional>

#include "platform/controls.h"

namespace kelvane {

// All lengths are pixels.
class ChoiceWindow {
 public:
  static constexpr int kEdge = 10;  // around everything
  static constexpr int kGap = 4;
  static constexpr int kChoice = 100;  // the usual width of a choice

  // `labels` is the width of what stands before the choices, `help` the heading of its page in the manual.
  Window* Build(const char* title, int width, int labels, const char* help);

  // The upper edge of a row; the first one is 0.
  int TopOf(int row) const;
  // The place of a choice in a row, behind `before` others of the usual width.
  Place PlaceOf(int row, int before, int width = kChoice) const;
  // From there to the right edge.
  Place RestOf(int row, int left = 0) const;
  void AddLabel(int row, const char* text);
  Button* AddButton(const char* caption, const char* toolTip, const Place& place, std::function<void()> act);

  // The last row. Esc cancels, too; the frame closes. Returns the button that exports.
  struct End {
    int top = 0;
    const char* exportTip = "";
    std::function<void()> exports;
    const char* cancelTip = "";
    std::function<void()> cancel;
    std::function<void()> close;
  };
  Button* AddEnd(const End& end);

  // In the middle of the editor, if it was not shown.
  void Show();

 private:
  Window* window_ = nullptr;
  int width_ = 0;
  int height_ = 0;
  int labels_ = 0;
};

}  // namespace kelvane
