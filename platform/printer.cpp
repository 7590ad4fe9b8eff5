#include "platform/printer.h"

namespace kelvane {

Printer* ThePrinter = nullptr;

}  // namespace kelvane
