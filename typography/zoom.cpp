#include "typography/zoom.h"

#include <algorithm>

#include "typography/glyphs.h"
#include "typography/renderer.h"
#include "typography/view.h"

namespace kelvane {

std::function<void()> ViewMoved;

namespace {

constexpr float kMarginPixels = 12;
constexpr float kRoomPixels = 32;  // around a point that was brought into view
constexpr float kZoomStep = 1.25F;

float CanvasWidth() {
  return Picture1 ? static_cast<float>(Picture1->PixelWidth()) : 0;
}
float CanvasHeight() {
  return Picture1 ? static_cast<float>(Picture1->PixelHeight()) : 0;
}

void ShowScrolled() {
  ScrollPage();
  if (ViewMoved) ViewMoved();
}

ScrollRange Range(float paper, float visibleFrom, float visibleTo) {
  const float margin = kMarginPixels / SCALE;
  return {std::min(-margin, visibleFrom), std::max(paper + margin, visibleTo)};
}

void ZoomTo(float scale) {
  SCALE = std::clamp(scale, kLeastScale, kMostScale);
  ShowPage();
  if (ViewMoved) ViewMoved();
}

// How far a view from `from` to `to` must move for the point to be inside it with its room.
float WayIntoView(float point, float from, float to) {
  const float room = std::min(kRoomPixels / SCALE, (to - from) / 4);
  return std::min(point - (from + room), 0.0F) + std::max(point - (to - room), 0.0F);
}

// The scale at which so many points and the margins take so many pixels.
float FittingScale(float pixels, float points) {
  return std::max(pixels - 2 * kMarginPixels, 1.0F) / points;
}

}  // namespace

ScrollRange HorizontalRange() {
  return Range(PaperWidth, VisibleLeft, VisibleRight);
}
ScrollRange VerticalRange() {
  return Range(PaperHeight, VisibleTop, VisibleBottom);
}

void ScrollToLeft(float left) {
  STARTX = left + 0.5F * CanvasWidth() / SCALE;
  ShowScrolled();
}

void ScrollToTop(float top) {
  STARTY = top + 0.5F * CanvasHeight() / SCALE;
  ShowScrolled();
}

void ShowTopOfPage() {
  ScrollToTop(-kMarginPixels / SCALE);
}

void ScrollBy(float pixelsX, float pixelsY) {
  STARTX = std::clamp(STARTX + pixelsX / SCALE, 0.0F, PaperWidth);
  STARTY = std::clamp(STARTY + pixelsY / SCALE, 0.0F, PaperHeight);
  ShowScrolled();
}

void BringIntoView(float x, float y) {
  if (x >= VisibleLeft && x <= VisibleRight && y >= VisibleTop && y <= VisibleBottom) return;
  STARTX += WayIntoView(x, VisibleLeft, VisibleRight);
  STARTY += WayIntoView(y, VisibleTop, VisibleBottom);
  ShowScrolled();
}

void ZoomAt(float factor, float pixelX, float pixelY) {
  const float scale = std::clamp(SCALE * factor, kLeastScale, kMostScale);
  const float fromMiddleX = pixelX - 0.5F * CanvasWidth();
  const float fromMiddleY = pixelY - 0.5F * CanvasHeight();
  STARTX += fromMiddleX / SCALE - fromMiddleX / scale;
  STARTY += fromMiddleY / SCALE - fromMiddleY / scale;
  ZoomTo(scale);
}

void ZoomIn() {
  ZoomTo(SCALE * kZoomStep);
}
void ZoomOut() {
  ZoomTo(SCALE / kZoomStep);
}
void ZoomToTrueSize() {
  ZoomTo(kTrueScale);
}

void FitPage() {
  STARTX = PaperWidth / 2;
  STARTY = PaperHeight / 2;
  ZoomTo(std::min(FittingScale(CanvasWidth(), PaperWidth), FittingScale(CanvasHeight(), PaperHeight)));
}

void FitBox(const Box& box) {
  STARTX = (box.left + box.right) / 2;
  STARTY = (box.top + box.bottom) / 2;
  // A box of no size is brought into the middle as it is.
  const float width = std::max(box.right - box.left, 1.0F);
  const float height = std::max(box.bottom - box.top, 1.0F);
  const float scale = std::min(FittingScale(CanvasWidth(), width), FittingScale(CanvasHeight(), height));
  ZoomTo(std::min(scale, std::max(SCALE, kTrueScale)));
}

void FitWidth() {
  const float top = STARTY - 0.5F * CanvasHeight() / SCALE;
  STARTX = PaperWidth / 2;
  SCALE = std::clamp(FittingScale(CanvasWidth(), PaperWidth), kLeastScale, kMostScale);
  ScrollToTop(std::max(top, -kMarginPixels / SCALE));
}

}  // namespace kelvane
