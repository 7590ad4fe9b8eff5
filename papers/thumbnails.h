#pragma once

// Small pictures of the paper's pages, made one at a time by whoever has time for it, and kept as long as
// they are wanted or there is room.

#include <cstddef>
#include <map>
#include <memory>
#include <optional>
#include <vector>

#include "document/page_items.h"
#include "platform/canvas.h"

namespace kelvane {

class Thumbnails {
 public:
  enum class Kind { Page, NoFile, Unreadable, Unfinished };
  struct Picture {
    Kind kind = Kind::Page;
    std::unique_ptr<Image> image = nullptr;  // of a page
  };

  // Device pixels of a picture. Another size drops all pictures.
  void SetSize(int width, int height);
  // Null until the page was looked at. It may show the page as it was.
  const Picture* Of(int page) const;
  // Looks at the first of the pages that may have changed since it was looked at, and makes its picture, or a
  // part of it, if there is none yet. False if there is no such page.
  bool Update(const std::vector<int>& pages);
  // Other programs may have changed the files.
  void LookAgain();
  // Drops the pictures of all other pages.
  void KeepOnly(const std::vector<int>& pages);

  // Bytes of a page that are painted at once: nobody asked for it, and somebody may be typing.
  static constexpr std::size_t kPart = std::size_t{256} << 10;
  // Pictures kept beyond those that are wanted. In the window "Pages" one takes 72 kB.
  static constexpr std::size_t kMostPictures = 40;

 private:
  // The pictures are known by what they show, so that a page that gets another number keeps its own.
  using Key = std::size_t;
  struct Look {
    int shown = 0;  // PagesShown and EditsMade at the time
    int edits = 0;
  };
  // A page whose picture is painted in parts.
  struct Large {
    int page = 0;
    Look look;
    Page content;
    std::size_t drawingsDone = 0;  // bytes
    std::size_t textDone = 0;
    Key key = 0;
    std::unique_ptr<Image> image = nullptr;
  };

  static bool Holds(const Look& look, int page);  // nothing has changed since
  bool IsFresh(int page) const;
  // Nothing as long as its picture is not finished.
  std::optional<Key> TakePage(int page);
  std::optional<Key> TakeContent(int page, const Page& content);
  std::optional<Key> GoOn();
  Key Take(Kind kind);
  void PaintOn(Image& image, const PageItems& items, bool paper) const;

  int width_ = 0;
  int height_ = 0;
  std::map<int, Look> looked_;
  std::map<int, Key> lastSeen_;
  std::map<Key, Picture> pictures_;
  std::optional<Large> large_;
};

}  // namespace kelvane
