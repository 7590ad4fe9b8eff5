#include "editing/tool.h"

#include <cstdlib>

namespace kelvane {

Tool* Tools[kLastMode + 1];
Label* CursorLabel;

Tool& ToolInForce() {
  static Tool none;
  const int mode = std::abs(static_cast<int>(CursorMode));
  Tool* tool = mode <= kLastMode ? Tools[mode] : nullptr;
  return tool ? *tool : none;
}

void TakeMode(std::int16_t mode) {
  CursorMode = mode;
  SetCanvasPointer(CursorMode);
  ShowCursor();
}

std::string CursorLabelText() {
  // The line has room for one thing: while a mode is new, what is missing of it is the news.
  const bool fresh = CursorMode > 0 && !MissingPointer().empty();
  return fresh ? "Missing file " + MissingPointer() + ": the arrow stands in" : ToolInForce().Hint();
}

void ShowCursor() {
  if (CanvasIsLaidOut()) Picture1->Invalidate(Layer::Overlay);
  if (!CursorLabel) return;
  const std::string text = CursorLabelText();
  if (CursorLabel->Text() != text) CursorLabel->SetText(text);
}

}  // namespace kelvane
