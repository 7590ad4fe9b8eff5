#pragma once

// The clipboard, which all programs of the desktop share.

#include <string>

namespace kelvane {

class Clipboard {
 public:
  virtual ~Clipboard() = default;
  // Puts a text of codes there for every program, each code as the sign that the control-code box shows, and
  // beside it, unless empty, the bytes that only this program reads.
  virtual void Put(const std::string& items, const std::string& text) = 0;
  virtual void PutText(const std::string& utf8) = 0;
  // Empty if nothing of the kind is there.
  virtual std::string Items() const = 0;
  virtual std::string Text() const = 0;  // UTF-8
  // The codes of a text in UTF-8, read as the control-code box reads it; lines end in LF. What has no code is
  // left out and goes to `untypable`: readable, in UTF-8, blanks between.
  virtual std::string CodesOf(const std::string& utf8, std::string& untypable) const = 0;
};

// In use by the whole program; start-up and tests set it.
extern Clipboard* TheClipboard;

}  // namespace kelvane
