#include "editing/shaping.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "document/page_items.h"
#include "editing/edit.h"
#include "editing/paths.h"
#include "editing/selection.h"
#include "platform/failure.h"
#include "typography/colours.h"
#include "typography/item_boxes.h"
#include "typography/renderer.h"

namespace kelvane {

namespace {

constexpr float kGrabPixels = 6;    // a press this near takes a handle
constexpr float kPickPixels = 5;    // or the line
constexpr float kDragPixels = 3;    // a press that moves this far is a drag
constexpr float kHandlePixels = 4;  // half a handle's width
constexpr float kJoinPixels = 12;   // ends this near to each other can be joined

constexpr std::size_t kNoHandle = std::numeric_limits<std::size_t>::max();

// A drawing as it is shaped. One that looks closed ends at its start here, filled or not.
struct Form {
  Points points;
  bool closed = false;
  bool filled = false;
};

std::uint64_t Shaped;
std::vector<std::size_t> Chosen;  // points and control points, by their places in the path, in order

// The drag of handles.
bool Pressed;
bool Dragging;
Point PressedAt;
std::size_t Grabbed;
std::string RecordAtPress;
Form FormAtPress;
Points Dragged;  // as the path would be

const DrawingItem* ShapedItem() {
  return CursorMode == kShapingMode && Shaped != 0 ? ItemsOfPage().FindDrawing(Shaped) : nullptr;
}

std::size_t IndexOf(const DrawingItem& item) {
  return static_cast<std::size_t>(&item - ItemsOfPage().Drawings().data());
}

std::string_view StyleOf(const DrawingItem& item) {
  return item.record.substr(item.record.find_last_of(' ') + 1);
}

Form FormOf(const DrawingItem& item) {
  Form form{item.drawing.points, LooksClosed(item.drawing.points), item.drawing.closed};
  if (!form.closed || form.filled) return form;
  EndAtStart(form.points);
  return form;
}

// Points only: those between are control points. The end of a closed path is its start.
bool IsPoint(std::size_t place) {
  return place % 2 == 0;
}
std::size_t HandlesOf(const Form& form) {
  return form.points.size() - (form.closed ? 1 : 0);
}

bool IsChosen(std::size_t place) {
  return std::ranges::binary_search(Chosen, place);
}

void Choose(std::size_t place, bool chosen) {
  const auto at = std::ranges::lower_bound(Chosen, place);
  const bool found = at != Chosen.end() && *at == place;
  if (chosen && !found) Chosen.insert(at, place);
  if (!chosen && found) Chosen.erase(at);
}

// The form of the drawing being shaped. An undo may have left it with fewer points than were chosen.
std::optional<Form> ShapedForm() {
  const DrawingItem* item = ShapedItem();
  if (!item) return std::nullopt;
  Form form = FormOf(*item);
  std::erase_if(Chosen, [&](std::size_t place) { return place >= HandlesOf(form); });
  return form;
}

std::vector<std::size_t> ChosenPoints() {
  std::vector<std::size_t> points = Chosen;
  std::erase_if(points, [](std::size_t place) { return !IsPoint(place); });
  return points;
}

std::string RecordOfForm(Form form, std::string_view style) {
  if (form.closed && !form.filled) EndAsOutline(form.points);
  return RecordOf(form.points, style);
}

// Puts records in the place of one; the first of them is shaped from here on.
void Replace(const std::string& label, const DrawingItem& item, const std::vector<std::string>& records) {
  const std::size_t index = IndexOf(item);
  const auto at = static_cast<std::size_t>(item.record.data() - ItemsOfPage().Records().data());
  const std::size_t length = item.record.size();
  const std::size_t count = records.size();
  EditPage(label, [&](Page& page) {
    if (page.drawingCount + static_cast<int>(count) - 1 > std::numeric_limits<std::int16_t>::max())
      throw Failure("The page can hold no more drawings.");
    std::string text;
    for (const std::string& record : records) text += (text.empty() ? "" : "\r\n") + record;
    const bool none = records.empty();
    page.drawings.replace(at, length + (none ? 2 : 0), text);  // with its line end
    page.drawingCount = static_cast<std::int16_t>(page.drawingCount + static_cast<int>(count) - 1);
  });
  Shaped = records.empty() ? 0 : ItemsOfPage().Drawings()[index].id;
  ShowCursor();
}

void Store(const std::string& label, const Form& form) {
  const DrawingItem& item = *ShapedItem();
  Replace(label, item, {RecordOfForm(form, StyleOf(item))});
}

// The path with its chosen points moved. Straight pieces stay straight; a bent one that is moved with both of
// its ends keeps its bend.
Points Moved(const Form& form, float dx, float dy) {
  Points points = form.points;
  const auto moved = [&](std::size_t place) {
    return IsChosen(form.closed && place + 1 == points.size() ? 0 : place);
  };
  for (std::size_t i = 0; i < points.size(); ++i) {
    const bool carried = !IsPoint(i) && moved(i - 1) && moved(i + 1);
    if (moved(i) || carried) points[i] = {points[i].x + dx, points[i].y + dy};
  }
  for (std::size_t piece = 0; 2 * piece + 2 < points.size(); ++piece) {
    if (IsStraightPiece(form.points, piece) && !IsChosen(2 * piece + 1)) Straighten(points, piece);
  }
  return points;
}

void MoveChosen(float dx, float dy) {
  Form form = *ShapedForm();
  form.points = Moved(form, dx, dy);
  Store("shaping", form);
}

// The handle that a press takes: the nearest, points before control points.
std::size_t HandleAt(const Form& form, Point at) {
  std::size_t best = kNoHandle;
  for (const std::size_t kind : {0U, 1U}) {
    float nearest = Pixels(kGrabPixels);
    for (std::size_t i = kind; i < HandlesOf(form); i += 2) {
      const float distance = DistanceOf(form.points[i], at);
      if (distance > nearest) continue;
      nearest = distance;
      best = i;
    }
    if (best != kNoHandle) break;
  }
  return best;
}

std::uint64_t DrawingAt(Point at) {
  const float within = Pixels(kPickPixels);
  const std::vector<DrawingItem>& drawings = ItemsOfPage().Drawings();
  for (auto item = drawings.rbegin(); item != drawings.rend(); ++item)
    if (item->draws && DistanceTo(item->drawing, at, within) <= within) return item->id;
  return 0;
}

// A spot on the line of the drawing being shaped.
std::optional<Spot> SpotAt(const Form& form, Point at) {
  const Spot spot = NearestSpot(form.points, at);
  return spot.distance <= Pixels(kPickPixels) ? std::optional(spot) : std::nullopt;
}

void AddPointsAt(Form form, std::vector<Spot> spots) {
  // From the last on, so that the pieces before them keep their numbers.
  std::ranges::sort(spots, std::greater(), &Spot::piece);
  Chosen.clear();
  for (const Spot& spot : spots) {
    AddPointAt(form.points, spot);
    for (std::size_t& place : Chosen) place += 2;
    Chosen.insert(Chosen.begin(), 2 * spot.piece + 2);
  }
  Store("adding points", form);
}

void DropDrag() {
  Pressed = Dragging = false;
}

void Leave() {
  const std::uint64_t id = Shaped;
  TakeToShape(0);
  if (ItemsOfPage().FindDrawing(id)) Select({id});
  TakeMode(0);
}

// Ctrl+Left and Ctrl+Right go from point to point, Home and End to the first and the last.
bool Walk(const Form& form, int code) {
  const std::size_t last = (HandlesOf(form) - 1) / 2 * 2;
  const std::vector<std::size_t> points = ChosenPoints();
  const bool any = !points.empty();
  std::size_t next = 0;
  if (code == kKeyEnd) {
    next = last;
  } else if (code == kKeyWordRight) {
    next = any && points.back() < last ? points.back() + 2 : 0;
  } else if (code == kKeyWordLeft) {
    next = any && points.front() > 0 ? points.front() - 2 : last;
  } else if (code != kKeyHome) {
    return false;
  }
  Chosen = {next};
  return true;
}

bool Nudge(int code) {
  const int key = code & ~kWithShift;
  const int x = key == kKeyRight ? 1 : key == kKeyLeft ? -1 : 0;
  const int y = key == kKeyDown ? 1 : key == kKeyUp ? -1 : 0;
  if ((x == 0 && y == 0) || Chosen.empty()) return false;
  constexpr int kManySteps = 10;
  const int many = code & kWithShift ? kManySteps : 1;
  MoveChosen(static_cast<float>(x * many * GridStepH), static_cast<float>(y * many * GridStepV));
  return true;
}

// Hollow, so that the line can be seen in it: points are squares, control points diamonds.
void PaintHandle(Painter& painter, Point at, bool isPoint, bool chosen) {
  const float r = Pixels(isPoint ? kHandlePixels : kHandlePixels + 1);
  const float side = isPoint ? r : 0;
  Path path;
  path.MoveTo({at.x - r, at.y - side});
  path.LineTo(isPoint ? Point{at.x + r, at.y - r} : Point{at.x, at.y - r});
  path.LineTo({at.x + r, at.y + side});
  path.LineTo(isPoint ? Point{at.x - r, at.y + r} : Point{at.x, at.y + r});
  path.LineTo({at.x - r, at.y - side});
  painter.StrokePath(path, {PaletteColour(chosen ? kMagenta : kBlue), chosen ? 2.0F : 1.0F});
}

void PaintHandles(Painter& painter, const Form& form) {
  const Pen thin{PaletteColour(kBlue), 1};
  for (std::size_t i = 1; i < form.points.size(); i += 2) {
    if (IsStraightPiece(form.points, i / 2)) continue;
    painter.DrawLine(form.points[i - 1], form.points[i], thin);
    painter.DrawLine(form.points[i], form.points[i + 1], thin);
  }
  for (std::size_t i = 0; i < HandlesOf(form); ++i)
    PaintHandle(painter, form.points[i], IsPoint(i), IsChosen(i));
}

class Shaper : public Tool {
 public:
  void Press(const Pointer& pointer) override {
    DropDrag();
    const std::optional<Form> form = ShapedForm();
    const std::size_t handle = form ? HandleAt(*form, pointer.at) : kNoHandle;
    const auto spot = form ? SpotAt(*form, pointer.at) : std::nullopt;
    const bool onPoint = handle != kNoHandle && IsPoint(handle);
    if (pointer.clicks == 2 && spot && !onPoint) {
      AddPointsAt(*form, {*spot});
    } else if (handle != kNoHandle) {
      Grab(*form, handle, pointer);
    } else if (!pointer.shift) {
      Chosen.clear();
      if (!spot) Take(DrawingAt(pointer.at));
    }
    ShowCursor();
  }

