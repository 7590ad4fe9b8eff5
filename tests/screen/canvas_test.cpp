// The canvas: where ink lands, what is repainted, what keys and mouse report. All of it holds at any pixel
// ratio; the suite also runs with 1.5 and 2.

#include <QAbstractEventDispatcher>
#include <QBackingStore>
#include <QPainter>
#include <QScreen>
#include <algorithm>
#include <cmath>
#include <limits>

#include "platform/qt/qt_fonts.h"
#include "platform/qt/qt_glyphs.h"
#include "tests/screen/screen_test.h"

namespace kelvane {
namespace {

constexpr ColourValue kBlack = 0;
constexpr ColourValue kWhite = 0xFFFFFF;
constexpr ColourValue kRed = 0x0000FF;
constexpr int kSide = 300;  // logical pixels
constexpr ScreenFace kSans = {"Arial", false, false};
constexpr ScreenFace kSerif = {"Times New Roman", false, false};
constexpr ScreenFace kSlanted = {"Times New Roman", false, true};
constexpr ScreenFace kSymbol = {"Symbol", false, true};

Path PathOf(std::span<const Point> points) {
  Path path;
  path.MoveTo(points[0]);
  for (const Point& point : points.subspan(1)) path.LineTo(point);
  return path;
}

class CanvasTest : public ScreenTest {
 protected:
  void SetUp() override {
    ScreenTest::SetUp();
    window->SetWindowPlace({0, 0, kSide * kTwipsPerPixel, kSide * kTwipsPerPixel});
    canvas = static_cast<QtCanvas*>(window->AddCanvas());
    window->SetCanvasPlace(canvas, {0, 0, kSide, kSide});
    canvas->SetCoordinates(0, 0, kSide, kSide);
    ratio = canvas->devicePixelRatioF();
    StartPage();
  }

  void StartPage() {
    canvas->SelectLayer(Layer::Page);
    canvas->Clear();
    canvas->FillBox({0, 0, kSide, kSide}, kWhite);
  }
  void StartOverlay() {
    canvas->SelectLayer(Layer::Overlay);
    canvas->Clear();
  }
  void Text(const ScreenFace& face, float em, const std::string& text, float x, float y) {
    std::vector<Point> origins;
    for (std::size_t i = 0; i < text.size(); ++i) origins.push_back({x + static_cast<float>(i) * em, y});
    canvas->DrawText(face, em, text, origins, kBlack);
  }

  // What the canvas shows, in device pixels.
  QImage Shown() const { return canvas->grab().toImage().convertToFormat(QImage::Format_RGB32); }
  // What really is on the screen, with whatever a repaint left behind.
  QImage OnScreen() const {
    // One round of events may only ask for the painting that the next one does.
    while (QCoreApplication::eventDispatcher()->processEvents(QEventLoop::AllEvents)) {
    }
    return Grabbed();
  }
  QImage Grabbed() const {
    const QPixmap grabbed = canvas->screen()->grabWindow(window->Frame().winId());
    return grabbed.toImage().convertToFormat(QImage::Format_RGB32);
  }
  QRgb PixelAt(const QImage& image, Point logical) const {
    return image.pixel(static_cast<int>(logical.x * ratio), static_cast<int>(logical.y * ratio));
  }

  // The coverage by black ink: of one pixel, of the pixel at a logical position, of one row.
  static double Ink(QRgb pixel) { return (255 - qRed(pixel)) / 255.0; }
  double InkAt(const QImage& image, Point logical) const { return Ink(PixelAt(image, logical)); }
  static double InkOfRow(const QImage& image, int y) {
    double ink = 0;
    for (int x = 0; x < image.width(); ++x) ink += Ink(image.pixel(x, y));
    return ink;
  }

