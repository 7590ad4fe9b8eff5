#pragma once

// The window that sends a comment to the maker by mail. What is written in it lies in the state folder until
// it is cleared, so that no failure loses it. The window is made when it is first asked for.

#include "platform/text_view.h"

namespace kelvane {

// Null until it is made.
extern Window* ContactWindow;
struct ContactWindowControls {
  Label* to;
  TextBox* address;
  TextBox* subject;
  TextArea* comment;
  Button* send;
  Button* copy;
  Button* clear;
  Button* close;
  Label* note;
};
extern ContactWindowControls ContactParts;

void ResetContactWindow();

// Menu entry "Contact".
void ShowContact();

// Writes what was typed since the last time; at exit and from time to time.
void StoreComment();

}  // namespace kelvane
