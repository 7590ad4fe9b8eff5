#include "papers/journal_format.h"

#include <bit>
#include <cmath>
#include <cstddef>
#include <limits>
#include <optional>
#include <utility>

#include "document/common_text.h"
#include "editing/placed_formulas.h"
#include "platform/checksum.h"

namespace kelvane {

namespace {

constexpr std::string_view kName = "Kelvane journal ";
constexpr std::string_view kVersion = "1\r\n";

enum ItemKind : char { kPage = 'P', kEdit = 'E', kBack = 'B', kForward = 'F', kHalf = 'H', kFile = 'N' };

// What of HalfDone an item tells anew.
enum HalfPart : unsigned char {
  kPlace = 1,
  kFace = 2,
  kRetyped = 4,
  kRun = 8,
  kPath = 16,
  kCaret = 32,
  kFormula = 64
};

constexpr std::string_view kNeverInARun("\r\n\0", 3);
constexpr std::string_view kNeverInANotation("\r\0", 2);  // a comment of a pasted one ends with its line
constexpr int kSumBytes = 8;
constexpr int kTimeBytes = 4;

// ---- Writing ----

void Fixed(std::string& out, std::uint64_t value, int bytes) {
  for (int i = 0; i < bytes; ++i) out += static_cast<char>(value >> (8 * i) & 0xFF);
}

// Seven bits a byte, the lowest first, the top bit in all but the last.
void Count(std::string& out, std::uint64_t value) {
  for (; value > 0x7F; value >>= 7) out += static_cast<char>(value | 0x80);
  out += static_cast<char>(value);
}

// Small numbers of either sign.
void Signed(std::string& out, std::int64_t value) {
  Count(out, static_cast<std::uint64_t>(value) << 1 ^ static_cast<std::uint64_t>(value >> 63));
}

void Float(std::string& out, float value) {
  Fixed(out, std::bit_cast<std::uint32_t>(value), 4);
}

void Text(std::string& out, std::string_view text) {
  Count(out, text.size());
  out += text;
}

void Coordinates(std::string& out, Point point) {
  Float(out, point.x);
  Float(out, point.y);
}

void Lines(std::string& out, const Differences& differences) {
  Count(out, differences.size());
  for (const Difference& difference : differences) {
    Count(out, difference.at);
    Text(out, difference.before);
    Text(out, difference.after);
  }
}

void WholeStep(std::string& out, const Step& step) {
  Text(out, step.label);
  Lines(out, step.text);
  Lines(out, step.drawings);
  Signed(out, step.countChange);
  Coordinates(out, step.cursorBefore);
  Coordinates(out, step.cursorAfter);
  Signed(out, step.place);
}

void AllSteps(std::string& out, const std::vector<Step>& steps) {
  Count(out, steps.size());
  for (const Step& step : steps) WholeStep(out, step);
}

void FileOfPage(std::string& out, const JournalFile& file) {
  Text(out, file.path);
  Count(out, static_cast<std::uint64_t>(file.number));
  out += file.there ? '\1' : '\0';
  Count(out, file.size);
  Fixed(out, file.sum, kSumBytes);
}

// The one stretch in which a text differs from what it was.
void Change(std::string& out, const std::string& before, const std::string& now) {
  const std::size_t front = CommonFront(before, now);
  const std::size_t back =
      CommonBack(std::string_view(before).substr(front), std::string_view(now).substr(front));
  Count(out, front);
  Count(out, before.size() - front - back);
  Text(out, std::string_view(now).substr(front, now.size() - front - back));
}

// ---- Reading ----

// Takes values from the front of bytes. What is not there makes it fail, and all that is taken afterwards is
// empty.
class Reader {
 public:
  explicit Reader(std::string_view bytes) : rest_(bytes) {}

  bool Ok() const { return ok_; }
  bool AtEnd() const { return rest_.empty(); }
  void Fail() { ok_ = false, rest_ = {}; }

