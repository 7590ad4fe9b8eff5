#pragma once

// The main window Form1: its controls, their layout, and what its events do.

#include "platform/controls.h"

namespace kelvane {

// Makes window, menus and controls and fills the handles of the subjects.
void BuildForm1();

// The controls that no subject owns.
struct Form1Controls {
  Button* scripts[12];
  Button* pageUp;
  Button* pageDown;
  Label* sizeLabel;
  Button* apply;  // "OK" beside the control-code box
  ScrollBar* horizontal;
  ScrollBar* vertical;
};
extern Form1Controls Form1Parts;

// While set, a resize of the window is left alone: the window is being built.
extern bool ResizeGuard;

void Form1_Resize();
void Form1_Picture1_KeyPress(int code);
void Form1_Picture1_MouseDown(const MouseEvent& event);
void Form1_Picture1_MouseMove(const MouseEvent& event);
void Form1_Picture1_MouseUp(const MouseEvent& event);
void Form1_Picture1_MouseLeave();
void Form1_Picture1_Wheel(const WheelEvent& event);

}  // namespace kelvane
