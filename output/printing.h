#pragma once

// Printing on the machine's printers, which takes the page as it is in memory and the others from their
// files.

namespace kelvane {

// Return false if the person cancelled.
bool PrintToPrinter();
bool PreviewPrint();

}  // namespace kelvane
