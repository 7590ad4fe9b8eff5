#include "app/settings.h"

#include <tuple>

#include "app/startup.h"
#include "document/paper.h"
#include "editing/cursor.h"
#include "tests/support/program_test.h"
#include "typography/typefaces.h"
#include "typography/view.h"

namespace kelvane {
namespace {

const char kPath[] = "\\Kelvane\\QRX.DAT";

class SettingsTest : public ProgramTest {
 protected:
  void Read(const std::string& content) {
    files.contents[kPath] = content;
    ReadSettings(kPath);
  }
  std::string Rewritten(const std::string& content) {
    files.contents[kPath] = content;
    WriteSettings(kPath);
    return files.contents[kPath];
  }

  // Groups of settings, to be compared as one.
  static auto Paper() { return std::tuple(PaperFolder, PaperWidth, PaperHeight); }
  static auto View() { return std::tuple(STARTX, STARTY, SCALE, GridStepH, GridStepV); }
  static auto Guides() { return std::tuple(GuideX[0], GuideX[1], GuideX[2], GuideY[0], GuideY[1]); }
  static auto Cursor() { return std::tuple(BaseFont, FontSize, CursorMode, CursorX, CursorY); }
  static auto Form() { return std::tuple(FormPlace.left, FormPlace.top, FormPlace.width, FormPlace.height); }
  static auto All() { return std::tuple_cat(Paper(), View(), Guides(), Cursor(), Form()); }

