#include "tools/width_tables.h"

#include <gtest/gtest.h>

#include "platform/files.h"

namespace kelvane {
namespace {

const std::string kData = BackslashPath(KELVANE_SOURCE_DIR) + "\\data\\";
const std::string kAfmFolder = "\\usr\\share\\fonts\\type1\\urw-base35\\";

WidthTable TableOf(std::size_t face) {
  const WidthTableSource& source = kWidthTableSources[face];
  return MakeWidthTable(DiskFiles().ReadWhole(kAfmFolder + source.afm + ".afm"), source.ownEncoding);
}

InkTable InkOf(std::size_t face) {
  const WidthTableSource& source = kWidthTableSources[face];
  return MakeInkTable(DiskFiles().ReadWhole(kAfmFolder + source.afm + ".afm"), source.ownEncoding,
                      face == kSlantedFace ? kSlant : 0);
}

LeanTable LeanOf(std::size_t face) {
  const WidthTableSource& source = kWidthTableSources[face];
  return MakeLeanTable(DiskFiles().ReadWhole(kAfmFolder + source.afm + ".afm"), source.ownEncoding,
                       face == kSlantedFace ? kSlant : 0);
}

TEST(WidthTablesTest, ShippedTablesAndPrologComeFromTheFonts) {
  std::array<WidthTable, 12> tables;
  for (std::size_t face = 0; face < tables.size(); ++face) {
    tables[face] = TableOf(face);
    const std::string name = kWidthTableSources[face].name;
    EXPECT_TRUE(DiskFiles().ReadWhole(kData + name + ".WT") == WidthTableBytes(tables[face])) << name;
  }
  std::array<InkTable, 12> inks;
  for (std::size_t face = 0; face < inks.size(); ++face) inks[face] = InkOf(face);
  EXPECT_TRUE(DiskFiles().ReadWhole(kData + "INK.TAB") == InkTableBytes(inks));
  std::array<LeanTable, 12> leans;
  for (std::size_t face = 0; face < leans.size(); ++face) leans[face] = LeanOf(face);
  EXPECT_TRUE(DiskFiles().ReadWhole(kData + "LEAN.TAB") == LeanTableBytes(leans));
  const std::string prolog = DiskFiles().ReadWhole(kData + "QRX.PRO");
  EXPECT_TRUE(ReplacePrologWidths(prolog, tables) == prolog);
}

// Published widths of the standard typefaces, where a shifted table or a wrong encoding would show.
TEST(WidthTablesTest, CodesAreThoseOfTheEncodings) {
  const WidthTable times = TableOf(0);
  EXPECT_EQ(times[0], 600);
  EXPECT_EQ(times[' '], 250);
  EXPECT_EQ(times['\''], 180);  // the upright quote, not the 333 of the curly one
  EXPECT_EQ(times['W'], 944);
  EXPECT_EQ(times['~'], 541);
  EXPECT_EQ(times[127], 0);
  EXPECT_EQ(times[0x80], 500);   // Euro
  EXPECT_EQ(times[0x81], 500);   // u acute
  EXPECT_EQ(times[7], 667);      // ae, which is no AE
  EXPECT_EQ(times[21], 278);     // i dieresis
  EXPECT_EQ(times[9], 0);        // no character
  EXPECT_EQ(times[0x89], 1000);  // per mille
  EXPECT_EQ(times[0xA0], 250);   // no-break space
  EXPECT_EQ(times[0xBC], 750);   // one quarter
  EXPECT_EQ(times[0xC6], 889);   // AE
  EXPECT_EQ(times[0xDF], 500);   // German sharp s
  EXPECT_EQ(times[0xE0], 0);     // from here on codes of a run, not characters
  const WidthTable symbol = TableOf(8);
  EXPECT_EQ(symbol['"'], 713);  // for all
  EXPECT_EQ(symbol['a'], 631);  // alpha
  EXPECT_EQ(symbol[0x9F], 0);
  EXPECT_EQ(symbol[0xD6], 549);  // radical
}

TEST(WidthTablesTest, InkIsThatOfTheCharactersShown) {
  const InkTable times = InkOf(0);
  EXPECT_EQ(times[' '], InkBox());
  EXPECT_EQ(times[160], InkBox());
  EXPECT_LT(times['g'].bottom, -200);
  EXPECT_GT(times[0xC5].top, 850);  // the ring of Aring
  const InkTable symbol = InkOf(8);
  const InkTable leaning = InkOf(kSlantedFace);
  EXPECT_EQ(symbol[128], InkBox());  // a maker's mark that nobody prints
  EXPECT_NE(symbol[160], InkBox());  // Euro
  EXPECT_GT(leaning['d'].right, symbol['d'].right + 100);
  EXPECT_EQ(leaning['d'].top, symbol['d'].top);
  EXPECT_LT(leaning['m'].left, symbol['m'].left);
}

TEST(WidthTablesTest, LeaningLettersHaveTheirAccentsAtTheirTops) {
  const LeanTable roman = LeanOf(0), italic = LeanOf(2);
  EXPECT_EQ(roman['f'].correction, 50);  // its hook
  EXPECT_EQ(italic['f'].correction, 146);
  EXPECT_EQ(italic['a'].correction, 0);
  EXPECT_EQ(italic[' '], CharacterLean());
  const InkTable inks = InkOf(2);
  for (const int letter : {'A', 'd', 'l', 'x', 'V'}) {
    const auto code = static_cast<std::size_t>(letter);
    EXPECT_GT(italic[code].accent, (inks[code].left + inks[code].right) / 2 + 40) << letter;
    EXPECT_LT(italic[code].accent, inks[code].right) << letter;
  }
  EXPECT_EQ(italic['b'].accent, (inks['b'].left + inks['b'].right) / 2);
  EXPECT_GT(LeanOf(kSlantedFace)['d'].accent, LeanOf(8)['d'].accent + 50);
}

}  // namespace
}  // namespace kelvane
