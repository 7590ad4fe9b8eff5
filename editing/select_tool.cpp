#include "editing/select_tool.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <vector>

#include "document/numbers.h"
#include "editing/handles.h"
#include "editing/item_edits.h"
#include "editing/properties.h"
#include "typography/colours.h"
#include "typography/item_boxes.h"
#include "typography/metrics.h"
#include "typography/renderer.h"

namespace kelvane {

bool ShowDistance = false;
OpenItem OpenText = nullptr;
bool (*OpenPlacedFormula)(std::uint64_t) = nullptr;
OpenItem OpenDrawing = nullptr;

namespace {

constexpr float kPickPixels = 4;         // a click this near to an item's ink picks it
constexpr float kDragPixels = 3;         // a press that moves this far is a drag
constexpr float kAttractPixels = 4;      // how far guides and neighbours attract what is moved
constexpr float kStillPixels = 2;        // a pointer that has left its line no farther moves along the line
constexpr float kMarkPixels = 2;         // between an item's ink and its mark
constexpr std::size_t kMostShown = 300;  // more items are marked and moved as one box
constexpr float kFineStep = 0.1F;        // points

enum class Doing { Nothing, Pressing, Boxing, Dragging, Handling };
Doing Now = Doing::Nothing;
bool Sticky;  // a move that was started by its command: no button is held
Point PressedAt;
Point PointerAt;
std::uint64_t Pressed;  // the item under the press, 0 for none
bool PressedSelected;   // it was selected before
bool WithShift;
bool Copying;

// The item that a click would pick, and the last click, which the next one at the same place goes on from.
std::uint64_t Hovered;
Point ClickedAt;
std::uint64_t Clicked;

// Of the items being moved.
float DX;
float DY;
Point Reference;  // point that snaps to the grid
Box Moved;        // their box before
float MovedBaseline;
std::vector<float> LinesX;  // what attracts: guides, edges and middles of neighbours
std::vector<float> LinesY;
float AttractedX = 0;  // the lines that did, while the flags are set
float AttractedY = 0;
bool IsAttractedX;
bool IsAttractedY;

// The last duplicate: where its items went, so that the next one goes as far.
std::vector<std::uint64_t> Duplicated;
Point DuplicateStep;

float Pixels(float pixels) {
  return pixels / SCALE;
}

bool Near(Point a, Point b, float pixels) {
  return std::hypot(a.x - b.x, a.y - b.y) <= Pixels(pixels);
}

// Items whose ink is at a point, the topmost first: runs lie above drawings, later ones above earlier ones.
std::vector<std::uint64_t> ItemsAt(Point at) {
  const float within = Pixels(kPickPixels);
  std::vector<std::uint64_t> ids;
  const PageItems& items = ItemsOfPage();
  for (auto item = items.Texts().rbegin(); item != items.Texts().rend(); ++item)
    if (item->draws && DistanceTo(item->entry, at, within) <= within) ids.push_back(item->id);
  for (auto item = items.Drawings().rbegin(); item != items.Drawings().rend(); ++item)
    if (item->draws && DistanceTo(item->drawing, at, within) <= within) ids.push_back(item->id);
  return ids;
}

std::vector<std::uint64_t> IdsOf(const SelectedItems& items) {
  std::vector<std::uint64_t> ids;
  for (const TextItem* item : items.texts) ids.push_back(item->id);
  for (const DrawingItem* item : items.drawings) ids.push_back(item->id);
  return ids;
}

const TextItem* TextOf(std::uint64_t id) {
  for (const TextItem& item : ItemsOfPage().Texts())
    if (item.id == id) return &item;
  return nullptr;
}

Box Between(Point a, Point b) {
  return {std::min(a.x, b.x), std::min(a.y, b.y), std::max(a.x, b.x), std::max(a.y, b.y)};
}

bool Inside(const Box& inner, const Box& outer) {
  return inner.left >= outer.left && inner.right <= outer.right && inner.top >= outer.top &&
         inner.bottom <= outer.bottom;
}

bool Touch(const Box& a, const Box& b) {
  return a.left <= b.right && b.left <= a.right && a.top <= b.bottom && b.top <= a.bottom;
}

// Dragged to the right a box picks what lies in it, to the left what it touches.
void SelectInBox() {
  const Box box = Between(PressedAt, PointerAt);
  const bool touching = PointerAt.x < PressedAt.x;
  std::vector<std::uint64_t> ids;
  const auto add = [&](std::uint64_t id, const Box& ink) {
    if ((WithShift && IsSelected(id)) || (touching ? Touch(ink, box) : Inside(ink, box))) ids.push_back(id);
  };
  const PageItems& items = ItemsOfPage();
  for (const TextItem& item : items.Texts())
    if (item.draws) add(item.id, InkBoxOf(item.entry));
  for (const DrawingItem& item : items.Drawings())
    if (item.draws) add(item.id, InkBoxOf(item.drawing));
  Select(ids);
}

float BaselineOf(const TextEntry& entry) {
  return AlignAtAnchor({entry.x, entry.y}, entry.anchor, 0, entry.size).y;
}

// Notes what can attract the selected items: guides, and the items in view that stay.
void GatherLines() {
  LinesX.clear();
  LinesY.clear();
  for (const float x : GuideX)
    if (x != 0) LinesX.push_back(x);
  for (const float y : GuideY)
    if (y != 0) LinesY.push_back(y);
  const Box view = CurrentView().area;
  const auto addSides = [&](const Box& box) {
    for (const float x : {box.left, (box.left + box.right) / 2, box.right}) LinesX.push_back(x);
  };
  const PageItems& items = ItemsOfPage();
  for (const TextItem& item : items.Texts()) {
    if (!item.draws || IsSelected(item.id) || item.entry.y < view.top || item.entry.y > view.bottom) continue;
    addSides(InkBoxOf(item.entry));
    LinesY.push_back(BaselineOf(item.entry));
  }
  for (const DrawingItem& item : items.Drawings()) {
    if (!item.draws || IsSelected(item.id)) continue;
    const Box box = InkBoxOf(item.drawing);
    if (!Touch(box, view)) continue;
    addSides(box);
    for (const float y : {box.top, (box.top + box.bottom) / 2, box.bottom}) LinesY.push_back(y);
  }
  std::sort(LinesX.begin(), LinesX.end());
  std::sort(LinesY.begin(), LinesY.end());
}

void BeginMoving() {
  const SelectedItems selected = Selection();
  Moved = BoxOf(selected);
  Reference = {Moved.left, Moved.top};
  MovedBaseline = Moved.bottom;
  if (!selected.drawings.empty()) Reference = selected.drawings.front()->drawing.points.front();
  if (!selected.texts.empty()) {
    const TextItem* text = TextOf(Pressed);
    const TextEntry& entry = text && IsSelected(Pressed) ? text->entry : selected.texts.front()->entry;
    Reference = {entry.x, entry.y};
    MovedBaseline = BaselineOf(entry);
  }
  DX = DY = 0;
  IsAttractedX = IsAttractedY = false;
  GatherLines();
  Now = Doing::Dragging;
}

// The line nearest to one of some places, if it attracts; `shift` takes the place there.
bool Attract(const std::vector<float>& lines, std::initializer_list<float> places, float& shift,
             float& line) {
  float best = Pixels(kAttractPixels);
  bool found = false;
  for (const float place : places) {
    const auto above = std::lower_bound(lines.begin(), lines.end(), place);
    for (const auto& candidate : {above, above == lines.begin() ? above : above - 1}) {
      if (candidate == lines.end() || std::abs(*candidate - place) > best) continue;
      best = std::abs(*candidate - place);
      shift = *candidate - place;
      line = *candidate;
      found = true;
    }
  }
  return found;
}

void MoveTo(const Pointer& pointer) {
  DX = pointer.at.x - PressedAt.x;
  DY = pointer.at.y - PressedAt.y;
  if (pointer.shift) (std::abs(DX) < std::abs(DY) ? DX : DY) = 0;
  IsAttractedX = IsAttractedY = false;
  if (pointer.alt) return;
  // What is moved straight stays on its line, whatever lies beside it.
  float shift = 0;
  if (std::abs(DX) <= Pixels(kStillPixels)) {
    DX = 0;
  } else {
    const float left = Moved.left + DX;
    const float right = Moved.right + DX;
    IsAttractedX = Attract(LinesX, {left, (left + right) / 2, right, Reference.x + DX}, shift, AttractedX);
    DX = IsAttractedX ? DX + shift : SnapToGrid(Reference.x + DX, GridStepH) - Reference.x;
  }
  if (std::abs(DY) <= Pixels(kStillPixels)) {
    DY = 0;
  } else {
    IsAttractedY = Attract(LinesY, {MovedBaseline + DY, Reference.y + DY}, shift, AttractedY);
    DY = IsAttractedY ? DY + shift : SnapToGrid(Reference.y + DY, GridStepV) - Reference.y;
  }
}

void EndDoing() {
  Now = Doing::Nothing;
  Sticky = false;
}

void PutDown() {
  const bool copying = Copying;
  EndDoing();
  if (DX == 0 && DY == 0) return;
  if (copying) {
    AddItems("copy", LinesOfSelected(), DX, DY);
  } else {
    MoveSelected(DX, DY);
  }
}

void Click() {
  const std::vector<std::uint64_t> ids = ItemsAt(PressedAt);
  if (ids.empty()) return ClearMarkedBox();
  std::uint64_t picked = ids.front();
  // Again at the same place: the next one below.
  const auto last = std::find(ids.begin(), ids.end(), Clicked);
  if (!WithShift && last != ids.end() && Near(PressedAt, ClickedAt, kDragPixels) && IsSelected(Clicked))
    picked = last + 1 == ids.end() ? ids.front() : *(last + 1);
  Clicked = picked;
  ClickedAt = PressedAt;
  if (!WithShift) {
    Select({picked});
  } else if (PressedSelected) {
    Deselect(picked);
  }
}

void Open(std::uint64_t id, Point at) {
  Hovered = 0;
  const bool isText = TextOf(id) != nullptr;
  if (isText && OpenText) OpenText(id, at);
  if (!isText && OpenDrawing) OpenDrawing(id, at);
}

bool Nudge(int code) {
  const int key = code & ~(kWithShift | kWithControl);
  const int x = key == kKeyRight ? 1 : key == kKeyLeft ? -1 : 0;
  const int y = key == kKeyDown ? 1 : key == kKeyUp ? -1 : 0;
  if ((x == 0 && y == 0) || !AnythingSelected()) return false;
  constexpr float kManySteps = 10;
  const float many = code & kWithShift ? kManySteps : 1;
  const bool fine = code & kWithControl;
  MoveSelected(static_cast<float>(x) * (fine ? kFineStep : GridStepH * many),
               static_cast<float>(y) * (fine ? kFineStep : GridStepV * many));
  return true;
}

Box Around(const Box& box) {
  const float room = Pixels(kMarkPixels);
  return {box.left - room, box.top - room, box.right + room, box.bottom + room};
}

void Outline(Painter& painter, const Box& box, ColourValue colour) {
  const Pen pen{colour, 1, true};
  painter.DrawLine({box.left, box.top}, {box.right, box.top}, pen);
  painter.DrawLine({box.left, box.bottom}, {box.right, box.bottom}, pen);
  painter.DrawLine({box.left, box.top}, {box.left, box.bottom}, pen);
  painter.DrawLine({box.right, box.top}, {box.right, box.bottom}, pen);
}

Box ShiftedBox(const Box& box, float dx, float dy) {
  return {box.left + dx, box.top + dy, box.right + dx, box.bottom + dy};
}

// The items as `change` makes them.
template <typename Change>
void PaintChanged(Painter& painter, const View& view, const SelectedItems& selected, Change change) {
  for (const DrawingItem* item : selected.drawings) {
    Drawing drawing = item->drawing;
    change(drawing);
    PaintDrawing(painter, view, drawing);
  }
  for (const TextItem* item : selected.texts) {
    TextEntry entry = item->entry;
    change(entry);
    PaintEntry(painter, view, entry);
  }
}

void ShiftByDrag(Drawing& drawing) {
  MapDrawing(drawing, [](Point point) { return Point{point.x + DX, point.y + DY}; });
}
void ShiftByDrag(TextEntry& entry) {
  entry.x += DX;
  entry.y += DY;
}

void PaintMoving(Painter& painter, const View& view, const SelectedItems& selected) {
  if (selected.Count() > kMostShown) {
    Outline(painter, Around(ShiftedBox(Moved, DX, DY)), PaletteColour(kBlue));
  } else {
    PaintChanged(painter, view, selected, [](auto& item) { ShiftByDrag(item); });
  }
  const Pen thin{PaletteColour(kMagenta), 1, true};
  if (IsAttractedX) painter.DrawLine({AttractedX, view.area.top}, {AttractedX, view.area.bottom}, thin);
  if (IsAttractedY) painter.DrawLine({view.area.left, AttractedY}, {view.area.right, AttractedY}, thin);
}

void PaintHandling(Painter& painter, const View& view, const SelectedItems& selected) {
  PaintFrame(painter);
  if (selected.Count() <= kMostShown)
    PaintChanged(painter, view, selected, [](auto& item) { ChangeByHandle(item); });
}

void PaintMarks(Painter& painter, const SelectedItems& selected) {
  const ColourValue blue = PaletteColour(kBlue);
  if (selected.Count() > kMostShown) {
    Outline(painter, Around({MarkedLeft, MarkedBottom, MarkedRight, MarkedTop}), blue);
    return;
  }
  for (const TextItem* item : selected.texts) Outline(painter, Around(InkBoxOf(item->entry)), blue);
  for (const DrawingItem* item : selected.drawings) Outline(painter, Around(InkBoxOf(item->drawing)), blue);
}

void PaintHovered(Painter& painter) {
  if (Hovered == 0 || IsSelected(Hovered)) return;
  const PageItems& items = ItemsOfPage();
  const ColourValue colour = PaletteColour(kCyan);
  for (const TextItem& item : items.Texts())
    if (item.id == Hovered) Outline(painter, Around(InkBoxOf(item.entry)), colour);
  for (const DrawingItem& item : items.Drawings())
    if (item.id == Hovered) Outline(painter, Around(InkBoxOf(item.drawing)), colour);
}

std::string Rounded(float points) {
  return FormatSingle(std::round(points * 100) / 100);
}

// Handles are marks, which the printed view lacks.
Handle ShownHandleAt(Point at) {
  return PrintView ? Handle::None : HandleAt(at);
}

// Items that were just added are dragged from anywhere in their box, also from between their ink: the pointer
// is there when they come.
bool OnAdded(Point at) {
  return JustAdded() &&
         DistanceTo(Box{MarkedLeft, MarkedBottom, MarkedRight, MarkedTop}, at) <= Pixels(kPickPixels);
}

// The pointer tells what a press would do.
void ShowShape(Point at) {
  if (!Picture1) return;
  const bool moves = OnAdded(at);
  const Handle handle = moves ? Handle::None : ShownHandleAt(at);
  Picture1->SetPointerShape(handle != Handle::None  ? ShapeOf(handle)
                            : moves || Hovered != 0 ? PointerShape::Move
                                                    : PointerShape::Arrow);
}

class Selecting : public Tool {
 public:
  void Press(const Pointer& pointer) override {
    if (Sticky) return;
    PressedAt = PointerAt = pointer.at;
    WithShift = pointer.shift;
    Copying = pointer.control;
    const bool onAdded = !pointer.shift && pointer.clicks < 2 && OnAdded(pointer.at);
    if (const Handle handle = ShownHandleAt(pointer.at); handle != Handle::None && !onAdded) {
      TakeHandle(handle, pointer.at);
      Now = Doing::Handling;
      return;
    }
    const std::vector<std::uint64_t> ids = ItemsAt(pointer.at);
    if (pointer.clicks == 2 && !ids.empty()) {
      EndDoing();
      const auto again = std::find(ids.begin(), ids.end(), Clicked);
      const std::uint64_t id = again == ids.end() ? ids.front() : *again;
      if (!pointer.control || !OpenPlacedFormula || !OpenPlacedFormula(id)) Open(id, pointer.at);
      return;
    }
    // What is selected already is what the person means to drag.
    const auto held = std::find_if(ids.begin(), ids.end(), IsSelected);
    Pressed = ids.empty() ? 0 : held != ids.end() ? *held : ids.front();
    PressedSelected = held != ids.end();
    if (onAdded && !PressedSelected) {
      Pressed = IdsOf(Selection()).front();
      PressedSelected = true;
    }
    if (Pressed != 0 && !PressedSelected) {
      WithShift ? SelectAlso(Pressed) : Select({Pressed});
      Clicked = Pressed;
      ClickedAt = pointer.at;
    }
    Now = Doing::Pressing;
    ShowCursor();
  }

