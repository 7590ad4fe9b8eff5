#pragma once

// The current page in memory, its two kinds of entry, and its file.
//
// A text entry is one line `X Y m SIZE F<h> (TEXT) ANCHOR s` or `... ANCHOR AMOUNT a` of PageText. A drawing
// is one record `X0 Y0 CX CY EX EY ... W` of DrawingList, absolute points, W = colour * 10 + width in points;
// in files it is a line `X0 Y0 m W lw ... stroke` or `fill` with relative operands.

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/canvas.h"

namespace kelvane {

struct Page {
  std::string text;               // text lines, each ended by CR LF
  std::int16_t drawingCount = 0;  // number of the drawings
  std::string drawings;           // their records, each ended by CR LF

  bool Empty() const { return text.empty() && drawingCount <= 0; }
  bool operator==(const Page&) const = default;
};

// The page in memory, and its parts by the names that the formats use. Changed by edits, undo and by another
// page coming into memory.
extern Page ThePage;
extern std::string& PageText;
extern std::int16_t& DrawingCount;
extern std::string& DrawingList;
// The record being drawn, not yet in DrawingList.
extern std::string CurrentDrawing;

// A text entry taken apart; the views point into the line.
struct TextEntry {
  float x = 0;
  float y = 0;
  float size = 0;
  std::int16_t font = 0;  // 0 to 15; a digit outside 0 to F counts as 0
  std::string_view text;
  int anchor = 0;          // as written; 1 to 9 align, others leave the point
  bool justified = false;  // the "a" form
  float amount = 0;        // points, of the "a" form
};

// False if the line is not a text entry: such a line is kept and draws nothing.
bool ParseTextEntry(std::string_view line, TextEntry& entry);

// The line of a text entry, without its end.
std::string LineOfEntry(const TextEntry& entry);

// The run of a line: what stands between its first "(" and its last ")". False if there is no such pair.
bool FindRun(std::string_view line, std::size_t& begin, std::size_t& end);

// Colour number and line width in points of the last value of a drawing record.
struct LineStyle {
  std::int16_t colour = 0;
  float width = 0;
  bool operator==(const LineStyle&) const = default;
};
LineStyle DecodeLineStyle(float value);
// The same style without the error that the width has from the colour's digits, and its token in a record.
LineStyle CleanStyle(const LineStyle& style);
std::string TokenOfStyle(const LineStyle& style);

// A drawing record taken apart.
struct Drawing {
  std::vector<Point> points;  // the start, then control point and end of each segment
  LineStyle style;
  bool closed = false;  // filled: the last end is the start

  std::size_t Segments() const { return points.size() / 2; }
};

// Whether the control point is the exact middle, which makes a segment straight.
bool IsStraight(Point start, Point control, Point end);

// False if the record has no whole segment: such a record draws nothing.
bool ParseDrawing(std::string_view record, Drawing& drawing);

// Moves, turns or scales a drawing point by point. Closed paths stay closed. So that straight segments stay
// straight however often they are written and read, points of a drawing that has one may miss their place by
// up to 0.02 points, mostly by less than 0.001. Operands have 7 digits and a reader adds them up: where
// places lie within 2 points of the left or top edge, whose numbers have more digits, there may be nothing
// near that is met. In one of 2,000 such drawings a segment is then written as a curve, which looks the same.
void MapDrawing(Drawing& drawing, const std::function<Point(Point)>& map);
// The record of a drawing, with `style` as its last token.
std::string RecordOfDrawing(const Drawing& drawing, std::string_view style);

// The line of a drawing record; empty for an empty record or one of fewer than 5 tokens.
std::string DrawingRecordToLine(std::string_view record);
// The record of a drawing line; empty for an empty line. Throws Failure if more than 40 numbers are pushed or
// an operator finds too few.
std::string LineToDrawingRecord(std::string_view line);

// Empties the page in memory and drops the path being drawn.
void ClearPage();

// What can be saved and read again, in bytes.
inline constexpr std::size_t kLongestTextLine = 65535;
inline constexpr std::size_t kLargestPage = 32U << 20;

// The order of the text lines in a written page: as they were typed, or down the page, then to the right, and
// of two entries on one point the later one first.
enum class PageOrder { AsTyped, ByPosition };

// The content of the page's file. `path` is for messages. Throws Failure, naming file and line, if the page
// could not be read again: it passes 32 MB, or a text line 65,535 bytes.
std::string ContentOfPage(const Page& page, PageOrder order, const std::string& path);
// The page that a file's content holds. Throws Failure, naming file and line, if it is no page (see
// docs/formats.md) or could not be written again.
Page PageOfContent(std::string_view content, const std::string& path);

// Writes the page in memory. Throws Failure; the old file is then whole.
void WritePageSorted(const std::string& path);
void WritePagePlain(const std::string& path);
// Replaces the page in memory by the file's. Throws Failure; the page is then as it was.
void ReadPage(const std::string& path);

}  // namespace kelvane
