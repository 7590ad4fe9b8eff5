// How long it takes on a page of 5,000 items to find what lies under the pointer, to drag, to nudge and to
// undo, with one item selected and with all of them.

#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <random>
#include <string>

#include "app/main_window.h"
#include "app/startup.h"
#include "document/page.h"
#include "document/page_items.h"
#include "editing/edit.h"
#include "editing/modes.h"
#include "editing/selection.h"
#include "editing/undo.h"
#include "typography/item_boxes.h"

namespace kelvane {
namespace {

constexpr int kRuns = 4000;
constexpr int kDrawings = 1000;
constexpr float kPaper = 594;       // points
constexpr float kTolerance = 1.5F;  // points: three pixels at the usual scale

// Runs with scripts at all anchors, and drawings of three curves, all over the paper.
Page BusyPage(std::minstd_rand& random) {
  const auto number = [&](unsigned below) { return std::to_string(random() % below); };
  Page page;
  for (int i = 0; i < kRuns; ++i) {
    page.text += number(594) + ' ' + number(840) + " m 11 F" + number(9) + " (a\xF0" + number(99) +
                 "\xF2 = \xECx\xE0 + b) " + std::to_string(1 + random() % 9) + " s\r\n";
  }
  for (int i = 0; i < kDrawings; ++i) {
    std::string line = number(594) + ' ' + number(840) + " m 0.5 lw";
    for (int segment = 0; segment < 3; ++segment)
      line += ' ' + number(40) + ' ' + number(40) + ' ' + number(40) + ' ' + number(40) + " rb";
    page.drawings += LineToDrawingRecord(line + " stroke") + "\r\n";
  }
  page.drawingCount = kDrawings;
  return page;
}

void Pick(benchmark::State& state) {
  std::minstd_rand random(7);
  const PageItems items(BusyPage(random));
  std::uniform_real_distribution<float> anywhere(0, kPaper);
  for (auto _ : state) {
    const Point point{anywhere(random), anywhere(random)};
    int hits = 0;
    for (const TextItem& item : items.Texts())
      hits += DistanceTo(item.entry, point, kTolerance) <= kTolerance;
    for (const DrawingItem& item : items.Drawings())
      hits += DistanceTo(item.drawing, point, kTolerance) <= kTolerance;
    benchmark::DoNotOptimize(hits);
  }
}

// Marking a box looks at the ink of every item.
void AllInkBoxes(benchmark::State& state) {
  std::minstd_rand random(7);
  const PageItems items(BusyPage(random));
  for (auto _ : state) {
    for (const TextItem& item : items.Texts()) benchmark::DoNotOptimize(InkBoxOf(item.entry));
    for (const DrawingItem& item : items.Drawings()) benchmark::DoNotOptimize(InkBoxOf(item.drawing));
  }
}

// The editor on that page, in Select, the first item or all of them selected.
void OpenBusyPage(bool all) {
  std::minstd_rand random(7);
  ShowEditor({});
  ThePage = BusyPage(random);
  ResetEdits();
  LeaveEditing();
  SelectAll();
  if (!all) Select({ItemsOfPage().Texts().front().id});
  QCoreApplication::processEvents();
}

void Nudge(benchmark::State& state) {
  OpenBusyPage(state.range(0) != 0);
  for (auto _ : state) Form1_Picture1_KeyPress(kKeyRight);
}

// Both of them: half of it is one.
void UndoAndRedo(benchmark::State& state) {
  OpenBusyPage(state.range(0) != 0);
  Form1_Picture1_KeyPress(kKeyRight);
  for (auto _ : state) {
    Undo();
    Redo();
  }
}

// A move of the mouse, and the screen shown.
void DragStep(benchmark::State& state) {
  OpenBusyPage(state.range(0) != 0);
  const TextEntry& entry = ItemsOfPage().Texts().front().entry;
  const Box ink = InkBoxOf(entry);
  MouseEvent mouse;
  mouse.x = (ink.left + ink.right) / 2;
  mouse.y = (ink.top + ink.bottom) / 2;
  Form1_Picture1_MouseDown(mouse);
  float way = 10;
  for (auto _ : state) {
    mouse.x += way;
    way = -way;
    Form1_Picture1_MouseMove(mouse);
    QCoreApplication::processEvents();
  }
  Form1_Picture1_KeyPress(kKeyEscape);
  Form1_Picture1_MouseUp(mouse);
}

void OneAndAll(benchmark::internal::Benchmark* benchmark) {
  benchmark->ArgNames({"all"})->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond)->Repetitions(9)->MinTime(0.1);
}
BENCHMARK(Nudge)->Apply(OneAndAll);
BENCHMARK(UndoAndRedo)->Apply(OneAndAll);
BENCHMARK(DragStep)->Apply(OneAndAll);
BENCHMARK(Pick)->Unit(benchmark::kMillisecond)->Repetitions(15)->MinTime(0.05);
BENCHMARK(AllInkBoxes)->Unit(benchmark::kMillisecond)->Repetitions(15)->MinTime(0.05);

}  // namespace
}  // namespace kelvane
