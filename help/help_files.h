#pragma once

// The help text QRX.HLP and its derived contents (QRX.HCT) and index (QRX.HIX) files.

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace kelvane {

inline constexpr int kMostHelpPages = 100;
// Byte positions of the lines that start pages 1, 2, ... of QRX.HLP.
extern std::vector<std::int64_t> HelpPageStarts;

// Checks and indexes the help text and builds the two derived files where they are missing. Throws Failure
// "ERROR: Missing file QRX.HLP", or a message for a 101st page.
void IndexHelpFile();

// What the derived files hold when they are made of this text.
std::string ContentsOfHelp(std::string_view help);
std::string IndexOfHelp(std::string_view help);

}  // namespace kelvane
