#include "app/context_menu.h"

#include "app/menus.h"
#include "editing/keyboard.h"
#include "editing/select_tool.h"
#include "papers/paper_commands.h"

namespace kelvane {

namespace {

Menu* OfItem;
Menu* OfPage;
Menu* OfRun;

Menu* MenuAt(Point at) {
  if (CursorMode == 0) return SelectUnder(at) ? OfItem : OfPage;
  if (AnchorOfMode(CursorMode) == 0) return nullptr;
  return RunIsOpen() ? OfRun : OfPage;
}

void Build(Window& window) {
  OfItem = BuildPopup(window, {"mEditCut", "mEditCopy", "mEditDelete", "mEditDuplicate", "", "mEditOpen",
                               "mEditPosition", "&Edit/Anc&hor", "&Edit/Arrang&e", "", "F&ormat/Font &Name",
                               "F&ormat/&Line Colour", "F&ormat/Line &Thickness"});
  OfPage = BuildPopup(window, {"mEditPaste", "", "mEditSelectAll"});
  OfRun = BuildPopup(window, {"mEditCut", "mEditCopy", "mEditPaste"});
}

}  // namespace

void ResetContextMenus() {
  OfItem = OfPage = OfRun = nullptr;
}

void OpenContextMenu(const MouseEvent& event) {
  ToolInForce().RightClick();
  if (!OfItem) Build(*Form1);
  Menu* menu = MenuAt({event.x, event.y});
  if (menu) Form1->ShowPopup(menu, Picture1, event.pixelX, event.pixelY);
}

}  // namespace kelvane
