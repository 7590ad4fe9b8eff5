// Pages as PDF documents: the objects of the file, what the content says, the fonts, and the pages that a
// document carries.

#include <functional>

#include "document/page_items.h"
#include "document/pdf_pages.h"
#include "output/pdf.h"
#include "output/type1_font.h"
#include "platform/characters.h"
#include "platform/compression.h"
#include "platform/outlines.h"
#include "tests/support/ghostscript.h"
#include "tests/support/program_test.h"
#include "typography/glyph_names.h"
#include "typography/glyph_shapes.h"
#include "typography/metrics.h"
#include "typography/signs.h"

namespace kelvane {
namespace {

constexpr Box kSheet{0, 0, 594, 840};
const std::string kFontFolder = "\\usr\\share\\fonts\\type1\\urw-base35\\";

class PdfTest : public ProgramTest {
 protected:
  PdfTest() {
    const std::string data = BackslashPath(KELVANE_SOURCE_DIR) + "\\data\\";
    for (const char* name : {"TN.WT", "TB.WT", "TI.WT", "TX.WT", "HN.WT", "HB.WT", "HI.WT", "HX.WT", "GN.WT",
                             "CB.WT", "GI.WT", "ZI.WT", "MATH0.WT"}) {
      files.contents[ProgramFolder + name] = DiskFiles().ReadWhole(data + name);
    }
    for (const char* name : {"NimbusRoman-Regular.t1", "StandardSymbolsPS.t1"})
      files.contents[kFontFolder + name] = DiskFiles().ReadWhole(kFontFolder + name);
    LoadWidthTables();
    CharacterDefs['S' - kFirstGlyph][0] = "0 0 moveto 10 0 rlineto 0 10 rlineto fill";
    CharacterDefs['m' - kFirstGlyph][0] = "0 0 moveto 10 0 rlineto st";
    CharacterDefs['y' - kFirstGlyph][0] = "0 0 moveto 10 0 rlineto st";
  }
  ~PdfTest() override { ScreenOutline = nullptr; }

  static Page PageOf(const std::string& lines) { return PageOfContent(lines, "\\P\\A.001"); }

  static std::string Document(const std::vector<std::string>& pages, PdfDocument::Options options = {},
                              std::string* missing = nullptr) {
    std::string pdf;
    PdfDocument document([&](std::string_view bytes) { pdf += bytes; }, std::move(options));
    int number = 0;
    for (const std::string& page : pages) document.AddPage(PageItems(PageOf(page)), kSheet, ++number, page);
    const std::string told = document.Finish();
    if (missing) *missing = told;
    return pdf;
  }

