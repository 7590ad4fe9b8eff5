#pragma once

// The small pictures of the window "Pages": how they lie in rows on its canvas, which of them are in view,
// and painting them.

#include <functional>
#include <optional>
#include <vector>

#include "papers/thumbnails.h"
#include "platform/controls.h"

namespace kelvane {

class PageBoard {
 public:
  // Puts its canvas and its scroll bar into a window.
  void AddTo(Window& window);
  // Pixels of the window. The scroll bar comes beside the right edge.
  void SetPlace(const Place& place);
  Canvas& PictureCanvas() const { return *canvas_; }

  int Chosen() const { return chosen_; }
  // Chooses a page, the nearest one if there is none of that number, and brings it into view.
  void Choose(int page);
  // Chooses a page that lies so many rows further down; on the last row, the last page.
  void ChooseRows(int rows);
  int RowsInView() const;

  // Has everything painted again.
  void Show();
  void ScrollBy(float pixels);
  // Other pages have come into view.
  std::function<void()> OnScrolled;

  // Makes one picture that is missing, of the pages in view or near them. False if there is none.
  bool PaintNext();
  // Other programs may have changed the files.
  void LookAgain() { pictures_.LookAgain(); }
  // What is not in view is made again when it is needed.
  void DropOutOfView();

  // The page under a point of the canvas, in pixels; 0 for none.
  int PageAt(Point at) const;
  // While the chosen page is dragged: where the pointer is, in pixels of the canvas. Nothing ends it.
  void Drag(std::optional<Point> pointer);
  bool Dragged() const { return pointer_.has_value(); }
  // The row goes on below a page that is dragged along the upper or lower edge.
  void ScrollWithDrag();
  // The number that the chosen page would get if it were dropped there: it comes before the page that lies
  // behind the point.
  int PlaceOfDrop(Point at) const;

 private:
  struct Grid;
  Grid GridNow() const;
  float Height() const { return static_cast<float>(canvas_->PixelHeight()); }
  bool HasSize() const { return canvas_->PixelWidth() > 0 && canvas_->PixelHeight() > 0; }
  float MostScrolled() const;
  void ScrollTo(float top);
  void ScrollToChosen();
  // The pages of the rows from one position to another, those in view for 0 and the height of the canvas.
  std::vector<int> PagesBetween(float top, float bottom) const;
  std::vector<int> PagesWanted() const;

  void Paint(Layer layer, const Box& area) const;
  void PaintCell(const Grid& grid, int page) const;
  void PaintPicture(const Box& box, int page) const;
  void PaintPlaceOfDrop() const;

  Window* window_ = nullptr;
  Canvas* canvas_ = nullptr;
  ScrollBar* bar_ = nullptr;
  Thumbnails pictures_;
  int chosen_ = 1;
  float scrolled_ = 0;  // pixels from the top of the first row
  std::optional<Point> pointer_;
};

}  // namespace kelvane
