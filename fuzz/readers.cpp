#include "fuzz/readers.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <map>
#include <optional>
#include <variant>

#include "app/settings.h"
#include "app/startup.h"
#include "designer/character_files.h"
#include "designer/strokes.h"
#include "document/fields.h"
#include "document/lines.h"
#include "document/page.h"
#include "document/page_items.h"
#include "editing/clipboard.h"
#include "editing/cursor.h"
#include "editing/edit.h"
#include "editing/half_done.h"
#include "editing/keyboard.h"
#include "editing/modes.h"
#include "formula/formula.h"
#include "help/help_files.h"
#include "help/help_pages.h"
#include "macros/macros.h"
#include "papers/journal.h"
#include "papers/journal_format.h"
#include "papers/paper_commands.h"
#include "papers/recovery.h"
#include "papers/versions.h"
#include "platform/checksum.h"
#include "platform/failure.h"
#include "platform/files.h"
#include "tests/support/fake_clipboard.h"
#include "tests/support/fake_controls.h"
#include "tests/support/memory_files.h"
#include "tests/support/program_files.h"
#include "typography/glyph_shapes.h"
#include "typography/metrics.h"
#include "typography/renderer.h"
#include "typography/run_painter.h"
#include "typography/signs.h"
#include "typography/typefaces.h"
#include "typography/view.h"

