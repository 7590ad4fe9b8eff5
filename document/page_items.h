#pragma once

// The page taken apart: every line of its text and every record of its drawings, each read in one place. The
// texts stay the truth; items are derived from them and can be made anew at any time with the same result.

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "document/page.h"
#include "platform/canvas.h"

namespace kelvane {

// A line of the page's text. One that is no text entry draws nothing and is kept as it stands.
struct TextItem {
  std::uint64_t id = 0;       // stays with the item while edits change it
  std::uint64_t reading = 0;  // stays while the line is the same; no other line ever has it
  std::string_view line;      // without its end
  bool draws = false;
  TextEntry entry;  // if it draws
};

// A record of the page's drawings; one without a whole segment draws nothing.
struct DrawingItem {
  std::uint64_t id = 0;
  std::string_view record;  // without its end
  bool draws = false;
  Drawing drawing;  // if it draws
};

// Items of a copy of a page, which their views point into.
class PageItems {
 public:
  PageItems() = default;
  explicit PageItems(const Page& page) { Follow(page); }
  PageItems(const PageItems&) = delete;
  PageItems& operator=(const PageItems&) = delete;

  // Takes over another state of the page. A line that stood there before, or that stands in the place of one
  // that was changed, keeps its identity. Costs a comparison if nothing changed.
  void Follow(const Page& page);

  // The page that the items were taken from.
  const std::string& Text() const { return *text_; }
  const std::string& Records() const { return *records_; }
  std::int16_t DrawingCount() const { return drawingCount_; }

  const std::vector<TextItem>& Texts() const { return texts_; }
  const std::vector<DrawingItem>& Drawings() const { return drawings_; }

  // Null for an identity that no item has, or one that draws nothing.
  const TextItem* FindText(std::uint64_t id) const;
  const DrawingItem* FindDrawing(std::uint64_t id) const;

 private:
  // On the heap, so that views into them outlive a change of hands.
  std::unique_ptr<const std::string> text_ = std::make_unique<std::string>();
  std::unique_ptr<const std::string> records_ = std::make_unique<std::string>();
  std::int16_t drawingCount_ = 0;
  std::vector<TextItem> texts_;
  std::vector<DrawingItem> drawings_;
};

// The items of the page in memory as it is now. The reference stays; what it holds changes with the page.
const PageItems& ItemsOfPage();

}  // namespace kelvane
