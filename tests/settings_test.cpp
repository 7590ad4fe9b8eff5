#include "app/settings.h"

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

  static constexpr char kWindowLines[] =
      "FormLeft = 30\r\nFormTop = 45.5\r\nFormWidth = 9600\r\nFormHeight = 7200\r\n";
};

TEST_F(SettingsTest, EveryKeyHasItsPlace) {
  Read(
      "PDIR = C:\\My Papers\\\r\nPAPERWIDTH = 612\r\nPAPERHEIGHT=792.5\r\nSTARTX = 1\r\nSTARTY = -2\r\n"
      "scale=3\r\nGRIDX = 4\r\nGRIDY = 5\r\nGUIDEX = 72\r\n  GuideX  =  522  \r\nGUIDEY = 9\r\n"
      "FONTNUMBER = 12\r\nFONTSIZE = 9.5\r\nCURSORMODE = 9\r\nCURSORX = 6\r\nCURSORY = 7\r\n"
      "FormLeft = 1200\r\nFORMTOP = -15\r\nFORMWIDTH = 8000\r\nFORMHEIGHT = 6000");
  EXPECT_EQ(PaperFolder, "C:\\My Papers\\");
  EXPECT_EQ(PaperWidth, 612);
  EXPECT_EQ(PaperHeight, 792.5F);
  EXPECT_EQ(STARTX, 1);
  EXPECT_EQ(STARTY, -2);
  EXPECT_EQ(SCALE, 3);
  EXPECT_EQ(GridStepH, 4);
  EXPECT_EQ(GridStepV, 5);
  EXPECT_EQ(GuideX[0], 72);
  EXPECT_EQ(GuideX[1], 522);
  EXPECT_EQ(GuideX[2], 0);
  EXPECT_EQ(GuideY[0], 9);
  EXPECT_EQ(BaseFont, 12);
  EXPECT_EQ(FontSize, 9.5F);
  EXPECT_EQ(CursorMode, 9);
  EXPECT_EQ(CursorX, 6);
  EXPECT_EQ(CursorY, 7);
  EXPECT_EQ(FormPlace.left, 1200);
  EXPECT_EQ(FormPlace.top, -15);
  EXPECT_EQ(FormPlace.width, 8000);
  EXPECT_EQ(FormPlace.height, 6000);
}

TEST_F(SettingsTest, LinesWithoutAKeyAreSkipped) {
  Read("=5\r\nSCALE\r\n  = 7\r\n\r\nSCALES = 9\r\nno key at all\r\nSTARTX = 8\r\nSTARTX = 9\r\n");
  EXPECT_EQ(SCALE, kDefaultScale);
  EXPECT_EQ(STARTX, 9);  // the last one counts
  Read("PDIR = A\r\nPDIR = ");
  EXPECT_EQ(PaperFolder, "");
  Read("PDIR = A = B");
  EXPECT_EQ(PaperFolder, "A = B");
  // Lone line ends, as other systems' editors leave them.
  Read("STARTX = 1\nSTARTY = 2\rSCALE = 4");
  EXPECT_EQ(STARTY, 2);
  EXPECT_EQ(SCALE, 4);
}

TEST_F(SettingsTest, TheSeventeenthGuideTakesTheLastPlace) {
  std::string lines;
  for (int i = 1; i <= 18; ++i) lines += "GUIDEY = " + std::to_string(i) + "\r\n";
  Read(lines);
  EXPECT_EQ(GuideY[14], 15);
  EXPECT_EQ(GuideY[15], 18);
  EXPECT_EQ(GuideX[0], 0);
}

TEST_F(SettingsTest, NumbersAreReadLeniently) {
  Read("STARTX = none\r\nSTARTY = 12pt\r\nGRIDX = 2.5\r\nGRIDY = 3.5\r\nCURSORX = 1,5\r\n");
  EXPECT_EQ(STARTX, 0);
  EXPECT_EQ(STARTY, 12);
  EXPECT_EQ(GridStepH, 2);  // ties to even
  EXPECT_EQ(GridStepV, 4);
  EXPECT_EQ(CursorX, 1);
}

TEST_F(SettingsTest, ValuesThatWouldBreakTheEditorAreReplaced) {
  const std::vector<std::string> numbers = {"0", "-1", "99999999", "1e300", "nothing"};
  for (const std::string& number : numbers) {
    SCOPED_TRACE(number);
    Read("GRIDX=" + number + "\r\nGRIDY=" + number + "\r\nPAPERWIDTH=" + number +
         "\r\nPAPERHEIGHT=" + number + "\r\nSCALE=" + number + "\r\nFORMWIDTH=-3\r\nFORMHEIGHT=0\r\n");
    EXPECT_EQ(GridStepH, kDefaultGridStepH);
    EXPECT_EQ(GridStepV, kDefaultGridStepV);
    EXPECT_EQ(PaperWidth, kDefaultPaperWidth);
    EXPECT_EQ(PaperHeight, kDefaultPaperHeight);
    EXPECT_EQ(SCALE, kDefaultScale);
    EXPECT_EQ(FormPlace.width, 9600);
    EXPECT_EQ(FormPlace.height, 7200);
  }
  Read("FONTNUMBER=16\r\nCURSORMODE=10\r\nSTARTX=1e39\r\nFONTSIZE=-1e39\r\nCURSORX=nan\r\nPAPERWIDTH=14400");
  EXPECT_EQ(BaseFont, 0);
  EXPECT_EQ(CursorMode, 0);
  EXPECT_EQ(STARTX, kDefaultStartX);
  EXPECT_EQ(FontSize, kDefaultFontSize);
  EXPECT_EQ(CursorX, 0);
  EXPECT_EQ(PaperWidth, 14400);
}

TEST_F(SettingsTest, AMissingFileLeavesTheStartValues) {
  ReadSettings(kPath);
  EXPECT_EQ(SCALE, kDefaultScale);
  files.unreadable.insert(kPath);
  EXPECT_THROW(ReadSettings(kPath), Failure);
}

TEST_F(SettingsTest, ResetTakesEverySettingBack) {
  Read(
      "PDIR = C:\\P\r\nSCALE = 3\r\nGRIDX = 5\r\nGUIDEX = 72\r\nGUIDEY = 9\r\nCURSORMODE = 4\r\nFORMTOP = "
      "8\r\n");
  ResetSettings();
  EXPECT_EQ(PaperFolder, "");
  EXPECT_EQ(SCALE, kDefaultScale);
  EXPECT_EQ(GridStepH, kDefaultGridStepH);
  EXPECT_EQ(GuideX[0], 0);
  EXPECT_EQ(GuideY[0], 0);
  EXPECT_EQ(CursorMode, 0);
  EXPECT_EQ(FormPlace.top, 0);
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
  files.contents.erase(kPath);
  WriteSettings(kPath);
  EXPECT_EQ(files.contents[kPath], kWindowLines);
}

TEST_F(SettingsTest, WhatWasWrittenIsReadBack) {
  FormPlace = {-30, 0.25F, 12000, 9000};
  PaperFolder = "\\Papers\\";
  WriteSettings(kPath);
  ResetProgram();
  ReadSettings(kPath);
  EXPECT_EQ(PaperFolder, "\\Papers\\");
  EXPECT_EQ(FormPlace.left, -30);
  EXPECT_EQ(FormPlace.top, 0.25F);
  EXPECT_EQ(FormPlace.width, 12000);
  EXPECT_EQ(FormPlace.height, 9000);
}

}  // namespace
}  // namespace kelvane
