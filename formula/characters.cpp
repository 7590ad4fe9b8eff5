// Signs, words and what takes their room.

#include <algorithm>
#include <cmath>
#include <string>

#include "formula/parameters.h"
#include "formula/setter.h"
#include "typography/metrics.h"
#include "typography/signs.h"
#include "typography/typefaces.h"

namespace kelvane::formula {
namespace {

bool IsGreekCapital(char32_t character) {
  return character >= U'Α' && character <= U'Ω';
}

bool IsGreek(char32_t character) {
  return (character >= U'α' && character <= U'ω') || character == U'ϕ' || character == U'ϑ' ||
         character == U'ϖ';
}

}  // namespace

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
  if (!sign && face == Face::DoubleStruck)
    if (const DrawnSign* drawn = DrawnLetter(node.character)) return SetDrawn(*drawn, style, node.begin);
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
      case U'⋃':
      case U'⋂':
      case U'⨁':
      case U'⨂':
        if (style.Display()) own = size * kDisplayOperator;
        break;
      case U'∐':
        if (style.Display()) own = size;
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
        own = size * (style.Display() ? 2.0F : 1.4F);
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
    if (style.Display() && node.stacks) {
      part.height = std::max(part.height, kOperatorRise * size);
      part.depth = std::max(part.depth, kOperatorFall * size);
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
      if (IsGreek(node.character) || (IsGreekCapital(node.character) && face == Face::Italic)) {
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

Part Setter::SetDrawn(const DrawnSign& sign, Style style, std::size_t at) {
  const float size = SizeOf(style);
  const bool large = sign.atom == Atom::Operator;
  const bool integral = IsIntegral(sign.character);
  const float own = size * (!large            ? 1
                            : style.Display() ? (integral ? kDisplayIntegral : kDrawnOperator)
                            : integral        ? kTextOperator
                                              : 1);
  const float stroke = (sign.names.empty() ? kLetterStroke : kStroke) * own;
  Part part = Begin();
  for (const DrawnPart& one : PartsOf(sign)) {
    std::vector<Point> points;
    for (const Point point : one.points)
      points.push_back({point.x * own, -kAxis * size - (point.y - kAxis) * own});
    // Halved where it stands, so that what is straight is written as such.
    for (std::size_t i = 1; i + 1 < points.size(); i += 2)
      if (one.points[i].x == one.points[i + 1].x && one.points[i].y == one.points[i + 1].y)
        points[i] = {(points[i - 1].x + points[i + 1].x) / 2, (points[i - 1].y + points[i + 1].y) / 2};
    if (one.code != 0) {
      Character(part, one.font, one.code, points[0].x, points[0].y, one.size * own, at);
    } else {
      Curve(part, std::move(points), one.area ? 0 : stroke);
    }
  }
  part.width = UpToStep(sign.width) * own;
  if (integral) part.lean = kIntegralLean * own;
  if (large && !integral && style.Display()) {
    part.height = std::max(part.height, kOperatorRise * size);
    part.depth = std::max(part.depth, kOperatorFall * size);
  }
  part.single = sign.names.empty();
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

Part Setter::NotePlace(const Node& node, Style style) {
  Part part = Begin();
  Element element;
  element.what = Element::What::Place;
  element.size = SizeOf(style);
  element.at = node.begin;
  layout_.elements.push_back(element);
  part.end = layout_.elements.size();
  return part;
}

Part Setter::SetPlace(const Node& node, Style style) {
  const float size = SizeOf(style);
  Part part = NotePlace(node, style);
  part.width = UpToStep(kEmptyPlace) * size;
  part.height = 0.68F * size;
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

}  // namespace kelvane::formula