  std::string_view Bytes(std::uint64_t count) {
    if (count > rest_.size()) return Fail(), std::string_view();
    const std::string_view taken = rest_.substr(0, count);
    rest_.remove_prefix(count);
    return taken;
  }
  unsigned char Byte() {
    const std::string_view byte = Bytes(1);
    return byte.empty() ? 0 : static_cast<unsigned char>(byte[0]);
  }
  std::uint64_t Fixed(int bytes) {
    std::uint64_t value = 0;
    int shift = 0;
    for (const char byte : Bytes(static_cast<std::uint64_t>(bytes))) {
      value |= static_cast<std::uint64_t>(static_cast<unsigned char>(byte)) << shift;
      shift += 8;
    }
    return value;
  }
  std::uint64_t Count() {
    std::uint64_t value = 0;
    for (int shift = 0; shift < 64; shift += 7) {
      const unsigned char byte = Byte();
      value |= static_cast<std::uint64_t>(byte & 0x7F) << shift;
      if ((byte & 0x80) == 0) return value;
    }
    return Fail(), 0;
  }
  // A number that must lie between two others; outside it fails.
  int Within(std::int64_t least, std::int64_t most) {
    const std::uint64_t coded = Count();
    const auto value = static_cast<std::int64_t>(coded >> 1 ^ (~(coded & 1) + 1));
    if (value < least || value > most) return Fail(), 0;
    return static_cast<int>(value);
  }
  float Float() {
    const auto value = std::bit_cast<float>(static_cast<std::uint32_t>(Fixed(4)));
    if (!std::isfinite(value)) return Fail(), 0.0F;
    return value;
  }
  std::string_view Text() { return Bytes(Count()); }

