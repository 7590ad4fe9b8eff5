#include "document/paper.h"

// The paper's commands. Each changes the state only after its file operations have worked, so that a Failure
// leaves the person with the page, the name and the number they had.

#include <array>
#include <cstdio>

#include "document/fields.h"
#include "document/numbers.h"
#include "document/page.h"
#include "platform/files.h"

namespace kelvane {

std::string CurrentPaperFile;
std::int16_t CurrentPageNumber = 1;
std::int16_t PageChanged = 0;
std::string PaperFolder;

Window* Form1 = nullptr;
TextBox* PageBox = nullptr;

std::function<void()> FinishTyping;
std::function<void()> PageReplaced;

namespace {

// The order of the text lines in a written page. Leaving a page and Save As keep the order of typing, the
// other commands sort by position; papers on disk are told apart by it, so both stay.
enum class Order { AsTyped, ByPosition };

// The page as its file holds it, which tells whether it has changed.
std::string StoredText;
std::string StoredDrawings;

void NotePageStored() {
  StoredText = PageText;
  StoredDrawings = DrawingList;
  PageChanged = 0;
}

void FinishRun() {
  if (FinishTyping) FinishTyping();
}

void ShowPaper() {
  const std::string name =
      CurrentPaperFile.empty() ? std::string() : " " + FileTitleOf(CurrentPaperFile) + " - ";
  if (Form1) Form1->SetTitle(name + kProgramTitle);
  ShowPageNumber();
}

// Whether the page may be written to `file`. `chosen` is what the person chose in a dialog of this command,
// which has asked about replacing it; empty without a dialog.
bool MayWrite(const std::string& file, const std::string& chosen) {
  if (!TheFiles->Exists(file)) return true;
  if (!chosen.empty() && SameFile(file, chosen)) return true;
  if (!CurrentPaperFile.empty() && SameFile(file, CurrentPaperFile)) return true;
  return TheDialogs->Ask("Replace " + MachinePath(file) + "?", false);
}

// Writes the page into the paper that `paperFile` belongs to, which becomes the current one. False if the
// person does not want a file replaced.
bool WriteInto(const std::string& paperFile, const std::string& chosen, Order order) {
  const std::string file = PageFileName(paperFile, CurrentPageNumber);
  if (!MayWrite(file, chosen)) return false;
  if (order == Order::ByPosition) {
    WritePageSorted(file);
  } else {
    WritePagePlain(file);
  }
  CurrentPaperFile = file;
  NotePageStored();
  ShowPaper();
  return true;
}

bool WriteUnderNewName(Order order) {
  const std::string chosen = TheDialogs->ChooseToSave("Save As", kPageFilter, FolderOfPaper());
  return !chosen.empty() && WriteInto(chosen, chosen, order);
}

// Writes the page to its file; a paper without a name gets one first. False if the person cancelled.
bool WriteCurrentPage(Order order) {
  return CurrentPaperFile.empty() ? WriteUnderNewName(order) : WriteInto(CurrentPaperFile, {}, order);
}

bool OfferToSavePage(bool warnOfNoName) {
  if (ThePage.Empty() || PageChanged == 0) return true;
  const Answer answer = TheDialogs->AskBeforeLosing("Would you like to save the current paper.");
  if (answer != Answer::Yes) return answer == Answer::No;
  if (warnOfNoName && CurrentPaperFile.empty())
    TheDialogs->Message("You are about to lose your paper.\r\nSave the current paper.");
  return WriteCurrentPage(Order::ByPosition);
}

// What is in memory is now page `number`, held by `file`.
void ShowOtherPage(const std::string& file, std::int16_t number) {
  CurrentPaperFile = file;
  CurrentPageNumber = number;
  NotePageStored();
  ShowPaper();
  if (PageReplaced) PageReplaced();
}

// Goes to another page of the paper, whose current page is written. One that has no file yet is empty. From
// an empty page forwards it asks first: this is how papers get pages that nobody wanted. False on No.
bool TurnToPage(int number) {
  if (number > CurrentPageNumber && ThePage.Empty() &&
      !TheDialogs->Ask("The current page is empty.\r\nWould you like to proceed anyway?", false)) {
    return false;
  }
  const std::string file = PageFileName(CurrentPaperFile, number);
  if (TheFiles->Exists(file)) {
    ReadPage(file);
  } else {
    ClearPage();
  }
  ShowOtherPage(file, static_cast<std::int16_t>(number));
  return true;
}

bool WriteBeforeTurning() {
  FinishRun();
  return WriteCurrentPage(Order::AsTyped);
}

// Whether `file` is named as a page of its paper, rather than having some other extension or several dots.
bool IsNamedAsPage(const std::string& file) {
  const int number = RoundToInt16(ReadSingle(file.substr(file.rfind('.') + 1)));
  return number >= 1 && number <= kLastPage && file == PageFileName(file, number);
}

void OpenChosen(const std::string& chosen) {
  const std::string firstPage = IsNamedAsPage(chosen) ? PageFileName(chosen, 1) : chosen;
  // A paper may have lost its first page, but a name that leads nowhere is a mistake to be told of.
  if (TheFiles->Exists(firstPage) || !TheFiles->Exists(chosen)) {
    ReadPage(firstPage);
  } else {
    ClearPage();
  }
  if (chosen.find('\\') != std::string::npos) PaperFolder = FolderOf(chosen) + "\\";
  ShowOtherPage(firstPage, 1);
}

}  // namespace

void ResetPaper() {
  ClearPage();
  NotePageStored();
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

std::string FolderOfPaper() {
  return CurrentPaperFile.find('\\') == std::string::npos ? PaperFolder : FolderOf(CurrentPaperFile) + "\\";
}

void NotePageChange() {
  PageChanged = PageText != StoredText || DrawingList != StoredDrawings ? 1 : 0;
}

bool SavePaper() {
  FinishRun();
  return WriteCurrentPage(Order::ByPosition);
}

bool SavePaperAs() {
  FinishRun();
  return WriteUnderNewName(Order::AsTyped);
}

bool NewPaper() {
  FinishRun();
  if (!OfferToSavePage(false)) return false;
  ClearPage();
  ShowOtherPage({}, 1);
  return true;
}

bool OpenPaper() {
  FinishRun();
  if (!OfferToSavePage(true)) return false;
  const std::string folder = PaperFolder.empty() ? FolderOfPaper() : PaperFolder;
  const std::string chosen = TheDialogs->ChooseToOpen("Open", kPageFilter, folder);
  if (chosen.empty()) return false;
  OpenChosen(chosen);
  return true;
}

bool OpenPaperFile(const std::string& chosenFile) {
  FinishRun();
  if (!OfferToSavePage(true)) return false;
  OpenChosen(chosenFile);
  return true;
}

bool PageUp() {
  if (!WriteBeforeTurning()) return false;
  if (CurrentPageNumber > 1) return TurnToPage(CurrentPageNumber - 1);
  TheDialogs->Message("The current page equals 1.");
  return false;
}

bool PageDown() {
  if (!WriteBeforeTurning()) return false;
  if (CurrentPageNumber < kLastPage) return TurnToPage(CurrentPageNumber + 1);
  TheDialogs->Message("Page 999 is the last page of a paper.");
  return false;
}

bool GoToPage(int number) {
  ShowPageNumber();  // first, since the box must not keep a number that could not be reached
  if (number < 1 || number > kLastPage || number == CurrentPageNumber) return false;
  return WriteBeforeTurning() && TurnToPage(number);
}

void ShowPageNumber() {
  if (PageBox) PageBox->SetText(std::to_string(CurrentPageNumber));
}

bool OfferToSave() {
  return OfferToSavePage(false);
}

void StorePageBeforeOutput() {
  FinishRun();
  // Output goes on whatever the answer to a question about replacing a file: it takes what the files hold.
  if (!CurrentPaperFile.empty() && PageChanged != 0) WriteInto(CurrentPaperFile, {}, Order::ByPosition);
}

}  // namespace kelvane
