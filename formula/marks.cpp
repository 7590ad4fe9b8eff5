// Accents, lines, braces and arrows over and under, frames, and strokes through signs.

#include <algorithm>
#include <cmath>

#include "formula/parameters.h"
#include "formula/setter.h"
#include "typography/item_boxes.h"
#include "typography/metrics.h"
#include "typography/signs.h"
#include "typography/typefaces.h"

namespace kelvane::formula {
namespace {

// Accents that a character can be: Math0's take no room and stand about their origin.
struct Mark {
  char32_t accent;
  std::int16_t font;
  int code;
};
constexpr Mark kMarks[] = {
    {U'\u0302', kMath0, '^'}, {U'\u0303', kMath0, '~'}, {U'\u0304', kMath0, '_'}, {U'\u0307', kMath0, '0'},
    {U'\u0308', kMath0, '"'}, {U'\u20D7', kMath0, '`'}, {U'\u0301', 0, 180},      {U'\u0300', 0, '`'},
};

constexpr char32_t kArc = U'\u0311';  // wide over everything
constexpr float kMarkRise = 0.52F;    // foot of drawn accents over a small letter, ems

bool IsDotted(const Node& node) {
  return !node.sign && node.character == U'i';
}

}  // namespace

// Rule 12, but the places come from ink.
Part Setter::SetAccent(const Node& node, Style style) {
  const float size = SizeOf(style);
  // The only sign that is under it, without its dot.
  const Node& row = tree_[node.first];
  const Node* only = row.kind == Kind::Row && row.first != kNone && tree_[row.first].next == kNone
                         ? &tree_[row.first]
                         : nullptr;
  const std::size_t begin = layout_.elements.size();
  Part body;
  if (only && only->kind == Kind::Sign && IsDotted(*only)) {
    body = Begin();
    constexpr int kDotless = 131;
    const std::int16_t font = FaceOf(static_cast<Face>(only->face), true);
    Character(body, font, kDotless, 0, 0, size, only->begin);
    body.width = Advance(kDotless, font, size);
    body.single = true;
    body.letter = (font & 3) >= 2;
  } else {
    body = SetRow(node.first, style.Cramped());
  }
  const auto mark = std::ranges::find(kMarks, node.character, &Mark::accent);
  const bool drawn = mark == std::end(kMarks);
  if (node.value == 1 && (!body.single || body.right - body.left > 0.6F * size || node.character == kArc))
    return SetWideAccent(node, body, style);
  if (!body.inked) body.right = body.width;

  float middle = (body.left + body.right) / 2;
  if (body.single && body.letter && body.end == body.begin + 1) {
    const Element& letter = layout_.elements[body.begin];
    const float place = LeanOf(letter.code, letter.font).accent;
    if (place != 0) middle = letter.x + letter.size * place;
  }
  Part whole = body;
  const bool raised = body.height > kTallLetter * size;
  if (drawn) {
    Part accent = Begin();
    const float foot = -std::max(kMarkRise * size, body.height + 0.06F * size);
    const float half = 0.13F * size, rise = 0.15F * size, width = kRule * size;
    switch (node.character) {
      case U'\u030C':
        Line(accent, {{middle - half, foot - rise}, {middle, foot}, {middle + half, foot - rise}}, width);
        break;
      case U'\u0306':
        Curve(accent,
              {{middle - half, foot - rise}, {middle, foot + 0.08F * size}, {middle + half, foot - rise}},
              width);
        break;
      case U'\u030A': {
        constexpr int kDegree = 176;
        const Box ink = InkOfCharacter(kDegree, kSymbol);
        const float own = 0.7F * size;
        Character(accent, kSymbol, kDegree, middle - own * (ink.left + ink.right) / 2,
                  foot - own * ink.bottom, own, node.begin);
        break;
      }
      default:  // three dots
        for (int i = -1; i <= 1; ++i)
          Character(accent, kMath0, '0', middle + static_cast<float>(i) * 0.17F * size,
                    raised ? -kSuperscript * size : 0, size, node.begin);
    }
    Take(whole, accent, 0, 0);
  } else {
    // In the run of its letter: over a tall one as high and as large as a script. Its place is one that steps
    // within the run reach.
    const float own = raised ? size * kScriptFactor : size;
    float rise = raised ? kSuperscript * size : 0;
    const Box ink = InkOfCharacter(mark->code, mark->font);
    const float gap = body.height - (rise - ink.bottom * own);
    if (gap > 0) rise += gap;  // over towers it stands by itself
    float x = middle - own * (ink.left + ink.right) / 2;
    x = std::round(x / size / kStep) * kStep * size;
    Part accent = Begin();
    Character(accent, mark->font, mark->code, x, -rise, own, node.begin);
    ToFront(begin, body.end);
    Take(whole, accent, 0, 0);
    whole.end = layout_.elements.size();
  }
  whole.width = body.width;
  whole.single = body.single;
  whole.letter = body.letter;
  return whole;
}

Part Setter::SetWideAccent(const Node& node, Part body, Style style) {
  const float size = SizeOf(style);
  const float left = body.left + 0.03F * size, right = body.right - 0.02F * size;
  const float middle = (left + right) / 2, quarter = (right - left) / 4;
  const float foot = -(body.height + 0.07F * size);
  const float rise = std::min(0.26F, 0.12F + 0.04F * (right - left) / size) * size;
  const float width = kRule * size;
  Part accent = Begin();
  if (node.character == U'\u0302') {
    Line(accent, {{left, foot}, {middle, foot - rise}, {right, foot}}, width);
  } else if (node.character == U'\u030C') {
    Line(accent, {{left, foot - rise}, {middle, foot}, {right, foot - rise}}, width);
  } else if (node.character == kArc) {
    Curve(accent, {{left, foot}, {middle, foot - 2 * rise}, {right, foot}}, width);
  } else {
    Curve(accent,
          {{left, foot},
           {left + quarter, foot - 2 * rise},
           {middle, foot - rise / 2},
           {right - quarter, foot + rise},
           {right, foot - rise}},
          width);
  }
  Part whole = body;
  Take(whole, accent, 0, 0);
  whole.single = false;
  return whole;
}

// The stroke goes through the middle of the sign.
Part Setter::SetNegated(const Node& node, Style style) {
  const float size = SizeOf(style);
  const std::size_t begin = layout_.elements.size();
  Part body = SetNode(node.first, style);
  Part stroke = Begin();
  const float x = std::round((body.left + body.right) / 2 / size / kStep) * kStep * size;
  Character(stroke, kMath0, '!', x, 0, size, node.begin);
  ToFront(begin, body.end);
  Part whole = body;
  whole.end = layout_.elements.size();
  return whole;
}

// Rules 9 and 10.
Part Setter::SetRuled(const Node& node, Style style) {
  const float size = SizeOf(style);
  const bool above = node.value == static_cast<int>(Side::Above);
  Part whole = SetRow(node.first, above ? style.Cramped() : style);
  const float rule = kRule * size;
  const float y =
      above ? -(whole.height + kLineGap * size + rule / 2) : whole.depth + kLineGap * size + rule / 2;
  const float left = std::min(0.0F, whole.left), right = std::max(whole.width, whole.right);
  Part line = Begin();
  Line(line, {{left + rule / 2, y}, {std::max(right - rule / 2, left + rule), y}}, rule);
  const float width = whole.width;
  Take(whole, line, 0, 0);
  (above ? whole.height : whole.depth) += rule;
  whole.width = width;
  whole.single = whole.letter = false;
  return whole;
}

// Ends, bars and a point, all in one run; the last bars step back to the width.
Part Setter::SetBrace(const Node& node, Style style) {
  const float size = SizeOf(style);
  const bool above = node.value == static_cast<int>(Side::Above);
  Part whole = SetRow(node.first, style);
  const float wanted = std::max(whole.width, whole.right) - std::min(0.0F, whole.left);
  constexpr float kEnds = 4 * 0.28F, kBar = 0.5F;
  const float own = std::min(size, wanted / kEnds);
  const float half = std::max(0.0F, (wanted / own - kEnds) / 2);
  const int bars = static_cast<int>(std::ceil(half / kBar - 0.01F));
  const float over = std::floor((static_cast<float>(bars) * kBar - half) / kStep) * kStep;
  Part brace = Begin();
  float pen = 0;
  const auto put = [&](int code, float back) {
    pen -= back * own;
    Character(brace, kMath0, code, pen, 0, own, node.begin);
    pen += Advance(code, kMath0, own);
  };
  const auto putBars = [&] {
    for (int i = 0; i < bars; ++i) put('-', i + 1 < bars ? 0 : over);
  };
  put(above ? 'q' : 'z', 0);
  putBars();
  put(above ? 'x' : 'w', 0);
  put(above ? 'z' : 'q', 0);
  putBars();
  put(above ? 'w' : 'x', 0);
  const float x = (std::min(0.0F, whole.left) + std::max(whole.width, whole.right)) / 2 - pen / 2;
  const float y = above ? -(whole.height + kBraceGap * size + brace.depth)
                        : whole.depth + kBraceGap * size + brace.height;
  const float width = whole.width;
  Take(whole, brace, x, y);
  whole.width = width;
  whole.single = whole.letter = false;
  return whole;
}

// What stands over or under it, as a limit does.
Part Setter::SetStack(const Node& node, Style style) {
  Part nucleus = SetRow(node.first, style);
  nucleus.lean = 0;
  return SetLimits(nucleus, node.second, node.third, style);
}

// A run of a shaft and heads; at least so wide.
Part Setter::ArrowOf(char32_t character, float width, float size, std::size_t at) {
  struct Arrow {
    char32_t character;
    char left, shaft, right;
  };
  static constexpr Arrow kArrows[] = {
      {U'→', 0, '-', 'y'},   {U'←', 'b', '-', 0},   {U'↔', 'b', '-', 'y'},
      {U'⇒', 0, '=', 'Y'},   {U'⇐', 'B', '=', 0},   {U'⇔', 'B', '=', 'Y'},
      {U'↦', 'm', '-', 'y'}, {U'↪', 'j', '-', 'y'}, {U'=', '=', '=', '='},
  };
  const Arrow& arrow = *std::ranges::find(kArrows, character, &Arrow::character);
  const float bar = Advance(arrow.shaft, kMath0, size);
  const float left = arrow.left ? Advance(arrow.left, kMath0, size) : 0;
  const float right = arrow.right ? Advance(arrow.right, kMath0, size) : 0;
  const float rest = std::max(0.0F, width - left - right);
  const int bars = static_cast<int>(std::ceil(rest / bar - 0.01F));
  const float over = std::floor((static_cast<float>(bars) * bar - rest) / (kStep * size)) * kStep * size;
  Part part = Begin();
  float pen = 0;
  const auto put = [&](char code) {
    Character(part, kMath0, code, pen, 0, size, at);
    pen += Advance(code, kMath0, size);
  };
  if (arrow.left) put(arrow.left);
  for (int i = 0; i < bars; ++i) {
    if (i + 1 == bars) pen -= over;
    put(arrow.shaft);
  }
  if (arrow.right) put(arrow.right);
  part.width = pen;
  return part;
}

Part Setter::SetReach(const Node& node, Style style) {
  const float size = SizeOf(style);
  const std::size_t begin = layout_.elements.size();
  Part above = SetRow(node.second, style.Script());
  MarkGroup(above, 4);
  Part below = Begin();
  if (node.third != kNone) {
    below = SetRow(node.third, style.Script());
    MarkGroup(below, 4);
  }
  const std::size_t middle = layout_.elements.size();
  const float labels = std::max(above.width, below.width);
  const Part arrow = ArrowOf(node.character, labels + 0.6F * size, size, node.begin);
  const std::size_t count = arrow.end - arrow.begin;
  ToFront(begin, middle);
  above.begin += count, above.end += count;
  below.begin += count, below.end += count;
  Part whole = Begin();
  whole.begin = begin;
  Part front = arrow;
  front.begin = begin;
  front.end = begin + count;
  Take(whole, front, 0, 0);
  const float centre = arrow.width / 2;
  Take(whole, above, centre - above.width / 2, -(arrow.height + 0.1F * size + above.depth));
  if (node.third != kNone)
    Take(whole, below, centre - below.width / 2, arrow.depth + 0.1F * size + below.height);
  whole.end = layout_.elements.size();
  whole.width = arrow.width;
  return whole;
}

Part Setter::SetOverArrow(const Node& node, Style style) {
  const float size = SizeOf(style);
  const bool above = node.value == static_cast<int>(Side::Above);
  Part whole = SetRow(node.first, above ? style.Cramped() : style);
  const float wanted = std::max(whole.width, whole.right);
  const float own = std::min(0.8F * size, wanted / (node.character == U'↔' ? 1.7F : 0.85F));
  const Part arrow = ArrowOf(node.character, wanted, own, node.begin);
  const float y =
      above ? -(whole.height + 0.06F * size + arrow.depth) : whole.depth + 0.08F * size + arrow.height;
  const float width = whole.width;
  Take(whole, arrow, (wanted - arrow.width) / 2, y);
  whole.width = width;
  whole.single = whole.letter = false;
  return whole;
}

Part Setter::SetFramed(const Node& node, Style style) {
  const float size = SizeOf(style);
  const float rule = kRule * size, gap = kBoxGap * size;
  const Part body = SetRow(node.first, style);
  const auto form = static_cast<Frame>(node.value);
  if (form != Frame::Box) {
    Part whole = body;
    Part strokes = Begin();
    const float left = std::min(0.0F, body.left), right = std::max(body.width, body.right);
    const float top = -body.height - kCancelReach * size, foot = body.depth + kCancelReach * size;
    if (form != Frame::Falling) Line(strokes, {{left, foot}, {right, top}}, rule);
    if (form != Frame::Rising) Line(strokes, {{left, top}, {right, foot}}, rule);
    whole.end = strokes.end;
    whole.single = false;
    return whole;
  }
  Part whole = Begin();
  whole.begin = body.begin;
  Take(whole, body, gap + rule, 0);
  const float left = rule / 2, right = body.width + 2 * gap + 1.5F * rule;
  const float top = -(std::max(body.height, 0.45F * size) + gap + rule / 2),
              foot = body.depth + gap + rule / 2;
  Part frame = Begin();
  // Lines across, and areas up and down, whose square ends lie on the lines.
  Line(frame, {{left, top}, {right, top}}, rule);
  Line(frame, {{left, foot}, {right, foot}}, rule);
  for (const float x : {left, right}) {
    const float from = x - rule / 2, to = x + rule / 2, high = top + rule / 2, low = foot - rule / 2;
    Line(frame, {{from, high}, {to, high}, {to, low}, {from, low}, {from, high}}, 0);
  }
  Take(whole, frame, 0, 0);
  whole.end = layout_.elements.size();
  whole.width = right + rule / 2;
  return whole;
}

}  // namespace kelvane::formula
