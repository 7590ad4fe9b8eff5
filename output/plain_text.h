#pragma once

// The words of a page as a plain text file.

#include <string>

namespace kelvane {

// One line per run without codes of 224 and above, then an empty line; CR LF.
std::string PlainText(const std::string& pageFile);

// The menu command: asks for a page file and writes its text beside it.
void OutputAsText();

}  // namespace kelvane
