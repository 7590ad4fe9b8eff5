#include "designer/designer_window.h"

#include <algorithm>
#include <string>
#include <vector>

#include "designer/character_files.h"
#include "designer/design_grid.h"
#include "editing/keyboard.h"
#include "tests/support/editor_test.h"
#include "typography/glyphs.h"
#include "typography/typefaces.h"

namespace kelvane {
namespace {

class DesignerWindowTest : public EditorTest {
 protected:
  void Open() {
    Start();
    window->ChooseEntry("&Character Designer");
    designer = static_cast<FakeWindow*>(DesignerWindow);
    grid = static_cast<RecordingCanvas*>(DesignerCanvas);
    side = static_cast<RecordingCanvas*>(DesignerSide);
  }

  // The program folder as it is shipped.
  void PutShippedFont() {
    const std::string data = BackslashPath(KELVANE_SOURCE_DIR) + "\\data\\";
    for (const char* name : {"MATH0.PSF", "MATH0.TXT", "MATH0.WT", "QRX.PRO"})
      files.contents[ProgramFolder + name] = DiskFiles().ReadWhole(data + name);
    files.contents[ProgramFolder + "MATH0.ORG"] = files.contents[ProgramFolder + "MATH0.PSF"];
  }

  void Press(const std::string& key) { designer->PressShortcut(key); }
  void Drag(Point from, Point to, bool shift = false) {
    MouseEvent event;
    event.x = from.x;
    event.y = from.y;
    event.shift = shift;
    grid->OnMouseDown(event);
    grid->Move(to.x, to.y);
    grid->Up(to.x, to.y);
  }
  void ClearGlyph() {
    Press("Ctrl+A");
    Press("Del");
  }
  // A drop with one straight and one bent side, closed.
  void DrawDrop() {
    ClearGlyph();
    Press("Ctrl+D");
    grid->Click(10, 10);
    grid->Click(20, 40);
    Drag({10, 10}, {0, 30});
  }
  static constexpr char kDrop[] = "10 30 moveto 10 -30 rlineto -20 10 -10 30 rp fill";

  std::string Procedure(int code) const { return CharacterDefs[code - kFirstGlyph][0]; }
  bool Says(const std::string& text) const {
    return std::ranges::any_of(
        designer->labels, [&](const auto& label) { return label->text.find(text) != std::string::npos; });
  }

