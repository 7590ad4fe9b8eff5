#include "formula/setter.h"

#include <algorithm>
#include <cmath>

#include "formula/parameters.h"
#include "typography/item_boxes.h"
#include "typography/metrics.h"
#include "typography/typefaces.h"

namespace kelvane::formula {

float UpToStep(float ems) {
  return std::ceil(ems / kStep - 0.01F) * kStep;
}

Lean LeanOf(int code, std::int16_t font) {
  const std::vector<Lean>& leans = TypefaceTable[font].Leans;
  const auto index = static_cast<std::size_t>(code);
  return index < leans.size() ? leans[index] : Lean{};
}

namespace {

// The TeXbook, page 170: the space between an atom and the next. 0 none, 1 thin, 2 medium, 3 thick; from 4 on
// the same but for scripts, which have none.
constexpr int kSpaces[8][8] = {
    // Ord Op Bin Rel Open Close Punct Inner
    {0, 1, 6, 7, 0, 0, 0, 5},  // Ord
    {1, 1, 0, 7, 0, 0, 0, 5},  // Op
    {6, 6, 0, 0, 6, 0, 0, 6},  // Bin
    {7, 7, 0, 0, 7, 0, 0, 7},  // Rel
    {0, 0, 0, 0, 0, 0, 0, 0},  // Open
    {0, 1, 6, 7, 0, 0, 0, 5},  // Close
    {5, 5, 0, 5, 5, 5, 5, 5},  // Punct
    {5, 1, 6, 7, 5, 0, 5, 5},  // Inner
};

int Spacing(Atom before, Atom after, Style style) {
  const int space = kSpaces[static_cast<int>(before)][static_cast<int>(after)];
  return space < 4 ? space : style.level >= 2 ? 0 : space - 4;
}

float WholeFixedSpaces(float ems) {
  return std::max(1.0F, std::round(ems / kFixedSpace + kSpaceBias)) * kFixedSpace;
}

// Ems between two atoms; what their signs have of room by themselves counts.
float SpaceBetween(int kind, float room) {
  switch (kind) {
    case 1:
      return kThinSpace;
    case 2:
      return WholeFixedSpaces(kMediumSpace - room);
    case 3:
      return WholeFixedSpaces(kThickSpace - room);
    default:
      return 0;
  }
}

bool IsAtom(const Node& node) {
  return node.kind != Kind::Space && node.kind != Kind::Style && node.kind != Kind::Colour;
}

// Rules 5 and 6: a sign between two operands only if it has them.
bool MakesOrdinary(Atom before) {
  return before == Atom::Binary || before == Atom::Operator || before == Atom::Relation ||
         before == Atom::Opening || before == Atom::Punctuation;
}
bool NeedsOrdinary(Atom after) {
  return after == Atom::Relation || after == Atom::Closing || after == Atom::Punctuation;
}

struct Child {
  int node;
  Atom atom;
};

std::vector<Child> ChildrenOf(const Tree& tree, int row, bool goesOn) {
  std::vector<Child> children;
  int last = kNone;  // the atom before
  for (int node = tree[row].first; node != kNone; node = tree[node].next) {
    Child child{node, tree[node].atom};
    if (IsAtom(tree[node])) {
      if (child.atom == Atom::Binary &&
          (last == kNone ? !goesOn : MakesOrdinary(children[static_cast<std::size_t>(last)].atom)))
        child.atom = Atom::Ordinary;
      if (last != kNone && NeedsOrdinary(child.atom)) {
        Atom& before = children[static_cast<std::size_t>(last)].atom;
        if (before == Atom::Binary) before = Atom::Ordinary;
      }
      last = static_cast<int>(children.size());
    }
    children.push_back(child);
  }
  if (last != kNone && children[static_cast<std::size_t>(last)].atom == Atom::Binary)
    children[static_cast<std::size_t>(last)].atom = Atom::Ordinary;
  return children;
}

}  // namespace

// ---- Parts ----

Part Setter::Begin() const {
  Part part;
  part.begin = part.end = layout_.elements.size();
  return part;
}

void Setter::AddInk(Part& part, const Box& ink) {
  if (!part.inked) {
    part.left = ink.left;
    part.right = ink.right;
    part.height = -ink.top;
    part.depth = ink.bottom;
    part.inked = true;
    return;
  }
  part.left = std::min(part.left, ink.left);
  part.right = std::max(part.right, ink.right);
  part.height = std::max(part.height, -ink.top);
  part.depth = std::max(part.depth, ink.bottom);
}

void Setter::Character(Part& part, std::int16_t font, int code, float x, float y, float size,
                       std::size_t at) {
  Element element;
  element.code = static_cast<unsigned char>(code);
  element.font = font;
  element.x = x;
  element.y = y;
  element.size = size;
  element.at = at;
  layout_.elements.push_back(element);
  part.end = layout_.elements.size();
  const Box ink = InkOfCharacter(code, font);
  if (ink.left == ink.right) return;
  AddInk(part, {x + ink.left * size, y + ink.top * size, x + ink.right * size, y + ink.bottom * size});
}

float Setter::Run(Part& part, std::string_view run, std::int16_t font, float x, float y, float size,
                  std::size_t at) {
  const RunPen end = WalkRun(run, PenAt({x, y}, font, size), 0, [&](std::size_t index, const RunPen& pen) {
    Character(part, pen.font, static_cast<unsigned char>(run[index]), pen.x, pen.y, pen.size, at);
  });
  return end.x;
}

void Setter::Curve(Part& part, std::vector<Point> points, float width) {
  Element element;
  element.what = Element::What::Line;
  element.line = layout_.lines.size();
  layout_.elements.push_back(element);
  part.end = layout_.elements.size();
  Drawing drawing;
  drawing.points = std::move(points);
  drawing.style = {colour_, width};
  const Point first = drawing.points.front(), last = drawing.points.back();
  drawing.closed = first.x == last.x && first.y == last.y;
  const Box ink = InkBoxOf(drawing);
  AddInk(part, ink);
  layout_.lines.push_back(std::move(drawing));
}

void Setter::Line(Part& part, std::vector<Point> corners, float width) {
  std::vector<Point> points{corners.front()};
  for (std::size_t i = 1; i < corners.size(); ++i) {
    const Point from = corners[i - 1], to = corners[i];
    points.push_back({(from.x + to.x) / 2, (from.y + to.y) / 2});
    points.push_back(to);
  }
  Curve(part, std::move(points), width);
}

void Setter::Move(const Part& part, float dx, float dy) {
  if (dx == 0 && dy == 0) return;
  for (std::size_t i = part.begin; i < part.end; ++i) {
    Element& element = layout_.elements[i];
    element.x += dx;
    element.y += dy;
    if (element.what != Element::What::Line) continue;
    for (Point& point : layout_.lines[element.line].points) {
      point.x += dx;
      point.y += dy;
    }
  }
}

void Setter::Take(Part& whole, const Part& part, float dx, float dy) {
  Move(part, dx, dy);
  whole.end = std::max(whole.end, part.end);
  if (part.inked) AddInk(whole, {part.left + dx, dy - part.height, part.right + dx, dy + part.depth});
}

void Setter::ToFront(std::size_t begin, std::size_t middle) {
  const auto first = layout_.elements.begin();
  const std::size_t end = layout_.elements.size();
  std::rotate(first + static_cast<std::ptrdiff_t>(begin), first + static_cast<std::ptrdiff_t>(middle),
              layout_.elements.end());
  // A group is noted when all of it is set, so those before end before.
  for (std::size_t i = layout_.groups.size(); i-- > 0;) {
    Group& group = layout_.groups[i];
    if (group.end <= begin) break;
    const bool later = group.begin >= middle;
    const std::size_t back = middle - begin, forth = end - middle;
    group.begin = later ? group.begin - back : group.begin + forth;
    group.end = later ? group.end - back : group.end + forth;
  }
}

void Setter::MarkGroup(const Part& part, int anchor) {
  if (part.end > part.begin) layout_.groups.push_back({part.begin, part.end, anchor});
}

// ---- Rows ----

Part Setter::SetNode(int index, Style style) {
  const Node& node = tree_[index];
  switch (node.kind) {
    case Kind::Row:
      return SetRow(index, style);
    case Kind::Sign:
      return SetSign(node, style);
    case Kind::Drawn:
      return SetDrawn(*node.drawn, style, node.begin);
    case Kind::Text:
      return SetText(node, style);
    case Kind::Scripts:
      return SetScripts(node, style);
    case Kind::Fraction:
      return SetFraction(node, style);
    case Kind::Root:
      return SetRoot(node, style);
    case Kind::Fence:
      return SetFence(node, style);
    case Kind::Delimiter:
      return SetBig(node, style);
    case Kind::Accent:
      return SetAccent(node, style);
    case Kind::Line:
      return SetRuled(node, style);
    case Kind::Brace:
      return SetBrace(node, style);
    case Kind::Stack:
      return SetStack(node, style);
    case Kind::Reach:
      return SetReach(node, style);
    case Kind::OverArrow:
      return SetOverArrow(node, style);
    case Kind::Table:
      return SetTable(node, style);
    case Kind::Phantom:
      return SetPhantom(node, style);
    case Kind::Framed:
      return SetFramed(node, style);
    case Kind::Negated:
      return SetNegated(node, style);
    case Kind::Classed:
      return SetRow(node.first, style);
    case Kind::Space:
    case Kind::Style:
    case Kind::Colour:
      break;
  }
  return Begin();
}

Part Setter::SetRow(int row, Style style, bool goesOn) {
  const Node& node = tree_[row];
  if (node.first == kNone) return node.value == 1 ? SetPlace(node, style) : NotePlace(node, style);
  const std::int16_t colour = colour_;
  const std::vector<Child> children = ChildrenOf(tree_, row, goesOn);
  Part whole = Begin();
  Part last;
  Atom lastAtom = Atom::Ordinary;
  bool behind = goesOn;  // an atom stands before
  float pen = 0;
  for (const Child& child : children) {
    const Node& one = tree_[child.node];
    const float size = SizeOf(style);
    if (one.kind == Kind::Space) {
      const float unit = one.amount >= kFixedSpace ? kFixedSpace : kStep;
      pen += std::round(one.amount / unit) * unit * size;
      last = {};
      continue;
    }
    if (one.kind == Kind::Style) {
      style = {one.value, style.cramped};
      continue;
    }
    if (one.kind == Kind::Colour) {
      colour_ = static_cast<std::int16_t>(one.value);
      continue;
    }
    const Part part = SetNode(child.node, style);
    if (behind) {
      const int kind = Spacing(lastAtom, child.atom, style);
      // What a sign has of room by itself, less what a slanted letter takes of it.
      float room = 0;
      if (child.atom == Atom::Binary || child.atom == Atom::Relation)
        room = (part.left + std::min(0.0F, last.width - last.right + kLetterOverlap * size)) / size;
      if (last.inked && (lastAtom == Atom::Binary || lastAtom == Atom::Relation))
        room = (last.width - last.right + std::min(0.0F, part.left + kLetterOverlap * size)) / size;
      float gap = SpaceBetween(kind, room);
      if (kind == 1 && (lastAtom == Atom::Inner || child.atom == Atom::Inner)) gap = kThinExact;
      if (last.inked && part.inked) {
        const bool words = last.letter && part.letter;
        const float apart = gap + (last.width - last.right + part.left) / size;
        const float missing = (words ? -kLetterOverlap : kInkGap) - apart;
        if (missing > 0.004F) gap += std::max(UpToStep(missing), 2 * kStep);
      }
      pen += gap * size;
    }
    Take(whole, part, pen, 0);
    pen += part.width;
    last = part;
    lastAtom = child.atom;
    behind = true;
    if (children.size() == 1) {
      whole.single = part.single;
      whole.letter = part.letter;
      whole.correction = part.correction;
      whole.lean = part.lean;
    }
  }
  whole.width = pen;
  colour_ = colour;
  return whole;
}

Layout Setter::Set() {
  sizes_[0] = style_.size;
  sizes_[1] = sizes_[0] * kScriptFactor;
  sizes_[2] = sizes_[1] * kScriptFactor;
  const Part part = SetRow(tree_.root, {style_.display ? 0 : 1, false});
  layout_.width = part.width;
  return std::move(layout_);
}

Layout LayOut(const Tree& tree, const LayoutStyle& style) {
  return Setter(tree, style).Set();
}

}  // namespace kelvane::formula
