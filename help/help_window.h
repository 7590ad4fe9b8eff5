#pragma once

// The help window: contents, index and search at the left, the page at the right. It is made when it is first
// asked for.

#include <string>

#include "platform/text_view.h"

namespace kelvane {

// Null until it is made.
extern Window* HelpWindow;
struct HelpWindowControls {
  Button* back;
  Button* forward;
  Button* smaller;
  Button* larger;
  Button* print;
  TextBox* find;
  Button* findNext;
  Tabs* tabs;
  TextBox* filter;  // of the index
  TextBox* query;   // of the search
  List* contents;
  List* index;
  List* hits;
  TextView* page;
  Label* note;
};
extern HelpWindowControls HelpParts;

void ResetHelpWindow();

// Shows the window where it was left; the first time at the first page.
void ShowHelp();
// Shows it at the heading of that text. Where the help has none, at a search for it.
void ShowHelpAt(const std::string& heading);
// Shows it at what the help says of a message: the longest heading that the message begins with, up to "...",
// else the page of that title.
void ShowHelpOfMessage(const std::string& message, const std::string& otherwise);

}  // namespace kelvane
