#pragma once

// A printer on which every sheet is a picture that remembers what was drawn.

#include <memory>
#include <vector>

#include "platform/printer.h"
#include "tests/support/recording_canvas.h"

namespace kelvane {

class FakePrinter : public Printer {
 public:
  PrintJob job;                     // the last one
  std::vector<std::string> sheets;  // of all jobs
  bool cancels = false;

  bool Print(const PrintJob& newJob) override {
    job = newJob;
    if (cancels) return false;
    for (const int page : job.pages) {
      RecordingImage sheet(static_cast<int>(job.width), static_cast<int>(job.height), false);
      job.paint(page, kRatio, sheet);
      sheets.push_back(sheet.drawn);
    }
    return true;
  }
  void Preview(const PrintJob& newJob) override { Print(newJob); }

 private:
  static constexpr float kRatio = 1200.0F / 72;
};

}  // namespace kelvane
