// Matrices, arrays, cases and aligned lines.

#include <algorithm>

#include "formula/parameters.h"
#include "formula/setter.h"

namespace kelvane::formula {
namespace {

// Letters of the columns, the last one for all further ones, and rules in front of them by column.
struct Columns {
  std::string letters;
  std::vector<int> rulesBefore;

  char Of(std::size_t column) const {
    return letters.empty() ? 'c' : letters[std::min(column, letters.size() - 1)];
  }
};

Columns ColumnsOf(const TableForm& form) {
  Columns columns;
  for (const char c : form.columns) {
    if (c == '|') {
      columns.rulesBefore.push_back(static_cast<int>(columns.letters.size()));
    } else {
      columns.letters += c;
    }
  }
  return columns;
}

}  // namespace

Part Setter::SetTable(const Node& node, Style style) {
  const TableForm& form = tree_.tables[static_cast<std::size_t>(node.value)];
  const float outer = SizeOf(style);
  if (form.small) style = style.Script();
  if (form.display) {
    style = {0, style.cramped};
  } else if (!form.small && !form.lines) {
    style = style.Text();
  }
  const float size = SizeOf(style);
  const float stretch = form.cases ? kCasesStretch : form.small ? kSmallStretch : 1;
  const Columns columns = ColumnsOf(form);

  struct Row {
    std::vector<Part> cells;
    float height = 0, depth = 0, baseline = 0;
  };
  std::vector<Row> rows;
  std::vector<float> widths;
  Part whole = Begin();
  for (int row = tree_[node.first].kind == Kind::Row ? node.first : kNone; row != kNone;
       row = tree_[row].next) {
    Row& set = rows.emplace_back();
    // The lines of a limit stand close; others have the strut of a line.
    set.height = form.lines ? 0 : kRowHeight * stretch * size;
    set.depth = form.lines ? 0 : kRowDepth * stretch * size;
    for (int cell = tree_[row].first; cell != kNone; cell = tree_[cell].next) {
      const std::size_t column = set.cells.size();
      const bool empty = tree_[cell].first == kNone && tree_[cell].value == 0;
      const Part part =
          empty ? NotePlace(tree_[cell], style) : SetRow(cell, style, form.pairs && column % 2 == 1);
      if (widths.size() <= column) widths.push_back(0);
      widths[column] = std::max({widths[column], part.width, part.right});
      const float more = form.lines ? 0 : kRowGap * size / 2;
      if (part.inked) {
        set.height = std::max(set.height, part.height + more);
        set.depth = std::max(set.depth, part.depth + more);
      }
      set.cells.push_back(part);
    }
  }

  // A column without anything in it has the room of an empty place.
  if (!form.pairs)
    for (float& width : widths)
      if (width == 0) width = UpToStep(kEmptyPlace) * size;

  // Down the page from the first row's top, then about the axis.
  const float between = (form.lines ? kSubstackGap : form.pairs || form.display ? kAlignedGap : 0) * size;
  float y = 0;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    if (i > 0) y += between;
    rows[i].baseline = y + rows[i].height;
    y = rows[i].baseline + rows[i].depth;
  }
  const float tall = y;
  // A single line stays on the line that it stands in.
  const float top = rows.size() == 1 && form.pairs ? -rows[0].baseline : -kAxis * outer - tall / 2;

  const bool ruled = !columns.rulesBefore.empty();
  std::vector<float> lefts(widths.size() + 1);
  float x = ruled ? kColumnGap / 2 * size : 0;
  for (std::size_t column = 0; column < widths.size(); ++column) {
    lefts[column] = x;
    x += widths[column];
    if (column + 1 == widths.size()) break;
    if (form.pairs) {
      x += column % 2 == 0 ? 0 : kPairGap * size;
    } else if (form.small) {
      x += kSmallColumnGap * 2 * size;
    } else {
      x += kColumnGap * size;
    }
  }
  if (ruled) x += kColumnGap / 2 * size;
  const float wide = x;

  for (const Row& row : rows) {
    for (std::size_t column = 0; column < row.cells.size(); ++column) {
      const Part& part = row.cells[column];
      const char letter = form.pairs ? (column % 2 == 0 ? 'r' : 'l') : columns.Of(column);
      const float room = widths[column] - part.width;
      // An empty cell's place lies in the column as if it took room.
      const float place = part.inked || part.width > 0 ? 0 : kEmptyPlace * size;
      const float shift = letter == 'l' ? 0 : letter == 'r' ? room - place : (room - place) / 2;
      if (letter != 'l' && !form.pairs) MarkGroup(part, letter == 'r' ? 5 : 4);
      Take(whole, part, lefts[column] + shift, top + row.baseline);
    }
  }
  const float rule = kRule * size;
  const auto draw = [&](Point from, Point to) {
    Part line = Begin();
    Line(line, {from, to}, rule);
    Take(whole, line, 0, 0);
  };
  for (const int number : form.rulesAbove) {
    const auto index = static_cast<std::size_t>(number);
    const float at = index < rows.size() ? top + rows[index].baseline - rows[index].height : top + tall;
    draw({rule / 2, at}, {std::max(wide - rule / 2, rule), at});
  }
  for (const int column : columns.rulesBefore) {
    const auto index = static_cast<std::size_t>(column);
    if (index > widths.size()) continue;
    const float at = index == 0               ? rule / 2
                     : index == widths.size() ? wide - rule / 2
                                              : lefts[index] - kColumnGap / 2 * size;
    draw({at, top + rule / 2}, {at, top + tall - rule / 2});
  }
  whole.end = layout_.elements.size();
  whole.width = wide;
  // The rows reach as far as their struts do, so that brackets do.
  if (!form.lines && !rows.empty()) {
    AddInk(whole, {0, top, wide, top + tall});
  }
  return whole;
}

}  // namespace kelvane::formula
