#include "bench/stage.h"

#include <random>
#include <string>

#include "app/settings.h"
#include "app/startup.h"
#include "document/page.h"
#include "editing/bezier.h"
#include "editing/cursor.h"
#include "editing/edit.h"
#include "editing/modes.h"
#include "papers/paper_commands.h"
#include "typography/renderer.h"
#include "typography/typefaces.h"
#include "typography/view.h"
#include "typography/zoom.h"

namespace kelvane {
namespace {

constexpr int kCharacters = 10;
constexpr int kRepetitions = 9;

}  // namespace

void ShowWholePaper() {
  STARTX = PaperWidth / 2;
  STARTY = PaperHeight / 2;
}

void ShowWholeEditor(const std::string& pageFile) {
  constexpr float kAround = 100;  // pixels that the controls around the canvas take at most
  FormPlace = {0, 0, (kWidth + kAround) * kTwipsPerPixel, (kHeight + kAround) * kTwipsPerPixel};
  ShowEditor(pageFile);
  ShowWholePaper();
  RedrawPage();
}

Stage::Stage() : editorCanvas(Picture1) {
  // Not all of the program: its windows are needed again.
  ClearPage();
  ResetView();
  ResetCursor();
  ResetBezier();
  ResetEdits();
  if (Form1) Form1->Hide();  // its bars would follow the view
  for (TypefaceRecord& face : TypefaceTable) {
    face.Widths.fill(500);
    face.WidthUnit = 600;
  }
  canvas.resize(kWidth, kHeight);
  canvas.show();
  QCoreApplication::processEvents();
  Picture1 = &canvas;
  ShowWholePaper();
  canvas.OnPaint = PaintLayer;
  canvas.installEventFilter(&paintings);
  RedrawPage();
  QCoreApplication::processEvents();
}

Stage::~Stage() {
  Picture1 = editorCanvas;
}

void Stage::ShowFilledPage() const {
  Show([] { ShowPage(); });
}

void FillPage(int runs, float pixels, unsigned seed, int faces) {
  std::minstd_rand random(seed);
  const float size = pixels / SCALE;
  std::uniform_real_distribution<float> across(0, PaperWidth - kCharacters * 0.5F * size);
  std::uniform_real_distribution<float> down(size, PaperHeight);
  PageText.clear();
  for (int i = 0; i < runs; ++i) {
    std::string run;
    for (int c = 0; c < kCharacters; ++c) run += static_cast<char>('a' + random() % 26);
    PageText += std::to_string(across(random)) + ' ' + std::to_string(down(random)) + " m " +
                std::to_string(size) + " F" + std::to_string(i % faces) + " (" + run + ") 3 s\r\n";
  }
}

void MeasureDisk(benchmark::internal::Benchmark* benchmark) {
  benchmark->Unit(benchmark::kMillisecond)->Repetitions(5)->Iterations(4)->MeasureProcessCPUTime();
}
void Measure(benchmark::internal::Benchmark* benchmark) {
  benchmark->Unit(benchmark::kMillisecond)->Repetitions(kRepetitions)->MinTime(0.05)->MeasureProcessCPUTime();
}
void RunCounts(benchmark::internal::Benchmark* benchmark) {
  benchmark->ArgNames({"runs"})->Arg(1000)->Arg(10000)->Apply(Measure);
}

}  // namespace kelvane
