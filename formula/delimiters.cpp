// Brackets of every height: a character of the text, one of Math0 in its size, or pieces that join.

#include <algorithm>
#include <cmath>

#include "formula/names.h"
#include "formula/parameters.h"
#include "formula/setter.h"
#include "typography/metrics.h"
#include "typography/signs.h"
#include "typography/typefaces.h"

namespace kelvane::formula {
namespace {

// How Math0 draws a bracket. Single ones are one and a half ems tall, or two; pieces one em each.
struct Bracket {
  char32_t character;
  char single;
  float tall;  // ems of the single one
  char top, bar, middle, foot;
  bool right;
};
constexpr Bracket kBrackets[] = {
    {U'(', '(', 1.5F, '7', '|', 0, '1', false},   {U')', ')', 1.5F, '9', '|', 0, '3', true},
    {U'[', '[', 1.5F, 'r', '|', 0, 'f', false},   {U']', ']', 1.5F, 't', '|', 0, 'g', true},
    {U'{', '{', 1.5F, '7', '|', '4', '1', false}, {U'}', '}', 1.5F, '9', '|', '6', '3', true},
    {U'⌈', 0, 0, 'r', '|', 0, '|', false},        {U'⌉', 0, 0, 't', '|', 0, '|', true},
    {U'⌊', 0, 0, '|', '|', 0, 'f', false},        {U'⌋', 0, 0, '|', '|', 0, 'g', true},
    {U'⟨', '<', 1.5F, 0, 0, 0, 0, false},         {U'⟩', '>', 1.5F, 0, 0, 0, 0, true},
};

// A single bracket is enlarged up to this; its strokes grow with it.
constexpr float kMostEnlarged = 1.27F;
constexpr float kPieceTop = 0.75F;     // of a piece above its baseline, ems
constexpr float kBarWidth = 0.05F;     // of drawn bars, ems: those of type have 0.066, of Math0 0.06
constexpr float kDoubleBarGap = 0.2F;  // between the middles of double bars
constexpr float kLargerAngle = 2.0F;   // ems of the larger angle bracket

const Bracket* FindBracket(char32_t character) {
  const auto found = std::ranges::find(kBrackets, character, &Bracket::character);
  return found == std::end(kBrackets) ? nullptr : found;
}

// The next height that a classical set of delimiters has.
float HeightOf(float wanted) {
  if (wanted <= kTextDelimiter) return kTextDelimiter;
  return kLeastDrawn +
         std::ceil(std::max(0.0F, wanted - kLeastDrawn) / kDelimiterStep - 0.001F) * kDelimiterStep;
}

}  // namespace

// Upright lines from the axis evenly up and down.
Part Setter::SetBars(int lines, float height, float size) {
  Part part = Begin();
  const float width = kBarWidth * size;
  const float top = -kAxis * size - height / 2 + width / 2;
  const float foot = -kAxis * size + height / 2 - width / 2;
  for (int i = 0; i < lines; ++i) {
    const float x = kDelimiterSide * size + width / 2 + static_cast<float>(i) * kDoubleBarGap * size;
    Line(part, {{x, top}, {x, foot}}, width);
  }
  part.width = part.right + kDelimiterSide * size;
  return part;
}

Part Setter::SetPieces(char32_t character, float height, float size, std::size_t at) {
  const Bracket& bracket = *FindBracket(character);
  int count = std::max(2, static_cast<int>(std::lround(height / size)));
  if (bracket.middle) count = std::max(3, count | 1);
  const float own = height / static_cast<float>(count);
  Part part = Begin();
  const float first = -kAxis * size - height / 2 + kPieceTop * own;
  // The pieces of a right-hand bracket join at their right edges.
  const float widest = Advance(bracket.top, kMath0, own);
  for (int i = 0; i < count; ++i) {
    const char key = i == 0                             ? bracket.top
                     : i == count - 1                   ? bracket.foot
                     : bracket.middle && i == count / 2 ? bracket.middle
                                                        : bracket.bar;
    const float x = bracket.right ? widest - Advance(key, kMath0, own) : 0;
    Character(part, kMath0, key, x, first + static_cast<float>(i) * own, own, at);
  }
  return part;
}

Part Setter::SetBracket(char32_t character, float height, Style style, std::size_t at) {
  const float size = SizeOf(style);
  height = HeightOf(height / size) * size;
  Part part = Begin();
  if (character == 0) {
    part.width = kFractionSide * size;
    return part;
  }
  const kelvane::Sign* sign = SignMeant(character);
  const float axis = kAxis * size;
  if (height <= kTextDelimiter * size ||
      (!FindBracket(character) && character != U'|' && character != U'‖')) {
    // A slash or an arrow grows as it is.
    const float grown = height <= kTextDelimiter * size ? size : height / 0.9F;
    if (sign) {
      part.width = Run(part, RunOf(*sign, style_.roman), style_.roman, 0, 0, grown, at);
    } else {
      Character(part, style_.roman, static_cast<int>(character), 0, 0, grown, at);
      part.width = Advance(static_cast<int>(character), style_.roman, grown);
    }
    if (grown != size) {
      const float off = (part.height - part.depth) / 2 - axis;
      Move(part, 0, off);
      part.height -= off;
      part.depth += off;
    }
    part.single = grown == size;
    return part;
  }
  if (character == U'|' || character == U'‖') return SetBars(character == U'|' ? 1 : 2, height, size);
  const Bracket& bracket = *FindBracket(character);
  const bool angle = bracket.top == 0;
  if (bracket.single && (angle || height <= bracket.tall * kMostEnlarged * size)) {
    const bool larger = angle && height > bracket.tall * kMostEnlarged * size;
    const char key = larger ? (bracket.right ? ';' : ',') : bracket.single;
    const float own = height / (larger ? kLargerAngle : bracket.tall);
    Character(part, kMath0, key, 0, 0, own, at);
    const float off = (part.height - part.depth) / 2 - axis;
    Move(part, 0, off);
    part.height -= off;
    part.depth += off;
  } else if (!bracket.single && height <= 1.1F * size) {
    Character(part, kMath0, bracket.top == '|' ? bracket.foot : bracket.top, 0, 0, size, at);
  } else {
    part = SetPieces(character, height, size, at);
  }
  // The room beside it is ours, whatever the pieces have.
  const float shift = kDelimiterSide * size - part.left;
  Move(part, shift, 0);
  part.left += shift;
  part.right += shift;
  part.width = part.right + kDelimiterSide * size;
  return part;
}

Part Setter::SetBig(const Node& node, Style style) {
  // Plain TeX's \big and its kin, of 8.5, 11.5, 14.5 and 17.5 points with 10 point type, and what brackets
  // stand out over that.
  static constexpr float kHeights[] = {1.0F, 1.2F, 1.8F, 2.4F, 3.0F};
  Part part = SetBracket(node.character, kHeights[node.value] * SizeOf(style), style, node.begin);
  part.single = false;
  return part;
}

// Rule 19.
Part Setter::SetFence(const Node& node, Style style) {
  const float size = SizeOf(style);
  const float axis = kAxis * size;
  const std::size_t begin = layout_.elements.size();
  std::vector<Part> parts;
  float reach = 0;
  for (int i = node.first; i != kNone; i = tree_[i].next) {
    const bool middle = tree_[i].kind == Kind::Delimiter;
    Part part = middle ? Begin() : SetNode(i, style);
    if (part.inked) reach = std::max({reach, part.height - axis, part.depth + axis});
    parts.push_back(part);
  }
  const float tall = std::max(2 * reach * kDelimiterFactor, 2 * reach - kDelimiterShortfall * size);
  Part whole = Begin();
  whole.begin = begin;
  // What stands before its body is set after it, and put in front.
  const auto setInFront = [&](char32_t character, std::size_t at, std::size_t first) {
    const std::size_t middle = layout_.elements.size();
    Part bracket = SetBracket(character, tall, style, at);
    const std::size_t count = bracket.end - bracket.begin;
    ToFront(first, middle);
    bracket.begin = first;
    bracket.end = first + count;
    for (Part& part : parts) {
      if (part.begin < first) continue;
      part.begin += count;
      part.end += count;
    }
    return bracket;
  };
  const Part opening = setInFront(node.character, node.begin, begin);
  float pen = opening.width;
  Take(whole, opening, 0, 0);
  int index = node.first;
  for (std::size_t i = 0; i < parts.size(); ++i, index = tree_[index].next) {
    if (tree_[index].kind == Kind::Delimiter) {
      const Part bracket = setInFront(tree_[index].character, tree_[index].begin,
                                      i + 1 < parts.size() ? parts[i + 1].begin : layout_.elements.size());
      pen += kFixedSpace * size;
      Take(whole, bracket, pen, 0);
      pen += bracket.width + kFixedSpace * size;
      continue;
    }
    const Part& part = parts[i];
    // Slanted letters reach beyond their room on either side.
    if (i == 0 && part.inked && opening.inked) {
      const float missing = kInkGap - (opening.width - opening.right + part.left) / size;
      if (missing > 0.004F) pen += std::max(UpToStep(missing), 2 * kStep) * size;
    }
    Take(whole, part, pen, 0);
    pen += part.width;
  }
  const Part closing = SetBracket(node.closing, tall, style, node.end > 0 ? node.end - 1 : 0);
  if (!parts.empty() && parts.back().inked && closing.inked) {
    const Part& part = parts.back();
    const float missing = kInkGap - (part.width - part.right + closing.left) / size;
    if (missing > 0.004F) pen += std::max(UpToStep(missing), 2 * kStep) * size;
  }
  Take(whole, closing, pen, 0);
  whole.end = layout_.elements.size();
  whole.width = pen + closing.width;
  return whole;
}

}  // namespace kelvane::formula
