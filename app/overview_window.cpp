#include "app/overview_window.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "app/after_editing.h"
#include "app/context_help.h"
#include "app/menus.h"
#include "app/page_board.h"
#include "document/paper.h"
#include "editing/edit.h"
#include "papers/page_operations.h"
#include "papers/paper_commands.h"
#include "typography/view.h"

namespace kelvane {

Window* OverviewWindow = nullptr;

namespace {

// Logical pixels.
constexpr float kDragFrom = 6;  // a press that moves less is a click
constexpr float kNotch = 60;    // of the wheel
constexpr int kButtonGap = 4;

// Milliseconds. Painting is done in the time between two events; nobody who types waits for more than one
// picture.
constexpr int kWorking = 5;
constexpr int kWatching = 120;
constexpr int kRestTicks = 2;  // of watching after an edit, in which the person may be in full swing

struct Parts {
  Label* note = nullptr;
  Timer* timer = nullptr;
  Menu* popup = nullptr;
  struct Action {
    Button* button;
    int width;
    std::function<bool()> can;
  };
  std::vector<Action> actions;
};
Parts Shown;
PageBoard Board;

int Typed;                       // the number that is being typed
std::optional<Point> PressedAt;  // where the chosen page is held with the mouse, pixels of the canvas
bool Painting;                   // the timer runs quickly
int Resting;                     // ticks

// What is shown, to be compared with what is so.
struct Seen {
  int pages = 0;
  int current = 0;
  int shown = 0;
  int edits = 0;
  bool operator==(const Seen&) const = default;
};
Seen LastSeen;
Seen SeenNow() {
  return {MostPageNumber(), CurrentPageNumber, PagesShown(), EditsMade()};
}

void WorkOn() {
  Painting = true;
  Shown.timer->Start(kWorking);
}

void Watch() {
  Painting = false;
  Shown.timer->Start(kWatching);
}

void ShowNoteOfChosen() {
  std::string text = "Page " + std::to_string(Board.Chosen()) + " of " + std::to_string(MostPageNumber());
  if (Board.Chosen() == CurrentPageNumber) text += ", in the editor";
  Shown.note->SetText(text);
  for (const Parts::Action& action : Shown.actions) action.button->SetEnabled(action.can());
}

void Choose(int page) {
  Board.Choose(page);
  ShowNoteOfChosen();
}

void FollowPaper() {
  LastSeen = SeenNow();
  Choose(CurrentPageNumber);
  WorkOn();
}

// A command of the row of pages; the page that it worked on is current afterwards.
void Run(const std::function<bool()>& command) {
  Typed = 0;
  const bool done = AfterEditing(command);
  RefreshMenus();
  if (done) FollowPaper();
}

void GoToChosen() {
  Typed = 0;
  const int chosen = Board.Chosen();
  if (chosen != CurrentPageNumber) {
    Run([chosen] { return GoToPage(chosen); });
    if (chosen != CurrentPageNumber) return;
  }
  Form1->Show();
  Picture1->Focus();
}

void UndoPages() {
  if (!PageStepBack().label.empty()) Run(UndoPageOperation);
}

void RedoPages() {
  if (!PageStepForward().label.empty()) Run(RedoPageOperation);
}

void MoveChosenBy(int step) {
  const int to = Board.Chosen() + step;
  if (to >= 1 && to <= MostPageNumber()) Run([to] { return MovePageTo(Board.Chosen(), to); });
}

void Close() {
  Board.DropOutOfView();
  OverviewWindow->Hide();
  Shown.timer->Stop();
  Board.LookAgain();
  Picture1->Focus();
}

bool StopDrag() {
  const bool dragging = PressedAt.has_value();
  PressedAt.reset();
  Board.PictureCanvas().SetPointerArrow();
  Board.Drag({});
  return dragging;
}

// Digits choose the page of that number.
void TypeDigit(int digit) {
  const int number = Typed * 10 + digit;
  Typed = number <= MostPageNumber() ? number : digit;
  if (Typed > 0) Choose(Typed);
}

void Step(int pages) {
  Typed = 0;
  Choose(Board.Chosen() + pages);
}

void StepRows(int rows) {
  Typed = 0;
  Board.ChooseRows(rows);
  ShowNoteOfChosen();
}

void KeyPressed(int code) {
  if (code >= '0' && code <= '9') return TypeDigit(code - '0');
  switch (code) {
    case kKeyLeft:
      return Step(-1);
    case kKeyRight:
      return Step(1);
    case kKeyUp:
      return StepRows(-1);
    case kKeyDown:
      return StepRows(1);
    case kKeyHome:
      return Step(-kLastPage);
    case kKeyEnd:
      return Step(kLastPage);
    case kKeyWordLeft:
      return MoveChosenBy(-1);
    case kKeyWordRight:
      return MoveChosenBy(1);
    case kKeyEnter:
      return GoToChosen();
    case kKeyDelete:
      return Run([] { return DeletePageAt(Board.Chosen()); });
    case kKeyEscape:
      if (!StopDrag()) Close();
      return;
    default:
      return;
  }
}

void MouseDown(const MouseEvent& event) {
  Board.PictureCanvas().Focus();
  Typed = 0;
  const int page = Board.PageAt({event.pixelX, event.pixelY});
  if (page == 0) return;
  Choose(page);
  if (event.button != MouseButton::Left) return;
  if (event.clicks > 1) return GoToChosen();
  PressedAt = {event.pixelX, event.pixelY};
}

void MouseMove(const MouseEvent& event) {
  if (!PressedAt) return;
  const Point pointer{event.pixelX, event.pixelY};
  if (!Board.Dragged()) {
    if (std::hypot(pointer.x - PressedAt->x, pointer.y - PressedAt->y) < kDragFrom) return;
    Board.PictureCanvas().SetPointerShape(PointerShape::Move);
    WorkOn();
  }
  Board.Drag(pointer);
}

void MouseUp(const MouseEvent& event) {
  const Point pointer{event.pixelX, event.pixelY};
  if (event.button == MouseButton::Right && Board.PageAt(pointer) != 0)
    OverviewWindow->ShowPopup(Shown.popup, &Board.PictureCanvas(), pointer.x, pointer.y);
  if (event.button != MouseButton::Left || !PressedAt) return;
  const bool dragged = Board.Dragged();
  const int to = Board.PlaceOfDrop(pointer);
  StopDrag();
  if (dragged) Run([to] { return MovePageTo(Board.Chosen(), to); });
}

void Tick() {
  if (const Seen now = SeenNow(); now != LastSeen) {
    const bool otherPage = now.current != LastSeen.current || now.shown != LastSeen.shown;
    LastSeen = now;
    Resting = kRestTicks;
    if (otherPage) {
      Choose(now.current);
    } else {
      Board.Show();
      ShowNoteOfChosen();
    }
  }
  Board.ScrollWithDrag();
  if (Resting > 0) {
    --Resting;
    return Watch();
  }
  if (!Board.PaintNext() && !Board.Dragged()) return Watch();
  if (!Painting) WorkOn();
}

void LayOut() {
  if (!OverviewWindow || !Shown.note) return;
  const auto width = static_cast<int>(OverviewWindow->InnerWidth() / kTwipsPerPixel);
  const auto height = static_cast<int>(OverviewWindow->InnerHeight() / kTwipsPerPixel);
  const int row = OverviewWindow->RowHeight();
  int x = kButtonGap;
  int y = kButtonGap;
  for (const Parts::Action& action : Shown.actions) {
    if (x > kButtonGap && x + action.width > width) {
      x = kButtonGap;
      y += row + kButtonGap;
    }
    action.button->SetPlace({x, y, action.width, row});
    x += action.width + kButtonGap;
  }
  y += row + kButtonGap;
  Board.SetPlace({0, y, width, std::max(height - y, 1)});
  WorkOn();
}

bool Always() {
  return true;
}

void AddAction(const char* caption, const char* toolTip, int width, const std::function<void()>& act,
               const std::function<bool()>& can = Always) {
  Button* button = OverviewWindow->AddButton(caption, {}, toolTip);
  button->OnClick = [act] {
    act();
    Board.PictureCanvas().Focus();
  };
  Shown.actions.push_back({button, width, can});
  Shown.popup->AddEntry(caption, "")->OnChosen = act;
}

void InsertBehindChosen() {
  Run([] { return InsertPageAt(Board.Chosen() + 1); });
}

void AddActions() {
  const auto running = [](bool (*command)(int)) {
    return [command] { Run([command] { return command(Board.Chosen()); }); };
  };
  AddAction("Go To", "Show the Page in the Editor (Enter)", 56, GoToChosen);
  AddAction("Insert Before", "Insert an Empty Page before It", 92, running(InsertPageAt));
  AddAction("Insert After", "Insert an Empty Page behind It (Ins)", 84, InsertBehindChosen);
  AddAction("Duplicate", "Put a Copy of the Page behind It (Ctrl+D)", 74, running(DuplicatePageAt));
  AddAction("Delete", "Delete the Page (Del)", 58, running(DeletePageAt),
            [] { return !CurrentPaperFile.empty(); });
  AddAction("Move To...", "Give the Page Another Number (Ctrl+Shift+F7)", 78, running(MovePageToNumber),
            CanMovePages);
  AddAction("Undo", "Take Back the Last Change of the Row of Pages (Ctrl+Z)", 52, UndoPages,
            [] { return !PageStepBack().label.empty(); });
  AddAction("Redo", "Do It Again (Ctrl+Shift+Z)", 52, RedoPages,
            [] { return !PageStepForward().label.empty(); });
}

void AddKeys() {
  const auto add = [](const char* key, std::function<void()> act) {
    OverviewWindow->AddShortcut(key, std::move(act));
  };
  add("F7", Close);
  add("F5", [] {
    Board.LookAgain();
    WorkOn();
  });
  add("PgUp", [] { StepRows(-Board.RowsInView()); });
  add("PgDown", [] { StepRows(Board.RowsInView()); });
  add("Alt+PgUp", [] { MoveChosenBy(-1); });
  add("Alt+PgDown", [] { MoveChosenBy(1); });
  add("Ins", InsertBehindChosen);
  add("Ctrl+D", [] { Run([] { return DuplicatePageAt(Board.Chosen()); }); });
  add("Ctrl+Shift+F7", [] {
    if (CanMovePages()) Run([] { return MovePageToNumber(Board.Chosen()); });
  });
  add("Ctrl+Z", UndoPages);
  add("Ctrl+Shift+Z", RedoPages);
  AddHelpKeys(*OverviewWindow, "Page overview");
}

void Build() {
  constexpr WindowPlace kFirstPlace{900, 900, 9000, 6600};
  OverviewWindow = TheToolkit->NewSeparateWindow();
  OverviewWindow->SetTitle("Pages");
  Shown.popup = OverviewWindow->AddPopup();
  Board.AddTo(*OverviewWindow);
  Board.OnScrolled = WorkOn;
  Canvas& pictures = Board.PictureCanvas();
  pictures.OnKeyPress = KeyPressed;
  pictures.OnMouseDown = MouseDown;
  pictures.OnMouseMove = MouseMove;
  pictures.OnMouseUp = MouseUp;
  pictures.OnWheel = [](const WheelEvent& event) { Board.ScrollBy(-event.steps * kNotch); };
  AddActions();
  Shown.note = OverviewWindow->AddStatusText(200);
  Shown.timer = TheToolkit->NewTimer();
  Shown.timer->OnTick = Tick;
  AddKeys();
  OverviewWindow->OnResize = LayOut;
  OverviewWindow->OnEscape = Close;
  OverviewWindow->OnCloseRequest = [] {
    Close();
    return true;
  };
  OverviewWindow->KeepPlaceAs("pages/place", kFirstPlace);
}

}  // namespace

void ResetOverview() {
  OverviewWindow = nullptr;
  Shown = {};
  Board = {};
  Typed = 0;
  PressedAt.reset();
  Painting = false;
  Resting = 0;
  LastSeen = {};
}

void ShowOverview() {
  if (!OverviewWindow) Build();
  OverviewWindow->Show();
  Board.PictureCanvas().Focus();
  FollowPaper();
}

}  // namespace kelvane
