#pragma once

// The help text QRX.HLP and its derived contents (QRX.HCT) and index (QRX.HIX) files.

#include <cstdint>
#include <vector>

namespace kelvane {

inline constexpr int kMostHelpPages = 100;
// Byte positions of the lines that start pages 1, 2, ... of QRX.HLP.
extern std::vector<std::int64_t> HelpPageStarts;

// Checks and indexes the help text and builds the two derived files where they are missing. Throws Failure
// "ERROR: Missing file QRX.HLP", or a message for a 101st page.
void IndexHelpFile();

}  // namespace kelvane
