// The help text QRX.HLP: in good form for the program's own index, and its tables as the program has them.

#include <cstdlib>
#include <map>
#include <set>

#include "app/main_window.h"
#include "app/menus.h"
#include "app/settings.h"
#include "document/fields.h"
#include "document/lines.h"
#include "editing/cursor.h"
#include "help/help_files.h"
#include "tests/support/program_test.h"
#include "typography/colours.h"
#include "typography/metrics.h"
#include "typography/typefaces.h"
#include "typography/view.h"

namespace kelvane {
namespace {

constexpr std::size_t kWidestTable = 76;  // columns of the viewer's fixed-pitch face
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

  // The rows of table `number` (from 0) of the page with that heading.
  Lines Table(const std::string& heading, int number = 0) {
    Lines rows;
    bool onPage = false;
    int table = -1;
    bool inside = false;
    for (const std::string& line : LinesOf(text)) {
      if (line.starts_with("<H1>")) onPage = line == "<H1>" + heading + "</H1>";
      if (line == "</TABLE>") inside = false;
      if (onPage && inside && table == number) rows.push_back(line);
      if (line == "<TABLE>") {
        inside = true;
        if (onPage) ++table;
      }
    }
    EXPECT_FALSE(rows.empty()) << "No table " << number << " on the page " << heading;
    return rows;
  }

  std::string text;
};

TEST_F(HelpText, IsInGoodForm) {
  EXPECT_EQ(text.find_first_of(std::string("\0\t", 2)), std::string::npos);
  const auto count = [&](std::string_view what) {
    int found = 0;
    for (std::size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + 1)) ++found;
    return found;
  };
  EXPECT_EQ(count("\r\n"), count("\n"));
  EXPECT_EQ(count("\r\n"), count("\r"));
  std::string open;  // the tag that is to be closed next; pages hold tables
  bool headingDue = false;
  int number = 0;
  for (const std::string& line : LinesOf(text)) {
    SCOPED_TRACE("line " + std::to_string(++number) + ": " + line);
    EXPECT_LE(line.size(), open == "</TABLE>" ? kWidestTable : kWidestText);
    EXPECT_TRUE(!headingDue || (line.starts_with("<H1>") && line.ends_with("</H1>")));
    headingDue = line == "<PAGE>";
    if (line == "<PAGE>") {
      EXPECT_EQ(open, "");
      open = "</PAGE>";
    } else if (line == "<TABLE>") {
      EXPECT_EQ(open, "</PAGE>");
      open = "</TABLE>";
    } else if (line == "</TABLE>" || line == "</PAGE>") {
      EXPECT_EQ(open, line);
      open = line == "</TABLE>" ? "</PAGE>" : "";
    } else {
      EXPECT_NE(open, "") << "Text outside of a page";
      EXPECT_EQ(line.find("PAGE>"), std::string::npos);
      EXPECT_EQ(line.find("TABLE>"), std::string::npos);
    }
  }
  EXPECT_EQ(open, "");
}

TEST_F(HelpText, ProgramFindsEveryPageUnderItsHeading) {
  IndexHelpFile();
  std::size_t pages = 0;
  std::set<std::string> headings;
  for (const std::string& line : LinesOf(files.contents[ProgramFolder + "QRX.HCT"])) {
    if (line.starts_with("<H1 #")) {
      ++pages;
      EXPECT_TRUE(line.starts_with("<H1 #" + std::to_string(pages) + ">")) << line;
      EXPECT_TRUE(headings.insert(line.substr(line.find('>'))).second)
          << "Two pages have the heading " << line;
    }
  }
  EXPECT_EQ(HelpPageStarts.size(), pages);
  EXPECT_GE(pages, 30U);
  for (const std::int64_t start : HelpPageStarts)
    EXPECT_EQ(text.substr(static_cast<std::size_t>(start), 8), "<PAGE>\r\n");
}

