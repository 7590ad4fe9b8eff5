#include "papers/thumbnails.h"

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

std::size_t KeyOf(const PageItems& items) {
  const std::hash<std::string> hash;
  constexpr std::size_t kSpread = 0x9E3779B97F4A7C15;
  return hash(items.Text()) * kSpread + hash(items.Records());
}

}  // namespace

void Thumbnails::SetSize(int width, int height) {
  if (width == width_ && height == height_) return;
  width_ = width;
  height_ = height;
  looked_.clear();
  lastSeen_.clear();
  pictures_.clear();
}

const Thumbnails::Picture* Thumbnails::Of(int page) const {
  const auto seen = lastSeen_.find(page);
  if (seen == lastSeen_.end()) return nullptr;
  const auto picture = pictures_.find(seen->second);
  return picture == pictures_.end() ? nullptr : &picture->second;
}

bool Thumbnails::IsFresh(int page) const {
  const auto look = looked_.find(page);
  if (look == looked_.end() || look->second.shown != PagesShown() || Of(page) == nullptr) return false;
  return page != CurrentPageNumber || look->second.edits == EditsMade();
}

bool Thumbnails::Update(const std::vector<int>& pages) {
  for (const int page : pages) {
    if (IsFresh(page)) continue;
    lastSeen_[page] = TakePage(page);
    looked_[page] = {PagesShown(), EditsMade()};
    DropOthers(pages);
    return true;
  }
  return false;
}

Thumbnails::Key Thumbnails::TakePage(int page) {
  if (page == CurrentPageNumber) {
    return ThePage.text.size() + ThePage.drawings.size() > kLargestPage ? Take(Kind::TooLarge)
                                                                        : TakeItems(ItemsOfPage());
  }
  const std::string file = PageFileName(CurrentPaperFile, page);
  if (!TheFiles->Exists(file)) return Take(Kind::NoFile);
  try {
    const std::string content = TheFiles->ReadWhole(file);
    if (content.size() > kLargestPage) return Take(Kind::TooLarge);
    return TakeItems(PageItems(PageOfContent(content, file)));
  } catch (const Failure&) {
    // Nobody has asked for this page yet. Who goes to it is told.
    return Take(Kind::Unreadable);
  }
}

Thumbnails::Key Thumbnails::TakeItems(const PageItems& items) {
  const Key key = KeyOf(items);
  if (pictures_.contains(key)) return key;
  Picture picture;
  const Box paper{0, 0, PaperWidth, PaperHeight};
  const float scale = static_cast<float>(width_) / PaperWidth;
  picture.image = TheToolkit->NewImage(width_, height_, paper, 1, false);
  PaintPage(*picture.image, {.area = paper, .scale = scale, .printed = true}, items, paper);
  pictures_[key] = std::move(picture);
  return key;
}

Thumbnails::Key Thumbnails::Take(Kind kind) {
  const auto key = static_cast<Key>(kind);
  pictures_[key].kind = kind;
  return key;
}

void Thumbnails::DropOthers(const std::vector<int>& pages) {
  if (pictures_.size() <= kMostPictures + pages.size()) return;
  std::set<Key> wanted;
  for (const int page : pages)
    if (const auto seen = lastSeen_.find(page); seen != lastSeen_.end()) wanted.insert(seen->second);
  std::erase_if(pictures_, [&](const auto& picture) { return !wanted.contains(picture.first); });
}

}  // namespace kelvane
