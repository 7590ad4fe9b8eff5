#include "app/page_board.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "document/paper.h"
#include "papers/page_operations.h"
#include "papers/paper_commands.h"
#include "typography/colours.h"
#include "typography/metrics.h"
#include "typography/typefaces.h"
#include "typography/view.h"

namespace kelvane {
namespace {

// Logical pixels.
constexpr float kLongSide = 160;  // of a picture
constexpr float kGap = 18;        // between pictures
constexpr float kNumberRow = 22;  // below each
constexpr float kNumberSize = 13;
constexpr float kEdge = 24;     // a drag there scrolls
constexpr float kEdgeStep = 4;  // each time

constexpr ColourValue kInk = 0x000000;
constexpr ColourValue kPaper = 0xFFFFFF;
constexpr ColourValue kFaint = 0x808080;
constexpr ColourValue kChosenBack = 0xF0D8B8;
constexpr ColourValue kCurrentMark = 0xB04000;

constexpr std::int16_t kPlainFace = 4;
constexpr std::int16_t kBoldFace = 5;

void PaintWords(Painter& painter, const std::string& text, Point middle, float size, bool bold,
                ColourValue colour) {
  const std::int16_t face = bold ? kBoldFace : kPlainFace;
  std::vector<Point> origins;
  float x = std::round(middle.x - MeasureRun(text, face, size) / 2);
  for (const char c : text) {
    origins.push_back({x, middle.y});
    x += MeasureRun(std::string_view(&c, 1), face, size);
  }
  painter.DrawText(kTypefaceNames[face].screen, size, text, origins, colour);
}

void PaintFrame(Painter& painter, const Box& box, float width, ColourValue colour) {
  const auto [left, top, right, bottom] = box;
  painter.FillBox({left - width, top - width, right + width, top}, colour);
  painter.FillBox({left - width, bottom, right + width, bottom + width}, colour);
  painter.FillBox({left - width, top, left, bottom}, colour);
  painter.FillBox({right, top, right + width, bottom}, colour);
}

const char* WordsFor(const Thumbnails::Picture* picture) {
  if (!picture) return "";
  switch (picture->kind) {
    case Thumbnails::Kind::NoFile:
      return "no file";
    case Thumbnails::Kind::Unreadable:
      return "cannot be read";
    case Thumbnails::Kind::Unfinished:
      return "being drawn";
    case Thumbnails::Kind::Page:
      break;
  }
  return "";
}

}  // namespace

// How the pages lie on the canvas, in pixels from the top left of the first row's margin.
struct PageBoard::Grid {
  float width = 0;  // of a picture
  float height = 0;
  float left = 0;
  int columns = 1;

