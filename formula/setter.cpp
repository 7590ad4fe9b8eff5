#include "formula/setter.h"

#include <algorithm>
#include <cmath>

#include "formula/parameters.h"
#include "typography/item_boxes.h"
#include "typography/metrics.h"
#include "typography/signs.h"
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

bool IsGreek(char32_t character) {
  return (character >= U'α' && character <= U'ω') || character == U'ϕ' || character == U'ϑ' ||
         character == U'ϖ';
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

// ---- Signs and text ----

std::int16_t Setter::FaceOf(Face face, bool letter) const {
  const auto of = [this](int number) { return static_cast<std::int16_t>(style_.roman + number); };
  switch (face) {
    case Face::Usual:
      return of(letter ? 2 : 0);
    case Face::Italic:
      return of(2);
    case Face::Bold:
    case Face::DoubleStruck:
      return of(1);
    case Face::BoldItalic:
      return of(letter ? 3 : 1);
    case Face::Sans:
      return 4;
    case Face::Mono:
      return 9;
    case Face::Script:
      return letter ? std::int16_t{11} : of(0);
    default:
      return of(0);
  }
}

Part Setter::SetSign(const Node& node, Style style) {
  const float size = SizeOf(style);
  const Face face = static_cast<Face>(node.face);
  Part part = Begin();
  const kelvane::Sign* sign = node.sign;
  const bool letter = !sign && !(node.character >= U'0' && node.character <= U'9');
  if (letter && face == Face::DoubleStruck) {
    static constexpr std::u32string_view kHas = U"CNQRZK";
    static constexpr std::u32string_view kAs = U"ℂℕℚℝℤ𝕂";
    const std::size_t found = kHas.find(node.character);
    if (found != kHas.npos) sign = SignOf(kAs[found]);
  }
  if (!sign) {
    const std::int16_t font = FaceOf(face, letter);
    Character(part, font, static_cast<int>(node.character), 0, 0, size, node.begin);
    part.width = Advance(static_cast<int>(node.character), font, size);
    part.single = true;
    part.letter = letter && (font & 3) >= 2;
    part.correction = LeanOf(static_cast<int>(node.character), font).correction * size;
    return part;
  }
  if (node.atom == Atom::Operator && node.large) {
    // Math0 has two sizes of some signs; the others are set smaller within a line.
    std::int16_t font = kMath0;
    char code = sign->math0;
    float own = style.Display() ? size : size * kTextOperator;
    switch (node.character) {
      case U'∑':
        code = style.Display() || sign->math0 == 'S' ? 'S' : 's';
        own = size;
        break;
      case U'∫':
        code = style.Display() || sign->math0 == 'I' ? 'I' : 'i';
        own = size * (style.Display() ? kDisplayIntegral : 1);
        break;
      case U'∬':
      case U'∭':
      case U'∮':
        if (style.Display()) own = size * kDisplayIntegral;
        break;
      case U'∏':
        code = style.Display() || sign->math0 == 'P' ? 'P' : static_cast<char>(213);
        if (code != 'P') font = kSymbol;
        own = size;
        break;
      case U'∧':
      case U'∨':
        own = size * (style.Display() ? 1.5F : 1.1F);
        break;
      default:
        break;
    }
    if (code != 0) {
      Character(part, font, static_cast<unsigned char>(code), 0, 0, own, node.begin);
      part.width = Advance(static_cast<unsigned char>(code), font, own);
    } else {
      part.width = Run(part, RunOf(*sign, kMath0), kMath0, 0, 0, own, node.begin);
    }
    // Rule 13: about the axis. Those of Math0 lie there already in their own size.
    const float off = (part.height - part.depth) / 2 - kAxis * size;
    if (std::abs(off) > 0.02F * size) {
      Move(part, 0, off);
      part.height -= off;
      part.depth += off;
    }
    if (!node.stacks) part.lean = kIntegralLean * own * (code == 'i' ? 0.6F : 1.0F);
    return part;
  }
  std::int16_t font = style_.roman;
  switch (sign->kind) {
    case SignClass::Operator:
    case SignClass::Relation:
    case SignClass::Arrow:
      font = kSymbol;
      break;
    case SignClass::Letter:
      if (IsGreek(node.character)) {
        font = face == Face::Roman ? kSymbol : kSymbolItalic;
        part.letter = font == kSymbolItalic;
      }
      break;
    default:
      break;
  }
  const std::string run = RunOf(*sign, font);
  part.width = Run(part, run, font, 0, 0, size, node.begin);
  part.single = true;
  return part;
}

Part Setter::SetText(const Node& node, Style style) {
  Part part = Begin();
  const std::int16_t font = FaceOf(static_cast<Face>(node.face), true);
  std::string missing;
  const std::string run = SignsToRun(node.text, font, missing);
  part.width = Run(part, run, font, 0, 0, SizeOf(style), node.begin);
  part.single = true;
  return part;
}

Part Setter::SetPlace(const Node& node, Style style) {
  Part part = Begin();
  Element element;
  element.what = Element::What::Place;
  element.size = SizeOf(style);
  element.at = node.begin;
  layout_.elements.push_back(element);
  part.end = layout_.elements.size();
  part.width = UpToStep(kEmptyPlace) * element.size;
  part.height = 0.68F * element.size;
  part.right = part.width;
  part.inked = true;
  return part;
}

Part Setter::SetPhantom(const Node& node, Style style) {
  const auto form = static_cast<PhantomForm>(node.value);
  const std::size_t lines = layout_.lines.size(), groups = layout_.groups.size();
  Part part = SetRow(node.first, style);
  if (form == PhantomForm::Smash) {
    part.height = part.depth = 0;
    return part;
  }
  // The room is what stays; empty places within it are nowhere.
  layout_.elements.resize(part.begin);
  layout_.lines.resize(lines);
  layout_.groups.resize(groups);
  part.end = part.begin;
  if (form == PhantomForm::Tall) part.width = part.right = 0;
  if (form == PhantomForm::Wide) part.height = part.depth = 0;
  const float size = SizeOf(style);
  part.width = UpToStep(part.width / size) * size;
  return part;
}

// ---- Rows ----

Part Setter::SetNode(int index, Style style) {
  const Node& node = tree_[index];
  switch (node.kind) {
    case Kind::Row:
      return SetRow(index, style);
    case Kind::Sign:
      return SetSign(node, style);
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
  if (node.first == kNone) return node.value == 1 ? SetPlace(node, style) : Begin();
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
