#pragma once

// The current page in memory, its two kinds of entry, and its file.
//
// A text entry is one line `X Y m SIZE F<h> (TEXT) ANCHOR s` or `... ANCHOR AMOUNT a` of PageText. A drawing
// is one record `X0 Y0 CX CY EX EY ... W` of DrawingList, absolute points, W = colour * 10 + width in points;
// in files it is a line `X0 Y0 m W lw ... stroke` or `fill` with relative operands.

#include <cstdint>
#include <string>
#include <string_view>

namespace kelvane {

// Text lines of the page, each ended by CR LF. Changed by commits, undo, macros of the edit menu and reading.
extern std::string PageText;
// Number of drawings and their records, each ended by CR LF.
extern std::int16_t DrawingCount;
extern std::string DrawingList;
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

// The run of a line: what stands between its first "(" and its last ")". False if there is no such pair.
bool FindRun(std::string_view line, std::size_t& begin, std::size_t& end);

// The line of a drawing record; empty for an empty record or one of fewer than 5 tokens.
std::string DrawingRecordToLine(std::string_view record);
// The record of a drawing line; empty for an empty line. Throws Failure if more than 40 numbers are pushed or
// an operator finds too few.
std::string LineToDrawingRecord(std::string_view line);

bool PageIsEmpty();

// Empties the four pieces of the page.
void ClearPage();

// Writes the page, text entries by (Y, X), then the drawings. Throws Failure; the old file is then whole.
void WritePageSorted(const std::string& path);
// The same with the text as it stands.
void WritePagePlain(const std::string& path);

// Replaces the page by the file's. Throws Failure naming file and line if the file is no page (see
// docs/formats.md); the page in memory is then as it was.
void ReadPage(const std::string& path);

}  // namespace kelvane
