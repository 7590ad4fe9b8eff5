#include "output/printing.h"

#include <string>

#include "document/fields.h"
#include "document/page_items.h"
#include "document/paper.h"
#include "output/page_list.h"
#include "platform/files.h"
#include "platform/printer.h"
#include "typography/renderer.h"
#include "typography/view.h"

namespace kelvane {
namespace {

void PaintSheet(int page, float ratio, Painter& painter) {
  View view = PrintedView(WholeSheet(), 1, false);
  view.ratio = ratio;
  if (page == CurrentPageNumber) {
    PaintPage(painter, view, ItemsOfPage(), view.area);
  } else {
    const std::string file = PageFileName(CurrentPaperFile, page);
    PaintPage(painter, view, PageItems(PageOfContent(TheFiles->ReadWhole(file), file)), view.area);
  }
}

PrintJob JobOfPaper() {
  PrintJob job;
  job.title = CurrentPaperFile.empty() ? "Kelvane" : FileTitleOf(CurrentPaperFile);
  job.width = PaperWidth;
  job.height = PaperHeight;
  job.current = CurrentPageNumber;
  job.pages = PagesOfPaper();
  job.paint = PaintSheet;
  return job;
}

}  // namespace

bool PrintToPrinter() {
  return ThePrinter->Print(JobOfPaper());
}

bool PreviewPrint() {
  ThePrinter->Preview(JobOfPaper());
  return true;
}

}  // namespace kelvane
