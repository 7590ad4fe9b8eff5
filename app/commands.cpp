#include "app/commands.h"

#include <algorithm>

#include "app/about_window.h"
#include "app/actions.h"
#include "app/contact_window.h"
#include "app/exit.h"
#include "app/find_window.h"
#include "app/formula_menu.h"
#include "app/overview_window.h"
#include "app/pdf_window.h"
#include "app/picture_window.h"
#include "app/recovery_window.h"
#include "app/samples.h"
#include "app/typing_view.h"
#include "app/web_window.h"
#include "document/paper.h"
#include "editing/arrange.h"
#include "editing/bezier.h"
#include "editing/clipboard.h"
#include "editing/dragging.h"
#include "editing/item_edits.h"
#include "editing/keyboard.h"
#include "editing/modes.h"
#include "editing/properties.h"
#include "editing/select_tool.h"
#include "editing/selection.h"
#include "editing/shaping.h"
#include "editing/sign_entry.h"
#include "macros/macros.h"
#include "output/plain_text.h"
#include "output/postscript.h"
#include "output/printing.h"
#include "palette/palette.h"
#include "papers/page_operations.h"
#include "papers/paper_commands.h"
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

template <auto Save>
bool Saving() {
  if (!Save()) return false;
  ShowDone("Saved", CurrentPaperFile);
  return true;
}
template <auto Output>
bool Outputting() {
  const std::string path = Output();
  if (path.empty()) return false;
  ShowDone("Written", path);
  return true;
}

// "&Undo" and what it would take back.
std::string CaptionWith(const char* command, const std::string& label) {
  return label.empty() ? command : command + (" " + label);
}

std::string OpenCaption() {
  return SelectedProperties().drawings > 0 ? "Shape Drawing b&y Its Points" : "Ret&ype Run";
}

