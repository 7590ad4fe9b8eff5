#include "editing/sign_names.h"

#include <algorithm>
#include <cctype>
#include <cstdint>

#include "formula/formula.h"
#include "formula/painting.h"
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

void SignNames::Follow(std::string_view beforeCaret, const std::vector<std::string>& others) {
  const std::string_view name = NameAtEnd(beforeCaret);
  Close();
  if (!name.empty()) {
    typed_ = name.substr(1);
    for (const Sign* sign : SignsNamed(typed_)) rows_.push_back({sign, {}});
    // The notation knows a sign by its name only if the name is no other's.
    if (!others.empty()) {
      std::vector<std::string> taken;
      for (const std::string& other : others) taken.push_back(other.substr(0, other.find('{')));
      std::erase_if(rows_, [&](const Row& row) {
        const std::string of = NotationOf(row);
        const bool other = std::ranges::find(taken, of) != taken.end();
        taken.push_back(of);
        return other;
      });
    }
    // What was typed whole stays first.
    const auto behind = std::ranges::find_if(
        rows_, [&](const Row& row) { return NameOf(*row.sign, typed_).substr(1) != typed_; });
    std::vector<Row> more;
    for (const std::string& other : others) more.push_back({nullptr, other});
    // Of names that are all offered for their letters, the short ones are the likely ones.
    const auto begin = rows_.insert(behind, more.begin(), more.end());
    if (!others.empty())
      std::ranges::stable_sort(begin, rows_.end(), {},
                               [&](const Row& row) { return NotationOf(row).size(); });
  }
  chosen_ = first_ = 0;
}

std::size_t SignNames::Rows() const {
  return std::min(rows_.size(), kMostRows);
}

std::string SignNames::NotationOf(const Row& row) const {
  return row.sign ? NameOf(*row.sign, typed_) : row.name;
}

void SignNames::PaintPicture(Painter& painter, const View& view, const Row& row, const Box& cell) const {
  const float size = kText / view.scale;
  const float base = cell.top + 0.72F * (cell.bottom - cell.top);
  if (row.sign) {
    const std::string picture = RunOf(*row.sign, 0);
    const float x = (cell.left + cell.right - MeasureRun(picture, 0, size)) / 2;
    RunPainter(painter, view).Paint({picture, 0, size, {x, base}, kBlack});
    return;
  }
  // The name with a letter in each place, as small as its row is high.
  std::string filled = row.name;
  for (std::size_t place = 0; (place = filled.find("{}", place)) != std::string::npos;)
    filled.insert(place + 1, "x");
  const auto set = SetFormula(filled, {0.6F * size, false, 0});
  const auto* formula = std::get_if<Formula>(&set);
  if (!formula || formula->ink.bottom - formula->ink.top > cell.bottom - cell.top) return;
  const float down = (cell.top + cell.bottom - formula->ink.top - formula->ink.bottom) / 2;
  PaintFormula(painter, view, *formula, {(cell.left + cell.right - formula->width) / 2, down});
}

void SignNames::Move(int rows) {
  const auto last = static_cast<std::ptrdiff_t>(rows_.size()) - 1;
  chosen_ = static_cast<std::size_t>(
      std::clamp<std::ptrdiff_t>(static_cast<std::ptrdiff_t>(chosen_) + rows, 0, last));
  first_ = std::clamp(first_, chosen_ + 1 - std::min(chosen_ + 1, Rows()), chosen_);
}

bool SignNames::ChooseAt(Point at) {
  const bool inside = at.x >= box_.left && at.x < box_.right && at.y >= box_.top && at.y < box_.bottom;
  if (!Open() || !inside) return false;
  const float row = (at.y - box_.top) / (box_.bottom - box_.top) * static_cast<float>(Rows());
  chosen_ = std::min(first_ + static_cast<std::size_t>(row), rows_.size() - 1);
  return true;
}

void SignNames::Paint(Painter& painter, const View& view, Point caret, float top) {
  if (!Open()) return;
  const float pixel = 1 / view.scale;
  const float height = kRow * static_cast<float>(Rows()) * pixel;
  const float below = caret.y + kGap * pixel;
  const float above = top - kGap * pixel - height;
  box_.left = std::max(std::min(caret.x, view.area.right - kWidth * pixel), view.area.left);
  box_.top = below + height > view.area.bottom && above > view.area.top ? above : below;
  box_.right = box_.left + kWidth * pixel;
  box_.bottom = box_.top + height;

  painter.FillBox({box_.left - pixel, box_.top - pixel, box_.right + pixel, box_.bottom + pixel},
                  PaletteColour(kDarkGrey));
  painter.FillBox(box_, PaletteColour(kWhite));
  RunPainter runs(painter, view);
  for (std::size_t row = 0; row < Rows(); ++row) {
    const Row& shown = rows_[first_ + row];
    const float rowTop = box_.top + static_cast<float>(row) * kRow * pixel;
    if (first_ + row == chosen_)
      painter.FillBox({box_.left, rowTop, box_.right, rowTop + kRow * pixel}, PaletteColour(kLightGrey));
    const float base = rowTop + 0.72F * kRow * pixel;
    PaintPicture(painter, view, shown,
                 {box_.left, rowTop, box_.left + kSignColumn * pixel, rowTop + kRow * pixel});
    runs.Paint(
        {NotationOf(shown), kListFace, kText * pixel, {box_.left + kSignColumn * pixel, base}, kBlack});
  }
}

}  // namespace kelvane