  void Move(const Pointer& pointer) override {
    PointerAt = pointer.at;
    if (Now == Doing::Nothing) {
      const std::vector<std::uint64_t> ids = ItemsAt(pointer.at);
      const std::uint64_t next = ids.empty() ? 0 : ids.front();
      if (next != Hovered) {
        Hovered = next;
        ShowCursor();
      }
      ShowShape(pointer.at);
      return;
    }
    if (Now == Doing::Pressing && !Near(pointer.at, PressedAt, kDragPixels)) {
      Pressed == 0 ? static_cast<void>(Now = Doing::Boxing) : BeginMoving();
    }
    if (Now == Doing::Dragging) MoveTo(pointer);
    if (Now == Doing::Handling) DragHandle(pointer);
    ShowCursor();
  }

  void Release(const Pointer& pointer) override {
    PointerAt = pointer.at;
    if (Now == Doing::Boxing) {
      EndDoing();
      SelectInBox();
    } else if (Now == Doing::Dragging) {
      PutDown();
    } else if (Now == Doing::Handling) {
      EndDoing();
      ReleaseHandle();
    } else if (Now == Doing::Pressing) {
      EndDoing();
      if (Pressed == 0 && !WithShift) ClearMarkedBox();
      if (Pressed != 0 && PressedSelected) Click();
    }
    ShowShape(pointer.at);
    ShowCursor();
  }

