#pragma once

// The "Define Macro" window. Not modal: the editor stays usable while it is open.

#include "platform/controls.h"

namespace kelvane {

extern Window* Form7;
extern TextBox* Form7_Text1;  // macro number
extern TextBox* Form7_Text2;  // definition

void ResetDefineMacroWindow();

// Menu entry "Define": takes the captions into the working copy and shows the window, which is made the first
// time.
void ShowDefineMacro();

void Form7_Text1_Change();
void Form7_Command3_Click();  // "Apply"
void Form7_Command2_Click();  // "Delete"
void Form7_Command1_Click();  // "Cancel"
bool Form7_CloseRequest();

}  // namespace kelvane
