// How long a full redraw of a page takes beside the same characters drawn by bare Qt, and how long a key
// press and a movement of the mouse take until they are painted. Prints the medians and, at the end, the
// ratios.

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QFont>
#include <QGlyphRun>
#include <QImage>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QRawFont>
#include <algorithm>
#include <cstdio>
#include <map>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "app/settings.h"
#include "app/startup.h"
#include "document/lines.h"
#include "document/page.h"
#include "editing/bezier.h"
#include "editing/cursor.h"
#include "editing/keyboard.h"
#include "editing/modes.h"
#include "platform/files.h"
#include "platform/qt/qt_canvas.h"
#include "platform/qt/qt_dialogs.h"
#include "platform/qt/qt_toolkit.h"
#include "typography/glyphs.h"
#include "typography/metrics.h"
#include "typography/renderer.h"
#include "typography/typefaces.h"
#include "typography/view.h"

namespace kelvane {
namespace {

// The default paper at the default scale.
constexpr int kWidth = 1188;
constexpr int kHeight = 1680;
constexpr int kCharacters = 10;
constexpr int kRepetitions = 15;

void ShowWholePaper() {
  STARTX = PaperWidth / 2;
  STARTY = PaperHeight / 2;
}

// A canvas of its own, without a window around it.
struct Stage {
  QtCanvas canvas{nullptr};
  Canvas* editorCanvas = Picture1;

  Stage() {
    ResetProgram();
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
  }
  ~Stage() { Picture1 = editorCanvas; }
};

// Runs all over the paper, the same ones each time.
void FillPage(int runs, float pixels) {
  std::minstd_rand random(1);
  const float size = pixels / SCALE;
  std::uniform_real_distribution<float> across(0, PaperWidth - kCharacters * 0.5F * size);
  std::uniform_real_distribution<float> down(size, PaperHeight);
  PageText.clear();
  for (int i = 0; i < runs; ++i) {
    std::string run;
    for (int c = 0; c < kCharacters; ++c) run += static_cast<char>('a' + random() % 26);
    PageText += std::to_string(across(random)) + ' ' + std::to_string(down(random)) + " m " +
                std::to_string(size) + " F0 (" + run + ") 3 s\r\n";
  }
}

// The page's characters as bare Qt takes them: font, glyphs and positions, ready to be drawn.
std::vector<QGlyphRun> GlyphRunsOfPage(float pixels) {
  QFont wanted(QStringLiteral("Nimbus Roman"));
  wanted.setPixelSize(static_cast<int>(pixels));
  wanted.setHintingPreference(QFont::PreferNoHinting);
  wanted.setStyleStrategy(QFont::NoFontMerging);
  const QRawFont font = QRawFont::fromFont(wanted);
  std::vector<QGlyphRun> runs;
  for (std::string_view rest = PageText; !rest.empty();) {
    TextEntry entry;
    ParseTextEntry(TakeLine(rest), entry);
    QList<QPointF> positions;
    for (const char c : entry.text) {
      positions.append(QPointF(entry.x * SCALE, entry.y * SCALE));
      entry.x += Advance(c, 0, entry.size);
    }
    QGlyphRun& run = runs.emplace_back();
    run.setRawFont(font);
    run.setGlyphIndexes(font.glyphIndexesForString(
        QString::fromLatin1(entry.text.data(), static_cast<qsizetype>(entry.text.size()))));
    run.setPositions(positions);
  }
  return runs;
}

void BareQt(benchmark::State& state) {
  const Stage stage;
  const auto pixels = static_cast<float>(state.range(1));
  FillPage(static_cast<int>(state.range(0)), pixels);
  const std::vector<QGlyphRun> runs = GlyphRunsOfPage(pixels);
  QImage image(kWidth, kHeight, QImage::Format_RGB32);
  for (auto _ : state) {
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    for (const QGlyphRun& run : runs) painter.drawGlyphRun(QPointF(), run);
  }
}

void Redraw(benchmark::State& state) {
  const Stage stage;
  FillPage(static_cast<int>(state.range(0)), static_cast<float>(state.range(1)));
  for (auto _ : state) RedrawPage();
}

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

// The whole editor with room for the paper.
void ShowWholeEditor() {
  constexpr float kAround = 100;  // pixels that the controls around the canvas take at most
  FormPlace = {0, 0, (kWidth + kAround) * kTwipsPerPixel, (kHeight + kAround) * kTwipsPerPixel};
  ShowEditor({});
  ShowWholePaper();
}

// From the key to the painted widget, in the whole editor on a page of 10,000 runs. A run of 40 characters is
// typed and taken back again.
void KeyPress(benchmark::State& state) {
  ShowWholeEditor();
  FillPage(10000, 24);
  CursorMode = -3;
  CursorX = 100;
  CursorY = 400;
  RedrawPage();
  auto* widget = dynamic_cast<QWidget*>(Picture1);
  PaintCounter paintings;
  widget->installEventFilter(&paintings);
  QCoreApplication::processEvents();
  bool typing = true;
  for (auto _ : state) {
    if (PendingRun.empty()) typing = true;
    if (PendingRun.size() == 40) typing = false;
    QKeyEvent key(QEvent::KeyPress, typing ? Qt::Key_X : Qt::Key_Backspace, Qt::NoModifier,
                  typing ? QStringLiteral("x") : QString());
    const int before = paintings.Count();
    QCoreApplication::sendEvent(widget, &key);
    while (paintings.Count() == before) QCoreApplication::processEvents();
  }
  widget->removeEventFilter(&paintings);
}

// From a movement of the mouse to the painted widget, while a path of 1,000 pieces is drawn that wanders over
// the paper: where the next piece would go, or pulling the last one.
void DrawPath(benchmark::State& state) {
  ShowWholeEditor();
  FillPage(0, 24);
  ChooseShape(Shape::Bezier);
  std::minstd_rand random(1);
  std::uniform_real_distribution<float> step(-20, 20);
  Points path = {{PaperWidth / 2, PaperHeight / 2}};
  while (path.size() < 2001) {
    const Point from = path.back();
    path.push_back({std::clamp(from.x + step(random), 0.0F, PaperWidth),
                    std::clamp(from.y + step(random), 0.0F, PaperHeight)});
  }
  KeepPath(path);
  RedrawPage();
  auto* widget = dynamic_cast<QWidget*>(Picture1);
  PaintCounter paintings;
  widget->installEventFilter(&paintings);
  QCoreApplication::processEvents();
  const auto send = [&](QEvent::Type type, QPointF at) {
    const auto button = type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton;
    QMouseEvent event(type, at, at, button, button, Qt::NoModifier);
    QCoreApplication::sendEvent(widget, &event);
  };
  if (state.range(0) != 0) send(QEvent::MouseButtonPress, {400, 400});
  int moves = 0;
  for (auto _ : state) {
    ++moves;
    const int before = paintings.Count();
    send(QEvent::MouseMove, QPointF(400 + 4 * (moves % 100), 400 + 4 * (moves % 70)));
    while (paintings.Count() == before) QCoreApplication::processEvents();
  }
  widget->removeEventFilter(&paintings);
  DropDrawing();
}

void Sizes(benchmark::internal::Benchmark* benchmark) {
  benchmark->ArgNames({"runs", "px"})
      ->ArgsProduct({{1000, 10000}, {12, 24, 96}})
      ->Unit(benchmark::kMillisecond)
      ->Repetitions(kRepetitions)
      ->MinTime(0.05);
}
BENCHMARK(BareQt)->Apply(Sizes);
BENCHMARK(Redraw)->Apply(Sizes);
BENCHMARK(DrawPath)
    ->ArgName("pulling")
    ->Arg(0)
    ->Arg(1)
    ->Unit(benchmark::kMillisecond)
    ->Repetitions(kRepetitions)
    ->MinTime(0.05);
BENCHMARK(KeyPress)->Unit(benchmark::kMillisecond)->Repetitions(kRepetitions)->MinTime(0.05);

// Keeps the medians for the table of ratios.
class MedianReporter : public benchmark::ConsoleReporter {
 public:
  MedianReporter() : ConsoleReporter(OO_Tabular) {}

