#include "designer/designer_window.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "designer/character_files.h"
#include "designer/design_grid.h"
#include "designer/glyph_preview.h"
#include "document/numbers.h"
#include "editing/tool.h"
#include "papers/paper_commands.h"
#include "platform/failure.h"
#include "typography/glyph_shapes.h"
#include "typography/glyphs.h"
#include "typography/renderer.h"
#include "typography/typefaces.h"

namespace kelvane {

Window* DesignerWindow;
Canvas* DesignerSide;
TextBox* DesignerBackground;

namespace {

constexpr std::int16_t kFirstCode = 'A';
constexpr int kLastCode = kFirstGlyph + kGlyphs - 1;
constexpr float kStartWidth = 900 * kTwipsPerPixel;
constexpr float kStartHeight = 620 * kTwipsPerPixel;
constexpr float kOffset = 60 * kTwipsPerPixel;

// Pixels.
constexpr int kGap = 4;
constexpr int kRow = 24;
constexpr float kTablePart = 0.42F;  // of the side's height

std::int16_t Code = kFirstCode;
std::int16_t ReachedCode = kFirstCode;  // by the keys, in the table
std::string CopiedStrokes;
std::string Note;  // what was done last; a warning comes before it

// Controls that belong to the window alone.
struct Parts {
  std::vector<std::pair<Button*, int>> buttons;  // and their widths
  Button *select, *draw;
  Label *backgroundLabel, *width, *place, *note;
  MenuEntry *selectEntry, *drawEntry, *quarters, *undo, *redo, *paste;
  MenuEntry* typefaces[kFirstGlyphFont + 1];
};
Parts Own{};

std::string NameOfCode(std::int16_t code) {
  const std::string key = code == ' '         ? "space"
                          : code == kLastCode ? "Ctrl+Backspace"
                                              : std::string(1, static_cast<char>(code));
  return std::to_string(code) + ", key " + key;
}

// ---- What the window says ----

std::string WidthText() {
  if (Design.Strokes().empty()) return "Nothing drawn: width 50 (1 em)";
  const GlyphProcedure glyph = BuildGlyph(StrokeLines(Design.Strokes()));
  std::string text = "Width " + FormatSingle(glyph.width) + " (" + FormatSingle(glyph.width * kGlyphUnit) +
                     " em), bearings " + FormatSingle(glyph.bearing) + " left and right";
  const auto tenths = [](float x) { return FormatFixed(x, 1, true); };
  if (const GrowingBox ink = InkOfStrokes(Design.Strokes()); !ink.Empty())
    text += ", ink from " + tenths(ink.box.left) + " to " + tenths(ink.box.right);
  return text;
}

// The last stroke decides between filling and lines for all of them.
std::string Warning() {
  const GlyphStrokes& strokes = Design.Strokes();
  if (strokes.empty() || Design.Drawing()) return {};
  const bool filled = IsClosed(strokes.back());
  const bool alike = std::ranges::all_of(
      strokes, [filled](const GlyphStroke& stroke) { return IsClosed(stroke) == filled; });
  if (alike) return {};
  return filled ? "The last stroke is closed, so all are filled, the open ones too."
                : "The last stroke is open, so all are lines, and the closed ones are not filled.";
}

Box Part(float from, float to) {
  const auto width = static_cast<float>(DesignerSide->PixelWidth());
  const auto height = static_cast<float>(DesignerSide->PixelHeight());
  return {0, from * height, width, to * height};
}
Box TableArea() {
  return Part(0, kTablePart);
}

void PaintSide(Layer layer, const Box&) {
  if (layer == Layer::Overlay) return;
  const TriedGlyph tried(Code, Design.Strokes());
  PaintCodeTable(*DesignerSide, TableArea(), Code, ReachedCode);
  PaintPreview(*DesignerSide, Part(kTablePart, 1), Code);
}

void ShowPen() {
  const Point pen = PenPlace();
  Own.place->SetText("At " + FormatSingle(pen.x) + ", " + FormatSingle(pen.y));
}

void ShowState() {
  DesignerWindow->SetTitle("Character Designer - " + NameOfCode(Code));
  DesignerWindow->SetChanged(Design.Changed());
  Own.width->SetText(WidthText());
  ShowPen();
  const std::string warning = Warning();
  Own.note->SetText(warning.empty() ? Note : warning);
  Own.select->SetDown(!DrawTool);
  Own.draw->SetDown(DrawTool);
  Own.selectEntry->SetChecked(!DrawTool);
  Own.drawEntry->SetChecked(DrawTool);
  Own.quarters->SetChecked(QuarterSteps);
  Own.undo->SetEnabled(Design.CanUndo());
  Own.redo->SetEnabled(Design.CanRedo());
  Own.paste->SetEnabled(!CopiedStrokes.empty());
  for (std::int16_t font = 0; font <= kFirstGlyphFont; ++font)
    Own.typefaces[font]->SetChecked(Background.font == font);
  DesignerSide->Invalidate(Layer::Page);
}

void Load(std::int16_t code) {
  Code = ReachedCode = code;
  const std::string& procedure = CharacterDefs[code - kFirstGlyph][0];
  Design.Load(StrokesOfProcedure(procedure));
  Note = Builds(Design.Strokes(), procedure)
             ? ""
             : "This character was not drawn here. Saving it keeps only the strokes shown.";
  FitDesign();
  ShowDesign();
}

// ---- Commands ----

// A command on the strokes: shown at once, and the keys go on going to the grid.
template <typename Act>
std::function<void()> OnStrokes(Act act) {
  return [act] {
    Note.clear();
    act();
    ShowDesign();
    DesignerCanvas->Focus();
  };
}

void Copy() {
  CopiedStrokes = Design.Copied();
}

void Cut() {
  if (Design.Selection().empty()) return;
  Copy();
  Design.Select(WholeStrokes(Design.Strokes(), Design.Selection()));
  Design.Delete();
}

void Leave() {
  if (MayLeaveDesigner()) DesignerWindow->Hide();
}

void ChooseBackgroundFont(std::int16_t font) {
  Background.font = font;
  ShowDesign();
}

void BackgroundChanged() {
  const std::string text = DesignerBackground->Text();
  Background.code = text.empty() ? ' ' : text.back();
  ShowDesign();
}

// ---- The table of codes ----

void SideDown(const MouseEvent& event) {
  DesignerSide->Focus();
  if (const auto code = CodeInTable(TableArea(), {event.pixelX, event.pixelY})) ChooseDesignedCode(*code);
}

void Reach(int code) {
  ReachedCode = static_cast<std::int16_t>(std::clamp(code, kFirstGlyph, kLastCode));
  DesignerSide->Invalidate(Layer::Page);
}

void SideKey(int key) {
  switch (key) {
    case kKeyLeft:
      return Reach(ReachedCode - 1);
    case kKeyRight:
      return Reach(ReachedCode + 1);
    case kKeyUp:
      return Reach(
          std::max(ReachedCode - kTableColumns, kFirstGlyph + (ReachedCode - kFirstGlyph) % kTableColumns));
    case kKeyDown:
      return Reach(ReachedCode + kTableColumns <= kLastCode ? ReachedCode + kTableColumns : ReachedCode);
    case kKeyHome:
      return Reach(kFirstGlyph);
    case kKeyEnd:
      return Reach(kLastCode);
    case kKeyEnter:
      ChooseDesignedCode(ReachedCode);
      return;
    case kKeyEscape:
      DesignerCanvas->Focus();
      return;
    default:
      if (key >= kFirstGlyph && key <= kLastCode) Reach(key);
  }
}

// ---- Making and placing ----

Button* AddButton(const char* caption, int width, const char* toolTip, std::function<void()> click) {
  Button* button = DesignerWindow->AddButton(caption, {}, toolTip);
  button->OnClick = std::move(click);
  Own.buttons.emplace_back(button, width);
  return button;
}

void AddButtons() {
  Own.select = AddButton("Select", 52, "Select and move points; drag a segment to bend it (Ctrl+E)",
                         OnStrokes([] { ChooseTool(false); }));
  Own.draw = AddButton("Draw", 46, "Draw strokes: click for straight segments, drag to bend them (Ctrl+D)",
                       OnStrokes([] { ChooseTool(true); }));
  AddButton("Close", 48, "Close strokes on their start, or open them again (Ctrl+L)",
            OnStrokes([] { Design.CloseStrokes(); }));
  AddButton("Split", 44, "Put a point into the middle of the selected segments (Ctrl+T)",
            OnStrokes([] { Design.Split(); }));
  AddButton("Reverse", 60, "Let strokes go round the other way, so that they cut holes (Ctrl+B)",
            OnStrokes([] { Design.Reverse(); }));
  AddButton("Undo", 46, "Undo (Ctrl+Z)", OnStrokes([] { Design.Undo(); }));
  AddButton("Redo", 46, "Redo (Ctrl+Shift+Z)", OnStrokes([] { Design.Redo(); }));
  AddButton("Fit", 36, "Show the whole grid and the whole character (Ctrl+0)", OnStrokes(FitDesign));
  AddButton("Restore", 60, "Bring the shipped character back (Ctrl+R)", OnStrokes(RestoreDesign));
  AddButton("Save", 46, "Save the character in the font (Ctrl+S)", OnStrokes(SaveDesign));
}

MenuEntry* AddEntry(Menu* menu, const char* caption, const char* key, std::function<void()> chosen) {
  MenuEntry* entry = menu->AddEntry(caption, key);
  entry->OnChosen = std::move(chosen);
  return entry;
}

void AddMenus() {
  Menu* character = DesignerWindow->AddMenu("&Character");
  AddEntry(character, "&Save", "Ctrl+S", OnStrokes(SaveDesign));
  AddEntry(character, "&Restore the Shipped One", "Ctrl+R", OnStrokes(RestoreDesign));
  character->AddSeparator();
  AddEntry(character, "&Close", "Ctrl+W", Leave);

  Menu* edit = DesignerWindow->AddMenu("&Edit");
  Own.undo = AddEntry(edit, "&Undo", "Ctrl+Z", OnStrokes([] { Design.Undo(); }));
  Own.redo = AddEntry(edit, "&Redo", "Ctrl+Shift+Z", OnStrokes([] { Design.Redo(); }));
  edit->AddSeparator();
  AddEntry(edit, "Cu&t Strokes", "Ctrl+X", OnStrokes(Cut));
  AddEntry(edit, "&Copy Strokes", "Ctrl+C", OnStrokes(Copy));
  Own.paste = AddEntry(edit, "&Paste Strokes", "Ctrl+V", OnStrokes([] { Design.Paste(CopiedStrokes); }));
  AddEntry(edit, "&Delete Points", "Del", OnStrokes([] { Design.Delete(); }));
  AddEntry(edit, "Select &All", "Ctrl+A", OnStrokes([] { Design.Select(AllPoints(Design.Strokes())); }));

  Menu* strokes = DesignerWindow->AddMenu("&Strokes");
  Own.selectEntry = AddEntry(strokes, "&Select and Move", "Ctrl+E", OnStrokes([] { ChooseTool(false); }));
  Own.drawEntry = AddEntry(strokes, "&Draw", "Ctrl+D", OnStrokes([] { ChooseTool(true); }));
  Own.quarters =
      AddEntry(strokes, "In &Quarters of a Unit", "Ctrl+G", OnStrokes([] { QuarterSteps = !QuarterSteps; }));
  strokes->AddSeparator();
  AddEntry(strokes, "&Close or Open", "Ctrl+L", OnStrokes([] { Design.CloseStrokes(); }));
  AddEntry(strokes, "S&plit Segments", "Ctrl+T", OnStrokes([] { Design.Split(); }));
  AddEntry(strokes, "&Reverse", "Ctrl+B", OnStrokes([] { Design.Reverse(); }));
  AddEntry(strokes, "&Mirror Sideways", "Ctrl+M", OnStrokes([] { Design.Mirror(false); }));
  AddEntry(strokes, "Mirror &Upside Down", "Ctrl+Shift+M", OnStrokes([] { Design.Mirror(true); }));

  Menu* view = DesignerWindow->AddMenu("&View");
  constexpr float kZoom = 1.5F;
  AddEntry(view, "Zoom &In", "Ctrl++", [] { ZoomDesign(kZoom); });
  AddEntry(view, "Zoom &Out", "Ctrl+-", [] { ZoomDesign(1 / kZoom); });
  AddEntry(view, "&Fit", "Ctrl+0", FitDesign);
  view->AddSeparator();
  Menu* typefaces = view->AddMenu("&Typeface Behind the Grid");
  for (std::int16_t font = 0; font <= kFirstGlyphFont; ++font) {
    Own.typefaces[font] =
        AddEntry(typefaces, kTypefaceNames[font].menuCaption, "", [font] { ChooseBackgroundFont(font); });
  }
}

void Resize() {
  const int width = static_cast<int>(DesignerWindow->InnerWidth() / kTwipsPerPixel);
  const int height = static_cast<int>(DesignerWindow->InnerHeight() / kTwipsPerPixel);
  int left = kGap;
  int top = kGap;
  for (const auto& [button, buttonWidth] : Own.buttons) {
    if (left > kGap && left + buttonWidth > width - kGap) {
      left = kGap;
      top += kRow + 2;
    }
    button->SetPlace({left, top, buttonWidth, kRow});
    left += buttonWidth + 2;
  }
  top += kRow + kGap;

  constexpr int kPlaceWidth = 100;
  constexpr int kLabelWidth = 96;
  constexpr int kBoxWidth = 36;
  const int foot = height - 2 * (kRow + kGap);
  const int inner = width - 2 * kGap;
  const int canvases = std::max(foot - top - kGap, 1);
  const int side = std::clamp(width * 2 / 5, 1, 400);
  DesignerWindow->SetCanvasPlace(DesignerCanvas, {kGap, top, std::max(inner - side - kGap, 1), canvases});
  DesignerWindow->SetCanvasPlace(DesignerSide, {width - kGap - side, top, side, canvases});
  DesignerSide->SetCoordinates(0, 0, static_cast<float>(side), static_cast<float>(canvases));

  const auto placeRow = [&](Label* first, int firstTop, int rest) {
    first->SetPlace({kGap, firstTop, std::max(inner - rest - kGap, 1), kRow});
  };
  placeRow(Own.width, foot, kPlaceWidth);
  Own.place->SetPlace({std::max(width - kGap - kPlaceWidth, 0), foot, kPlaceWidth, kRow});
  placeRow(Own.note, foot + kRow, kLabelWidth + kGap + kBoxWidth);
  const int box = std::max(width - kGap - kBoxWidth, 0);
  DesignerBackground->SetPlace({box, foot + kRow, kBoxWidth, kRow});
  Own.backgroundLabel->SetPlace({std::max(box - kGap - kLabelWidth, 0), foot + kRow, kLabelWidth, kRow});
  DesignGridResized();
  ShowState();
}

void BuildDesigner() {
  Own = {};
  DesignerWindow = TheToolkit->NewWindow(false);
  AddMenus();
  AddButtons();
  ConnectDesignGrid(*DesignerWindow->AddCanvas());
  DesignerCanvas->SetName("Grid of the character");
  DesignerSide = DesignerWindow->AddCanvas();
  DesignerSide->SetName("Characters and preview");
  DesignerSide->SetToolTip(
      "Click a character to design it. With the keys: arrows or its own key, then Enter.");
  DesignerSide->OnPaint = PaintSide;
  DesignerSide->OnMouseDown = SideDown;
  DesignerSide->OnKeyPress = SideKey;
  Own.width = DesignerWindow->AddLabel("");
  Own.place = DesignerWindow->AddLabel("");
  Own.backgroundLabel = DesignerWindow->AddLabel("Behind the grid");
  DesignerBackground = DesignerWindow->AddTextBox("Character behind the grid", false);
  DesignerBackground->OnChange = BackgroundChanged;
  DesignerBackground->OnEnter = DesignerBackground->OnEscape = [] { DesignerCanvas->Focus(); };
  Own.note = DesignerWindow->AddLabel("");
  DesignerWindow->OnResize = Resize;
  DesignerWindow->OnEscape = Leave;
  DesignerWindow->OnCloseRequest = MayLeaveDesigner;
  DesignChanged = ShowState;
  PenMoved = ShowPen;
  const WindowPlace editor = Form1->GetWindowPlace();
  DesignerWindow->SetWindowPlace({editor.left + kOffset, editor.top + kOffset, kStartWidth, kStartHeight});
}

}  // namespace

void ResetDesigner() {
  ResetDesignGrid();
  Code = ReachedCode = kFirstCode;
  CopiedStrokes.clear();
  Note.clear();
}

void ShowDesigner() {
  if (!DesignerWindow) BuildDesigner();
  const bool opens = !DesignerWindow->Visible();
  DesignerWindow->Show();
  if (opens) Load(Code);
  DesignerCanvas->Focus();
}

std::int16_t DesignedCode() {
  return Code;
}

void ChooseDesignedCode(std::int16_t code) {
  ReachedCode = code;
  if (code != Code && MayLeaveDesigner()) Load(code);
  ReachedCode = Code;
  ShowDesign();
}

void SaveDesign() {
  Design.EndDrawing();
  SaveGlyph(Code, StrokeLines(Design.Strokes()));
  Design.TakeAsSaved();
  Note = "Saved in the font. Pages show and print it so from now on.";
  ShowPage();
  ShowCursor();
}

void RestoreDesign() {
  Design.Replace(StrokesOfProcedure(ShippedProcedure(Code)));
  Note = "This is the shipped character. Save it to keep it.";
}

bool MayLeaveDesigner() {
  if (!DesignerWindow || !DesignerWindow->Visible()) return true;
  Design.EndDrawing();
  if (!Design.Changed()) return true;
  switch (TheDialogs->AskBeforeLosing("The character " + NameOfCode(Code) +
                                      " has changes that are not saved.\nSave them?")) {
    case Answer::Yes:
      SaveDesign();
      break;
    case Answer::No:
      Load(Code);
      break;
    case Answer::Neither:
      return false;
  }
  ShowState();
  return true;
}

}  // namespace kelvane
