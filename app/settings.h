#pragma once

// The settings file QRX.DAT. Each value lives with the subject it belongs to; this is only its reader and
// the writer of the part that exit rewrites.

#include <string>

#include "platform/controls.h"

namespace kelvane {

// Place of the main window in twips, as read or as the defaults give it.
extern WindowPlace FormPlace;

// The start value of the window's place. What else the file can change is reset by the subject it belongs to.
void ResetSettings();

// Reads `KEY = value` lines; unknown keys and malformed lines are skipped. A missing file is no error.
// Values that would break the editor are replaced by their defaults after reading.
void ReadSettings(const std::string& path);

// Rewrites paper folder and window place and keeps every other line byte for byte.
void WriteSettings(const std::string& path);

}  // namespace kelvane
