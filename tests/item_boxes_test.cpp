// Boxes and distances against plain accounts: of text, what the painter was given; of drawings, very many
// points of their curves.

#include "typography/item_boxes.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <numbers>
#include <random>
#include <string>
#include <vector>

#include "document/numbers.h"
#include "tests/support/program_files.h"
#include "tests/support/program_test.h"
#include "typography/glyph_shapes.h"
#include "typography/metrics.h"
#include "typography/renderer.h"
#include "typography/typefaces.h"

namespace kelvane {
namespace {

constexpr float kInfinity = std::numeric_limits<float>::infinity();

// Keeps the boxes of the characters it is given. All glyphs are lines of 25 units that begin at the origin.
class InkKeeper : public Painter {
 public:
  std::vector<Box> boxes;

  void FillBox(const Box&, ColourValue) override {}
  void DrawLine(Point, Point, const Pen&) override {}
  void FillPath(const Path&, ColourValue) override {}
  void DrawText(const ScreenFace& face, float em, std::string_view codes, std::span<const Point> origins,
                ColourValue) override {
    std::size_t font = 0;
    while (kTypefaceNames[font].screen.family != face.family ||
           kTypefaceNames[font].screen.bold != face.bold || kTypefaceNames[font].screen.italic != face.italic)
      ++font;
    for (std::size_t i = 0; i < codes.size(); ++i) {
      const Box& ink = TypefaceTable[font].Ink[static_cast<unsigned char>(codes[i])];
      if (ink.left == ink.right) continue;
      const auto [x, y] = origins[i];
      boxes.push_back({x + em * ink.left, y + em * ink.top, x + em * ink.right, y + em * ink.bottom});
    }
  }
  void StrokePath(const Path& path, const Pen&) override {
    const float half = (path.points[1].x - path.points[0].x) / 100;
    const auto [x, y] = path.points[0];
    boxes.push_back({x - half, y - half, path.points[1].x + half, y + half});
  }
};

class ItemBoxesTest : public ProgramTest {
 protected:
  ItemBoxesTest() {
    FillWidths();
    for (auto& columns : CharacterDefs) columns[0] = "0 0 moveto 25 0 rlineto st";
    std::string& bytes = files.contents[ProgramFolder + "INK.TAB"];
    for (int entry = 0; entry < 12 * 256; ++entry) {
      const bool inked = entry % 256 != ' ' && entry % 7 != 0;
      const int left = static_cast<int>(random() % 200) - 100;
      const int bottom = static_cast<int>(random() % 300) - 250;
      for (const int edge : {left, bottom, left + 300, bottom + 500}) {
        bytes += static_cast<char>(inked ? edge & 255 : 0);
        bytes += static_cast<char>(inked ? edge >> 8 & 255 : 0);
      }
    }
    LoadInkBoxes();
  }

  float Between(float from, float to) { return std::uniform_real_distribution<float>(from, to)(random); }

  std::string RandomLine() {
    std::string run;
    for (auto i = random() % 30; i > 0; --i) {
      const auto kind = random() % 3;
      const auto code = kind == 0 ? 1 + random() % 255 : kind == 1 ? 224 + random() % 32 : 32 + random() % 96;
      if (code != 10 && code != 13) run += static_cast<char>(code);
    }
    return FormatSingle(Between(0, 400)) + ' ' + FormatSingle(Between(0, 400)) + " m " +
           FormatSingle(Between(4, 40)) + " F" + "0123456789ABCDEF"[random() % 16] + " (" + run + ") " +
           std::to_string(random() % 10) + (random() % 3 ? " s" : " 222 a");
  }

