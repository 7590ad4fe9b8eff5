#pragma once

// Settings and macros that a crash or another program has damaged.

namespace kelvane {

// Before they are read: gives each that is no text another name, so that the start values take its place, and
// tells the person.
void SetDamagedAside();

}  // namespace kelvane
