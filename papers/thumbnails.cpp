#include "papers/thumbnails.h"

#include <algorithm>
#include <functional>
#include <set>
#include <string>
#include <utility>

#include "document/paper.h"
#include "editing/edit.h"
#include "papers/paper_commands.h"
#include "platform/controls.h"
#include "platform/failure.h"
#include "platform/files.h"
#include "typography/renderer.h"

namespace kelvane {

namespace {

std::size_t KeyOf(const Page& page) {
  const std::hash<std::string> hash;
  constexpr std::size_t kSpread = 0x9E3779B97F4A7C15;
  return hash(page.text) * kSpread + hash(page.drawings);
}

// Whole lines from `done` on, about as many as are painted at once.
std::string TakePart(const std::string& lines, std::size_t& done) {
  const std::size_t begin = done;
  const std::size_t end = lines.find('\n', std::min(begin + Thumbnails::kPart, lines.size()));
  done = end == lines.npos ? lines.size() : end + 1;
  return lines.substr(begin, done - begin);
}

}  // namespace

void Thumbnails::SetSize(int width, int height) {
  if (width == width_ && height == height_) return;
  width_ = width;
  height_ = height;
  LookAgain();
  lastSeen_.clear();
  pictures_.clear();
}

void Thumbnails::LookAgain() {
  looked_.clear();
  large_.reset();
}

const Thumbnails::Picture* Thumbnails::Of(int page) const {
  const auto seen = lastSeen_.find(page);
  if (seen == lastSeen_.end()) return nullptr;
  const auto picture = pictures_.find(seen->second);
  return picture == pictures_.end() ? nullptr : &picture->second;
}

bool Thumbnails::Holds(const Look& look, int page) {
  return look.shown == PagesShown() && (page != CurrentPageNumber || look.edits == EditsMade());
}

bool Thumbnails::IsFresh(int page) const {
  const auto look = looked_.find(page);
  return look != looked_.end() && Holds(look->second, page) && Of(page) != nullptr;
}

bool Thumbnails::Update(const std::vector<int>& pages) {
  for (const int page : pages) {
    if (IsFresh(page)) continue;
    if (const std::optional<Key> key = TakePage(page)) {
      lastSeen_[page] = *key;
      looked_[page] = {PagesShown(), EditsMade()};
      if (pictures_.size() > kMostPictures + pages.size()) KeepOnly(pages);
    }
    return true;
  }
  return false;
}

std::optional<Thumbnails::Key> Thumbnails::TakePage(int page) {
  if (large_ && large_->page == page && Holds(large_->look, page)) return GoOn();
  if (page == CurrentPageNumber) return TakeContent(page, ThePage);
  const std::string file = PageFileName(CurrentPaperFile, page);
  if (!TheFiles->Exists(file)) return Take(Kind::NoFile);
  try {
    return TakeContent(page, PageOfContent(TheFiles->ReadWhole(file), file));
  } catch (const Failure&) {
    // Nobody has asked for this page yet. Who goes to it is told.
    return Take(Kind::Unreadable);
  }
}

std::optional<Thumbnails::Key> Thumbnails::TakeContent(int page, const Page& content) {
  const Key key = KeyOf(content);
  if (pictures_.contains(key)) return key;
  std::unique_ptr<Image> image = TheToolkit->NewImage(width_, height_, WholeSheet(), 1, false);
  if (content.text.size() + content.drawings.size() > kPart) {
    if (!Of(page)) lastSeen_[page] = Take(Kind::Unfinished);
    large_ = {page, {PagesShown(), EditsMade()}, content, 0, 0, key, std::move(image)};
    return GoOn();
  }
  if (page == CurrentPageNumber) {
    PaintOn(*image, ItemsOfPage(), true);
  } else {
    PaintOn(*image, PageItems(content), true);
  }
  pictures_[key] = {Kind::Page, std::move(image)};
  return key;
}

std::optional<Thumbnails::Key> Thumbnails::GoOn() {
  Large& large = *large_;
  const bool first = large.drawingsDone + large.textDone == 0;
  // In the order in which a page is painted as a whole.
  Page part;
  if (large.drawingsDone < large.content.drawings.size()) {
    part.drawings = TakePart(large.content.drawings, large.drawingsDone);
  } else {
    part.text = TakePart(large.content.text, large.textDone);
  }
  PaintOn(*large.image, PageItems(part), first);
  if (large.drawingsDone < large.content.drawings.size() || large.textDone < large.content.text.size())
    return std::nullopt;
  const Key key = large.key;
  pictures_[key] = {Kind::Page, std::move(large.image)};
  large_.reset();
  return key;
}

void Thumbnails::PaintOn(Image& image, const PageItems& items, bool paper) const {
  const float scale = static_cast<float>(width_) / PaperWidth;
  PaintPage(image, {.area = WholeSheet(), .scale = scale, .printed = true, .paper = paper}, items,
            WholeSheet());
}

Thumbnails::Key Thumbnails::Take(Kind kind) {
  const auto key = static_cast<Key>(kind);
  pictures_[key].kind = kind;
  return key;
}

void Thumbnails::KeepOnly(const std::vector<int>& pages) {
  std::set<Key> wanted;
  for (const int page : pages)
    if (const auto seen = lastSeen_.find(page); seen != lastSeen_.end()) wanted.insert(seen->second);
  std::erase_if(pictures_, [&](const auto& picture) { return !wanted.contains(picture.first); });
}

}  // namespace kelvane
