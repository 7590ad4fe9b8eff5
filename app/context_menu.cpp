#include "app/context_menu.h"

#include <initializer_list>
#include <string_view>
#include <vector>

#include "app/menu_bar.h"
#include "editing/cursor.h"
#include "editing/keyboard.h"
#include "editing/picking.h"
#include "editing/properties.h"
#include "papers/paper_commands.h"

namespace kelvane {

namespace {

Menu* OfItems;  // texts and drawings
Menu* OfTexts;
Menu* OfDrawings;
Menu* OfShaped;
Menu* OfPage;
Menu* OfRun;

Menu* MenuAt(Point at) {
  if (CursorMode == kShapingMode) return OfShaped;
  if (CursorMode == 0) {
    if (!SelectUnder(at)) return OfPage;
    const Properties& selected = SelectedProperties();
    return selected.drawings == 0 ? OfTexts : selected.texts == 0 ? OfDrawings : OfItems;
  }
  if (AnchorOfMode(CursorMode) == 0) return nullptr;
  return RunIsOpen() ? OfRun : OfPage;
}

void Build(Window& window) {
  const std::vector<std::string_view> anyItem = {"mEditCut", "mEditCopy", "mEditDelete",   "mEditDuplicate",
                                                 "",         "mEditOpen", "mEditPosition", "&Edit/Arrang&e"};
  const std::vector<std::string_view> text = {"&Edit/Anc&hor", "F&ormat/Font &Name"};
  const std::vector<std::string_view> drawing = {"F&ormat/&Line Colour", "F&ormat/Line &Thickness"};
  const auto build = [&](std::initializer_list<std::vector<std::string_view>> parts) {
    std::vector<std::string_view> rows;
    for (const auto& part : parts) {
      if (!rows.empty()) rows.emplace_back();
      rows.insert(rows.end(), part.begin(), part.end());
    }
    return BuildPopup(window, rows);
  };
  OfItems = build({anyItem, text, drawing});
  OfTexts = build({anyItem, text});
  OfDrawings = build({anyItem, drawing});
  OfShaped =
      build({{"mDrawAddPoint", "mDrawRemovePoint", "mDrawSplit", "mDrawJoin"}, {"mDrawFill"}, drawing});
  OfPage = BuildPopup(window, {"mEditPaste", "", "mEditSelectAll"});
  OfRun = BuildPopup(window, {"mEditCut", "mEditCopy", "mEditPaste"});
}

}  // namespace

void ResetContextMenus() {
  OfItems = OfTexts = OfDrawings = OfShaped = OfPage = OfRun = nullptr;
}

void OpenContextMenu(const MouseEvent& event) {
  ToolInForce().RightClick();
  if (!OfPage) Build(*Form1);
  Menu* menu = MenuAt({event.x, event.y});
  if (menu) Form1->ShowPopup(menu, Picture1, event.pixelX, event.pixelY);
}

}  // namespace kelvane
