// The help text QRX.HLP: in good form for the program's own index, and its tables as the program has them.

#include <filesystem>
#include <map>
#include <set>
#include <span>

#include "app/commands.h"
#include "app/main_window.h"
#include "app/settings.h"
#include "document/fields.h"
#include "document/lines.h"
#include "editing/cursor.h"
#include "tests/support/program_test.h"
#include "typography/colours.h"
#include "typography/metrics.h"
#include "typography/typefaces.h"
#include "typography/view.h"

namespace kelvane {
namespace {

// Columns of the fixed-pitch face in the help window as it first opens.
constexpr std::size_t kWidestTable = 70;
constexpr std::size_t kWidestText = 80;

using Lines = std::vector<std::string>;

Lines LinesOf(std::string_view text) {
  Lines lines;
  while (!text.empty()) lines.emplace_back(TakeLine(text));
  return lines;
}

// From column `column` to the next run of two blanks.
std::string Cell(const std::string& line, std::size_t column) {
  if (column >= line.size()) return {};
  const std::string rest = line.substr(column);
  const std::string cell = rest.substr(0, rest.find("  "));
  return cell.substr(0, cell.find_last_not_of(' ') + 1);
}

class HelpText : public ProgramTest {
 protected:
  HelpText() : text(Shipped("QRX.HLP")) { files.contents[ProgramFolder + "QRX.HLP"] = text; }

  static std::string Shipped(const std::string& name) {
    return DiskFiles().ReadWhole(BackslashPath(KELVANE_SOURCE_DIR) + "\\data\\" + name);
  }

  void LoadShippedWidths() {
    for (const TypefaceRecord& face : TypefaceTable) {
      if (!face.Name.empty()) files.contents[ProgramFolder + face.Name + ".WT"] = Shipped(face.Name + ".WT");
    }
    LoadWidthTables();
  }

  // The rows of table `number` (from 0) of the page with that heading.
  Lines Table(const std::string& heading, int number = 0) {
    Lines rows;
    bool onPage = false;
    bool inside = false;
    for (const std::string& line : LinesOf(text)) {
      if (line.starts_with("<H1>")) onPage = line == "<H1>" + heading + "</H1>";
      if (line == "</TABLE>") inside = false;
      if (onPage && inside) rows.push_back(line);
      if (line == "<TABLE>") inside = onPage && number-- == 0;
    }
    EXPECT_FALSE(rows.empty()) << "No such table on the page " << heading;
    return rows;
  }

  // What stands at a column of a table, below its first row.
  static void ExpectColumn(const Lines& rows, std::size_t column, const Lines& expected) {
    Lines cells;
    for (std::size_t i = 1; i < rows.size(); ++i) cells.push_back(Cell(rows[i], column));
    EXPECT_EQ(cells, expected);
  }

  static Lines Numbers(int first, int last) {
    Lines numbers;
    for (int number = first; number <= last; ++number) numbers.push_back(std::to_string(number));
    return numbers;
  }
  template <typename Entries>
  static Lines Captions(const Entries& entries) {
    Lines captions;
    for (const MenuEntry* entry : entries) captions.push_back(entry->Caption());
    return captions;
  }
  template <typename Buttons>
  static Lines ButtonCaptions(const Buttons& buttons) {
    Lines captions;
    for (const Button* button : buttons) captions.push_back(static_cast<const FakeButton*>(button)->caption);
    return captions;
  }

