#include "designer/character_files.h"

#include <bit>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "platform/failure.h"
#include "platform/files.h"
#include "tests/support/program_test.h"
#include "typography/glyphs.h"
#include "typography/typefaces.h"

namespace kelvane {
namespace {

std::string Name(int code) {
  return "/g" + std::to_string(code);
}

std::string ProcedureLine(int code) {
  return Name(code) + " {  0 0 moveto " + std::to_string(code) + " 0 rlineto st } def";
}

// A font definition as the shipped ones are laid out, with spacing of its own in the lines.
std::string FontText(const std::string& prefix) {
  std::string text = prefix + "\r\n/.notdef 0 def\r\n";
  for (int code = 32; code < 128; ++code) text += Name(code) + "   10  def\r\n";
  text += "end\r\n/.notdef [0 0 0 0] def\r\n";
  for (int code = 32; code < 128; ++code) text += Name(code) + " [ -2 -12 12 42 ] def\r\n";
  text += "/CharacterDefs 97 dict def\r\n/.notdef { } def\r\n";
  for (int code = 32; code < 128; ++code) text += ProcedureLine(code) + "\r\n";
  return text + "end % the rest\r\n/.notdef is no section any more\n/g65 stays\r\n";
}

std::string WidthText() {
  std::string text;
  for (int code = 32; code < 140; ++code) text += "0.2" + std::to_string(code) + "\r\n";
  return text;
}

std::string WithLine(const std::string& text, const std::string& oldLine, const std::string& newLine) {
  const std::size_t at = text.find(oldLine);
  EXPECT_NE(at, std::string::npos) << oldLine;
  return std::string(text).replace(at, oldLine.size(), newLine);
}

float SingleAt(const std::string& bytes, std::size_t index) {
  std::uint32_t bits = 0;
  for (std::size_t i = 4; i-- > 0;) bits = bits << 8 | static_cast<unsigned char>(bytes.at(index * 4 + i));
  return std::bit_cast<float>(bits);
}

const std::vector<std::string> kTriangle = {"5 40 15 40 25 40 20 30 15 20 10 30 5 40"};
constexpr char kTriangleText[] = "5 0 moveto 20 0 rlineto -10 20 rlineto -10 -20 rlineto fill";

class CharacterFilesTest : public ProgramTest {
 protected:
  CharacterFilesTest() {
    Content("MATH0.WT") = "old widths";
    Content("MATH0.TXT") = WidthText();
    Content("MATH0.PSF") = FontText("% font");
    Content("QRX.PRO") = FontText("%! prolog");
    TypefaceRecord& math = TypefaceTable[kFirstGlyphFont];
    math.WidthUnit = 0.6F;
    for (std::size_t code = 0; code < 256; ++code) math.Widths[code] = static_cast<float>(code) / 8;
    LoadCharacterDefs();
  }

  static std::string Path(const std::string& name) { return ProgramFolder + name; }
  std::string& Content(const std::string& name) { return files.contents[Path(name)]; }

