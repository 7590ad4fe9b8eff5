#include "output/pdf_export.h"

#include <algorithm>
#include <utility>

#include "document/fields.h"
#include "document/page.h"
#include "document/page_items.h"
#include "document/paper.h"
#include "output/page_list.h"
#include "platform/failure.h"
#include "typography/view.h"

namespace kelvane {
namespace {

std::string TitleOfPaper() {
  return CurrentPaperFile.empty() ? std::string() : FileTitleOf(CurrentPaperFile);
}

const std::string& NoPageOfPaper(const std::string& path, const std::vector<int>& pages) {
  for (const int page : pages) {
    if (!CurrentPaperFile.empty() && SameFile(path, PageFileName(CurrentPaperFile, page)))
      throw Failure("The document would replace the page file " + MachinePath(path) + " itself.");
  }
  return path;
}

}  // namespace

std::vector<int> PagesToExport() {
  std::vector<int> pages;
  if (!CurrentPaperFile.empty()) pages = PagesOf(CurrentPaperFile);
  const int current = CurrentPageNumber;
  const auto place = std::ranges::lower_bound(pages, current);
  if (place == pages.end() || *place != current) pages.insert(place, current);
  return pages;
}

PdfExport::PdfExport(const std::string& path, std::vector<int> pages, bool bookmarks)
    : path_(NoPageOfPaper(path, pages)),
      paper_(CurrentPaperFile),
      current_(CurrentPageNumber),
      currentContent_(ContentOfPage(ThePage, PageOrder::ByPosition, CurrentPaperFile)),
      pages_(std::move(pages)),
      file_(path),
      document_([this](std::string_view bytes) { file_.Append(bytes); }, {TitleOfPaper(), bookmarks}) {}

bool PdfExport::Step() {
  if (next_ == pages_.size()) {
    missing_ = document_.Finish();
    file_.PutInPlace();
    return false;
  }
  const int number = pages_[next_];
  const std::string content = ContentOf(number);
  const PageItems items(PageOfContent(content, PageFileName(paper_, number)));
  document_.AddPage(items, {0, 0, PaperWidth, PaperHeight}, number, content);
  ++next_;
  return true;
}

std::string PdfExport::ContentOf(int number) const {
  return number == current_ ? currentContent_ : TheFiles->ReadWhole(PageFileName(paper_, number));
}

}  // namespace kelvane
