#include "designer/character_files.h"

// Reading and rewriting of the font's four files. They carry the same widths and outlines, so a glyph is
// saved into all of them or into none: every new content is made in memory first, and files that were already
// replaced are put back when a later one cannot be written.

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <string_view>
#include <utility>

#include "document/fields.h"
#include "document/lines.h"
#include "document/numbers.h"
#include "platform/controls.h"
#include "platform/failure.h"
#include "platform/files.h"
#include "typography/glyphs.h"
#include "typography/typefaces.h"

namespace kelvane {
namespace {

constexpr float kBoxMargin = 2;  // bounding boxes reach this far beyond the advance
constexpr int kCodesEnd = kFirstGlyph + kGlyphs;
constexpr int kSections = 3;  // advance widths, bounding boxes, procedures

// A line of a file and the characters that end it, so that it can be copied as it is.
struct RawLine {
  std::string_view text;
  std::string_view end;
};

RawLine TakeRawLine(std::string_view& rest) {
  const std::string_view before = rest;
  const std::string_view text = TakeLine(rest);
  const std::size_t taken = before.size() - rest.size();
  return {text, before.substr(text.size(), taken - text.size())};
}

std::string_view BetweenBraces(std::string_view line) {
  const std::size_t open = line.find('{');
  const std::size_t close = line.find('}');
  if (open == std::string_view::npos || close == std::string_view::npos || close < open) return {};
  return TrimBlanks(line.substr(open + 1, close - open - 1));
}

using Procedures = std::array<std::string, kGlyphs>;

// The procedures of a font definition; `name` is for messages.
Procedures ProceduresOf(std::string_view rest, const std::string& name) {
  // Lines that must be there for the definition to be whole.
  const auto take = [&] {
    if (rest.empty()) throw Failure("ERROR: " + name + " file format");
    return TakeLine(rest);
  };
  while (take().find("CharacterDefs") == std::string_view::npos) {
  }
  take();  // ".notdef"
  Procedures procedures;
  for (std::string& procedure : procedures) procedure = BetweenBraces(take());
  return procedures;
}

std::string ReadDefinition(const std::string& name) {
  const std::string path = ProgramFolder + name;
  if (!TheFiles->Exists(path)) throw Failure("ERROR: Missing file " + name);
  return TheFiles->ReadWhole(path);
}

// A stroke's numbers with y turned upwards from the baseline. Fields past the end count as 0.
class Stroke {
 public:
  explicit Stroke(std::string_view line) {
    for (const std::string_view field : SplitFields(line, " ")) numbers.push_back(ReadSingle(field));
  }

  int Count() const { return static_cast<int>(numbers.size()); }
  Point At(int xField) const { return {Field(xField), kDesignBaseline - Field(xField + 1)}; }

 private:
  float Field(int index) const {
    return index <= Count() ? numbers[static_cast<std::size_t>(index - 1)] : 0.0F;
  }

  std::vector<float> numbers;
};

// Path operators of glyphs, and how far they reach to either side.
struct GlyphPath {
  std::string text;
  float smallestX = kDesignSide;
  float largestX = 0;

  void Reach(float x) {
    smallestX = std::min(smallestX, x);
    largestX = std::max(largestX, x);
  }

  void MoveTo(Point to) {
    Reach(to.x);
    if (!text.empty()) text += ' ';
    text += FormatSingle(to.x) + ' ' + FormatSingle(to.y) + " moveto";
  }

  void SegmentTo(Point from, Point control, Point to) {
    Reach(to.x);
    const bool straight = control.x == (to.x + from.x) * 0.5F && control.y == (to.y + from.y) * 0.5F;
    if (!straight) AddStep(from, control);
    AddStep(from, to);
    text += straight ? " rlineto" : " rp";
  }

