#pragma once

// One line of text in UTF-8 with a caret and a selected part, as keys edit it.

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace kelvane {

class LineEditor {
 public:
  const std::string& Text() const { return now_.text; }
  std::size_t Caret() const { return now_.caret; }
  // The selected part, bytes; the same twice if nothing is selected.
  std::size_t SelectedFrom() const;
  std::size_t SelectedTo() const;
  std::string_view Selected() const;

  // Each change is one step back, but characters that are typed one behind the other are one, and so are
  // those that Backspace takes; behind a blank another begins.

  // Another text, the caret behind it; what was before can be taken back unless `fresh`.
  void Set(std::string text, bool fresh = false);
  // Puts text in the place of a part, the caret so many bytes into it.
  void Replace(std::size_t from, std::size_t to, std::string_view text,
               std::size_t caret = std::string_view::npos);
  // The same in the place of what is selected.
  void Insert(std::string_view text, std::size_t caret = std::string_view::npos);
  void Type(char character);
  void Erase(std::size_t from, std::size_t to);
  void MoveCaret(std::size_t to, bool extending = false);
  void SelectAll();
  // The letters and figures around a place.
  void SelectWordAt(std::size_t at);

  // Arrows, Home, End, Backspace, Delete with Shift and Ctrl as usual; false for other keys.
  bool Key(int code);

  bool CanUndo() const { return !back_.empty(); }
  bool CanRedo() const { return !forward_.empty(); }
  void Undo();
  void Redo();

 private:
  struct State {
    std::string text;
    std::size_t caret = 0;
    std::size_t other = 0;  // the other end of what is selected
  };

  enum class Change { Other, Typing, Erasing };
  void Keep(Change change = Change::Other);
  void EraseBefore();
  // The next place to the left or right: by character, by word.
  std::size_t Beside(bool right, bool word) const;

  State now_;
  std::vector<State> back_;
  std::vector<State> forward_;
  Change last_ = Change::Other;  // the one that may go on
};

}  // namespace kelvane
