#include "app/overview_window.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <string>
#include <vector>

#include "app/after_editing.h"
#include "app/context_help.h"
#include "app/menus.h"
#include "document/paper.h"
#include "editing/edit.h"
#include "papers/page_operations.h"
#include "papers/paper_commands.h"
#include "papers/thumbnails.h"
#include "typography/colours.h"
#include "typography/metrics.h"
#include "typography/typefaces.h"
#include "typography/view.h"

namespace kelvane {

Window* OverviewWindow = nullptr;

namespace {

// Logical pixels.
constexpr float kLongSide = 160;  // of a picture
constexpr float kGap = 18;        // between pictures
constexpr float kNumberRow = 22;  // below each
constexpr float kNumberSize = 13;
constexpr float kDragFrom = 6;  // a press that moves less is a click
constexpr float kNotch = 60;    // of the wheel
constexpr float kEdge = 24;     // a drag there scrolls
constexpr float kEdgeStep = 16;
constexpr int kButtonGap = 4;

constexpr ColourValue kInk = 0x000000;
constexpr ColourValue kPaper = 0xFFFFFF;
constexpr ColourValue kFaint = 0x808080;
constexpr ColourValue kChosenBack = 0xF0D8B8;
constexpr ColourValue kCurrentMark = 0xB04000;

// Milliseconds. Painting is done in the time between two events; nobody who types waits for more than one
// picture.
constexpr int kWorking = 5;
constexpr int kWatching = 120;
constexpr int kRestTicks = 2;  // of watching after an edit, in which the person may be in full swing

constexpr std::int16_t kPlainFace = 4;
constexpr std::int16_t kBoldFace = 5;

struct Parts {
  Canvas* canvas = nullptr;
  ScrollBar* bar = nullptr;
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
Thumbnails Pictures;

int Chosen = 1;   // page
float Scrolled;   // pixels from the top of the first row
int Typed;        // the number that is being typed
bool Pressed;     // a page is held with the mouse
bool Dragged;     // and has been moved
Point PressedAt;  // pixels of the canvas
Point PointerAt;
bool Painting;  // the timer runs quickly
int Resting;    // ticks

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

// How the pages lie on the canvas, in pixels from the top left of the first row's margin.
struct Grid {
  float width = 0;  // of a picture
  float height = 0;
  float left = 0;
  int columns = 1;

