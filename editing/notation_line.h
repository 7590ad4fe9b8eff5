#pragma once

// The line that a notation is typed in, as it lies over the page: the text in rows with its caret and what is
// selected, a sentence below it, and the names that may be meant.

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "editing/line_editor.h"
#include "editing/sign_names.h"
#include "formula/result.h"
#include "typography/view.h"

namespace kelvane {

inline bool IsBlank(std::string_view text) {
  return text.find_first_not_of(' ') == std::string_view::npos;
}

class NotationLine : public LineEditor {
 public:
  // Names of signs and of the notation. FollowName offers those that the text before the caret may mean,
  // TakeName puts the chosen one there: the caret goes into its first empty place, and otherwise behind it.
  SignNames& Names() { return names_; }
  void FollowName();
  void TakeName();

  // What an input method has in the making, at the caret.
  void SetPreedit(const std::string& utf8) { preedit_ = utf8; }

  // Where it was painted last.
  bool Holds(Point at) const;
  // Before which byte of the text a point is.
  std::size_t PlaceAt(Point at) const;
  // The foot of the caret, below all rows.
  Point CaretFoot() const { return {caretX_, strip_.bottom}; }

  // Below a formula from `origin` on whose ink is `ink`, or above it where there is no room; what is wrong
  // with the notation is underlined and said.
  void Paint(Painter& painter, const View& view, Point origin, const Box& ink,
             const std::optional<FormulaError>& error);

 private:
  std::string_view RowOf(std::string_view text, std::size_t row) const;
  std::size_t RowAt(std::size_t byte) const;
  void BreakRows(std::string_view text, float most, float pixel);
  void PlaceStrip(const View& view, Point origin, const Box& ink, float width);
  void PaintPart(Painter& painter, std::string_view text, float pixel, std::size_t begin, std::size_t end,
                 float top, float bottom, int colour) const;

  SignNames names_;
  std::string preedit_;
  Box strip_;                      // as it was painted last, points
  std::vector<std::size_t> rows_;  // where they begin, bytes of the text with the preedit
  float caretX_ = 0;
};

}  // namespace kelvane
