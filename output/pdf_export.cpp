#include "output/pdf_export.h"

#include <utility>

#include "document/fields.h"
#include "document/page.h"
#include "document/page_items.h"
#include "document/paper.h"
#include "output/page_output.h"
#include "papers/paper_commands.h"
#include "platform/failure.h"
#include "typography/view.h"

namespace kelvane {
namespace {

std::string TitleOfPaper() {
  return CurrentPaperFile.empty() ? std::string() : FileTitleOf(CurrentPaperFile);
}

// The path, once it is known to replace no page.
const std::string& Checked(const std::string& path, const std::vector<int>& pages) {
  KeepPages(path, CurrentPaperFile, pages);
  return path;
}

}  // namespace

PdfExport::PdfExport(const std::string& path, std::vector<int> pages, bool bookmarks)
    : path_(Checked(path, pages)),
      paper_(CurrentPaperFile),
      current_(CurrentPageNumber),
      renumberings_(Renumberings()),
      currentContent_(ContentOfPage(ThePage, PageOrder::ByPosition, CurrentPaperFile)),
      pages_(std::move(pages)),
      file_(path),
      document_([this](std::string_view bytes) { file_.Append(bytes); }, {TitleOfPaper(), bookmarks}) {}

bool PdfExport::Step() {
  // What was written so far and what would follow are no longer one row of pages.
  if (Renumberings() != renumberings_) {
    throw Failure("Pages were inserted, deleted or moved while they were exported. " + MachinePath(path_) +
                  " was not written; export them again.");
  }
  if (next_ == pages_.size()) {
    missing_ = document_.Finish();
    file_.PutInPlace();
    return false;
  }
  const int number = pages_[next_];
  const std::string content = ContentOf(number);
  const PageItems items(PageOfContent(content, PageFileName(paper_, number)));
  document_.AddPage(items, WholeSheet(), number, content);
  ++next_;
  return true;
}

std::string PdfExport::ContentOf(int number) const {
  return number == current_ ? currentContent_ : TheFiles->ReadWhole(PageFileName(paper_, number));
}

}  // namespace kelvane
