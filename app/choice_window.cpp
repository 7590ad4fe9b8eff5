#include "app/choice_window.h"

#include <utility>

#include "app/context_help.h"
#include "papers/paper_commands.h"

namespace kelvane {

Window* ChoiceWindow::Build(const char* title, int width, int labels, const char* help) {
  window_ = TheToolkit->NewWindow(false);
  window_->SetTitle(title);
  width_ = width;
  labels_ = labels;
  AddHelpKeys(*window_, help);
  return window_;
}

int ChoiceWindow::TopOf(int row) const {
  return kEdge + row * (window_->RowHeight() + kGap);
}

Place ChoiceWindow::PlaceOf(int row, int before, int width) const {
  return {kEdge + labels_ + before * (kChoice + kGap), TopOf(row), width, window_->RowHeight()};
}

Place ChoiceWindow::RestOf(int row, int left) const {
  Place place = PlaceOf(row, 0);
  place.left += left;
  place.width = width_ - kEdge - place.left;
  return place;
}

void ChoiceWindow::AddLabel(int row, const char* text) {
  window_->AddLabel(text)->SetPlace({kEdge, TopOf(row), labels_, window_->RowHeight()});
}

Button* ChoiceWindow::AddButton(const char* caption, const char* toolTip, const Place& place,
                                std::function<void()> act) {
  Button* button = window_->AddButton(caption, {}, toolTip);
  button->SetPlace(place);
  button->OnClick = std::move(act);
  return button;
}

Button* ChoiceWindow::AddEnd(const End& end) {
  constexpr int kWidth = 90;
  const int row = window_->RowHeight();
  const int cancel = width_ - kEdge - kWidth;
  height_ = end.top + row + kEdge;
  window_->OnEscape = end.cancel;
  window_->OnCloseRequest = [close = end.close] {
    close();
    return true;
  };
  Button* exports =
      AddButton("Export...", end.exportTip, {cancel - kGap - kWidth, end.top, kWidth, row}, end.exports);
  AddButton("Cancel", end.cancelTip, {cancel, end.top, kWidth, row}, end.cancel);
  return exports;
}

void ChoiceWindow::Show() {
  if (!window_->Visible()) {
    const float width = static_cast<float>(width_) * kTwipsPerPixel;
    const float height = static_cast<float>(height_) * kTwipsPerPixel;
    const WindowPlace editor = Form1->GetWindowPlace();
    window_->SetWindowPlace(
        {editor.left + (editor.width - width) / 2, editor.top + (editor.height - height) / 2, width, height});
  }
  window_->Show();
}

}  // namespace kelvane
