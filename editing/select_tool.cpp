#include "editing/select_tool.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "document/numbers.h"
#include "document/page_items.h"
#include "editing/dragging.h"
#include "editing/handles.h"
#include "editing/item_edits.h"
#include "editing/marks.h"
#include "editing/picking.h"
#include "editing/properties.h"
#include "typography/colours.h"
#include "typography/curves.h"

namespace kelvane {

OpenItem OpenText = nullptr;
bool (*OpenPlacedFormula)(std::uint64_t) = nullptr;
OpenItem OpenDrawing = nullptr;

namespace {

constexpr float kDragPixels = 3;   // a press that moves this far is a drag
constexpr float kFineStep = 0.1F;  // points

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

bool Near(Point a, Point b, float pixels) {
  return std::hypot(a.x - b.x, a.y - b.y) <= Pixels(pixels);
}

void EndDoing() {
  Now = Doing::Nothing;
  Sticky = false;
}

void BeginDragging() {
  BeginDrag(PressedAt, Pressed);
  Now = Doing::Dragging;
}

void EndDragging() {
  EndDoing();
  PutDown(Copying);
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
  const bool isText = ItemsOfPage().FindText(id) != nullptr;
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

void PaintHandling(Painter& painter, const View& view) {
  PaintFrame(painter);
  const SelectedItems selected = Selection();
  if (TooManyToShow(selected)) return;
  PaintChanged(
      painter, view, selected, [](TextEntry& entry) { ChangeByHandle(entry); },
      [](Drawing& drawing) { ChangeByHandle(drawing); });
}

// Handles are marks, which the printed view lacks.
Handle ShownHandleAt(Point at) {
  return PrintView ? Handle::None : HandleAt(at);
}

// Items that were just added are dragged from anywhere in their box, also from between their ink: the pointer
// is there when they come.
bool OnAdded(Point at) {
  return JustAdded() && IsAtMarkedBox(at);
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
      Pressed = Selection().Ids().front();
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
      Pressed == 0 ? static_cast<void>(Now = Doing::Boxing) : BeginDragging();
    }
    if (Now == Doing::Dragging) DragTo(pointer);
    if (Now == Doing::Handling) DragHandle(pointer);
    ShowCursor();
  }

  void Release(const Pointer& pointer) override {
    PointerAt = pointer.at;
    if (Now == Doing::Boxing) {
      EndDoing();
      SelectInBox(PressedAt, PointerAt, WithShift);
    } else if (Now == Doing::Dragging) {
      EndDragging();
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
    if (Now == Doing::Dragging) return PaintDrag(painter, view);
    if (Now == Doing::Handling) return PaintHandling(painter, view);
    if (view.printed) return;
    if (!IsSelected(Hovered)) MarkHovered(painter, Hovered);
    MarkSelected(painter);
    if (Now == Doing::Nothing) PaintHandles(painter);
    if (Now == Doing::Boxing) PaintOutline(painter, BoxBetween(PressedAt, PointerAt), PaletteColour(kBlue));
  }

  void Finish() override {
    if (Now != Doing::Nothing) EndDoing();
    Hovered = 0;  // the pointer may be elsewhere when this tool is in force again
  }

  std::string Hint() const override {
    if (Now == Doing::Handling) return HandleHint();
    if (Now == Doing::Dragging && ShowDistance) return DragHint();
    if (!AnythingSelected()) return "Click an item to select it, or choose an anchor at the left to type";
    const std::size_t count = Selection().Count();
    return std::to_string(count) + (count == 1 ? " item, " : " items, ") +
           FormatUpTo(MarkedRight - MarkedLeft, 2) + " x " + FormatUpTo(MarkedTop - MarkedBottom, 2) + " pt";
  }

 private:
  static bool HandleKey(int code) {
    if (code == kKeyEscape) return StepBack();
    if (Now == Doing::Dragging && code == kKeyEnter) {
      EndDragging();
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

void StartMove() {
  if (!AnythingSelected()) return;
  PressedAt = PointerAt;
  Pressed = 0;
  Copying = false;
  BeginDragging();
  Sticky = true;
  ShowCursor();
}

}  // namespace kelvane