 private:
  void AddStep(Point from, Point to) {
    text += ' ' + FormatSingle(to.x - from.x) + ' ' + FormatSingle(to.y - from.y);
  }
};

float WidthInEms(float gridUnits) {
  return static_cast<float>(gridUnits * 0.02);
}

std::string SectionLine(int section, const std::string& name, const GlyphProcedure& glyph) {
  if (section == 1) return name + ' ' + FormatSingle(glyph.width) + " def";
  if (section == 2) return name + " [-2 -12 " + FormatSingle(glyph.width + kBoxMargin) + " 42] def";
  return name + " { " + glyph.text + " } def";
}

// MATH0.PSF or QRX.PRO with the glyph's line of each of the three sections made anew.
std::string RewriteSections(const std::string& path, std::string_view rest, int code,
                            const GlyphProcedure& glyph) {
  std::string result;
  std::vector<std::string> names;  // of section 1, from kFirstGlyph on
  int section = 0;
  int sectionCode = kCodesEnd;  // code of the next line; kCodesEnd between the sections
  while (!rest.empty()) {
    const RawLine line = TakeRawLine(rest);
    const bool inSection = sectionCode < kCodesEnd;
    if (inSection && section == 1) names.push_back(GetField(line.text, 1, " "));
    if (inSection && sectionCode == code) {
      const std::string name = GetField(line.text, 1, " ");
      // A line too few or too many would let the glyph replace its neighbour. The sections need not name a
      // glyph alike, though.
      const auto owner = std::find(names.begin(), names.end(), name);
      if (section > 1 && owner != names.end() && names[static_cast<std::size_t>(code - kFirstGlyph)] != name)
        throw Failure(MachinePath(path) + " names character " + std::to_string(code) + " in two ways.");
      result += SectionLine(section, name, glyph);
    } else {
      result += line.text;
    }
    result += line.end;
    if (inSection) {
      ++sectionCode;
    } else if (section < kSections && line.text.starts_with("/.notdef")) {
      ++section;
      sectionCode = kFirstGlyph;
    }
  }
  if (section < kSections || sectionCode < kCodesEnd) {
    throw Failure(MachinePath(path) + " does not hold three sections of 96 characters.");
  }
  return result;
}

// MATH0.TXT with the width of one code made anew.
std::string RewriteWidthText(const std::string& path, std::string_view rest, int code, float width) {
  std::string result;
  int lineCode = kFirstGlyph;
  for (; !rest.empty(); ++lineCode) {
    const RawLine line = TakeRawLine(rest);
    if (lineCode == code) {
      result += FormatFixed(width * 0.02, 6, true);
    } else {
      result += line.text;
    }
    result += line.end;
  }
  if (lineCode <= code)
    throw Failure(MachinePath(path) + " has no line for character " + std::to_string(code) + '.');
  return result;
}

void AppendSingle(std::string& bytes, float value) {
  const auto bits = std::bit_cast<std::uint32_t>(value);
  for (int shift = 0; shift < 32; shift += 8) bytes += static_cast<char>(bits >> shift & 0xFFU);
}

// MATH0.WT: the divisor, then the widths of codes 1 to 255 with that of one code made anew.
std::string WidthTable(int code, float width) {
  const TypefaceRecord& typeface = TypefaceTable[kFirstGlyphFont];
  std::string bytes;
  AppendSingle(bytes, typeface.WidthUnit);
  for (int c = 1; c < 256; ++c) {
    AppendSingle(bytes, c == code ? WidthInEms(width) : typeface.Widths[static_cast<std::size_t>(c)]);
  }
  return bytes;
}

// The lines of the three sections, one after the other; empty if the text does not hold them all.
std::vector<std::string_view> LinesOfSections(std::string_view text) {
  std::vector<std::string_view> lines;
  constexpr std::size_t kAll = std::size_t{kSections} * kGlyphs;
  while (!text.empty() && lines.size() < kAll) {
    if (!TakeLine(text).starts_with("/.notdef")) continue;
    for (int i = 0; i < kGlyphs && !text.empty(); ++i) lines.push_back(TakeLine(text));
  }
  if (lines.size() < kAll || !lines.back().ends_with("def")) lines.clear();
  return lines;
}

// What MATH0.PSF is to hold when it is damaged: the shipped text, with the lines of the prolog, which has the
// same sections and every character that the person has made. The shipped lines where the prolog is damaged,
// too; empty if there is nothing to make it of.
std::string MendedDefinition() {
  const auto read = [](const char* name) {
    const std::string path = ProgramFolder + name;
    return TheFiles->Exists(path) ? TheFiles->ReadWhole(path) : "";
  };
  const std::string shipped = read("MATH0.ORG");
  const std::string prolog = read("QRX.PRO");
  const std::vector<std::string_view> lines = LinesOfSections(prolog);
  std::vector<std::string_view> old = LinesOfSections(shipped);
  if (old.empty() || lines.empty()) return shipped;
  std::string mended;
  std::string_view rest = shipped;
  auto next = old.begin();
  auto line = lines.begin();
  while (!rest.empty()) {
    const RawLine raw = TakeRawLine(rest);
    const bool replaced = next != old.end() && raw.text.data() == next->data();
    mended += replaced ? *line : raw.text;
    mended += raw.end;
    if (replaced) ++next, ++line;
  }
  return mended;
}

// MATH0.WT by the advance widths of the definition, as a character that is saved leaves them.
std::string WidthsOfDefinition(std::string_view definition) {
  const std::vector<std::string_view> lines = LinesOfSections(definition);
  if (lines.empty()) return {};
  constexpr float kUnit = 0.6F;
  std::string bytes;
  AppendSingle(bytes, kUnit);
  for (int code = 1; code < 256; ++code) {
    const bool hasGlyph = code >= kFirstGlyph && code < kCodesEnd;
    const std::string_view line = hasGlyph ? lines[static_cast<std::size_t>(code - kFirstGlyph)] : "";
    AppendSingle(bytes, WidthInEms(ReadSingle(GetField(line, 2, " "))));
  }
  return bytes;
}

// Puts a new content in the place of a damaged one, which is kept under another name.
void ReplaceDamaged(const std::string& name, const std::string& damaged, const std::string& content,
                    const std::string& what) {
  const std::string path = ProgramFolder + name;
  std::string told = MachinePath(path) + " is damaged. " + what;
  try {
    const std::string kept = NameForDamaged(path);
    WriteFileSafely(kept, damaged);
    WriteFileSafely(path, content);
    told += " The damaged file is kept as " + MachinePath(kept) + ".";
  } catch (const Failure& failure) {
    // They are in use all the same.
    told += std::string("\n") + failure.what();
  }
  TheDialogs->Message(told);
}

struct FileChange {
  std::string path;
  bool existed = true;
  std::string oldContent;
  std::string newContent;
};

// In the order in which they are written.
constexpr const char* kFontFiles[] = {"MATH0.WT", "MATH0.TXT", "MATH0.PSF", "QRX.PRO"};

std::vector<FileChange> PlanChanges(int code, const GlyphProcedure& glyph) {
  std::vector<FileChange> changes;
  for (const char* name : kFontFiles) {
    FileChange change{ProgramFolder + name, true, {}, {}};
    // The width table alone is made whole from memory, so it may be missing.
    change.existed = !changes.empty() || TheFiles->Exists(change.path);
    if (change.existed) change.oldContent = TheFiles->ReadWhole(change.path);
    changes.push_back(std::move(change));
  }
  changes[0].newContent = WidthTable(code, glyph.width);
  changes[1].newContent = RewriteWidthText(changes[1].path, changes[1].oldContent, code, glyph.width);
  for (std::size_t i = 2; i < changes.size(); ++i) {
    changes[i].newContent = RewriteSections(changes[i].path, changes[i].oldContent, code, glyph);
  }
  return changes;
}

void PutBack(const FileChange& change) {
  if (change.existed) {
    if (TheFiles->ReadWhole(change.path) != change.oldContent) {
      WriteFileSafely(change.path, change.oldContent);
    }
  } else if (TheFiles->Exists(change.path)) {
    TheFiles->Remove(change.path);
  }
}

// Puts back the files up to and including number `last`, which may be in place although writing it failed.
// Returns the paths of those that could not be put back.
std::string PutBackUpTo(const std::vector<FileChange>& changes, std::size_t last) {
  std::string lost;
  for (std::size_t i = last + 1; i-- > 0;) {
    try {
      PutBack(changes[i]);
    } catch (const Failure&) {
      lost += (lost.empty() ? "" : ", ") + MachinePath(changes[i].path);
    }
  }
  return lost;
}

// All four contents in one file, which is there while they are written: `NAME SIZE` in a line, and the bytes.
// If the power goes meanwhile, the next start writes them again.
std::string RecordPath() {
  return ProgramFolder + "MATH0.NEW";
}

std::string RecordOf(const std::vector<FileChange>& changes) {
  std::string record;
  for (const FileChange& change : changes)
    record += change.path.substr(ProgramFolder.size()) + ' ' + std::to_string(change.newContent.size()) +
              '\n' + change.newContent;
  return record;
}

// What the record says, with nothing of it done; empty if it is none of ours.
std::vector<FileChange> ChangesOfRecord(std::string_view record) {
  std::vector<FileChange> changes;
  for (const char* name : kFontFiles) {
    if (record.empty()) return {};
    const std::size_t end = record.find('\n');
    const std::string_view head = record.substr(0, end);
    const double size = ReadDouble(GetField(head, 2, " "));
    if (end == std::string_view::npos || GetField(head, 1, " ") != name) return {};
    record.remove_prefix(end + 1);
    if (!(size >= 0) || size > static_cast<double>(record.size())) return {};
    const auto bytes = static_cast<std::size_t>(size);
    changes.push_back({ProgramFolder + name, true, {}, std::string(record.substr(0, bytes))});
    record.remove_prefix(bytes);
  }
  return changes;
}

void FinishSaving() {
  if (!TheFiles->Exists(RecordPath())) return;
  for (const FileChange& change : ChangesOfRecord(TheFiles->ReadWhole(RecordPath())))
    WriteFileSafely(change.path, change.newContent);
  TheFiles->Remove(RecordPath());
}

void WriteAllOrNone(const std::vector<FileChange>& changes) {
  std::size_t i = 0;
  try {
    WriteFileSafely(RecordPath(), RecordOf(changes));
    for (; i < changes.size(); ++i) WriteFileSafely(changes[i].path, changes[i].newContent);
    TheFiles->Remove(RecordPath());
  } catch (const Failure& failure) {
    i = std::min(i, changes.size() - 1);
    // Without the record first: what is put back must not be replaced again at the next start.
    std::string lost;
    try {
      if (TheFiles->Exists(RecordPath())) TheFiles->Remove(RecordPath());
    } catch (const Failure&) {
      lost = MachinePath(RecordPath()) + ", ";
    }
    lost += PutBackUpTo(changes, i);
    std::string message =
        "The character was not saved in " + MachinePath(changes[i].path) + ". " + failure.what();
    if (!lost.empty()) message += "\r\nThese files hold the new character and could not be put back: " + lost;
    throw Failure(message);
  }
}

}  // namespace

void LoadCharacterDefs() {
  try {
    FinishSaving();
  } catch (const Failure& failure) {
    TheDialogs->Message(std::string("A character that was being saved is not in all its files: ") +
                        failure.what());
  }
  const std::string content = ReadDefinition("MATH0.PSF");
  Procedures procedures;
  try {
    procedures = ProceduresOf(content, "MATH0.PSF");
  } catch (const Failure&) {
    const std::string mended = MendedDefinition();
    if (mended.empty()) throw;
    procedures = ProceduresOf(mended, "MATH0.PSF");
    ReplaceDamaged("MATH0.PSF", content, mended, "It is made anew from QRX.PRO and MATH0.ORG.");
  }
  for (std::size_t i = 0; i < procedures.size(); ++i) CharacterDefs[i][0] = std::move(procedures[i]);
}

void MendGlyphWidths() {
  constexpr std::size_t kTableBytes = 1024;
  const std::string path = ProgramFolder + "MATH0.WT";
  if (!TheFiles->Exists(path)) return;
  const std::string content = TheFiles->ReadWhole(path);
  if (content.size() >= kTableBytes) return;
  const std::string mended = WidthsOfDefinition(ReadDefinition("MATH0.PSF"));
  if (!mended.empty()) ReplaceDamaged("MATH0.WT", content, mended, "The widths are those of MATH0.PSF.");
}

std::string ShippedProcedure(std::int16_t code) {
  return ProceduresOf(ReadDefinition("MATH0.ORG"), "MATH0.ORG")
      .at(static_cast<std::size_t>(code - kFirstGlyph));
}

GlyphProcedure BuildGlyph(const std::vector<std::string>& strokes) {
  GlyphPath path;
  bool closed = false;  // the last stroke decides between filling and stroking
  for (const std::string& line : strokes) {
    const Stroke stroke(line);
    if (stroke.Count() <= 4) continue;
    const Point start = stroke.At(1);
    const Point last = stroke.At(stroke.Count() - 1);
    closed = start.x == last.x && start.y == last.y;
    path.MoveTo(start);
    Point current = start;
    for (int j = 4; j <= stroke.Count(); j += 4) {
      const Point end = stroke.At(j + 1);
      path.SegmentTo(current, stroke.At(j - 1), end);
      current = end;
    }
  }
  return {path.text + (closed ? " fill" : " st"), path.largestX + path.smallestX, path.smallestX};
}

void SaveGlyph(std::int16_t code, const std::vector<std::string>& strokes) {
  if (code < kFirstGlyph || code >= kCodesEnd) {
    throw Failure("Character " + std::to_string(code) + " cannot be saved: codes go from 32 to 127.");
  }
  const GlyphProcedure glyph = BuildGlyph(strokes);
  WriteAllOrNone(PlanChanges(code, glyph));
  CharacterDefs[code - kFirstGlyph][0] = glyph.text;
  TypefaceTable[kFirstGlyphFont].Widths[static_cast<std::size_t>(code)] = WidthInEms(glyph.width);
}

}  // namespace kelvane