  FakeWindow* designer = nullptr;
  RecordingCanvas* grid = nullptr;
  RecordingCanvas* side = nullptr;
};

TEST_F(DesignerWindowTest, SavesEveryShippedGlyphUnchanged) {
  PutShippedFont();
  Open();
  const auto shipped = files.contents;
  for (int code = kFirstGlyph; code < kFirstGlyph + kGlyphs; ++code) {
    ChooseDesignedCode(static_cast<std::int16_t>(code));
    ASSERT_EQ(DesignedCode(), code);
    EXPECT_NO_THROW(CheckStrokeCount(Design.Strokes()));
    EXPECT_FALSE(Says("not drawn here")) << code;
    Press("Ctrl+S");
    for (const auto& [path, content] : shipped)
      ASSERT_EQ(files.contents[path], content) << path << ' ' << code;
    ASSERT_EQ(files.contents.size(), shipped.size());
  }
}

TEST_F(DesignerWindowTest, DrawsWithTheMouseAndThePageShowsIt) {
  Open();
  PlaceAt("Bottom Left", 100, 100);
  ChooseFont(12);
  canvas->Type("A");
  canvas->Press(kKeyEnter);
  DrawDrop();
  EXPECT_TRUE(Says("Width 30 (0.6 em), bearings 10 left and right, ink from 7."));
  // Shown in the table and the preview, in memory only when it is saved.
  EXPECT_NE(side->Drawn(Layer::Page).find("fill M"), std::string::npos);
  EXPECT_EQ(Procedure('A'), "0 0 moveto 65 0 rlineto st");
  EXPECT_EQ(TypefaceTable[12].Widths[65], TestWidth(12, 65));
  const std::string before = canvas->Drawn(Layer::Page);
  Press("Ctrl+S");
  EXPECT_EQ(Procedure('A'), kDrop);
  EXPECT_NE(Content("\\Kelvane\\QRX.PRO").find(std::string("/c65 { ") + kDrop + " } def"), std::string::npos);
  EXPECT_NE(Content("\\Kelvane\\MATH0.PSF").find("/c65 30 def"), std::string::npos);
  EXPECT_NE(canvas->Drawn(Layer::Page), before);
}

TEST_F(DesignerWindowTest, BendsMovesAndSelectsWithTheMouse) {
  Open();
  DrawDrop();
  Press("Ctrl+E");
  // The middle of the straight side; the curve goes where it is pulled.
  Drag({15, 25}, {17, 25});
  EXPECT_EQ(Design.Strokes()[0][1], (Point{17, 25}));
  Drag({20, 40}, {24, 41});
  EXPECT_EQ(Design.Strokes()[0][2], (Point{24, 41}));
  // A rectangle round the lower point and a control point, then both by a drag, then by a key.
  Drag({5, 22}, {30, 45});
  EXPECT_EQ(Design.Selection(), (PointSelection{{0, 1}, {0, 2}}));
  Drag({24, 41}, {25, 41});
  grid->Press(kKeyDown);
  EXPECT_EQ(Design.Strokes()[0][1], (Point{18, 26}));
  EXPECT_EQ(Design.Strokes()[0][2], (Point{25, 42}));
  // Quarters.
  Press("Ctrl+G");
  Drag({10, 10}, {10.3F, 9.7F});
  EXPECT_EQ(Design.Strokes()[0][0], (Point{10.25, 9.75}));
  EXPECT_TRUE(IsClosed(Design.Strokes()[0]));
  for (int step = 0; step < 5; ++step) Press("Ctrl+Z");
  EXPECT_EQ(BuildGlyph(StrokeLines(Design.Strokes())).text, kDrop);
}

// A point off the grid is not put on it by a click.
TEST_F(DesignerWindowTest, ClicksChangeNothing) {
  files.contents["\\Kelvane\\MATH0.PSF"].replace(
      files.contents["\\Kelvane\\MATH0.PSF"].find("0 0 moveto 65 0"), 15, "0.0625 3.9375 moveto 22 5");
  Open();
  for (const Point at : {Point{0.0625F, 36.0625F}, {11, 34}, {40, 5}}) {
    grid->Click(at.x, at.y);
    grid->Down(at.x, at.y);
    grid->Move(at.x, at.y);
    grid->Up(at.x, at.y);
  }
  EXPECT_FALSE(Design.Changed());
  EXPECT_FALSE(Design.CanUndo());
}

TEST_F(DesignerWindowTest, DrawsWithTheKeys) {
  Open();
  ClearGlyph();
  Press("Ctrl+D");
  const auto go = [&](int key, int times) {
    for (; times > 0; --times) grid->Press(key);
  };
  grid->Press(' ');  // the pen begins at 25, 40
  go(kKeyUp, 10);
  grid->Press(' ');
  go(kKeyRight, 4);
  grid->Press(' ');
  go(kKeyUp, 2);
  grid->Press('b');
  grid->Press(kKeyBackspace);
  go(kKeyLeft, 2);
  grid->Press('b');
  grid->Press(kKeyEnter);
  EXPECT_EQ(BuildGlyph(StrokeLines(Design.Strokes())).text, "25 0 moveto 2 12 0 10 rp st");
  Press("Ctrl+E");
  grid->Press('.');
  grid->Press('.');
  Press("Del");
  EXPECT_EQ(BuildGlyph(StrokeLines(Design.Strokes())).text, "25 0 moveto 0 10 rlineto st");
}

TEST_F(DesignerWindowTest, CopiesStrokesToAnotherCharacter) {
  Open();
  DrawDrop();
  Press("Ctrl+C");
  Press("Ctrl+S");
  side->Press('B');
  side->Press(kKeyEnter);
  ASSERT_EQ(DesignedCode(), 'B');
  ClearGlyph();
  Press("Ctrl+V");
  Press("Ctrl+M");
  Press("Ctrl+S");
  EXPECT_EQ(Procedure('B'), "20 30 moveto -10 -30 rlineto 20 10 10 30 rp fill");
  EXPECT_EQ(Procedure('A'), kDrop);
}

TEST_F(DesignerWindowTest, AsksBeforeChangesAreLost) {
  Open();
  DrawDrop();
  EXPECT_TRUE(designer->changed);
  dialogs.AnswerNeither();
  ChooseDesignedCode('B');
  EXPECT_EQ(DesignedCode(), 'A');
  EXPECT_EQ(BuildGlyph(StrokeLines(Design.Strokes())).text, kDrop);
  dialogs.AnswerNeither();
  window->ChooseEntry("Exit");
  EXPECT_FALSE(toolkit.quit);
  dialogs.AnswerNo();
  designer->ClickFrameClose();
  EXPECT_FALSE(designer->visible);
  EXPECT_EQ(Procedure('A'), "0 0 moveto 65 0 rlineto st");

  window->ChooseEntry("&Character Designer");
  DrawDrop();
  dialogs.AnswerYes();
  ChooseDesignedCode('B');
  EXPECT_EQ(DesignedCode(), 'B');
  EXPECT_EQ(Procedure('A'), kDrop);
  // Nothing to ask for.
  designer->ClickFrameClose();
  window->ChooseEntry("Exit");
  EXPECT_TRUE(toolkit.quit);
}

TEST_F(DesignerWindowTest, AFailedSaveKeepsTheStrokes) {
  Open();
  DrawDrop();
  files.FailStep(FileStep::Rename, 3);
  EXPECT_FALSE(FailureOf([&] { Press("Ctrl+S"); }).empty());
  EXPECT_TRUE(Design.Changed());
  EXPECT_EQ(Procedure('A'), "0 0 moveto 65 0 rlineto st");
  Press("Ctrl+S");
  EXPECT_EQ(Procedure('A'), kDrop);
}

TEST_F(DesignerWindowTest, RestoresTheShippedCharacter) {
  PutShippedFont();
  Open();
  const auto shipped = files.contents;
  DrawDrop();
  Press("Ctrl+S");
  EXPECT_NE(files.contents, shipped);
  Press("Ctrl+R");
  EXPECT_TRUE(Design.Changed());
  Press("Ctrl+S");
  EXPECT_EQ(files.contents, shipped);
  files.contents.erase("\\Kelvane\\MATH0.ORG");
  EXPECT_EQ(FailureOf([&] { Press("Ctrl+R"); }), "ERROR: Missing file MATH0.ORG");
}

TEST_F(DesignerWindowTest, WarnsWhereTheLastStrokeDecides) {
  Open();
  DrawDrop();
  EXPECT_FALSE(Says("The last stroke"));
  grid->Click(30, 30);
  grid->Click(35, 30);
  grid->Press(kKeyEnter);
  EXPECT_TRUE(Says("The last stroke is open"));
  Press("Ctrl+E");
  grid->Click(10, 10);
  Press("Ctrl+X");
  EXPECT_FALSE(Says("The last stroke"));
  Press("Ctrl+V");
  EXPECT_TRUE(Says("The last stroke is closed"));
}

TEST_F(DesignerWindowTest, ShowsACharacterBehindTheGrid) {
  Open();
  designer->ChooseEntry("Times-Italic");
  designer->BoxOf("Character behind the grid")->Type("g");
  EXPECT_NE(grid->Drawn(Layer::Page).find("text Times New Roman italic"), std::string::npos);
  EXPECT_NE(grid->Drawn(Layer::Page).find("(g) 0 40"), std::string::npos);
}

// Every control stays within the window, however small it is made.
TEST_F(DesignerWindowTest, FitsSmallWindows) {
  Open();
  for (const auto& [width, height] : {std::pair(900, 620), {480, 360}, {320, 260}}) {
    designer->SetWindowPlace({0, 0, static_cast<float>(width) * 15, static_cast<float>(height) * 15});
    std::vector<Place> places;
    for (const auto& button : designer->buttons) places.push_back(button->place);
    for (const auto& box : designer->boxes) places.push_back(box->place);
    for (const auto& label : designer->labels) places.push_back(label->place);
    for (const Place& place : places) {
      EXPECT_GE(place.left, 0);
      EXPECT_LE(place.left + place.width, width);
      EXPECT_LE(place.top + place.height, height);
    }
    EXPECT_GT(grid->pixelWidth, 100);
    EXPECT_GT(side->pixelWidth, 100);
    EXPECT_GT(grid->pixelHeight, 80);
  }
}

}  // namespace
}  // namespace kelvane
