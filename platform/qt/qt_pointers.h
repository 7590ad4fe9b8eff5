#pragma once

// Mouse pointers from icon files.

#include <QCursor>
#include <string>

namespace kelvane {

// The pointer of a .ICO or .CUR file, backslash path; null if the file cannot be read as one. Read once and
// kept. A cursor file says where its hot spot is; that of an icon is its centre.
const QCursor* PointerFromFile(const std::string& path);

}  // namespace kelvane