  void Move(const Pointer& pointer) override {
    if (!Pressed || !StillThere()) return;
    Dragging = Dragging || DistanceOf(pointer.at, PressedAt) > Pixels(kDragPixels);
    if (!Dragging) return;
    const Point from = FormAtPress.points[Grabbed];
    Point to = PlaceOf(pointer);
    if (pointer.shift) to = InDirection(from, to);
    Dragged = Moved(FormAtPress, to.x - from.x, to.y - from.y);
    ShowCursor();
  }

  void Release(const Pointer& pointer) override {
    Move(pointer);
    const bool dragged = Dragging && StillThere();
    DropDrag();
    if (!dragged) return;
    Form form = FormAtPress;
    form.points = Dragged;
    Store("shaping", form);
  }

  bool Key(int code) override {
    if (code == kKeyEscape && Dragging) {
      DropDrag();
    } else if (code == kKeyEscape || code == kKeyEnter) {
      Leave();
      return true;
    } else if (code == kKeyDelete || code == kKeyBackspace) {
      if (CanRemovePoints()) RemovePoints();
    } else if (code == '+') {
      if (CanAddPoints()) AddPoints();
    } else {
      const std::optional<Form> form = ShapedForm();
      if (!form || (!Walk(*form, code) && !Nudge(code))) return false;
    }
    ShowCursor();
    return true;
  }