  void ReportRuns(const std::vector<Run>& runs) override {
    ConsoleReporter::ReportRuns(runs);
    for (const Run& run : runs) {
      if (run.aggregate_name != "median") continue;
      const std::string& name = run.run_name.function_name;
      // Processor time: what else the machine does must not decide a ratio.
      medians_[run.run_name.args][name] = run.GetAdjustedCPUTime();
    }
  }

  void PrintRatios() const {
    for (const auto& [arguments, times] : medians_) {
      if (!times.contains("BareQt") || !times.contains("Redraw")) continue;
      const double bare = times.at("BareQt");
      const double ours = times.at("Redraw");
      std::printf("%-20s bare %8.2f ms   redraw %8.2f ms   ratio %.2f\n", arguments.c_str(), bare, ours,
                  ours / bare);
    }
  }

 private:
  std::map<std::string, std::map<std::string, double>> medians_;
};

}  // namespace
}  // namespace kelvane

int main(int argc, char** argv) {
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication application(argc, argv);
  // Interleaved, so that what else the machine does meets both sides of a ratio.
  std::vector<char*> arguments(argv, argv + argc);
  std::string interleave = "--benchmark_enable_random_interleaving=true";
  std::string medians = "--benchmark_report_aggregates_only=true";
  arguments.insert(arguments.begin() + 1, {interleave.data(), medians.data()});
  int count = static_cast<int>(arguments.size());
  benchmark::Initialize(&count, arguments.data());
  if (benchmark::ReportUnrecognizedArguments(count, arguments.data())) return 1;
  kelvane::QtToolkit toolkit;
  kelvane::QtDialogs dialogs;
  kelvane::TheToolkit = &toolkit;
  kelvane::TheDialogs = &dialogs;
  if (!kelvane::StartUp(kelvane::BackslashPath(KELVANE_PROGRAM_FOLDER))) return 1;
  kelvane::MedianReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  reporter.PrintRatios();
}