TEST_F(HelpText, TypefacesAnchorsAndScriptsAreThoseOfTheWindow) {
  BuildForm1();
  const Lines faces = Table("Typefaces");
  ASSERT_EQ(faces.size(), static_cast<std::size_t>(kTypefaces) + 1);
  for (std::size_t font = 0; font < kTypefaces; ++font) {
    EXPECT_EQ(Cell(faces[font + 1], 0), std::to_string(font));
    EXPECT_EQ(Cell(faces[font + 1], 5), FontMenu[font]->Caption());
  }
  const Lines anchors = Table("Anchors");
  ASSERT_EQ(anchors.size(), 10U);
  for (std::size_t mode = 1; mode <= 9; ++mode) {
    EXPECT_EQ(Cell(anchors[mode], 0), std::to_string(mode));
    EXPECT_EQ(Cell(anchors[mode], 5), static_cast<FakeButton*>(AnchorButtons[mode])->caption);
  }
  const Lines scripts = Table("Superscripts and subscripts");
  ASSERT_EQ(scripts.size(), 13U);
  for (std::size_t i = 0; i < 12; ++i) {
    EXPECT_EQ(Cell(scripts[i + 1], 0), std::to_string(240 + i));
    EXPECT_EQ(Cell(scripts[i + 1], 6), static_cast<FakeButton*>(Form1Parts.scripts[i])->caption);
  }
}

TEST_F(HelpText, ColoursAndThicknessesAreThoseOfTheMenus) {
  BuildForm1();
  const Lines colours = Table("Line colours and thicknesses");
  ASSERT_EQ(colours.size(), 9U);
  for (std::size_t i = 0; i < 8; ++i) {
    EXPECT_EQ(Cell(colours[i + 1], 0), std::to_string(i));
    EXPECT_EQ(Cell(colours[i + 1], 5), ColourMenu[i]->Caption());
    EXPECT_EQ(Cell(colours[i + 1], 21), std::to_string(i + 8));
    EXPECT_EQ(Cell(colours[i + 1], 26), ColourMenu[i + 8]->Caption());
  }
  const Lines thicknesses = Table("Line colours and thicknesses", 1);
  ASSERT_EQ(thicknesses.size(), kThicknesses.size() + 1);
  for (std::size_t i = 0; i < kThicknesses.size(); ++i)
    EXPECT_EQ(Cell(thicknesses[i + 1], 0), ThicknessMenu[i]->Caption());
}

TEST_F(HelpText, KeysAreThoseOfTheMenus) {
  BuildForm1();
  std::map<std::string, std::string> shown;
  for (const std::string& row : Table("Keys")) shown[Cell(row, 0)] = Cell(row, 16);
  EXPECT_EQ(shown.erase("Alt+0 ... 9"), 1U);
  EXPECT_EQ(shown.erase("PgUp, PgDown"), 1U);
  std::map<std::string, std::string> built;
  for (const BuiltEntry& entry : BuiltMenus()) {
    if (entry.key.empty() || !entry.available || entry.name.starts_with("mMacro")) continue;
    built[entry.key] = ReplaceAll(entry.caption, "&", "");
  }
  EXPECT_EQ(shown, built);
}

// Every key of the table takes its value "at first" from it, and gets the program's own start value that way.
TEST_F(HelpText, SettingsAndTheirFirstValuesAreTheProgramsOwn) {
  struct Value {
    const char* key;
    float (*get)();
    void (*spoil)();
  };
  const Value values[] = {
      {"PAPERWIDTH", [] { return PaperWidth; }, [] { PaperWidth = 7; }},
      {"PAPERHEIGHT", [] { return PaperHeight; }, [] { PaperHeight = 7; }},
      {"STARTX", [] { return STARTX; }, [] { STARTX = 7; }},
      {"STARTY", [] { return STARTY; }, [] { STARTY = 7; }},
      {"SCALE", [] { return SCALE; }, [] { SCALE = 7; }},
      {"GRIDX", [] { return static_cast<float>(GridStepH); }, [] { GridStepH = 5; }},
      {"GRIDY", [] { return static_cast<float>(GridStepV); }, [] { GridStepV = 5; }},
      {"FONTNUMBER", [] { return static_cast<float>(BaseFont); }, [] { BaseFont = 7; }},
      {"FONTSIZE", [] { return FontSize; }, [] { FontSize = 7; }},
      {"CURSORMODE", [] { return static_cast<float>(CursorMode); }, [] { CursorMode = 7; }},
      {"CURSORX", [] { return CursorX; }, [] { CursorX = 7; }},
      {"CURSORY", [] { return CursorY; }, [] { CursorY = 7; }},
      {"FORMLEFT", [] { return FormPlace.left; }, [] { FormPlace.left = 7; }},
      {"FORMTOP", [] { return FormPlace.top; }, [] { FormPlace.top = 7; }},
      {"FORMWIDTH", [] { return FormPlace.width; }, [] { FormPlace.width = 7; }},
      {"FORMHEIGHT", [] { return FormPlace.height; }, [] { FormPlace.height = 7; }},
  };
  std::string settings;
  std::set<std::string> keys;
  const Lines rows = Table("Settings file");
  for (std::size_t i = 1; i < rows.size(); ++i) {
    const std::string key = Cell(rows[i], 0);
    const std::string first = Cell(rows[i], 14);
    keys.insert(key);
    if (!first.empty()) settings += key + " = " + first + "\r\n";
  }
  std::set<std::string> known = {"PDIR", "GUIDEX", "GUIDEY"};
  std::map<std::string, float> start;
  for (const Value& value : values) {
    known.insert(value.key);
    start[value.key] = value.get();
    value.spoil();
  }
  EXPECT_EQ(keys, known);
  files.contents[ProgramFolder + "QRX.DAT"] = settings;
  ReadSettings(ProgramFolder + "QRX.DAT");
  for (const Value& value : values) EXPECT_EQ(value.get(), start[value.key]) << value.key;
}

