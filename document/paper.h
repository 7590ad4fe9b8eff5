#pragma once

// A paper is a row of page files, name and three-digit number; only the current page is in memory.

#include <cstdint>
#include <functional>
#include <string>

#include "platform/controls.h"

namespace kelvane {

// Full path of the current page's file; empty while the paper has no name.
extern std::string CurrentPaperFile;
// Counts from 1.
extern std::int16_t CurrentPageNumber;
// Not 0 while the page differs from what its file holds.
extern std::int16_t PageChanged;
// Where Open starts: the folder of the last paper opened; settings key PDIR.
extern std::string PaperFolder;

inline constexpr int kLastPage = 999;  // what three digits of the extension can name

// The window whose title names the paper, and the box that shows the page number.
extern Window* Form1;
extern TextBox* PageBox;

// Filled at start-up: completing a run being typed, and showing a page that was put in place of another.
extern std::function<void()> FinishTyping;
extern std::function<void()> PageReplaced;

inline constexpr char kProgramTitle[] = "Kelvane ver 1.7";
inline constexpr char kPageFilter[] = "*.001|*.001";

void ResetPaper();

// Page file of page `number` of the current paper; empty while the paper has no name.
std::string PageFileName(std::int16_t number);
std::string PageFileName(const std::string& paperFile, int number);

// Where the other file dialogs start: the folder of the current paper, PaperFolder while it has no name.
std::string FolderOfPaper();

// Sets PageChanged by comparing the page with what was last read or written.
void NotePageChange();

// The menu and button commands. They throw Failure when a file cannot be read or written; page, name and
// number are then as they were. They return false if the person cancelled, PageUp and PageDown also if there
// is no page to go to; only a command that returned true brings another page into memory.
bool SavePaper();
bool SavePaperAs();
bool NewPaper();
bool OpenPaper();
bool OpenPaperFile(const std::string& chosenFile);
bool PageUp();
bool PageDown();
// Goes to a page as "Pg Up" and "Pg Dn" do, in one step. Outside 1 to 999, or to the current page, it only
// shows the current number again.
bool GoToPage(int number);

// Shows the current page number in the page box.
void ShowPageNumber();

// Asks whether to save a changed page that is not empty, and saves it; false if the command must be given up.
bool OfferToSave();
// The first step of printing and plain-text output: completes the run being typed and writes a changed page
// of a named paper to its own file.
void StorePageBeforeOutput();

}  // namespace kelvane
