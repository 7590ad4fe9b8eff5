#include "designer/character_files.h"

#include <gtest/gtest.h>

#include <bit>
#include <cstdint>
#include <string>
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

// A font definition as the shipped ones are laid out, with spacing of its own in the lines.
std::string FontText(const std::string& prefix) {
  std::string text = prefix + "\r\n/.notdef 0 def\r\n";
  for (int code = 32; code < 128; ++code) text += Name(code) + "   10  def\r\n";
  text += "end\r\n/.notdef [0 0 0 0] def\r\n";
  for (int code = 32; code < 128; ++code) text += Name(code) + " [ -2 -12 12 42 ] def\r\n";
  text += "/CharacterDefs 97 dict def\r\n/.notdef { } def\r\n";
  for (int code = 32; code < 128; ++code) {
    text += Name(code) + " {  0 0 moveto " + std::to_string(code) + " 0 rlineto st } def\r\n";
  }
  return text + "end % the rest\r\n/.notdef is no section any more\n/g65 stays\r\n";
}

std::string WidthText() {
  std::string text;
  for (int code = 32; code < 140; ++code) text += "0.2" + std::to_string(code) + "\r\n";
  return text;
}

std::string WithoutLine(const std::string& text, const std::string& line) {
  const std::size_t at = text.find(line);
  EXPECT_NE(at, std::string::npos) << line;
  return std::string(text).erase(at, line.size());
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
    files.contents[Path("MATH0.WT")] = "old widths";
    files.contents[Path("MATH0.TXT")] = WidthText();
    files.contents[Path("MATH0.PSF")] = FontText("% font");
    files.contents[Path("QRX.PRO")] = FontText("%! prolog");
    TypefaceRecord& math = TypefaceTable[kFirstGlyphFont];
    math.WidthUnit = 0.6F;
    for (std::size_t code = 0; code < 256; ++code) math.Widths[code] = static_cast<float>(code) / 8;
    LoadCharacterDefs();
  }

  static std::string Path(const std::string& name) { return ProgramFolder + name; }
  std::string Content(const std::string& name) { return files.contents.at(Path(name)); }

  // The four files' contents one after the other.
  std::string AllFiles() {
    return Content("MATH0.WT") + Content("MATH0.TXT") + Content("MATH0.PSF") + Content("QRX.PRO");
  }
};

TEST_F(CharacterFilesTest, LoadsTheTextBetweenTheBraces) {
  std::string font = FontText("");
  font = WithLine(font, "/g33 {  0 0 moveto 33 0 rlineto st } def", "/g33 {     } def");
  font = WithLine(font, "/g34 {  0 0 moveto 34 0 rlineto st } def", "/g34 no braces def");
  font = WithLine(font, "/g35 {  0 0 moveto 35 0 rlineto st } def", "/g35 } 1 2 { def");
  font = WithLine(font, "/g36 {  0 0 moveto 36 0 rlineto st } def", "/g36 {fill}{st} def");
  files.contents[Path("MATH0.PSF")] = font;
  LoadCharacterDefs();
  EXPECT_EQ(CharacterDefs[0][0], "0 0 moveto 32 0 rlineto st");
  EXPECT_EQ(CharacterDefs[1][0], "");
  EXPECT_EQ(CharacterDefs[2][0], "");
  EXPECT_EQ(CharacterDefs[3][0], "");
  EXPECT_EQ(CharacterDefs[4][0], "fill");
  EXPECT_EQ(CharacterDefs[95][0], "0 0 moveto 127 0 rlineto st");
  EXPECT_EQ(CharacterDefs[95][1], "");
}

TEST_F(CharacterFilesTest, RefusesAFontThatEndsTooSoonAndKeepsTheOldOne) {
  const auto messageFor = [&](const std::string& font) -> std::string {
    files.contents[Path("MATH0.PSF")] = font;
    return FailureOf(LoadCharacterDefs);
  };
  const std::string font = FontText("");
  const std::size_t rest = font.find("end % the rest");
  const std::string lastLine = "/g127 {  0 0 moveto 127 0 rlineto st } def\r\n";
  EXPECT_EQ(messageFor(font.substr(0, rest - lastLine.size())), "ERROR: MATH0.PSF file format");
  EXPECT_EQ(messageFor(font.substr(0, font.find("/.notdef { }"))), "ERROR: MATH0.PSF file format");
  EXPECT_EQ(messageFor("no marker\r\n"), "ERROR: MATH0.PSF file format");
  EXPECT_EQ(messageFor(""), "ERROR: MATH0.PSF file format");
  EXPECT_EQ(CharacterDefs[0][0], "0 0 moveto 32 0 rlineto st");

  // The 96th line may be the last one of the file.
  files.contents[Path("MATH0.PSF")] = font.substr(0, rest);
  LoadCharacterDefs();

  files.contents.erase(Path("MATH0.PSF"));
  EXPECT_EQ(FailureOf(LoadCharacterDefs), "ERROR: Missing file MATH0.PSF");
}

