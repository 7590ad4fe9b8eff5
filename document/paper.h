#pragma once

// A paper is a row of page files, name and three-digit number; only the current page is in memory. Here is
// which paper and page that are; the commands that change it are in papers/.

#include <cstdint>
#include <string>

namespace kelvane {

// Full path of the current page's file; empty while the paper has no name.
extern std::string CurrentPaperFile;
// Counts from 1.
extern std::int16_t CurrentPageNumber;
// Where Open starts: the folder of the last paper opened; settings key PDIR.
extern std::string PaperFolder;

inline constexpr int kLastPage = 999;  // what three digits of the extension can name

// Whether the page differs from what its file holds, as 1 or 0. It is found by comparing, so no edit has to
// tell of itself. Assigning 0 says that the file holds the page as it is now, any other number that it does
// not, whatever the page becomes.
class PageChangedState {
 public:
  operator std::int16_t() const;
  PageChangedState& operator=(std::int16_t changed);
};
extern PageChangedState PageChanged;

// No paper, an empty page, start values.
void ResetPaper();

// Page file of page `number` of the current paper; empty while the paper has no name.
std::string PageFileName(std::int16_t number);
std::string PageFileName(const std::string& paperFile, int number);
// The number that the extension of a file names; 0 if that is no number.
int PageNumberOf(const std::string& file);

// Where the other file dialogs start: the folder of the current paper, PaperFolder while it has no name.
std::string FolderOfPaper();

}  // namespace kelvane
