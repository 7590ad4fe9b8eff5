#include "typography/view.h"

#include <algorithm>
#include <iterator>

namespace kelvane {

float PaperWidth = 594;
float PaperHeight = 840;
float STARTX = 296;
float STARTY = 180;
float SCALE = 2;
std::int16_t GridStepH = 2;
std::int16_t GridStepV = 3;
float GuideX[kGuides];
float GuideY[kGuides];
float VisibleLeft;
float VisibleTop;
float VisibleRight;
float VisibleBottom;

void ResetView() {
  PaperWidth = 594;
  PaperHeight = 840;
  STARTX = 296;
  STARTY = 180;
  SCALE = 2;
  GridStepH = 2;
  GridStepV = 3;
  std::fill(std::begin(GuideX), std::end(GuideX), 0.0F);
  std::fill(std::begin(GuideY), std::end(GuideY), 0.0F);
  VisibleLeft = VisibleTop = VisibleRight = VisibleBottom = 0;
}

}  // namespace kelvane