  std::string text;
};

// That its tags are in order is told by the pages themselves (help_pages_test.cpp).
TEST_F(HelpText, IsInGoodForm) {
  EXPECT_EQ(text.find_first_of(std::string("\0\t", 2)), std::string::npos);
  std::set<std::string> headings;
  bool headingDue = false;
  bool inTable = false;
  int number = 0;
  std::string lines;
  for (const std::string& line : LinesOf(text)) {
    lines += line + "\r\n";
    SCOPED_TRACE("line " + std::to_string(++number) + ": " + line);
    EXPECT_LE(line.size(), inTable ? kWidestTable : kWidestText);
    if (headingDue) {
      EXPECT_TRUE(line.starts_with("<H1>"));
      EXPECT_TRUE(headings.insert(line).second) << "two pages have this heading";
    }
    headingDue = line == "<PAGE>";
    if (line == "<TABLE>" || line == "</TABLE>") inTable = line == "<TABLE>";
  }
  EXPECT_TRUE(lines == text) << "A line ends otherwise";
}

TEST_F(HelpText, PicturesAreThoseOfTheProgramFolder) {
  std::set<std::string> shown, there;
  for (const std::string& line : LinesOf(text))
    if (line.starts_with("<PICTURE>")) shown.insert(line.substr(9, line.find('<', 1) - 9));
  std::uintmax_t bytes = 0;
  for (const auto& file : std::filesystem::directory_iterator(KELVANE_SOURCE_DIR "/data")) {
    if (file.path().extension() != ".PNG") continue;
    there.insert(file.path().filename());
    bytes += file.file_size();
  }
  EXPECT_EQ(shown, there);
  EXPECT_LT(bytes, 300'000U) << "the manual is to stay small";
}

TEST_F(HelpText, TablesAreThoseOfTheWindow) {
  BuildForm1();
  const Lines faces = Table("Typefaces");
  ExpectColumn(faces, 0, Numbers(0, kTypefaces - 1));
  ExpectColumn(faces, 5, Captions(FontMenu));
  const Lines anchors = Table("Anchors");
  ExpectColumn(anchors, 0, Numbers(1, 9));
  ExpectColumn(anchors, 5, ButtonCaptions(std::span(AnchorButtons).subspan(1)));
  const Lines scripts = Table("Superscripts and subscripts");
  ExpectColumn(scripts, 0, Numbers(240, 251));
  ExpectColumn(scripts, 6, ButtonCaptions(Form1Parts.scripts));
  const Lines colours = Table("Line colours and thicknesses");
  ExpectColumn(colours, 0, Numbers(0, 7));
  ExpectColumn(colours, 5, Captions(std::span(ColourMenu).first(8)));
  ExpectColumn(colours, 21, Numbers(8, 15));
  ExpectColumn(colours, 26, Captions(std::span(ColourMenu).subspan(8)));
  ExpectColumn(Table("Line colours and thicknesses", 1), 0, Captions(ThicknessMenu));
}

TEST_F(HelpText, KeysAreThoseOfTheMenus) {
  BuildForm1();
  std::map<std::string, std::string> shown;
  for (const std::string& row : Table("Keys")) shown[Cell(row, 0)] = Cell(row, 16);
  EXPECT_EQ(shown.erase("Alt+0 ... 9"), 1U);
  EXPECT_EQ(shown.erase("PgUp, PgDown"), 1U);
  std::map<std::string, std::string> built;
  for (const Command& command : Commands()) {
    if (command.key.empty() || !command.run || command.literal || command.menu.empty()) continue;
    built[command.key] = ReplaceAll(command.caption, "&", "");
  }
  EXPECT_EQ(shown, built);
}

// Every key of the table takes its value "at first" from it, and gets the program's own start value that way.
TEST_F(HelpText, SettingsAndTheirFirstValuesAreTheProgramsOwn) {
  const auto values = [] {
    return std::map<std::string, float>{{"PAPERWIDTH", PaperWidth},
                                        {"PAPERHEIGHT", PaperHeight},
                                        {"STARTX", STARTX},
                                        {"STARTY", STARTY},
                                        {"SCALE", SCALE},
                                        {"GRIDX", GridStepH},
                                        {"GRIDY", GridStepV},
                                        {"FONTNUMBER", BaseFont},
                                        {"FONTSIZE", FontSize},
                                        {"CURSORMODE", CursorMode},
                                        {"CURSORX", CursorX},
                                        {"CURSORY", CursorY},
                                        {"FORMLEFT", FormPlace.left},
                                        {"FORMTOP", FormPlace.top},
                                        {"FORMWIDTH", FormPlace.width},
                                        {"FORMHEIGHT", FormPlace.height}};
  };
  const auto start = values();
  std::set<std::string> known = {"PDIR", "GUIDEX", "GUIDEY"};
  for (const auto& [key, value] : start) known.insert(key);
  std::string settings;
  std::set<std::string> keys;
  const Lines rows = Table("Settings file");
  for (std::size_t i = 1; i < rows.size(); ++i) {
    const std::string key = Cell(rows[i], 0);
    const std::string first = Cell(rows[i], 14);
    keys.insert(key);
    if (!first.empty()) settings += key + " = " + first + "\r\n";
  }
  EXPECT_EQ(keys, known);
  PaperWidth = PaperHeight = STARTX = STARTY = SCALE = FontSize = CursorX = CursorY = 7;
  FormPlace = {7, 7, 7, 7};
  GridStepH = GridStepV = 5;
  BaseFont = CursorMode = 7;
  for (const auto& [key, value] : values()) EXPECT_NE(value, start.at(key)) << key;
  files.contents[ProgramFolder + "QRX.DAT"] = settings;
  ReadSettings(ProgramFolder + "QRX.DAT");
  EXPECT_EQ(values(), start);
}

// The signs that a typeface has and the manual should name: the keys, and for Symbol the codes behind them.
TEST_F(HelpText, TablesOfSymbolAndMath0NameEverySign) {
  std::multiset<std::string> symbol, math0;
  const Lines greek = Table("Symbol keyboard: Greek");
  for (std::size_t i = 1; i < greek.size(); ++i) symbol.insert({Cell(greek[i], 0), Cell(greek[i], 19)});
  for (const std::string& row : Table("Symbol keyboard: signs")) symbol.insert(row.substr(0, 1));
  for (const char* page : {"Symbol: codes 160 to 191", "Symbol: codes 192 to 223"}) {
    const Lines rows = Table(page);
    for (std::size_t i = 1; i < rows.size(); ++i) symbol.insert(Cell(rows[i], 0));
  }
  for (const char* page : {"Math0: operators", "Math0: brackets and roots", "Math0: arrows and bars",
                           "Math0: relations and logic", "Math0: letters and marks"}) {
    for (const std::string& row : Table(page)) math0.insert(Cell(row, 0));
  }
  std::multiset<std::string> ofSymbol, ofMath0 = {"space", "127"};
  for (int code = 33; code < 127; ++code) {
    const std::string key(1, static_cast<char>(code));
    ofMath0.insert(key);
    if (code < '0' || code > '9') ofSymbol.insert(key);
  }
  for (int code = 160; code < kFirstSwitchCode; ++code) ofSymbol.insert(std::to_string(code));
  EXPECT_EQ(symbol, ofSymbol);
  EXPECT_EQ(math0, ofMath0);
}

// One line of the manual for each macro that comes with the program, and no macro leaves a script open.
TEST_F(HelpText, ShippedMacrosAreListedAndWhole) {
  Lines keys;
  for (const std::string& row : Table("Macros", 1)) keys.push_back(Cell(row, 0));
  const Lines macros = LinesOf(Shipped("QRX.MCR"));
  ASSERT_EQ(macros.size(), keys.size());
  LoadShippedWidths();
  for (std::size_t i = 0; i < macros.size(); ++i) {
    EXPECT_EQ(keys[i], "Alt+" + std::to_string(i));
    const std::string behind = macros[i] + "\xE2x";
    EXPECT_NEAR(MeasureRun(behind, 2, 100) - MeasureRun(macros[i], 2, 100), MeasureRun("x", 2, 100), 0.01)
        << i;
  }
}

}  // namespace
}  // namespace kelvane
