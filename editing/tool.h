#pragma once

// What the mouse and the keys do on the page: one tool for each mode of the cursor.

#include <cstdint>
#include <string>

#include "editing/cursor.h"
#include "platform/canvas.h"
#include "platform/controls.h"
#include "typography/view.h"

namespace kelvane {

// The mouse over the page.
struct Pointer {
  Point at;  // points
  bool shift = false;
  bool control = false;
  bool alt = false;
  int clicks = 1;  // 2 from the second press of a double click on
};

class Tool {
 public:
  virtual ~Tool() = default;

  // The left mouse button and the mouse. Move is called with the button up, too.
  virtual void Press(const Pointer&) {}
  virtual void Move(const Pointer&) {}
  virtual void Release(const Pointer&) {}
  virtual void RightClick() {}
  // A key of the canvas; false if the tool has no use for it.
  virtual bool Key(int) { return false; }

  // What the tool shows above the page.
  virtual void Paint(Painter&, const View&) const {}
  // Makes half-done work part of the page, as far as it has a place there.
  virtual void Finish() {}
  // What the next key or click will do, for the foot of the window.
  virtual std::string Hint() const { return {}; }
};

// By mode, whatever its sign; filled by ResetModes.
extern Tool* Tools[kLastMode + 1];
Tool& ToolInForce();
// Takes a mode, its sign included, with its pointer. What is half done is the caller's.
void TakeMode(std::int16_t mode);

// Tells what the next key or click will do: where typing goes, or what to do first.
extern Label* CursorLabel;
std::string CursorLabelText();

// The cursor or what is half done has changed: has the overlay painted anew and brings the label up to date.
void ShowCursor();

}  // namespace kelvane
