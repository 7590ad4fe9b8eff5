// Measuring and drawing against a second, slow and plain account of what the codes of a run mean.

#include <algorithm>
#include <random>
#include <vector>

#include "tests/support/program_files.h"
#include "tests/support/program_test.h"
#include "typography/glyphs.h"
#include "typography/metrics.h"
#include "typography/run_painter.h"
#include "typography/typefaces.h"
#include "typography/view.h"

namespace kelvane {
namespace {

struct Placed {
  int font = 0;
  double em = 0, x = 0, y = 0;  // points
};

// Keeps where characters were drawn, unrounded. Glyphs begin with a line whose length tells their size.
class PositionCanvas : public RecordingCanvas {
 public:
  std::vector<Placed> placed;

  void DrawText(const ScreenFace& face, float em, std::string_view, std::span<const Point> origins,
                ColourValue) override {
    for (const Point& at : origins) placed.push_back({FontOf(face), em / SCALE, at.x, at.y});
  }
  void StrokePath(const Path& path, const Pen&) override {
    const Point from = path.points[0];
    placed.push_back({12, path.points[1].x - from.x, from.x, from.y});
  }

 private:
  static int FontOf(const ScreenFace& face) {
    int font = 0;
    while (kTypefaceNames[font].screen.family != face.family ||
           kTypefaceNames[font].screen.bold != face.bold || kTypefaceNames[font].screen.italic != face.italic)
      ++font;
    return font;
  }
};

struct Account {
  std::vector<Placed> placed;
  double x = 0, y = 0;
};

// Shifts are in ems of the size outside the script.
double RaiseOf(int code) {
  return code <= 242 || (code >= 246 && code <= 248) ? 0.36 : -0.24;
}
double LeanOf(int code) {
  if (code >= 249) return -0.06;
  return code >= 246 ? 0.09 : 0;
}

Account Follow(const std::string& run, int font, double size, double x, double y, double extra) {
  std::vector<Placed> placed;
  std::vector<double> saved;
  for (const char c : run) {
    const int code = static_cast<unsigned char>(c);
    if (code < 224) {
      const bool visible = font < 12 || (font != 13 && font != 14 && code >= 32 && code <= 127);
      if (visible) placed.push_back({std::min(font, 12), size, x, y});
      if (font <= 12) x += size * (code == 0 ? 600 : TestWidth(font, code)) / 600 * 0.6;
      if (code == 32) x += extra;
    } else if (code < 240) {
      font = code - 224;
    } else if (code < 252 && code % 3 == 0) {
      if (saved.size() == 40) continue;
      saved.push_back(x);
      x += LeanOf(code) * size;
      y -= RaiseOf(code) * size;
      size *= 0.8;
    } else if (code < 252) {
      if (saved.empty()) continue;
      size *= 1.25;
      y += RaiseOf(code) * size;
      x = code % 3 == 1 ? saved.back() : x - LeanOf(code) * size;  // back or on
      saved.pop_back();
    } else if (code >= 254) {
      x += 0.12 * size;
    }
  }
  return {placed, x, y};
}

class RunPositionsTest : public ProgramTest {
 protected:
  RunPositionsTest() {
    FillWidths();
    for (auto& columns : CharacterDefs) columns[0] = "0 0 moveto 50 0 rlineto";
    Picture1 = &positions;
  }

  std::string RandomRun() {
    std::string run;
    const auto length = random() % 60;
    for (std::size_t i = 0; i < length; ++i) {
      // A third of each: any code at all, a script or switch, a letter or blank.
      const auto kind = random() % 3;
      const auto code = kind == 0 ? random() % 256 : kind == 1 ? 224 + random() % 32 : 32 + random() % 96;
      run += static_cast<char>(code);
    }
    return run;
  }

  std::mt19937 random{20};
  PositionCanvas positions;
};

TEST_F(RunPositionsTest, AgreeWithThePlainAccount) {
  constexpr double kRounding = 0.01;  // of singles, over a run
  std::size_t characters = 0;
  for (int i = 0; i < 4000 && !HasFailure(); ++i) {
    const std::string run = i % 50 == 0 ? std::string(random() % 90, '\xF6') + RandomRun() : RandomRun();
    const auto font = static_cast<std::int16_t>(random() % 16);
    const auto size = static_cast<float>(4 + random() % 40);
    const float extra = i % 3 == 0 ? 2.5F : 0;
    SCALE = static_cast<float>(1 + i % 4);
    const Account wanted = Follow(run, font, size, 72, 300, extra);
    SCOPED_TRACE(::testing::PrintToString(run));

    positions.placed.clear();
    const View view = CurrentView();
    const RunPen end = RunPainter(positions, view).Paint({run, font, size, {72, 300}, 0, extra});
    EXPECT_NEAR(end.x, wanted.x, kRounding);
    EXPECT_NEAR(end.y, wanted.y, kRounding);
    EXPECT_NEAR(MeasureRun(run, font, size), Follow(run, font, size, 0, 0, 0).x, kRounding);

    ASSERT_EQ(positions.placed.size(), wanted.placed.size());
    characters += wanted.placed.size();
    for (std::size_t k = 0; k < wanted.placed.size(); ++k) {
      const Placed& found = positions.placed[k];
      EXPECT_EQ(found.font, wanted.placed[k].font) << k;
      EXPECT_NEAR(found.em, wanted.placed[k].em, kRounding) << k;
      EXPECT_NEAR(found.x, wanted.placed[k].x, kRounding) << k;
      EXPECT_NEAR(found.y, wanted.placed[k].y, kRounding) << k;
    }
  }
  EXPECT_GT(characters, 30000u);
}

}  // namespace
}  // namespace kelvane
