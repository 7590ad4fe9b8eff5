#include "app/main_window.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "app/exit.h"
#include "app/icons.h"
#include "app/menus.h"
#include "document/numbers.h"
#include "document/paper.h"
#include "editing/bezier.h"
#include "editing/cursor.h"
#include "editing/keyboard.h"
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
constexpr float kScrollPixels = 48;  // a notch of the wheel
constexpr float kArrowPixels = 24;   // an arrow key in Select
constexpr float kWheelZoom = 1.15F;  // a notch of the wheel with Ctrl

const char* const kScriptCaptions[12] = {
    "Superscript",        "Back from Superscript",        "Forward from Superscript",
    "Subscript",          "Back from Subscript",          "Forward from Subscript",
    "Italic Superscript", "Back from Italic Superscript", "Forward from Italic Superscript",
    "Italic Subscript",   "Back from Italic Subscript",   "Forward from Italic Subscript",
};

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

void AddColumn(Window& window) {
  for (std::int16_t mode = 0; mode < 10; ++mode) {
    AnchorButtons[mode] = window.AddButton(kAnchorNames[mode], AnchorIcon(mode), kAnchorNames[mode]);
    AnchorButtons[mode]->SetPlace({0, Pixels(kStrip) + mode * kButton, kButton, kButton});
    AnchorButtons[mode]->OnClick = [mode] {
      ChooseAnchor(mode);
      FocusCanvas();
    };
  }
  Command6 = window.AddButton("Draw Bezier", BezierIcon(), "Draw Bezier");
  Command6->SetPlace({0, Pixels(kStrip) + 10 * kButton + kButton / 4, kButton, kButton});
  Command6->OnClick = [] {
    ChooseBezier();
    FocusCanvas();
  };
}

void AddScriptButtons(Window& window) {
  constexpr int kWidth = 20;
  constexpr int kGap = 4;  // between the four scripts
  for (int i = 0; i < 12; ++i) {
    Button* button = window.AddButton(kScriptCaptions[i], ScriptIcon(i), kScriptCaptions[i]);
    button->SetPlace({kButton + i * kWidth + i / 3 * kGap, 0, kWidth, kRow});
    button->OnClick = [i] { InsertScript(i); };
    Form1Parts.scripts[i] = button;
  }
}

Button* AddPageButton(Window& window, const char* caption, const char* toolTip, int left, bool (*command)()) {
  Button* button = window.AddButton(caption, {}, toolTip);
  button->SetPlace({left, 0, 40, kRow});
  button->OnClick = [command] {
    command();
    FocusCanvas();
  };
  return button;
}

void NoteUntypable(const std::string& characters) {
  ShowNote("There is no code for " + characters);
}

void PageBox_Enter() {
  GoToPage(RoundToInt16(ReadSingle(PageBox->Text())));
  FocusCanvas();
}

void AddPageRow(Window& window) {
  Form1Parts.pageUp = AddPageButton(window, "Pg Up", "Previous Page", 280, PageUp);
  PageBox = window.AddTextBox("Page Number", false);
  PageBox->SetPlace({322, 1, 32, kRow - 2});
  PageBox->OnEnter = PageBox_Enter;
  PageBox->OnEscape = [] {
    ShowPageNumber();
    FocusCanvas();
  };
  Form1Parts.pageDown = AddPageButton(window, "Pg Dn", "Next Page", 356, PageDown);
  window.AddShortcut("PgUp", Form1Parts.pageUp->OnClick);
  window.AddShortcut("PgDown", Form1Parts.pageDown->OnClick);
}

void AddSizeRow(Window& window) {
  Form1Parts.sizeLabel = window.AddLabel("Font Size");
  Form1Parts.sizeLabel->SetPlace({401, 0, 56, kRow});
  Text1 = window.AddTextBox("Font Size", false);
  Text1->SetPlace({458, 1, 38, kRow - 2});
  Text1->SetText(FormatSingle(FontSize));
  Text1->OnChange = [] {
    SizeBoxChanged(Text1->Text());
    DrawCursorMark(kBlue, true);
  };
  Text1->OnEnter = Text1->OnEscape = FocusCanvas;
  FontLabel = window.AddLabel("");
}

void AddRunRow(Window& window) {
  Text4 = window.AddTextBox("Control Codes", true);
  Text4->OnChange = ControlCodeBoxChanged;
  Text4->OnEnter = ApplyControlCodeBox;
  Text4->OnEscape = FocusCanvas;
  Text4->OnUntypable = NoteUntypable;
  Form1Parts.apply = window.AddButton("OK", {}, "Apply Changes of Control Codes");
  Form1Parts.apply->OnClick = ApplyControlCodeBox;
}

