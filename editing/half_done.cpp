#include "editing/half_done.h"

#include <algorithm>
#include <optional>
#include <vector>

#include "document/page.h"
#include "document/page_items.h"
#include "editing/bezier.h"
#include "editing/edit.h"
#include "editing/formula_entry.h"
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

std::vector<std::uint64_t> NumbersOfItems(const std::vector<std::uint64_t>& ids) {
  std::vector<std::uint64_t> numbers;
  std::uint64_t number = 0;
  const auto look = [&](const auto& items) {
    for (const auto& item : items) {
      ++number;
      if (std::ranges::find(ids, item.id) != ids.end()) numbers.push_back(number);
    }
  };
  if (ids.empty()) return numbers;
  look(ItemsOfPage().Texts());
  look(ItemsOfPage().Drawings());
  return numbers;
}

std::vector<std::uint64_t> ItemsOfNumbers(const std::vector<std::uint64_t>& numbers) {
  const auto& texts = ItemsOfPage().Texts();
  const auto& drawings = ItemsOfPage().Drawings();
  std::vector<std::uint64_t> ids;
  for (const std::uint64_t number : numbers) {
    if (number == 0 || number > texts.size() + drawings.size()) continue;
    ids.push_back(number <= texts.size() ? texts[number - 1].id : drawings[number - 1 - texts.size()].id);
  }
  return ids;
}

}  // namespace

HalfDone HalfDoneNow() {
  HalfDone half = {.mode = CursorMode,
                   .cursor = {CursorX, CursorY},
                   .size = FontSize,
                   .font = BaseFont,
                   .run = PendingRun,
                   .caret = static_cast<std::uint32_t>(RunBeforeCaret().size()),
                   .retyped = NumberOfItem(RetypedItem()),
                   .path = CurrentDrawing,
                   .shape = DrawnShape,
                   .placeChosen = PlaceChosen(),
                   .notation = {},
                   .instead = {}};
  if (const std::optional<FormulaInTheMaking> formula = FormulaNow()) {
    half.size = formula->style.size;
    half.font = formula->style.font;
    half.notation = formula->notation;
    half.caret = static_cast<std::uint32_t>(formula->caret);
    half.instead = NumbersOfItems(formula->instead);
  }
  return half;
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
  if (!half.notation.empty() && CursorMode < 0)
    TakeUpFormula({half.notation, half.caret, {half.size, true, half.font}, ItemsOfNumbers(half.instead)});
  ShowCursor();
}

}  // namespace kelvane
