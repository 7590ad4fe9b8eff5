#pragma once

// The objects of a PDF file, written one behind the other as they are made.

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/canvas.h"

namespace kelvane {

// A number as PDF has it: fixed point, decimals only as far as they count.
std::string PdfNumber(double value);
// A text in UTF-8 as a string object.
std::string PdfText(std::string_view utf8);
// "12 0 R".
std::string PdfReference(int object);

// Adds the path in the operators of a page's content, each point as `place` has it.
void AppendPdfPath(std::string& content, const Path& path, const std::function<Point(Point)>& place);

class PdfFile {
 public:
  // The bytes go to `take` in their order. Begins with the header.
  explicit PdfFile(std::function<void(std::string_view)> take);

  // The number of an object that will be written later.
  int Reserve();
  void Write(int object, std::string_view body);
  int Write(std::string_view body);
  // A stream, packed. `entries` are those of its dictionary besides length and filter.
  void WriteStream(int object, std::string_view entries, std::string_view content);
  int WriteStream(std::string_view entries, std::string_view content);

  // The table of the objects and the trailer, whose ID follows from all that was written.
  void Finish(int catalog, int information);

 private:
  void Put(std::string_view bytes);

  std::function<void(std::string_view)> take_;
  std::vector<std::uint64_t> places_;  // of the objects, by number; 0 until they are written
  std::uint64_t size_ = 0;
  std::uint64_t hash_[2];
};

}  // namespace kelvane
