#pragma once

// The bookmarks of a PDF document: lines that are set larger than the words around them.

#include <map>
#include <string>
#include <vector>

#include "document/page_items.h"
#include "output/pdf_file.h"
#include "platform/canvas.h"

namespace kelvane {

class Bookmarks {
 public:
  // `object` is the page's.
  void AddPage(const PageItems& items, int object, const Box& area);

  // Writes them and returns their entries in the catalog; nothing without bookmarks. The lines of the three
  // largest sizes count, as far as they are larger than most of the text.
  std::string Write(PdfFile& file) const;

 private:
  struct Line {
    int page = 0;  // object
    float size = 0;
    float x = 0;
    float y = 0;       // from the top of the area
    float height = 0;  // of the area
    std::string text;
    int level = 0;
  };

  std::vector<Line> Chosen() const;

  std::vector<Line> lines_;
  std::map<float, std::size_t> letters_;  // of the whole document, by size
};

}  // namespace kelvane
