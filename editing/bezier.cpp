#include "editing/bezier.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <memory>
#include <utility>

#include "document/fields.h"
#include "document/numbers.h"
#include "document/page.h"
#include "editing/edit.h"
#include "platform/controls.h"
#include "platform/failure.h"
#include "typography/colours.h"
#include "typography/renderer.h"

namespace kelvane {

bool ArrowAtEnd = false;

namespace {

bool FillPaths = true;
bool FillShapes;

constexpr float kPullPixels = 4;   // the pointer moved this far with the button down bends the piece
constexpr float kClosePixels = 5;  // a click this near the start closes the path
constexpr float kMarkPixels = 2;

Point Hover;      // where the next point would go
Point PressedAt;  // where the button went down, unsnapped
bool Pressed;
bool Pulling;

// CurrentDrawing taken apart, and what it was then: a long path is not read anew for each movement of the
// mouse.
Points ReadPath;
std::string ReadFrom;

bool Near(Point a, Point b, float pixels) {
  return DistanceOf(a, b) * SCALE <= pixels;
}

LineStyle StyleInForce() {
  return {LineColour, static_cast<float>(LineWidth)};
}

std::string StyleToken() {
  return TokenOfStyle(StyleInForce());
}

Drawing DrawingOf(Points path) {
  Drawing drawing;
  drawing.points = std::move(path);
  drawing.style = StyleInForce();
  drawing.closed = EndsAtStart(drawing.points);
  return drawing;
}

// What a path becomes when it is finished: it, and its arrowhead. Nothing if there is nothing to see of it.
std::vector<Points> FinishedForms(Points path) {
  if (path.size() < 3 || !HasExtent(path)) return {};
  if (DrawnShape == Shape::Polygon && path.size() > 4 && !EndsAtStart(path)) AddPiece(path, path.front());
  std::vector<Points> heads;
  if (!EndsAtStart(path)) {
    if (ArrowAtEnd || DrawnShape == Shape::Arrow)
      heads.push_back(TakeArrowhead(path, static_cast<float>(LineWidth)));
  } else if (!FillClosed()) {
    EndAsOutline(path);
  }
  heads.insert(heads.begin(), std::move(path));
  return heads;
}

// Of a long path a picture is kept, too, so that a movement of the mouse costs what the last pieces do: these
// many of them are stroked at most.
constexpr std::size_t kMostStroked = 32;

struct PathPicture {
  Points path;
  LineStyle style;
  std::array<double, 5> pixels{};  // of the view: the first in each direction, how many, and how many a point
  Point corner;                    // of the paper
  std::unique_ptr<Image> image;
};
PathPicture Kept;

// Makes the picture of a path if it is not kept: of all that the canvas shows, pixel on pixel.
void KeepPicture(Points path) {
  const View view = CurrentView();
  const LineStyle style = StyleInForce();
  const double scale = static_cast<double>(view.scale) * view.ratio;
  const auto whole = [](double pixels) { return std::floor(pixels + 0.5); };
  const double left = whole(view.area.left * scale), width = whole(Picture1->PixelWidth() * view.ratio);
  const double top = whole(view.area.top * scale), height = whole(Picture1->PixelHeight() * view.ratio);
  const std::array pixels{left, top, width, height, scale};
  if (Kept.image != nullptr && Kept.path == path && Kept.style == style && Kept.pixels == pixels) return;
  const Box shown{static_cast<float>(left / scale), static_cast<float>(top / scale),
                  static_cast<float>((left + width) / scale), static_cast<float>((top + height) / scale)};
  Kept = {std::move(path), style, pixels, {shown.left, shown.top}, nullptr};
  Kept.image =
      TheToolkit->NewImage(static_cast<int>(width), static_cast<int>(height), shown, view.ratio, true);
  StrokeDrawing(*Kept.image, view, DrawingOf(Kept.path));
}

// Paints the pieces of a path that are seen: only a few while the mouse moves the next one.
void StrokeSeen(Painter& painter, const View& view, const Points& path) {
  Drawing part = DrawingOf({});
  const auto stroke = [&] {
    if (!part.points.empty()) StrokeDrawing(painter, view, part);
    part.points.clear();
  };
  Drawing piece = part;
  for (std::size_t i = 0; i + 2 < path.size(); i += 2) {
    const auto begin = path.begin() + static_cast<std::ptrdiff_t>(i);
    piece.points.assign(begin, begin + 3);
    const Box box = BoundsOf(piece);
    if (box.right < view.area.left || box.left > view.area.right || box.bottom < view.area.top ||
        box.top > view.area.bottom) {
      stroke();
      continue;
    }
    part.points.insert(part.points.end(), begin + (part.points.empty() ? 0 : 1), begin + 3);
  }
  stroke();
}

class PathDrawer : public Tool {
 public:
  void Press(const Pointer& pointer) override {
    Points path = OpenPath();
    Point end = Target(pointer);
    if (path.size() > 3 && Near(pointer.at, path.front(), kClosePixels)) end = path.front();
    Hover = end;
    if (!path.empty() && end == path.back()) {
      FinishDrawing();
      return;
    }
    AddPiece(path, end);
    KeepPath(path);
    PressedAt = pointer.at;
    Pressed = true;
    Pulling = false;
    ShowCursor();
  }