 private:
  std::string_view rest_;
  bool ok_ = true;
};

Point ReadPoint(Reader& in) {
  const float x = in.Float();
  return {x, in.Float()};
}

constexpr int kMostInt = std::numeric_limits<int>::max();
constexpr int kMostDrawings = std::numeric_limits<std::int16_t>::max();

Differences ReadLines(Reader& in) {
  Differences differences;
  for (std::uint64_t left = in.Count(); left > 0 && in.Ok(); --left) {
    Difference difference;
    difference.at = in.Count();
    difference.before = in.Text();
    difference.after = in.Text();
    differences.push_back(std::move(difference));
  }
  return differences;
}

Step ReadStep(Reader& in) {
  Step step;
  step.label = in.Text();
  step.text = ReadLines(in);
  step.drawings = ReadLines(in);
  step.countChange = in.Within(-kMostDrawings, kMostDrawings);
  step.cursorBefore = ReadPoint(in);
  step.cursorAfter = ReadPoint(in);
  step.place = in.Within(0, kMostInt);
  return step;
}

std::vector<Step> ReadSteps(Reader& in) {
  std::vector<Step> steps;
  for (std::uint64_t left = in.Count(); left > 0 && in.Ok(); --left) steps.push_back(ReadStep(in));
  return steps;
}

JournalFile ReadFile(Reader& in) {
  constexpr std::uint64_t kMostPages = 999;
  JournalFile file;
  file.path = in.Text();
  const std::uint64_t number = in.Count();
  if (number < 1 || number > kMostPages) in.Fail();
  file.number = static_cast<int>(number);
  file.there = in.Byte() != 0;
  file.size = in.Count();
  file.sum = in.Fixed(kSumBytes);
  return file;
}

// Whether the differences fit the text that they are to change.
bool Fit(const std::string& text, const Differences& differences, bool forward) {
  std::size_t done = 0;
  std::size_t come = 0;  // as in Replace; the sums wrap round as they do there
  std::size_t gone = 0;
  for (const Difference& difference : differences) {
    const std::size_t at = forward ? difference.at : difference.at + come - gone;
    const std::string& there = forward ? difference.before : difference.after;
    if (at < done || at > text.size() || text.compare(at, there.size(), there) != 0) return false;
    done = at + there.size();
    come += difference.after.size();
    gone += difference.before.size();
  }
  return true;
}

bool TakeStep(Page& page, const Step& step, bool forward) {
  const int count = page.drawingCount + (forward ? 1 : -1) * step.countChange;
  if (!Fit(page.text, step.text, forward) || !Fit(page.drawings, step.drawings, forward) || count < 0 ||
      count > kMostDrawings) {
    return false;
  }
  Apply(page, step, forward);
  return true;
}

// Of steps the next ones that lead somewhere from the page; what lies behind one that does not goes.
void DropUnfit(Page page, std::vector<Step>& steps, bool forward) {
  std::size_t fit = 0;
  while (fit < steps.size() && TakeStep(page, steps[steps.size() - 1 - fit], forward)) ++fit;
  steps.erase(steps.begin(), steps.end() - static_cast<std::ptrdiff_t>(fit));
}

void ReadChange(Reader& in, std::string& text) {
  const std::uint64_t at = in.Count();
  const std::uint64_t gone = in.Count();
  const std::string_view come = in.Text();
  if (at > text.size() || gone > text.size() - at) return in.Fail();
  text.replace(at, gone, come);
}

void ReadHalf(Reader& in, HalfDone& half) {
  const unsigned char parts = in.Byte();
  if (parts & kPlace) {
    half.mode = static_cast<std::int16_t>(in.Within(-kLastMode, kLastMode));
    half.cursor = ReadPoint(in);
    half.placeChosen = in.Within(0, kMostInt);
    half.shape = static_cast<Shape>(in.Within(0, kShapes - 1));
  }
  if (parts & kFace) {
    half.size = in.Float();
    half.font = static_cast<std::int16_t>(in.Within(0, 15));
  }
  if (parts & kRetyped) half.retyped = in.Count();
  if (parts & kRun) ReadChange(in, half.run);
  if (half.run.find_first_of(kNeverInARun) != std::string::npos) in.Fail();
  if (parts & kPath) ReadChange(in, half.path);
  if (parts & kCaret) half.caret = static_cast<std::uint32_t>(in.Count());
  if ((parts & kFormula) == 0) return;
  ReadChange(in, half.notation);
  if (half.notation.find_first_of(kNeverInANotation) != std::string::npos) in.Fail();
  half.replaced.clear();
  for (std::uint64_t left = in.Count(); left > 0 && in.Ok(); --left) half.replaced.push_back(in.Count());
}

// The step on top of one list goes to the other.
bool Turn(Journal& journal, std::vector<Step>& from, std::vector<Step>& to, bool forward, Point cursor) {
  if (from.empty() || !TakeStep(journal.page, from.back(), forward)) return false;
  if (!forward) from.back().cursorAfter = cursor;
  to.push_back(std::move(from.back()));
  from.pop_back();
  return true;
}

bool TakeItem(Reader& in, Journal& journal) {
  switch (in.Byte()) {
    case kPage: {
      const std::uint32_t time = journal.time;
      const Journal::Kind kind = journal.kind;
      journal = {};
      journal.time = time;
      journal.kind = kind;
      journal.file = ReadFile(in);
      journal.edits = in.Within(0, kMostInt - 1);
      journal.page.text = in.Text();
      journal.page.drawings = in.Text();
      journal.page.drawingCount = static_cast<std::int16_t>(in.Within(0, kMostDrawings));
      journal.steps.back = ReadSteps(in);
      journal.steps.forward = ReadSteps(in);
      DropUnfit(journal.page, journal.steps.back, false);
      DropUnfit(journal.page, journal.steps.forward, true);
      return in.Ok();
    }
    case kEdit: {
      Step step = ReadStep(in);
      if (!in.Ok() || !TakeStep(journal.page, step, true)) return false;
      if (step.label == kPlacingFormula && !journal.half.notation.empty())
        journal.formulas.push_back(journal.half);
      journal.steps.back.push_back(std::move(step));
      journal.steps.forward.clear();
      ++journal.edits;
      return true;
    }
    case kBack: {
      const Point cursor = ReadPoint(in);
      ++journal.edits;
      return in.Ok() && Turn(journal, journal.steps.back, journal.steps.forward, false, cursor);
    }
    case kForward:
      ++journal.edits;
      return Turn(journal, journal.steps.forward, journal.steps.back, true, {});
    case kHalf:
      ReadHalf(in, journal.half);
      return in.Ok();
    case kFile:
      journal.file = ReadFile(in);
      if (in.Byte() != 0) journal.edits = 0;
      return in.Ok();
    default:
      return false;
  }
}

// A record's body, or nothing if it is not whole.
std::optional<std::string_view> TakeRecord(std::string_view& rest) {
  Reader in(rest);
  const std::uint64_t length = in.Count();
  const std::string_view body = in.Bytes(length);
  const std::uint64_t sum = in.Fixed(kSumBytes);
  if (!in.Ok() || length < kTimeBytes) return {};
  const auto summed = static_cast<std::size_t>(body.data() + body.size() - rest.data());
  if (Checksum(rest.substr(0, summed)) != sum) return {};
  rest.remove_prefix(summed + kSumBytes);
  return body;
}

// Takes a journal through a record. If the record does not fit, the journal is in no state of the page's.
bool TakeBody(std::string_view body, Journal& journal) {
  Reader in(body);
  journal.time = static_cast<std::uint32_t>(in.Fixed(kTimeBytes));
  while (!in.AtEnd())
    if (!TakeItem(in, journal)) return false;
  return in.Ok();
}

bool BeginsWithPage(std::string_view body) {
  return body.size() > kTimeBytes && body[kTimeBytes] == kPage;
}

Journal ReadRecords(const std::string_view records) {
  Journal journal;
  bool any = false;
  std::string_view rest = records;
  while (!rest.empty()) {
    const std::size_t at = records.size() - rest.size();
    const std::optional<std::string_view> body = TakeRecord(rest);
    if (!body || (!any && !BeginsWithPage(*body))) break;
    // A whole record that does not fit was written by somebody else; nothing of it counts.
    if (!TakeBody(*body, journal)) {
      journal = ReadRecords(records.substr(0, at));
      if (any) journal.kind = Journal::Kind::Damaged;
      return journal;
    }
    any = true;
  }
  if (any) journal.kind = rest.empty() ? Journal::Kind::Whole : Journal::Kind::Damaged;
  return journal;
}

}  // namespace

std::string JournalHead() {
  return std::string(kName) + std::string(kVersion);
}

void JournalRecord::AddPage(const Page& page, const Steps& steps, const JournalFile& file, int edits) {
  items_ += kPage;
  FileOfPage(items_, file);
  Signed(items_, edits);
  Text(items_, page.text);
  Text(items_, page.drawings);
  Signed(items_, page.drawingCount);
  AllSteps(items_, steps.back);
  AllSteps(items_, steps.forward);
}

void JournalRecord::AddStep(PageEvent event, const Step& step) {
  if (event == PageEvent::Edit) {
    items_ += kEdit;
    WholeStep(items_, step);
  } else if (event == PageEvent::Back) {
    items_ += kBack;
    Coordinates(items_, step.cursorAfter);
  } else {
    items_ += kForward;
  }
}

void JournalRecord::AddHalfDone(const HalfDone& before, const HalfDone& now) {
  unsigned char parts = 0;
  const auto tell = [&parts](bool differs, HalfPart part) { parts |= differs ? part : 0; };
  tell(before.mode != now.mode || before.cursor != now.cursor || before.placeChosen != now.placeChosen ||
           before.shape != now.shape,
       kPlace);
  tell(before.size != now.size || before.font != now.font, kFace);
  tell(before.retyped != now.retyped, kRetyped);
  tell(before.run != now.run, kRun);
  tell(before.path != now.path, kPath);
  tell(before.caret != now.caret, kCaret);
  tell(before.notation != now.notation || before.replaced != now.replaced, kFormula);
  if (parts == 0) return;
  items_ += kHalf;
  items_ += static_cast<char>(parts);
  if (parts & kPlace) {
    Signed(items_, now.mode);
    Coordinates(items_, now.cursor);
    Signed(items_, now.placeChosen);
    Signed(items_, static_cast<int>(now.shape));
  }
  if (parts & kFace) {
    Float(items_, now.size);
    Signed(items_, now.font);
  }
  if (parts & kRetyped) Count(items_, now.retyped);
  if (parts & kRun) Change(items_, before.run, now.run);
  if (parts & kPath) Change(items_, before.path, now.path);
  if (parts & kCaret) Count(items_, now.caret);
  if ((parts & kFormula) == 0) return;
  Change(items_, before.notation, now.notation);
  Count(items_, now.replaced.size());
  for (const std::uint64_t number : now.replaced) Count(items_, number);
}

void JournalRecord::AddFile(const JournalFile& file, bool stored) {
  items_ += kFile;
  FileOfPage(items_, file);
  items_ += stored ? '\1' : '\0';
}

std::string JournalRecord::Take(std::uint32_t time) {
  std::string record;
  record.reserve(items_.size() + 32);
  Count(record, items_.size() + kTimeBytes);
  Fixed(record, time, kTimeBytes);
  record += items_;
  items_.clear();
  Fixed(record, Checksum(record), kSumBytes);
  return record;
}

Journal ReadJournal(std::string_view bytes) {
  Journal journal;
  if (!bytes.starts_with(kName)) return journal;
  bytes.remove_prefix(kName.size());
  if (!bytes.starts_with(kVersion)) {
    // A version is a number; cut off within it, it is no journal.
    const std::size_t end = bytes.find_first_not_of("0123456789");
    if (end != std::string_view::npos && end > 0 && bytes.substr(end).starts_with("\r\n"))
      journal.kind = Journal::Kind::OtherVersion;
    return journal;
  }
  return ReadRecords(bytes.substr(kVersion.size()));
}

}  // namespace kelvane