  static void SaveTriangle() { SaveGlyph(65, kTriangle); }
};

TEST_F(CharacterFilesTest, LoadsTheTextBetweenTheBraces) {
  struct {
    std::size_t code;
    std::string line;
    std::string procedure;
  } const cases[] = {{32, "", "0 0 moveto 32 0 rlineto st"}, {33, "/g33 {     } def", ""},
                     {34, "/g34 no braces def", ""},         {35, "/g35 } 1 2 { def", ""},
                     {36, "/g36 {fill}{st} def", "fill"},    {127, "", "0 0 moveto 127 0 rlineto st"}};
  std::string& font = Content("MATH0.PSF");
  for (const auto& [code, line, procedure] : cases)
    if (!line.empty()) font = WithLine(font, ProcedureLine(static_cast<int>(code)), line);
  LoadCharacterDefs();
  for (const auto& [code, line, procedure] : cases) EXPECT_EQ(CharacterDefs[code - 32][0], procedure) << code;
  EXPECT_EQ(CharacterDefs[95][1], "");
}

TEST_F(CharacterFilesTest, RefusesAFontThatEndsTooSoonAndKeepsTheOldOne) {
  const std::string font = FontText("");
  for (const std::size_t end :
       {font.find(ProcedureLine(127)), font.find("/.notdef { }"), std::size_t{9}, {}}) {
    Content("MATH0.PSF") = font.substr(0, end);
    EXPECT_EQ(FailureOf(LoadCharacterDefs), "ERROR: MATH0.PSF file format") << end;
  }
  EXPECT_EQ(CharacterDefs[0][0], "0 0 moveto 32 0 rlineto st");

  // The 96th line may be the last one of the file.
  Content("MATH0.PSF") = font.substr(0, font.find("end % the rest"));
  LoadCharacterDefs();

  files.contents.erase(Path("MATH0.PSF"));
  EXPECT_EQ(FailureOf(LoadCharacterDefs), "ERROR: Missing file MATH0.PSF");
}

TEST_F(CharacterFilesTest, SavesOneCharacterAndKeepsEveryOtherByte) {
  // Sections may name a character differently, and line ends may be unusual.
  Content("MATH0.PSF") = WithLine(Content("MATH0.PSF"), "/g65 [", "/box65 [");
  Content("MATH0.TXT") = WithLine(Content("MATH0.TXT"), "0.265\r\n", "0.265\n");
  Content("MATH0.TXT").resize(Content("MATH0.TXT").size() - 2);
  for (const int code : {32, 65, 127}) {
    const std::string digits = std::to_string(code);
    auto expected = files.contents;
    for (const char* name : {"MATH0.PSF", "QRX.PRO"}) {
      std::string& font = expected[Path(name)];
      font = WithLine(font, Name(code) + "   10  def", Name(code) + " 30 def");
      font = WithLine(font, digits + " [ -2 -12 12 42 ] def", digits + " [-2 -12 32 42] def");
      font = WithLine(font, ProcedureLine(code), Name(code) + " { " + kTriangleText + " } def");
    }
    expected[Path("MATH0.TXT")] = WithLine(Content("MATH0.TXT"), "0.2" + digits, "0.600000");
    SaveGlyph(static_cast<std::int16_t>(code), kTriangle);
    expected[Path("MATH0.WT")] = Content("MATH0.WT");
    EXPECT_EQ(files.contents, expected) << code;
    EXPECT_EQ(CharacterDefs[code - 32][0], kTriangleText);
  }
  LoadCharacterDefs();
  EXPECT_EQ(CharacterDefs[65 - 32][0], kTriangleText);
  EXPECT_EQ(CharacterDefs[66 - 32][0], "0 0 moveto 66 0 rlineto st");
}

TEST_F(CharacterFilesTest, WritesTheWidthTableFromMemory) {
  files.contents.erase(Path("MATH0.WT"));
  SaveGlyph(65, {"4 40 14 40 25 40"});
  EXPECT_EQ(TypefaceTable[kFirstGlyphFont].Widths[65], 0.58F);
  const std::string table = Content("MATH0.WT");
  ASSERT_EQ(table.size(), 1024U);
  for (const auto& [index, value] :
       {std::pair(0U, 0.6F), {1U, 0.125F}, {65U, 0.58F}, {66U, 8.25F}, {255U, 31.875F}})
    EXPECT_EQ(SingleAt(table, index), value) << index;
}

TEST_F(CharacterFilesTest, RefusesDamagedFilesAndCodesWithoutGlyphBeforeWritingAny) {
  const std::string font = FontText("");
  constexpr char kMissing[] = "missing";
  const std::pair<const char*, std::string> damages[] = {
      {"MATH0.TXT", "0.5\r\n0.5\r\n"},
      {"MATH0.PSF", font.substr(0, font.find("/CharacterDefs"))},
      {"MATH0.PSF", font.substr(0, font.find("/g127 {"))},
      // 95 lines in a section: the line of every later code is that of its neighbour.
      {"QRX.PRO", WithLine(font, "/g40   10  def\r\n", "")},
      {"QRX.PRO", WithLine(font, "/g40 [ -2 -12 12 42 ] def\r\n", "")},
      {"QRX.PRO", ""},
      {"MATH0.TXT", kMissing},
      {"MATH0.PSF", kMissing},
      {"QRX.PRO", kMissing},
  };
  const auto whole = files.contents;
  for (const auto& [name, content] : damages) {
    SCOPED_TRACE(name + (": " + content.substr(0, 40)));
    Content(name) = content;
    if (content == kMissing) files.contents.erase(Path(name));
    const auto before = files.contents;
    const std::string message = FailureOf(SaveTriangle);
    EXPECT_NE(message.find(name), std::string::npos) << message;
    EXPECT_EQ(files.contents, before);
    files.contents = whole;
  }
  for (const std::int16_t code : {31, 128, -1}) EXPECT_THROW(SaveGlyph(code, kTriangle), Failure) << code;
  EXPECT_EQ(files.contents, whole);
  EXPECT_EQ(CharacterDefs[65 - 32][0], "0 0 moveto 65 0 rlineto st");
  EXPECT_EQ(TypefaceTable[kFirstGlyphFont].Widths[65], 65.0F / 8);
}

// Renaming can fail after the new file is in place: the folder could not be synced.
class LateFailingFiles : public MemoryFiles {
 public:
  std::string failingPath;
  void Rename(const std::string& from, const std::string& to) override {
    MemoryFiles::Rename(from, to);
    if (to != failingPath) return;
    failingPath.clear();
    throw Failure("Cannot sync the folder of the file " + to);
  }
};

TEST_F(CharacterFilesTest, PutsBackAFileWhoseRenamingFailedTooLate) {
  for (const char* name : {"MATH0.WT", "QRX.PRO"}) {
    LateFailingFiles lateFiles;
    lateFiles.contents = files.contents;
    lateFiles.failingPath = Path(name);
    TheFiles = &lateFiles;
    const std::string message = FailureOf(SaveTriangle);
    TheFiles = &files;
    EXPECT_EQ(message.find("could not be put back"), std::string::npos) << message;
    EXPECT_EQ(lateFiles.contents, files.contents) << name;
  }
}

}  // namespace
}  // namespace kelvane