  float CellWidth() const { return width + kGap; }
  float CellHeight() const { return height + kNumberRow + kGap; }
  Box PictureOf(int page) const {
    const auto column = static_cast<float>((page - 1) % columns);
    const auto row = static_cast<float>((page - 1) / columns);
    const float x = left + column * CellWidth();
    const float y = kGap + row * CellHeight();
    return {x, y, x + width, y + height};
  }
  float Height() const {
    return kGap + static_cast<float>((MostPageNumber() + columns - 1) / columns) * CellHeight();
  }
};

PageBoard::Grid PageBoard::GridNow() const {
  Grid grid;
  const float scale = kLongSide / std::max(PaperWidth, PaperHeight);
  grid.width = std::max(std::round(PaperWidth * scale), 8.0F);
  grid.height = std::max(std::round(PaperHeight * scale), 8.0F);
  const auto all = static_cast<float>(canvas_->PixelWidth());
  grid.columns = std::max(static_cast<int>((all - kGap) / grid.CellWidth()), 1);
  grid.left = std::max((all - static_cast<float>(grid.columns) * grid.CellWidth() + kGap) / 2, kGap / 2);
  return grid;
}

void PageBoard::AddTo(Window& window) {
  window_ = &window;
  canvas_ = window.AddCanvas();
  canvas_->SetName("Pages of the paper");
  canvas_->OnPaint = [this](Layer layer, const Box& area) { Paint(layer, area); };
  bar_ = window.AddScrollBar(false);
  bar_->OnScroll = [this](float top) { ScrollTo(top); };
}

void PageBoard::SetPlace(const Place& place) {
  window_->SetCanvasPlace(canvas_, place);
  bar_->SetPlace({place.left + place.width, place.top, kScrollBarPixels, place.height});
  const Grid grid = GridNow();
  const float ratio = canvas_->PixelRatio();
  pictures_.SetSize(static_cast<int>(std::lround(grid.width * ratio)),
                    static_cast<int>(std::lround(grid.height * ratio)));
  Show();
  ScrollToChosen();
}

float PageBoard::MostScrolled() const {
  return std::max(GridNow().Height() - Height(), 0.0F);
}

std::vector<int> PageBoard::PagesBetween(float top, float bottom) const {
  const Grid grid = GridNow();
  const auto rowAt = [&](float y) {
    return static_cast<int>(std::floor((scrolled_ + y - kGap / 2) / grid.CellHeight()));
  };
  std::vector<int> pages;
  const int last = std::min((rowAt(bottom) + 1) * grid.columns, MostPageNumber());
  for (int page = std::max(rowAt(top), 0) * grid.columns + 1; page <= last; ++page) pages.push_back(page);
  return pages;
}

// Those in view first, then a windowful below and above.
std::vector<int> PageBoard::PagesWanted() const {
  std::vector<int> wanted;
  for (const float top : {0.0F, Height(), -Height()}) {
    const std::vector<int> pages = PagesBetween(top, top + Height());
    wanted.insert(wanted.end(), pages.begin(), pages.end());
  }
  return wanted;
}

bool PageBoard::PaintNext() {
  if (!HasSize() || !pictures_.Update(PagesWanted())) return false;
  Show();
  return true;
}

void PageBoard::DropOutOfView() {
  if (HasSize()) pictures_.KeepOnly(PagesBetween(0, Height()));
}

void PageBoard::Show() {
  if (!HasSize()) return;
  const auto width = static_cast<float>(canvas_->PixelWidth());
  scrolled_ = std::round(std::clamp(scrolled_, 0.0F, MostScrolled()));
  canvas_->SetCoordinates(0, scrolled_, width, Height());
  canvas_->Invalidate(Layer::Page);
  canvas_->Invalidate(Layer::Overlay);
  bar_->SetRange(0, GridNow().Height(), Height(), scrolled_);
}

void PageBoard::ScrollTo(float top) {
  const float before = scrolled_;
  scrolled_ = std::round(std::clamp(top, 0.0F, MostScrolled()));
  if (scrolled_ == before || !HasSize()) return;
  canvas_->ScrollTo(0, scrolled_, static_cast<float>(canvas_->PixelWidth()), Height());
  bar_->SetRange(0, GridNow().Height(), Height(), scrolled_);
  if (OnScrolled) OnScrolled();
}

void PageBoard::ScrollBy(float pixels) {
  ScrollTo(scrolled_ + pixels);
}

void PageBoard::ScrollToChosen() {
  const Box picture = GridNow().PictureOf(chosen_);
  const float top = picture.top - kGap;
  const float bottom = picture.bottom + kNumberRow;
  if (top < scrolled_) ScrollTo(top);
  if (bottom > scrolled_ + Height()) ScrollTo(bottom - Height());
}

void PageBoard::Choose(int page) {
  chosen_ = std::clamp(page, 1, MostPageNumber());
  ScrollToChosen();
  Show();
}

void PageBoard::ChooseRows(int rows) {
  const int columns = GridNow().columns;
  const int to = chosen_ + rows * columns;
  Choose(to < 1 ? (chosen_ - 1) % columns + 1 : to);
}

int PageBoard::RowsInView() const {
  return std::max(static_cast<int>(Height() / GridNow().CellHeight()), 1);
}

int PageBoard::PageAt(Point at) const {
  const Grid grid = GridNow();
  for (const int page : PagesBetween(0, Height())) {
    const Box picture = grid.PictureOf(page);
    if (at.x >= picture.left - kGap / 2 && at.x < picture.right + kGap / 2 &&
        at.y + scrolled_ >= picture.top - kGap / 2 && at.y + scrolled_ < picture.bottom + kNumberRow) {
      return page;
    }
  }
  return 0;
}

void PageBoard::Drag(std::optional<Point> pointer) {
  pointer_ = pointer;
  canvas_->Invalidate(Layer::Overlay);
}

void PageBoard::ScrollWithDrag() {
  if (!pointer_) return;
  if (pointer_->y < kEdge) ScrollBy(-kEdgeStep);
  if (pointer_->y > Height() - kEdge) ScrollBy(kEdgeStep);
}

int PageBoard::PlaceOfDrop(Point at) const {
  const Grid grid = GridNow();
  const int row = std::max(static_cast<int>((at.y + scrolled_ - kGap / 2) / grid.CellHeight()), 0);
  const int column = static_cast<int>(std::lround((at.x - grid.left + kGap / 2) / grid.CellWidth()));
  const int gap = row * grid.columns + std::clamp(column, 0, grid.columns);  // pages before it
  const int to = gap >= chosen_ ? gap : gap + 1;
  return std::clamp(to, 1, MostPageNumber());
}

void PageBoard::PaintPicture(const Box& box, int page) const {
  const Thumbnails::Picture* picture = pictures_.Of(page);
  if (picture && picture->image) {
    canvas_->DrawImage(*picture->image, {box.left, box.top});
    return;
  }
  canvas_->FillBox(box, kPaper);
  const Point middle{(box.left + box.right) / 2, (box.top + box.bottom) / 2};
  PaintWords(*canvas_, WordsFor(picture), middle, kNumberSize - 1, false, kFaint);
}

void PageBoard::PaintCell(const Grid& grid, int page) const {
  const Box box = grid.PictureOf(page);
  const bool current = page == CurrentPageNumber;
  if (page == chosen_) {
    constexpr float kAround = kGap / 2 - 1;
    canvas_->FillBox(
        {box.left - kAround, box.top - kAround, box.right + kAround, box.bottom + kNumberRow + 2},
        kChosenBack);
  }
  PaintPicture(box, page);
  PaintFrame(*canvas_, box, current ? 3.0F : 1.0F, current ? kCurrentMark : kFaint);
  const std::string number = std::to_string(page);
  const float x = (box.left + box.right) / 2;
  const float y = box.bottom + kNumberRow - 5;
  if (current) {
    const float half = MeasureRun(number, kBoldFace, kNumberSize) / 2 + 7;
    canvas_->FillBox({std::round(x - half), y - 13, std::round(x + half), y + 4}, kCurrentMark);
  }
  PaintWords(*canvas_, number, {x, y}, kNumberSize, current, current ? kPaper : kInk);
}

// Where the page that is dragged would come: a bar between two pages.
void PageBoard::PaintPlaceOfDrop() const {
  if (!pointer_) return;
  const int to = PlaceOfDrop(*pointer_);
  if (to == chosen_) return;
  const Box box = GridNow().PictureOf(to);
  const float x = to > chosen_ ? box.right + kGap / 2 : box.left - kGap / 2;
  canvas_->FillBox({x - 2, box.top - 4, x + 2, box.bottom + 4}, kCurrentMark);
}

void PageBoard::Paint(Layer layer, const Box& area) const {
  if (layer == Layer::Overlay) return PaintPlaceOfDrop();
  const Grid grid = GridNow();
  for (const int page : PagesBetween(area.top - scrolled_, area.bottom - scrolled_)) PaintCell(grid, page);
}

}  // namespace kelvane
