#include "app/main_window.h"

#include <algorithm>
#include <cctype>
#include <map>
#include <set>
#include <tuple>

#include "app/menus.h"
#include "app/settings.h"
#include "document/page.h"
#include "editing/cursor.h"
#include "editing/keyboard.h"
#include "macros/macros.h"
#include "tests/support/editor_test.h"
#include "typography/colours.h"
#include "typography/typefaces.h"
#include "typography/view.h"

namespace kelvane {
namespace {

class MainWindowTest : public EditorTest {
 protected:
  // Gives the area beside the scroll bars a size in twips.
  void Resize(float width, float height) { window->SetWindowPlace({0, 0, width, height}); }

  // Whether something was drawn since the layer was cleared.
  bool Shows(const std::string& drawn, Layer layer = Layer::Page) const {
    return canvas->Drawn(layer).find(drawn) != std::string::npos;
  }

  void TypeOnThePage() {
    PlaceAt("Top Left", 10, 21);
    canvas->Type("x");
  }

  // Names of the entries that are checked, of those whose name begins so.
  static std::string Checked(const std::string& prefix) {
    std::string names;
    for (const BuiltEntry& built : BuiltMenus()) {
      if (built.name.starts_with(prefix) && built.entry->Checked()) names += built.name + " ";
    }
    return names;
  }
};

TEST_F(MainWindowTest, StartsWithTheSettings) {
  files.contents["\\Kelvane\\QRX.DAT"] =
      "FONTNUMBER = 4\r\nFONTSIZE = 9\r\nGRIDX = 5\r\nGRIDY = 1\r\nCURSORMODE = 3\r\nFormLeft = 150\r\n"
      "FormWidth = 12000\r\n";
  files.contents["\\Kelvane\\QRX.MCR"] = "alpha\r\n";
  canvas->icons.clear();
  Start();
  EXPECT_EQ(window->title, "Kelvane ver 1.7");
  EXPECT_TRUE(window->visible);
  EXPECT_EQ(std::tie(window->place.left, window->place.width, window->place.height),
            std::tuple(150, 12000, 7200));
  EXPECT_EQ(FontLabel->Text(), "Helvetica 9.00pts");
  EXPECT_EQ(std::tuple(CurrentFont, Text1->Text(), PageBox->Text()), std::tuple(4, "9", "1"));
  EXPECT_EQ(Checked("m"), "mGridV1 mGridH5 mFont4 mColour0 mThickness025 ");
  EXPECT_EQ(MacroMenu[0]->Caption(), "alpha");
  EXPECT_EQ(FocusedControl, static_cast<Canvas*>(canvas));
  ASSERT_EQ(toolkit.timers.size(), 1u);
  EXPECT_EQ(toolkit.timers[0]->interval, 200);
  EXPECT_TRUE(files.contents.contains("\\Kelvane\\QRX.HCT"));
  EXPECT_TRUE(canvas->Drawn(Layer::Page).starts_with("box 0 0 594 840 #FFFFFF\n"));
}

TEST_F(MainWindowTest, WithoutItsFontsOrHelpTheEditorDoesNotStart) {
  const std::pair<std::string, std::string> missing[] = {{"MATH0.PSF", "ERROR: Missing file MATH0.PSF"},
                                                         {"QRX.HLP", "ERROR: Missing file QRX.HLP"},
                                                         {"CB.WT", "ERROR - Unknown typeface: CB"},
                                                         {"MATH0.WT", "ERROR - Unknown typeface: MATH0"}};
  const auto expectRefusal = [&](const std::string& message) {
    dialogs.messages.clear();
    EXPECT_FALSE(StartUp("\\Kelvane\\"));
    EXPECT_EQ(dialogs.messages, std::vector<std::string>{message});
  };
  for (const auto& [name, message] : missing) {
    const auto file = files.contents.extract("\\Kelvane\\" + name);
    expectRefusal(message);
    files.contents["\\Kelvane\\" + name] = file.mapped();
  }
  files.contents["\\Kelvane\\MATH0.PSF"] = "/CharacterDefs\r\n/.notdef { } def\r\n";
  expectRefusal("ERROR: MATH0.PSF file format");
  EXPECT_EQ(toolkit.windows.size(), 1u);  // the fixture's own
}

TEST_F(MainWindowTest, UnreadableSettingsMacrosAndPagesAreReported) {
  files.unreadable = {"\\Kelvane\\QRX.DAT", "\\Kelvane\\QRX.MCR"};
  Start("\\P\\None.001");
  EXPECT_EQ(dialogs.messages.size(), 3u);
  EXPECT_EQ(SCALE, kDefaultScale);
  EXPECT_EQ(MacroMenu[1]->Caption(), "m1");
  EXPECT_EQ(window->title, "Kelvane ver 1.7");
}

TEST_F(MainWindowTest, ThePageFileOfTheCommandLineIsOpened) {
  files.contents["\\P\\Essay.001"] = "10 20 m 11 F0 (hello) 1 s\r\n";
  Start("\\P\\Essay.001");
  EXPECT_EQ(window->title, " Essay - Kelvane ver 1.7");
  EXPECT_TRUE(Shows("(hello)"));
  EXPECT_EQ(PageChanged, 0);
}

TEST_F(MainWindowTest, TheProgramFolderEndsInABackslash) {
  EXPECT_EQ(ResolveProgramFolder("\\opt\\kelvane"), "\\opt\\kelvane\\");
  EXPECT_EQ(ResolveProgramFolder("\\"), "\\");
  EXPECT_EQ(ResolveProgramFolder("C:\\Tools\\VB98"), "C:\\Orrimond\\Kelvane\\");
  EXPECT_EQ(ResolveProgramFolder("C:\\Tools\\VB98\\"), "C:\\Orrimond\\Kelvane\\");
  EXPECT_EQ(ResolveProgramFolder("C:\\Tools\\XVB98"), "C:\\Tools\\XVB98\\");
}

TEST_F(MainWindowTest, EntriesAndButtonsDoSomethingOrAreDisabled) {
  Start();
  std::set<std::string> names;
  EXPECT_EQ(BuiltMenus().size(), window->AllEntries().size());
  for (const BuiltEntry& built : BuiltMenus()) {
    SCOPED_TRACE(built.name);
    EXPECT_TRUE(names.insert(built.name).second);
    const auto* entry = static_cast<FakeMenuEntry*>(built.entry);
    EXPECT_EQ(std::tuple(static_cast<bool>(entry->OnChosen), built.available),
              std::tuple(entry->enabled, entry->enabled));
    EXPECT_FALSE(entry->caption.empty());
  }
  for (const auto& button : window->buttons) {
    SCOPED_TRACE(button->caption);
    EXPECT_TRUE(button->OnClick);
    EXPECT_FALSE(button->toolTip.empty());
    EXPECT_GT(button->place.width, 0);
  }
}

void ExpectUniqueMnemonics(const std::vector<std::string>& captions) {
  std::map<char, std::string> taken;
  for (const std::string& caption : captions) {
    const std::size_t sign = caption.find('&');
    // That caption is fixed and shares its letter with another.
    if (sign == std::string::npos || caption == "&Output As ASCII") continue;
    const auto letter = static_cast<char>(std::tolower(static_cast<unsigned char>(caption.at(sign + 1))));
    EXPECT_TRUE(taken.emplace(letter, caption).second) << caption << " and " << taken[letter];
  }
}

void ExpectUniqueMnemonics(const FakeMenu& menu) {
  std::vector<std::string> captions;
  for (const auto& entry : menu.entries)
    if (!entry->literal) captions.push_back(entry->caption);
  for (const auto& below : menu.menus) {
    captions.push_back(below->caption);
    ExpectUniqueMnemonics(*below);
  }
  ExpectUniqueMnemonics(captions);
}

TEST_F(MainWindowTest, KeysAreUniqueAndMnemonicsInTheirMenu) {
  Start();
  std::set<std::string> keys;
  for (const auto& shortcut : window->shortcuts) EXPECT_TRUE(keys.insert(shortcut.first).second);
  for (const FakeMenuEntry* entry : window->AllEntries())
    EXPECT_TRUE(entry->key.empty() || keys.insert(entry->key).second) << entry->key;

  std::vector<std::string> captions;
  for (const auto& menu : window->menus) {
    captions.push_back(menu->caption);
    ExpectUniqueMnemonics(*menu);
  }
  ExpectUniqueMnemonics(captions);
}

TEST_F(MainWindowTest, BoxAndCanvasFollowTheWindow) {
  Start();
  const auto expectPixels = [&](int boxWidth, int canvasWidth, int canvasHeight) {
    EXPECT_EQ(
        std::tuple(static_cast<FakeTextBox*>(Text4)->place.width, canvas->pixelWidth, canvas->pixelHeight),
        std::tuple(boxWidth, canvasWidth, canvasHeight));
  };
  Resize(6000, 4000);
  expectPixels(4785 / 15, 5640 / 15, 219);  // 3280 twips high
  Resize(1499, 2000);
  Resize(2000, 999);
  expectPixels(4785 / 15, 5640 / 15, 219);
  Resize(1500, 1000);
  EXPECT_EQ(std::tuple(static_cast<FakeTextBox*>(Text4)->place.width, canvas->pixelWidth),
            std::tuple(285 / 15, 1140 / 15));
}

TEST_F(MainWindowTest, AWindowThatStartsTooSmallIsLaidOutLikeAUsualOne) {
  files.contents["\\Kelvane\\QRX.DAT"] = "FormWidth = 1350\r\nFormHeight = 900\r\n";
  Start();
  EXPECT_GT(static_cast<FakeTextBox*>(Text4)->place.width, 100);
  EXPECT_GT(static_cast<FakeTextBox*>(Text4)->place.top, 0) << "below the script buttons";
}

TEST_F(MainWindowTest, NothingIsLaidOutWhileTheWindowIsBuilt) {
  ASSERT_TRUE(StartUp("\\Kelvane"));
  window = static_cast<FakeWindow*>(Form1);
  Form1_Resize();
  EXPECT_EQ(static_cast<FakeTextBox*>(Text4)->place.width, 0);
  CursorMode = 3;
  window->Show();
  EXPECT_EQ(CursorMode, 3);
}

// All of it can be seen in the smallest window that start-up makes.
TEST_F(MainWindowTest, ControlsDoNotOverlapInTheFirstWindow) {
  Start();
  std::vector<std::pair<std::string, Place>> places;
  for (const auto& button : window->buttons) places.emplace_back(button->caption, button->place);
  for (const auto& box : window->boxes) places.emplace_back(box->name, box->place);
  for (const auto& bar : window->bars) places.emplace_back("bar", bar->place);
  places.emplace_back("label", static_cast<FakeLabel*>(FontLabel)->place);
  places.emplace_back("Font Size label", static_cast<FakeLabel*>(Form1Parts.sizeLabel)->place);
  places.emplace_back("canvas", Place{24, 48, canvas->pixelWidth, canvas->pixelHeight});
  // The scroll bars lie beside the inner size, which is all that the fake window has.
  constexpr int kRight = 640 + kScrollBarPixels;
  constexpr int kBottom = 480 + kScrollBarPixels;
  for (std::size_t i = 0; i < places.size(); ++i) {
    const auto& [name, a] = places[i];
    EXPECT_TRUE(a.left >= 0 && a.top >= 0 && a.left + a.width <= kRight && a.top + a.height <= kBottom)
        << name;
    for (std::size_t k = 0; k < i; ++k) {
      const Place& b = places[k].second;
      const bool apart = a.left + a.width <= b.left || b.left + b.width <= a.left ||
                         a.top + a.height <= b.top || b.top + b.height <= a.top;
      EXPECT_TRUE(apart) << name << " and " << places[k].first;
    }
  }
}

TEST_F(MainWindowTest, AResizePlacesAChosenAnchor) {
  Start();
  for (const std::int16_t mode : {0, 1, 9, 10, 11, -4}) {
    CursorMode = mode;
    Resize(6000, 4000);
    EXPECT_EQ(CursorMode, mode == 1 || mode == 9 ? -mode : mode);
  }
  EXPECT_NE(canvas->Drawn(Layer::Overlay), "");
}

TEST_F(MainWindowTest, GridMenusAreCrossed) {
  Start();
  EXPECT_FALSE(Shows("line 0 100 594 100"));
  const std::map<std::string, std::string> menus = {{"mGridV5", "&View/&Horizontal Grid Lines"},
                                                    {"mGridH6", "&View/&Vertical Grid Lines"}};
  for (const BuiltEntry& built : BuiltMenus()) {
    if (!menus.contains(built.name)) continue;
    EXPECT_EQ(built.menu, menus.at(built.name));
    built.entry->OnChosen();
  }
  EXPECT_EQ(std::tie(GridStepV, GridStepH), std::tuple(5, 6));
  EXPECT_TRUE(Shows("line 0 100 594 100"));
  EXPECT_TRUE(Shows("line 156 0 156 840"));
  EXPECT_EQ(Checked("mGrid"), "mGridV5 mGridH6 ");
}

TEST_F(MainWindowTest, FromTheFirstKeyToPaper) {
  Start();
  PlaceAt("Bottom Left", 100.4F, 99.7F);
  canvas->Type("x");
  window->ClickButton("Superscript");
  canvas->Type("2");
  window->ClickButton("Forward from Superscript");
  window->ChooseEntry("Symbol");
  canvas->Type("a");
  EXPECT_EQ(FontLabel->Text(), "Symbol 11.00pts");
  canvas->Press(13);
  EXPECT_EQ(FontLabel->Text(), "Times-Roman 11.00pts");
  canvas->Type("next");

  dialogs.AnswerSave("\\P\\Essay.001");
  window->ChooseEntry("&Save");
  const std::string first =
      "100 99 m 11 F0 (x\xF0"
      "2\xF2\xE8"
      "a) 3 s\r\n100 111 m 11 F0 (next) 3 s\r\n";
  EXPECT_EQ(Content("\\P\\Essay.001"), first);
  EXPECT_EQ(window->title, " Essay - Kelvane ver 1.7");
  EXPECT_EQ(CursorMode, 0);
  EXPECT_EQ(Form1Parts.pointer->Text(), "Saved: /P/Essay.001");

  window->PressShortcut("PgDown");
  EXPECT_EQ(PageBox->Text(), "2");
  EXPECT_EQ(PageText, "");
  PlaceAt("Center", 300, 300);
  window->BoxOf("Font Size")->Type("24");
  canvas->Type("Two");
  EXPECT_TRUE(Shows("text Times New Roman 48 (Two)", Layer::Overlay));

  dialogs.AnswerOpen("\\P\\Essay.001");
  window->PressShortcut("Ctrl+P");
  EXPECT_EQ(Content("\\P\\Essay.002"), "300 300 m 24 F0 (Two) 9 s\r\n");
  const std::string job = Content("\\P\\Essay.PS");
  for (const char* text : {"(Two)", "(next)"}) EXPECT_NE(job.find(text), std::string::npos) << text;
  EXPECT_EQ(job.back(), 4);
  EXPECT_EQ(Form1Parts.pointer->Text(), "Written: /P/Essay.PS");

  window->PressShortcut("Ctrl+Z");
  EXPECT_EQ(PageText, "");
  window->ChooseEntry("&Redo typing");
  EXPECT_EQ(PageText, "300 300 m 24 F0 (Two) 9 s\r\n");
  window->ClickButton("Pg Up");
  EXPECT_EQ(PageText, first);
  EXPECT_EQ(PageBox->Text(), "1");
  window->ChooseEntry("&Undo");  // another page has no edits to take back
  EXPECT_EQ(PageText, first);
}

TEST_F(MainWindowTest, FileCommandsEndEditing) {
  Start();
  const auto edit = [&](const std::string& text) {
    PlaceAt("Top Right", 50, 60);
    canvas->Type(text);
  };
  edit("a");
  dialogs.AnswerNo();
  window->ChooseEntry("&New");
  EXPECT_EQ(std::tuple(CursorMode, PageText), std::tuple(0, ""));
  for (const char* entry : {"&Save", "Save &As", "Print &One Page", "&Print", "&Output As ASCII"}) {
    edit("b");
    const bool saves = std::string_view(entry).find("Save") != std::string_view::npos;
    saves ? dialogs.AnswerSave("") : dialogs.AnswerOpen("");
    window->ChooseEntry(entry);
    EXPECT_EQ(std::tie(CursorMode, PendingRun), std::tuple(0, "")) << entry;
  }
  EXPECT_EQ(std::count(PageText.begin(), PageText.end(), '\n'), 5);
  edit("d");
  dialogs.AnswerYes();
  dialogs.AnswerSave("");  // cancelled: nothing is opened
  window->ChooseEntry("Op&en");
  EXPECT_EQ(dialogs.messages.back(), "You are about to lose your paper.\r\nSave the current paper.");
  EXPECT_EQ(std::count(PageText.begin(), PageText.end(), '\n'), 6);
}

TEST_F(MainWindowTest, BoxesAnswerEnterAndEscape) {
  files.contents["\\P\\Essay.001"] = "10 20 m 11 F0 (one) 1 s\r\n";
  files.contents["\\P\\Essay.007"] = "10 20 m 11 F0 (seven) 1 s\r\n";
  Start("\\P\\Essay.001");
  FakeTextBox* pages = window->BoxOf("Page Number");
  pages->Type("7");
  pages->PressEnter();
  EXPECT_NE(PageText.find("seven"), std::string::npos);
  for (const bool enter : {true, false}) {
    pages->Type(enter ? "12345" : "1");
    enter ? pages->PressEnter() : pages->PressEscape();
    EXPECT_EQ(pages->text, "7");
  }
  EXPECT_EQ(FocusedControl, static_cast<Canvas*>(canvas));

  PlaceAt("Top Left", 10, 21);
  FakeTextBox* codes = window->BoxOf("Control Codes");
  codes->Type("typed in the box");
  EXPECT_TRUE(Shows("typed in the box", Layer::Overlay));
  codes->PressEnter();
  EXPECT_TRUE(PageText.ends_with("(typed in the box) 1 s\r\n"));
  EXPECT_EQ(CursorMode, 1);
}

TEST_F(MainWindowTest, TheMouseOnTheCanvas) {
  Start();
  window->ClickButton("Centre Left");
  canvas->Click(50, 60, MouseButton::Right);
  EXPECT_EQ(CursorMode, 2);
  const float startX = STARTX;
  canvas->Down(100, 100, MouseButton::Middle);
  canvas->Move(90, 100, MouseButton::Middle);
  EXPECT_NEAR(STARTX, startX + 10, 0.01);
  canvas->Up(90, 100, MouseButton::Middle);
  EXPECT_EQ(CursorMode, 2);
  canvas->Move(70, 70);
  EXPECT_NEAR(STARTX, startX + 10, 0.01);
  EXPECT_EQ(Form1Parts.pointer->Text(), "70.0, 70.0 pt     on the grid 70, 69 pt");
  canvas->OnMouseLeave();
  EXPECT_EQ(Form1Parts.pointer->Text(), "");

  WheelEvent wheel;
  wheel.steps = -1;
  const float startY = STARTY;
  canvas->Wheel(wheel);
  EXPECT_GT(STARTY, startY);
  wheel.shift = true;
  const float beforeX = STARTX;
  canvas->Wheel(wheel);
  EXPECT_GT(STARTX, beforeX);
  wheel.control = true;
  canvas->Wheel(wheel);
  EXPECT_LT(SCALE, kDefaultScale);
  canvas->Press(kKeyRight);  // chosen but not placed: the arrow places it
  EXPECT_EQ(CursorMode, -2);
  EXPECT_EQ(CursorX, GridStepH);
  window->ClickButton("Select");
  const float before = STARTY;
  canvas->Press(kKeyDown);
  EXPECT_GT(STARTY, before);
}

TEST_F(MainWindowTest, ScrollBarsShowTheView) {
  Start();
  auto* bar = static_cast<FakeScrollBar*>(Form1Parts.vertical);
  EXPECT_FLOAT_EQ(bar->value, VisibleTop);
  bar->Scroll(200);
  EXPECT_FLOAT_EQ(VisibleTop, 200);
  EXPECT_FLOAT_EQ(bar->value, 200);
  window->ChooseEntry("Fit &Page");
  EXPECT_FLOAT_EQ(bar->value, VisibleTop);
  EXPECT_FLOAT_EQ(bar->page, VisibleBottom - VisibleTop);
}

TEST_F(MainWindowTest, MacrosGoIntoTheRun) {
  files.contents["\\Kelvane\\QRX.MCR"] = "\xF0(2)\xF2\r\n";
  Start();
  MacroMenu[0]->OnChosen();
  EXPECT_EQ(PendingRun, "");
  TypeOnThePage();
  window->PressShortcut("Alt+0");
  EXPECT_EQ(PendingRun, "x\xF0(2)\xF2");
}

TEST_F(MainWindowTest, ExitWritesSettingsAndMacros) {
  files.contents["\\Kelvane\\QRX.DAT"] = "GRIDX = 4\r\nFormTop = 9\r\nFONTSIZE = 9\r\n";
  Start();
  static_cast<FakeTextBox*>(Text1)->Type("24");
  SetMacroCaption(2, "two");
  window->place = {30, 45, 12000, 9000};
  window->ChooseEntry("Exit");
  EXPECT_TRUE(toolkit.quit);
  EXPECT_EQ(Content("\\Kelvane\\QRX.DAT"),
            "GRIDX = 4\r\nFONTSIZE = 9\r\nFormLeft = 30\r\nFormTop = 45\r\nFormWidth = 12000\r\n"
            "FormHeight = 9000\r\n");
  EXPECT_TRUE(Content("\\Kelvane\\QRX.MCR").starts_with("m0\r\nm1\r\ntwo\r\n"));
}

TEST_F(MainWindowTest, ExitOffersToSave) {
  Start();
  TypeOnThePage();
  dialogs.AnswerYes();
  dialogs.AnswerSave("");
  window->ClickFrameClose();
  EXPECT_TRUE(window->visible);
  EXPECT_EQ(dialogs.asked, (std::vector<std::string>{"Would you like to save the current paper. [Yes]",
                                                     "Save: Save As, *.001|*.001, "}));
  EXPECT_FALSE(files.contents.contains("\\Kelvane\\QRX.MCR"));

  dialogs.AnswerYes();
  dialogs.AnswerSave("\\P\\Essay");
  window->ClickFrameClose();
  EXPECT_FALSE(window->visible);
  EXPECT_EQ(Content("\\P\\Essay.001"), "10 21 m 11 F0 (x) 1 s\r\n");
}

TEST_F(MainWindowTest, ExitDropsNoTextOfTheBoxUnasked) {
  Start();
  window->BoxOf("Control Codes")->Type("loose");
  dialogs.AnswerNo();
  window->ClickFrameClose();
  EXPECT_TRUE(window->visible);
  EXPECT_EQ(Text4->Text(), "loose");
  dialogs.AnswerYes();
  window->ClickFrameClose();
  EXPECT_FALSE(window->visible);
}

TEST_F(MainWindowTest, ExitTakesNoForAnAnswerAndAsksNothingOfAnEmptyPage) {
  for (const bool emptied : {false, true}) {
    toolkit.quit = false;
    Start();
    TypeOnThePage();
    emptied ? window->PressShortcut("Ctrl+Z") : dialogs.AnswerNo();
    window->ChooseEntry("Exit");
    EXPECT_TRUE(toolkit.quit);
    EXPECT_TRUE(files.contents.contains("\\Kelvane\\QRX.MCR"));
  }
}

// Somebody who may not write the program folder can work and leave, and is told.
TEST_F(MainWindowTest, AProgramFolderThatCannotBeWritten) {
  files.FailStep(FileStep::Create);
  Start();
  EXPECT_EQ(dialogs.messages.size(), 1u);
  dialogs.messages.clear();
  const auto before = files.contents;
  files.FailAnyStep(1, true);
  window->ChooseEntry("Exit");
  EXPECT_TRUE(toolkit.quit);
  EXPECT_EQ(dialogs.messages.size(), 2u);
  EXPECT_EQ(files.contents, before);
}

}  // namespace
}  // namespace kelvane