  static int GreatestDifference(const QImage& one, const QImage& other) {
    int difference = 0;
    for (int y = 0; y < one.height(); ++y) {
      for (int x = 0; x < one.width(); ++x) {
        const QRgb a = one.pixel(x, y), b = other.pixel(x, y);
        difference = std::max({difference, std::abs(qRed(a) - qRed(b)), std::abs(qGreen(a) - qGreen(b))});
      }
    }
    return difference;
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
      StartPage();
      Text(kSans, em, "E", 20, y);
      const auto [top, bottom] = EdgesOf(Shown());
      EXPECT_NEAR(bottom, y, 0.15 / ratio + 0.02) << "em " << em;
      EXPECT_NEAR(bottom - top, 0.729 * em, 0.2 / ratio) << "em " << em << " at " << y;
    }
  }
}

TEST_F(CanvasTest, LinesAndBoxesAreCrisp) {
  for (const float at : {50.0F, 60.3F, 70.5F, 80.9F}) {
    canvas->DrawLine({at, 10}, {at, 290}, {kBlack, 1, true});
    canvas->FillBox({at + 100, 10, at + 103, 290}, kBlack);
  }
  const QImage image = Shown();
  const int row = image.height() / 2;
  for (int x = 0; x < image.width(); ++x) EXPECT_EQ(std::fmod(Ink(image.pixel(x, row)), 1), 0) << x;
  EXPECT_NEAR(InkOfRow(image, row), 4 * std::round(ratio) + 4 * 3 * ratio, 4);
}

TEST_F(CanvasTest, LongAndContinuedLinesHaveNoGaps) {
  std::vector<Point> points;
  for (int i = 0; i <= 1000; ++i) {
    const float x = 10 + static_cast<float>(i) * 0.28F;
    points.push_back({x, 150 + 20 * std::sin(x / 10)});
  }
  canvas->StrokePath(PathOf(points), {kBlack, 3});
  const QImage whole = Shown();
  for (const Point& point : points) ASSERT_GT(InkAt(whole, point), 0.9) << point.x;
  StartPage();
  for (std::size_t i = 0; i + 1 < points.size(); i += 20)
    canvas->StrokePath(PathOf(std::span(points).subspan(i, 21)), {kBlack, 3});
  const QImage pieces = Shown();
  for (int y = 0; y < whole.height(); ++y) EXPECT_NEAR(InkOfRow(pieces, y), InkOfRow(whole, y), 2) << y;
}

TEST_F(CanvasTest, LinesKeepTheirColourAndOrder) {
  const Point points[] = {{20, 20}, {100, 100}, {180, 20}};
  canvas->StrokePath(PathOf(std::span(points).first(2)), {kRed, 6});
  canvas->StrokePath(PathOf(std::span(points).last(2)), {kBlack, 6});
  canvas->FillBox({50, 50, 70, 70}, kWhite);
  const QImage image = Shown();
  EXPECT_EQ(PixelAt(image, {30, 30}), 0xFFFF0000U);
  EXPECT_EQ(PixelAt(image, {60, 60}), 0xFFFFFFFFU);
  EXPECT_EQ(PixelAt(image, {140, 60}), 0xFF000000U);
}

TEST_F(CanvasTest, EdgesAndNonsenseDoNoHarm) {
  const QImage before = Shown();
  const float infinite = std::numeric_limits<float>::infinity();
  for (const float bad : {infinite, -infinite, std::numeric_limits<float>::quiet_NaN(), 1e30F, -3e38F}) {
    const Point points[] = {{bad, 10}, {bad, 50}, {bad, bad}};
    canvas->StrokePath(PathOf(points), {kBlack, 2});
    canvas->FillPath(PathOf(points), kBlack);
    canvas->DrawText(kSymbol, 20, "abc", points, kBlack);
    canvas->FillBox({bad, bad, bad, bad}, kBlack);
    canvas->DrawText(kSans, bad, "a", std::span(points).first(1), kBlack);
  }
  EXPECT_EQ(Shown(), before);
  // Glyphs across each edge of the image.
  for (const float em : {30.0F, 90.0F, 200.0F}) {
    for (const float at : {-5.0F, 150.0F, kSide + 4.0F}) {
      Text(kSlanted, em, "Qjf", at, kSide - at);
      Text(kSlanted, em, "Qjf", at, at);
    }
  }
  EXPECT_NE(Shown(), before);
}

TEST_F(CanvasTest, DrawingBeforeTheWindowIsShownStays) {
  Text(kSans, 60, "E", 100, 150);
  const QImage before = Shown();
  Show();
  EXPECT_EQ(Shown(), before);
  EXPECT_GT(InkAt(before, {107, 130}), 0.9);
}

TEST_F(CanvasTest, OverlayComesAndGoesWithoutScars) {
  // All of it in the quarter of the window that a grab of the screen shows at every pixel ratio.
  const auto drawPage = [&] {
    StartPage();
    Text(kSerif, 40, "Page", 5, 80);
  };
  drawPage();
  Show();
  const QImage clean = OnScreen();
  Path curve;
  curve.MoveTo({80, 90});
  curve.CurveTo({90, 105}, {110, 105}, {120, 90});
  const Pen thin = {kRed, 1}, thick = {kRed, 9};
  const std::function<void()> drawings[] = {
      [&] { Text(kSymbol, 33, "f", 60, 70); },
      [&] {
        Text({"Script", false, true}, 140, "Q", 10, 110);
      },
      [&] {
        canvas->DrawLine(Point{50, 50}, Point{50, 90}, thin);
      },
      [&] { canvas->StrokePath(curve, thick); },
      [&] { canvas->FillPath(curve, kRed); },
      [&] {
        canvas->FillBox({10.4F, 10.6F, 20.5F, 30.1F}, kRed);
      },
  };
  for (std::size_t i = 0; i < std::size(drawings); ++i) {
    SCOPED_TRACE("drawing " + std::to_string(i));
    StartOverlay();
    drawings[i]();
    const QImage drawn = OnScreen();
    EXPECT_NE(drawn, clean);
    StartOverlay();
    EXPECT_EQ(OnScreen(), clean);
    // The same on the page, all of it repainted: nothing of the overlay was cut off.
    canvas->SelectLayer(Layer::Page);
    drawings[i]();
    canvas->update();
    EXPECT_LE(GreatestDifference(OnScreen(), drawn), 4);
    drawPage();
    EXPECT_EQ(OnScreen(), clean);
  }
}

// Without waiting for the rest of the window, and only where the run is.
TEST_F(CanvasTest, OverlayOfTheTypedRunIsShownAlone) {
  Show();
  OnScreen();
  QBackingStore* const picture = canvas->backingStore();
  const QRect all(QPoint(0, 0), picture->size());
  picture->beginPaint(all);
  QPainter(picture->paintDevice()).fillRect(all, Qt::green);
  picture->endPaint();
  picture->flush(all);
  StartOverlay();
  Text(kSerif, 20, "ab", 100, 100);
  canvas->ShowNow();
  const QImage screen = Grabbed();
  QRect painted;
  for (int y = 0; y < screen.height(); ++y)
    for (int x = 0; x < screen.width(); ++x)
      if (screen.pixelColor(x, y) != Qt::green) painted |= QRect(x, y, 1, 1);
  EXPECT_FALSE(painted.isEmpty());
  EXPECT_TRUE(QRectF(60 * ratio, 60 * ratio, 120 * ratio, 80 * ratio).contains(painted));
  canvas->update();
  EXPECT_EQ(screen.copy(painted), OnScreen().copy(painted));
}

TEST_F(CanvasTest, KeysBecomeCodes) {
  std::vector<int> keys;
  std::string texts;
  canvas->OnKeyPress = [&](int code) { keys.push_back(code); };
  canvas->OnText = [&](const std::string& utf8) { texts += utf8 + ";"; };
  canvas->OnPreedit = [&](const std::string& utf8) { texts += "(" + utf8 + ")"; };
  Show();
  canvas->Focus();
  const auto type = [&](const QString& character) {
    QTest::sendKeyEvent(QTest::Click, canvas, Qt::Key_unknown, character, Qt::NoModifier);
  };
  QTest::keyClicks(canvas, "a(\\~ ");
  type(QStringLiteral("\u00E9"));
  for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Backspace, Qt::Key_Escape}) QTest::keyClick(canvas, key);
  for (const Qt::Key key : {Qt::Key_Left, Qt::Key_Up, Qt::Key_Right, Qt::Key_Down})
    QTest::keyClick(canvas, key);
  for (const Qt::Key key : {Qt::Key_Enter, Qt::Key_Backspace, Qt::Key_B, Qt::Key_Left})
    QTest::keyClick(canvas, key, Qt::ControlModifier);
  for (const Qt::Key key : {Qt::Key_Delete, Qt::Key_Home, Qt::Key_F9}) QTest::keyClick(canvas, key);
  // Letters with Alt are no keys, and neither is F9.
  QTest::keyClick(canvas, 'b', Qt::AltModifier);
  type(QStringLiteral("\u03B1"));
  QInputMethodEvent composed;
  composed.setCommitString(QStringLiteral("x"));
  QCoreApplication::sendEvent(canvas, &composed);
  QInputMethodEvent making(QStringLiteral("´"), {});
  QCoreApplication::sendEvent(canvas, &making);
  composed.setCommitString(QStringLiteral("xn\u0303±"));
  QCoreApplication::sendEvent(canvas, &composed);
  EXPECT_EQ(keys,
            (std::vector<int>{'a', '(', '\\', '~', ' ', 13, 8, kKeyEscape, kKeyLeft, kKeyUp, kKeyRight,
                              kKeyDown, 10, kKeyWordBackspace, kKeyWordLeft, kKeyDelete, kKeyHome, 'x'}));
  EXPECT_EQ(texts, "é;α;()(´)()xñ±;");
  // A composition whose text comes twice.
  composed.setCommitString(QStringLiteral("´"));
  for (QInputMethodEvent* event : {&making, &composed, &composed}) QCoreApplication::sendEvent(canvas, event);
  EXPECT_EQ(texts, "é;α;()(´)()xñ±;(´)()´;");
}

