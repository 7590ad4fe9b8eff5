#pragma once

// What makes the first picture come sooner.

#include <future>

namespace kelvane {

// The font system reads more than a hundred files before the first text can be measured, which takes about as
// long as connecting to the display does, and then the library lists all fonts. A second thread does it
// meanwhile: the first to be called before the application is made, the other after it. Before text is
// measured the first one's end is to be waited for. The futures wait for the end when they go, the second one
// before the application.
std::future<void> ReadFontSystem();
std::future<void> ListFonts(std::future<void>& fontSystem);

// Menus and names of controls ask for the session bus. Without the address of one, a program is started that
// starts one, and the window waits for that. Where that program is missing it cannot succeed, so this tells
// the library to leave it. It changes the environment: to be called while there is one thread.
void LeaveMissingSessionBus();

// Puts a style around the desktop's that loads no picture before it is shown.
void UseStyleWithoutPictures();

}  // namespace kelvane