  void Move(const Pointer& pointer) override {
    if (!PathIsOpen()) return;
    ShowMoving();
    Hover = Pressed && OpenPath().size() > 1 ? PlaceOf(pointer) : Target(pointer);
    if (Pressed && OpenPath().size() > 1 && DrawnShape != Shape::Polygon) {
      Pulling = Pulling || !Near(pointer.at, PressedAt, kPullPixels);
      if (Pulling) {
        Points path = OpenPath();
        path[path.size() - 2] = Hover;
        KeepPath(path);
      }
    }
    ShowMoving();
  }

  void Release(const Pointer& pointer) override {
    if (!Pressed) return;
    Points path = OpenPath();
    const bool dragged = path.size() == 1 && !Near(pointer.at, PressedAt, kPullPixels);
    if (dragged && Target(pointer) != path.back()) AddPiece(path, Target(pointer));
    KeepPath(path);
    Pressed = Pulling = false;
    if (EndsAtStart(path)) {
      FinishDrawing();
    } else {
      ShowCursor();
    }
  }

  void RightClick() override { FinishDrawing(); }

  bool Key(int code) override {
    if (code == kKeyEnter) FinishDrawing();
    if (code == kKeyBackspace) TakeBackPoint();
    if (code == kKeyEscape) PathIsOpen() ? DropDrawing() : TakeMode(0);
    return code < kKeyLeft;
  }

  void Paint(Painter& painter, const View& view) const override {
    const Points& path = OpenPath();
    if (path.empty()) return;
    // The mouse changes the last piece. How many are in the picture depends on the path alone.
    const std::size_t pieces = path.size() / 2;
    const std::size_t kept = pieces == 0 ? 0 : (pieces - 1) / kMostStroked * kMostStroked;
    if (kept == 0 || TheToolkit == nullptr || &painter != Picture1) {
      StrokeSeen(painter, view, path);
    } else {
      const auto split = path.begin() + static_cast<std::ptrdiff_t>(2 * kept);
      KeepPicture({path.begin(), split + 1});
      Picture1->DrawImage(*Kept.image, Kept.corner);
      StrokeSeen(painter, view, {split, path.end()});
    }
    const Pen thin{PaletteColour(kBlue), 1};
    if (Pulling) {
      Path handle;
      handle.MoveTo(path[path.size() - 3]);
      handle.LineTo(path[path.size() - 2]);
      handle.LineTo(path.back());
      painter.StrokePath(handle, thin);
    } else if ((!Pressed || path.size() == 1) && Hover != path.back()) {
      painter.DrawLine(path.back(), Hover, thin);
    }
    const float mark = kMarkPixels / view.scale;
    const Point start = path.front();
    painter.FillBox({start.x - mark, start.y - mark, start.x + mark, start.y + mark}, thin.colour);
  }