  // Gives up what the left button does.
  void RightClick() override {
    EndDoing();
    ShowCursor();
  }

  bool Key(int code) override {
    const bool handled = HandleKey(code);
    if (handled) ShowCursor();
    return handled;
  }

  void Paint(Painter& painter, const View& view) const override {
    if (view.printed && Now != Doing::Dragging && Now != Doing::Handling) return;
    const SelectedItems selected = Selection();
    if (Now == Doing::Handling) {
      PaintHandling(painter, view, selected);
      return;
    }
    if (Now == Doing::Dragging) {
      PaintMoving(painter, view, selected);
      return;
    }
    PaintHovered(painter);
    PaintMarks(painter, selected);
    if (Now == Doing::Nothing) PaintHandles(painter);
    if (Now == Doing::Boxing) Outline(painter, Between(PressedAt, PointerAt), PaletteColour(kBlue));
  }

  void Finish() override {
    if (Now != Doing::Nothing) EndDoing();
    Hovered = 0;  // the pointer may be elsewhere when this tool is in force again
  }

  std::string Hint() const override {
    if (Now == Doing::Handling) return HandleHint();
    if (Now == Doing::Dragging && ShowDistance)
      return "dx " + Rounded(DX) + ", dy " + Rounded(DY) + ", " + Rounded(std::hypot(DX, DY)) + " pt";
    if (!AnythingSelected()) return "Click an item to select it, or choose an anchor at the left to type";
    const std::size_t count = Selection().Count();
    return std::to_string(count) + (count == 1 ? " item, " : " items, ") + Rounded(MarkedRight - MarkedLeft) +
           " x " + Rounded(MarkedTop - MarkedBottom) + " pt";
  }

