#pragma once

namespace kelvane {

// Makes the typefaces of the desktop usable in a program without windows: Qt wants a platform for them, but
// no display. Called again it does nothing.
void UseTypefacesOffscreen();

}  // namespace kelvane
