#include "papers/recovery.h"

#include <algorithm>
#include <tuple>
#include <utility>
#include <variant>

#include "document/fields.h"
#include "document/page_items.h"
#include "editing/placed_formulas.h"
#include "formula/formula.h"
#include "papers/journal.h"
#include "papers/paper_commands.h"
#include "platform/checksum.h"
#include "platform/failure.h"
#include "platform/if_possible.h"
#include "typography/metrics.h"
#include "typography/signs.h"

namespace kelvane {

namespace {

constexpr float kFromEdge = 36;  // points, of what has no place

std::vector<LeftWork> Found;

// What became of the file since the journal was written.
struct FileNow {
  SeenFile seen;
  std::optional<std::string> content;
};

FileNow LookAtFile(const std::string& path) {
  if (path.empty()) return {};
  try {
    if (!TheFiles->Exists(path)) return {SeenMissing(path), {}};
    std::string content = TheFiles->ReadWhole(path);
    SeenFile seen = SeenWith(path, content);
    return {std::move(seen), std::move(content)};
  } catch (const Failure&) {
    return {SeenMissing(path), {}};  // what was left is offered all the same
  }
}

// Whether a file's content is what saving the page would write.
bool Holds(const std::optional<std::string>& content, const Page& page, const std::string& path) {
  if (!content) return page.Empty();
  const auto written = [&](PageOrder order) {
    try {
      return ContentOfPage(page, order, path);
    } catch (const Failure&) {
      return std::string();  // it cannot be written, so no file holds it
    }
  };
  return *content == written(PageOrder::AsTyped) || *content == written(PageOrder::ByPosition);
}

std::optional<Page> PageOf(const FileNow& file) {
  if (!file.content) return {};
  try {
    return PageOfContent(*file.content, file.seen.path);
  } catch (const Failure&) {
    return {};
  }
}

// Whether there is anything to be decided about.
bool IsLeftWork(const Journal& journal, std::size_t bytes, LeftWork& work) {
  if (journal.kind == Journal::Kind::OtherVersion) return true;
  // A program killed before its first record had nothing to lose yet.
  if (journal.kind == Journal::Kind::NoJournal) return bytes > JournalHead().size();
  const FileNow now = LookAtFile(journal.file.path);
  work.stored = PageOf(now);
  if (journal.half.Anything()) return true;
  return journal.edits > 0 && !Holds(now.content, journal.page, journal.file.path);
}

// A program killed while one journal took the place of another has left both, with the same.
bool IsFound(const Journal& journal) {
  return std::ranges::any_of(Found, [&](const LeftWork& other) {
    const HalfDone& half = other.journal.half;
    return journal.kind == Journal::Kind::Whole && other.journal.kind == Journal::Kind::Whole &&
           journal.file == other.journal.file && journal.page == other.journal.page &&
           std::tie(journal.half.run, journal.half.notation, journal.half.path, journal.half.cursor) ==
               std::tie(half.run, half.notation, half.path, half.cursor);
  });
}

// Whether it holds something to be decided about, and stays open; if not it is removed.
bool TakeIn(const std::string& path, Files::Handle handle) {
  bool left = false;
  IfPossible([&] {
    const std::string bytes = TheFiles->ReadWhole(path);
    LeftWork work{path, handle, ReadJournal(bytes), {}};
    left = IsLeftWork(work.journal, bytes.size(), work) && !IsFound(work.journal);
    left ? Found.push_back(std::move(work)) : TheFiles->Remove(path);
  });
  return left;
}

// One that cannot be opened, read or removed stays where it is; it must not hide the others.
void LookInto(const std::string& path) {
  IfPossible([&] {
    const std::optional<Files::Handle> handle = TheFiles->OpenLocked(path);
    if (!handle) return;  // of a program that runs, or found before
    if (!TakeIn(path, *handle)) TheFiles->Close(*handle);
  });
}

std::string NameBeside(const std::string& file) {
  const std::string folder = FolderOf(file) + "\\";
  const std::string title = FileTitleOf(file) + "-recovered";
  for (int number = 1;; ++number) {
    const std::string name = folder + title + (number > 1 ? "-" + std::to_string(number) : "") + ".001";
    if (!TheFiles->Exists(name)) return name;
  }
}

void AddLine(Page& page, const std::string& line) {
  if (!page.text.empty() && page.text.back() != '\n') page.text += "\r\n";
  page.text += line + "\r\n";
}

// The page without the items that a formula takes the place of.
Page WithoutReplaced(const Page& page, const HalfDone& half) {
  const PageItems items(page);
  Page rest;
  std::uint64_t number = 0;
  const auto stays = [&] { return std::ranges::find(half.replaced, ++number) == half.replaced.end(); };
  for (const TextItem& text : items.Texts())
    if (stays()) rest.text += std::string(text.line) + "\r\n";
  for (const DrawingItem& drawing : items.Drawings()) {
    if (!stays()) continue;
    rest.drawings += std::string(drawing.record) + "\r\n";
    ++rest.drawingCount;
  }
  return rest;
}

// A run in the size and typeface of what is half done. What an entry holds beyond that stays.
void SetRun(TextEntry& entry, const HalfDone& half, std::string_view run, Point at, int anchor) {
  entry.x = at.x;
  entry.y = at.y;
  entry.size = half.size;
  entry.font = half.font;
  entry.text = run;
  entry.anchor = anchor;
}

// The run that goes on behind a formula from x on.
void AddBehind(Page& page, const HalfDone& half, float x, float y) {
  if (half.run.empty()) return;
  TextEntry entry;
  SetRun(entry, half, half.run, {x, y}, 3);
  AddLine(page, LineOfEntry(entry));
}

// With the formula being typed as it would be placed. One with an error is there as its notation.
Page WithFormula(const Page& page, const HalfDone& half, int anchor) {
  const auto set = SetFormula(half.notation, {half.size, true, half.font});
  if (const auto* formula = std::get_if<Formula>(&set)) {
    Page whole = half.replaced.empty() ? page : WithoutReplaced(page, half);
    const Point origin = AlignAtAnchor(half.cursor, anchor, formula->width, half.size);
    const Page added = PageOfFormula(*formula, origin);
    if (!whole.text.empty() && whole.text.back() != '\n') whole.text += "\r\n";
    whole.text += added.text;
    whole.drawings += added.drawings;
    whole.drawingCount = static_cast<std::int16_t>(whole.drawingCount + added.drawingCount);
    AddBehind(whole, half, origin.x + formula->width, origin.y);
    return whole;
  }
  Page whole = page;
  std::string missing;
  const std::string run = SignsToRun(half.notation, half.font, missing);
  TextEntry entry;
  SetRun(entry, half, run, half.cursor, anchor);
  AddLine(whole, LineOfEntry(entry));
  const float width = MeasureRun(run, half.font, half.size);
  const Point origin = AlignAtAnchor(half.cursor, anchor, width, half.size);
  AddBehind(whole, half, origin.x + width, origin.y);
  return whole;
}

void Drop(std::size_t index) {
  Found.erase(Found.begin() + static_cast<std::ptrdiff_t>(index));
}

}  // namespace

void ResetRecovery() {
  Found.clear();
}

void FindLeftWork() {
  if (StateFolder.empty()) return;
  for (const std::string& name : TheFiles->FilesIn(JournalFolder()))
    if (name.ends_with(kJournalEnd)) LookInto(JournalFolder() + name);
}

const std::vector<LeftWork>& FoundWork() {
  return Found;
}

Page WholePage(const Journal& journal) {
  const HalfDone& half = journal.half;
  const int anchor = AnchorOfMode(half.mode);
  if (half.mode < 0 && anchor != 0 && !half.notation.empty()) return WithFormula(journal.page, half, anchor);
  Page page = journal.page;
  if (!half.path.empty() && !DrawingRecordToLine(half.path).empty()) {
    page.drawings += half.path + "\r\n";
    ++page.drawingCount;
  }
  if (half.run.empty()) return page;
  // What waits in the control-code box for a place comes to where the cursor was last, on the paper.
  const bool placed = half.mode < 0 && anchor != 0;
  TextEntry entry;
  const PageItems items(journal.page);
  const bool retyped = half.retyped > 0 && half.retyped <= items.Texts().size();
  const std::string_view old = retyped ? items.Texts()[half.retyped - 1].line : std::string_view();
  if (retyped) ParseTextEntry(old, entry);
  const Point onPaper{std::max(half.cursor.x, kFromEdge), std::max(half.cursor.y, kFromEdge)};
  SetRun(entry, half, half.run, placed ? half.cursor : onPaper, placed ? anchor : 3);
  const std::string line = LineOfEntry(entry);
  if (retyped) {
    page.text.replace(static_cast<std::size_t>(old.data() - items.Text().data()), old.size(), line);
  } else {
    AddLine(page, line);
  }
  return page;
}

bool RestoreWork(std::size_t index) {
  const LeftWork& work = Found[index];
  const Journal& journal = work.journal;
  const FileNow now = LookAtFile(journal.file.path);
  RecoveredPage page;
  page.page = journal.page;
  page.steps = journal.steps;
  page.half = journal.half;
  page.number = journal.file.number;
  page.stored = PageOf(now);
  if (!journal.file.path.empty()) {
    page.file = {journal.file.path, journal.file.there, journal.file.size, journal.file.sum};
    // Killed between the writing of the file and the record of it.
    if (Holds(now.content, journal.page, journal.file.path)) page.file = now.seen;
  } else {
    page.stored = Page{};
  }
  if (!OpenRecovered(std::move(page))) return false;
  for (const HalfDone& formula : journal.formulas)
    KeepPlacedNotation(formula.notation, {formula.size, true, formula.font},
                       static_cast<std::int16_t>(AnchorOfMode(formula.mode)), formula.cursor);
  ContinueJournal(work.path, work.handle, journal.edits);
  Drop(index);
  return true;
}

std::string KeepWorkBeside(std::size_t index) {
  const LeftWork work = Found[index];
  const std::string name = NameBeside(work.journal.file.path);
  WriteFileSafely(name, ContentOfPage(WholePage(work.journal), PageOrder::AsTyped, name));
  DiscardWork(index);
  return name;
}

void DiscardWork(std::size_t index) {
  const LeftWork work = Found[index];
  Drop(index);
  IfPossible([&] { TheFiles->Close(work.handle); });
  TheFiles->Remove(work.path);
}

}  // namespace kelvane
