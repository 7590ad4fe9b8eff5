#pragma once

// What the parts of the layout share: parts that have been set and can still be moved, and the one class that
// sets them. Only the files of the layout include it.

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "formula/drawn_signs.h"
#include "formula/layout.h"
#include "formula/tree.h"
#include "typography/typefaces.h"

namespace kelvane::formula {

// Display, text, script and scriptscript, each of them cramped or not.
struct Style {
  int level = 0;
  bool cramped = false;

  bool Display() const { return level == 0; }
  Style Cramped() const { return {level, true}; }
  Style Script() const { return {level < 2 ? 2 : 3, cramped}; }
  Style Text() const { return {level < 1 ? 1 : level, cramped}; }
};

// Elements set at an origin of their own. All in points, y downwards; height and depth both positive.
struct Part {
  std::size_t begin = 0;
  std::size_t end = 0;
  float width = 0;
  float height = 0;
  float depth = 0;
  float left = 0;  // where its ink begins and ends
  float right = 0;
  bool inked = false;
  bool single = false;   // one character on the baseline: scripts go to their own heights
  bool letter = false;   // a slanted one
  float correction = 0;  // how far a single letter leans out of its room
  float lean = 0;        // how far the foot of an integral lies behind its head
};

class Setter {
 public:
  Setter(const Tree& tree, const LayoutStyle& style) : tree_(tree), style_(style) {}
  Layout Set();

 private:
  // setter.cpp
  // One that goes on begins behind an operand, as the right-hand columns of aligned lines do.
  Part SetRow(int row, Style style, bool goesOn = false);
  Part SetNode(int index, Style style);

  // characters.cpp
  Part SetSign(const Node& node, Style style);
  Part SetDrawn(const DrawnSign& sign, Style style, std::size_t at);
  Part SetText(const Node& node, Style style);
  // An empty place, and one that takes no room.
  Part SetPlace(const Node& node, Style style);
  Part NotePlace(const Node& node, Style style);
  Part SetPhantom(const Node& node, Style style);

  // scripts.cpp
  Part SetScripts(const Node& node, Style style);
  Part SetLimits(const Part& nucleus, int above, int below, Style style);
  Part SetFraction(const Node& node, Style style);
  Part SetRoot(const Node& node, Style style);

  // delimiters.cpp
  // A bracket, at least so tall, on the axis.
  Part SetBracket(char32_t character, float height, Style style, std::size_t at);
  Part SetBars(int lines, float height, float size);
  Part SetPieces(char32_t character, float height, float size, std::size_t at);
  Part SetFence(const Node& node, Style style);
  Part SetBig(const Node& node, Style style);

  // marks.cpp
  Part SetAccent(const Node& node, Style style);
  Part SetWideAccent(const Node& node, Part body, Style style);
  Part SetNegated(const Node& node, Style style);
  Part SetRuled(const Node& node, Style style);
  Part SetBrace(const Node& node, Style style);
  Part SetStack(const Node& node, Style style);
  Part SetReach(const Node& node, Style style);
  Part SetOverArrow(const Node& node, Style style);
  Part SetFramed(const Node& node, Style style);
  Part ArrowOf(char32_t character, float width, float size, std::size_t at);

  // tables.cpp
  Part SetTable(const Node& node, Style style);

  // What all of them do.
  float SizeOf(Style style) const { return sizes_[style.level < 2 ? 0 : style.level - 1]; }
  Part Begin() const;
  void Character(Part& part, std::int16_t font, int code, float x, float y, float size, std::size_t at);
  // A run with its switches and scripts, from a point on; returns where it ends.
  float Run(Part& part, std::string_view run, std::int16_t font, float x, float y, float size,
            std::size_t at);
  void Line(Part& part, std::vector<Point> corners, float width);
  void Curve(Part& part, std::vector<Point> points, float width);
  void AddInk(Part& part, const Box& ink);
  // Moves a part that was set, and takes it into another that it has been set behind.
  void Move(const Part& part, float dx, float dy);
  void Take(Part& whole, const Part& part, float dx, float dy);
  // Puts what was set from `middle` on in front of what was set from `begin` on.
  void ToFront(std::size_t begin, std::size_t middle);
  void MarkGroup(const Part& part, int anchor);
  std::int16_t FaceOf(Face face, bool letter) const;

  const Tree& tree_;
  LayoutStyle style_;
  float sizes_[3] = {};
  std::int16_t colour_ = 0;
  Layout layout_;
};

// How a character leans; not at all where nothing is known.
Lean LeanOf(int code, std::int16_t font);

// Up to the next whole step.
float UpToStep(float ems);

}  // namespace kelvane::formula
