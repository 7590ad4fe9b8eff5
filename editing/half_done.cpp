#include "editing/half_done.h"

#include <algorithm>

#include "document/page.h"
#include "document/page_items.h"
#include "editing/bezier.h"
#include "editing/edit.h"
#include "editing/keyboard.h"
#include "editing/modes.h"
#include "editing/pending_run.h"
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
  const auto item =
      std::find_if(texts.begin(), texts.end(), [id](const TextItem& text) { return text.id == id; });
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
  if (half.mode == kBezierMode) {
    ChooseShape(half.shape);
    CurrentDrawing = half.path;
    ShowCursor();
    return;
  }
  // What waits in the box for a place is not to make room for nothing.
  const std::string run = half.run.empty() ? PendingRun : half.run;
  TextEntry entry;
  entry.x = half.cursor.x;
  entry.y = half.cursor.y;
  entry.size = half.size;
  entry.font = half.font;
  entry.text = run;
  TakeMode(0);
  const auto& texts = ItemsOfPage().Texts();
  if (half.retyped > 0 && half.retyped <= texts.size()) {
    RetypeItem(texts[half.retyped - 1].id, half.cursor);
  } else if (AnchorOfMode(half.mode) != 0) {
    TakeMode(half.mode);
  }
  TakeRunOf(entry, half.caret);
  ShowCursor();
}

}  // namespace kelvane
