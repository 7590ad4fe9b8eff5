// The canvas: where ink lands, what is repainted, what keys and mouse report. All of it holds at any pixel
// ratio; the suite also runs with 1.5 and 2.

#include <QPaintEvent>
#include <QScreen>
#include <algorithm>
#include <cmath>
#include <limits>

#include "tests/screen/screen_test.h"

namespace kelvane {
namespace {

constexpr ColourValue kBlack = 0;
constexpr ColourValue kWhite = 0xFFFFFF;
constexpr ColourValue kRed = 0x0000FF;
constexpr int kSide = 300;  // logical pixels

// Keeps what was repainted.
class PaintWatcher : public QObject {
 public:
  QRegion painted;

 protected:
  bool eventFilter(QObject* object, QEvent* event) override {
    if (event->type() == QEvent::Paint) painted += static_cast<QPaintEvent*>(event)->region();
    return QObject::eventFilter(object, event);
  }
};

class CanvasTest : public ScreenTest {
 protected:
  void SetUp() override {
    ScreenTest::SetUp();
    window->SetWindowPlace({0, 0, kSide * kTwipsPerPixel, kSide * kTwipsPerPixel});
    canvas = static_cast<QtCanvas*>(window->AddCanvas());
    window->SetCanvasPlace(canvas, {0, 0, kSide, kSide});
    canvas->SetCoordinates(0, 0, kSide, kSide);
    canvas->SelectLayer(Layer::Page);
    canvas->Clear();
    canvas->FillBox(0, 0, kSide, kSide, kWhite);
    ratio = canvas->devicePixelRatioF();
  }

  // What the canvas shows, in device pixels.
  QImage Shown() const { return canvas->grab().toImage().convertToFormat(QImage::Format_RGB32); }
  // What really is on the screen, with whatever a repaint left behind.
  QImage OnScreen() const {
    QTest::qWait(0);
    return canvas->screen()
        ->grabWindow(window->Frame().winId())
        .toImage()
        .convertToFormat(QImage::Format_RGB32);
  }
  void Text(const ScreenFace& face, float em, const std::string& text, Point origin) {
    std::vector<Point> origins;
    for (std::size_t i = 0; i < text.size(); ++i) {
      origins.push_back({origin.x + static_cast<float>(i) * em, origin.y});
    }
    canvas->DrawText(face, em, text, origins, kBlack);
  }
  void Overlay() {
    canvas->SelectLayer(Layer::Overlay);
    canvas->Clear();
  }

  // The coverage by black ink of one pixel; of one row.
  static double InkAt(const QImage& image, int x, int y) { return (255 - qRed(image.pixel(x, y))) / 255.0; }
  static int GreatestDifference(const QImage& one, const QImage& other) {
    int difference = 0;
    for (int y = 0; y < one.height(); ++y) {
      for (int x = 0; x < one.width(); ++x) {
        difference = std::max(difference, std::abs(qRed(one.pixel(x, y)) - qRed(other.pixel(x, y))));
        difference = std::max(difference, std::abs(qGreen(one.pixel(x, y)) - qGreen(other.pixel(x, y))));
      }
    }
    return difference;
  }
  static double InkOfRow(const QImage& image, int y) {
    double ink = 0;
    for (int x = 0; x < image.width(); ++x) ink += InkAt(image, x, y);
    return ink;
  }

  // Upper and lower edge of a shape whose top and bottom are straight, in logical pixels, from the coverage
  // of its rows compared with those inside it.
  std::pair<double, double> EdgesOf(const QImage& image) const {
    int top = 0;
    while (top < image.height() && InkOfRow(image, top) == 0) ++top;
    int bottom = image.height() - 1;
    while (bottom > top && InkOfRow(image, bottom) == 0) --bottom;
    const double topPart = std::min(InkOfRow(image, top) / InkOfRow(image, top + 2), 1.0);
    const double bottomPart = std::min(InkOfRow(image, bottom) / InkOfRow(image, bottom - 2), 1.0);
    return {(top + 1 - topPart) / ratio, (bottom + bottomPart) / ratio};
  }

