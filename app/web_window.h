#pragma once

// The window on the maker's page. Where no web engine is installed the page goes to the person's own browser.

#include "platform/text_view.h"

namespace kelvane {

// Null until it is made.
extern Window* WebWindow;

void ResetWebWindow();

// Menu entry "Web Page".
void ShowWebPage();

}  // namespace kelvane
