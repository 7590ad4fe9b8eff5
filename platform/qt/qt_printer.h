#pragma once

// Printers by way of the desktop's dialogs.

#include "platform/printer.h"

namespace kelvane {

class QtPrinter final : public Printer {
 public:
  bool Print(const PrintJob& job) override;
  void Preview(const PrintJob& job) override;
};

}  // namespace kelvane
