#include "formula/painting.h"

#include "document/page_items.h"
#include "typography/renderer.h"

namespace kelvane {

void PaintFormula(Painter& painter, const View& view, const Formula& formula, Point at) {
  // By way of the page's own lines, so that what is rounded there is rounded here.
  const PageItems items(PageOfFormula(formula, at));
  for (const DrawingItem& item : items.Drawings()) PaintDrawing(painter, view, item.drawing);
  for (const TextItem& item : items.Texts()) PaintEntry(painter, view, item.entry);
}

}  // namespace kelvane
