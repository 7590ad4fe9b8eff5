#include "app/commands.h"

#include <algorithm>

#include "app/exit.h"
#include "app/foot.h"
#include "app/typing_view.h"
#include "document/paper.h"
#include "editing/item_edits.h"
#include "editing/keyboard.h"
#include "editing/modes.h"
#include "editing/select_tool.h"
#include "editing/sign_entry.h"
#include "editing/undo.h"
#include "macros/define_macro_window.h"
#include "macros/macros.h"
#include "output/plain_text.h"
#include "output/postscript.h"
#include "papers/paper_commands.h"
#include "palette/palette.h"
#include "platform/files.h"
#include "typography/colours.h"
#include "typography/renderer.h"
#include "typography/typefaces.h"
#include "typography/view.h"
#include "typography/zoom.h"

namespace kelvane {

namespace {

using Table = std::vector<Command>;

// A routine that cannot be given up.
template <auto Routine>
bool Run() {
  Routine();
  return true;
}

// What leaves no trace on the page says at the foot of the window that it was done.
template <auto Save>
bool Saving() {
  if (!Save()) return false;
  ShowNote("Saved: " + MachinePath(CurrentPaperFile));
  return true;
}
template <auto Output>
bool Outputting() {
  const std::string path = Output();
  if (path.empty()) return false;
  ShowNote("Written: " + MachinePath(path));
  return true;
}

bool CanUndo() {
  return !UndoLabel().empty();
}
bool CanRedo() {
  return !RedoLabel().empty();
}

std::string UndoCaption() {
  return CanUndo() ? "&Undo " + UndoLabel() : "&Undo";
}
std::string RedoCaption() {
  return CanRedo() ? "&Redo " + RedoLabel() : "&Redo";
}

bool Refresh() {
  ShowPage();
  return true;
}

template <bool& Switch>
bool Toggle() {
  Switch = !Switch;
  ShowPage();
  return true;
}
template <bool& Switch>
bool IsOn() {
  return Switch;
}

void SelectEverything() {
  LeaveEditing();
  SelectAll();
  ShowCursor();
}

Command Separator(const char* menu) {
  return {.menu = menu};
}

// Captions of the File and View menus are fixed; two of File begin with the same mnemonic.
void AddFileMenu(Table& table) {
  const auto add = [&](const char* id, const char* caption, const char* key, bool (*run)()) {
    table.push_back(
        {.menu = "&File", .id = id, .caption = caption, .key = key, .run = run, .endsEditing = true});
  };
  add("mFileNew", "&New", "Ctrl+N", NewPaper);
  add("mFileOpen", "Op&en", "Ctrl+O", OpenPaper);
  add("mFileSave", "&Save", "Ctrl+S", Saving<SavePaper>);
  add("mFileSaveAs", "Save &As", "Ctrl+Shift+S", Saving<SavePaperAs>);
  table.push_back(Separator("&File"));
  add("mFilePrintOne", "Print &One Page", "Ctrl+Shift+P", Outputting<PrintOnePage>);
  add("mFilePrint", "&Print", "Ctrl+P", Outputting<PrintPaper>);
  add("mFileAscii", "&Output As ASCII", "", Outputting<OutputAsText>);
  table.push_back(Separator("&File"));
  // The frame's close button leaves as this entry does, so the sequence itself ends editing.
  table.push_back({"&File", "mFileExit", "Exit", "Ctrl+Q", Run<LeaveProgram>});
}

void AddEditMenu(Table& table) {
  const char* const menu = "&Edit";
  // Both keep the mode.
  table.push_back({menu, "mEditUndo", "&Undo", "Ctrl+Z", Run<Undo>, CanUndo, {}, false, {}, UndoCaption});
  table.push_back(
      {menu, "mEditRedo", "&Redo", "Ctrl+Shift+Z", Run<Redo>, CanRedo, {}, false, {}, RedoCaption});
  table.push_back(Separator(menu));
  table.push_back({menu, "mEditMove", "&Move", "", Run<StartMove>, AnythingSelected});
  table.push_back({menu, "mEditCut", "Cu&t", "Ctrl+X"});
  table.push_back({menu, "mEditCopy", "&Copy", "Ctrl+C"});
  table.push_back({menu, "mEditPaste", "&Paste", "Ctrl+V"});
  table.push_back({menu, "mEditDelete", "&Delete", "Del", Run<DeleteSelected>, AnythingSelected});
  table.push_back({menu, "mEditDuplicate", "Dup&licate", "Ctrl+D", Run<DuplicateSelected>, AnythingSelected});
  table.push_back(Separator(menu));
  table.push_back({menu, "mEditSelectAll", "Select &All", "Ctrl+A", Run<SelectEverything>});
  table.push_back(
      {menu, "mEditDistance", "Sho&w Distance", "", Toggle<ShowDistance>, {}, IsOn<ShowDistance>});
}

// The entries named mGridV set the horizontal lines and those named mGridH the vertical ones: the letter is
// the direction of the step. Both names stand in settings files and manuals.
void AddGridMenu(Table& table, const std::string& menu, const std::string& prefix, std::int16_t& step,
                 int firstShown) {
  for (std::int16_t choice = 1; choice <= 6; ++choice) {
    const std::string number = std::to_string(choice);
    const std::string lines =
        choice < firstShown ? "no lines" : "lines every " + std::to_string(2 * choice) + " pt";
    const auto choose = [&step, choice] {
      step = choice;
      ShowPage();
      return true;
    };
    table.push_back(
        {menu, prefix + number, "Step &" + number + " pt, " + lines, "", choose, {}, [&step, choice] {
           return step == choice;
         }});
  }
}

void AddViewMenu(Table& table) {
  const char* const menu = "&View";
  table.push_back({menu, "mViewRefresh", "&Refresh", "F5", Refresh});
  table.push_back(Separator(menu));
  table.push_back({menu, "mViewZoomIn", "Zoom &In", "Ctrl++", Run<ZoomIn>});
  table.push_back({menu, "mViewZoomOut", "Zoom &Out", "Ctrl+-", Run<ZoomOut>});
  table.push_back({menu, "mViewTrueSize", "&100 %", "Ctrl+0", Run<ZoomToTrueSize>});
  table.push_back({menu, "mViewFitPage", "Fit &Page", "Ctrl+1", Run<FitPage>});
  table.push_back({menu, "mViewFitWidth", "Fit &Width", "Ctrl+2", Run<FitWidth>});
  table.push_back(Separator(menu));
  table.push_back({menu, "mViewSigns", "&Signs", "F8", Run<TogglePalette>, {}, PaletteShown});
  table.push_back({menu, "mViewGrid", "Show &Grid", "", Toggle<ShowGrid>, {}, IsOn<ShowGrid>});
  table.push_back({menu, "mViewPrint", "Prin&t View", "", Toggle<PrintView>, {}, IsOn<PrintView>});
  table.push_back(Separator(menu));
  AddGridMenu(table, "&View/&Horizontal Grid Lines", "mGridV", GridStepV, 2);
  AddGridMenu(table, "&View/&Vertical Grid Lines", "mGridH", GridStepH, 3);
}

void AddFontMenu(Table& table) {
  static constexpr char kDigits[] = "0123456789ABCDEF";
  static constexpr const char* kKeys[kTypefaces] = {
      "Ctrl+Shift+R", "Ctrl+Shift+B", "Ctrl+Shift+I", "Ctrl+Shift+K", "Ctrl+Shift+H", "", "", "",
      "Ctrl+Shift+G", "Ctrl+Shift+C", "Ctrl+Shift+J", "Ctrl+Shift+L", "Ctrl+Shift+M", "", "", ""};
  for (std::int16_t font = 0; font < kTypefaces; ++font) {
    const auto choose = [font] {
      ChooseFont(font);
      return true;
    };
    table.push_back({.menu = "F&ormat/Font &Name",
                     .id = std::string("mFont") + kDigits[font],
                     .caption = kTypefaceNames[font].menuCaption,
                     .key = kKeys[font],
                     .run = choose,
                     .checked = [font] { return BaseFont == font; },
                     .handle = &FontMenu[font]});
  }
}

template <auto Routine>
bool Typing() {
  Routine();
  FollowTyping();
  return true;
}

// What has a key so that a formula can be typed without a menu.
void AddTypingMenu(Table& table) {
  const char* const menu = "F&ormat";
  table.push_back({menu, "mFontBefore", "Typeface &Before", "Ctrl+T", Typing<ChooseFontBefore>});
  table.push_back({menu, "mSuperscript", "&Superscript, and Back", "Ctrl+Up", Typing<SuperscriptKey>});
  table.push_back({menu, "mSubscript", "S&ubscript, and Back", "Ctrl+Down", Typing<SubscriptKey>});
}

// The path being drawn takes the style when it is finished, so it shows it at once.
bool ShowPathInNewStyle() {
  ShowCursor();
  return true;
}

void AddColourMenu(Table& table) {
  static constexpr const char* kCaptions[16] = {
      "Black",     "Dark Blue", "Dark Green", "Dark Cyan", "Dark Red", "Dark Magenta", "Brown",  "Light Grey",
      "Dark Grey", "Blue",      "Green",      "Cyan",      "Red",      "Magenta",      "Yellow", "White",
  };
  for (std::int16_t colour = 0; colour < 16; ++colour) {
    const auto choose = [colour] {
      ChooseColour(colour);
      return ShowPathInNewStyle();
    };
    table.push_back({.menu = "F&ormat/&Line Colour",
                     .id = "mColour" + std::to_string(colour),
                     .caption = kCaptions[colour],
                     .run = choose,
                     .checked = [colour] { return LineColour == colour; },
                     .handle = &ColourMenu[colour]});
  }
}

void AddThicknessMenu(Table& table) {
  static constexpr const char* kNames[] = {"010", "025", "050", "075", "100", "150", "200"};
  static constexpr const char* kCaptions[] = {"0.10 pt", "0.25 pt", "0.50 pt", "0.75 pt",
                                              "1.0 pt",  "1.5 pt",  "2.0 pt"};
  for (std::size_t i = 0; i < kThicknesses.size(); ++i) {
    const double width = kThicknesses[i];
    const auto choose = [width] {
      ChooseThickness(width);
      return ShowPathInNewStyle();
    };
    table.push_back({.menu = "F&ormat/Line &Thickness",
                     .id = std::string("mThickness") + kNames[i],
                     .caption = kCaptions[i],
                     .run = choose,
                     .checked = [width] { return LineWidth == width; },
                     .handle = &ThicknessMenu[i]});
  }
}

void AddMacroMenu(Table& table) {
  for (int number = 0; number < kMacros; ++number) {
    const auto call = [number] {
      CallMacro(number);
      FollowTyping();
      return true;
    };
    table.push_back({.menu = "&Macros/&Call",
                     .id = "mMacro" + std::to_string(number),
                     .caption = DefaultMacro(number),
                     .key = "Alt+" + std::to_string(number),
                     .run = call,
                     .captionNow = [number] { return MacroCaption(number); },
                     .literal = true,
                     .handle = &MacroMenu[number]});
  }
}

void AddButtons(Table& table) {
  static constexpr const char* kScripts[12] = {
      "Superscript",        "Back from Superscript",        "Forward from Superscript",
      "Subscript",          "Back from Subscript",          "Forward from Subscript",
      "Italic Superscript", "Back from Italic Superscript", "Forward from Italic Superscript",
      "Italic Subscript",   "Back from Italic Subscript",   "Forward from Italic Subscript",
  };
  const auto add = [&](const std::string& id, const char* caption, const char* key, std::function<bool()> run,
                       const char* toolTip) {
    table.push_back({.id = id, .caption = caption, .key = key, .run = std::move(run), .toolTip = toolTip});
  };
  for (int i = 0; i < 12; ++i) {
    const auto insert = [i] {
      InsertScript(i);
      FollowTyping();
      return true;
    };
    add("Script" + std::to_string(i), kScripts[i], "", insert, kScripts[i]);
  }
  add("PageUp", "Pg Up", "PgUp", PageUp, "Previous Page");
  add("PageDown", "Pg Dn", "PgDown", PageDown, "Next Page");
  for (std::int16_t mode = 0; mode < 10; ++mode) {
    const auto choose = [mode] {
      ChooseAnchor(mode);
      return true;
    };
    add("Cur" + std::to_string(mode), kAnchorNames[mode], "", choose, kAnchorNames[mode]);
  }
  add("Command6", "Draw Bezier", "", Run<ChooseBezier>, "Draw Bezier");
}

Table MakeTable() {
  Table table;
  AddFileMenu(table);
  AddEditMenu(table);
  AddViewMenu(table);
  AddFontMenu(table);
  AddTypingMenu(table);
  AddColourMenu(table);
  AddThicknessMenu(table);
  table.push_back(Separator("F&ormat"));
  table.push_back({"F&ormat", "mCharacterDesigner", "&Character Designer"});
  AddMacroMenu(table);
  table.push_back({"&Macros", "mMacrosDef", "&Define", "", Run<ShowDefineMacro>});
  table.push_back({"&Help", "mHelpContents", "&Contents", "F1"});
  table.push_back({"&Help", "mHelpContact", "C&ontact"});
  table.push_back({"&Help", "mHelpWeb", "&Web Page"});
  table.push_back(Separator("&Help"));
  table.push_back({"&Help", "mHelpAbout", "&About"});
  AddButtons(table);
  return table;
}

}  // namespace

const std::vector<Command>& Commands() {
  static const Table table = MakeTable();
  return table;
}

const Command& CommandOf(std::string_view id) {
  return *std::ranges::find(Commands(), id, &Command::id);
}

bool Available(const Command& command) {
  return command.run && (!command.enabled || command.enabled());
}

}  // namespace kelvane