struct GlyphCase {
  std::vector<std::string> strokes;
  std::string text;
  float width;
};

TEST(BuildGlyphTest, TurnsStrokesIntoPathOperators) {
  const std::string open = "10 20 12 25 20 30";
  const std::string closed = "0 40 0 30 10 30 5 40 0 40";
  const std::vector<GlyphCase> cases = {
      {kTriangle, kTriangleText, 30},
      // Nothing to draw: an em wide.
      {{}, " st", 50},
      {{"", "1 2 3 4"}, " st", 50},
      // The control point is on the line but not midway; it does not widen the glyph either.
      {{"0 40 30 40 40 40"}, "0 0 moveto 30 0 40 0 rp st", 40},
      {{"10 42.5 45 40 20 39.75"}, "10 -2.5 moveto 35 2.5 10 2.75 rp st", 30},
      {{"-4 40 -2 40 0 40"}, "-4 0 moveto 4 0 rlineto st", -4},
      // A field is missing and counts as 0.
      {{"10 20 15 20 20"}, "10 20 moveto 5 0 10 20 rp st", 30},
      // The last stroke that counts decides how the glyph is painted.
      {{closed, open}, "0 0 moveto 0 10 10 10 rp -5 -10 -10 -10 rp 10 20 moveto 2 -5 10 -10 rp st", 20},
      {{open, closed, "1 2 3 4"},
       "10 20 moveto 2 -5 10 -10 rp 0 0 moveto 0 10 10 10 rp -5 -10 -10 -10 rp fill",
       20},
  };
  for (const GlyphCase& glyphCase : cases) {
    const GlyphProcedure glyph = BuildGlyph(glyphCase.strokes);
    EXPECT_EQ(glyph.text, glyphCase.text);
    EXPECT_EQ(glyph.width, glyphCase.width) << glyphCase.text;
  }
}

