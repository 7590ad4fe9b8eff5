// A page painted, zoomed, scrolled, drawn on, edited, and a key that reaches the screen. Beside it, where
// there is such a thing, bare Qt doing the same work.

#include <QFont>
#include <QGlyphRun>
#include <QGuiApplication>
#include <QImage>
#include <QKeyEvent>
#include <QPainter>
#include <QPainterPath>
#include <QRawFont>
#include <QWidget>
#include <cstdint>
#include <map>
#include <random>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "app/settings.h"
#include "app/startup.h"
#include "bench/stage.h"
#include "document/lines.h"
#include "document/page.h"
#include "document/page_items.h"
#include "editing/bezier.h"
#include "editing/cursor.h"
#include "editing/edit.h"
#include "editing/keyboard.h"
#include "editing/tool.h"
#include "editing/undo.h"
#include "platform/handlers.h"
#include "typography/glyphs.h"
#include "typography/metrics.h"
#include "typography/renderer.h"
#include "typography/view.h"
#include "typography/zoom.h"

namespace kelvane {
namespace {

// Device pixels to the pixel, which bare Qt paints as well.
double Ratio() {
  return qGuiApp->devicePixelRatio();
}

// What the first eight typefaces are on the screen.
QRawFont BareFont(int face, float pixels) {
  QFont wanted(face < 4 ? QStringLiteral("Nimbus Roman") : QStringLiteral("Nimbus Sans"));
  wanted.setBold(face % 2 == 1);
  wanted.setItalic(face % 4 >= 2);
  wanted.setPixelSize(static_cast<int>(pixels));
  wanted.setHintingPreference(QFont::PreferNoHinting);
  wanted.setStyleStrategy(QFont::NoFontMerging);
  return QRawFont::fromFont(wanted);
}

// The page's characters as bare Qt takes them: font, glyphs and positions, ready to be drawn.
std::vector<QGlyphRun> GlyphRunsOfPage(float pixels) {
  std::vector<QRawFont> fonts;
  for (int face = 0; face < 8; ++face) fonts.push_back(BareFont(face, pixels * static_cast<float>(Ratio())));
  std::vector<QGlyphRun> runs;
  for (std::string_view rest = PageText; !rest.empty();) {
    TextEntry entry;
    ParseTextEntry(TakeLine(rest), entry);
    const QRawFont& font = fonts[static_cast<std::size_t>(entry.font)];
    QList<QPointF> positions;
    for (const char c : entry.text) {
      positions.append(QPointF(entry.x, entry.y) * SCALE * Ratio());
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

QImage BlankPage() {
  return QImage(QSize(kWidth, kHeight) * Ratio(), QImage::Format_RGB32);
}

void DrawBare(QImage& image, const std::vector<QGlyphRun>& runs) {
  image.fill(Qt::white);
  QPainter painter(&image);
  painter.setRenderHint(QPainter::Antialiasing);
  for (const QGlyphRun& run : runs) painter.drawGlyphRun(QPointF(), run);
}

// As many runs, pixels and faces as the benchmark of text is given.
void FillText(const benchmark::State& state) {
  FillPage(static_cast<int>(state.range(0)), static_cast<float>(state.range(1)), 1,
           static_cast<int>(state.range(2)));
}

void BareText(benchmark::State& state) {
  const Stage stage;
  const auto pixels = static_cast<float>(state.range(1));
  FillText(state);
  const std::vector<QGlyphRun> runs = GlyphRunsOfPage(pixels);
  QImage image = BlankPage();
  for (auto _ : state) DrawBare(image, runs);
}

// The same characters as ready-made pictures at whole pixels, the barest form that there is.
void ImagesText(benchmark::State& state) {
  const Stage stage;
  const auto pixels = static_cast<float>(state.range(1));
  FillText(state);
  std::map<std::pair<QString, quint32>, std::pair<QPoint, QImage>> glyphs;
  struct Placed {
    QPoint at;
    const QImage* image;
  };
  std::vector<Placed> placed;
  for (const QGlyphRun& run : GlyphRunsOfPage(pixels)) {
    const QList<quint32> codes = run.glyphIndexes();
    const QString face = run.rawFont().familyName() + run.rawFont().styleName();
    for (qsizetype i = 0; i < codes.size(); ++i) {
      auto& [corner, image] = glyphs[{face, codes[i]}];
      if (image.isNull()) {
        const QPainterPath outline = run.rawFont().pathForGlyph(codes[i]);
        const QRect box = outline.controlPointRect().toAlignedRect();
        corner = box.topLeft();
        image = QImage(box.size(), QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.translate(-corner);
        painter.fillPath(outline, Qt::black);
      }
      placed.push_back({run.positions()[i].toPoint() + corner, &image});
    }
  }
  QImage image = BlankPage();
  for (auto _ : state) {
    image.fill(Qt::white);
    QPainter painter(&image);
    for (const auto& [at, glyph] : placed) painter.drawImage(at, *glyph);
  }
}

void Text(benchmark::State& state) {
  const Stage stage;
  FillText(state);
  for (auto _ : state) RedrawPage();
}

// A factor of the usual scale, 1 on average: one of so many by turns, large and small ones mixed.
float NextScale(std::int64_t scales) {
  constexpr std::int64_t kStride = 377;
  static std::int64_t step = 0;
  step = (step + kStride) % scales;
  return 0.6F + 0.8F * static_cast<float>(step) / static_cast<float>(scales - 1);
}

void BareZoom(benchmark::State& state) {
  const Stage stage;
  const auto pixels = static_cast<float>(state.range(1));
  FillPage(static_cast<int>(state.range(0)), pixels);
  const std::vector<QGlyphRun> runs = GlyphRunsOfPage(pixels);
  QImage image = BlankPage();
  for (auto _ : state) {
    const float scale = NextScale(state.range(2));
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(scale, scale);
    for (const QGlyphRun& run : runs) painter.drawGlyphRun(QPointF(), run);
  }
}

void Zoom(benchmark::State& state) {
  const Stage stage;
  FillPage(static_cast<int>(state.range(0)), static_cast<float>(state.range(1)));
  for (auto _ : state) {
    SCALE = kDefaultScale * NextScale(state.range(2));
    RedrawPage();
  }
}

// Drawings of a line, a curve and a line, the same ones each time, as wide as so many pixels.
void FillDrawings(int drawings, float pixels) {
  std::minstd_rand random(1);
  std::uniform_real_distribution<float> across(60, PaperWidth - 60), down(60, PaperHeight - 60), way(-50, 50);
  PageText.clear();
  DrawingList.clear();
  for (int i = 0; i < drawings; ++i) {
    float x = across(random), y = down(random);
    std::string record = std::to_string(x) + ' ' + std::to_string(y);
    for (int piece = 0; piece < 3; ++piece) {
      const float toX = x + way(random), toY = y + way(random);
      const float bend = piece == 1 ? 20.0F : 0.0F;
      record += ' ' + std::to_string((x + toX) / 2 + bend) + ' ' + std::to_string((y + toY) / 2 + bend);
      record += ' ' + std::to_string(toX) + ' ' + std::to_string(toY);
      x = toX;
      y = toY;
    }
    DrawingList += record + ' ' + std::to_string(pixels / kDefaultScale) + "\r\n";
  }
  DrawingCount = static_cast<std::int16_t>(drawings);
}

void BareDrawings(benchmark::State& state) {
  const Stage stage;
  FillDrawings(static_cast<int>(state.range(0)), static_cast<float>(state.range(1)));
  std::vector<QPainterPath> paths;
  for (const DrawingItem& item : ItemsOfPage().Drawings()) {
    const auto at = [&item](std::size_t i) {
      return QPointF(item.drawing.points[i].x, item.drawing.points[i].y) * SCALE * Ratio();
    };
    QPainterPath& path = paths.emplace_back(at(0));
    path.lineTo(at(2));
    path.quadTo(at(3), at(4));
    path.lineTo(at(6));
  }
  const QPen pen(Qt::black, static_cast<double>(state.range(1)) * Ratio(), Qt::SolidLine, Qt::RoundCap,
                 Qt::RoundJoin);
  QImage image = BlankPage();
  for (auto _ : state) {
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(pen);
    for (const QPainterPath& path : paths) painter.drawPath(path);
  }
}

void Drawings(benchmark::State& state) {
  const Stage stage;
  FillDrawings(static_cast<int>(state.range(0)), static_cast<float>(state.range(1)));
  for (auto _ : state) RedrawPage();
}

// How long, not how much work, until all of the window shows another scale: threads that paint together count
// once.
void WaitForZoom(benchmark::State& state) {
  const Stage stage;
  state.range(0) > 0 ? FillPage(static_cast<int>(state.range(0)), 12)
                     : FillDrawings(static_cast<int>(state.range(1)), 1);
  for (auto _ : state) {
    SCALE = kDefaultScale * NextScale(1000);
    stage.Show([] { ShowPage(); });
  }
}

// A movement of the mouse while a path of many pieces is being drawn.
void DrawnPath(benchmark::State& state) {
  const Stage stage;
  FillDrawings(1, 2);
  std::minstd_rand random(1);
  CurrentDrawing = "300 400";
  for (std::int64_t piece = 0; piece < state.range(0); ++piece) {
    const std::string x = std::to_string(random() % 590), y = std::to_string(random() % 830);
    CurrentDrawing += ' ' + x + ' ' + y + ' ' + x + ' ' + y;
  }
  CurrentDrawing += " 1";
  CursorMode = kBezierMode;
  stage.Show(ShowCursor);
  Pointer pointer{{310, 420}};
  float way = 10;
  for (auto _ : state) {
    pointer.at.x += way;
    way = -way;
    stage.Show([&] { ToolInForce().Move(pointer); });
  }
  CurrentDrawing.clear();
  CursorMode = 0;
}

// From the key to the painted widget, in the whole editor with its journal. A run of 40 characters is typed
// and taken back again.
void KeyPress(benchmark::State& state) {
  ShowWholeEditor({});
  FillPage(static_cast<int>(state.range(0)), 24);
  ResetEdits();
  ShowWholePaper();
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

// An edit and its undoing, with the journal and without the painting.
void JournaledEdit(benchmark::State& state) {
  ShowWholeEditor({});
  FillPage(static_cast<int>(state.range(0)), 24);
  ResetEdits();
  for (auto _ : state) {
    RunHandler([] {
      EditPage("typing", [](Page& page) { page.text += "100 300 m 12 F0 (A run of text) 3 s\r\n"; });
    });
    RunHandler(Undo);
  }
}

void Scroll(benchmark::State& state) {
  const Stage stage;
  FillPage(static_cast<int>(state.range(0)), 24);
  stage.ShowFilledPage();
  float way = 48;
  for (auto _ : state) {
    stage.Show([&] { ScrollBy(0, way); });
    way = -way;
  }
}

// The page follows a pointer that moves a little.
void Drag(benchmark::State& state) {
  const Stage stage;
  FillPage(static_cast<int>(state.range(0)), 24);
  stage.ShowFilledPage();
  float way = 3;
  for (auto _ : state) {
    stage.Show([&] { ScrollBy(way, way); });
    way = -way;
  }
}

// A widget that shows an image: what is left when nothing has to be drawn anew.
class ImageWidget : public QWidget {
 public:
  QImage image = BlankPage();

 protected:
  void paintEvent(QPaintEvent* event) override {
    QPainter(this).drawImage(event->rect(), image, event->rect());
  }
};

// The strip that comes into view drawn by bare Qt, and all of the widget painted.
void BareScroll(benchmark::State& state) {
  const Stage stage;
  FillPage(static_cast<int>(state.range(0)), 24);
  std::vector<QGlyphRun> strip;
  for (const QGlyphRun& run : GlyphRunsOfPage(24)) {
    if (run.positions()[0].y() < 48 + 24) strip.push_back(run);
  }
  ImageWidget widget;
  widget.setAttribute(Qt::WA_OpaquePaintEvent);
  widget.resize(kWidth, kHeight);
  widget.show();
  PaintCounter paintings;
  widget.installEventFilter(&paintings);
  for (auto _ : state) {
    const int before = paintings.Count();
    QPainter painter(&widget.image);
    painter.drawImage(0, 48, widget.image.copy(0, 0, kWidth, kHeight - 48));
    painter.setClipRect(0, 0, kWidth, 48);
    painter.fillRect(0, 0, kWidth, 48, Qt::white);
    painter.setRenderHint(QPainter::Antialiasing);
    for (const QGlyphRun& run : strip) painter.drawGlyphRun(QPointF(), run);
    painter.end();
    widget.update();
    while (paintings.Count() == before) QCoreApplication::processEvents();
  }
}

// A run that is put on the page, and taken back.
void CommitAndUndo(benchmark::State& state) {
  const Stage stage;
  FillPage(static_cast<int>(state.range(0)), 24);
  ResetEdits();
  stage.ShowFilledPage();
  for (auto _ : state) {
    stage.Show([] {
      EditPage("typing", [](Page& page) { page.text += "100 300 m 12 F0 (A run of text) 3 s\r\n"; });
    });
    stage.Show(Undo);
  }
}

// At 96 px bare glyph runs take seconds, and images are the form to compare with.
void BareTextSizes(benchmark::internal::Benchmark* benchmark) {
  benchmark->ArgNames({"runs", "px", "faces"})
      ->ArgsProduct({{1000, 10000}, {12, 24}, {1}})
      ->ArgsProduct({{1000, 10000}, {24}, {8}})
      ->Apply(Measure);
}
void TextSizes(benchmark::internal::Benchmark* benchmark) {
  BareTextSizes(benchmark);
  benchmark->ArgsProduct({{1000, 10000}, {96}, {1}});
}
// Of a thousand scales each is forgotten when its turn comes again, of two none is.
void ZoomSizes(benchmark::internal::Benchmark* benchmark) {
  benchmark->ArgNames({"runs", "px", "scales"})
      ->ArgsProduct({{1000, 10000}, {24}, {2, 1000}})
      ->Apply(Measure);
}
void DrawingSizes(benchmark::internal::Benchmark* benchmark) {
  benchmark->ArgNames({"drawings", "px"})->ArgsProduct({{1000, 10000}, {1, 2, 4}})->Apply(Measure);
}
BENCHMARK(BareText)->Apply(BareTextSizes);
BENCHMARK(ImagesText)->Apply(TextSizes);
BENCHMARK(Text)->Apply(TextSizes);
BENCHMARK(BareZoom)->Apply(ZoomSizes);
BENCHMARK(Zoom)->Apply(ZoomSizes);
BENCHMARK(WaitForZoom)
    ->ArgNames({"runs", "drawings"})
    ->ArgsProduct({{1000, 10000}, {0}})
    ->ArgsProduct({{0}, {1000, 10000}})
    ->Apply(Measure)
    ->UseRealTime();
BENCHMARK(BareDrawings)->Apply(DrawingSizes);
BENCHMARK(Drawings)->Apply(DrawingSizes);
BENCHMARK(DrawnPath)->ArgNames({"pieces"})->Arg(100)->Arg(1000)->Apply(Measure);
BENCHMARK(BareScroll)->Apply(RunCounts);
BENCHMARK(Scroll)->Apply(RunCounts);
BENCHMARK(Drag)->Apply(RunCounts);
BENCHMARK(CommitAndUndo)->Apply(RunCounts);
BENCHMARK(KeyPress)->ArgNames({"runs"})->Arg(100)->Arg(10000)->Apply(Measure);
BENCHMARK(JournaledEdit)->ArgNames({"runs"})->Arg(100)->Arg(10000)->Apply(Measure);

}  // namespace
}  // namespace kelvane
