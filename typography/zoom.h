#pragma once

// Moving about the page: scale and origin of the view. Every routine redraws the page.

#include <functional>

#include "platform/canvas.h"

namespace kelvane {

inline constexpr float kLeastScale = 0.1F;  // pixels per point
inline constexpr float kMostScale = 32;
// The paper at its real size on a screen of 96 logical pixels to the inch.
inline constexpr float kTrueScale = 96.0F / 72;

// Filled at start-up: scroll bars and the like follow the view.
extern std::function<void()> ViewMoved;

// What one can scroll over: the paper and a margin around it, and whatever is in view beyond that. Points.
struct ScrollRange {
  float least = 0;
  float most = 0;
};
ScrollRange HorizontalRange();
ScrollRange VerticalRange();

// Puts the page point at the left or top of the canvas.
void ScrollToLeft(float left);
void ScrollToTop(float top);
// Puts the paper's upper edge, with a margin above it, at the top of the canvas.
void ShowTopOfPage();
// Moves the view by canvas pixels; to the right and down is positive. Stops where the paper's edge reaches
// the middle of the canvas.
void ScrollBy(float pixelsX, float pixelsY);
// Scrolls as little as brings a page point, with some room around it, into view. Does nothing, not even a
// redraw, if it is there.
void BringIntoView(float x, float y);

// Multiplies the scale; the page point under the canvas pixel stays where it is.
void ZoomAt(float factor, float pixelX, float pixelY);
// About the middle of the canvas.
void ZoomIn();
void ZoomOut();
void ZoomToTrueSize();
void FitPage();
void FitWidth();
// All of a box, points.
void FitBox(const Box& box);

}  // namespace kelvane
