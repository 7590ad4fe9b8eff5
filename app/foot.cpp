#include "app/foot.h"

#include "document/numbers.h"
#include "editing/cursor.h"
#include "typography/view.h"

namespace kelvane {

namespace {

bool PointerInside;
float PointerX;  // canvas pixels
float PointerY;
std::string Warning;

Point PointerPoint() {
  return {VisibleLeft + PointerX / SCALE, VisibleTop + PointerY / SCALE};
}

std::string PointerPlace() {
  const auto [x, y] = PointerPoint();
  return FormatFixed(x, 1, true) + ", " + FormatFixed(y, 1, true) + " pt     on the grid " +
         FormatSingle(SnapToGrid(x, GridStepH)) + ", " + FormatSingle(SnapToGrid(y, GridStepV)) + " pt";
}

}  // namespace

void ResetFoot() {
  PointerInside = false;
  Warning.clear();
}

void PointerMoved(float pixelX, float pixelY) {
  PointerInside = true;
  PointerX = pixelX;
  PointerY = pixelY;
  ShowPointerPlace();
}

void PointerLeft() {
  PointerInside = false;
  ShowNote("");
}

void ShowPointerPlace() {
  if (PointerInside) ShowNote(PointerPlace());
}

std::optional<Point> PointerOnPaper() {
  const Point at = PointerPoint();
  const bool onPaper = at.x >= 0 && at.x <= PaperWidth && at.y >= 0 && at.y <= PaperHeight;
  return PointerInside && onPaper ? std::optional(at) : std::nullopt;
}

void ShowWarning(const std::string& text) {
  if (!text.empty()) {
    ShowNote(text);
  } else if (!Warning.empty() && NoteLabel->Text() == Warning) {
    ShowNote(PointerInside ? PointerPlace() : "");
  }
  Warning = text;
}

}  // namespace kelvane
