#include "app/after_editing.h"

#include "editing/modes.h"

namespace kelvane {

bool AfterEditing(const std::function<bool()>& command) {
  const std::int16_t mode = CursorMode;
  try {
    LeaveEditing();
    if (command()) return true;
  } catch (...) {
    TakeMode(mode);
    throw;
  }
  TakeMode(mode);
  return false;
}

}  // namespace kelvane