TEST_F(CanvasTest, MouseReportsLogicalPositions) {
  canvas->SetCoordinates(-50, 100, 150, 600);
  std::vector<MouseEvent> events;
  canvas->OnMouseDown = canvas->OnMouseUp = [&](const MouseEvent& event) { events.push_back(event); };
  Show();
  QTest::mouseClick(canvas, Qt::LeftButton, {}, QPoint(100, 30));
  QTest::mouseClick(canvas, Qt::MiddleButton, Qt::ShiftModifier, QPoint(0, 150));
  QTest::mouseClick(canvas, Qt::BackButton, {}, QPoint(0, 150));
  ASSERT_EQ(events.size(), 4u);
  EXPECT_FLOAT_EQ(events[0].x, 0);
  EXPECT_FLOAT_EQ(events[1].y, 160);
  EXPECT_FLOAT_EQ(events[1].pixelX, 100);
  EXPECT_EQ(events[1].button, MouseButton::Left);
  EXPECT_EQ(events[2].button, MouseButton::Middle);
  EXPECT_FLOAT_EQ(events[2].y, 400);
  EXPECT_FALSE(events[0].shift);
  EXPECT_TRUE(events[2].shift);
}

TEST_F(CanvasTest, LettersBeyondAnySizeLeaveNoInk) {
  const auto ink = [this] {
    const QImage image = canvas->grab().toImage().convertToFormat(QImage::Format_RGB32);
    int dark = 0;
    for (int y = 0; y < image.height(); y += 3)
      for (int x = 0; x < image.width(); x += 3) dark += qGray(image.pixel(x, y)) < 128 ? 1 : 0;
    return dark;
  };
  for (const float em : {1e5F, 3e6F, 1e9F, 1e32F, -12.0F, 0.0F, std::nanf("")}) {
    for (const float x : {-0.3F * em, 10.0F}) Text(kSerif, em, "gM", x, 0.3F * em);
    EXPECT_EQ(ink(), 0) << em;
  }
  Text(kSerif, 4000, "I", -600, 2000);
  EXPECT_GT(ink(), 0);
}