namespace kelvane::fuzz {

namespace {

// What must hold whatever was read.
#define MUST(condition) \
  ((condition) ? void() : (std::fprintf(stderr, "%s:%d: %s\n", __FILE__, __LINE__, #condition), std::abort()))

// Says no to everything.
class NoDialogs : public Dialogs {
 public:
  void Message(const std::string&) override {}
  bool Ask(const std::string&, bool) override { return false; }
  Answer AskBeforeLosing(const std::string&) override { return Answer::No; }
  int Choose(const std::string&, const std::vector<std::string>&, int, int onEscape) override {
    return onEscape;
  }
  std::optional<std::string> AskText(const std::string&, const std::string&, const std::string&,
                                     const std::function<std::string(const std::string&)>&) override {
    return {};
  }
  std::string ChooseToOpen(const std::string&, const std::string&, const std::string&,
                           const std::string&) override {
    return {};
  }
  std::string ChooseToSave(const std::string&, const std::string&, const std::string&) override { return {}; }
};

// Takes what is painted and looks at its numbers.
class NoPainter : public Painter {
 public:
  void FillBox(const Box& box, ColourValue) override { sum_ += box.left; }
  void DrawLine(Point from, Point, const Pen&) override { sum_ += from.x; }
  void StrokePath(const Path& path, const Pen&) override { Look(path); }
  void FillPath(const Path& path, ColourValue) override { Look(path); }
  void DrawText(const ScreenFace&, float, std::string_view codes, std::span<const Point> origins,
                ColourValue) override {
    MUST(codes.size() == origins.size());
  }

 private:
  void Look(const Path& path) {
    for (const Point& point : path.points) sum_ += point.y;
  }
  float sum_ = 0;
};

struct World {
  MemoryFiles files;
  NoDialogs dialogs;
  FakeToolkit toolkit;
  FakeClipboard clipboard;
  std::map<std::string, std::string> start;
};

// The editor on fakes, as it is at its start.
World& TheWorld() {
  static World world;
  return world;
}

void Begin() {
  World& world = TheWorld();
  TheFiles = &world.files;
  TheDialogs = &world.dialogs;
  TheToolkit = &world.toolkit;
  TheClipboard = &world.clipboard;
  ProgramFolder = "\\Kelvane\\";
  StateFolder = "\\State\\";
  PutProgramFiles(world.files);
  world.files.contents[StateFolder + "used"];
  MUST(StartUp("\\Kelvane"));
  ShowEditor({});
  world.start = world.files.contents;
}

// A reader may refuse what it is given.
template <typename Act>
bool Accepts(Act act) {
  try {
    act();
    return true;
  } catch (const Failure& failure) {
    MUST(*failure.what() != '\0');
    return false;
  }
}

void PaintAll(const Page& page) {
  NoPainter painter;
  const PageItems items(page);
  const View view{.area = {-100, -100, 700, 900}, .scale = 1.5F};
  PaintPage(painter, view, items, view.area);
  for (const TextItem& item : items.Texts())
    if (item.draws) BoundsOf(item.entry);
}

void ReadPageFile(std::string_view bytes) {
  Page page;
  if (!Accepts([&] { page = PageOfContent(bytes, "\\P\\A.001"); })) return;
  for (const PageOrder order : {PageOrder::AsTyped, PageOrder::ByPosition}) {
    std::string content;
    if (!Accepts([&] { content = ContentOfPage(page, order, "\\P\\A.001"); })) continue;
    const Page again = PageOfContent(content, "\\P\\A.001");
    MUST(again.drawingCount == page.drawingCount);
    MUST(order == PageOrder::ByPosition || again.text == page.text);
  }
  PaintAll(page);
}

std::string& FileOfProgram(const char* name) {
  return TheWorld().files.contents[ProgramFolder + name];
}

void ReadSettingsFile(std::string_view bytes) {
  FileOfProgram("QRX.DAT") = bytes;
  ResetView();
  ResetSettings();
  Accepts([] { ReadSettings(ProgramFolder + "QRX.DAT"); });
  MUST(SCALE > 0 && PaperWidth > 0 && PaperWidth <= 14400 && PaperHeight > 0 && PaperHeight <= 14400);
  MUST(GridStepH >= 1 && GridStepH <= 6 && GridStepV >= 1 && GridStepV <= 6 && IsTypeface(BaseFont));
  MUST(std::isfinite(STARTX) && std::isfinite(FontSize) && std::isfinite(FormPlace.left));
  WriteSettings(ProgramFolder + "QRX.DAT");
  const std::string written = FileOfProgram("QRX.DAT");
  WriteSettings(ProgramFolder + "QRX.DAT");
  MUST(FileOfProgram("QRX.DAT") == written);
}

void ReadMacroFile(std::string_view bytes) {
  FileOfProgram("QRX.MCR") = bytes;
  ResetMacros();
  if (!Accepts(ReadMacros)) return;
  WriteMacros();
  for (int number = 0; number < kMacros; ++number)
    MUST(MacroCaption(number).find_first_of(std::string("\r\n\0", 3)) == std::string::npos);
}

void PaintGlyphs() {
  NoPainter painter;
  std::string all;
  for (int code = 1; code < 256; ++code) all += static_cast<char>(code);
  for (const std::int16_t font : {0, 9, 12, 15}) {
    const View view{.area = {0, 0, 600, 800}};
    RunPainter(painter, view).Paint({all, font, 12, {100, 100}, 0, 0, true});
  }
}

void ReadFont(std::string_view bytes) {
  FileOfProgram("MATH0.PSF") = bytes;
  if (Accepts(LoadCharacterDefs)) PaintGlyphs();
}

void ReadProcedure(std::string_view bytes) {
  const std::string procedure(bytes);
  ExecuteGlyph(procedure);
  const GlyphStrokes strokes = StrokesOfProcedure(procedure);
  Builds(strokes, procedure);
  PathOfStrokes(strokes);
}

void ReadWidths(std::string_view bytes) {
  const std::string good = FileOfProgram("TN.WT");
  FileOfProgram("TN.WT") = bytes;
  FileOfProgram("INK.TAB") = bytes;
  Accepts(LoadWidthTables);
  Accepts(LoadInkBoxes);
  MUST(std::isfinite(Advance('A', 0, 12)));
  PaintGlyphs();
  FileOfProgram("TN.WT") = good;
  FileOfProgram("INK.TAB").clear();
  LoadWidthTables();
  LoadInkBoxes();
}

void ReadHelp(std::string_view bytes) {
  FileOfProgram("QRX.HLP") = bytes;
  for (const char* name : {"QRX.HCT", "QRX.HIX"}) TheWorld().files.contents.erase(ProgramFolder + name);
  if (!Accepts(IndexHelpFile)) return;
  const HelpBook book = ReadHelpBook(bytes, HelpPageStarts);
  for (const auto& entries : {ReadHelpContents(ContentsOfHelp(bytes)), ReadHelpIndex(IndexOfHelp(bytes))})
    for (const HelpEntry& entry : entries) {
      HelpPlace place;
      if (FindEntry(book, entry, place)) MUST(place.page < static_cast<int>(book.pages.size()));
    }
}

void ReadHelpLists(std::string_view bytes) {
  ReadHelpContents(bytes);
  ReadHelpIndex(bytes);
}

void ReadStrokes(std::string_view bytes) {
  GlyphStrokes strokes;
  if (!Accepts([&] { strokes = StrokesOfText(bytes); })) return;
  const std::string text = StrokeText(strokes);
  MUST(StrokeText(StrokesOfText(text)) == text);
  BuildGlyph(StrokeLines(strokes));
  BoundsOfStrokes(strokes);
}

void Pasting(bool typing) {
  ClearPage();
  ResetEdits();
  ResetKeyboard();
  CursorMode = typing ? -3 : 0;
  Accepts([] { Paste({}); });
  MUST(PendingRun.find_first_of(std::string("\r\n\0", 3)) == std::string::npos);
  PaintAll(ThePage);
  StepBack();
  MUST(ThePage.Empty());
}

void ReadClipboard(std::string_view bytes) {
  FakeClipboard& clipboard = TheWorld().clipboard;
  clipboard.items = clipboard.text = "";
  clipboard.items = bytes;
  Pasting(false);
  clipboard.items.clear();
  clipboard.text = bytes;
  Pasting(false);
  Pasting(true);
}

void ReadSigns(std::string_view bytes) {
  for (const std::int16_t font : {0, 8, 12}) {
    std::string missing;
    const std::string run = SignsToRun(bytes, font, missing);
    MUST(run.find_first_of(std::string("\r\n\0", 3)) == std::string::npos);
    TextOfRun(run, font);
    TextOfRun(bytes, font);
  }
  SignsNamed(bytes);
  FindSigns(bytes);
}

void ReadVersionIndex(std::string_view bytes) {
  World& world = TheWorld();
  world.files.contents = world.start;
  world.files.contents["\\State\\versions\\index"] = bytes;
  world.files.contents["\\P\\A.001"] = "old";
  for (const Version& version : VersionsOf("\\P\\A.001")) ContentOfVersion(version);
  KeepReplaced("\\P\\A.001", "new");
  MUST(VersionsOf("\\P\\A.001").size() >= 1 && world.files.contents.contains("\\P\\A.001"));
  for (const auto& file : world.start) MUST(world.files.contents.contains(file.first));
}

const Page kJournalPage = {"50 60 m 11 F0 (old) 1 s\r\n", 1, "10 20 12.5 22.5 15 25 1\r\n"};

// A record with these items and a right sum.
std::string RecordOf(std::string_view items) {
  std::string record;
  std::size_t length = items.size() + 4;
  for (; length > 0x7F; length >>= 7) record += static_cast<char>(length | 0x80);
  record += static_cast<char>(length);
  record += std::string(4, '\1') + std::string(items);
  const std::uint64_t sum = Checksum(record);
  for (int shift = 0; shift < 64; shift += 8) record += static_cast<char>(sum >> shift & 0xFF);
  return record;
}

std::string JournalOf(const std::string& record) {
  JournalRecord first;
  first.AddPage(kJournalPage, {}, {"\\P\\A.001", 1, false, 0, 0}, 1);
  return JournalHead() + first.Take(1) + record;
}

// As the next start takes it.
void TakeUpJournal(const std::string& bytes) {
  const Journal journal = ReadJournal(bytes);
  MUST(journal.half.run.find_first_of(std::string("\r\n\0", 3)) == std::string::npos);
  PaintAll(WholePage(journal));
  World& world = TheWorld();
  EndJournal();
  ReleasePaper();
  world.files.LetGo();
  world.files.contents = world.start;
  world.files.contents[JournalFolder() + "1-0" + kJournalEnd] = bytes;
  ResetRecovery();
  FindLeftWork();
  const bool readable = journal.kind == Journal::Kind::Whole || journal.kind == Journal::Kind::Damaged;
  if (!readable || FoundWork().empty()) return;
  if (Accepts([] { RestoreWork(0); })) MUST(ThePage == journal.page);
  FinishEditing();
  while (!StepBackLabel().empty()) StepBack();
}

void ReadJournalFile(std::string_view bytes) {
  TakeUpJournal(std::string(bytes));
}

// The sum keeps what is changed at random from being looked at, so here it is right.
void ReadJournalItems(std::string_view bytes) {
  const std::string journal = JournalOf(RecordOf(bytes));
  TakeUpJournal(journal);
  if (ReadJournal(journal).kind == Journal::Kind::Damaged) MUST(ReadJournal(journal).page == kJournalPage);
}

void ReadNotation(std::string_view bytes) {
  for (const FormulaStyle style : {FormulaStyle{11, true, 0}, FormulaStyle{40, false, 5}}) {
    const auto set = SetFormula(bytes, style);
    if (const auto* error = std::get_if<FormulaError>(&set)) {
      MUST(error->begin <= error->end && error->end <= bytes.size() && !error->message.empty());
      continue;
    }
    const auto& formula = std::get<Formula>(set);
    MUST(std::isfinite(formula.width) && std::isfinite(formula.height) && std::isfinite(formula.depth));
    const Page page = PageOfFormula(formula, {100, 200});
    for (std::string_view rest = page.text; !rest.empty();) {
      TextEntry entry;
      MUST(ParseTextEntry(TakeLine(rest), entry));
    }
    PaintAll(page);
    for (std::size_t offset = 0; offset <= bytes.size(); offset += 1 + bytes.size() / 50)
      CaretOfFormula(formula, offset);
  }
}

// Items of a record as they are written.
std::string ItemsOf(JournalRecord& record) {
  const std::string taken = record.Take(1);
  const std::size_t head = (taken[0] & 0x80) != 0 ? 6 : 5;
  return taken.substr(head, taken.size() - head - 8);
}

std::vector<std::string> JournalItems() {
  JournalRecord record;
  HalfDone half;
  half.mode = -3;
  half.cursor = {100, 99};
  half.size = 11;
  half.run =
      "x\xF0"
      "2";
  half.caret = 2;
  record.AddHalfDone({}, half);
  std::vector<std::string> all = {ItemsOf(record)};
  half.run.clear();
  half.notation = "\\frac{a}{b";
  half.caret = 5;
  half.replaced = {1, 2};
  record.AddHalfDone({}, half);
  all.push_back(ItemsOf(record));
  Step step;
  step.label = "typing";
  step.text = {{0, "", "1 2 m 11 F0 (x) 3 s\r\n"}};
  record.AddStep(PageEvent::Edit, step);
  record.AddStep(PageEvent::Back, step);
  record.AddStep(PageEvent::Forward, step);
  record.AddFile({"\\P\\A.002", 2, true, 9, 7}, true);
  all.push_back(ItemsOf(record));
  record.AddPage(kJournalPage, {{step}, {}}, {"\\P\\A.001", 1, false, 0, 0}, 1);
  all.push_back(ItemsOf(record));
  return all;
}

std::vector<std::string> JournalFiles() {
  std::vector<std::string> all;
  for (const std::string& items : JournalItems()) all.push_back(JournalOf(RecordOf(items)));
  return all;
}

std::string Shipped(const char* name) {
  std::ifstream file(std::string(KELVANE_SOURCE_DIR) + "/data/" + name, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

const std::string kPage =
    "72 100 m 11 F0 (x\xF0"
    "2\xF2 + \xE8"
    "a) 1 s\r\n10 20 m 9.5 FC (A B) 3 40 a\r\n\r\nno entry\r\n"
    "10 20 m 121 lw 5 5 rl 1 2 3 4 rb stroke\r\n0 0 m 20 lw 10 0 rl 0 10 rl -10 -10 rl fill\r\n";

}  // namespace

std::vector<Reader> Readers() {
  static const bool begun = (Begin(), true);
  static_cast<void>(begun);
  const std::string strokes = "10 40 15 40 20 40 20 35 20 30\n0 0 5 5 10 10\n";
  return {
      {"page", {kPage, Shipped("EXAM.001")}, ReadPageFile},
      {"settings",
       {"PDIR = \\P\\\r\nPAPERWIDTH = 612\r\nGRIDX = 4\r\nSCALE = 3\r\nGUIDEX = 72\r\nFONTNUMBER = 12\r\n"
        "FONTSIZE = 9.5\r\nCURSORMODE = 9\r\nSTARTX = 5\r\nFORMWIDTH = 8000\r\n"},
       ReadSettingsFile},
      {"macros", {"a\r\nb\r\n\r\nd\xF0\r\n", Shipped("QRX.MCR")}, ReadMacroFile},
      {"font", {FileOfProgram("MATH0.PSF"), Shipped("MATH0.PSF")}, ReadFont},
      {"procedure",
       {"0 0 moveto 10 20 rlineto 1 2 3 4 rp 5 0 360 ci st", "1 1 moveto 2 2 3 3 rc fill"},
       ReadProcedure},
      {"widths", {WidthFile(0), Shipped("INK.TAB")}, ReadWidths},
      {"help",
       {"<PAGE>\r\n<H1>One</H1> text\r\n<H2>Two</H2>\r\n<page><h3>x</h3>\r\n", Shipped("QRX.HLP")},
       ReadHelp},
      {"help_lists", {ContentsOfHelp(Shipped("QRX.HLP")), IndexOfHelp(Shipped("QRX.HLP"))}, ReadHelpLists},
      {"strokes", {strokes, StrokeText(StrokesOfProcedure("0 0 moveto 10 20 rlineto st"))}, ReadStrokes},
      {"clipboard",
       {kPage, "plain text\nof two lines", "\xE2\x88\xAB x\xC2\xB2 \xF0\x9D\x91\x8E"},
       ReadClipboard},
      {"signs", {"\xE2\x88\xAB x\xC2\xB2 \xF0\x9D\x91\x8E", "alpha", "\\int"}, ReadSigns},
      {"journal", JournalFiles(), ReadJournalFile},
      {"journal_items", JournalItems(), ReadJournalItems},
      {"notation",
       {"\\frac{a+b}{\\sqrt{x^2}} \\to \\alpha_i", "\\begin{pmatrix} a & b \\\\ {} & d \\end{pmatrix}",
        "\\sum_{n=1}^\\infty \\left( \\int_0^1 f\\,dx \\right]",
        "$$x\xC2\xB2 \xE2\x88\xAB \\text{if } \\sin y$$",
        "\\begin{cases} \\overline{x} & \\hat{y} \\end{cases} \\underbrace{z}_{n}"},
       ReadNotation},
      {"versions", {"1700000000 3 0123456789abcdef 0123456789abcdef-00-A.001\n"}, ReadVersionIndex},
  };
}

}  // namespace kelvane::fuzz