  static constexpr char kWindowLines[] =
      "FormLeft = 30\r\nFormTop = 45.5\r\nFormWidth = 9600\r\nFormHeight = 7200\r\n";
};

TEST_F(SettingsTest, TheProgramFolder) {
  EXPECT_EQ(ResolveProgramFolder("\\opt\\kelvane"), "\\opt\\kelvane\\");
  EXPECT_EQ(ResolveProgramFolder("C:\\Tools\\VB98"), "C:\\Orrimond\\Kelvane\\");
  EXPECT_EQ(ResolveProgramFolder("C:\\Tools\\XVB98\\"), "C:\\Tools\\XVB98\\");
}

TEST_F(SettingsTest, EveryKeyHasItsPlaceAndIsReset) {
  const auto atStart = All();
  ReadSettings(kPath);
  EXPECT_EQ(All(), atStart) << "a missing file changes nothing";
  Read(
      "PDIR = C:\\My Papers\\\r\nPAPERWIDTH = 612\r\nPAPERHEIGHT=792.5\r\nSTARTX = 1\r\nSTARTY = -2\r\n"
      "scale=3\r\nGRIDX = 4\r\nGRIDY = 5\r\nGUIDEX = 72\r\n  GuideX  =  522  \r\nGUIDEY = 9\r\n"
      "FONTNUMBER = 12\r\nFONTSIZE = 9.5\r\nCURSORMODE = 9\r\nCURSORX = 6\r\nCURSORY = 7\r\n"
      "FormLeft = 1200\r\nFORMTOP = -15\r\nFORMWIDTH = 8000\r\nFORMHEIGHT = 6000");
  EXPECT_EQ(Paper(), std::tuple("C:\\My Papers\\", 612, 792.5F));
  EXPECT_EQ(View(), std::tuple(1, -2, 3, 4, 5));
  EXPECT_EQ(Guides(), std::tuple(72, 522, 0, 9, 0));
  EXPECT_EQ(Cursor(), std::tuple(12, 9.5F, 9, 6, 7));
  EXPECT_EQ(Form(), std::tuple(1200, -15, 8000, 6000));
  ResetProgram();
  EXPECT_EQ(All(), atStart);
}

TEST_F(SettingsTest, LinesWithoutAKeyAreSkipped) {
  Read("=5\r\nSCALE\r\n  = 7\r\n\r\nSCALES = 9\r\nno key at all\r\nSTARTX = 8\r\nSTARTX = 9\r\n");
  EXPECT_EQ(SCALE, kDefaultScale);
  EXPECT_EQ(STARTX, 9) << "the last one counts";
  Read("PDIR = A\r\nPDIR = ");
  EXPECT_EQ(PaperFolder, "");
  Read("PDIR = A = B");
  EXPECT_EQ(PaperFolder, "A = B");
  Read("STARTX = 1\nSTARTY = 2\rSCALE = 4");
  EXPECT_EQ(std::tie(STARTX, STARTY, SCALE), std::tuple(1, 2, 4)) << "lone line ends of other editors";
}

TEST_F(SettingsTest, TheSeventeenthGuideTakesTheLastPlace) {
  std::string lines;
  for (int i = 1; i <= 18; ++i) lines += "GUIDEY = " + std::to_string(i) + "\r\n";
  Read(lines);
  EXPECT_EQ(std::tie(GuideY[14], GuideY[15], GuideX[0]), std::tuple(15, 18, 0));
  Read("GUIDEX = 1e99\r\nGUIDEX = 5\r\n");
  EXPECT_EQ(std::tie(GuideX[0], GuideX[1]), std::tuple(0, 5)) << "ends the list";
}

TEST_F(SettingsTest, NumbersAreReadLenientlyAndTiesGoToEven) {
  Read("STARTX = none\r\nSTARTY = 12pt\r\nGRIDX = 2.5\r\nGRIDY = 3.5\r\nCURSORX = 1,5\r\n");
  EXPECT_EQ(std::tie(STARTX, STARTY, GridStepH, GridStepV, CursorX), std::tuple(0, 12, 2, 4, 1));
}

TEST_F(SettingsTest, ValuesThatWouldBreakTheEditorAreReplaced) {
  const auto atStart = All();
  for (const std::string number : {"0", "-1", "99999999", "1e300", "nothing"}) {
    Read("GRIDX=" + number + "\r\nGRIDY=" + number + "\r\nPAPERWIDTH=" + number +
         "\r\nPAPERHEIGHT=" + number + "\r\nSCALE=" + number + "\r\nFORMWIDTH=-3\r\nFORMHEIGHT=0\r\n");
    EXPECT_EQ(All(), atStart) << number;
  }
  Read("FONTNUMBER=16\r\nCURSORMODE=10\r\nSTARTX=1e39\r\nFONTSIZE=-1e39\r\nCURSORX=nan");
  EXPECT_EQ(All(), atStart);
  Read("PAPERWIDTH=14400");
  EXPECT_EQ(PaperWidth, 14400);
}

TEST_F(SettingsTest, AnUnreadableFileIsAFailure) {
  files.unreadable.insert(kPath);
  EXPECT_THROW(ReadSettings(kPath), Failure);
}

TEST_F(SettingsTest, ExitKeepsEveryOtherLineAsItIs) {
  FormPlace = {30, 45.5F, 9600, 7200};
  PaperFolder = "\\home\\u\\Papers\\";
  EXPECT_EQ(Rewritten("GRIDX = 4\r\nPDIR = A\r\nFormTop = 9\r\n"),
            "GRIDX = 4\r\nPdir = \\home\\u\\Papers\\\r\n" + std::string(kWindowLines));
  PaperFolder.clear();
  const std::string odd = "# no key\r\n\r\n=FormTop\n formtopping = 1\rSTARTX=\t5\r\n";
  EXPECT_EQ(Rewritten(odd + " formWIDTH=2"), odd + kWindowLines);
  EXPECT_EQ(Rewritten("last = line"), "last = line\r\n" + std::string(kWindowLines));
  EXPECT_EQ(Rewritten(odd + kWindowLines), odd + kWindowLines);
  files.FailStep(FileStep::Create);
  EXPECT_NO_THROW(WriteSettings(kPath)) << "nothing to be written";
  files.FailNothing();
  files.contents.erase(kPath);
  WriteSettings(kPath);
  EXPECT_EQ(files.contents[kPath], kWindowLines);
}

TEST_F(SettingsTest, WhatWasWrittenIsReadBack) {
  FormPlace = {-30, 0.25F, 12000, 9000};
  PaperFolder = "\\Papers\\";
  const auto written = All();
  WriteSettings(kPath);
  ResetProgram();
  ReadSettings(kPath);
  EXPECT_EQ(All(), written);
}

}  // namespace
}  // namespace kelvane
