#include "typography/view.h"

#include <algorithm>
#include <iterator>

namespace kelvane {

float PaperWidth = kDefaultPaperWidth;
float PaperHeight = kDefaultPaperHeight;
float STARTX = kDefaultStartX;
float STARTY = kDefaultStartY;
float SCALE = kDefaultScale;
std::int16_t GridStepH = kDefaultGridStepH;
std::int16_t GridStepV = kDefaultGridStepV;
float GuideX[kGuides];
float GuideY[kGuides];
bool ShowGrid = true;
bool PrintView = false;
std::vector<std::uint64_t> HiddenItems;
Canvas* Picture1 = nullptr;
float VisibleLeft;
float VisibleTop;
float VisibleRight;
float VisibleBottom;

bool CanvasIsLaidOut() {
  return Picture1 && Picture1->PixelWidth() > 0 && Picture1->PixelHeight() > 0;
}

View CurrentView() {
  View view;
  view.scale = SCALE;
  view.grid = ShowGrid && !PrintView;
  view.printed = PrintView;
  view.hidden = HiddenItems;
  if (!CanvasIsLaidOut()) return view;
  view.ratio = Picture1->PixelRatio();
  const float width = static_cast<float>(Picture1->PixelWidth()) / SCALE;
  const float height = static_cast<float>(Picture1->PixelHeight()) / SCALE;
  view.area.left = STARTX - 0.5F * width;
  view.area.top = STARTY - 0.5F * height;
  view.area.right = view.area.left + width;
  view.area.bottom = view.area.top + height;
  return view;
}

Box WholeSheet() {
  return {0, 0, PaperWidth, PaperHeight};
}

View PrintedView(const Box& area, float scale, bool paper) {
  View view;
  view.area = area;
  view.scale = scale;
  view.printed = view.exact = true;
  view.paper = paper;
  return view;
}

void ResetView() {
  PaperWidth = kDefaultPaperWidth;
  PaperHeight = kDefaultPaperHeight;
  STARTX = kDefaultStartX;
  STARTY = kDefaultStartY;
  SCALE = kDefaultScale;
  GridStepH = kDefaultGridStepH;
  GridStepV = kDefaultGridStepV;
  std::fill(std::begin(GuideX), std::end(GuideX), 0.0F);
  std::fill(std::begin(GuideY), std::end(GuideY), 0.0F);
  ShowGrid = true;
  PrintView = false;
  HiddenItems.clear();
  VisibleLeft = VisibleTop = VisibleRight = VisibleBottom = 0;
}

}  // namespace kelvane
