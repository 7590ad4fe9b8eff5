// Pages opened, saved, printed and turned. Beside it the bare system doing the same work.

#include <QWidget>
#include <cstdint>
#include <filesystem>
#include <string>

#include "app/startup.h"
#include "bench/stage.h"
#include "document/page.h"
#include "document/page_items.h"
#include "document/paper.h"
#include "editing/cursor.h"
#include "output/postscript.h"
#include "papers/paper_commands.h"
#include "platform/files.h"

namespace kelvane {
namespace {

std::string ScratchFile(const std::string& name) {
  return BackslashPath((std::filesystem::temp_directory_path() / name).string());
}

void Save(benchmark::State& state) {
  const Stage stage;
  FillPage(static_cast<int>(state.range(0)), 24);
  const std::string path = ScratchFile("kelvane-bench.001");
  for (auto _ : state) WritePageSorted(path);
  TheFiles->Remove(path);
}

// The same bytes, safely put in the place of the old file.
void BareSave(benchmark::State& state) {
  const Stage stage;
  FillPage(static_cast<int>(state.range(0)), 24);
  const std::string path = ScratchFile("kelvane-bench.001");
  for (auto _ : state) WriteFileSafely(path, PageText);
  TheFiles->Remove(path);
}

void Open(benchmark::State& state) {
  const Stage stage;
  FillPage(static_cast<int>(state.range(0)), 24);
  const std::string path = ScratchFile("kelvane-bench.001");
  WritePageSorted(path);
  for (auto _ : state) {
    ReadPage(path);
    benchmark::DoNotOptimize(ItemsOfPage().Texts().data());
  }
  TheFiles->Remove(path);
}

void BareOpen(benchmark::State& state) {
  const Stage stage;
  FillPage(static_cast<int>(state.range(0)), 24);
  const std::string path = ScratchFile("kelvane-bench.001");
  WritePageSorted(path);
  for (auto _ : state) benchmark::DoNotOptimize(TheFiles->ReadWhole(path));
  TheFiles->Remove(path);
}

// A paper of pages with 100 runs each, as long as it is needed.
class ScratchPaper {
 public:
  explicit ScratchPaper(int pages) : pages_(pages) {
    for (int number = 1; number <= pages; ++number) {
      FillPage(100, 24, static_cast<unsigned>(number));
      WritePagePlain(Page(number));
    }
    // Nothing that one would be asked about.
    ClearPage();
    PageChanged = 0;
  }
  ~ScratchPaper() {
    for (int number = 1; number <= pages_; ++number) TheFiles->Remove(Page(number));
    if (TheFiles->Exists(Output())) TheFiles->Remove(Output());
  }
  ScratchPaper(const ScratchPaper&) = delete;
  ScratchPaper& operator=(const ScratchPaper&) = delete;

  std::string Page(int number) const { return PageFileName(first_, number); }
  std::string Output() const { return ScratchFile("kelvane-bench.ps"); }

 private:
  int pages_;
  std::string first_ = ScratchFile("kelvane-bench-paper.001");
};

void Print(benchmark::State& state) {
  const Stage stage;
  const ScratchPaper paper(static_cast<int>(state.range(0)));
  WriteFileSafely(paper.Output(), "");
  for (auto _ : state) WriteFileSafely(paper.Output(), WholePaperJob(paper.Page(1)));
}

// The paper's bytes copied.
void BarePrint(benchmark::State& state) {
  const Stage stage;
  const ScratchPaper paper(static_cast<int>(state.range(0)));
  WriteFileSafely(paper.Output(), "");
  for (auto _ : state) {
    std::string all;
    for (int number = 1; number <= state.range(0); ++number) all += TheFiles->ReadWhole(paper.Page(number));
    WriteFileSafely(paper.Output(), all);
  }
}

// There and back, in the whole editor.
void TurnPage(benchmark::State& state) {
  const ScratchPaper paper(static_cast<int>(state.range(0)));
  ShowWholeEditor(paper.Page(1));
  QCoreApplication::processEvents();
  PaintCounter paintings;
  auto* widget = dynamic_cast<QWidget*>(Picture1);
  widget->installEventFilter(&paintings);
  std::int16_t to = 2;
  for (auto _ : state) {
    const int before = paintings.Count();
    GoToPage(to);
    while (paintings.Count() == before) QCoreApplication::processEvents();
    to = static_cast<std::int16_t>(3 - to);
  }
  widget->removeEventFilter(&paintings);
}

BENCHMARK(BareOpen)->Apply(RunCounts);
BENCHMARK(Open)->Apply(RunCounts);
BENCHMARK(BareSave)->ArgNames({"runs"})->Arg(10000)->Apply(MeasureDisk);
BENCHMARK(Save)->ArgNames({"runs"})->Arg(10000)->Apply(MeasureDisk);
BENCHMARK(BarePrint)->ArgNames({"pages"})->Arg(999)->Apply(MeasureDisk);
BENCHMARK(Print)->ArgNames({"pages"})->Arg(999)->Apply(MeasureDisk);
BENCHMARK(TurnPage)->ArgNames({"pages"})->Arg(3)->Apply(MeasureDisk);

}  // namespace
}  // namespace kelvane
