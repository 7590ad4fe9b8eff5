#include "editing/half_done.h"

#include <algorithm>

#include "document/numbers.h"
#include "document/page_items.h"
#include "editing/bezier.h"
#include "editing/edit.h"
#include "editing/keyboard.h"
#include "editing/modes.h"
#include "typography/typefaces.h"

namespace kelvane {

namespace {

// Looked up once: while an item is being retyped the page stays.
std::uint64_t NumberOfItem(std::uint64_t id) {
  static std::uint64_t known = 0;
  static std::uint64_t number = 0;
  if (id == known) return number;
  known = id;
  number = 0;
  if (id == 0) return 0;
  const auto& texts = ItemsOfPage().Texts();
  const auto item = std::find_if(texts.begin(), texts.end(), [id](const TextItem& text) { return text.id == id; });
  if (item != texts.end()) number = static_cast<std::uint64_t>(item - texts.begin()) + 1;
  return number;
}

}  // namespace

HalfDone HalfDoneNow() {
  return {.mode = CursorMode,
          .cursor = {CursorX, CursorY},
          .size = FontSize,
          .font = BaseFont,
          .run = PendingRun,
          .caret = static_cast<std::uint32_t>(RunBeforeCaret().size()),
          .retyped = NumberOfItem(RetypedItem()),
          .path = CurrentDrawing,
          .shape = DrawnShape,
          .placeChosen = PlaceChosen()};
}

void TakeUp(const HalfDone& half) {
  const int anchor = AnchorOfMode(half.mode);
  if (half.mode == kBezierMode) {
    ChooseShape(half.shape);
    CurrentDrawing = half.path;
    ShowCursor();
    return;
  }
  TakeMode(0);
  const auto& texts = ItemsOfPage().Texts();
  if (half.retyped > 0 && half.retyped <= texts.size()) {
    RetypeItem(texts[half.retyped - 1].id, half.cursor);
    if (Retyping()) return PutRun(half.run, half.caret);
  }
  if (anchor != 0) {
    TakeMode(half.mode);
    CursorX = half.cursor.x;
    CursorY = half.cursor.y;
  }
  BaseFont = half.font;
  CheckFontMenu(BaseFont);
  FontSize = half.size;
  if (Text1) Text1->SetText(FormatSingle(FontSize));
  // What waits in the box for a place is not to make room for nothing.
  if (!half.run.empty()) PutRun(half.run, half.caret);
}

}  // namespace kelvane
