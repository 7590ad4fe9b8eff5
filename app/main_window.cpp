#include "app/main_window.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "app/commands.h"
#include "app/context_menu.h"
#include "app/exit.h"
#include "app/first_minutes.h"
#include "app/foot.h"
#include "app/icons.h"
#include "app/menu_bar.h"
#include "app/menus.h"
#include "app/typing_view.h"
#include "document/fields.h"
#include "document/numbers.h"
#include "document/paper.h"
#include "editing/cursor.h"
#include "editing/formula_entry.h"
#include "editing/keyboard.h"
#include "editing/modes.h"
#include "editing/picking.h"
#include "editing/properties.h"
#include "editing/sign_entry.h"
#include "palette/palette.h"
#include "papers/paper_commands.h"
#include "typography/colours.h"
#include "typography/glyphs.h"
#include "typography/renderer.h"
#include "typography/typefaces.h"
#include "typography/view.h"
#include "typography/zoom.h"

namespace kelvane {

Form1Controls Form1Parts;
bool ResizeGuard = true;

namespace {

// Twips. A window smaller than this keeps its last layout.
constexpr float kLeastWidth = 1500;
constexpr float kLeastHeight = 1000;
constexpr float kStartWidth = 9600;
constexpr float kStartHeight = 6000;
constexpr float kColumn = 360;     // the buttons left of the canvas
constexpr float kStrip = 720;      // the two rows above it
constexpr float kBesideBox = 855;  // what "OK" takes of the run box's row

// Pixels.
constexpr int kButton = 24;
constexpr int kRow = 24;
constexpr int kAnchorButtons = 10;
constexpr float kScrollPixels = 48;  // a notch of the wheel
constexpr float kArrowPixels = 24;   // an arrow key in Select
constexpr float kWheelZoom = 1.15F;  // a notch of the wheel with Ctrl

int Pixels(float twips) {
  return static_cast<int>(std::lround(twips / kTwipsPerPixel));
}

// The page is dragged with the middle button: where the last event of the drag was.
bool Dragging;
float DragX;
float DragY;

bool LaidOut;

// Buttons give the focus back, so that one can go on typing.
void FocusCanvas() {
  Picture1->Focus();
}

// The button of a command, and the key that does the same.
Button* AddCommandButton(Window& window, const std::string& id, const IconDrawing& icon, const Place& place) {
  const Command& command = CommandOf(id);
  Button* button = window.AddButton(ReplaceAll(command.caption, "&", ""), icon, command.toolTip);
  button->SetPlace(place);
  button->OnClick = [&command] {
    RunCommand(command);
    FocusCanvas();
  };
  // The key of one that has a menu entry, too, is the entry's.
  if (!command.key.empty() && command.menu.empty()) window.AddShortcut(command.key, button->OnClick);
  return button;
}

void AddColumn(Window& window) {
  for (int mode = 0; mode < kAnchorButtons; ++mode)
    AnchorButtons[mode] = AddCommandButton(window, "Cur" + std::to_string(mode), AnchorIcon(mode), {});
  for (int i = 0; i < kShapes; ++i) {
    const auto shape = static_cast<Shape>(i);
    ShapeButtons[i] = AddCommandButton(window, ShapeCommand(shape), ShapeIcon(shape), {});
  }
  ShapingButton = AddCommandButton(window, "mDrawShape", ShapingIcon(), {});
}

// In a low window the buttons are lower.
void PlaceColumn(int top, int height) {
  constexpr int kButtons = kAnchorButtons + kShapes + 1;
  constexpr int kLeast = 20;
  constexpr int kGap = 4;
  const int step = std::clamp((height - kGap) / kButtons, kLeast, kButton);
  const auto place = [&](Button* button, int number, int shift) {
    button->SetPlace({0, top + number * step + shift, kButton, step});
  };
  for (int i = 0; i < kAnchorButtons; ++i) place(AnchorButtons[i], i, 0);
  for (int i = 0; i < kShapes; ++i) place(ShapeButtons[i], kAnchorButtons + i, kGap);
  place(ShapingButton, kAnchorButtons + kShapes, kGap);
}

void AddScriptButtons(Window& window) {
  constexpr int kWidth = 19;
  constexpr int kGap = 4;  // between the four scripts
  for (int i = 0; i < 12; ++i) {
    Form1Parts.scripts[i] = AddCommandButton(window, "Script" + std::to_string(i), ScriptIcon(i),
                                             {i * kWidth + i / 3 * kGap, 0, kWidth, kRow});
  }
}

// Stands until the next value or key is right.
void ShowRefusal(const std::string& refusal) {
  refusal.empty() ? WarnOfTyping() : ShowWarning(refusal);
}

void PageBox_Enter() {
  const std::string text = PageBox->Text();
  const std::int16_t number = CountOf(TrimBlanks(text));
  GoToPage(number);
  const bool refused = !text.empty() && (number < 1 || number > kLastPage);
  ShowRefusal(refused ? "There is no page " + text + ": pages count from 1 to " + std::to_string(kLastPage)
                      : "");
  RefreshMenus();
  FocusCanvas();
}

void AddPageRow(Window& window) {
  Form1Parts.pageUp = AddCommandButton(window, "PageUp", {}, {244, 0, 40, kRow});
  PageBox = window.AddTextBox("Page Number", false);
  PageBox->SetPlace({286, 1, 30, kRow - 2});
  PageBox->OnEnter = PageBox_Enter;
  PageBox->OnEscape = [] {
    ShowPageNumber();
    FocusCanvas();
  };
  PageCountLabel = window.AddLabel("");
  PageCountLabel->SetPlace({319, 0, 39, kRow});
  Form1Parts.pageDown = AddCommandButton(window, "PageDown", {}, {358, 0, 40, kRow});
}

void AddSizeRow(Window& window) {
  Form1Parts.sizeLabel = window.AddLabel("Font Size");
  Form1Parts.sizeLabel->SetPlace({402, 0, 56, kRow});
  Text1 = window.AddTextBox("Font Size", false);
  Text1->SetPlace({459, 1, 36, kRow - 2});
  Text1->SetText(FormatSingle(FontSize));
  Text1->OnChange = [] {
    SizeBoxTyped();
    ShowCursor();
    WarnOfTyping();
  };
  Text1->OnEnter = [] {
    const std::string refusal = EnterSize();
    ShowRefusal(refusal);
    if (!refusal.empty()) return Text1->SelectAll();
    RefreshMenus();
    FocusCanvas();
  };
  Text1->OnEscape = [] {
    ShowProperties();
    WarnOfTyping();
    FocusCanvas();
  };
  FontLabel = window.AddLabel("");
}

void ApplyRun() {
  ApplyControlCodeBox();
  RefreshMenus();
}

void AddRunRow(Window& window) {
  Text4 = window.AddTextBox("Control Codes", true);
  Text4->OnChange = [] {
    ControlCodeBoxChanged();
    FollowTyping();
    RefreshMenus();
  };
  Text4->SignsFor = SignsBehind;
  Text4->OnEnter = ApplyRun;
  Text4->OnEscape = FocusCanvas;
  Form1Parts.apply = window.AddButton("OK", {}, "Apply Changes of Control Codes");
  Form1Parts.apply->OnClick = ApplyRun;
}

void AddCanvasAndBars(Window& window) {
  Picture1 = window.AddCanvas();
  Picture1->OnPaint = [](Layer layer, const Box& area) {
    if (layer == Layer::Overlay) PaintHint(*Picture1, CurrentView());
    PaintLayer(layer, area);
  };
  Picture1->OnKeyPress = Form1_Picture1_KeyPress;
  Picture1->OnTab = [](bool forwards) {
    const bool used = CursorMode == 0 && SelectNext(forwards);
    RefreshMenus();
    return used;
  };
  Picture1->OnText = [](const std::string& utf8) {
    InsertSigns(utf8);
    FollowTyping();
    RefreshMenus();
  };
  Picture1->OnPreedit = [](const std::string& utf8) {
    FormulaIsOpen() ? ShowFormulaPreedit(utf8) : ShowPreedit(utf8);
  };
  Picture1->CaretPlace = [] { return FormulaIsOpen() ? FormulaCaret() : EndsOfRun().caret; };
  Picture1->OnMouseDown = Form1_Picture1_MouseDown;
  Picture1->OnMouseMove = Form1_Picture1_MouseMove;
  Picture1->OnMouseUp = Form1_Picture1_MouseUp;
  Picture1->OnMouseLeave = Form1_Picture1_MouseLeave;
  Picture1->OnWheel = Form1_Picture1_Wheel;
  Form1Parts.horizontal = window.AddScrollBar(true);
  Form1Parts.horizontal->OnScroll = ScrollToLeft;
  Form1Parts.vertical = window.AddScrollBar(false);
  Form1Parts.vertical->OnScroll = ScrollToTop;
}

void AddFoot(Window& window) {
  CursorLabel = window.AddStatusText(320);
  NoteLabel = window.AddStatusText(280);
}

void ShowScrollPosition() {
  const ScrollRange across = HorizontalRange();
  const ScrollRange down = VerticalRange();
  Form1Parts.horizontal->SetRange(across.least, across.most, VisibleRight - VisibleLeft, VisibleLeft);
  Form1Parts.vertical->SetRange(down.least, down.most, VisibleBottom - VisibleTop, VisibleTop);
}

void FollowView() {
  ShowScrollPosition();
  ShowPointerPlace();
}

bool CloseRequest() {
  const bool leave = ExitSequence();
  RefreshMenus();
  return leave;
}

// Layout of what follows the window's inner size W and H.
void LayOut(float W, float H) {
  LaidOut = true;
  const int row = Pixels(kStrip) / 2;
  // The panel of signs leaves at least half of the width to the page.
  const int palette = std::min(PaletteWidth(), Pixels(W) / 2);
  const Place canvas{Pixels(kColumn), Pixels(kStrip), Pixels(W - kColumn) - palette, Pixels(H - kStrip)};
  const int box = Pixels(W - kBesideBox - kColumn);
  const int bar = kScrollBarPixels;
  Text4->SetPlace({canvas.left, row + 1, box, kRow - 2});
  Form1Parts.apply->SetPlace({canvas.left + box + 2, row, Pixels(kBesideBox) - 4, kRow});
  FontLabel->SetPlace({498, 0, std::max(Pixels(W) + bar - 499, 0), kRow});
  Form1->SetCanvasPlace(Picture1, canvas);
  Form1Parts.horizontal->SetPlace({canvas.left, canvas.top + canvas.height, canvas.width, bar});
  Form1Parts.vertical->SetPlace({canvas.left + canvas.width, canvas.top, bar, canvas.height});
  PlaceColumn(canvas.top, canvas.height + bar);
  PlacePalette({canvas.left + canvas.width + bar, canvas.top, palette, canvas.height + bar});
}

}  // namespace

void BuildForm1() {
  LaidOut = false;
  Form1 = TheToolkit->NewWindow(true);
  Form1->SetTitle(kProgramTitle);
  BuildMenus(*Form1);
  ResetContextMenus();
  // In the order in which Tab goes through them. The foot, which is not among them, is the last: measuring
  // its text waits for the list of fonts.
  AddCanvasAndBars(*Form1);
  AddRunRow(*Form1);
  AddScriptButtons(*Form1);
  AddPageRow(*Form1);
  AddSizeRow(*Form1);
  AddColumn(*Form1);
  BuildPalette(*Form1);
  AddFoot(*Form1);
  ViewMoved = FollowView;
  Form1->OnResize = Form1_Resize;
  Form1->OnEscape = FocusCanvas;
  Form1->OnCloseRequest = CloseRequest;
}

void Form1_Resize() {
  if (ResizeGuard) return;
  const float W = Form1->InnerWidth();
  const float H = Form1->InnerHeight();
  if (W < kLeastWidth || H < kLeastHeight) {
    // A window that starts so small shows the corner of a usual one.
    if (!LaidOut) LayOut(kStartWidth, kStartHeight);
    return;
  }
  LayOut(W, H);
  if (CursorMode > 0 && AnchorOfMode(CursorMode) != 0) CursorMode = static_cast<std::int16_t>(-CursorMode);
  ShowPage();
  ShowCursor();
  FollowView();
}

namespace {

void ArrowKey(int code) {
  const int x = code == kKeyRight ? 1 : code == kKeyLeft ? -1 : 0;
  const int y = code == kKeyDown ? 1 : code == kKeyUp ? -1 : 0;
  if (x != 0 || y != 0) ScrollBy(static_cast<float>(x) * kArrowPixels, static_cast<float>(y) * kArrowPixels);
}

Pointer PointerOf(const MouseEvent& event) {
  return {{event.x, event.y}, event.shift, event.control, event.alt, event.clicks};
}

}  // namespace

void Form1_Picture1_KeyPress(int code) {
  if (code == (kKeyEnter | kWithShift) && !FormulaIsOpen()) code = kKeyEnter;  // it is Enter elsewhere
  if (!ToolInForce().Key(code)) ArrowKey(code);
  FollowTyping();
  FollowFirstMinutes();
  RefreshMenus();
}

void Form1_Picture1_MouseDown(const MouseEvent& event) {
  FocusCanvas();
  Dragging = event.button == MouseButton::Middle;
  DragX = event.pixelX;
  DragY = event.pixelY;
  if (event.button == MouseButton::Left) ToolInForce().Press(PointerOf(event));
}

void Form1_Picture1_MouseMove(const MouseEvent& event) {
  if (Dragging) {
    ScrollBy(DragX - event.pixelX, DragY - event.pixelY);
    DragX = event.pixelX;
    DragY = event.pixelY;
  }
  ToolInForce().Move(PointerOf(event));
  PointerMoved(event.pixelX, event.pixelY);
}

void Form1_Picture1_MouseUp(const MouseEvent& event) {
  switch (event.button) {
    case MouseButton::Middle:
      Dragging = false;
      break;
    case MouseButton::Left:
      ToolInForce().Release(PointerOf(event));
      WarnOfTyping();
      FollowFirstMinutes();
      break;
    case MouseButton::Right:
      OpenContextMenu(event);
      break;
  }
  RefreshMenus();
}

void Form1_Picture1_MouseLeave() {
  PointerLeft();
}

void Form1_Picture1_Wheel(const WheelEvent& event) {
  if (event.control) {
    ZoomAt(std::pow(kWheelZoom, event.steps), event.pixelX, event.pixelY);
  } else if (event.shift) {
    ScrollBy(-event.steps * kScrollPixels, 0);
  } else {
    ScrollBy(-event.sideSteps * kScrollPixels, -event.steps * kScrollPixels);
  }
}

}  // namespace kelvane
