#include "app/typing_view.h"

#include <string>

#include "app/foot.h"
#include "document/numbers.h"
#include "editing/cursor.h"
#include "editing/formula_entry.h"
#include "editing/keyboard.h"
#include "typography/glyphs.h"
#include "typography/typefaces.h"
#include "typography/view.h"
#include "typography/zoom.h"

namespace kelvane {

namespace {

std::string TypingWarning() {
  if (!(FontSize > 0)) return "Size " + FormatSingle(FontSize) + ": what is typed will not be seen";
  if (CursorMode >= 0) return {};
  if (CursorX < 0 || CursorX > PaperWidth || CursorY < 0 || CursorY > PaperHeight)
    return "The cursor point is outside the paper";
  const RunEnds run = EndsOfRun();
  return run.start.x < 0 || run.end.x > PaperWidth ? "The run passes the paper's edge" : "";
}

}  // namespace

void FollowTyping() {
  if (CursorMode < 0) {
    const Point caret = FormulaIsOpen() ? FormulaCaret() : EndsOfRun().caret;
    BringIntoView(caret.x, caret.y);
    if (RunIsOpen() || FormulaIsOpen()) Picture1->ShowNow();
  }
  WarnOfTyping();
}

void WarnOfTyping() {
  ShowWarning(TypingWarning());
}

}  // namespace kelvane
