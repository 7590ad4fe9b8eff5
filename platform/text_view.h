#pragma once

// Controls of the windows that are read rather than drawn in: laid out text, tabs, lists, longer texts, pages
// of the web.

#include <functional>
#include <string>
#include <vector>

#include "platform/controls.h"

namespace kelvane {

// A stretch of a line: words, a link, or a small picture in the line.
struct TextPiece {
  std::string text = {};
  std::string link = {};     // what OnLink is told; empty: no link
  std::string picture = {};  // what OnPaintPicture is told; it takes the place of `text`
  int columns = 0;           // width of the picture in characters of the fixed-pitch face
  bool operator==(const TextPiece&) const = default;
};
using TextLine = std::vector<TextPiece>;

struct TextBlock {
  enum class Kind {
    Heading,    // one line, in a face that follows from its level
    Paragraph,  // one line, broken to the width of the view
    Table,      // lines as they stand, in "Letter Gothic" or the nearest fixed-pitch face
    Note,       // a paragraph that stands out: something is amiss
    Picture,    // the text of its line is the path of an image file; never wider than the view
  };
  Kind kind = Kind::Paragraph;
  int level = 0;  // of a heading, 1 to 6
  std::vector<TextLine> lines = {};
  bool operator==(const TextBlock&) const = default;
};

// The words of a line.
std::string WordsOf(const TextLine& line);

// A place within what a text view shows.
struct TextPlace {
  int block = 0;
  int line = 0;
  bool operator==(const TextPlace&) const = default;
};

// Shows text to be read, selected, copied, searched and printed.
class TextView : public Control {
 public:
  // Shows the blocks from their top, without marks.
  virtual void Show(const std::vector<TextBlock>& blocks) = 0;
  // Scrolls so that a place stands at the top, and the place that stands there.
  virtual void GoTo(TextPlace place) = 0;
  virtual TextPlace Top() const = 0;
  // Marks the words wherever they occur, in any letter case.
  virtual void Mark(const std::vector<std::string>& words) = 0;
  // Selects where `text` occurs next, in any letter case, going round at the end; false if it does nowhere.
  virtual bool Find(const std::string& text, bool backwards) = 0;
  // Letters larger or smaller by steps; 0: the usual size. Ctrl and the wheel do the same.
  virtual void ChangeTextSize(int steps) = 0;
  // The size is kept by the desktop under this name, from start to start.
  virtual void KeepTextSizeAs(const std::string& name) = 0;
  // Asks for a printer and prints all of it under a title.
  virtual void Print(const std::string& title) = 0;
  virtual void CopyAll() = 0;
  virtual void Focus() = 0;

  std::function<void(const std::string&)> OnLink;
  // Paints a picture of a piece in black. `em` is the size of the text in pixels, and so are the coordinates:
  // (0, 0) is where the baseline begins, y is downwards. Asked for anew whenever the text size changes.
  std::function<void(const std::string& picture, float em, float ratio, Painter&)> OnPaintPicture;
};

class Tabs : public Control {
 public:
  // The owner shows and hides what belongs to each tab.
  virtual void AddTab(const std::string& caption) = 0;
  // Does not call OnChosen.
  virtual void Choose(int tab) = 0;
  virtual int Chosen() const = 0;
  std::function<void(int)> OnChosen;
};

// Rows to choose from; rows of a deeper level can be folded away under the one before them.
class List : public Control {
 public:
  struct Row {
    std::string text = {};
    int level = 0;
    bool open = false;  // shows the rows below it, until the person folds them away
    bool operator==(const Row&) const = default;
  };
  // Does not call OnChosen.
  virtual void SetRows(const std::vector<Row>& rows) = 0;
  virtual void Choose(int row) = 0;  // -1: none
  virtual void Focus() = 0;
  std::function<void(int)> OnChosen;  // by the mouse, or by the keys that go through the rows
};

// A longer text of several lines, UTF-8, lines ended by "\n".
class TextArea : public Control {
 public:
  // Does not call OnChange.
  virtual void SetText(const std::string& text) = 0;
  virtual std::string Text() const = 0;
  virtual void Focus() = 0;
  std::function<void()> OnChange;
};

// A page of the web. Its scripts reach nothing of the program and its pages no file of the person; what leads
// away from `home` is left to OnLeave.
class Browser : public Control {
 public:
  // Goes to the page; `offline` (HTML) is shown where it cannot be had.
  virtual void Open(const std::string& home, const std::string& offline) = 0;
  virtual void Back() = 0;
  virtual void Forward() = 0;
  virtual void Reload() = 0;
  virtual void Stop() = 0;
  std::function<void(const std::string& address)> OnAddress;
  std::function<void(bool loading, bool back, bool forward)> OnProgress;  // what can be done now
  std::function<void(const std::string& address)> OnLeave;
};

}  // namespace kelvane
