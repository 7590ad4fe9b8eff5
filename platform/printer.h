#pragma once

// Printing on the machine's printers.

#include <functional>
#include <string>
#include <vector>

#include "platform/canvas.h"

namespace kelvane {

struct PrintJob {
  std::string title;  // what the printer's queue shows
  float width = 0;    // of the sheets, points
  float height = 0;
  std::vector<int> pages;  // numbers, rising; the person chooses from them
  int current = 1;         // one of them
  // Paints a page. Logical coordinates and pixels are points of the sheet, `ratio` dots of the printer make
  // one. What it throws ends the job.
  std::function<void(int page, float ratio, Painter&)> paint;
};

class Printer {
 public:
  virtual ~Printer() = default;
  // Asks with the desktop's dialog for printer, range, copies and sheets, and prints. False if the person
  // cancelled, there or while it was printing; nothing is left of a file that was printed to. Throws Failure
  // if it could not be printed.
  virtual bool Print(const PrintJob& job) = 0;
  // Shows what would be printed, of many pages some at a time from the current one on, and prints from there.
  virtual void Preview(const PrintJob& job) = 0;
};

// In use by the whole program; start-up and tests set it.
extern Printer* ThePrinter;

}  // namespace kelvane
