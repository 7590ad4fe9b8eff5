#include "editing/line_editor.h"

#include <algorithm>
#include <cctype>
#include <utility>

#include "platform/canvas.h"

namespace kelvane {

namespace {

bool Continues(char byte) {
  return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

bool IsOfWord(char byte) {
  const auto code = static_cast<unsigned char>(byte);
  return std::isalnum(code) || code >= 128;
}

}  // namespace

std::size_t LineEditor::SelectedFrom() const {
  return std::min(now_.caret, now_.other);
}

std::size_t LineEditor::SelectedTo() const {
  return std::max(now_.caret, now_.other);
}

std::string_view LineEditor::Selected() const {
  return std::string_view(now_.text).substr(SelectedFrom(), SelectedTo() - SelectedFrom());
}

void LineEditor::Keep(Change change) {
  if (change == Change::Other || change != last_) back_.push_back(now_);
  last_ = change;
  forward_.clear();
}

void LineEditor::Set(std::string text, bool fresh) {
  if (fresh) {
    back_.clear();
    forward_.clear();
    last_ = Change::Other;
  } else {
    Keep();
  }
  now_.text = std::move(text);
  now_.caret = now_.other = now_.text.size();
}

void LineEditor::Replace(std::size_t from, std::size_t to, std::string_view text, std::size_t caret) {
  Keep();
  now_.text.replace(from, to - from, text);
  now_.caret = now_.other = from + std::min(caret, text.size());
}

void LineEditor::Insert(std::string_view text, std::size_t caret) {
  Replace(SelectedFrom(), SelectedTo(), text, caret);
}

void LineEditor::Type(char character) {
  if (!Selected().empty()) {
    Insert(std::string_view(&character, 1));
    last_ = Change::Typing;
    return;
  }
  const bool newWord = character != ' ' && now_.caret > 0 && now_.text[now_.caret - 1] == ' ';
  if (newWord) last_ = Change::Other;
  Keep(Change::Typing);
  now_.text.insert(now_.caret, 1, character);
  now_.other = ++now_.caret;
}

void LineEditor::Erase(std::size_t from, std::size_t to) {
  if (from != to) Replace(from, to, {});
}

void LineEditor::EraseBefore() {
  const std::size_t from = Beside(false, false);
  if (from == now_.caret) return;
  Keep(Change::Erasing);
  now_.text.erase(from, now_.caret - from);
  now_.caret = now_.other = from;
}

void LineEditor::MoveCaret(std::size_t to, bool extending) {
  now_.caret = std::min(to, now_.text.size());
  while (now_.caret > 0 && now_.caret < now_.text.size() && Continues(now_.text[now_.caret])) --now_.caret;
  if (!extending) now_.other = now_.caret;
  last_ = Change::Other;
}

void LineEditor::SelectAll() {
  last_ = Change::Other;
  now_.other = 0;
  now_.caret = now_.text.size();
}

void LineEditor::SelectWordAt(std::size_t at) {
  std::size_t from = at, to = at;
  while (from > 0 && IsOfWord(now_.text[from - 1])) --from;
  while (to < now_.text.size() && IsOfWord(now_.text[to])) ++to;
  MoveCaret(from);
  MoveCaret(to, true);
}

std::size_t LineEditor::Beside(bool right, bool word) const {
  const std::string& text = now_.text;
  std::size_t at = now_.caret;
  const auto step = [&] {
    if (right) {
      do ++at;
      while (at < text.size() && Continues(text[at]));
    } else {
      do --at;
      while (at > 0 && Continues(text[at]));
    }
  };
  const auto isEnd = [&] { return right ? at >= text.size() : at == 0; };
  const auto next = [&] { return text[right ? at : at - 1]; };
  if (isEnd()) return at;
  step();
  if (!word) return at;
  while (!isEnd() && !IsOfWord(right ? text[at - 1] : text[at])) step();
  while (!isEnd() && IsOfWord(next())) step();
  return at;
}

bool LineEditor::Key(int code) {
  const bool extending = code & kWithShift;
  const bool word = code & kWithControl;
  const bool selected = SelectedFrom() != SelectedTo();
  switch (code & ~kWithShift & ~kWithControl) {
    case kKeyLeft:
      MoveCaret(selected && !extending ? SelectedFrom() : Beside(false, word), extending);
      return true;
    case kKeyRight:
      MoveCaret(selected && !extending ? SelectedTo() : Beside(true, word), extending);
      return true;
    case kKeyHome:
      MoveCaret(0, extending);
      return true;
    case kKeyEnd:
      MoveCaret(now_.text.size(), extending);
      return true;
    case kKeyBackspace:
      selected ? Erase(SelectedFrom(), SelectedTo()) : EraseBefore();
      return true;
    case kKeyWordBackspace:
      selected ? Erase(SelectedFrom(), SelectedTo()) : Erase(Beside(false, true), now_.caret);
      return true;
    case kKeyDelete:
      selected ? Erase(SelectedFrom(), SelectedTo()) : Erase(now_.caret, Beside(true, word));
      return true;
    default:
      return false;
  }
}

void LineEditor::Undo() {
  if (back_.empty()) return;
  forward_.push_back(std::exchange(now_, back_.back()));
  back_.pop_back();
  last_ = Change::Other;
}

void LineEditor::Redo() {
  if (forward_.empty()) return;
  back_.push_back(std::exchange(now_, forward_.back()));
  forward_.pop_back();
  last_ = Change::Other;
}

}  // namespace kelvane
