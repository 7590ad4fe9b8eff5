#include "editing/notation_line.h"

#include <algorithm>
#include <cmath>

#include "formula/formula.h"
#include "typography/colours.h"
#include "typography/metrics.h"
#include "typography/run_painter.h"
#include "typography/signs.h"

namespace kelvane {

namespace {

// Pixels.
constexpr float kRow = 22;
constexpr float kText = 14;
constexpr float kSmall = 12;
constexpr float kBase = 16;  // from the top of a row to its baseline
constexpr float kPad = 6;
constexpr float kGap = 8;
constexpr float kLeastWidth = 260;
constexpr float kMostWidth = 560;  // what is read with ease
constexpr std::int16_t kLineFace = 4;
constexpr char kHelp[] = "Enter places, Shift+Enter goes on behind, Tab: next place, Esc drops";

// A part of the notation as a run of the line.
std::string Shown(std::string_view notation) {
  std::string missing;
  return SignsToRun(notation, kLineFace, missing);
}

float Width(std::string_view part, float pixel) {
  return MeasureRun(Shown(part), kLineFace, kText * pixel);
}

}  // namespace

void NotationLine::FollowName() {
  const std::string_view before = std::string_view(Text()).substr(0, Caret());
  const std::string_view name = NameAtEnd(before);
  names_.Follow(before, name.empty() ? std::vector<std::string>() : FormulaNames(name.substr(1)));
}

void NotationLine::TakeName() {
  const std::string name = names_.ChosenNotation();
  const std::size_t typed = NameAtEnd(std::string_view(Text()).substr(0, Caret())).size();
  const std::size_t place = name.find("{}");
  const std::size_t from = Caret() - typed;
  // Behind a name that has no place, a blank parts it from what follows.
  place == std::string::npos
      ? Replace(from, Caret(), name + " ")
      : Replace(from, Caret(), name, name.starts_with("\\begin") ? name.find("\\end") : place + 1);
  names_.Close();
}

bool NotationLine::Holds(Point at) const {
  return at.x >= strip_.left && at.x < strip_.right && at.y >= strip_.top && at.y < strip_.bottom;
}

std::string_view NotationLine::RowOf(std::string_view text, std::size_t row) const {
  return text.substr(rows_[row], (row + 1 < rows_.size() ? rows_[row + 1] : text.size()) - rows_[row]);
}

std::size_t NotationLine::RowAt(std::size_t byte) const {
  return static_cast<std::size_t>(std::ranges::upper_bound(rows_, byte) - rows_.begin()) - 1;
}

std::size_t NotationLine::PlaceAt(Point at) const {
  const float pixel = 1 / CurrentView().scale;
  const float x = at.x - strip_.left - kPad * pixel;
  const auto wanted = static_cast<std::ptrdiff_t>((at.y - strip_.top) / (kRow * pixel));
  const auto last = static_cast<std::ptrdiff_t>(rows_.size()) - 1;
  const auto row = static_cast<std::size_t>(std::clamp<std::ptrdiff_t>(wanted, 0, last));
  const std::string_view shown = RowOf(Text(), row);
  std::size_t best = 0;
  float nearest = std::abs(x);
  for (std::size_t end = 1; end <= shown.size(); ++end) {
    const float away = std::abs(x - Width(shown.substr(0, end), pixel));
    if (away >= nearest) continue;
    nearest = away;
    best = end;
  }
  return rows_[row] + best;
}

void NotationLine::BreakRows(std::string_view text, float most, float pixel) {
  rows_ = {0};
  float width = 0;
  for (std::size_t at = 0; at < text.size();) {
    std::size_t next = at + 1;
    while (next < text.size() && (static_cast<unsigned char>(text[next]) & 0xC0U) == 0x80U) ++next;
    const float one = Width(text.substr(at, next - at), pixel);
    if (width + one > most && width > 0) {
      rows_.push_back(at);
      width = 0;
    }
    width += one;
    at = next;
  }
}

// No further to the right than the view.
void NotationLine::PlaceStrip(const View& view, Point origin, const Box& ink, float width) {
  const float pixel = 1 / view.scale;
  const float height = (static_cast<float>(rows_.size()) + 1) * kRow * pixel;
  const float below = origin.y + ink.bottom + kGap * pixel;
  const float above = origin.y + ink.top - kGap * pixel - height;
  const bool fits = below + height <= view.area.bottom || above < view.area.top;
  const float top = fits ? below : above;
  const float left = std::max(std::min(origin.x, view.area.right - width - pixel), view.area.left + pixel);
  strip_ = {left, top, left + width, top + height};
}

// A box so many pixels below the top of each row that has part of the notation; small where the part is
// empty.
void NotationLine::PaintPart(Painter& painter, std::string_view text, float pixel, std::size_t begin,
                             std::size_t end, float top, float bottom, int colour) const {
  for (std::size_t row = 0; row < rows_.size(); ++row) {
    const std::size_t from = rows_[row];
    const std::string_view shown = RowOf(text, row);
    const std::size_t first = std::clamp(begin, from, from + shown.size()) - from;
    const std::size_t last = std::clamp(end, from, from + shown.size()) - from;
    if (first == last && row != RowAt(std::min(begin, text.size()))) continue;
    const float rowTop = strip_.top + static_cast<float>(row) * kRow * pixel;
    const float left = strip_.left + kPad * pixel + Width(shown.substr(0, first), pixel);
    const float right =
        std::max(strip_.left + kPad * pixel + Width(shown.substr(0, last), pixel), left + 4 * pixel);
    painter.FillBox({left, rowTop + top * pixel, right, rowTop + bottom * pixel}, PaletteColour(colour));
  }
}

void NotationLine::Paint(Painter& painter, const View& view, Point origin, const Box& ink,
                         const std::optional<FormulaError>& error) {
  const float pixel = 1 / view.scale;
  std::string text = Text();
  text.insert(Caret(), preedit_);
  const bool wrong = error && !IsBlank(text);
  const std::string message = wrong ? error->message : kHelp;
  const float shown = std::min(kMostWidth * pixel, view.area.right - view.area.left);
  BreakRows(text, shown - 2 * (kPad + 1) * pixel, pixel);
  float wanted = MeasureRun(message, kLineFace, kSmall * pixel);
  for (std::size_t row = 0; row < rows_.size(); ++row)
    wanted = std::max(wanted, Width(RowOf(text, row), pixel));
  PlaceStrip(view, origin, ink, std::max(wanted + 2 * kPad * pixel, kLeastWidth * pixel));
  painter.FillBox({strip_.left - pixel, strip_.top - pixel, strip_.right + pixel, strip_.bottom + pixel},
                  PaletteColour(kDarkGrey));
  painter.FillBox(strip_, PaletteColour(kWhite));
  if (SelectedFrom() != SelectedTo())
    PaintPart(painter, text, pixel, SelectedFrom(), SelectedTo(), 2, kRow - 2, kLightGrey);
  const float left = strip_.left + kPad * pixel;
  const auto topOf = [&](std::size_t row) { return strip_.top + static_cast<float>(row) * kRow * pixel; };
  RunPainter runs(painter, view);
  for (std::size_t row = 0; row < rows_.size(); ++row)
    runs.Paint(
        {Shown(RowOf(text, row)), kLineFace, kText * pixel, {left, topOf(row) + kBase * pixel}, kBlack});
  runs.Paint({message,
              kLineFace,
              kSmall * pixel,
              {left, strip_.bottom - 6 * pixel},
              static_cast<std::int16_t>(wrong ? kRed : kDarkGrey)});
  if (wrong) PaintPart(painter, text, pixel, error->begin, error->end, kBase + 3, kBase + 5, kRed);
  const std::size_t caret = Caret() + preedit_.size();
  const std::size_t row = RowAt(caret);
  caretX_ = left + Width(RowOf(text, row).substr(0, caret - rows_[row]), pixel);
  painter.DrawLine({caretX_, topOf(row) + 3 * pixel}, {caretX_, topOf(row) + (kRow - 3) * pixel},
                   {PaletteColour(kBlue), 1, true});
  names_.Paint(painter, view, CaretFoot(), strip_.top);
}

}  // namespace kelvane