void AddCanvasAndBars(Window& window) {
  Picture1 = window.AddCanvas();
  Picture1->OnKeyPress = Form1_Picture1_KeyPress;
  Picture1->OnUntypable = NoteUntypable;
  Picture1->OnMouseDown = Form1_Picture1_MouseDown;
  Picture1->OnMouseMove = Form1_Picture1_MouseMove;
  Picture1->OnMouseUp = Form1_Picture1_MouseUp;
  Picture1->OnMouseLeave = Form1_Picture1_MouseLeave;
  Picture1->OnWheel = Form1_Picture1_Wheel;
  Form1Parts.horizontal = window.AddScrollBar(true);
  Form1Parts.horizontal->OnScroll = ScrollToLeft;
  Form1Parts.vertical = window.AddScrollBar(false);
  Form1Parts.vertical->OnScroll = ScrollToTop;
  CursorLabel = window.AddStatusText(320);
  Form1Parts.pointer = window.AddStatusText(280);
}

void ShowScrollPosition() {
  const ScrollRange across = HorizontalRange();
  const ScrollRange down = VerticalRange();
  Form1Parts.horizontal->SetRange(across.least, across.most, VisibleRight - VisibleLeft, VisibleLeft);
  Form1Parts.vertical->SetRange(down.least, down.most, VisibleBottom - VisibleTop, VisibleTop);
}

// Layout of what follows the window's inner size W and H.
void LayOut(float W, float H) {
  LaidOut = true;
  const int row = Pixels(kStrip) / 2;
  const Place canvas{Pixels(kColumn), Pixels(kStrip), Pixels(W - kColumn), Pixels(H - kStrip)};
  const int box = Pixels(W - kBesideBox - kColumn);
  const int bar = kScrollBarPixels;
  Text4->SetPlace({canvas.left, row + 1, box, kRow - 2});
  Form1Parts.apply->SetPlace({canvas.left + box + 2, row, Pixels(kBesideBox) - 4, kRow});
  FontLabel->SetPlace({500, 0, std::max(Pixels(W) + bar - 502, 0), kRow});
  Form1->SetCanvasPlace(Picture1, canvas);
  Form1Parts.horizontal->SetPlace({canvas.left, canvas.top + canvas.height, canvas.width, bar});
  Form1Parts.vertical->SetPlace({canvas.left + canvas.width, canvas.top, bar, canvas.height});
}

}  // namespace

void BuildForm1() {
  LaidOut = false;
  Form1 = TheToolkit->NewWindow(true);
  Form1->SetTitle(kProgramTitle);
  BuildMenus(*Form1);
  // In the order in which Tab goes through them.
  AddCanvasAndBars(*Form1);
  AddRunRow(*Form1);
  AddScriptButtons(*Form1);
  AddPageRow(*Form1);
  AddSizeRow(*Form1);
  AddColumn(*Form1);
  ViewMoved = ShowScrollPosition;
  Form1->OnResize = Form1_Resize;
  Form1->OnEscape = FocusCanvas;
  Form1->OnCloseRequest = ExitSequence;
}

void ShowNote(const std::string& text) {
  Form1Parts.pointer->SetText(text);
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
  RedrawPage();
  ShowScrollPosition();
}

namespace {

void ArrowKey(int code) {
  const int x = code == kKeyRight ? 1 : code == kKeyLeft ? -1 : 0;
  const int y = code == kKeyDown ? 1 : code == kKeyUp ? -1 : 0;
  if (!StepCursor(x, y)) ScrollBy(static_cast<float>(x) * kArrowPixels, static_cast<float>(y) * kArrowPixels);
}

void BezierKey(int code) {
  if (code == kKeyEnter) FinishDrawing();
  if (code == kKeyBackspace) TakeBackPoint();
  if (code == kKeyEscape) DropDrawing();
}

}  // namespace

void Form1_Picture1_KeyPress(int code) {
  if (code >= kKeyLeft) {
    ArrowKey(code);
  } else if (CursorMode == kBezierMode) {
    BezierKey(code);
  } else {
    TypeKey(code);
  }
  // Nobody should have to type where it cannot be seen.
  if (CursorMode < 0) BringIntoView(CursorX, CursorY);
}

void Form1_Picture1_MouseDown(const MouseEvent& event) {
  FocusCanvas();
  Dragging = event.button == MouseButton::Middle;
  DragX = event.pixelX;
  DragY = event.pixelY;
  if (event.button == MouseButton::Left) BezierPress(event.x, event.y);
}

void Form1_Picture1_MouseMove(const MouseEvent& event) {
  if (Dragging) {
    ScrollBy(DragX - event.pixelX, DragY - event.pixelY);
    DragX = event.pixelX;
    DragY = event.pixelY;
  }
  BezierMove(event.x, event.y);
  Form1Parts.pointer->SetText(FormatFixed(event.x, 1, true) + ", " + FormatFixed(event.y, 1, true) +
                              " pt     on the grid " + FormatSingle(SnapToGrid(event.x, GridStepH)) + ", " +
                              FormatSingle(SnapToGrid(event.y, GridStepV)) + " pt");
}

void Form1_Picture1_MouseUp(const MouseEvent& event) {
  switch (event.button) {
    case MouseButton::Middle:
      Dragging = false;
      break;
    case MouseButton::Left:
      BezierRelease(event.x, event.y);
      PlaceCursor(event.x, event.y);
      break;
    case MouseButton::Right:
      FinishDrawing();
      break;
  }
}

void Form1_Picture1_MouseLeave() {
  Form1Parts.pointer->SetText("");
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
