#include "typography/glyph_procedures.h"

#include <string_view>

#include "document/fields.h"
#include "document/numbers.h"

namespace kelvane {

namespace {

constexpr int kMostOperands = 20;

class Interpreter {
 public:
  explicit Interpreter(std::vector<GlyphPiece>& pieces) : pieces_(pieces) {}

  // False when the procedure must stop.
  bool Execute(std::string_view token) {
    if (token == "moveto") return MoveTo();
    if (token == "rlineto") return LineTo();
    if (token == "rc" || token == "rp") return CurveTo();
    if (token == "ci") return Circle();
    if (token == "st" || token == "fill") return true;  // the screen shows outlines only
    if (depth_ == kMostOperands) return false;
    operands_[depth_++] = ReadSingle(token);
    return true;
  }

 private:
  bool Pop(Point& point) {
    if (depth_ < 2) return false;
    depth_ -= 2;
    point = {operands_[depth_], operands_[depth_ + 1]};
    return true;
  }
  bool PopRelative(Point& point) {
    if (!Pop(point)) return false;
    point = {point.x + current_.x, point.y + current_.y};
    return true;
  }
  bool MoveTo() { return Pop(current_); }
  bool LineTo() {
    Point end;
    if (!PopRelative(end)) return false;
    GlyphPiece& piece = Add(GlyphPiece::Kind::Line);
    piece.points[0] = current_;
    piece.points[1] = current_ = end;
    return true;
  }
  bool CurveTo() {
    Point end;
    Point control;
    if (!PopRelative(end) || !PopRelative(control)) return false;
    Add(GlyphPiece::Kind::Curve).points = FlattenCurve(current_, control, end);
    current_ = end;
    return true;
  }
  bool Circle() {
    if (depth_ < 1) return false;
    GlyphPiece& piece = Add(GlyphPiece::Kind::Circle);
    piece.points[0] = current_;
    piece.radius = operands_[--depth_];
    return true;
  }
  GlyphPiece& Add(GlyphPiece::Kind kind) {
    pieces_.emplace_back().kind = kind;
    return pieces_.back();
  }

  std::vector<GlyphPiece>& pieces_;
  float operands_[kMostOperands];
  int depth_ = 0;
  Point current_;
};

}  // namespace

std::vector<GlyphPiece> ExecuteGlyph(const std::string& procedure) {
  std::vector<GlyphPiece> pieces;
  Interpreter interpreter(pieces);
  for (const std::string_view token : SplitFields(procedure, " ")) {
    if (!interpreter.Execute(token)) break;
  }
  return pieces;
}

}  // namespace kelvane
