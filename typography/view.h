#pragma once

// What part of the paper the canvas shows, the paper's size, grids and guides. Set by the settings file and
// the View menu.

#include <algorithm>
#include <cstdint>
#include <vector>

#include "platform/canvas.h"

namespace kelvane {

// Start values.
inline constexpr float kDefaultPaperWidth = 594;
inline constexpr float kDefaultPaperHeight = 840;
inline constexpr float kDefaultStartX = 296;
inline constexpr float kDefaultStartY = 180;
inline constexpr float kDefaultScale = 2;
inline constexpr std::int16_t kDefaultGridStepH = 2;
inline constexpr std::int16_t kDefaultGridStepV = 3;

extern float PaperWidth;   // points
extern float PaperHeight;  // points
Box WholeSheet();          // all of it, points
extern float STARTX;       // page point at the centre of the canvas
extern float STARTY;
extern float SCALE;  // canvas pixels per point
// So many pixels of the canvas, in points.
inline float Pixels(float pixels) {
  return pixels / SCALE;
}

// Grid choices 1 to 6. GridStepH belongs to the entries mGridH1 to mGridH6 ("&Vertical Grid Lines", settings
// GRIDX): the spacing of vertical lines and the step in x. GridStepV likewise for horizontal lines and y.
extern std::int16_t GridStepH;
extern std::int16_t GridStepV;

inline constexpr int kGuides = 16;
extern float GuideX[kGuides];  // a zero ends the list
extern float GuideY[kGuides];

extern bool ShowGrid;   // the grid lines; on at every start
extern bool PrintView;  // glyphs filled, no grid, guides and marks: the page as print shows it

// The items that are left out because they are being edited above the page.
extern std::vector<std::uint64_t> HiddenItems;

// The page canvas of the main window.
extern Canvas* Picture1;
// Whether there is a page canvas and it has a size.
bool CanvasIsLaidOut();

// What a painting needs to know of where it goes.
struct View {
  Box area;         // the part of the page that is shown, points
  float scale = 1;  // logical pixels per point
  float ratio = 1;  // device pixels per logical pixel
  bool grid = false;
  bool printed = false;  // as print shows it: glyphs filled, nothing but the page
  // Not for a screen, whose pixels are to be seen: lines as wide as they print, every area filled.
  bool exact = false;
  bool paper = true;                       // the sheet is white
  std::vector<std::uint64_t> hidden = {};  // items that are not painted
  bool Hides(std::uint64_t id) const { return std::find(hidden.begin(), hidden.end(), id) != hidden.end(); }
};
// That of the page canvas as STARTX, STARTY and SCALE have it now; an empty area while it is not laid out.
View CurrentView();
// The page as it prints, for pictures and documents: an area of it (points), on white or on nothing.
View PrintedView(const Box& area, float scale, bool paper);

// The area of the last redraw, points.
extern float VisibleLeft;
extern float VisibleTop;
extern float VisibleRight;
extern float VisibleBottom;

void ResetView();

}  // namespace kelvane