  float CellWidth() const { return width + kGap; }
  float CellHeight() const { return height + kNumberRow + kGap; }
  Box PictureOf(int page) const {
    const auto column = static_cast<float>((page - 1) % columns);
    const auto row = static_cast<float>((page - 1) / columns);
    const float x = left + column * CellWidth();
    const float y = kGap + row * CellHeight();
    return {x, y, x + width, y + height};
  }
  float Height() const {
    return kGap + static_cast<float>((MostPageNumber() + columns - 1) / columns) * CellHeight();
  }
};

Grid GridNow() {
  Grid grid;
  const float scale = kLongSide / std::max(PaperWidth, PaperHeight);
  grid.width = std::max(std::round(PaperWidth * scale), 8.0F);
  grid.height = std::max(std::round(PaperHeight * scale), 8.0F);
  const auto all = static_cast<float>(Shown.canvas->PixelWidth());
  grid.columns = std::max(static_cast<int>((all - kGap) / grid.CellWidth()), 1);
  grid.left = std::max((all - static_cast<float>(grid.columns) * grid.CellWidth() + kGap) / 2, kGap / 2);
  return grid;
}

float CanvasHeight() {
  return static_cast<float>(Shown.canvas->PixelHeight());
}

float MostScrolled() {
  return std::max(GridNow().Height() - CanvasHeight(), 0.0F);
}

// The pages of the rows from one position to another, those in view for 0 and the height of the canvas.
std::vector<int> PagesBetween(float top, float bottom) {
  const Grid grid = GridNow();
  const auto rowAt = [&](float y) {
    return static_cast<int>(std::floor((Scrolled + y - kGap / 2) / grid.CellHeight()));
  };
  std::vector<int> pages;
  const int last = std::min((rowAt(bottom) + 1) * grid.columns, MostPageNumber());
  for (int page = std::max(rowAt(top), 0) * grid.columns + 1; page <= last; ++page) pages.push_back(page);
  return pages;
}

// Those in view first, then a windowful below and above.
std::vector<int> PagesWanted() {
  const float height = CanvasHeight();
  std::vector<int> wanted;
  for (const float top : {0.0F, height, -height}) {
    const std::vector<int> pages = PagesBetween(top, top + height);
    wanted.insert(wanted.end(), pages.begin(), pages.end());
  }
  return wanted;
}

bool HasSize() {
  return Shown.canvas->PixelWidth() > 0 && Shown.canvas->PixelHeight() > 0;
}

void ShowCanvas() {
  if (!HasSize()) return;
  const auto width = static_cast<float>(Shown.canvas->PixelWidth());
  Scrolled = std::round(std::clamp(Scrolled, 0.0F, MostScrolled()));
  Shown.canvas->SetCoordinates(0, Scrolled, width, CanvasHeight());
  Shown.canvas->Invalidate(Layer::Page);
  Shown.canvas->Invalidate(Layer::Overlay);
  Shown.bar->SetRange(0, GridNow().Height(), CanvasHeight(), Scrolled);
}

void WorkOn() {
  Painting = true;
  Shown.timer->Start(kWorking);
}

void ScrollTo(float top) {
  const float before = Scrolled;
  Scrolled = std::round(std::clamp(top, 0.0F, MostScrolled()));
  if (Scrolled == before || !HasSize()) return;
  Shown.canvas->ScrollTo(0, Scrolled, static_cast<float>(Shown.canvas->PixelWidth()), CanvasHeight());
  Shown.bar->SetRange(0, GridNow().Height(), CanvasHeight(), Scrolled);
  WorkOn();
}

void ShowNoteOfChosen() {
  std::string text = "Page " + std::to_string(Chosen) + " of " + std::to_string(MostPageNumber());
  if (Chosen == CurrentPageNumber) text += ", in the editor";
  Shown.note->SetText(text);
  for (const Parts::Action& action : Shown.actions) action.button->SetEnabled(action.can());
}

void ScrollToPage(int page) {
  const Box picture = GridNow().PictureOf(page);
  const float top = picture.top - kGap;
  const float bottom = picture.bottom + kNumberRow;
  if (top < Scrolled) ScrollTo(top);
  if (bottom > Scrolled + CanvasHeight()) ScrollTo(bottom - CanvasHeight());
}

void Choose(int page) {
  Chosen = std::clamp(page, 1, MostPageNumber());
  ScrollToPage(Chosen);
  ShowCanvas();
  ShowNoteOfChosen();
}

// The page under a point of the canvas, in pixels; 0 for none.
int PageAt(Point at) {
  const Grid grid = GridNow();
  for (const int page : PagesBetween(0, CanvasHeight())) {
    const Box picture = grid.PictureOf(page);
    if (at.x >= picture.left - kGap / 2 && at.x < picture.right + kGap / 2 &&
        at.y + Scrolled >= picture.top - kGap / 2 && at.y + Scrolled < picture.bottom + kNumberRow) {
      return page;
    }
  }
  return 0;
}

// The number that a page would get if it were dropped: it comes before the page that lies behind the point.
int DropPlace(Point at) {
  const Grid grid = GridNow();
  const int row = std::max(static_cast<int>((at.y + Scrolled - kGap / 2) / grid.CellHeight()), 0);
  const int column = static_cast<int>(std::lround((at.x - grid.left + kGap / 2) / grid.CellWidth()));
  const int gap = row * grid.columns + std::clamp(column, 0, grid.columns);  // pages before it
  const int to = gap >= Chosen ? gap : gap + 1;
  return std::clamp(to, 1, MostPageNumber());
}

// Painting.

void PaintWords(Painter& painter, const std::string& text, Point middle, float size, bool bold,
                ColourValue colour) {
  const std::int16_t face = bold ? kBoldFace : kPlainFace;
  std::vector<Point> origins;
  float x = std::round(middle.x - MeasureRun(text, face, size) / 2);
  for (const char c : text) {
    origins.push_back({x, middle.y});
    x += MeasureRun(std::string_view(&c, 1), face, size);
  }
  painter.DrawText(kTypefaceNames[face].screen, size, text, origins, colour);
}

void PaintFrame(Painter& painter, const Box& box, float width, ColourValue colour) {
  const auto [left, top, right, bottom] = box;
  painter.FillBox({left - width, top - width, right + width, top}, colour);
  painter.FillBox({left - width, bottom, right + width, bottom + width}, colour);
  painter.FillBox({left - width, top, left, bottom}, colour);
  painter.FillBox({right, top, right + width, bottom}, colour);
}

const char* WordsFor(const Thumbnails::Picture* picture) {
  if (!picture) return "";
  switch (picture->kind) {
    case Thumbnails::Kind::NoFile:
      return "no file";
    case Thumbnails::Kind::Unreadable:
      return "cannot be read";
    case Thumbnails::Kind::TooLarge:
      return "too large to show";
    case Thumbnails::Kind::Page:
      break;
  }
  return "";
}

void PaintPicture(Canvas& canvas, const Box& box, int page) {
  const Thumbnails::Picture* picture = Pictures.Of(page);
  if (picture && picture->image) {
    canvas.DrawImage(*picture->image, {box.left, box.top});
    return;
  }
  canvas.FillBox(box, kPaper);
  const Point middle{(box.left + box.right) / 2, (box.top + box.bottom) / 2};
  PaintWords(canvas, WordsFor(picture), middle, kNumberSize - 1, false, kFaint);
}

void PaintCell(Canvas& canvas, const Grid& grid, int page) {
  const Box box = grid.PictureOf(page);
  const bool current = page == CurrentPageNumber;
  if (page == Chosen) {
    constexpr float kAround = kGap / 2 - 1;
    canvas.FillBox({box.left - kAround, box.top - kAround, box.right + kAround, box.bottom + kNumberRow + 2},
                   kChosenBack);
  }
  PaintPicture(canvas, box, page);
  PaintFrame(canvas, box, current ? 3.0F : 1.0F, current ? kCurrentMark : kFaint);
  const std::string number = std::to_string(page);
  const float x = (box.left + box.right) / 2;
  const float y = box.bottom + kNumberRow - 5;
  if (current) {
    const float half = MeasureRun(number, kBoldFace, kNumberSize) / 2 + 7;
    canvas.FillBox({std::round(x - half), y - 13, std::round(x + half), y + 4}, kCurrentMark);
  }
  PaintWords(canvas, number, {x, y}, kNumberSize, current, current ? kPaper : kInk);
}

// Where the page that is dragged would come: a bar between two pages.
void PaintDropPlace(Canvas& canvas) {
  if (!Dragged) return;
  const Grid grid = GridNow();
  const int to = DropPlace(PointerAt);
  if (to == Chosen) return;
  const Box box = grid.PictureOf(to);
  const float x = to > Chosen ? box.right + kGap / 2 : box.left - kGap / 2;
  canvas.FillBox({x - 2, box.top - 4, x + 2, box.bottom + 4}, kCurrentMark);
}

void Paint(Layer layer, const Box& area) {
  if (layer == Layer::Overlay) return PaintDropPlace(*Shown.canvas);
  const Grid grid = GridNow();
  for (const int page : PagesBetween(area.top - Scrolled, area.bottom - Scrolled))
    PaintCell(*Shown.canvas, grid, page);
}

// What the person does.

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
  if (Chosen != CurrentPageNumber) {
    Run([] { return GoToPage(Chosen); });
    if (Chosen != CurrentPageNumber) return;
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
  const int to = Chosen + step;
  if (to >= 1 && to <= MostPageNumber()) Run([to] { return MovePageTo(Chosen, to); });
}

void Close() {
  OverviewWindow->Hide();
  Shown.timer->Stop();
  Picture1->Focus();
}

bool StopDrag() {
  const bool dragging = Pressed;
  Pressed = Dragged = false;
  Shown.canvas->SetPointerArrow();
  Shown.canvas->Invalidate(Layer::Overlay);
  return dragging;
}

// Digits choose the page of that number.
void TypeDigit(int digit) {
  const int number = Typed * 10 + digit;
  Typed = number <= MostPageNumber() ? number : digit;
  if (Typed > 0) Choose(Typed);
}

int RowsInView() {
  return std::max(static_cast<int>(CanvasHeight() / GridNow().CellHeight()), 1);
}

void Step(int pages) {
  Typed = 0;
  Choose(Chosen + pages);
}

// A row up or down stays in its column; on the last row, the last page.
void StepRows(int rows) {
  const int to = Chosen + rows * GridNow().columns;
  Step((to < 1 ? (Chosen - 1) % GridNow().columns + 1 : to) - Chosen);
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
      return Run([] { return DeletePageAt(Chosen); });
    case kKeyEscape:
      if (!StopDrag()) Close();
      return;
    default:
      return;
  }
}

void MouseDown(const MouseEvent& event) {
  Shown.canvas->Focus();
  Typed = 0;
  const int page = PageAt({event.pixelX, event.pixelY});
  if (page == 0) return;
  Choose(page);
  if (event.button != MouseButton::Left) return;
  if (event.clicks > 1) return GoToChosen();
  Pressed = true;
  PressedAt = PointerAt = {event.pixelX, event.pixelY};
}

void MouseMove(const MouseEvent& event) {
  if (!Pressed) return;
  PointerAt = {event.pixelX, event.pixelY};
  if (!Dragged && std::hypot(PointerAt.x - PressedAt.x, PointerAt.y - PressedAt.y) >= kDragFrom) {
    Dragged = true;
    Shown.canvas->SetPointerShape(PointerShape::Move);
    WorkOn();
  }
  Shown.canvas->Invalidate(Layer::Overlay);
}

void MouseUp(const MouseEvent& event) {
  if (event.button == MouseButton::Right && PageAt({event.pixelX, event.pixelY}) != 0)
    OverviewWindow->ShowPopup(Shown.popup, Shown.canvas, event.pixelX, event.pixelY);
  if (event.button != MouseButton::Left || !Pressed) return;
  const bool dragged = Dragged;
  const int to = DropPlace({event.pixelX, event.pixelY});
  StopDrag();
  if (dragged) Run([to] { return MovePageTo(Chosen, to); });
}

// While a page is dragged along the upper or lower edge the row goes on below it.
void ScrollWithDrag() {
  if (PointerAt.y < kEdge) ScrollTo(Scrolled - kEdgeStep);
  if (PointerAt.y > CanvasHeight() - kEdge) ScrollTo(Scrolled + kEdgeStep);
}

void Tick() {
  if (const Seen now = SeenNow(); now != LastSeen) {
    const bool otherPage = now.current != LastSeen.current || now.shown != LastSeen.shown;
    LastSeen = now;
    Resting = kRestTicks;
    if (otherPage) {
      Choose(now.current);
    } else {
      ShowCanvas();
      ShowNoteOfChosen();
    }
  }
  if (Dragged) ScrollWithDrag();
  if (Resting > 0) {
    --Resting;
    Painting = false;
    Shown.timer->Start(kWatching);
    return;
  }
  const bool painted = HasSize() && Pictures.Update(PagesWanted());
  if (painted) ShowCanvas();
  if (painted || Dragged) {
    if (!Painting) WorkOn();
  } else {
    Painting = false;
    Shown.timer->Start(kWatching);
  }
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
  OverviewWindow->SetCanvasPlace(Shown.canvas, {0, y, width, std::max(height - y, 1)});
  Shown.bar->SetPlace({width, y, kScrollBarPixels, std::max(height - y, 1)});
  const Grid grid = GridNow();
  const float ratio = Shown.canvas->PixelRatio();
  Pictures.SetSize(static_cast<int>(std::lround(grid.width * ratio)),
                   static_cast<int>(std::lround(grid.height * ratio)));
  ShowCanvas();
  ScrollToPage(Chosen);
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
    Shown.canvas->Focus();
  };
  Shown.actions.push_back({button, width, can});
  Shown.popup->AddEntry(caption, "")->OnChosen = act;
}

void AddActions() {
  const auto running = [](bool (*command)(int)) {
    return [command] { Run([command] { return command(Chosen); }); };
  };
  AddAction("Go To", "Show the Page in the Editor (Enter)", 56, [] { GoToChosen(); });
  AddAction("Insert Before", "Insert an Empty Page before It", 92, running(InsertPageAt));
  AddAction("Insert After", "Insert an Empty Page behind It (Ins)", 84,
            [] { Run([] { return InsertPageAt(Chosen + 1); }); });
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
    Pictures.LookAgain();
    WorkOn();
  });
  add("PgUp", [] { StepRows(-RowsInView()); });
  add("PgDown", [] { StepRows(RowsInView()); });
  add("Alt+PgUp", [] { MoveChosenBy(-1); });
  add("Alt+PgDown", [] { MoveChosenBy(1); });
  add("Ins", [] { Run([] { return InsertPageAt(Chosen + 1); }); });
  add("Ctrl+D", [] { Run([] { return DuplicatePageAt(Chosen); }); });
  add("Ctrl+Shift+F7", [] {
    if (CanMovePages()) Run([] { return MovePageToNumber(Chosen); });
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
  Shown.canvas = OverviewWindow->AddCanvas();
  Shown.canvas->SetName("Pages of the paper");
  Shown.canvas->OnPaint = Paint;
  Shown.canvas->OnKeyPress = KeyPressed;
  Shown.canvas->OnMouseDown = MouseDown;
  Shown.canvas->OnMouseMove = MouseMove;
  Shown.canvas->OnMouseUp = MouseUp;
  Shown.canvas->OnWheel = [](const WheelEvent& event) { ScrollTo(Scrolled - event.steps * kNotch); };
  Shown.bar = OverviewWindow->AddScrollBar(false);
  Shown.bar->OnScroll = ScrollTo;
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
  Pictures = {};
  Chosen = 1;
  Scrolled = 0;
  Typed = 0;
  Pressed = Dragged = Painting = false;
  Resting = 0;
  LastSeen = {};
}

void ShowOverview() {
  if (!OverviewWindow) Build();
  if (!OverviewWindow->Visible()) Pictures.LookAgain();
  OverviewWindow->Show();
  Shown.canvas->Focus();
  FollowPaper();
}

}  // namespace kelvane
