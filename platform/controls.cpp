#include "platform/controls.h"

namespace kelvane {

Dialogs* TheDialogs = nullptr;
Toolkit* TheToolkit = nullptr;

}  // namespace kelvane
