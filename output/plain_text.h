#pragma once

// The words of a page as a plain text file.

#include <string>

namespace kelvane {

// Forgets which text files were written; they are then asked about before they are replaced.
void ResetPlainText();

// One line per run without codes of 224 and above, then an empty line; CR LF.
std::string PlainText(const std::string& pageFile);

// The menu command: asks for a page file and writes its text beside it. Asks before it replaces a file that
// it did not write itself since the program started. Returns the output's path, or nothing.
std::string OutputAsText();

}  // namespace kelvane
