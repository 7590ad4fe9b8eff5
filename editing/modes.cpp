#include "editing/modes.h"

#include <algorithm>

#include "document/page_items.h"
#include "editing/bezier.h"
#include "editing/keyboard.h"
#include "editing/select_tool.h"
#include "typography/renderer.h"

namespace kelvane {

namespace {

void Change(std::int16_t mode) {
  if (RunIsOpen()) CommitPendingRun(true);
  FinishDrawing();
  TakeMode(mode);
}

}  // namespace

void ResetModes() {
  std::fill(std::begin(Tools), std::end(Tools), &TypingTool());
  Tools[0] = &SelectTool();
  Tools[kBezierMode] = &DrawingTool();
  Tools[kLastMode] = nullptr;
}

void ChooseAnchor(std::int16_t mode) {
  Change(mode);
}

void ChooseBezier() {
  Change(kBezierMode);
}

void FinishEditing() {
  if (RunIsOpen()) CommitPendingRun(false);
  FinishDrawing();
}

void LeaveEditing() {
  FinishEditing();
  TakeMode(0);
}

void TakeMode(std::int16_t mode) {
  CursorMode = mode;
  SetCanvasPointer(CursorMode);
  ShowCursor();
}

void PaintOverlay(Painter& painter, const View& view) {
  ToolInForce().Paint(painter, view);
}

void PaintLayer(Layer layer, const Box& area) {
  const View view = CurrentView();
  if (layer == Layer::Page) {
    PaintPage(*Picture1, view, ItemsOfPage(), area);
  } else {
    PaintOverlay(*Picture1, view);
  }
}

}  // namespace kelvane
