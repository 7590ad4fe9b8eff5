#include "papers/page_operations.h"

#include <algorithm>
#include <optional>
#include <utility>
#include <vector>

#include "document/fields.h"
#include "document/numbers.h"
#include "document/paper.h"
#include "editing/edit.h"
#include "editing/notes.h"
#include "papers/journal.h"
#include "papers/paper_commands.h"
#include "papers/versions.h"
#include "platform/controls.h"
#include "platform/failure.h"
#include "platform/files.h"

namespace kelvane {

namespace {

enum class Kind { Insert, Remove, Move };

struct Operation {
  Kind kind = Kind::Insert;
  int page = 0;  // that is inserted, removed or moved
  int to = 0;    // where it is moved; which page is shown when it is removed, 0 for the one in its place
  // What its file holds when it is inserted, or held when it was inserted before; none for no file.
  std::optional<std::string> content = {};
  int keptAs = 0;  // the number by which the steps of a page that was removed are kept
  std::string label = {};
  int edits = 0;  // EditsMade at its end
};

// Numbers that no page can have, for what is known of pages that were removed.
constexpr int kFirstKept = 2000;

std::vector<Operation> Done;
std::vector<Operation> Undone;
std::string PaperOfThem;
int Kept = kFirstKept;

std::string FileOf(int page) {
  return PageFileName(CurrentPaperFile, page);
}

std::optional<std::string> ContentOfFile(int page) {
  return TheFiles->Exists(FileOf(page)) ? std::optional(TheFiles->ReadWhole(FileOf(page))) : std::nullopt;
}

// Pages that take other numbers, one after the other; each number is free when it is taken.
using Renamings = std::vector<std::pair<int, int>>;

void RenameFile(int from, int to) {
  if (!TheFiles->Exists(FileOf(from))) return;
  if (TheFiles->Exists(FileOf(to)))
    throw Failure("Cannot rename " + MachinePath(FileOf(from)) + ": there is " + MachinePath(FileOf(to)) +
                  ".");
  TheFiles->Rename(FileOf(from), FileOf(to));
}

void FollowRenamings(const Renamings& renamings) {
  RenumberPages([&renamings](int number) {
    for (const auto& [from, to] : renamings)
      if (number == from) number = to;
    return number;
  });
}

void RenamePages(const Renamings& renamings) {
  FlushJournal();
  Renamings done;
  try {
    for (const auto& [from, to] : renamings) {
      RenameFile(from, to);
      done.emplace_back(from, to);
    }
  } catch (const Failure& failure) {
    const std::string reason = failure.what();
    try {
      for (; !done.empty(); done.pop_back()) RenameFile(done.back().second, done.back().first);
    } catch (const Failure&) {
      // Where the pages are now is what counts, and the first failure is the one to hear of.
      FollowRenamings(done);
      throw Failure(reason + "\nSome pages of the paper have other numbers now; all of them are there.");
    }
    throw Failure(reason + "\nThe pages are as they were.");
  }
  FollowRenamings(renamings);
}

Renamings MakingRoom(int page) {
  Renamings renamings;
  for (int number = LastPageSeen(); number >= page; --number) renamings.emplace_back(number, number + 1);
  return renamings;
}

// Takes a page out by way of the first number behind the paper, and closes or shifts the gap up to `to`.
Renamings Taking(int page, int to) {
  Renamings renamings = {{page, std::max({LastPageSeen(), page, to}) + 1}};
  const int step = to > page ? 1 : -1;
  for (int number = page; number != to; number += step) renamings.emplace_back(number + step, number);
  return renamings;
}

void CheckRoom(int page) {
  if (std::max(page, MostPageNumber() + (page <= MostPageNumber() ? 1 : 0)) > kLastPage)
    throw Failure("There is no room for another page: a paper has 999 at most.");
}

Operation Insert(const Operation& operation) {
  const int page = operation.page;
  CheckRoom(page);
  const int shown = CurrentPageNumber;
  const Renamings room = MakingRoom(page);
  RenamePages(room);
  if (operation.content) {
    try {
      WriteFileSafely(FileOf(page), *operation.content);
    } catch (const Failure&) {  // no gap where no page came
      Renamings back;
      for (const auto& [from, to] : room) back.insert(back.begin(), {to, from});
      RenamePages(back);
      throw;
    }
  }
  RenumberPages([&operation](int number) { return number == operation.keptAs ? operation.page : number; });
  ShowPageOfPaper(page);
  return {Kind::Remove, page, shown, operation.content};
}

Operation Remove(const Operation& operation) {
  const int page = operation.page;
  // An inserted page that was left empty may be none any more.
  const int most = std::max(MostPageNumber(), page);
  const int last = std::max(LastPageSeen(), page);
  Operation inverse = {Kind::Insert, page, 0, ContentOfFile(page), ++Kept};
  RenamePages(Taking(page, last));
  ShowPageOfPaper(std::clamp(operation.to > 0 ? operation.to : page, 1, std::max(most - 1, 1)));
  // Only now that all others are in their places. If it fails, the page is the last one of the paper.
  if (inverse.content) {
    KeepRemoved(FileOf(page), *inverse.content);
    if (!VersionsTrouble().empty()) ShowNote(VersionsTrouble());
    TheFiles->Remove(FileOf(last + 1));
  }
  RenumberPages([&](int number) { return number == last + 1 ? inverse.keptAs : number; });
  return inverse;
}

Operation Move(const Operation& operation) {
  Renamings renamings = Taking(operation.page, operation.to);
  renamings.emplace_back(renamings.front().second, operation.to);
  RenamePages(renamings);
  ShowPageOfPaper(operation.to);
  return {Kind::Move, operation.to, operation.page};
}

// Does it and returns what takes it back.
Operation Perform(const Operation& operation) {
  Operation inverse = operation.kind == Kind::Insert   ? Insert(operation)
                      : operation.kind == Kind::Remove ? Remove(operation)
                                                       : Move(operation);
  inverse.label = operation.label;
  inverse.edits = EditsMade();
  return inverse;
}

bool OfThisPaper() {
  return !PaperOfThem.empty() && PaperOfThem == FileOf(0);
}

// To be called with the current page stored.
bool Do(const Operation& operation) {
  Operation inverse = Perform(operation);
  if (!OfThisPaper()) Done.clear();
  PaperOfThem = FileOf(0);
  Undone.clear();
  Done.push_back(std::move(inverse));
  return true;
}

std::string PagesNamed(int from, int to) {
  return from == to ? "page " + std::to_string(from)
                    : "pages " + std::to_string(from) + " to " + std::to_string(to);
}

// "Page 3 becomes page 4." for the pages from `from` to `to` that get numbers `by` higher.
std::string Renumbering(int from, int to, int by) {
  std::string text =
      PagesNamed(from, to) + (from == to ? " becomes " : " become ") + PagesNamed(from + by, to + by) + ".";
  text.front() = 'P';
  return text;
}

// "Page 3 becomes page 4." for the pages from `from` to the last one that get numbers `by` higher; empty if
// there are none. A blank stands behind it.
std::string RenumberingFrom(int from, int by) {
  const int last = MostPageNumber();
  return from > last ? "" : Renumbering(from, last, by) + " ";
}

// Asks about what is not lost: undo takes it back, so Enter goes on.
bool AskKeeping(const std::string& what, const std::string& renumbering) {
  return TheDialogs->Ask(what + "?\r\n" + renumbering + "Undo takes it back as long as the paper is open.",
                         true);
}

bool MayInsert(const std::string& what, int page) {
  CheckRoom(page);
  return AskKeeping(what, RenumberingFrom(page, 1));
}

bool HasContent(int page) {
  return !ContentOfFile(page).value_or("").empty();
}

PageStep Top(const std::vector<Operation>& steps) {
  if (!OfThisPaper() || steps.empty()) return {};
  return {steps.back().label, steps.back().edits == EditsMade()};
}

bool TakeOperation(std::vector<Operation>& from, std::vector<Operation>& to) {
  if (Top(from).label.empty() || !StorePageOfPaper()) return false;
  const Operation& operation = from.back();
  if (operation.kind == Kind::Remove && ContentOfFile(operation.page) != operation.content &&
      !TheDialogs->Ask("Page " + std::to_string(operation.page) +
                           " has changed since it was inserted. Take it away all the same?",
                       false)) {
    return false;
  }
  Operation inverse = Perform(operation);
  from.pop_back();
  to.push_back(std::move(inverse));
  return true;
}

}  // namespace

void ResetPageOperations() {
  Done.clear();
  Undone.clear();
  PaperOfThem.clear();
}

int MostPageNumber() {
  return std::max<int>(LastPageOfPaper(), CurrentPageNumber);
}

bool InsertPageAt(int page) {
  return StorePageOfPaper() && MayInsert("Insert an empty page " + std::to_string(page), page) &&
         Do({.kind = Kind::Insert,
             .page = page,
             // A paper is found by its first page, so that one has a file even while it is empty.
             .content = page == 1 ? std::optional(std::string()) : std::nullopt,
             .label = "insert page"});
}

bool DuplicatePageAt(int page) {
  return StorePageOfPaper() && MayInsert("Duplicate page " + std::to_string(page), page + 1) &&
         Do({.kind = Kind::Insert,
             .page = page + 1,
             .content = ContentOfFile(page),
             .label = "duplicate page"});
}

bool DeletePageAt(int page) {
  if (!StorePageOfPaper()) return false;
  const std::string number = std::to_string(page);
  const std::string what = "Delete page " + number + " of " + FileTitleOf(CurrentPaperFile);
  const std::string renumbering = RenumberingFrom(page + 1, -1);
  const bool agreed =
      HasContent(page)
          ? TheDialogs->Ask(
                what + "?\r\nIts file is removed. " + renumbering +
                    "Undo brings it back as long as the paper is open, and File, Versions later on.",
                false)
          : AskKeeping(what, renumbering);
  return agreed && Do({.kind = Kind::Remove, .page = page, .label = "delete page " + number});
}

bool BringPageBack(int number, const std::string& content) {
  if (!StorePageOfPaper()) return false;
  const int page = std::clamp(number, 1, MostPageNumber() + 1);
  return MayInsert("Bring page " + std::to_string(page) + " back", page) &&
         Do({.kind = Kind::Insert, .page = page, .content = content, .label = "bring page back"});
}

bool MovePageTo(int page, int to) {
  if (page == to || !StorePageOfPaper()) return false;
  const std::string others = to > page ? Renumbering(page + 1, to, -1) : Renumbering(to, page - 1, 1);
  return AskKeeping("Move page " + std::to_string(page) + " to number " + std::to_string(to), others + " ") &&
         Do({.kind = Kind::Move, .page = page, .to = to, .label = "move page"});
}

bool InsertPageBefore() {
  return InsertPageAt(CurrentPageNumber);
}

bool InsertPageAfter() {
  return InsertPageAt(CurrentPageNumber + 1);
}

bool DuplicatePage() {
  return DuplicatePageAt(CurrentPageNumber);
}

bool DeletePage() {
  return DeletePageAt(CurrentPageNumber);
}

bool MovePageEarlier() {
  return MovePageTo(CurrentPageNumber, CurrentPageNumber - 1);
}

bool MovePageLater() {
  return MovePageTo(CurrentPageNumber, CurrentPageNumber + 1);
}

bool MovePageToNumber(int page) {
  const int last = MostPageNumber();
  const auto refusal = [&](const std::string& text) {
    if (CountOf(text) >= 1 && CountOf(text) <= last) return std::string();
    return "A number from 1 to " + std::to_string(last) + " is needed";
  };
  const auto entered = TheDialogs->AskText("Move Page", "New number of page " + std::to_string(page),
                                           std::to_string(page), refusal);
  return entered && MovePageTo(page, CountOf(*entered));
}

bool CanMovePages() {
  return MostPageNumber() > 1;
}

bool CanMovePageEarlier() {
  return CurrentPageNumber > 1;
}

bool CanMovePageLater() {
  return CurrentPageNumber < LastPageOfPaper();
}

PageStep PageStepBack() {
  return Top(Done);
}

PageStep PageStepForward() {
  return Top(Undone);
}

bool UndoPageOperation() {
  return TakeOperation(Done, Undone);
}

bool RedoPageOperation() {
  return TakeOperation(Undone, Done);
}

}  // namespace kelvane