  // Every packed stream of a document, unpacked, one behind the other.
  static std::string Streams(const std::string& pdf) {
    std::string all;
    const std::string begin = ">>\nstream\n";
    for (std::size_t at = pdf.find(begin); at != pdf.npos; at = pdf.find(begin, at + 1)) {
      const std::size_t end = pdf.find("\nendstream", at);
      all += Inflate(std::string_view(pdf).substr(at + begin.size(), end - at - begin.size()), 1 << 24)
                 .value_or("(damaged)");
    }
    return all;
  }
  static std::string Content(const std::string& line) {
    return Streams(PdfOf(PageItems(PageOf(line)), kSheet));
  }
};

bool Has(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

TEST_F(PdfTest, TableOfObjectsLeadsToThem) {
  const std::string pdf =
      Document({"72 100 m 11 F0 (one) 3 s\r\n", "72 100 m 11 F8 (a) 3 s\r\n"}, {"T\u00E4"});
  const std::size_t table = pdf.rfind("xref\n0 ", pdf.rfind("startxref") - 1);
  EXPECT_EQ(std::stoul(pdf.substr(pdf.rfind("startxref\n") + 10)), table);
  const std::size_t count = std::stoul(pdf.substr(table + 7));
  const std::size_t first = pdf.find("65535 f \n", table) + 9;
  EXPECT_GT(count, 10U);
  for (std::size_t i = 1; i < count; ++i) {
    const std::size_t place = std::stoul(pdf.substr(first + (i - 1) * 20, 10));
    EXPECT_EQ(pdf.substr(place, std::to_string(i).size() + 7), std::to_string(i) + " 0 obj\n");
  }
  EXPECT_TRUE(Has(pdf, "/Count 2/")) << pdf;
  EXPECT_TRUE(Has(pdf, "/MediaBox[0 0 594 840]/CropBox[0 0 594 840]"));
  EXPECT_TRUE(Has(pdf, "/Title<FEFF005400E4>"));
}

TEST_F(PdfTest, SamePagesMakeTheSameBytesAndOthersAnotherId) {
  const auto idOf = [](const std::string& pdf) { return pdf.substr(pdf.find("/ID["), 40); };
  const std::string pdf = Document({"72 100 m 11 F0 (one) 3 s\r\n"});
  EXPECT_EQ(Document({"72 100 m 11 F0 (one) 3 s\r\n"}), pdf);
  EXPECT_NE(idOf(Document({"72 100 m 11 F0 (two) 3 s\r\n"})), idOf(pdf));
}

TEST_F(PdfTest, CharactersFollowEachOtherWithStepsWhereTheWidthsDoNotLead) {
  EXPECT_TRUE(Has(Content("72 100 m 10 F0 (AB\xFF(\\\x10) 3 s\r\n"),
                  "BT\n/F0 10 Tf\n1 0 0 1 72 740 Tm\n[(AB)-120(\\(\\\\\\020)]TJ\nET\n"));
  // Scripts stand on lines and in sizes of their own.
  EXPECT_TRUE(Has(Content("72 100 m 10 F0 (x\xF0n) 3 s\r\n"), "/F0 8 Tf\n1 0 0 1 77 743.6 Tm\n[(n)]TJ"));
  // The slanted Symbol is the upright font, leaning.
  EXPECT_TRUE(Has(Content("72 100 m 10 FA (a) 3 s\r\n"), "/F8 10 Tf\n1 0 0.213 1 72 740 Tm\n[(a)]TJ"));
  for (const char* size : {"0", "-5", "nan"})
    EXPECT_FALSE(Has(Content("72 100 m " + std::string(size) + " F0 (A) 3 s\r\n"), "TJ")) << size;
}

TEST_F(PdfTest, SignsInPiecesSayWhatTheyAre) {
  EXPECT_TRUE(
      Has(Content("72 100 m 10 F0 (a\xECmy\xE0z) 3 s\r\n"), "[(a)]TJ\n/Span<</ActualText<FEFF21A6>>>BDC\n"));
  const std::string content = Content("72 100 m 10 FC (S) 3 s\r\n");
  EXPECT_FALSE(Has(content, "ActualText"));
  EXPECT_TRUE(Has(content, "<53><2211>")) << "a large sum is a sum";
  EXPECT_TRUE(Has(Content("72 100 m 10 FC (m) 3 s\r\n"), "<6D><200B>")) << "a piece alone is no letter";
  EXPECT_TRUE(Has(content, "0 0 m\n10 0 l\n10 10 l\nf")) << "areas are filled";
  EXPECT_TRUE(Has(Content("72 100 m 10 FC (m) 3 s\r\n"), "0.5 w 1 J 1 j\n0 0 m\n10 0 l\nS"));
}

TEST_F(PdfTest, DrawingsHaveTheirTrueWidthsAndColours) {
  EXPECT_TRUE(Has(Content("10 20 m 120.25 lw 30 0 rl stroke\r\n"),
                  "1 0 0 rg 1 0 0 RG\n0.25 w\n10 820 m\n40 820 l\nS"));
  EXPECT_TRUE(Has(Content("10 20 m 70 lw 30 0 rl stroke\r\n"), "0.753 g 0.753 G\n0.1 w"));
  // However many points: a screen that shows an outline would not be on paper.
  std::string area = "10 20 m 0 lw";
  for (int i = 0; i < 1200; ++i) area += i % 2 ? " -1 1 rl" : " 1 1 rl";
  EXPECT_TRUE(Has(Content(area + " 0 -1200 rl fill\r\n"), "l\nf\n"));
}

TEST_F(PdfTest, AreaIsThePageOfAPart) {
  const std::string pdf = PdfOf(PageItems(PageOf("110 220 m 10 F0 (A) 3 s\r\n")), {100, 200, 150, 230});
  EXPECT_TRUE(Has(pdf, "/MediaBox[0 0 50 30]"));
  EXPECT_TRUE(Has(Streams(pdf), "1 0 0 1 10 10 Tm"));
}

TEST_F(PdfTest, LabelsAndBookmarksFollowThePages) {
  std::string pdf;
  PdfDocument document([&](std::string_view bytes) { pdf += bytes; }, {"Essay", true});
  const std::string body = "72 100 m 11 F0 (plain words of the page) 3 s\r\n";
  for (const int number : {1, 2, 5}) {
    const std::string title =
        number == 1 ? "72 50 m 24 F1 (The Title) 3 s\r\n" : "72 50 m 12 F1 (Part) 3 s\r\n";
    document.AddPage(PageItems(PageOf(title + body)), kSheet, number, {});
  }
  document.Finish();
  EXPECT_TRUE(Has(pdf, "/Nums[0<</S/D/St 1>>2<</S/D/St 5>>]"));
  EXPECT_TRUE(Has(pdf, "/Count 1>>")) << "one bookmark on the first level";
  EXPECT_TRUE(Has(pdf, "/Count -2/Parent"));
  EXPECT_TRUE(Has(pdf, "/Title<FEFF005400680065002000540069"));
  EXPECT_FALSE(Has(pdf, "0070006C00610069006E"));
}

TEST_F(PdfTest, FontHasTheGlyphsThatAreUsedAndThoseTheyAreMadeOf) {
  const auto font = ReadType1Font(files.contents[kFontFolder + "NimbusRoman-Regular.t1"]);
  ASSERT_TRUE(font);
  for (int code = 1; code < 224; ++code) {
    const char* name = GlyphNameOfText(code);
    EXPECT_TRUE(!name || font->glyphs.contains(name)) << code;
  }
  const Type1Subset subset = SubsetOf(*font, {"A", "eacute"}, "ABCDEF+Some");
  const auto again = ReadType1Font(subset.program);
  ASSERT_TRUE(again);
  EXPECT_EQ(again->name, "ABCDEF+Some");
  EXPECT_LE(again->glyphs.size(), 5U);
  for (const char* name : {".notdef", "A", "eacute"})
    EXPECT_EQ(again->glyphs.at(name), font->glyphs.at(name));
  EXPECT_TRUE(subset.program.substr(0, subset.clearSize).find("eexec") + 6 == subset.clearSize);

  // Parts with headers, as a .pfb file has them.
  const std::string program = subset.program;
  const auto part = [](char kind, const std::string& bytes) {
    std::string header = {'\x80', kind};
    for (int shift = 0; shift < 32; shift += 8) header += static_cast<char>(bytes.size() >> shift & 255);
    return header + bytes;
  };
  const auto joined = ReadType1Font(part(1, program.substr(0, subset.clearSize)) +
                                    part(2, program.substr(subset.clearSize)) + "\x80\x03");
  ASSERT_TRUE(joined);
  EXPECT_EQ(joined->glyphs, again->glyphs);
  for (std::size_t size = 0; size < program.size(); size += 97) ReadType1Font(program.substr(0, size));
  EXPECT_FALSE(ReadType1Font("%!PS-AdobeFont\neexec\nabc"));
}

TEST_F(PdfTest, MissingFontIsToldAndDrawnByOutlines) {
  std::string missing;
  const std::string page = "72 100 m 10 F1 (A) 3 s\r\n72 120 m 10 F0 (A) 3 s\r\n";
  Document({page}, {}, &missing);
  EXPECT_TRUE(Has(missing, "no font on this machine: Times-Bold. Their characters are left out")) << missing;
  ScreenOutline = [](const ScreenFace& face, unsigned char code) {
    EXPECT_TRUE(face.bold);
    EXPECT_EQ(code, 'A');
    Path path;
    path.MoveTo({0, 0});
    path.LineTo({500, -700});
    return path;
  };
  const std::string pdf = Document({page}, {}, &missing);
  EXPECT_TRUE(Has(missing, "Times-Bold. Their characters are outlines")) << missing;
  EXPECT_TRUE(Has(Streams(pdf), "36.1 0 d0\n0 0 m\n25 35 l\nf")) << Streams(pdf);
  EXPECT_TRUE(Has(Streams(pdf), "<41><0041>")) << "and it is found all the same";
}

TEST_F(PdfTest, CarriedPagesComeBackAsTheyWere) {
  const std::vector<std::string> pages = {"72 100 m 11 F0 (one) 3 s\r\n", "no entry (\x01\xFF\r\n1 2 m\r\n",
                                          "endstream endobj\r\n"};
  std::string pdf = Document(pages, {"Essay"});
  const auto expectPages = [&](const std::string& file) {
    const std::vector<CarriedPage> carried = PagesInPdf(file, "\\P\\A.pdf");
    ASSERT_EQ(carried.size(), pages.size());
    for (std::size_t i = 0; i < pages.size(); ++i) {
      EXPECT_EQ(carried[i].number, static_cast<int>(i) + 1);
      EXPECT_EQ(carried[i].content, pages[i]);
    }
  };
  expectPages(pdf);
  // Another program has put something behind.
  const std::size_t table = std::stoul(pdf.substr(pdf.rfind("startxref\n") + 10));
  const std::string added = pdf + "xref\n0 1\n0000000000 65535 f \ntrailer\n<</Size 1/Prev " +
                            std::to_string(table) + ">>\nstartxref\n" + std::to_string(pdf.size()) +
                            "\n%%EOF\n";
  expectPages(added);
  EXPECT_TRUE(PagesInPdf("%PDF-1.4\nstartxref\n9\n%%EOF", "").empty());
  EXPECT_TRUE(PagesInPdf(PdfOf(PageItems(PageOf(pages[0])), kSheet), "").empty());

  // Whatever of it is damaged: nothing, a message, or what is whole.
  std::string other = pdf;
  const std::size_t length = other.find("/Length", other.find("/KelvanePage"));
  other.replace(length + 8, 2, "3 ");
  EXPECT_EQ(FailureOf([&] { PagesInPdf(other, "\\P\\A.pdf"); }),
            "Cannot open /P/A.pdf: a page that it carries is damaged.");
  for (std::size_t at = 0; at < pdf.size(); at += 61) {
    std::string damaged = pdf;
    damaged[at] = static_cast<char>(damaged[at] ^ 0x15);
    try {
      EXPECT_LE(PagesInPdf(damaged, "").size(), pages.size());
      PagesInPdf(std::string_view(pdf).substr(at), "");
    } catch (const Failure&) {
    }
  }
}

TEST_F(PdfTest, EveryCharacterIsFoundAgainAsWhatItMeans) {
  // All that stand under one code, in rows, read back by Ghostscript.
  std::string lines;
  std::vector<std::string> expected;
  int y = 20;
  int drawn = 0;
  for (const std::int16_t font : {std::int16_t{0}, kSymbol, kMath0}) {
    for (int code = 1; code < kFirstSwitchCode; ++code) {
      const char32_t character = CharacterOf(font, code);
      // Ghostscript writes blanks and the soft hyphen as it likes, and nothing beyond 16 bits.
      if (character <= ' ' || character == 0xA0 || character == 0xAD) continue;
      if (font == kMath0) CharacterDefs[code - kFirstGlyph][0] = "0 0 moveto 30 0 rlineto 0 30 rlineto fill";
      const std::string face = {"0123456789ABCDEF"[font]};
      lines += std::to_string(20 + 25 * (drawn % 20)) + " " + std::to_string(y) + " m 6 F" + face + " (" +
               static_cast<char>(code) + ") 3 s\r\n";
      if (character <= 0xFFFF) expected.push_back(WriteUtf8(character));
      if (++drawn % 20 == 0) y += 20;
    }
  }
  const std::string text = Ghostscript(Document({lines}), "-sDEVICE=txtwrite -o -");
  EXPECT_TRUE(Has(Streams(Document({lines})), "<4B><D835DD42>"));
  EXPECT_GT(expected.size(), 400U);
  for (const std::string& character : expected) EXPECT_TRUE(Has(text, character)) << character;
}

}  // namespace
}  // namespace kelvane
