#include "document/page.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "document/fields.h"
#include "document/numbers.h"
#include "tests/support/program_test.h"

namespace kelvane {
namespace {

const std::string kPath = "\\P\\Essay.001";

class PageTest : public ProgramTest {
 protected:
  std::string Written(void (*write)(const std::string& path)) {
    write(kPath);
    return files.contents.at(kPath);
  }
  void Read(const std::string& content) {
    files.contents[kPath] = content;
    ReadPage(kPath);
  }
};

TEST(TextEntries, AreTakenApart) {
  TextEntry entry;  // the same for all: nothing of an entry may be left in the next
  const auto parts = [&](const char* line) {
    EXPECT_TRUE(ParseTextEntry(line, entry)) << line;
    return std::tie(entry.x, entry.y, entry.size, entry.font, entry.text, entry.anchor, entry.justified,
                    entry.amount);
  };
  EXPECT_EQ(parts("72 -700.5 m 12 FA (x = (1) \xF0 s) 1 s"),
            std::tuple(72, -700.5F, 12, 10, "x = (1) \xF0 s", 1, false, 0));
  EXPECT_EQ(parts("1 2 m 3 F0 (a b) 9 450.5 a"), std::tuple(1, 2, 3, 0, "a b", 9, true, 450.5F));
  EXPECT_EQ(parts("x y m z F0 ()) q s"), std::tuple(0, 0, 0, 0, ")", 0, false, 0))
      << "unreadable numbers are 0";
  for (const std::string font : {"F", "Fa", "FG", "F10", "F-"}) {
    entry.font = 5;
    EXPECT_EQ(parts(("1 2 m 3 " + font + " (a) 1 s").c_str()), std::tuple(1, 2, 3, 0, "a", 1, false, 0))
        << "unknown typefaces count as the first";
  }
}

TEST(TextEntries, OtherLinesAreNone) {
  TextEntry entry;
  for (const char* line :
       {"", "hello", "1 2 m 3 F0 a) 1 s", "1 2 m 3 F0 )a( 1 s", "1 2 3 F0 (a) 1 s", "1 2 m 3 G0 (a) 1 s",
        "0 1 2 m 3 F0 (a) 1 s", "1 2 m 3 F0 x (a) 1 s", "1 2 m 3 F0 (a)", "1 2 m 3 F0 (a) 1",
        "1 2 m 3 F0 (a) 1 t", "1 2 m 3 F0 (a) 1 2 s", "1 2 m 3 F0 (a) 1 2 a x", "1 2 m 3 F0 (a) 1 s x"})
    EXPECT_FALSE(ParseTextEntry(line, entry)) << line;
}

// The middle is taken in single precision: in double precision the middle of 0.1 and 0.4 is not the single
// 0.25, and the straight line would become a curve. The last value is copied as it stands.
TEST(Drawings, RecordsBecomeLines) {
  const std::pair<const char*, const char*> pairs[] = {
      {"0.1 0.3 0.25 0.2 0.4 0.1 1", "0.1 0.3 m 1 lw 0.3 -0.2 rl stroke"},
      {"0 0 5.0001 0 10 0 1", "0 0 m 1 lw 5.0001 0 10 0 rb stroke"},
      {"10 20 15 20 20 20 007", "10 20 m 007 lw 10 0 rl stroke"},
      {"1 2 3 4", ""}};
  for (const auto& [record, line] : pairs) EXPECT_EQ(DrawingRecordToLine(record), line) << record;
}

// Shapes that were closed stay so through the digits written; open paths and gaps that can be seen stay open.
TEST(Drawings, LinesBecomeRecords) {
  const std::pair<const char*, const char*> pairs[] = {
      {"0 0 m 1 lw 10 0 rl 0 10 rl -10 -10.009 rl fill", "0 0 5 0 10 0 10 5 10 10 5 5 0 0 1"},
      {"0 0 m 1 lw 10 0 rl 3 4 -10.009 0 rb fill", "0 0 5 0 10 0 13 4 0 0 1"},
      {"0 0 m 1 lw 10 0 rl 3 4 -10.02 0 rb fill", "0 0 5 0 10 0 13 4 -0.02000046 0 1"},
      {"0 0 m 1 lw 10 0 rl -10.009 0 rl stroke", "0 0 5 0 10 0 4.9955 0 -0.008999825 0 1"},
      {"1 x m stroke", "1 0 0"}};
  for (const auto& [line, record] : pairs) EXPECT_EQ(LineToDrawingRecord(line), record) << line;
  EXPECT_EQ(CountFields(LineToDrawingRecord("1 1 rl 2 2 m 1 lw stroke"), " "), 8) << "a path without a start";
}

// A straight line written as a curve could not be told from one that was bent. Places from turning and
// distributing have more digits than are written, and a reader adds up the errors of those that are.
TEST(Drawings, StraightSegmentsStaySoWhereverTheyAreMapped) {
  const char* const lines[] = {"80 200 m 1 lw 100 0 rl stroke",
                               "80 240 m 1 lw 60 0 rl 0 40 rl -60 -40 rl fill",
                               "80 240 m 1 lw 9 9 20 0 rb 0 40 rl 5 5 30 0 rb 7 7 rl stroke"};
  std::mt19937 random(7);
  std::uniform_real_distribution<float> numbers(0.3F, 1.7F);
  for (int i = 0; i < 3000; ++i) {
    const std::string line = lines[i % 3];
    const std::string before = LineToDrawingRecord(line);
    Drawing drawing;
    ASSERT_TRUE(ParseDrawing(before, drawing));
    const std::vector<Point> points = drawing.points;
    const float cosine = std::cos(numbers(random));
    const float sine = std::sin(numbers(random));
    const float right = 0.1F * static_cast<float>(random() % 3000) - 70;
    const auto turn = [&](Point at) {
      return i % 2 == 0 ? Point{400 + at.x * cosine - at.y * sine, 100 + at.x * sine + at.y * cosine}
                        : Point{at.x + right, at.y - right};
    };
    MapDrawing(drawing, turn);
    for (std::size_t k = 0; k < points.size(); ++k) {
      ASSERT_NEAR(drawing.points[k].x, turn(points[k]).x, 0.021);
      ASSERT_NEAR(drawing.points[k].y, turn(points[k]).y, 0.021);
    }
    std::string written = DrawingRecordToLine(RecordOfDrawing(drawing, "1"));
    ASSERT_EQ(std::ranges::count(written, 'r'), std::ranges::count(line, 'r'));
    for (int saves = 0; saves < 3; ++saves) {
      ASSERT_EQ(std::ranges::count(written, 'b'), std::ranges::count(line, 'b')) << written;
      written = DrawingRecordToLine(LineToDrawingRecord(written));
    }
  }
}

TEST(Drawings, OperandErrorsAreFailures) {
  std::string forty;
  for (int i = 0; i < 40; ++i) forty += "1 ";
  EXPECT_EQ(LineToDrawingRecord(forty + "m"), "1 1 0");
  for (const std::string& line : {forty + "1 m", std::string("1 m"), std::string("1 1 m 2 rl"),
                                  std::string("1 1 m 1 2 3 rb stroke"), std::string("lw stroke")})
    EXPECT_THROW(LineToDrawingRecord(line), Failure) << line;
}

TEST_F(PageTest, ReadingPartsTextFromDrawings) {
  CurrentDrawing = "1 2";
  Read(
      "10 20 m 1 lw 10 0 rl stroke\r\n"
      "72 700 m 12 F0 (brush stroke) 1 s\n"
      "\r\n"
      "unknown line\r"
      "0 0 m 1 lw 5 5 10 0 rb -5 -5 -10 0 rb fill\r\n"
      "the stroke\r\n"
      "5 5 m 1 lw stroke\r\n"
      "\"a note\r\n"
      "0 0 m 1 lw 5 0 rl \"brush stroke\r\n"
      "no end (");
  EXPECT_EQ(PageText,
            "72 700 m 12 F0 (brush stroke) 1 s\r\n\r\nunknown line\r\nthe stroke\r\n5 5 m 1 lw stroke\r\n"
            "\"a note\r\n0 0 m 1 lw 5 0 rl \"brush stroke\r\nno end (\r\n");
  EXPECT_EQ(DrawingList, "10 20 15 20 20 20 1\r\n0 0 5 5 10 0 5 -5 0 0 1\r\n");
  EXPECT_EQ(DrawingCount, 2);
  EXPECT_EQ(CurrentDrawing, "");
}

// Its line is longer than any text line may be.
TEST_F(PageTest, ADrawingOfTenThousandSegmentsComesBack) {
  DrawingList = "0 0";
  for (int i = 1; i <= 10000; ++i) {
    const std::string x = " " + FormatSingle(static_cast<float>(i % 500));
    DrawingList += x + x + x + " 1";
  }
  DrawingList += " 1\r\n";
  DrawingCount = 1;
  const std::string list = DrawingList;
  EXPECT_GT(Written(WritePagePlain).size(), 100000U);
  ReadPage(kPath);
  EXPECT_EQ(DrawingList, list);
  EXPECT_EQ(PageText, "");
}

TEST_F(PageTest, DamagedPagesNameTheLineAndLeaveThePageInMemory) {
  const std::string text = PageText = "1 1 m 12 F0 (here) 1 s\r\n";
  const std::string drawings = DrawingList = "10 20 15 20 20 20 1\r\n";
  const int count = DrawingCount = 1;
  const std::string nul = std::string("a\r\nb") + '\0' + "\r\n";
  const std::pair<std::string, const char*> cases[] = {
      {"fine\r\n1 m stroke\r\n",
       "Cannot read the page file /P/Essay.001: line 2: an operator has too few numbers before it."},
      {"\n\n" + ReplaceAll(std::string(41, '1'), "1", "1 ") + "stroke",
       "Cannot read the page file /P/Essay.001: line 3: more than 40 numbers before an operator."},
      {nul, "Cannot read the page file /P/Essay.001: line 2: it holds a character of code 0."},
      {"a\r\n" + std::string(65536, 'x'),
       "Cannot read the page file /P/Essay.001: line 2: it is longer than 65,535 characters."},
      {std::string((32U << 20) + 1, '\n'),
       "Cannot read the page file /P/Essay.001: it is larger than 32 MB."},
  };
  for (const auto& [content, message] : cases) {
    EXPECT_EQ(FailureOf([&] { Read(content); }), message);
    EXPECT_EQ(std::tie(PageText, DrawingList, DrawingCount), std::tie(text, drawings, count));
  }
  Read(std::string(65535, 'x'));
  EXPECT_EQ(PageText.size(), 65537U);
}

TEST_F(PageTest, CountsDrawingsUpToItsLimit) {
  std::string content;
  for (int i = 0; i < 32767; ++i) content += "0 0 m 1 lw 2 0 rl stroke\n";
  Read(content);
  EXPECT_EQ(DrawingCount, 32767);
  EXPECT_EQ(FailureOf([&] { Read(content + "0 0 m 1 lw 2 0 rl stroke\n"); }),
            "Cannot read the page file /P/Essay.001: line 32768: there are more than 32,767 drawings.");
  EXPECT_EQ(DrawingCount, 32767);
}

TEST_F(PageTest, APageThatCouldNotBeReadAgainIsNotWritten) {
  files.contents[kPath] = "old";
  PageText = "1 1 m 12 F0 (" + std::string(65535, 'x') + ") 1 s\r\n";
  EXPECT_EQ(FailureOf([] { WritePagePlain(kPath); }),
            "Cannot write the page file /P/Essay.001: line 1: it is longer than 65,535 characters.");
  EXPECT_EQ(files.contents.at(kPath), "old");
}

}  // namespace
}  // namespace kelvane