template <bool Forwards>
bool Finding() {
  FindAgain(Forwards);
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

// What changes the run takes the view along.
template <auto Routine>
bool Typing() {
  Routine();
  FollowTyping();
  return true;
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
  add("mFilePdf", "Export P&DF...", "Ctrl+Alt+E", Run<ShowPdfWindow>);
  add("mFilePicture", "Export Pict&ure...", "Ctrl+Shift+U", Run<ShowPictureWindow>);
  add("mFilePrinter", "Print to Prin&ter...", "Ctrl+Alt+P", PrintToPrinter);
  add("mFilePreview", "Print Previe&w...", "Ctrl+Alt+V", PreviewPrint);
  table.push_back(Separator("&File"));
  table.push_back({"&File", "mFileVersions", "&Versions", "", Run<OpenVersions>, PaperHasName});
  table.push_back({"&File", "mFileRecover", "&Recover", "", Run<ShowRecovery>});
  table.push_back(Separator("&File"));
  // The frame's close button leaves as this entry does, so the sequence itself ends editing.
  table.push_back({"&File", "mFileExit", "Exit", "Ctrl+Q", Run<LeaveProgram>});
}

void AddAnchorMenu(Table& table) {
  for (int anchor = 1; anchor <= 9; ++anchor) {
    const auto choose = [anchor] {
      SelectedProperties().texts > 0 ? SetAnchor(anchor) : ChooseAnchor(static_cast<std::int16_t>(anchor));
      return true;
    };
    const std::string number = std::to_string(anchor);
    table.push_back({.menu = "&Edit/Anc&hor",
                     .id = "mAnchor" + number,
                     .caption = "&" + number + " " + kAnchorNames[anchor],
                     .key = "Ctrl+Alt+" + number,
                     .run = choose,
                     .checked = [anchor] { return ShowsAnchor(anchor); }});
  }
}

void AddArrangeMenu(Table& table) {
  const char* const menu = "&Edit/Arrang&e";
  const auto addAlign = [&](const char* id, const char* caption, Side side) {
    const auto align = [side] {
      AlignSelected(side);
      return true;
    };
    table.push_back({menu, id, caption, "", align, [side] { return CanAlign(side); }});
  };
  addAlign("mAlignLeft", "Align &Left", Side::Left);
  addAlign("mAlignCentre", "Align &Centre", Side::Centre);
  addAlign("mAlignRight", "Align &Right", Side::Right);
  addAlign("mAlignTop", "Align &Top", Side::Top);
  addAlign("mAlignMiddle", "Align &Middle", Side::Middle);
  addAlign("mAlignBottom", "Align B&ottom", Side::Bottom);
  addAlign("mAlignBaseline", "Align &Baselines", Side::Baseline);
  const auto add = [&](const char* id, const char* caption, void (*run)(bool), bool argument,
                       bool (*enabled)()) {
    const auto act = [run, argument] {
      run(argument);
      return true;
    };
    table.push_back({menu, id, caption, "", act, enabled});
  };
  table.push_back(Separator(menu));
  add("mDistributeAcross", "Distribute &Horizontally", DistributeSelected, true, CanDistribute);
  add("mDistributeDown", "Distribute &Vertically", DistributeSelected, false, CanDistribute);
  table.push_back(Separator(menu));
  add("mOrderFront", "Bring to &Front", ReorderSelected, true, IsSelecting);
  add("mOrderBack", "Send to Bac&k", ReorderSelected, false, IsSelecting);
  table.push_back(Separator(menu));
  table.push_back({menu, "mArrangeScale", "&Scale...", "", Run<AskScale>, IsSelecting});
  table.push_back({menu, "mArrangeTurn", "Rot&ate...", "", Run<AskTurn>, CanTurn});
}

void AddEditMenu(Table& table) {
  const char* const menu = "&Edit";
  // These keep the mode.
  const auto addStep = [&](const std::string& path, const char* id, const char* caption, const char* key,
                           bool (*run)(), std::string (*label)()) {
    table.push_back({.menu = path,
                     .id = id,
                     .caption = caption,
                     .key = key,
                     .run = run,
                     .enabled = [label] { return !label().empty(); },
                     .captionNow = [caption, label] { return CaptionWith(caption, label()); }});
  };
  addStep(menu, "mEditUndo", "&Undo", "Ctrl+Z", UndoStep, LabelBack);
  addStep(menu, "mEditRedo", "&Redo", "Ctrl+Shift+Z", RedoStep, LabelForward);
  table.push_back(Separator(menu));
  table.push_back({menu, "mEditMove", "&Move", "", Run<StartMove>, AnythingSelected});
  table.push_back({menu, "mEditCut", "Cu&t", "Ctrl+X", Typing<Cut>, CanCopy});
  table.push_back({menu, "mEditCopy", "&Copy", "Ctrl+C", Run<Copy>, CanCopy});
  table.push_back({.menu = menu,
                   .id = "mEditCopyPicture",
                   .caption = "Copy A&s Picture",
                   .key = "Ctrl+Alt+C",
                   .run = Run<CopyPicture>,
                   .endsEditing = true});
  table.push_back({menu, "mEditPaste", "&Paste", "Ctrl+V", Typing<PasteAtPointer>});
  table.push_back({menu, "mEditDelete", "&Delete", "Del", Typing<Delete>, CanDelete});
  table.push_back({menu, "mEditDuplicate", "Dup&licate", "Ctrl+D", Run<DuplicateSelected>, AnythingSelected});
  table.push_back({.menu = menu,
                   .id = "mEditOpen",
                   .caption = "Ret&ype Run",
                   .run = Run<OpenSelected>,
                   .enabled = CanOpenSelected,
                   .captionNow = OpenCaption});
  table.push_back({menu, "mEditPosition", "Positi&on...", "Ctrl+Shift+X", Run<AskPosition>, IsSelecting});
  AddAnchorMenu(table);
  AddArrangeMenu(table);
  table.push_back(Separator(menu));
  table.push_back({menu, "mEditSelectAll", "Select &All", "Ctrl+A", Run<SelectEverything>});
  table.push_back(
      {menu, "mEditDistance", "Sho&w Distance", "", Toggle<ShowDistance>, {}, IsOn<ShowDistance>});
  table.push_back(Separator(menu));
  table.push_back({menu, "mEditFind", "F&ind", "Ctrl+F", Run<ShowFindWindow>});
  table.push_back({menu, "mEditFindNext", "Find &Next", "F3", Finding<true>});
  table.push_back({menu, "mEditFindPrevious", "Find Pre&vious", "Shift+F3", Finding<false>});
  table.push_back(Separator(menu));
  const std::string pages = "&Edit/Pa&ges";
  const auto add = [&](const char* id, const char* caption, const char* key, bool (*run)(), bool (*can)()) {
    table.push_back({.menu = pages,
                     .id = id,
                     .caption = caption,
                     .key = key,
                     .run = run,
                     .enabled = can,
                     .endsEditing = true});
  };
  add("mPagesBefore", "Insert &Before", "", InsertPageBefore, nullptr);
  add("mPagesAfter", "Insert &After", "", InsertPageAfter, nullptr);
  add("mPagesDuplicate", "Du&plicate", "", DuplicatePage, nullptr);
  add("mPagesDelete", "&Delete", "", DeletePage, PaperHasName);
  add("mPagesEarlier", "Move &Earlier", "Alt+PgUp", MovePageEarlier, CanMovePageEarlier);
  add("mPagesLater", "Move &Later", "Alt+PgDown", MovePageLater, CanMovePageLater);
  add("mPagesMove", "&Move To...", "Ctrl+Shift+F7", MoveCurrentPage, CanMovePages);
  table.push_back(Separator(pages.c_str()));
  addStep(pages, "mPagesUndo", "&Undo", "", UndoPageOperation, [] { return PageStepBack().label; });
  addStep(pages, "mPagesRedo", "&Redo", "", RedoPageOperation, [] { return PageStepForward().label; });
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
  table.push_back({menu, "mViewRefresh", "&Refresh", "F5", Run<static_cast<void (*)()>(ShowPage)>});
  table.push_back(Separator(menu));
  table.push_back({menu, "mViewZoomIn", "Zoom &In", "Ctrl++", Run<ZoomIn>});
  table.push_back({menu, "mViewZoomOut", "Zoom &Out", "Ctrl+-", Run<ZoomOut>});
  table.push_back({menu, "mViewTrueSize", "&100 %", "Ctrl+0", Run<ZoomToTrueSize>});
  table.push_back({menu, "mViewFitPage", "Fit &Page", "Ctrl+1", Run<FitPage>});
  table.push_back({menu, "mViewFitWidth", "Fit &Width", "Ctrl+2", Run<FitWidth>});
  table.push_back(
      {menu, "mViewFitSelection", "Fit Se&lection", "Ctrl+3", Run<FitSelection>, AnythingSelected});
  table.push_back(Separator(menu));
  table.push_back({menu, "mViewPages", "Pag&e Overview", "F7", Run<ShowOverview>});
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
      SetFont(font);
      return true;
    };
    table.push_back({.menu = "F&ormat/Font &Name",
                     .id = std::string("mFont") + kDigits[font],
                     .caption = kTypefaceNames[font].menuCaption,
                     .key = kKeys[font],
                     .run = choose,
                     .checked = [font] { return ShowsFont(font); },
                     .handle = &FontMenu[font]});
  }
}