  std::mt19937 random{9};
};

void ExpectBox(const Box& found, const Box& wanted, float tolerance) {
  EXPECT_NEAR(found.left, wanted.left, tolerance);
  EXPECT_NEAR(found.top, wanted.top, tolerance);
  EXPECT_NEAR(found.right, wanted.right, tolerance);
  EXPECT_NEAR(found.bottom, wanted.bottom, tolerance);
}

TEST_F(ItemBoxesTest, EntriesHaveTheInkThatIsPainted) {
  constexpr float kRounding = 0.01F;
  int inked = 0;
  for (int i = 0; i < 3000 && !HasFailure(); ++i) {
    const std::string line = RandomLine();
    SCOPED_TRACE(::testing::PrintToString(line));
    TextEntry entry;
    ASSERT_TRUE(ParseTextEntry(line, entry));
    InkKeeper painter;
    const Box all{-9999, -9999, 9999, 9999};
    PaintPage(painter, View{all}, PageItems(Page{line, 0, {}}), all);

    const Point point{Between(-100, 500), Between(-100, 500)};
    Box wanted{entry.x, entry.y, entry.x, entry.y};
    float distance = std::hypot(point.x - entry.x, point.y - entry.y);
    for (const Box& box : painter.boxes) {
      const bool first = &box == painter.boxes.data();
      wanted = first ? box
                     : Box{std::min(wanted.left, box.left), std::min(wanted.top, box.top),
                           std::max(wanted.right, box.right), std::max(wanted.bottom, box.bottom)};
      const float dx = std::max({box.left - point.x, 0.0F, point.x - box.right});
      const float dy = std::max({box.top - point.y, 0.0F, point.y - box.bottom});
      distance = first ? std::hypot(dx, dy) : std::min(distance, std::hypot(dx, dy));
    }
    ExpectBox(InkBoxOf(entry), wanted, kRounding);
    EXPECT_NEAR(DistanceTo(entry, point), distance, kRounding);
    const float within = DistanceTo(entry, point, 5);
    if (distance < 4.9F)
      EXPECT_NEAR(within, distance, kRounding);
    else
      EXPECT_GT(within, 4.9F);
    if (painter.boxes.empty()) continue;
    ++inked;
    const Box& some = painter.boxes[random() % painter.boxes.size()];
    EXPECT_EQ(DistanceTo(entry, {(some.left + some.right) / 2, (some.top + some.bottom) / 2}, 0), 0);
  }
  EXPECT_GT(inked, 2000);
}

// The point that a click means is the nearest of those where the caret may stand.
TEST_F(ItemBoxesTest, AClickSetsTheCaretBesideTheNearestCharacter) {
  for (int i = 0; i < 500; ++i) {
    std::string run;
    for (auto n = random() % 12; n > 0; --n) run += static_cast<char>(32 + random() % 96);
    TextEntry entry{100, 200, 12, 3, run, static_cast<int>(1 + random() % 9), i % 2 == 0, 150};
    const PlacedRun placed = PlaceRun(entry);
    const float x = Between(0, 300);
    const auto placeOf = [&](std::size_t caret) {
      const auto blanks = std::count(run.begin(), run.begin() + static_cast<std::ptrdiff_t>(caret), ' ');
      return placed.origin.x + MeasureRun(run.substr(0, caret), 3, 12) +
             placed.extraSpace * static_cast<float>(blanks);
    };
    float least = kInfinity;
    for (std::size_t caret = 0; caret <= run.size(); ++caret)
      least = std::min(least, std::abs(placeOf(caret) - x));
    EXPECT_NEAR(std::abs(placeOf(CaretAt(entry, {x, placed.origin.y - 3})) - x), least, 0.01F) << run;
  }
}

TEST_F(ItemBoxesTest, AClickTellsScriptsApart) {
  for (TypefaceRecord& face : TypefaceTable) face.Widths.fill(500);
  // Characters are 5 wide, scripts 4: x, then 2 over i, then y.
  const TextEntry entry{0,
                        100,
                        10,
                        0,
                        "x\xF0"
                        "2\xF1\xF3i\xF5y\xF0z\xF2",
                        3,
                        false,
                        0};
  const struct {
    Point point;
    std::size_t caret;
  } cases[] = {{{1, 97}, 0},     {{4, 97}, 1},    {{5.5F, 93}, 2}, {{8.5F, 93}, 3},   {{5.5F, 103}, 5},
               {{8.5F, 103}, 6}, {{9.5F, 97}, 7}, {{13, 97}, 8},   {{17.5F, 93}, 10}, {{60, 99}, 11},
               {{60, 90}, 10},   {{-60, 97}, 0},  {{1, 103}, 0}};
  for (const auto& [point, caret] : cases)
    EXPECT_EQ(CaretAt(entry, point), caret) << point.x << ' ' << point.y;
}

// Points of a drawing, very near each other; a cubic from the definition of the curve.
std::vector<std::array<double, 2>> Sampled(const Drawing& drawing) {
  std::vector<std::array<double, 2>> samples;
  for (std::size_t i = 0; i + 2 < drawing.points.size(); i += 2) {
    const Point a = drawing.points[i], c = drawing.points[i + 1], b = drawing.points[i + 2];
    const double f = IsStraight(a, c, b) ? 2.0 / 3 : 0.556;
    for (int step = 0; step <= 4000; ++step) {
      const double t = step / 4000.0, u = 1 - t;
      const auto at = [&](double from, double control, double to) {
        return u * u * u * from + 3 * u * u * t * (from + f * (control - from)) +
               3 * u * t * t * (to + f * (control - to)) + t * t * t * to;
      };
      samples.push_back({at(a.x, c.x, b.x), at(a.y, c.y, b.y)});
    }
  }
  return samples;
}

TEST_F(ItemBoxesTest, DrawingsHaveTheInkOfTheirCurves) {
  constexpr double kSampling = 0.1;
  int inside = 0;
  for (int i = 0; i < 400 && !HasFailure(); ++i) {
    Drawing drawing;
    drawing.points = {{Between(0, 200), Between(0, 200)}};
    for (auto n = 1 + random() % 4; n > 0; --n) {
      const Point from = drawing.points.back();
      const Point to{Between(0, 200), Between(0, 200)};
      const bool straight = random() % 3 == 0;
      drawing.points.push_back(straight ? Point{(from.x + to.x) * 0.5F, (from.y + to.y) * 0.5F}
                                        : Point{Between(-100, 300), Between(-100, 300)});
      drawing.points.push_back(to);
    }
    drawing.closed = i % 2 == 0;
    if (drawing.closed) drawing.points.back() = drawing.points[0];
    drawing.style.width = i % 3 == 0 ? 0 : Between(0, 9);
    const float half = drawing.closed ? 0 : std::max(drawing.style.width, 0.1F) / 2;

    const Point point{Between(0, 200), Between(0, 200)};
    Box wanted{kInfinity, kInfinity, -kInfinity, -kInfinity};
    double distance = kInfinity, turned = 0;
    double before = 0;
    const auto samples = Sampled(drawing);
    for (const auto& [x, y] : samples) {
      wanted = {std::min(wanted.left, static_cast<float>(x) - half),
                std::min(wanted.top, static_cast<float>(y) - half),
                std::max(wanted.right, static_cast<float>(x) + half),
                std::max(wanted.bottom, static_cast<float>(y) + half)};
      distance = std::min(distance, std::hypot(x - point.x, y - point.y) - half);
      const double angle = std::atan2(y - point.y, x - point.x);
      if (&x != samples.data()->data()) turned += std::remainder(angle - before, 2 * std::numbers::pi);
      before = angle;
    }
    const bool filled = drawing.closed && std::abs(turned) > 1;
    inside += filled;
    ExpectBox(InkBoxOf(drawing), wanted, 0.01F);
    const double found = DistanceTo(drawing, point);
    EXPECT_NEAR(found, filled ? 0 : std::max(distance, 0.0), kSampling);
    const double within = DistanceTo(drawing, point, 3);
    if (found <= 3)
      EXPECT_EQ(within, found);
    else
      EXPECT_GT(within, 3);
  }
  EXPECT_GT(inside, 10);
}

TEST_F(ItemBoxesTest, AWideLineIsNearByItsEdge) {
  const Drawing line{{{0, 50}, {50, 50}, {100, 50}}, {0, 9}, false};
  EXPECT_EQ(DistanceTo(line, {50, 54}, 0), 0);
  EXPECT_EQ(DistanceTo(line, {50, 44}, 2), 1.5F);
  EXPECT_GT(DistanceTo(line, {50, 40}, 2), 2);
}

TEST_F(ItemBoxesTest, WhatHasNoInkIsAtItsPoint) {
  for (const char* run : {"", "   ", "\xF0\xE3",
                          "\xED"
                          "xyz"}) {
    const TextEntry entry{72, 100, 11, 0, run, 8, false, 0};
    ExpectBox(InkBoxOf(entry), {72, 100, 72, 100}, 0);
    EXPECT_EQ(DistanceTo(entry, {72, 103}, 4), 3) << run;
  }
  EXPECT_EQ(CaretAt({72, 100, 11, 0, "", 8, false, 0}, {0, 0}), 0u);
}

TEST_F(ItemBoxesTest, CharactersWithoutAKnownBoxTakeTheirAdvance) {
  files.contents[ProgramFolder + "INK.TAB"].resize(std::size_t{8} * (256 + 'b'));
  LoadInkBoxes();
  const float advance = Advance('b', 1, 10);
  ExpectBox(InkBoxOf("b ", 1, 10, 3, {5, 50}), {5, 41, 5 + advance, 53}, 0.001F);
  const Box known = TypefaceTable[1].Ink['a'];
  ExpectBox(InkBoxOf("a", 1, 10, 3, {5, 50}),
            {5 + 10 * known.left, 50 + 10 * known.top, 5 + 10 * known.right, 50 + 10 * known.bottom}, 0.001F);
  files.contents.erase(ProgramFolder + "INK.TAB");
  LoadInkBoxes();
  ExpectBox(InkBoxOf("a", 0, 10, 3, {5, 50}), {5, 41, 5 + Advance('a', 0, 10), 53}, 0.001F);
}

TEST_F(ItemBoxesTest, NumbersOfAnySizeGiveBoxesThatAreBoxes) {
  const float nan = std::numeric_limits<float>::quiet_NaN();
  const float values[] = {0, -11, 1e-30F, 3e38F, -3e38F, 12};
  const auto value = [&] { return values[random() % std::size(values)]; };
  for (int i = 0; i < 3000; ++i) {
    const TextEntry entry{value(),         value(),
                          value(),         static_cast<std::int16_t>(random() % 16),
                          "a \xF0g\xF2 b", static_cast<int>(random() % 11),
                          i % 2 == 0,      value()};
    Drawing drawing;
    for (int k = 0; k < 5; ++k) drawing.points.push_back({value(), value()});
    drawing.style.width = value();
    drawing.closed = i % 3 == 0;
    const Point point = i % 5 == 0 ? Point{nan, value()} : Point{value(), value()};
    for (const Box& box : {InkBoxOf(entry), InkBoxOf(drawing)})
      ASSERT_TRUE(box.left <= box.right && box.top <= box.bottom) << i;
    for (const float distance : {DistanceTo(entry, point), DistanceTo(drawing, point)})
      ASSERT_TRUE(distance >= 0) << i;
    if (std::isnan(point.x)) {
      EXPECT_GT(DistanceTo(entry, point), 1e30F);
      EXPECT_GT(DistanceTo(drawing, point), 1e30F);
    }
    ASSERT_LE(CaretAt(entry, point), entry.text.size());
  }
}

}  // namespace
}  // namespace kelvane