  void Finish() override { FinishDrawing(); }

  std::string Hint() const override {
    return DrawnShape == Shape::Polygon ? "Click for the corners; Enter closes it"
                                        : "Click for points, pull to bend; Enter ends it";
  }

 private:
  // Where the next point would go.
  static Point Target(const Pointer& pointer) {
    const Point place = PlaceOf(pointer);
    return pointer.shift && PathIsOpen() ? InDirection(OpenPath().back(), place) : place;
  }

  // Has the overlay painted anew where the mouse changes it: the last piece and the one that would follow.
  static void ShowMoving() {
    const Points& path = OpenPath();
    Drawing moving = DrawingOf(
        {path.end() - static_cast<std::ptrdiff_t>(std::min<std::size_t>(path.size(), 3)), path.end()});
    moving.points.push_back(Hover);
    Box box = BoundsOf(moving);
    const float margin = Pixels(kMarkPixels);
    box = {box.left - margin, box.top - margin, box.right + margin, box.bottom + margin};
    if (CanvasIsLaidOut()) Picture1->Invalidate(Layer::Overlay, box);
  }
};

}  // namespace

void ResetBezier() {
  FillPaths = true;
  FillShapes = false;
  ArrowAtEnd = false;
  CurrentDrawing.clear();
  Pressed = Pulling = false;
  Kept = {};
}

Tool& PathTool() {
  static PathDrawer tool;
  return tool;
}

bool& FillClosed() {
  return DrawnShape == Shape::Bezier ? FillPaths : FillShapes;
}

bool PathIsOpen() {
  return !CurrentDrawing.empty();
}

const Points& OpenPath() {
  if (ReadFrom == CurrentDrawing) return ReadPath;
  ReadFrom = CurrentDrawing;
  ReadPath.clear();
  const std::vector<std::string_view> tokens = SplitFields(CurrentDrawing, " ");
  for (std::size_t i = 0; i + 2 < tokens.size(); i += 2)
    ReadPath.push_back({ReadSingle(tokens[i]), ReadSingle(tokens[i + 1])});
  return ReadPath;
}

void KeepPath(const Points& path) {
  CurrentDrawing = path.empty() ? "" : RecordOf(path, StyleToken());
}

void TakeBackPoint() {
  Points path = OpenPath();
  if (path.empty()) return;
  path.resize(path.size() > 1 ? path.size() - 2 : 0);
  KeepPath(path);
  Pressed = Pulling = false;
  ShowCursor();
}

bool FinishDrawing() {
  const std::vector<Points> forms = FinishedForms(OpenPath());
  if (!forms.empty()) {
    if (DrawingCount > std::numeric_limits<std::int16_t>::max() - static_cast<int>(forms.size())) {
      throw Failure("The page can hold no more drawings. Press Escape to give up the one being drawn.");
    }
    EditPage("drawing", [&](Page& page) {
      for (const Points& form : forms) page.drawings += RecordOf(form, StyleToken()) + "\r\n";
      page.drawingCount = static_cast<std::int16_t>(page.drawingCount + static_cast<int>(forms.size()));
    });
  }
  DropDrawing();
  return !forms.empty();
}

void DropDrawing() {
  if (!PathIsOpen()) return;
  CurrentDrawing.clear();
  Pressed = Pulling = false;
  Kept = {};
  ShowCursor();
}

void PaintFinished(Painter& painter, const View& view) {
  for (Points& form : FinishedForms(OpenPath())) PaintDrawing(painter, view, DrawingOf(std::move(form)));
}

}  // namespace kelvane
