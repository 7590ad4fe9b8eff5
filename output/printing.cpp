#include "output/printing.h"

#include <algorithm>
#include <string>
#include <vector>

#include "document/fields.h"
#include "document/page_items.h"
#include "document/paper.h"
#include "papers/paper_commands.h"
#include "platform/files.h"
#include "platform/printer.h"
#include "typography/renderer.h"
#include "typography/view.h"

namespace kelvane {
namespace {

// The preview keeps all of its pages in memory.
constexpr std::size_t kMostPreviewed = 40;

void PaintSheet(int page, float ratio, Painter& painter) {
  View view = PrintedView({0, 0, PaperWidth, PaperHeight}, 1, false);
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
  const int last = std::max<int>(LastPageOfPaper(), CurrentPageNumber);
  for (int page = 1; page <= last; ++page)
    if (page == CurrentPageNumber || TheFiles->Exists(PageFileName(CurrentPaperFile, page)))
      job.pages.push_back(page);
  job.paint = PaintSheet;
  return job;
}

}  // namespace

bool PrintToPrinter() {
  return ThePrinter->Print(JobOfPaper());
}

bool PreviewPrint() {
  PrintJob job = JobOfPaper();
  if (job.pages.size() > kMostPreviewed) {
    // Those from the current page on.
    const auto current = std::find(job.pages.begin(), job.pages.end(), job.current);
    const auto first = std::min(current, job.pages.end() - kMostPreviewed);
    job.pages = std::vector<int>(first, first + kMostPreviewed);
    job.title += ", pages " + std::to_string(job.pages.front()) + " to " + std::to_string(job.pages.back());
  }
  ThePrinter->Preview(job);
  return true;
}

}  // namespace kelvane