TEST_F(HelpText, SymbolTablesHaveEveryCharacterOfTheTypeface) {
  std::set<int> shown;
  const auto show = [&](const std::string& key) {
    ASSERT_EQ(key.size(), 1U) << key;
    EXPECT_TRUE(shown.insert(static_cast<unsigned char>(key[0])).second) << key;
  };
  const Lines greek = Table("Symbol keyboard: Greek");
  for (std::size_t i = 1; i < greek.size(); ++i) {
    show(Cell(greek[i], 0));
    show(Cell(greek[i], 19));
  }
  for (const std::string& row : Table("Symbol keyboard: signs")) show(row.substr(0, 1));
  for (const char* page : {"Symbol: codes 160 to 191", "Symbol: codes 192 to 223"}) {
    const Lines rows = Table(page);
    for (std::size_t i = 1; i < rows.size(); ++i) {
      const int code = std::atoi(rows[i].c_str());
      shown.insert(code);
      const std::string typed = Cell(rows[i], 6);
      EXPECT_TRUE(typed.size() > 1 || static_cast<unsigned char>(typed[0]) == code) << rows[i];
    }
  }
  std::set<int> inTypeface;
  for (const TypefaceRecord& face : TypefaceTable) {
    if (!face.Name.empty()) files.contents[ProgramFolder + face.Name + ".WT"] = Shipped(face.Name + ".WT");
  }
  LoadWidthTables();
  for (int code = 33; code < kFirstSwitchCode; ++code) {
    const bool digit = code >= '0' && code <= '9';
    const bool outsideEncoding = code > 126 && code < 160;
    if (!digit && !outsideEncoding && TypefaceTable[8].Widths[static_cast<std::size_t>(code)] > 0)
      inTypeface.insert(code);
  }
  EXPECT_EQ(shown, inTypeface);
}

TEST_F(HelpText, Math0TablesNameTheGlyphsOfTheFont) {
  std::map<std::string, std::string> shown;
  for (const char* page : {"Math0: operators", "Math0: brackets and roots", "Math0: arrows and bars",
                           "Math0: relations and logic", "Math0: letters and marks"}) {
    for (const std::string& row : Table(page)) shown[Cell(row, 0)] = Cell(row, 11);
  }
  std::map<std::string, std::string> inFont;
  int code = 0;
  for (const std::string& line : LinesOf(Shipped("MATH0.PSF"))) {
    if (line.starts_with("/.notdef")) {
      code = 32;
    } else if (code >= 32 && code < 128) {
      const std::string key = code == 32    ? "space"
                              : code == 127 ? "Ctrl+Bksp"
                                            : std::string(1, static_cast<char>(code));
      inFont[key] = GetField(line, 1, " ").substr(1);
      if (++code == 128) break;  // the names of the first section are those of all
    }
  }
  EXPECT_EQ(shown, inFont);
}

}  // namespace
}  // namespace kelvane
