#pragma once

// What commands of the main window do where that is more than one routine of a subject, and what tells
// whether they can be chosen. The table of the commands says which of them does what.

#include <string>

namespace kelvane {

// At the foot of the window: what was done with a file. What leaves no trace on the page says so there.
void ShowDone(const std::string& what, const std::string& path);
bool PaperHasName();

// The step that Undo or Redo takes: one of the notation being typed, else one through the row of pages if
// that was the last that was done, else one through the edits of the page. The label of it is empty if there
// is none. False if the person gave it up.
bool UndoStep();
bool RedoStep();
std::string LabelBack();
std::string LabelForward();

// The whole of what is being typed, else all items of the page.
void SelectEverything();
bool IsSelecting();
void CopyPicture();
void PasteAtPointer();
bool MoveCurrentPage();
void FitSelection();

// Whether what is typed goes to the page.
bool PointIsPlaced();

// Whether drawings are filled: the one being shaped if it is closed, else those that are drawn from now on.
bool FillIsOn();
void ToggleFill();
// The drawing that is selected is the one to be shaped.
void ShapeSelected();

void OpenDesigner();
void OpenMacroDefinitions();
void OpenVersions();
void OpenManual();

}  // namespace kelvane
