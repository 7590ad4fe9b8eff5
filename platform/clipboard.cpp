#include "platform/clipboard.h"

namespace kelvane {

Clipboard* TheClipboard = nullptr;

}  // namespace kelvane
