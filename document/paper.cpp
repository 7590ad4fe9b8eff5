#include "document/paper.h"

#include <array>
#include <cstdio>
#include <optional>

#include "document/fields.h"
#include "document/numbers.h"
#include "document/page.h"

namespace kelvane {

std::string CurrentPaperFile;
std::int16_t CurrentPageNumber = 1;
PageChangedState PageChanged;
std::string PaperFolder;

namespace {

// The page as its file holds it; none if it is not known to be in a file as it is.
std::optional<Page> StoredPage = Page{};

}  // namespace

PageChangedState::operator std::int16_t() const {
  return StoredPage == ThePage ? 0 : 1;
}

PageChangedState& PageChangedState::operator=(std::int16_t changed) {
  StoredPage = changed == 0 ? std::optional(ThePage) : std::nullopt;
  return *this;
}

void ResetPaper() {
  ClearPage();
  PageChanged = 0;
  CurrentPaperFile.clear();
  CurrentPageNumber = 1;
  PaperFolder.clear();
}

std::string PageFileName(std::int16_t number) {
  return PageFileName(CurrentPaperFile, number);
}

std::string PageFileName(const std::string& paperFile, int number) {
  if (paperFile.empty()) return {};
  std::array<char, 16> extension;  // NUL-terminated
  std::snprintf(extension.data(), extension.size(), "%03d", number);
  return ChangeExtension(paperFile, extension.data());
}

int PageNumberOf(const std::string& file) {
  return RoundToInt16(ReadSingle(file.substr(file.rfind('.') + 1)));
}

std::string FolderOfPaper() {
  return CurrentPaperFile.find('\\') == std::string::npos ? PaperFolder : FolderOf(CurrentPaperFile) + "\\";
}

}  // namespace kelvane
