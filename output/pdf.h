#pragma once

// Pages as a PDF document: what print shows, in fonts that the document carries, with text that can be found
// and copied, and the page's own text attached, so that the document opens again in the editor.

#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "document/page_items.h"
#include "platform/canvas.h"

namespace kelvane {

// A document that is made page by page. What is done goes to `take` at once, so that the document needs no
// memory for its pages. The same pages make the same bytes.
class PdfDocument {
 public:
  struct Options {
    std::string title;  // UTF-8
    bool bookmarks = false;
  };
  PdfDocument(std::function<void(std::string_view)> take, Options options);
  ~PdfDocument();

  // The part of a page that lies in `area` (points) as a page of that size. `number` is on its label;
  // `attached` is the content of the page's file, empty to attach nothing.
  void AddPage(const PageItems& items, const Box& area, int number, std::string_view attached);

  // The last step. Returns what the person should be told: typefaces whose fonts are not on this machine and
  // what stands in their place. Empty if nothing is missing.
  std::string Finish();

 private:
  class Writer;
  std::unique_ptr<Writer> writer_;
};

// A page, or what is selected of it, as a document of one page of the size of `area`.
std::string PdfOf(const PageItems& items, const Box& area);

}  // namespace kelvane
