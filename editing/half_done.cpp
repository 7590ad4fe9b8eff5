#include "editing/half_done.h"

#include <algorithm>
#include <optional>
#include <utility>

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

// The same of the items that a formula takes the place of, and back.
const std::vector<std::uint64_t>& NumbersOfItems(const std::vector<std::uint64_t>& ids) {
  static std::vector<std::uint64_t> known;
  static std::vector<std::uint64_t> numbers;
  if (ids == known) return numbers;
  known = ids;
  numbers.clear();
  std::uint64_t number = 0;
  const auto take = [&](const auto& items) {
    for (const auto& item : items) {
      ++number;
      if (std::ranges::find(ids, item.id) != ids.end()) numbers.push_back(number);
    }
  };
  take(ItemsOfPage().Texts());
  take(ItemsOfPage().Drawings());
  return numbers;
}

std::vector<std::uint64_t> ItemsNumbered(const std::vector<std::uint64_t>& numbers) {
  std::vector<std::uint64_t> ids;
  const auto& texts = ItemsOfPage().Texts();
  const auto& drawings = ItemsOfPage().Drawings();
  for (const std::uint64_t number : numbers) {
    if (number == 0 || number > texts.size() + drawings.size()) continue;
    ids.push_back(number <= texts.size() ? texts[number - 1].id : drawings[number - texts.size() - 1].id);
  }
  return ids;
}

}  // namespace

HalfDone HalfDoneNow() {
  HalfDone half{.mode = CursorMode,
                .cursor = {CursorX, CursorY},
                .size = FontSize,
                .font = BaseFont,
                .run = PendingRun,
                .notation = {},
                .caret = static_cast<std::uint32_t>(RunBeforeCaret().size()),
                .retyped = NumberOfItem(RetypedItem()),
                .replaced = {},
                .path = CurrentDrawing,
                .shape = DrawnShape,
                .placeChosen = PlaceChosen()};
  if (std::optional<FormulaInMaking> formula = FormulaNow()) {
    half.size = formula->style.size;
    half.font = formula->style.font;
    half.caret = static_cast<std::uint32_t>(formula->caret);
    half.run = std::move(formula->behind);
    half.notation = std::move(formula->notation);
    half.replaced = NumbersOfItems(formula->instead);
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
  const bool formula = !half.notation.empty() && half.mode < 0 && AnchorOfMode(half.mode) != 0;
  // What waits in the box for a place is not to make room for nothing.
  const std::string run = formula ? std::string() : half.run.empty() ? PendingRun : half.run;
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
  if (formula)
    TakeUpFormula(
        {half.notation, half.caret, {half.size, true, half.font}, ItemsNumbered(half.replaced), half.run});
  ShowCursor();
}

}  // namespace kelvane
