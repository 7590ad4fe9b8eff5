#pragma once

// What part of the paper the canvas shows, the paper's size, grids and guides. Set by the settings file and
// the View menu.

#include <cstdint>

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
extern float STARTX;       // page point at the centre of the canvas
extern float STARTY;
extern float SCALE;  // canvas pixels per point

// Grid choices 1 to 6. GridStepH belongs to the entries mGridH1 to mGridH6 ("&Vertical Grid Lines", settings
// GRIDX): the spacing of vertical lines and the step in x. GridStepV likewise for horizontal lines and y.
extern std::int16_t GridStepH;
extern std::int16_t GridStepV;

inline constexpr int kGuides = 16;
extern float GuideX[kGuides];  // a zero ends the list
extern float GuideY[kGuides];

// The rectangle of the page that the canvas shows, in points; valid after a redraw.
extern float VisibleLeft;
extern float VisibleTop;
extern float VisibleRight;
extern float VisibleBottom;

// Choices of the View menu, as at every start until they are changed there.
extern bool ShowGrid;   // the grid lines
extern bool PrintView;  // the page as print has it: glyphs filled, no grid, guides and marks

void ResetView();

}  // namespace kelvane
