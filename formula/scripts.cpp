// What stands above and below: scripts, limits, fractions and roots. The rules named are those of Appendix G.

#include <algorithm>
#include <cmath>

#include "formula/parameters.h"
#include "formula/setter.h"
#include "typography/metrics.h"
#include "typography/typefaces.h"

namespace kelvane::formula {
namespace {

// Math0's roots, which all reach up to the same height above their baseline.
struct RootSign {
  char key;
  float height;  // ems
};
constexpr RootSign kRoots[] = {{'v', 0.94F}, {'&', 1.4F}, {'V', 1.94F}};
constexpr float kRootTop = 0.8F;
constexpr float kMostEnlarged = 1.2F;

constexpr char kPrime = static_cast<char>(162);  // of Symbol, raised by itself

bool IsPrimes(const Tree& tree, int row) {
  if (row == kNone || tree[row].kind != Kind::Row || tree[row].first == kNone) return false;
  for (int node = tree[row].first; node != kNone; node = tree[node].next)
    if (tree[node].kind != Kind::Sign || tree[node].character != U'′') return false;
  return true;
}

int CountOf(const Tree& tree, int row) {
  int count = 0;
  for (int node = tree[row].first; node != kNone; node = tree[node].next) ++count;
  return count;
}

}  // namespace

// Rules 17 and 18.
Part Setter::SetScripts(const Node& node, Style style) {
  int above = node.second;
  int primes = node.value;
  if (IsPrimes(tree_, above)) {
    primes += CountOf(tree_, above);
    above = kNone;
  }
  const Node& core = tree_[node.first];
  const bool stacked = core.limits == Limits::Stacked || (core.limits == Limits::AsUsual && core.stacks &&
                                                          (style.Display() || core.kind == Kind::Brace));
  if (stacked && primes == 0) return SetLimits(SetNode(node.first, style), above, node.third, style);

  const float size = SizeOf(style);
  Part nucleus = SetNode(node.first, style);
  Part whole = nucleus;
  // How far a script has to go right to stay clear of a leaning letter. `left` is where its ink begins.
  const auto clear = [&](float left) {
    if (!nucleus.inked) return 0.0F;
    const float out = nucleus.correction > 0 ? nucleus.correction : nucleus.right - nucleus.width;
    return (out - left) / size + kInkGap;
  };
  float end = nucleus.width;
  Part marks = Begin();
  if (primes > 0) {
    const float advance = Advance(static_cast<unsigned char>(kPrime), kSymbol, size);
    for (int i = 0; i < primes; ++i)
      Character(marks, kSymbol, static_cast<unsigned char>(kPrime), static_cast<float>(i) * advance, 0, size,
                node.begin);
    const float missing = clear(marks.left) - kPrimeLean;
    const float shift = missing > 0.004F ? std::max(UpToStep(missing), 2 * kStep) * size : 0;
    // Beside tall brackets they reach as high as those do.
    const float rise = nucleus.single ? 0 : std::max(0.0F, nucleus.height - kPrimeTop * size);
    Take(whole, marks, nucleus.width + shift, -rise);
    end = nucleus.width + shift + static_cast<float>(primes) * advance;
  }
  const float afterPrimes = end;
  if (above == kNone && node.third == kNone) {
    whole.width = end;
    whole.single = whole.letter = false;
    return whole;
  }

  const bool likeSign = nucleus.single || nucleus.height <= kLikeSign * size;
  float up = likeSign ? 0 : nucleus.height - kSuperscriptDrop * size;
  float down = likeSign && nucleus.depth <= kSubscript * size ? 0 : nucleus.depth + kSubscriptDrop * size;
  const Style scriptStyle = style.Script();
  Part raised = Begin();
  if (above != kNone) raised = SetRow(above, scriptStyle);
  Part lowered = Begin();
  if (node.third != kNone) lowered = SetRow(node.third, scriptStyle.Cramped());
  if (above != kNone)
    up = std::max({up, kSuperscript * size, raised.depth + kSuperscriptLowest * kXHeight * size});
  if (node.third != kNone) down = std::max(down, kSubscript * size);
  if (above == kNone) {
    down = std::max(down, lowered.height - kSubscriptHighest * kXHeight * size);
  } else if (node.third != kNone) {
    const float between = (up - raised.depth) - (lowered.height - down);
    if (between < kScriptClearance * size) {
      down += kScriptClearance * size - between;
      const float lift = kSubscriptHighest * kXHeight * size - (up - raised.depth);
      if (lift > 0) {
        up += lift;
        down -= lift;
      }
    }
  }

  float upAt = afterPrimes;
  if (above != kNone && primes == 0) {
    const float missing = clear(raised.left);
    if (missing > kItalicLeast) {
      const float more = missing - kItalicSuperscript;
      upAt += (kItalicSuperscript + (more > 0.01F ? std::max(UpToStep(more), 2 * kStep) : 0)) * size;
    }
  }
  // Beside a tall sign a letter that reaches out to the left would touch it.
  const float reach =
      likeSign || nucleus.lean > 0 ? 0 : UpToStep(std::max(0.0F, -lowered.left) / size) * size;
  const float downAt = nucleus.width - nucleus.lean + reach;
  const float upEnd = upAt + raised.width;
  const float downEnd = downAt + lowered.width;
  // The one that ends first goes first: the run goes on behind the other.
  if (node.third != kNone && above != kNone && downEnd < upEnd) {
    const std::size_t middle = raised.end, begin = raised.begin;
    const std::size_t count = lowered.end - lowered.begin;
    ToFront(begin, middle);
    lowered.end = begin + count;
    lowered.begin = begin;
    raised.end += count;
    raised.begin += count;
  }
  // Primes go last, for the run comes back to them behind a subscript but not the other way.
  if (node.third != kNone && above == kNone && primes > 0) {
    const std::size_t count = lowered.end - lowered.begin;
    ToFront(marks.begin, lowered.begin);
    lowered.begin = marks.begin;
    lowered.end = lowered.begin + count;
  }
  if (above != kNone) Take(whole, raised, upAt, -up);
  if (node.third != kNone) Take(whole, lowered, downAt, down);
  whole.end = layout_.elements.size();
  if (above != kNone) end = std::max(end, upEnd);
  if (node.third != kNone && downEnd > end)
    end = primes > 0 && above == kNone ? end + UpToStep((downEnd - end) / size) * size : downEnd;
  whole.width = end;
  if (!likeSign) whole.width += kScriptSpace * size;
  whole.single = whole.letter = false;
  whole.lean = 0;
  return whole;
}

// Rule 13a.
Part Setter::SetLimits(const Part& nucleus, int above, int below, Style style) {
  const float size = SizeOf(style);
  const Style limitStyle = style.Script();
  Part raised = Begin();
  if (above != kNone) raised = SetRow(above, limitStyle);
  Part lowered = Begin();
  if (below != kNone) lowered = SetRow(below, limitStyle.Cramped());
  // Room at both sides where a limit is wider, in whole steps so that the run can go on.
  const float widest = std::max({nucleus.width, raised.width, lowered.width});
  const float side = UpToStep((widest - nucleus.width) / 2 / size) * size;
  const float middle = side + nucleus.width / 2;
  Part whole = Begin();
  whole.begin = nucleus.begin;
  whole.end = nucleus.end;
  Take(whole, nucleus, side, 0);
  const float top = nucleus.height, foot = nucleus.depth;
  if (above != kNone) {
    const float gap = std::max(kLimitAboveGap * size, kLimitAboveBaseline * size - raised.depth);
    MarkGroup(raised, 4);
    Take(whole, raised, middle - raised.width / 2 + nucleus.lean / 2, -(top + gap + raised.depth));
  }
  if (below != kNone) {
    const float gap = std::max(kLimitBelowGap * size, kLimitBelowBaseline * size - lowered.height);
    MarkGroup(lowered, 4);
    Take(whole, lowered, middle - lowered.width / 2 - nucleus.lean / 2, foot + gap + lowered.height);
  }
  whole.end = layout_.elements.size();
  whole.width = nucleus.width + 2 * side;
  return whole;
}

// Rule 15.
Part Setter::SetFraction(const Node& node, Style style) {
  const auto form = static_cast<FractionForm>(node.value);
  const bool binomial = form == FractionForm::Binomial || form == FractionForm::DisplayBinomial ||
                        form == FractionForm::TextBinomial;
  const bool bare = binomial || form == FractionForm::Bare;
  if (form == FractionForm::Display || form == FractionForm::Continued ||
      form == FractionForm::DisplayBinomial)
    style.level = 0;
  if (form == FractionForm::Text || form == FractionForm::TextBinomial) style = style.Text();
  const float size = SizeOf(style);
  const bool display = style.Display();
  const bool continued = form == FractionForm::Continued;
  const Style inner = continued ? style : Style{style.level < 1 ? 1 : style.level < 2 ? 2 : 3, style.cramped};
  const float rule = kRule * size, axis = kAxis * size;

  Part opening = Begin();
  Part above = SetRow(node.first, inner);
  MarkGroup(above, 4);
  Part below = SetRow(node.second, inner.Cramped());
  MarkGroup(below, 4);
  float up = (display ? kNumeratorDisplay : bare ? kNumeratorBare : kNumerator) * size;
  float down = (display ? kDenominatorDisplay : kDenominator) * size;
  if (continued) above.height = std::max(above.height, 0.84F * size);
  if (bare) {
    const float least = (display ? 7 : 3) * rule;
    const float between = (up - above.depth) - (below.height - down);
    if (between < least) {
      up += (least - between) / 2;
      down += (least - between) / 2;
    }
  } else {
    const float least = (display ? kFractionGap : 1) * rule;
    up = std::max(up, axis + rule / 2 + least + above.depth);
    down = std::max(down, least + rule / 2 - axis + below.height);
  }
  const float width = std::max({above.width, below.width, above.right, below.right, 0.3F * size});
  const float side = binomial ? 0 : kFractionSide * size;
  Part whole = Begin();
  whole.begin = opening.begin;
  Take(whole, above, side + (width - above.width) / 2, -up);
  Take(whole, below, side + (width - below.width) / 2, down);
  if (!bare) {
    Part bar = Begin();
    Line(bar, {{side + rule / 2, -axis}, {side + width - rule / 2, -axis}}, rule);
    Take(whole, bar, 0, 0);
  }
  whole.end = layout_.elements.size();
  whole.width = width + 2 * side;
  if (!binomial) return whole;

  const float tall = std::max((display ? kBinomialDisplay : kBinomial) * size,
                              2 * std::max(whole.height - axis, whole.depth + axis) * kDelimiterFactor);
  const std::size_t middle = layout_.elements.size();
  const Part left = SetBracket(U'(', tall, style, node.begin);
  const float leftWidth = left.width;
  ToFront(whole.begin, middle);
  const std::size_t brackets = left.end - left.begin;
  Part body = whole;
  body.begin += brackets;
  body.end += brackets;
  Part result = left;
  result.begin = whole.begin;
  result.end = whole.begin + brackets;
  result.single = false;
  Take(result, body, leftWidth, 0);
  const Part right = SetBracket(U')', tall, style, node.begin);
  Take(result, right, leftWidth + whole.width, 0);
  result.end = layout_.elements.size();
  result.width = leftWidth + whole.width + right.width;
  return result;
}

// Rule 11. The bar is an area, for it has to join the sign with a square end.
Part Setter::SetRoot(const Node& node, Style style) {
  const float size = SizeOf(style);
  Part whole = Begin();
  Part body = SetRow(node.first, style.Cramped());
  const float rule = kRule * size;
  const float least = rule + (style.Display() ? kXHeight * size : rule) / 4;
  const float inside = std::max(body.height, 0.4F * size) + std::max(body.depth, 0.0F);
  const float tall = inside + least + rule;

  const auto sign = std::ranges::find_if(kRoots, [&](const RootSign& one) {
    return tall <= one.height * kMostEnlarged * size || &one == std::end(kRoots) - 1;
  });
  const char key = sign->key;
  const float own = sign == kRoots ? std::max(size, tall / sign->height) : tall / sign->height;
  const float height = sign->height * own;
  const float gap = least + (height - tall) / 2;  // what is left over goes half above, half below
  const float barTop = std::max(body.height, 0.4F * size) + gap + rule;

  const std::size_t middle = layout_.elements.size();
  Part root = Begin();
  const float y = kRootTop * own - barTop;
  Character(root, kMath0, key, 0, y, own, node.begin);
  const float signWidth = Advance(key, kMath0, own);
  // A letter that reaches out to the left begins behind the sign all the same.
  const float inset = body.inked ? std::max(0.0F, -body.left) : 0;
  const float bar = inset + std::max(body.width, body.right) + kRootSide * size;
  ToFront(body.begin, middle);
  const std::size_t count = root.end - root.begin;
  root.begin = body.begin;
  root.end = root.begin + count;
  body.begin += count;
  body.end += count;
  float left = 0;
  if (node.second != kNone) {
    // Plain TeX's \root: raised over the tick, close to it.
    Part index = SetRow(node.second, {3, style.cramped});
    const float rise = kRootIndexRise * (root.height - root.depth);
    left = std::max(0.0F, std::max(index.width, index.right) - 0.26F * own);
    // The tick's own ink is below the index: above it there is room.
    Move(root, left, 0);
    Move(body, left + signWidth + inset, 0);
    Move(index, left + 0.26F * own - std::max(index.width, index.right), -rise);
    AddInk(whole, {left + root.left, -root.height, left + root.right, root.depth});
    if (body.inked)
      AddInk(whole, {left + signWidth + inset + body.left, -body.height,
                     left + signWidth + inset + body.right, body.depth});
    if (index.inked) {
      const float x = left + 0.26F * own - std::max(index.width, index.right);
      AddInk(whole, {x + index.left, -rise - index.height, x + index.right, -rise + index.depth});
    }
  } else {
    Take(whole, root, 0, 0);
    Take(whole, body, signWidth + inset, 0);
  }
  Part vinculum = Begin();
  const float from = left + signWidth, thick = kRule * own;
  Line(vinculum,
       {{from, -barTop},
        {from + bar, -barTop},
        {from + bar, thick - barTop},
        {from, thick - barTop},
        {from, -barTop}},
       0);
  Take(whole, vinculum, 0, 0);
  whole.end = layout_.elements.size();
  whole.width = from + bar + kRootSide * size;
  return whole;
}

}  // namespace kelvane::formula