  QtCanvas* canvas = nullptr;
  double ratio = 1;
};

// "E" of the sans serif face has straight edges from the baseline to 0.729 em.
TEST_F(CanvasTest, BaselineAndEmAreExact) {
  for (const float em : {40.0F, 61.3F, 180.0F}) {
    for (const float y : {220.0F, 220.25F, 220.5F, 220.8F}) {
      canvas->FillBox(0, 0, kSide, kSide, kWhite);
      Text({"Arial", false, false}, em, "E", {20, y});
      const auto [top, bottom] = EdgesOf(Shown());
      EXPECT_NEAR(bottom, y, 0.15 / ratio + 0.02) << "em " << em;
      EXPECT_NEAR(bottom - top, 0.729 * em, 0.2 / ratio) << "em " << em << " at " << y;
    }
  }
}

TEST_F(CanvasTest, CharactersStandAtTheirOwnOrigins) {
  const Point origins[] = {{30, 100}, {200.5F, 60}};
  canvas->DrawText({"Times New Roman", true, false}, 24, "II", origins, kBlack);
  const QImage both = Shown();
  canvas->FillBox(0, 0, kSide, kSide, kWhite);
  canvas->DrawText({"Times New Roman", true, false}, 24, "I", std::span(origins).subspan(1), kBlack);
  canvas->DrawText({"Times New Roman", true, false}, 24, "I", std::span(origins).first(1), kBlack);
  EXPECT_EQ(Shown(), both);
  EXPECT_GT(InkAt(both, static_cast<int>(35 * ratio), static_cast<int>(92 * ratio)), 0.5);
}

TEST_F(CanvasTest, LinesAndBoxesAreCrisp) {
  for (const float at : {50.0F, 60.3F, 70.5F, 80.9F}) {
    canvas->DrawLine({at, 10}, {at, 290}, {kBlack, 1, true});
    canvas->FillBox(at + 100, 10, at + 103, 290, kBlack);
  }
  const QImage image = Shown();
  const int row = image.height() / 2;
  double ink = 0;
  for (int x = 0; x < image.width(); ++x) {
    const double here = InkAt(image, x, row);
    EXPECT_TRUE(here == 0 || here == 1) << x;
    ink += here;
  }
  EXPECT_NEAR(ink, 4 * std::round(ratio) + 4 * 3 * ratio, 4);
}

TEST_F(CanvasTest, LongAndContinuedLinesHaveNoGaps) {
  std::vector<Point> points;
  for (int i = 0; i <= 1000; ++i) {
    const float x = 10 + static_cast<float>(i) * 0.28F;
    points.push_back({x, 150 + 20 * std::sin(x / 10)});
  }
  canvas->DrawPolyline(points, {kBlack, 3});
  const QImage whole = Shown();
  for (const Point& point : points) {
    const int x = static_cast<int>(point.x * ratio);
    ASSERT_GT(InkAt(whole, x, static_cast<int>(point.y * ratio)), 0.9) << point.x;
  }
  canvas->FillBox(0, 0, kSide, kSide, kWhite);
  for (std::size_t i = 0; i + 1 < points.size(); i += 20) {
    canvas->DrawPolyline(std::span(points).subspan(i, 21), {kBlack, 3});
  }
  const QImage pieces = Shown();
  for (int y = 0; y < whole.height(); ++y) EXPECT_NEAR(InkOfRow(pieces, y), InkOfRow(whole, y), 1.5) << y;
}

TEST_F(CanvasTest, LinesKeepTheirColourAndOrder) {
  const Point first[] = {{20, 20}, {100, 100}};
  const Point second[] = {{100, 100}, {180, 20}};
  canvas->DrawPolyline(first, {kRed, 6});
  canvas->DrawPolyline(second, {kBlack, 6});
  canvas->FillBox(50, 50, 70, 70, kWhite);
  const QImage image = Shown();
  const auto at = [&](int x, int y) {
    return image.pixel(static_cast<int>(x * ratio), static_cast<int>(y * ratio)) & 0xFFFFFF;
  };
  EXPECT_EQ(at(30, 30), 0xFF0000U);
  EXPECT_EQ(at(60, 60), 0xFFFFFFU);
  EXPECT_EQ(at(140, 60), 0x000000U);
}

TEST_F(CanvasTest, PolygonIsFilledByNonZeroWinding) {
  std::vector<Point> star;
  for (int i = 0; i < 5; ++i) {
    const float angle = static_cast<float>(i) * 2 * 2.5132741F;
    star.push_back({150 + 100 * std::sin(angle), 150 - 100 * std::cos(angle)});
  }
  canvas->FillPolygon(star, kBlack);
  const QImage image = Shown();
  EXPECT_EQ(InkAt(image, image.width() / 2, image.height() / 2), 1);
  EXPECT_EQ(InkAt(image, static_cast<int>(60 * ratio), static_cast<int>(200 * ratio)), 0);
}

TEST_F(CanvasTest, EdgesAndNonsenseDoNoHarm) {
  const QImage before = Shown();
  const float infinite = std::numeric_limits<float>::infinity();
  for (const float bad : {infinite, -infinite, std::numeric_limits<float>::quiet_NaN(), 1e30F, -3e38F}) {
    const Point points[] = {{bad, 10}, {bad, 50}, {bad, bad}};
    canvas->DrawPolyline(points, {kBlack, 2});
    canvas->FillPolygon(points, kBlack);
    canvas->DrawText({"Symbol", false, true}, 20, "abc", points, kBlack);
    canvas->DrawCircle({bad, 10}, 5, {kBlack, 1});
    canvas->FillBox(bad, bad, bad, bad, kBlack);
    canvas->DrawText({"Arial", false, false}, bad, "a", std::span(points).first(1), kBlack);
  }
  EXPECT_EQ(Shown(), before);
  // Glyphs across each edge of the image.
  for (const float em : {30.0F, 90.0F, 200.0F}) {
    for (const float at : {-5.0F, 150.0F, kSide + 4.0F}) {
      Text({"Times New Roman", false, true}, em, "Qjf", {at, kSide - at});
      Text({"Times New Roman", false, true}, em, "Qjf", {at, at});
    }
  }
  EXPECT_NE(Shown(), before);
}

TEST_F(CanvasTest, DrawingBeforeTheWindowIsShownStays) {
  Text({"Arial", false, false}, 60, "E", {100, 150});
  const QImage before = Shown();
  Show();
  EXPECT_EQ(Shown(), before);
  EXPECT_GT(InkAt(before, static_cast<int>(107 * ratio), static_cast<int>(130 * ratio)), 0.9);
}

TEST_F(CanvasTest, OverlayComesAndGoesWithoutScars) {
  // All of it in the quarter of the window that a grab of the screen shows at every pixel ratio.
  const auto drawPage = [&] {
    canvas->SelectLayer(Layer::Page);
    canvas->Clear();
    canvas->FillBox(0, 0, kSide, kSide, kWhite);
    Text({"Times New Roman", false, false}, 40, "Page", {5, 80});
  };
  drawPage();
  Show();
  const QImage clean = OnScreen();
  PaintWatcher watcher;
  canvas->installEventFilter(&watcher);

  const Point curve[] = {{80, 90}, {100, 105}, {120, 90}};
  const std::vector<std::function<void()>> drawings = {
      [&] {
        Text({"Symbol", false, true}, 33, "f", {60, 70});
      },
      [&] {
        Text({"Script", false, true}, 140, "Q", {10, 110});
      },
      [&] {
        canvas->DrawLine({50, 50}, {50, 90}, {kRed, 1});
      },
      [&] {
        canvas->DrawPolyline(curve, {kRed, 9});
      },
      [&] { canvas->FillPolygon(curve, kRed); },
      [&] {
        canvas->DrawCircle({75, 75}, 40.5F, {kRed, 5});
      },
      [&] { canvas->FillBox(10.4F, 10.6F, 20.5F, 30.1F, kRed); },
  };
  for (std::size_t i = 0; i < drawings.size(); ++i) {
    watcher.painted = QRegion();
    Overlay();
    drawings[i]();
    const QImage drawn = OnScreen();
    EXPECT_NE(drawn, clean) << i;
    const QRect painted = watcher.painted.boundingRect();
    EXPECT_LT(painted.width() * painted.height(), kSide * kSide) << i;
    Overlay();
    EXPECT_EQ(OnScreen(), clean) << i;
    // The same on the page, all of it repainted: nothing of the overlay was cut off.
    canvas->SelectLayer(Layer::Page);
    drawings[i]();
    canvas->update();
    EXPECT_LE(GreatestDifference(OnScreen(), drawn), 4) << i;
    drawPage();
    EXPECT_EQ(OnScreen(), clean) << i;
  }
}

TEST_F(CanvasTest, OverlayOfTheTypedRunRepaintsLittle) {
  Show();
  OnScreen();
  PaintWatcher watcher;
  canvas->installEventFilter(&watcher);
  Overlay();
  Text({"Times New Roman", false, false}, 20, "ab", {100, 100});
  OnScreen();
  EXPECT_FALSE(watcher.painted.isEmpty());
  EXPECT_TRUE(QRect(60, 60, 120, 80).contains(watcher.painted.boundingRect()));
}

TEST_F(CanvasTest, KeysBecomeCodes) {
  std::vector<int> keys;
  canvas->OnKeyPress = [&](int code) { keys.push_back(code); };
  Show();
  canvas->Focus();
  QTest::keyClicks(canvas, "a(\\~ ");
  QTest::keyClick(canvas, Qt::Key_Return);
  QTest::keyClick(canvas, Qt::Key_Enter, Qt::ControlModifier);
  QTest::keyClick(canvas, Qt::Key_Backspace);
  QTest::keyClick(canvas, Qt::Key_Backspace, Qt::ControlModifier);
  QTest::sendKeyEvent(QTest::Click, canvas, Qt::Key_unknown, QStringLiteral("\u00E9"), Qt::NoModifier);
  EXPECT_EQ(keys, (std::vector<int>{'a', '(', '\\', '~', ' ', 13, 10, 8, 127, 233}));
  keys.clear();
  for (const Qt::Key arrow : {Qt::Key_Left, Qt::Key_Up, Qt::Key_Right, Qt::Key_Down})
    QTest::keyClick(canvas, arrow);
  EXPECT_EQ(keys, (std::vector<int>{kKeyLeft, kKeyUp, kKeyRight, kKeyDown}));
  keys.clear();
  QTest::keyClick(canvas, Qt::Key_Escape);
  EXPECT_EQ(keys, std::vector<int>{kKeyEscape});
  keys.clear();
  QTest::keyClick(canvas, Qt::Key_Delete);
  QTest::keyClick(canvas, Qt::Key_F9);
  QTest::keyClick(canvas, 'b', Qt::ControlModifier);
  QTest::keyClick(canvas, 'b', Qt::AltModifier);
  QTest::sendKeyEvent(QTest::Click, canvas, Qt::Key_unknown, QStringLiteral("\u03B1"), Qt::NoModifier);
  EXPECT_EQ(keys, std::vector<int>{});
}

TEST_F(CanvasTest, MouseReportsLogicalPositions) {
  canvas->SetCoordinates(-50, 100, 150, 600);
  std::vector<MouseEvent> events;
  const auto note = [&](const MouseEvent& event) { events.push_back(event); };
  canvas->OnMouseDown = note;
  canvas->OnMouseUp = note;
  Show();
  QTest::mouseClick(canvas, Qt::LeftButton, {}, QPoint(100, 30));
  QTest::mouseClick(canvas, Qt::MiddleButton, {}, QPoint(0, 150));
  QTest::mouseClick(canvas, Qt::BackButton, {}, QPoint(0, 150));
  ASSERT_EQ(events.size(), 4u);
  EXPECT_FLOAT_EQ(events[0].x, 0);
  EXPECT_FLOAT_EQ(events[1].y, 160);
  EXPECT_FLOAT_EQ(events[1].pixelX, 100);
  EXPECT_EQ(events[1].button, MouseButton::Left);
  EXPECT_EQ(events[2].button, MouseButton::Middle);
  EXPECT_FLOAT_EQ(events[2].y, 400);
}

}  // namespace
}  // namespace kelvane