 private:
  static bool HandleKey(int code) {
    if (code == kKeyEscape) return StepBack();
    if (Now == Doing::Dragging && code == kKeyEnter) {
      PutDown();
      return true;
    }
    if (Now != Doing::Nothing) return true;
    if (code == kKeyEnter && AnythingSelected()) {
      OpenSelected();
      return true;
    }
    return Nudge(code);
  }
  // Escape takes back one level: the move or the box being drawn, then the selection.
  static bool StepBack() {
    if (Now != Doing::Nothing) {
      EndDoing();
    } else {
      ClearMarkedBox();
    }
    return true;
  }
};

}  // namespace

void ResetSelectTool() {
  EndDoing();
  Hovered = Clicked = Pressed = 0;
  Duplicated.clear();
  ShowDistance = false;
  ClearMarkedBox();
}

Tool& SelectTool() {
  static Selecting tool;
  return tool;
}

bool CanOpenSelected() {
  const Properties& selected = SelectedProperties();
  if (selected.Count() != 1) return false;
  return selected.texts == 1 ? OpenText != nullptr : OpenDrawing != nullptr;
}

void OpenSelected() {
  const SelectedItems selected = Selection();
  if (selected.Count() != 1) return;
  constexpr float kFarRight = 1e9F;  // the caret at the end of the run
  if (!selected.texts.empty()) {
    Open(selected.texts.front()->id, {kFarRight, selected.texts.front()->entry.y});
  } else {
    Open(selected.drawings.front()->id, selected.drawings.front()->drawing.points.front());
  }
}

bool SelectUnder(Point at) {
  const std::vector<std::uint64_t> ids = ItemsAt(at);
  if (std::ranges::any_of(ids, IsSelected)) return true;
  if (ids.empty()) {
    return AnythingSelected() && DistanceTo(Box{MarkedLeft, MarkedBottom, MarkedRight, MarkedTop}, at) == 0;
  }
  Select({ids.front()});
  ShowCursor();
  return true;
}

void StartMove() {
  if (!AnythingSelected()) return;
  PressedAt = PointerAt;
  Pressed = 0;
  Copying = false;
  BeginMoving();
  Sticky = true;
  ShowCursor();
}

bool SelectNext(bool forwards) {
  // Down the page, then to the right, as pages are read and saved.
  struct Spot {
    float y;
    float x;
    std::uint64_t id;
  };
  std::vector<Spot> places;
  const PageItems& items = ItemsOfPage();
  for (const TextItem& item : items.Texts())
    if (item.draws) places.push_back({item.entry.y, item.entry.x, item.id});
  for (const DrawingItem& item : items.Drawings())
    if (item.draws) places.push_back({item.drawing.points[0].y, item.drawing.points[0].x, item.id});
  std::stable_sort(places.begin(), places.end(),
                   [](const Spot& a, const Spot& b) { return a.y < b.y || (a.y == b.y && a.x < b.x); });
  if (!forwards) std::reverse(places.begin(), places.end());
  const auto selected = [](const Spot& place) { return IsSelected(place.id); };
  const auto last = std::find_if(places.rbegin(), places.rend(), selected);
  const auto next = last == places.rend() ? places.begin() : last.base();
  if (next == places.end()) return false;
  Select({next->id});
  ShowCursor();
  return true;
}

void DuplicateSelected() {
  const std::vector<std::uint64_t> ids = IdsOf(Selection());
  if (ids.empty()) return;
  const Point at{MarkedLeft, MarkedBottom};
  // The items that the last one made, moved since: their way is what is to be repeated.
  static Point copiedFrom;
  if (ids == Duplicated) {
    DuplicateStep = {at.x - copiedFrom.x, at.y - copiedFrom.y};
  } else {
    DuplicateStep = {static_cast<float>(GridStepH), static_cast<float>(GridStepV)};
  }
  copiedFrom = at;
  AddItems("duplicate", LinesOfSelected(), DuplicateStep.x, DuplicateStep.y);
  Duplicated = IdsOf(Selection());
  ShowCursor();
}

}  // namespace kelvane
