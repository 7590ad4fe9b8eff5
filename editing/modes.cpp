#include "editing/modes.h"

#include <algorithm>

#include "document/page_items.h"
#include "editing/bezier.h"
#include "editing/change_mark.h"
#include "editing/formula_entry.h"
#include "editing/keyboard.h"
#include "editing/select_tool.h"
#include "editing/shapes.h"
#include "editing/shaping.h"
#include "typography/renderer.h"

namespace kelvane {

std::function<void(Painter&, const View&)> PaintFinds;

namespace {

void Complete() {
  FinishFormula();
  if (RunIsOpen()) CommitPendingRun(true);
  FinishDrawing();
}

}  // namespace

void ResetModes() {
  std::fill(std::begin(Tools), std::end(Tools), &TypingTool());
  Tools[0] = &SelectTool();
  Tools[kBezierMode] = &DrawingTool();
  Tools[kShapingMode] = &ShapingTool();
}

void ChooseAnchor(std::int16_t mode) {
  Complete();
  TakeMode(mode);
}

void ChooseShape(Shape shape) {
  Complete();
  DrawnShape = shape;
  Tools[kBezierMode] = &DrawingTool();
  TakeMode(kBezierMode);
}

void ShapeDrawing(std::uint64_t id) {
  Complete();
  TakeToShape(id);
  TakeMode(kShapingMode);
}

void FinishEditing() {
  FinishFormula();
  if (RunIsOpen()) CommitPendingRun(false);
  FinishDrawing();
}

void LeaveEditing() {
  FinishEditing();
  TakeMode(0);
}

void PaintOverlay(Painter& painter, const View& view) {
  ToolInForce().Paint(painter, view);
  if (view.printed) return;
  PaintChangeMark(painter);
  if (PaintFinds) PaintFinds(painter, view);
}

void PaintLayer(Layer layer, const Box& area) {
  View view = CurrentView();
  if (layer == Layer::Page) {
    PaintPage(*Picture1, view, ItemsOfPage(), area);
  } else {
    view.area = area;
    PaintOverlay(*Picture1, view);
  }
}

}  // namespace kelvane
