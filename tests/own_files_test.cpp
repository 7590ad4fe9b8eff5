// The program's own files when they are damaged: kept under another name, and what stands in for them.

#include "app/own_files.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

#include "designer/character_files.h"
#include "macros/macros.h"
#include "tests/support/editor_test.h"
#include "typography/glyph_shapes.h"
#include "typography/typefaces.h"
#include "typography/view.h"

namespace kelvane {
namespace {

std::string Shipped(const std::string& name) {
  std::ifstream file(KELVANE_SOURCE_DIR "/data/" + name, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

class OwnFilesTest : public EditorTest {
 protected:
  std::string& File(const std::string& name) { return files.contents["\\Kelvane\\" + name]; }
  // The one message that came, and that the damaged content is kept.
  void ExpectKept(const std::string& name, const std::string& damaged) {
    ASSERT_EQ(dialogs.messages.size(), 1U);
    EXPECT_NE(dialogs.messages[0].find("/Kelvane/" + name + " is damaged."), std::string::npos);
    EXPECT_NE(dialogs.messages[0].find("/Kelvane/" + name + ".damaged"), std::string::npos);
    EXPECT_EQ(File(name + ".damaged"), damaged);
    dialogs.messages.clear();
  }
};

TEST_F(OwnFilesTest, SettingsAndMacrosGiveWayToTheStartValues) {
  const std::string settings = "GRIDX = 6\r\n" + std::string(100, '\0');
  File("QRX.DAT") = settings;
  Start();
  ExpectKept("QRX.DAT", settings);
  EXPECT_EQ(GridStepH, kDefaultGridStepH);
  EXPECT_FALSE(files.contents.contains("\\Kelvane\\QRX.DAT"));

  const std::string macros = "a\r\n" + std::string(4, '\0');
  File("QRX.MCR") = macros;
  Start();
  ExpectKept("QRX.MCR", macros);
  EXPECT_EQ(MacroCaption(0), "m0");

  // What looks odd and is none of it: codes that are letters in a run, and a remark.
  File("QRX.MCR") = "\x0F\xF0\xFE\r\n";
  File("QRX.DAT") = "my own remark\xE4\r\n\tGRIDX = 5\r\n";
  Start();
  EXPECT_TRUE(dialogs.messages.empty());
  EXPECT_EQ(MacroCaption(0), "\x0F\xF0\xFE");
}

TEST_F(OwnFilesTest, WhatCannotBeSetAsideDoesNotKeepAnybodyOut) {
  File("QRX.DAT") = "GRIDX = 6\r\n" + std::string(1, '\0');
  files.FailStep(FileStep::Rename);
  Start();
  EXPECT_EQ(GridStepH, 6);
}

TEST_F(OwnFilesTest, TheFontIsMadeAnewWithThePersonsOwnCharacters) {
  for (const char* name : {"MATH0.PSF", "MATH0.WT", "QRX.PRO"}) File(name) = Shipped(name);
  File("MATH0.ORG") = File("MATH0.PSF");
  Start();
  SaveGlyph(65, {"10 40 15 40 20 40 20 35 20 30"});
  const std::string whole = File("MATH0.PSF");
  const std::string widths = File("MATH0.WT");
  for (const std::string& damaged :
       {std::string(), whole.substr(0, whole.size() / 2), std::string(9000, '\0')}) {
    File("MATH0.PSF") = damaged;
    Start();
    ExpectKept("MATH0.PSF", damaged);
    EXPECT_EQ(File("MATH0.PSF"), whole);
    files.contents.erase("\\Kelvane\\MATH0.PSF.damaged");
  }
  File("MATH0.WT").resize(100);
  Start();
  ExpectKept("MATH0.WT", widths.substr(0, 100));
  EXPECT_EQ(File("MATH0.WT"), widths);
  EXPECT_EQ(TypefaceTable[kFirstGlyphFont].Widths[65], 0.6F);

  // A prolog that is damaged, too, leaves the shipped characters; so does a folder that cannot be written.
  File("QRX.PRO").resize(3000);
  File("MATH0.PSF").clear();
  files.FailStep(FileStep::Create);
  Start();
  EXPECT_EQ(dialogs.messages.size(), 1U);
  EXPECT_EQ(CharacterDefs['A' - kFirstGlyph][0], ShippedProcedure('A'));
}

}  // namespace
}  // namespace kelvane
