#pragma once

// The window "Export PDF": which pages, with or without bookmarks, and how far it has come.

#include "platform/controls.h"

namespace kelvane {

extern Window* PdfWindow;  // null until it is first shown

void ResetPdfWindow();

void ShowPdfWindow();
// Gives up what is being exported; no part of a file is left.
void CancelPdfExport();

}  // namespace kelvane
