#include "editing/sign_names.h"

#include <algorithm>
#include <cctype>
#include <cstdint>

#include "typography/colours.h"
#include "typography/metrics.h"
#include "typography/run_painter.h"

namespace kelvane {

namespace {

constexpr std::size_t kMostRows = 8;
// Pixels.
constexpr float kRow = 20;
constexpr float kWidth = 230;
constexpr float kSignColumn = 44;
constexpr float kGap = 6;
constexpr float kText = 13;
constexpr std::int16_t kListFace = 4;

}  // namespace

std::string_view NameAtEnd(std::string_view text) {
  std::size_t start = text.size();
  while (start > 0 && std::isalpha(static_cast<unsigned char>(text[start - 1])) &&
         static_cast<unsigned char>(text[start - 1]) < 128)
    --start;
  if (start == 0 || start == text.size() || text[start - 1] != '\\') return {};
  return text.substr(start - 1);
}

void SignNames::Follow(std::string_view beforeCaret) {
  const std::string_view name = NameAtEnd(beforeCaret);
  Close();
  if (!name.empty()) {
    typed_ = name.substr(1);
    signs_ = SignsNamed(typed_);
  }
  chosen_ = first_ = 0;
}

std::size_t SignNames::Rows() const {
  return std::min(signs_.size(), kMostRows);
}

void SignNames::Move(int rows) {
  const auto last = static_cast<std::ptrdiff_t>(signs_.size()) - 1;
  chosen_ = static_cast<std::size_t>(
      std::clamp<std::ptrdiff_t>(static_cast<std::ptrdiff_t>(chosen_) + rows, 0, last));
  first_ = std::clamp(first_, chosen_ + 1 - std::min(chosen_ + 1, Rows()), chosen_);
}

bool SignNames::ChooseAt(Point at) {
  const bool inside = at.x >= box_.left && at.x < box_.right && at.y >= box_.top && at.y < box_.bottom;
  if (!Open() || !inside) return false;
  const float row = (at.y - box_.top) / (box_.bottom - box_.top) * static_cast<float>(Rows());
  chosen_ = std::min(first_ + static_cast<std::size_t>(row), signs_.size() - 1);
  return true;
}

void SignNames::Paint(Painter& painter, const View& view, Point caret) {
  if (!Open()) return;
  const float pixel = 1 / view.scale;
  const float height = kRow * static_cast<float>(Rows()) * pixel;
  const float below = caret.y + kGap * pixel;
  const float above = caret.y - (kGap + kRow) * pixel - height;
  box_.left = std::max(std::min(caret.x, view.area.right - kWidth * pixel), view.area.left);
  box_.top = below + height > view.area.bottom && above > view.area.top ? above : below;
  box_.right = box_.left + kWidth * pixel;
  box_.bottom = box_.top + height;

  painter.FillBox({box_.left - pixel, box_.top - pixel, box_.right + pixel, box_.bottom + pixel},
                  PaletteColour(kDarkGrey));
  painter.FillBox(box_, PaletteColour(kWhite));
  RunPainter runs(painter, view);
  for (std::size_t row = 0; row < Rows(); ++row) {
    const Sign& sign = *signs_[first_ + row];
    const float top = box_.top + static_cast<float>(row) * kRow * pixel;
    if (first_ + row == chosen_)
      painter.FillBox({box_.left, top, box_.right, top + kRow * pixel}, PaletteColour(kLightGrey));
    const float base = top + 0.72F * kRow * pixel;
    const std::string picture = RunOf(sign, 0);
    const float middle = box_.left + (kSignColumn * pixel - MeasureRun(picture, 0, kText * pixel)) / 2;
    runs.Paint({picture, 0, kText * pixel, {middle, base}, kBlack});
    runs.Paint(
        {NameOf(sign, typed_), kListFace, kText * pixel, {box_.left + kSignColumn * pixel, base}, kBlack});
  }
}

}  // namespace kelvane
