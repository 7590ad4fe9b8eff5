#include "app/after_editing.h"

#include "editing/cursor.h"
#include "editing/keyboard.h"
#include "typography/colours.h"

namespace kelvane {

bool AfterEditing(const std::function<bool()>& command) {
  const std::int16_t mode = CursorMode;
  const auto giveModeBack = [mode] {
    CursorMode = mode;
    SetCanvasPointer(mode);
    DrawCursorMark(kBlue, false);
  };
  try {
    LeaveEditing();
    if (command()) return true;
  } catch (...) {
    giveModeBack();
    throw;
  }
  giveModeBack();
  return false;
}

}  // namespace kelvane