TEST_F(CanvasTest, IsPaintedAnewWhenItComesUpAgain) {
  canvas->OnPaint = [this](Layer layer, const Box& area) {
    if (layer == Layer::Page) canvas->FillBox(area, kWhite);
    if (layer == Layer::Overlay) canvas->FillBox({10, 10, 20, 20}, kRed);
  };
  Show();
  window->Hide();
  canvas->ScrollTo(0, -30, kSide, kSide);  // its owner may go on meanwhile
  window->Show();
  EXPECT_EQ(PixelAt(Shown(), {15, 45}), 0xFFFF0000);
  EXPECT_EQ(PixelAt(Shown(), {15, 15}), 0xFFFFFFFF);
}

TEST_F(CanvasTest, ImagesOfLettersStayWithinTheirLimit) {
  QtFace& face = FaceFor(kSerif);
  Coverage coverage;
  for (double em = 60; em < 128; em += 0.5) {
    GlyphImages& images = PreparedImages(face, em, "ABCDEFGHIJKLMNOPQRSTUVWXYZ");
    for (unsigned char code = 'A'; code <= 'Z'; ++code)
      for (int step = 0; step < GlyphImages::kSteps; ++step) images.At(code, step, 0, coverage);
    TrimGlyphImages();
  }
  EXPECT_LT(GlyphImages::Held(), GlyphImages::kMostHeld * 11 / 10);
}

}  // namespace
}  // namespace kelvane
