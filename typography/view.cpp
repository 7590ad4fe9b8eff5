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
float VisibleLeft;
float VisibleTop;
float VisibleRight;
float VisibleBottom;
bool ShowGrid = true;
bool PrintView = false;

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
  VisibleLeft = VisibleTop = VisibleRight = VisibleBottom = 0;
  ShowGrid = true;
  PrintView = false;
}

}  // namespace kelvane
