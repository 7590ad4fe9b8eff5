#include "papers/paper_commands.h"

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <iterator>
#include <map>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "document/fields.h"
#include "document/lines.h"
#include "document/numbers.h"
#include "document/page.h"
#include "document/paper.h"
#include "document/pdf_pages.h"
#include "editing/bezier.h"
#include "editing/edit.h"
#include "editing/formula_entry.h"
#include "editing/half_done.h"
#include "editing/keyboard.h"
#include "editing/modes.h"
#include "editing/notes.h"
#include "editing/selection.h"
#include "papers/carried_pages.h"
#include "papers/journal.h"
#include "papers/paper_lock.h"
#include "papers/seen_file.h"
#include "papers/versions.h"
#include "platform/failure.h"
#include "platform/files.h"
#include "typography/renderer.h"
#include "typography/zoom.h"

namespace kelvane {

Window* Form1 = nullptr;
TextBox* PageBox = nullptr;
Label* PageCountLabel = nullptr;
std::function<void()> LookAtBoth;
std::function<void()> PaperShown;
FileWatch* PageWatch = nullptr;
std::function<void()> PaperOpened;

namespace {

// The file of the page in memory. Without a path nothing is known of it.
SeenFile Seen;
// What it held when the person was told that another program has changed it.
SeenFile Noticed;
std::string Watched;  // the file that PageWatch is told to watch
// The files of the paper's other pages as they were when the pages were left, by number.
std::map<int, SeenFile> LeftFiles;

// The paper whose pages were counted, and the last one.
std::string CountedPaper;
int LastPage = 0;

int Shown = 0;       // see PagesShown
int Renumbered = 0;  // see Renumberings

// Of the current paper. On the heap, since the files that it needs may be gone before it at the program's
// end.
PaperLock& Held = *new PaperLock;

std::string NameOfPaper() {
  return PageFileName(CurrentPaperFile, 0);
}

void CountPages() {
  CountedPaper = NameOfPaper();
  LastPage = 0;
  if (CurrentPaperFile.empty()) return;
  // The folder is read once, which is quicker than asking for 999 names.
  const std::string folder = CountedPaper.substr(0, CountedPaper.rfind('\\') + 1);
  for (const std::string& name : TheFiles->FilesIn(folder)) {
    const std::string file = folder + name;
    const int number = file.size() == CountedPaper.size() ? PageNumberOf(file) : 0;
    if (number > LastPage && number <= kLastPage && file == PageFileName(CurrentPaperFile, number))
      LastPage = number;
  }
  if (LastPage != 0) return;
  // The paper may have no file yet, or lie in a folder that the person may use and not read.
  LastPage = kLastPage;
  while (LastPage > 0 && !TheFiles->Exists(PageFileName(CurrentPaperFile, LastPage))) --LastPage;
}

void ShowPaper() {
  ShowPaperState();
  ShowPageNumber();
}

// A page file's content, taken apart, and the file as it was seen.
struct LoadedPage {
  Page page;
  SeenFile seen;
};

LoadedPage LoadPage(const std::string& file) {
  const std::string content = TheFiles->ReadWhole(file);
  return {PageOfContent(content, file), SeenWith(file, content)};
}

LoadedPage LoadPageOrEmpty(const std::string& file) {
  return TheFiles->Exists(file) ? LoadPage(file) : LoadedPage{Page{}, SeenMissing(file)};
}

// Whether the file holds the page in memory. One that was there and is gone leaves the page without a file.
bool IsStored() {
  if (PageChanged != 0) return false;
  return ThePage.Empty() || !Seen.there || Seen.path != CurrentPaperFile || TheFiles->Exists(Seen.path);
}

enum class Verdict { Write, SaveAs, GiveUp };

Verdict AskAboutChanged(const std::string& file) {
  switch (TheDialogs->Choose(
      MachinePath(file) + " was changed by another program.\nReplace it with the page as it is here?",
      {"&Replace", "&Save As", "&Look at Both", "&Take the Other", "&Cancel"}, 4, 4)) {
    case 0:
      return Verdict::Write;
    case 1:
      return Verdict::SaveAs;
    case 2:
      LookAtBoth();
      return Verdict::GiveUp;
    case 3:
      TakePageFile();
      return Verdict::GiveUp;
    default:
      return Verdict::GiveUp;
  }
}

// Whether the page may be written to `file`. `chosen` is what the person chose in a dialog of this command,
// which has asked about replacing it; empty without a dialog.
Verdict MayWrite(const std::string& file, const std::string& chosen) {
  if (!TheFiles->Exists(file)) return Verdict::Write;
  if (!chosen.empty() && SameFile(file, chosen)) return Verdict::Write;
  if (!CurrentPaperFile.empty() && SameFile(file, CurrentPaperFile)) {
    if (Seen.path != CurrentPaperFile || LookAt(CurrentPaperFile) == Seen) return Verdict::Write;
    if (Seen.there) return AskAboutChanged(file);
  }
  return TheDialogs->Ask("Replace " + MachinePath(file) + "?", false) ? Verdict::Write : Verdict::GiveUp;
}

bool WriteUnderNewName(PageOrder order, const std::string& why = {});

constexpr char kOpenElsewhere[] = " is open in another window of Kelvane";

// The lock of a paper that is about to be opened; nothing if the person gave it up.
std::optional<PaperLock> AskForPaper(const std::string& file) {
  if (std::optional<PaperLock> lock = PaperLock::Try(file)) return lock;
  switch (TheDialogs->Choose(MachinePath(file) + kOpenElsewhere +
                                 ".\nYou can look at it here, or take it over: the other window then saves "
                                 "under another name only.",
                             {"&Look", "&Take Over", "&Cancel"}, 0, 2)) {
    case 0:
      return PaperLock::ToLook(file);
    case 1:
      return PaperLock::TakeOver(file);
    default:
      return {};
  }
}

// Why the current paper's own files may not be written; empty if they may.
std::string WhyNotWritable() {
  if (Held.MayWrite()) return {};
  // Whoever took it over may have left it since; what they did to its files is seen in the files.
  if (!Held.Looking()) {
    if (std::optional<PaperLock> lock = PaperLock::Try(CurrentPaperFile)) {
      Held = std::move(*lock);
      return {};
    }
  }
  return Held.Looking() ? "Only looked at here" : "Taken over by another window";
}

void TellIfNotWritable() {
  const std::string why = WhyNotWritable();
  if (!why.empty()) ShowNote(why + ": Save asks for another name");
}

// Writes the page into the paper that `paperFile` belongs to, which becomes the current one.
bool WriteInto(const std::string& paperFile, const std::string& chosen, PageOrder order) {
  const std::string file = PageFileName(paperFile, CurrentPageNumber);
  if (FileTitleOf(file).empty()) {
    throw Failure("The page was not saved: " + MachinePath(paperFile) +
                  " has nothing before the dot. A paper needs a name; the page number stands behind it.");
  }
  if (file == CurrentPaperFile && chosen.empty()) {
    const std::string why = WhyNotWritable();
    if (!why.empty()) return WriteUnderNewName(order, why);
  }
  std::optional<PaperLock> other;  // of the paper that the page goes to, if it is not the current one
  if (!Held.IsOf(file) || !Held.MayWrite()) {
    other = PaperLock::Try(file);
    if (!other) throw Failure("The page was not saved: " + MachinePath(file) + kOpenElsewhere + ".");
  }
  const Verdict verdict = MayWrite(file, chosen);
  if (verdict == Verdict::SaveAs) return WriteUnderNewName(order);
  if (verdict == Verdict::GiveUp) return false;
  const std::string content = ContentOfPage(ThePage, order, file);
  KeepReplaced(file, content);
  WriteFileSafely(file, content);
  if (other) Held = std::move(*other);
  CurrentPaperFile = file;
  Seen = SeenWith(file, content);
  PageChanged = 0;
  NoteFileOfPage(Seen, CurrentPageNumber, true);
  if (CountedPaper == NameOfPaper()) LastPage = std::max<int>(LastPage, CurrentPageNumber);
  ShowPaper();
  if (!VersionsTrouble().empty()) ShowNote(VersionsTrouble());
  return true;
}

bool WriteUnderNewName(PageOrder order, const std::string& why) {
  const std::string title = "Save As" + (why.empty() ? "" : " - " + why);
  const std::string chosen = TheDialogs->ChooseToSave(title, kPageFilter, FolderOfPaper());
  return !chosen.empty() && WriteInto(chosen, chosen, order);
}

// Writes the page to its file; a paper without a name gets one first.
bool WriteCurrentPage(PageOrder order) {
  return CurrentPaperFile.empty() ? WriteUnderNewName(order) : WriteInto(CurrentPaperFile, {}, order);
}

bool OfferToSavePage(bool warnOfNoName) {
  if (ThePage.Empty() || IsStored()) return true;
  const Answer answer = TheDialogs->AskBeforeLosing("Would you like to save the current paper.");
  if (answer != Answer::Yes) return answer == Answer::No;
  if (warnOfNoName && CurrentPaperFile.empty())
    TheDialogs->Message("You are about to lose your paper.\r\nSave the current paper.");
  return WriteCurrentPage(PageOrder::ByPosition);
}

// Takes a page into memory as page `number`, in the place of the one that is there.
void TakePage(LoadedPage loaded, int number) {
  ++Shown;
  ClearMarkedBox();  // items of another page are others, whatever stands in their place
  ClearPage();
  ThePage = std::move(loaded.page);
  Seen = std::move(loaded.seen);
  CurrentPaperFile = Seen.path;
  CurrentPageNumber = static_cast<std::int16_t>(number);
  const auto left = LeftFiles.find(number);
  TakeUpEdits(number, left != LeftFiles.end() && left->second == Seen);
  PageChanged = 0;
  BeginJournalOfPage(Seen, number);
  ShowPaper();
  ShowTopOfPage();
  ShowPage();  // all of it: what the page before has left in view is not this one's
  ShowCursor();
}

void ShowOtherPage(LoadedPage loaded, int number) {
  KeepEdits(CurrentPageNumber);
  LeftFiles[CurrentPageNumber] = Seen;
  TakePage(std::move(loaded), number);
}

void ShowOtherPaper(LoadedPage loaded, PaperLock lock, int number = 1) {
  Held = std::move(lock);
  LeftFiles.clear();
  ResetEdits();
  CountedPaper.clear();
  LastPage = 0;
  TakePage(std::move(loaded), number);
}

// Gives the paper a name, which writes the page, if it has none. Going from page to page needs one.
bool NamePaper() {
  return !CurrentPaperFile.empty() || WriteUnderNewName(PageOrder::AsTyped);
}

// Writes the page, in the order of typing, if its file does not hold it. `forwards`: a page that has no file
// gets one even if it is empty, for the row of pages goes on behind it.
bool StoreBeforeTurning(bool forwards) {
  const bool madeNow = forwards && Held.MayWrite() && !TheFiles->Exists(CurrentPaperFile);
  return (!madeNow && IsStored()) || WriteInto(CurrentPaperFile, {}, PageOrder::AsTyped);
}

// Goes to another page of the paper. One that has no file yet is empty. From an empty page forwards it asks
// first: this is how papers get pages that nobody wanted.
bool TurnToPage(int number) {
  if (!NamePaper()) return false;
  const bool forwards = number > CurrentPageNumber;
  if (forwards && ThePage.Empty() &&
      !TheDialogs->Ask("The current page is empty.\r\nWould you like to proceed anyway?", false)) {
    return false;
  }
  // A page that was saved under another name on leaving stays there; the way goes on in this paper.
  const std::string file = PageFileName(CurrentPaperFile, number);
  if (!StoreBeforeTurning(forwards)) return false;
  ShowOtherPage(LoadPageOrEmpty(file), number);
  return true;
}

// Tells that there is no page in that direction, once the page is safe.
bool StayAtTheEnd(bool forwards, const char* message) {
  if (NamePaper() && StoreBeforeTurning(forwards)) TheDialogs->Message(message);
  return false;
}

// Whether `file` is named as a page of its paper, rather than having some other extension or several dots.
bool IsNamedAsPage(const std::string& file) {
  const int number = PageNumberOf(file);
  return number >= 1 && number <= kLastPage && file == PageFileName(file, number);
}

bool Draws(const Page& page) {
  if (page.drawingCount > 0) return true;
  TextEntry entry;
  for (std::string_view rest = page.text; !rest.empty();) {
    if (ParseTextEntry(TakeLine(rest), entry)) return true;
  }
  return false;
}

bool IsPdf(const std::string& file) {
  std::string ending = file.substr(std::min(file.rfind('.'), file.size()));
  for (char& c : ending) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return ending == ".pdf";
}

// A document's single page becomes one without a name. Several pages are only in files, so the person is
// asked for a name for them.
bool OpenPdf(const std::string& chosen) {
  const std::vector<CarriedPage> pages = PagesInPdf(TheFiles->ReadWhole(chosen), chosen);
  if (pages.empty()) {
    throw Failure(MachinePath(chosen) +
                  " carries no pages of Kelvane. Only a PDF that Kelvane has exported can be opened.");
  }
  // All are read before one is written.
  LoadedPage first;
  for (const CarriedPage& page : pages) {
    Page read = PageOfContent(page.content, chosen);
    if (&page == &pages.front()) first.page = std::move(read);
  }
  if (pages.size() == 1) {
    ShowOtherPaper(std::move(first), {});
    return true;
  }
  const std::string name = TheDialogs->ChooseToSave(
      "Save the " + std::to_string(pages.size()) + " Pages of the PDF As", kPageFilter, FolderOf(chosen));
  if (name.empty()) return false;
  const std::string firstFile = PageFileName(name, pages.front().number);
  std::optional<PaperLock> lock = AskForPaper(firstFile);
  if (!lock) return false;
  WriteCarriedPages(pages, name);
  first.seen = SeenWith(firstFile, pages.front().content);
  PaperFolder = FolderOf(firstFile) + "\\";
  ShowOtherPaper(std::move(first), std::move(*lock), pages.front().number);
  return true;
}

bool OpenChosen(const std::string& chosen) {
  if (IsPdf(chosen)) return OpenPdf(chosen);
  const std::string firstPage = IsNamedAsPage(chosen) ? PageFileName(chosen, 1) : chosen;
  // A paper may have lost its first page, but a name that leads nowhere is a mistake to be told of.
  LoadedPage loaded = TheFiles->Exists(chosen) ? LoadPageOrEmpty(firstPage) : LoadPage(firstPage);
  // Any text file can be read as a page of lines that draw nothing.
  if (!loaded.page.Empty() && !Draws(loaded.page) &&
      !TheDialogs->Ask(MachinePath(firstPage) +
                           " does not hold a page of Kelvane: none of its lines draws. Open it anyway?",
                       false)) {
    return false;
  }
  // Opened again, it is let go first.
  const bool again = Held.IsOf(firstPage) && Held.MayWrite();
  std::optional<PaperLock> lock = again ? std::optional(std::move(Held)) : AskForPaper(firstPage);
  if (!lock) return false;
  if (chosen.find('\\') != std::string::npos) PaperFolder = FolderOf(chosen) + "\\";
  ShowOtherPaper(std::move(loaded), std::move(*lock));
  TellIfNotWritable();
  if (PaperOpened) PaperOpened();
  return true;
}

}  // namespace

void ResetPaperCommands() {
  PageWatch = nullptr;
  Watched.clear();
  Seen = Noticed = {};
  Held.Forget();
  Held = {};
  LeftFiles.clear();
  CountedPaper.clear();
  LastPage = 0;
}

bool SavePaper() {
  FinishEditing();
  return WriteCurrentPage(PageOrder::ByPosition);
}

bool SavePaperAs() {
  FinishEditing();
  return WriteUnderNewName(PageOrder::AsTyped);
}

bool NewPaper() {
  FinishEditing();
  if (!OfferToSavePage(false)) return false;
  ShowOtherPaper({}, {});
  return true;
}

bool OpenPaper() {
  FinishEditing();
  if (!OfferToSavePage(true)) return false;
  const std::string folder = PaperFolder.empty() ? FolderOfPaper() : PaperFolder;
  const std::string chosen = TheDialogs->ChooseToOpen("Open", kOpenFilter, folder);
  return !chosen.empty() && OpenChosen(chosen);
}

bool OpenPaperFile(const std::string& chosenFile) {
  FinishEditing();
  return OfferToSavePage(true) && OpenChosen(chosenFile);
}

bool OpenCopyOf(const std::string& pageFile) {
  FinishEditing();
  if (!OfferToSavePage(true)) return false;
  LoadedPage loaded = LoadPage(pageFile);
  loaded.seen = {};
  ShowOtherPage(std::move(loaded), 1);
  Held = {};
  return true;
}

bool OpenRecovered(RecoveredPage recovered) {
  FinishEditing();
  if (!OfferToSavePage(true)) return false;
  std::optional<PaperLock> lock = PaperLock();
  if (!recovered.file.path.empty() && !(Held.IsOf(recovered.file.path) && Held.MayWrite())) {
    lock = AskForPaper(recovered.file.path);
    if (!lock) return false;
  } else if (!recovered.file.path.empty()) {
    lock = std::move(Held);
  }
  ShowOtherPaper({recovered.stored.value_or(Page{}), std::move(recovered.file)}, std::move(*lock),
                 recovered.number);
  if (!recovered.stored) PageChanged = 1;
  RestoreEdits(std::move(recovered.page), std::move(recovered.steps), recovered.half.placeChosen);
  TakeUp(recovered.half);
  ++Shown;
  ShowPage();
  ShowPaper();
  TellIfNotWritable();
  return true;
}

void ReleasePaper() {
  Held = {};
}

bool PageUp() {
  FinishEditing();
  if (CurrentPageNumber == 1) return StayAtTheEnd(false, "The current page equals 1.");
  return TurnToPage(CurrentPageNumber - 1);
}

bool PageDown() {
  FinishEditing();
  if (CurrentPageNumber == kLastPage) return StayAtTheEnd(true, "Page 999 is the last page of a paper.");
  if (!TurnToPage(CurrentPageNumber + 1)) return false;
  if (!Seen.there) ShowNote("Page " + std::to_string(CurrentPageNumber) + " is new");
  return true;
}

bool GoToPage(int number) {
  ShowPageNumber();  // first, since the box must not keep a number that could not be reached
  if (number < 1 || number > kLastPage || number == CurrentPageNumber) return false;
  FinishEditing();
  return TurnToPage(number);
}

int LastPageOfPaper() {
  if (CountedPaper != NameOfPaper()) CountPages();
  return LastPage;
}

int LastPageSeen() {
  const auto behind = LeftFiles.upper_bound(kLastPage);
  const int left = behind == LeftFiles.begin() ? 0 : std::prev(behind)->first;
  return std::max({left, LastPageOfPaper(), static_cast<int>(CurrentPageNumber)});
}

int PagesShown() {
  return Shown;
}

int Renumberings() {
  return Renumbered;
}

bool StorePageOfPaper() {
  FinishEditing();
  if (!NamePaper()) return false;
  if (!Held.MayWrite())
    throw Failure("The pages of this paper cannot be changed here: " + MachinePath(CurrentPaperFile) +
                  kOpenElsewhere + ".");
  const std::string paper = NameOfPaper();
  return StoreBeforeTurning(false) && NameOfPaper() == paper;  // not if it went to another paper
}

void ShowPageOfPaper(int number) {
  if (number == CurrentPageNumber) return;
  ShowOtherPage(LoadPageOrEmpty(PageFileName(CurrentPaperFile, number)), number);
}

void RenumberPages(const std::function<int(int)>& numberOf) {
  std::map<int, SeenFile> renumbered;
  for (auto& [number, seen] : LeftFiles) {
    SeenFile& moved = renumbered[numberOf(number)] = std::move(seen);
    moved.path = PageFileName(CurrentPaperFile, numberOf(number));
  }
  LeftFiles = std::move(renumbered);
  RenumberVersions(CurrentPaperFile, numberOf);
  ++Shown;
  ++Renumbered;
  RenumberEdits(numberOf);
  CurrentPageNumber = static_cast<std::int16_t>(numberOf(CurrentPageNumber));
  CurrentPaperFile = Seen.path = PageFileName(CurrentPaperFile, CurrentPageNumber);
  NoteFileOfPage(Seen, CurrentPageNumber, false);
  CountPages();
  ShowPaper();
}

bool PageFileIsOther() {
  return !CurrentPaperFile.empty() && Seen.path == CurrentPaperFile && LookAt(CurrentPaperFile) != Seen;
}

void TakePageFile() {
  FinishEditing();
  LoadedPage loaded = LoadPage(CurrentPaperFile);
  EditPage("the other program's change", [&loaded](Page& page) { page = std::move(loaded.page); });
  Seen = std::move(loaded.seen);
  PageChanged = 0;
  NoteFileOfPage(Seen, CurrentPageNumber, true);
  ShowPaper();
}

void FollowPageFile() {
  if (CurrentPaperFile.empty() || Seen.path != CurrentPaperFile) return;
  try {
    const SeenFile now = LookAt(CurrentPaperFile);
    if (now == Seen || now == Noticed) return;
    Noticed = now;
    if (!now.there) return ShowNote("The file of this page has gone; Save makes it anew");
    if (PageChanged != 0 || RunIsOpen() || FormulaIsOpen() || PathIsOpen())
      return ShowNote("Another program changed the file; Save will ask");
    TakePageFile();
    ShowNote("Changed by another program, read again; or Undo");
  } catch (const Failure& failure) {
    // Nobody has asked for it, so no box is to come up in the middle of something.
    ShowNote(std::string("Another program changed the file: ") + failure.what());
  }
}

bool OfferToSave() {
  return OfferToSavePage(false);
}

bool StorePageBeforeOutput() {
  FinishEditing();
  if (!CurrentPaperFile.empty()) return IsStored() || WriteInto(CurrentPaperFile, {}, PageOrder::ByPosition);
  if (ThePage.Empty()) return true;
  // Output takes what the files hold, and this page is in none.
  const Answer answer = TheDialogs->AskBeforeLosing("The page has no name yet. Save it first?");
  if (answer != Answer::Yes) return answer == Answer::No;
  return WriteUnderNewName(PageOrder::ByPosition);
}

void ShowPaperState() {
  if (!Form1) return;
  const std::string name =
      CurrentPaperFile.empty() ? std::string() : " " + FileTitleOf(CurrentPaperFile) + " - ";
  Form1->SetTitle(name + kProgramTitle);
  Form1->SetChanged(PageChanged != 0);
  if (PageWatch && Watched != CurrentPaperFile) PageWatch->Watch(Watched = CurrentPaperFile);
  if (PaperShown) PaperShown();
}

void ShowPageNumber() {
  if (PageBox) PageBox->SetText(std::to_string(CurrentPageNumber));
  if (PageCountLabel)
    PageCountLabel->SetText("of " + std::to_string(std::max<int>(LastPageOfPaper(), CurrentPageNumber)));
}

}  // namespace kelvane