// What has a key so that a formula can be typed without a menu. While nothing is typed, Ctrl+Up and Ctrl+Down
// are left to the selected items.
void AddTypingMenu(Table& table) {
  const char* const menu = "F&ormat";
  table.push_back({menu, "mFontBefore", "Typeface &Before", "Ctrl+T", Typing<ChooseFontBefore>});
  table.push_back(
      {menu, "mSuperscript", "&Superscript, and Back", "Ctrl+Up", Typing<SuperscriptKey>, PointIsPlaced});
  table.push_back(
      {menu, "mSubscript", "S&ubscript, and Back", "Ctrl+Down", Typing<SubscriptKey>, PointIsPlaced});
}

void AddColourMenu(Table& table) {
  static constexpr const char* kCaptions[16] = {
      "Black",     "Dark Blue", "Dark Green", "Dark Cyan", "Dark Red", "Dark Magenta", "Brown",  "Light Grey",
      "Dark Grey", "Blue",      "Green",      "Cyan",      "Red",      "Magenta",      "Yellow", "White",
  };
  for (std::int16_t colour = 0; colour < 16; ++colour) {
    const auto choose = [colour] {
      SetColour(colour);
      ShowCursor();  // a path being drawn takes the style when it is finished, and shows it at once
      return true;
    };
    table.push_back({.menu = "F&ormat/&Line Colour",
                     .id = "mColour" + std::to_string(colour),
                     .caption = kCaptions[colour],
                     .run = choose,
                     .checked = [colour] { return ShowsColour(colour); },
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
      SetThickness(width);
      ShowCursor();  // a path being drawn takes the style when it is finished, and shows it at once
      return true;
    };
    table.push_back({.menu = "F&ormat/Line &Thickness",
                     .id = std::string("mThickness") + kNames[i],
                     .caption = kCaptions[i],
                     .run = choose,
                     .checked = [width] { return ShowsThickness(width); },
                     .handle = &ThicknessMenu[i]});
  }
}

void AddDrawMenu(Table& table) {
  const char* const menu = "F&ormat/&Draw";
  static constexpr struct {
    const char* caption;
    const char* key;
    const char* toolTip;
  } kRows[kShapes] = {{"Draw &Bezier", "Ctrl+Shift+V", "Draw Bezier (Ctrl+Shift+V)"},
                      {"Draw &Line", "Ctrl+Shift+N", "Draw Line (Ctrl+Shift+N)"},
                      {"Draw &Arrow", "Ctrl+Shift+W", "Draw Arrow (Ctrl+Shift+W)"},
                      {"Draw &Rectangle", "Ctrl+Shift+T", "Draw Rectangle (Ctrl+Shift+T)"},
                      {"Draw &Ellipse", "Ctrl+Shift+E", "Draw Ellipse (Ctrl+Shift+E)"},
                      {"Draw &Polygon", "Ctrl+Shift+Y", "Draw Polygon (Ctrl+Shift+Y)"}};
  for (int i = 0; i < kShapes; ++i) {
    const auto shape = static_cast<Shape>(i);
    const auto choose = [shape] {
      ChooseShape(shape);
      return true;
    };
    table.push_back({.menu = menu,
                     .id = ShapeCommand(shape),
                     .caption = kRows[i].caption,
                     .key = kRows[i].key,
                     .run = choose,
                     .checked = [shape] { return CursorMode == kBezierMode && DrawnShape == shape; },
                     .toolTip = kRows[i].toolTip});
  }
  table.push_back(Separator(menu));
  table.push_back({menu, "mDrawFill", "&Fill Closed Drawings", "", Run<ToggleFill>, {}, FillIsOn});
  table.push_back(
      {menu, "mDrawHead", "Arrow&heads on Open Ones", "", Toggle<ArrowAtEnd>, {}, IsOn<ArrowAtEnd>});
  table.push_back(Separator(menu));
  table.push_back({.menu = menu,
                   .id = "mDrawShape",
                   .caption = "&Shape Drawing",
                   .key = "Ctrl+Shift+D",
                   .run = Run<ShapeSelected>,
                   .checked = [] { return CursorMode == kShapingMode; },
                   .toolTip = "Shape Drawing (Ctrl+Shift+D)"});
  table.push_back({menu, "mDrawAddPoint", "Add Poi&nt", "", Run<AddPoints>, CanAddPoints});
  table.push_back({menu, "mDrawRemovePoint", "Re&move Point", "", Run<RemovePoints>, CanRemovePoints});
  table.push_back({menu, "mDrawSplit", "Spli&t", "", Run<SplitShaped>, CanSplit});
  table.push_back({menu, "mDrawJoin", "&Join", "", Run<JoinShaped>, CanJoin});
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

void AddSampleMenu(Table& table) {
  for (const SamplePaper& paper : SamplePapers()) {
    for (int page = 1; page <= paper.pages; ++page) {
      const std::string number = std::to_string(page);
      table.push_back({.menu = std::string("&Help/&Sample Papers/") + paper.caption,
                       .id = std::string("mSample") + paper.name + number,
                       .caption = "Page &" + number,
                       .run = [&paper, page] { return OpenSample(paper, page); },
                       .endsEditing = true});
    }
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
                       const std::string& toolTip) {
    table.push_back({.id = id, .caption = caption, .key = key, .run = std::move(run), .toolTip = toolTip});
  };
  for (int i = 0; i < 12; ++i) {
    const auto insert = [i] {
      ScriptButton(i);
      FollowTyping();
      return true;
    };
    add("Script" + std::to_string(i), kScripts[i], "", insert, kScripts[i]);
  }
  add("PageUp", "Pg Up", "PgUp", PageUp, "Previous Page (PgUp)");
  add("PageDown", "Pg Dn", "PgDown", PageDown, "Next Page (PgDown)");
  for (std::int16_t mode = 0; mode < 10; ++mode) {
    const auto choose = [mode] {
      ChooseAnchor(mode);
      return true;
    };
    const std::string name = kAnchorNames[mode];
    const std::string key = mode == 0 ? "Esc" : "Ctrl+Alt+" + std::to_string(mode);
    add("Cur" + std::to_string(mode), kAnchorNames[mode], "", choose, name + " (" + key + ")");
  }
}

Table MakeTable() {
  Table table;
  AddFileMenu(table);
  AddEditMenu(table);
  std::ranges::copy(FormulaCommands(), std::back_inserter(table));
  AddViewMenu(table);
  AddFontMenu(table);
  AddTypingMenu(table);
  AddColourMenu(table);
  AddThicknessMenu(table);
  AddDrawMenu(table);
  table.push_back(Separator("F&ormat"));
  table.push_back({"F&ormat", "mCharacterDesigner", "&Character Designer", "", Run<OpenDesigner>});
  AddMacroMenu(table);
  table.push_back({"&Macros", "mMacrosDef", "&Define", "", Run<OpenMacroDefinitions>});
  table.push_back({"&Help", "mHelpContents", "&Contents", "F1", Run<OpenManual>});
  AddSampleMenu(table);
  table.push_back({"&Help", "mHelpContact", "C&ontact", "", Run<ShowContact>});
  table.push_back({"&Help", "mHelpWeb", "&Web Page", "", Run<ShowWebPage>});
  table.push_back(Separator("&Help"));
  table.push_back({"&Help", "mHelpAbout", "&About", "", Run<ShowAbout>});
  AddButtons(table);
  return table;
}

}  // namespace

const std::vector<Command>& Commands() {
  static const Table table = MakeTable();
  return table;
}

std::string ShapeCommand(Shape shape) {
  return shape == Shape::Bezier ? "Command6" : "mDraw" + std::to_string(static_cast<int>(shape));
}

const Command& CommandOf(std::string_view id) {
  return *std::ranges::find(Commands(), id, &Command::id);
}

}  // namespace kelvane
