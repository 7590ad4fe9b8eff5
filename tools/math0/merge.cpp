#include "tools/math0/merge.h"

// The screen draws a glyph as its bare outline, so lines inside the ink would show. Every segment is cut
// where it meets another; a piece is kept when there is ink on one of its sides only; the kept pieces, all
// turned so that the ink lies on the same side, are joined end to end.

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <optional>
#include <string>

#include "platform/failure.h"

namespace kelvane::math0 {
namespace {

constexpr int kChords = 24;          // a curve is searched for crossings as this many chords
constexpr double kSame = 1e-4;       // points nearer than this are one point
constexpr double kSideStep = 0.004;  // distance from an edge at which its two sides are looked at
constexpr double kGrid = 16;         // grid steps in a unit

struct Edge {
  Vec start;
  Segment segment;
  std::vector<double> cuts;

  bool Straight() const { return IsStraight(start, segment); }
  Vec At(double t) const { return PointOn(start, segment, t); }
  Vec Slope(double t) const { return At(t + 1e-5) - At(t - 1e-5); }
};

std::vector<Edge> EdgesOf(const Outline& shapes) {
  std::vector<Edge> edges;
  for (const Contour& contour : shapes) {
    if (contour.thread) continue;
    Vec at = contour.start;
    for (const Segment& segment : contour.segments) {
      if (Length(segment.end - at) > kSame) edges.push_back({at, segment, {}});
      at = segment.end;
    }
  }
  return edges;
}

// Where the chords p-q and r-s cross, as the part of each that is passed.
std::optional<Vec> ChordsCross(Vec p, Vec q, Vec r, Vec s) {
  const Vec a = q - p;
  const Vec b = s - r;
  const double area = Cross(a, b);
  if (std::abs(area) < 1e-12) return std::nullopt;
  const double t = Cross(r - p, b) / area;
  const double u = Cross(r - p, a) / area;
  constexpr double slack = 1e-9;
  if (t < -slack || t > 1 + slack || u < -slack || u > 1 + slack) return std::nullopt;
  return Vec{t, u};
}

// Draws a crossing found on chords onto the curves themselves.
Vec Refine(const Edge& a, const Edge& b, Vec found) {
  Vec at = found;
  for (int i = 0; i < 8; ++i) {
    const Vec gap = b.At(at.y) - a.At(at.x);
    const Vec da = a.Slope(at.x) * 5e4;
    const Vec db = b.Slope(at.y) * 5e4;
    const double area = Cross(da, db);
    if (std::abs(area) < 1e-9) break;
    at = at + Vec{Cross(gap, db) / area, Cross(gap, da) / area};
  }
  return Length(at - found) < 1.0 / kChords ? at : found;
}

void CutCrossings(Edge& a, Edge& b) {
  const int stepsA = a.Straight() ? 1 : kChords;
  const int stepsB = b.Straight() ? 1 : kChords;
  for (int i = 0; i < stepsA; ++i) {
    for (int j = 0; j < stepsB; ++j) {
      const double ta = static_cast<double>(i) / stepsA;
      const double tb = static_cast<double>(j) / stepsB;
      const auto cross = ChordsCross(a.At(ta), a.At(ta + 1.0 / stepsA), b.At(tb), b.At(tb + 1.0 / stepsB));
      if (!cross) continue;
      const Vec at = Refine(a, b, {ta + cross->x / stepsA, tb + cross->y / stepsB});
      a.cuts.push_back(at.x);
      b.cuts.push_back(at.y);
    }
  }
}

// Cuts a straight edge where an end of another lies on it: edges on each other are then cut alike.
void CutAtEnds(Edge& edge, const Edge& other) {
  if (!edge.Straight()) return;
  const Vec along = edge.segment.end - edge.start;
  for (const Vec end : {other.start, other.segment.end}) {
    const double t = Dot(end - edge.start, along) / Dot(along, along);
    if (t > 0 && t < 1 && Length(edge.start + along * t - end) < kSame) edge.cuts.push_back(t);
  }
}

// Winding number of the shapes about a point: a ray to the right, curves as chords.
int WindingAt(const std::vector<Edge>& edges, Vec point) {
  int winding = 0;
  for (const Edge& edge : edges) {
    const int steps = edge.Straight() ? 1 : 4 * kChords;
    Vec p = edge.start;
    for (int i = 1; i <= steps; ++i) {
      const Vec q = i == steps ? edge.segment.end : edge.At(static_cast<double>(i) / steps);
      if ((p.y <= point.y) != (q.y <= point.y)) {
        const double x = p.x + (q.x - p.x) * (point.y - p.y) / (q.y - p.y);
        if (x > point.x) winding += q.y > p.y ? 1 : -1;
      }
      p = q;
    }
  }
  return winding;
}

// The piece of an edge between two parameters. A piece of such a curve is not quite a curve of the kind, so
// its control point is chosen for the middle to lie where it did.
Edge Piece(const Edge& edge, double from, double to) {
  const Vec start = edge.At(from);
  const Vec end = edge.At(to);
  if (edge.Straight()) return {start, {Midpoint(start, end), end}, {}};
  if (from == 0 && to == 1) return {start, edge.segment, {}};
  const Vec chord = Midpoint(start, end);
  const double pull =
      PointOn({0, 0}, {{1, 0}, {0, 0}}, 0.5).x;  // how much of a control's way the middle goes
  const Vec middle = edge.At((from + to) * 0.5);
  return {start, {chord + (middle - chord) * (1 / pull), end}, {}};
}

Edge Turned(const Edge& edge) {
  return {edge.segment.end, {edge.segment.control, edge.start}, {}};
}

bool SamePiece(const Edge& a, const Edge& b) {
  return Length(a.start - b.start) < kSame && Length(a.segment.end - b.segment.end) < kSame &&
         Length(a.At(0.5) - b.At(0.5)) < kSame;
}

void KeepOutline(const Edge& piece, const std::vector<Edge>& edges, std::vector<Edge>& kept) {
  const Vec slope = piece.Slope(0.5);
  const Vec aside = Vec{-slope.y, slope.x} * (kSideStep / Length(slope));
  const bool inkLeft = WindingAt(edges, piece.At(0.5) + aside) != 0;
  const bool inkRight = WindingAt(edges, piece.At(0.5) - aside) != 0;
  if (inkLeft == inkRight) return;
  const Edge edge = inkLeft ? piece : Turned(piece);
  const bool known = std::any_of(kept.begin(), kept.end(), [&](const Edge& k) { return SamePiece(k, edge); });
  if (!known) kept.push_back(edge);
}

std::vector<Edge> OutlinePieces(std::vector<Edge> edges) {
  for (std::size_t i = 0; i < edges.size(); ++i) {
    for (std::size_t j = 0; j < edges.size(); ++j) {
      if (i == j) continue;
      if (i < j) CutCrossings(edges[i], edges[j]);
      CutAtEnds(edges[i], edges[j]);
    }
  }
  std::vector<Edge> kept;
  for (Edge& edge : edges) {
    edge.cuts.push_back(1);
    std::sort(edge.cuts.begin(), edge.cuts.end());
    const double nearby = kSame / Length(edge.segment.end - edge.start);
    double from = 0;
    for (double cut : edge.cuts) {
      if (cut - from < nearby) continue;
      if (cut > 1 - nearby) cut = 1;
      KeepOutline(Piece(edge, from, cut), edges, kept);
      from = cut;
      if (cut == 1) break;
    }
  }
  return kept;
}

// The piece that goes on from the end of `from`; of several the one that turns most to the left, which keeps
// inks that touch in a point apart.
std::size_t NextPiece(const std::vector<Edge>& pieces, const Edge& from, const char* name) {
  std::size_t best = pieces.size();
  double bestTurn = 0;
  for (std::size_t i = 0; i < pieces.size(); ++i) {
    if (Length(pieces[i].start - from.segment.end) > 10 * kSame) continue;
    const Vec in = from.Slope(1);
    const Vec out = pieces[i].Slope(0);
    const double turn = std::atan2(Cross(in, out), Dot(in, out));
    if (best == pieces.size() || turn > bestTurn) {
      best = i;
      bestTurn = turn;
    }
  }
  if (best == pieces.size()) {
    throw Failure(std::string(name) + ": the outline breaks off at " + std::to_string(from.segment.end.x) +
                  ' ' + std::to_string(from.segment.end.y) + '.');
  }
  return best;
}

Vec OnGrid(Vec p) {
  return {std::round(p.x * kGrid) / kGrid, std::round(p.y * kGrid) / kGrid};
}

// Adds a piece to a contour; straight pieces in one line become one.
void Append(Contour& contour, const Edge& piece) {
  const Vec at = contour.segments.empty() ? contour.start : contour.segments.back().end;
  const Vec end = OnGrid(piece.segment.end);
  if (end == at) return;
  if (!piece.Straight()) {
    contour.segments.push_back({OnGrid(piece.segment.control), end});
    return;
  }
  if (!contour.segments.empty()) {
    Segment& last = contour.segments.back();
    const Vec before = contour.segments.size() > 1 ? contour.segments.end()[-2].end : contour.start;
    const bool inLine = std::abs(Cross(at - before, end - at)) < 1e-9 && Dot(at - before, end - at) > 0;
    if (IsStraight(before, last) && inLine) {
      last = {Midpoint(before, end), end};
      return;
    }
  }
  contour.segments.push_back({Midpoint(at, end), end});
}

Contour ThreadOnGrid(const Contour& thread) {
  Contour onGrid{OnGrid(thread.start), {}, true};
  Vec at = thread.start;
  for (const Segment& segment : thread.segments) {
    Append(onGrid, {at, segment, {}});
    at = segment.end;
  }
  return onGrid;
}

}  // namespace

Outline Merge(const Outline& shapes, const char* name) {
  std::vector<Edge> pieces = OutlinePieces(EdgesOf(shapes));
  Outline merged;
  while (!pieces.empty()) {
    Edge piece = pieces.back();
    pieces.pop_back();
    const Vec start = piece.start;
    Contour contour{OnGrid(start), {}, false};
    Append(contour, piece);
    while (Length(piece.segment.end - start) > 10 * kSame) {
      const std::size_t next = NextPiece(pieces, piece, name);
      piece = pieces[next];
      pieces.erase(pieces.begin() + static_cast<std::ptrdiff_t>(next));
      Append(contour, piece);
    }
    if (contour.segments.size() > 1) merged.push_back(contour);
  }
  for (const Contour& contour : shapes) {
    if (contour.thread) merged.push_back(ThreadOnGrid(contour));
  }
  return merged;
}

}  // namespace kelvane::math0
