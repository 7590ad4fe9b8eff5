#pragma once

// Painting. A Painter takes drawing calls, whatever becomes of them; a Canvas is the painter on the screen,
// with two layers, a mouse pointer, the focus and events.
//
// Coordinates are those of whoever draws (points of the paper) and stay floats; pen widths and text sizes are
// logical pixels.

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace kelvane {

struct Point {
  float x = 0;
  float y = 0;
  bool operator==(const Point&) const = default;
};

struct Box {
  float left = 0;
  float top = 0;
  float right = 0;
  float bottom = 0;
};

// Lines and cubic curves in one or more parts, each begun by MoveTo.
struct Path {
  enum class Step : std::uint8_t { Move, Line, Curve };
  std::vector<Step> steps;
  std::vector<Point> points;  // one for a move or a line; for a curve two control points and the end

  void MoveTo(Point to) { Add(Step::Move, to); }
  void LineTo(Point to) { Add(Step::Line, to); }
  void CurveTo(Point control1, Point control2, Point to) {
    points.push_back(control1);
    points.push_back(control2);
    Add(Step::Curve, to);
  }
  bool Empty() const { return steps.empty(); }
  void Clear() {
    steps.clear();
    points.clear();
  }

 private:
  void Add(Step step, Point to) {
    steps.push_back(step);
    points.push_back(to);
  }
};

// Colour value 0x00BBGGRR.
using ColourValue = std::int32_t;

struct Pen {
  ColourValue colour = 0;
  float width = 1;  // pixels; caps and joins are round
  // Lines parallel to an axis lie on whole pixels: for grids and marks, not for what is printed.
  bool crisp = false;
};

// A typeface of the screen by its usual name, e.g. "Times New Roman". The platform takes the face whose
// outlines the printed page uses, or the nearest one installed. `family` "Symbol" means the Symbol encoding,
// every other family Windows code page 1252.
struct ScreenFace {
  std::string_view family;
  bool bold = false;
  bool italic = false;
  bool operator==(const ScreenFace&) const = default;
};

// The tangent by which a face leans that has no italic of its own, as the slanted Symbol has none: 12
// degrees, on the screen and in print.
inline constexpr double kSlant = 0.2125565617;

enum class Layer { Page, Overlay };

// What the pointer says that a press would do.
enum class PointerShape {
  Arrow,
  Move,
  ResizeFalling,  // along the diagonal from top left to bottom right
  ResizeRising,   // along the other one
  Turn,
};

enum class MouseButton { Left, Middle, Right };

struct MouseEvent {
  MouseButton button = MouseButton::Left;
  float x = 0;  // logical position
  float y = 0;
  float pixelX = 0;  // position in pixels from the canvas's top-left corner
  float pixelY = 0;
  bool shift = false;
  bool control = false;
  bool alt = false;
  int clicks = 1;  // 2 from the second press of a double click on
};

struct WheelEvent {
  float steps = 0;      // notches vertically, positive away from the person
  float sideSteps = 0;  // notches sideways, positive to the left
  bool shift = false;
  bool control = false;
  float pixelX = 0;
  float pixelY = 0;
};

// Codes of the canvas's keys: ASCII characters, the control characters of some keys, and from kKeyLeft on
// keys that are no characters.
inline constexpr int kKeyBackspace = 8;
inline constexpr int kKeyTab = 9;
inline constexpr int kKeyCtrlEnter = 10;
inline constexpr int kKeyEnter = 13;
inline constexpr int kKeyEscape = 27;
inline constexpr int kKeyLeft = 256;
inline constexpr int kKeyUp = 257;
inline constexpr int kKeyRight = 258;
inline constexpr int kKeyDown = 259;
inline constexpr int kKeyHome = 260;
inline constexpr int kKeyEnd = 261;
inline constexpr int kKeyDelete = 262;
inline constexpr int kKeyWordBackspace = 263;
// Held with one of the keys that are no characters; Shift also with Enter.
inline constexpr int kWithShift = 1 << 16;
inline constexpr int kWithControl = 1 << 17;
inline constexpr int kKeyWordLeft = kKeyLeft | kWithControl;
inline constexpr int kKeyWordRight = kKeyRight | kWithControl;

// A character of one of the program's own fonts.
struct GlyphOnPage {
  std::int16_t font = 0;
  int code = 0;
  float em = 1;  // pixels
  Point origin;  // on the baseline
  ColourValue colour = 0;
};

// Glyph units of the program's own fonts, in ems.
inline constexpr float kGlyphUnit = 0.02F;

// `placed` becomes a path in glyph units, y upwards, with its origin at a position; `em` in units of that.
void PlaceGlyphPath(const Path& path, Point origin, float em, Path& placed);

// Such a character as the screen shows it: lines.
struct GlyphLines {
  struct Lines {
    const Path* path = nullptr;  // glyph units, y upwards, from the origin
    float width = 0;             // pixels
  };
  Lines lines[2];  // one or both
  std::int16_t font = 0;
  int code = 0;
  std::uint32_t edition = 0;  // another one when a glyph of the fonts has changed
  float em = 1;               // units of the painter
};

class Painter {
 public:
  virtual ~Painter() = default;

  virtual void FillBox(const Box& box, ColourValue colour) = 0;
  virtual void DrawLine(Point from, Point to, const Pen& pen) = 0;
  virtual void StrokePath(const Path& path, const Pen& pen) = 0;
  // Non-zero winding; each part is joined to its start.
  virtual void FillPath(const Path& path, ColourValue colour) = 0;
  // Characters of one face and size, each with its origin on the baseline. `em` is in pixels. `codes` and
  // `origins` have the same length.
  virtual void DrawText(const ScreenFace& face, float em, std::string_view codes,
                        std::span<const Point> origins, ColourValue colour) = 0;

  // A canvas keeps the picture of the character for the next time.
  virtual void DrawGlyph(const GlyphLines& glyph, Point origin, ColourValue colour);

  // A painter that keeps the program's own characters as such takes one here; false has its shape drawn by
  // the calls above.
  virtual bool TakeGlyph(const GlyphOnPage&) { return false; }
  // A painter that keeps text as text is told what the characters that are drawn until the next call say
  // together, in UTF-8, where that is something else than one by one (a sign in pieces). An empty text ends
  // it.
  virtual bool KeepsText() const { return false; }
  virtual void SayTogether(std::string_view) {}
};

// A picture in memory, painted on at once.
class Image : public Painter {
 public:
  // Device pixels.
  virtual int PixelWidth() const = 0;
  virtual int PixelHeight() const = 0;
  // The content of a PNG file, which tells how many pixels make an inch.
  virtual std::string Png(int dotsPerInch) const = 0;
  // The faces painted with that the machine lacks, so that the nearest ones stand for them.
  virtual std::vector<ScreenFace> MissingFaces() const { return {}; }
};

// A surface on the screen. The page layer holds the page; the overlay above it what comes and goes (cursor
// mark, the run being typed). A layer is painted when the canvas is about to be shown, once for whatever
// asked for it since.
class Canvas : public Painter {
 public:
  // Size in logical pixels; 0 while the window is not laid out.
  virtual int PixelWidth() const = 0;
  virtual int PixelHeight() const = 0;

  // The logical rectangle that fills the canvas. Width and height are above 0.
  virtual void SetCoordinates(float left, float top, float width, float height) = 0;
  // The same for a page that is otherwise shown as before: what stays in view of the page layer moves along,
  // the rest of it and the overlay are painted when the canvas is next shown.
  virtual void ScrollTo(float left, float top, float width, float height) = 0;

  // Device pixels per logical pixel.
  virtual float PixelRatio() const = 0;

  // Drawing goes to this layer until the next call.
  virtual void SelectLayer(Layer layer) = 0;
  // Page: filled with the desk colour. Overlay: transparent.
  virtual void Clear() = 0;

  // Puts a picture whose upper left corner is at a logical position there, pixel by pixel.
  virtual void DrawImage(const Image& image, Point corner) = 0;

  // Has OnPaint called for a layer before the canvas is next shown: for the whole of it, or for an area in
  // logical coordinates.
  virtual void Invalidate(Layer layer) = 0;
  virtual void Invalidate(Layer layer, const Box& area) = 0;
  // Paints on the cleared and selected layer; what lies outside the area is not shown.
  std::function<void(Layer, const Box& area)> OnPaint;

  // Shows what was asked for at once, before what else a handler has to do.
  virtual void ShowNow() = 0;

  // The mouse pointer: the system's arrow, or an icon file of the program folder whose hot spot is the
  // marked point. SetPointerIcon returns false and shows the arrow if the file cannot be loaded.
  virtual void SetPointerArrow() = 0;
  virtual bool SetPointerIcon(const std::string& path) = 0;
  // The system's pointer of that shape.
  virtual void SetPointerShape(PointerShape shape) = 0;

  virtual void Focus() = 0;
  // What readers of the screen call the canvas, and what it is for.
  virtual void SetName(const std::string& name) = 0;
  virtual void SetToolTip(const std::string& text) = 0;

  // While true, Tab is a key like others instead of moving the focus.
  bool takesTab = false;
  // Where the caret is, so that an input method can put its own window beside it.
  std::function<Point()> CaretPlace;

  // Handlers, set by the owner.
  std::function<void(int)> OnKeyPress;
  // Tab or, backwards, Shift+Tab; true if it was used, otherwise the focus goes on to the next control.
  std::function<bool(bool forwards)> OnTab;
  // Text in UTF-8 that is not all ASCII, whole and in its order, from a key or an input method.
  std::function<void(const std::string&)> OnText;
  // What an input method has in the making, to be shown at the caret; empty when there is nothing.
  std::function<void(const std::string&)> OnPreedit;
  std::function<void(const MouseEvent&)> OnMouseDown;
  std::function<void(const MouseEvent&)> OnMouseMove;
  std::function<void(const MouseEvent&)> OnMouseUp;
  std::function<void()> OnMouseLeave;
  std::function<void(const WheelEvent&)> OnWheel;
};

}  // namespace kelvane
