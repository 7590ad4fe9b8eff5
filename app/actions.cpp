#include "app/actions.h"

#include "app/context_help.h"
#include "app/foot.h"
#include "designer/designer_window.h"
#include "document/paper.h"
#include "editing/bezier.h"
#include "editing/clipboard.h"
#include "editing/formula_entry.h"
#include "editing/item_edits.h"
#include "editing/keyboard.h"
#include "editing/modes.h"
#include "editing/properties.h"
#include "editing/selection.h"
#include "editing/shaping.h"
#include "editing/undo.h"
#include "help/help_window.h"
#include "macros/define_macro_window.h"
#include "output/pictures.h"
#include "papers/page_operations.h"
#include "papers/versions.h"
#include "papers/versions_window.h"
#include "platform/files.h"
#include "typography/view.h"
#include "typography/zoom.h"

namespace kelvane {

namespace {

bool PagesGoBack() {
  return PageStepBack().next && !RunIsOpen() && !PathIsOpen();
}
bool PagesGoForward() {
  return PageStepForward().next && !RunIsOpen() && !PathIsOpen();
}

// Windows of other folders, which are made when they are first shown.
void ShowWithHelp(void (*show)(), Window* const& window, const char* heading) {
  const bool made = window != nullptr;
  show();
  if (!made) AddHelpKeys(*window, heading);
}

}  // namespace

void ShowDone(const std::string& what, const std::string& path) {
  const std::string& trouble = VersionsTrouble();
  ShowNote(what + ": " + MachinePath(path) + (trouble.empty() ? "" : ". " + trouble));
}

bool PaperHasName() {
  return !CurrentPaperFile.empty();
}

bool UndoStep() {
  if (!FormulaIsOpen() && PagesGoBack()) return UndoPageOperation();
  FormulaIsOpen() ? UndoNotation() : Undo();
  return true;
}

bool RedoStep() {
  if (!FormulaIsOpen() && PagesGoForward()) return RedoPageOperation();
  FormulaIsOpen() ? RedoNotation() : Redo();
  return true;
}

std::string LabelBack() {
  if (FormulaIsOpen()) return CanUndoNotation() ? "typing" : "";
  return PagesGoBack() ? PageStepBack().label : UndoLabel();
}

std::string LabelForward() {
  if (FormulaIsOpen()) return CanRedoNotation() ? "typing" : "";
  return PagesGoForward() ? PageStepForward().label : RedoLabel();
}

void SelectEverything() {
  if (FormulaIsOpen()) return SelectWholeNotation();
  if (RunIsOpen()) return SelectWholeRun();
  LeaveEditing();
  SelectAll();
  ShowCursor();
}

bool IsSelecting() {
  return SelectedProperties().Count() > 0;
}

void CopyPicture() {
  ShowNote("Copied as a picture: the " + CopyAsPicture());
}

void PasteAtPointer() {
  Paste(PointerOnPaper());
}

bool MoveCurrentPage() {
  return MovePageToNumber(CurrentPageNumber);
}

void FitSelection() {
  FitBox({MarkedLeft, MarkedBottom, MarkedRight, MarkedTop});
}

bool PointIsPlaced() {
  return CursorMode < 0;
}

bool FillIsOn() {
  return ShapedLooksClosed() ? ShapedIsFilled() : FillClosed();
}

void ToggleFill() {
  if (ShapedLooksClosed()) return SetShapedFilled(!ShapedIsFilled());
  FillClosed() = !FillClosed();
  ShowCursor();
}

void ShapeSelected() {
  const SelectedItems selected = Selection();
  ShapeDrawing(selected.drawings.empty() ? 0 : selected.drawings.front()->id);
}

void OpenDesigner() {
  ShowWithHelp(ShowDesigner, DesignerWindow, kDesignerPage);
}

void OpenMacroDefinitions() {
  ShowWithHelp(ShowDefineMacro, Form7, "Macros");
}

void OpenVersions() {
  ShowWithHelp(ShowVersions, VersionsWindow, "Versions");
}

void OpenManual() {
  FormulaIsOpen() ? ShowHelpAt("Typing formulas") : ShowHelp();
}

}  // namespace kelvane
