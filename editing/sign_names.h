#pragma once

// Names of signs as they are typed: a backslash and letters in the run, and the list of signs that they may
// mean.

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "platform/canvas.h"
#include "typography/signs.h"
#include "typography/view.h"

namespace kelvane {

// The backslash and letters that a text ends with; empty if it ends otherwise.
std::string_view NameAtEnd(std::string_view text);

class SignNames {
 public:
  // What stands before the caret has changed by typing: offers the signs whose names begin as it ends, and
  // `others`, names that are no signs with their empty places.
  void Follow(std::string_view beforeCaret, const std::vector<std::string>& others = {});
  void Close() { rows_.clear(); }
  bool Open() const { return !rows_.empty(); }

  // A step up or down the list.
  void Move(int rows);
  const Sign& Chosen() const { return *rows_[chosen_].sign; }
  // As it is typed in a notation.
  std::string ChosenNotation() const { return NotationOf(rows_[chosen_]); }
  // Chooses the row at a point of the page; false if the list is not there.
  bool ChooseAt(Point at);

  // The list below the caret, or above the line that it is in, which begins at y = `top`, where there is no
  // room.
  void Paint(Painter& painter, const View& view, Point caret, float top);

 private:
  struct Row {
    const Sign* sign;  // null for a name that is none
    std::string name;
  };
  std::size_t Rows() const;
  std::string NotationOf(const Row& row) const;
  void PaintPicture(Painter& painter, const View& view, const Row& row, const Box& cell) const;

  std::vector<Row> rows_;
  std::string typed_;  // without the backslash
  std::size_t chosen_ = 0;
  std::size_t first_ = 0;  // row at the top
  Box box_;                // as it was painted last, points
};

}  // namespace kelvane