  void Paint(Painter& painter, const View& view) const override {
    std::optional<Form> form = ShapedForm();
    if (!form) return;
    if (Dragging) {
      form->points = Dragged;
      Drawing drawing = ShapedItem()->drawing;
      drawing.points = Dragged;
      PaintDrawing(painter, view, drawing);
    }
    if (!view.printed) PaintHandles(painter, *form);
  }

  void Finish() override { DropDrag(); }

  std::string Hint() const override {
    if (!ShapedItem()) return "Click a line to shape it; Esc ends";
    return Chosen.empty() ? "Drag handles; a double click adds a point"
                          : "Drag it; Delete removes it; Esc ends";
  }

 private:
  // Undo may change the drawing in the middle of a drag.
  static bool StillThere() {
    const DrawingItem* item = ShapedItem();
    if (item && item->record == RecordAtPress) return true;
    DropDrag();
    return false;
  }

  static void Grab(const Form& form, std::size_t handle, const Pointer& pointer) {
    const bool chosen = IsChosen(handle);
    if (!pointer.shift && !chosen) Chosen.clear();
    Choose(handle, !pointer.shift || !chosen);
    if (!IsChosen(handle)) return;
    Pressed = true;
    PressedAt = pointer.at;
    Grabbed = handle;
    RecordAtPress = ShapedItem()->record;
    FormAtPress = form;
  }

