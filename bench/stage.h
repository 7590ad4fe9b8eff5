// What the benchmarks share: a canvas to paint on, pages to paint, how often each is measured.
#pragma once

#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <QEvent>
#include <QObject>
#include <string>

#include "platform/qt/qt_canvas.h"

namespace kelvane {

// The default paper at the default scale.
constexpr int kWidth = 1188;
constexpr int kHeight = 1680;

// The whole paper in the view.
void ShowWholePaper();

// The editor in a window that shows all of the paper.
void ShowWholeEditor(const std::string& pageFile);

// Counts the paintings of a widget.
class PaintCounter : public QObject {
 public:
  int Count() const { return count_; }

 protected:
  bool eventFilter(QObject*, QEvent* event) override {
    if (event->type() == QEvent::Paint) ++count_;
    return false;
  }

 private:
  int count_ = 0;
};

// A canvas of its own, without a window around it.
struct Stage {
  QtCanvas canvas{nullptr};
  PaintCounter paintings;
  Canvas* editorCanvas;

  Stage();
  ~Stage();

  // Does something and waits until it is painted.
  template <typename Act>
  void Show(Act act) const {
    const int before = paintings.Count();
    act();
    while (paintings.Count() == before) QCoreApplication::processEvents();
  }
};

// Runs all over the paper, the same ones for a seed, so many device pixels high, in the first so many
// typefaces by turns.
void FillPage(int runs, float pixels, unsigned seed = 1, int faces = 1);

// What waits for the disk takes long, however little it computes.
void MeasureDisk(benchmark::internal::Benchmark* benchmark);
void Measure(benchmark::internal::Benchmark* benchmark);
void RunCounts(benchmark::internal::Benchmark* benchmark);

}  // namespace kelvane
