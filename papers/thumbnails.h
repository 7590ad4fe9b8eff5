#pragma once

// Small pictures of the paper's pages, made one at a time by whoever has time for it, and kept as long as
// they are wanted or there is room.

#include <cstddef>
#include <map>
#include <memory>
#include <vector>

#include "document/page_items.h"
#include "platform/canvas.h"

namespace kelvane {

class Thumbnails {
 public:
  enum class Kind { Page, NoFile, Unreadable, TooLarge };
  struct Picture {
    Kind kind = Kind::Page;
    std::unique_ptr<Image> image = nullptr;  // of a page
  };

  // Device pixels of a picture. Another size drops all pictures.
  void SetSize(int width, int height);
  // Null until the page was looked at. It may show the page as it was.
  const Picture* Of(int page) const;
  // Looks at the first of the pages that may have changed since it was looked at, and makes its picture if
  // there is none yet. False if there is no such page.
  bool Update(const std::vector<int>& pages);
  // Other programs may have changed the files.
  void LookAgain() { looked_.clear(); }

  // What a larger page would take is too long for something that nobody asked for.
  static constexpr std::size_t kLargestPage = std::size_t{2} << 20;
  // Pictures kept beyond those that are wanted.
  static constexpr std::size_t kMostPictures = 200;

 private:
  // The pictures are known by what they show, so that a page that gets another number keeps its own.
  using Key = std::size_t;
  struct Look {
    int shown = 0;  // PagesShown and EditsMade at the time
    int edits = 0;
  };

  bool IsFresh(int page) const;
  Key TakePage(int page);
  Key TakeItems(const PageItems& items);
  Key Take(Kind kind);
  void DropOthers(const std::vector<int>& pages);

  int width_ = 0;
  int height_ = 0;
  std::map<int, Look> looked_;
  std::map<int, Key> lastSeen_;
  std::map<Key, Picture> pictures_;
};

}  // namespace kelvane