  static void Take(std::uint64_t id) {
    if (id != 0) TakeToShape(id);
  }
};

// An end of an open drawing.
struct End {
  const DrawingItem* item = nullptr;
  bool atStart = false;
  Point At() const { return atStart ? item->drawing.points.front() : item->drawing.points.back(); }
};

struct Joint {
  End own;
  End other;
};

// The ends nearest to each other, of which one is of the drawing being shaped, or of its chosen point.
std::optional<Joint> NearestJoint(const DrawingItem& shaped) {
  const std::vector<std::size_t> points = ChosenPoints();
  const std::size_t last = shaped.drawing.points.size() - 1;
  std::optional<Joint> best;
  float nearest = Pixels(kJoinPixels);
  const auto offer = [&](End own, End other) {
    const float distance = DistanceOf(own.At(), other.At());
    if (distance > nearest) return;
    nearest = distance;
    best = Joint{own, other};
  };
  for (const bool atStart : {true, false}) {
    if (!points.empty() && !IsChosen(atStart ? 0 : last)) continue;
    for (const DrawingItem& item : ItemsOfPage().Drawings()) {
      if (!item.draws || &item == &shaped || LooksClosed(item.drawing.points)) continue;
      for (const bool otherAtStart : {true, false}) offer({&shaped, atStart}, {&item, otherAtStart});
    }
  }
  // Its own ends if no other is nearer; a single piece cannot be closed.
  if (last > 2) offer({&shaped, true}, {&shaped, false});
  return best;
}

void CloseShaped(const DrawingItem& item) {
  Form form{item.drawing.points, true, false};
  EndAtStart(form.points);
  Replace("joining", item, {RecordOfForm(form, StyleOf(item))});
}

}  // namespace

void ResetShaping() {
  TakeToShape(0);
}

Tool& ShapingTool() {
  static Shaper tool;
  return tool;
}

void TakeToShape(std::uint64_t id) {
  DropDrag();
  Shaped = id;
  Chosen.clear();
  if (id != 0) ClearMarkedBox();  // keys go to the points now, not to the drawing
}

bool ShapedLooksClosed() {
  const DrawingItem* item = ShapedItem();
  return item && LooksClosed(item->drawing.points);
}

bool ShapedIsFilled() {
  const DrawingItem* item = ShapedItem();
  return item && item->drawing.closed;
}

void SetShapedFilled(bool filled) {
  Form form = *ShapedForm();
  form.filled = filled;
  Store(filled ? "filling" : "outline", form);
}

bool CanAddPoints() {
  const std::optional<Form> form = ShapedForm();
  const std::vector<std::size_t> points = ChosenPoints();
  return form && std::ranges::any_of(points, [&](std::size_t i) { return i + 1 < form->points.size(); });
}

void AddPoints() {
  const Form form = *ShapedForm();
  std::vector<Spot> spots;
  for (const std::size_t place : ChosenPoints()) {
    if (place + 2 >= form.points.size()) continue;
    constexpr float kHalf = 0.5F;
    const Point middle = MiddleOf(form.points[place], form.points[place + 2]);
    spots.push_back({place / 2, kHalf, middle, 0});
  }
  AddPointsAt(form, spots);
}

bool CanRemovePoints() {
  return ShapedItem() && !Chosen.empty();
}

void RemovePoints() {
  Form form = *ShapedForm();
  for (const std::size_t place : Chosen)
    if (!IsPoint(place)) Straighten(form.points, place / 2);
  std::vector<std::size_t> points = ChosenPoints();
  Chosen.clear();
  // A path that ends where it begins is turned so that a point that stays is there.
  const std::size_t handles = HandlesOf(form);
  const std::size_t left = (form.closed ? handles : handles + 1) / 2 - points.size();
  if (left < 2) {
    const DrawingItem& item = *ShapedItem();
    Replace("removing points", item, {});
    return;
  }
  if (form.closed && !points.empty() && points.front() == 0) {
    std::size_t stays = 0;
    while (std::ranges::binary_search(points, stays)) stays += 2;
    BeginAt(form.points, stays);
    for (std::size_t& place : points) place = (place + handles - stays) % handles;
    std::ranges::sort(points);
  }
  for (auto place = points.rbegin(); place != points.rend(); ++place) RemovePoint(form.points, *place);
  // Two straight pieces there and back are no area.
  if (form.closed && left == 2 && IsStraightPiece(form.points, 0) && IsStraightPiece(form.points, 1)) {
    form.points.resize(3);
    form.closed = form.filled = false;
  }
  Store("removing points", form);
}

bool CanSplit() {
  const std::optional<Form> form = ShapedForm();
  const std::vector<std::size_t> points = ChosenPoints();
  return form && std::ranges::any_of(points, [&](std::size_t place) {
           return form->closed || (place != 0 && place + 1 != form->points.size());
         });
}

void SplitShaped() {
  const DrawingItem& item = *ShapedItem();
  Form form = *ShapedForm();
  std::vector<std::size_t> cuts = ChosenPoints();
  if (form.closed) {
    const std::size_t first = cuts.front();
    BeginAt(form.points, first);
    for (std::size_t& place : cuts) place -= first;
    if (cuts.size() == 1) OpenAtStart(form.points);
  }
  std::erase_if(cuts, [&](std::size_t place) { return place == 0 || place + 1 == form.points.size(); });
  cuts.push_back(form.points.size() - 1);
  std::vector<std::string> records;
  std::size_t from = 0;
  for (const std::size_t to : cuts) {
    const auto begin = form.points.begin();
    const Points part(begin + static_cast<std::ptrdiff_t>(from), begin + static_cast<std::ptrdiff_t>(to) + 1);
    records.push_back(RecordOf(part, StyleOf(item)));
    from = to;
  }
  Chosen.clear();
  Replace("splitting", item, records);
}

bool CanJoin() {
  const DrawingItem* item = ShapedItem();
  return item && !LooksClosed(item->drawing.points);
}

void JoinShaped() {
  const DrawingItem& shaped = *ShapedItem();
  const std::optional<Joint> joint = NearestJoint(shaped);
  if (!joint)
    throw Failure("No other line ends near an end of this one. Drag one end to the other, then join them.");
  const auto [own, other] = *joint;
  Chosen.clear();
  if (own.item == other.item) return CloseShaped(shaped);
  Points path = shaped.drawing.points;
  Points more = other.item->drawing.points;
  if (own.atStart) Reverse(path);
  if (!other.atStart) Reverse(more);
  const bool straight = IsStraightPiece(more, 0);
  more.front() = path.back();
  if (straight) Straighten(more, 0);
  path.insert(path.end(), more.begin() + 1, more.end());
  if (own.atStart) Reverse(path);

  const std::string record = RecordOf(path, StyleOf(shaped));
  const std::string gone(other.item->record);
  const std::string& records = ItemsOfPage().Records();
  const auto placeIn = [&](const DrawingItem& item) {
    return static_cast<std::size_t>(item.record.data() - records.data());
  };
  const std::size_t at = placeIn(shaped);
  const std::size_t length = shaped.record.size();
  const std::size_t otherAt = placeIn(*other.item);
  const std::size_t index = IndexOf(shaped) - (otherAt < at ? 1 : 0);
  EditPage("joining", [&](Page& page) {
    const auto replace = [&] { page.drawings.replace(at, length, record); };
    const auto remove = [&] { page.drawings.erase(otherAt, gone.size() + 2); };
    // The later one first, so that the other stays where it is.
    if (otherAt > at) remove();
    replace();
    if (otherAt < at) remove();
    --page.drawingCount;
  });
  Shaped = ItemsOfPage().Drawings()[index].id;
  ShowCursor();
}

}  // namespace kelvane