TEST_F(CharacterFilesTest, SavesOneCharacterAndKeepsEveryOtherByte) {
  for (const int code : {32, 65, 127}) {
    const std::string digits = std::to_string(code);
    const auto saved = [&](std::string font) {
      font = WithLine(font, Name(code) + "   10  def", Name(code) + " 30 def");
      font = WithLine(font, Name(code) + " [ -2 -12 12 42 ] def", Name(code) + " [-2 -12 32 42] def");
      return WithLine(font, Name(code) + " {  0 0 moveto " + digits + " 0 rlineto st } def",
                      Name(code) + " { " + kTriangleText + " } def");
    };
    const std::string widths = WithLine(Content("MATH0.TXT"), "0.2" + digits + "\r\n", "0.600000\r\n");
    const std::string font = saved(Content("MATH0.PSF"));
    const std::string prolog = saved(Content("QRX.PRO"));
    SaveGlyph(static_cast<std::int16_t>(code), kTriangle);
    EXPECT_EQ(Content("MATH0.TXT"), widths);
    EXPECT_EQ(Content("MATH0.PSF"), font);
    EXPECT_EQ(Content("QRX.PRO"), prolog);
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
  EXPECT_EQ(SingleAt(table, 0), 0.6F);
  EXPECT_EQ(SingleAt(table, 1), 0.125F);
  EXPECT_EQ(SingleAt(table, 65), 0.58F);
  EXPECT_EQ(SingleAt(table, 66), 8.25F);
  EXPECT_EQ(SingleAt(table, 255), 31.875F);
}

TEST_F(CharacterFilesTest, KeepsUnusualLineEnds) {
  std::string widths = WidthText();
  widths = WithLine(widths, "0.265\r\n", "0.265\n");
  widths.resize(widths.size() - 2);
  files.contents[Path("MATH0.TXT")] = widths;
  SaveGlyph(65, kTriangle);
  EXPECT_EQ(Content("MATH0.TXT"), WithLine(widths, "0.265\n", "0.600000\n"));
}

TEST_F(CharacterFilesTest, RefusesDamagedFilesBeforeWritingAny) {
  struct Damage {
    std::string file;
    std::string content;
  };
  const std::string font = FontText("");
  const std::vector<Damage> damages = {
      {"MATH0.TXT", "0.5\r\n0.5\r\n"},
      {"MATH0.PSF", font.substr(0, font.find("/CharacterDefs"))},
      {"MATH0.PSF", font.substr(0, font.find("/g127 {"))},
      // 95 lines in a section: the line of every later code is that of its neighbour.
      {"QRX.PRO", WithoutLine(font, "/g40   10  def\r\n")},
      {"QRX.PRO", WithoutLine(font, "/g40 [ -2 -12 12 42 ] def\r\n")},
      {"QRX.PRO", ""},
  };
  for (const Damage& damage : damages) {
    const std::string whole = Content(damage.file);
    files.contents[Path(damage.file)] = damage.content;
    const std::string before = AllFiles();
    const std::string message = FailureOf([] { SaveGlyph(65, kTriangle); });
    EXPECT_NE(message.find(damage.file), std::string::npos) << message;
    EXPECT_EQ(AllFiles(), before);
    files.contents[Path(damage.file)] = whole;
  }
  for (const char* name : {"MATH0.TXT", "MATH0.PSF", "QRX.PRO"}) {
    const std::string whole = Content(name);
    files.contents.erase(Path(name));
    EXPECT_THROW(SaveGlyph(65, kTriangle), Failure) << name;
    EXPECT_FALSE(TheFiles->Exists(Path(name))) << name;
    files.contents[Path(name)] = whole;
  }
  EXPECT_EQ(Content("MATH0.WT"), "old widths");
  EXPECT_EQ(CharacterDefs[65 - 32][0], "0 0 moveto 65 0 rlineto st");
  EXPECT_EQ(TypefaceTable[kFirstGlyphFont].Widths[65], 65.0F / 8);
}

TEST_F(CharacterFilesTest, KeepsTheNameThatEachSectionGives) {
  const std::string font = FontText("");
  files.contents[Path("MATH0.PSF")] = WithLine(font, "/g65 [", "/box65 [");
  SaveGlyph(65, kTriangle);
  EXPECT_NE(Content("MATH0.PSF").find("\r\n/g65 30 def\r\n"), std::string::npos);
  EXPECT_NE(Content("MATH0.PSF").find("\r\n/box65 [-2 -12 32 42] def\r\n"), std::string::npos);
}

TEST_F(CharacterFilesTest, RefusesCodesThatHaveNoGlyph) {
  const std::string before = AllFiles();
  for (const std::int16_t code : {31, 128, -1}) EXPECT_THROW(SaveGlyph(code, kTriangle), Failure) << code;
  EXPECT_EQ(AllFiles(), before);
}

// A single failing step, at each place of the save in turn, leaves all four files and the memory as they
// were.
TEST_F(CharacterFilesTest, KeepsTheFourFilesInStepWhenAStepFails) {
  const auto before = files.contents;
  files.FailAnyStep(0);
  SaveGlyph(66, kTriangle);
  const int steps = files.steps;
  ASSERT_GE(steps, 20);  // each file is read, made, written, closed and renamed
  files.contents = before;
  for (int step = 1; step <= steps; ++step) {
    files.FailAnyStep(step);
    const std::string message = FailureOf([] { SaveGlyph(65, kTriangle); });
    files.FailNothing();
    EXPECT_TRUE(message.find("MATH0.") != std::string::npos || message.find("QRX.") != std::string::npos)
        << message;
    EXPECT_EQ(message.find("could not be put back"), std::string::npos) << message;
    EXPECT_EQ(files.contents, before) << "step " << step;
    EXPECT_EQ(CharacterDefs[65 - 32][0], "0 0 moveto 65 0 rlineto st");
    EXPECT_EQ(TypefaceTable[kFirstGlyphFont].Widths[65], 65.0F / 8);
  }
}

// Renaming can fail after the new file is in place: the folder could not be synced.
class LateFailingFiles : public MemoryFiles {
 public:
  std::string failingPath;
  void Rename(const std::string& from, const std::string& to) override {
    MemoryFiles::Rename(from, to);
    if (to == failingPath) {
      failingPath.clear();
      throw Failure("Cannot sync the folder of the file " + to);
    }
  }
};

TEST_F(CharacterFilesTest, PutsBackAFileWhoseRenamingFailedTooLate) {
  for (const char* name : {"MATH0.WT", "QRX.PRO"}) {
    LateFailingFiles lateFiles;
    lateFiles.contents = files.contents;
    lateFiles.failingPath = Path(name);
    TheFiles = &lateFiles;
    FailureOf([] { SaveGlyph(65, kTriangle); });
    TheFiles = &files;
    EXPECT_EQ(lateFiles.contents, files.contents) << name;
  }
}

// A disk that fails for good leaves each file whole, and the person hears which ones are out of step.
TEST_F(CharacterFilesTest, NamesTheFilesThatCannotBePutBack) {
  const auto before = files.contents;
  files.FailAnyStep(0);
  SaveGlyph(65, kTriangle);
  const int steps = files.steps;
  const auto after = files.contents;
  files.contents = before;
  files.FailAnyStep(steps, true);  // the last step, renaming QRX.PRO
  const std::string message = FailureOf([] { SaveGlyph(65, kTriangle); });
  files.FailNothing();
  EXPECT_NE(message.find("could not be put back"), std::string::npos) << message;
  for (const char* name : {"MATH0.WT", "MATH0.TXT", "MATH0.PSF"}) {
    EXPECT_EQ(Content(name), after.at(Path(name))) << name;
    EXPECT_NE(message.find(name), std::string::npos) << message;
  }
  EXPECT_EQ(Content("QRX.PRO"), before.at(Path("QRX.PRO")));
}

}  // namespace
}  // namespace kelvane
