#include "formula/runs.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <string>
#include <utility>

#include "formula/parameters.h"
#include "typography/curves.h"
#include "typography/item_boxes.h"
#include "typography/metrics.h"
#include "typography/signs.h"
#include "typography/typefaces.h"

namespace kelvane::formula {
namespace {

constexpr float kSamePlace = 0.05F;    // points
constexpr float kTouching = 0.02F;     // points: boxes that share so little do not collide
constexpr int kMostSpaces = 17;        // a run goes on over two ems of room, no more
constexpr int kMostBack = 34;          // steps of 0.03 ems
constexpr std::size_t kRunsTried = 6;  // of one group, the last ones
constexpr std::size_t kLookAhead = 8;  // characters

// Codes of scripts: those that begin one, and those that end it.
constexpr int kSuperscriptCode = 240, kBackCode = 241, kForwardCode = 242, kSubscriptCode = 243;
constexpr int kItalicSuperscriptCode = 246, kItalicSubscriptCode = 249;

bool IsAbove(int startCode) {
  return startCode == kSuperscriptCode || startCode == kItalicSuperscriptCode;
}

// Where a run is: its pen, and which scripts it is in.
struct State {
  RunPen pen;
  std::string scripts;  // '^' or '_' for each
};

void Apply(State& state, int code) {
  ApplyRunCode(state.pen, code);
  if (code < kFirstScriptCode || code >= kFirstScriptCode + 12) return;
  if ((code - kFirstScriptCode) % 3 == 0) {
    state.scripts += IsAbove(code) ? '^' : '_';
  } else if (!state.scripts.empty()) {
    state.scripts.pop_back();
  }
}

// Whether a run can be cut before a character: where it goes on without codes, or where a script begins.
enum class Cut : std::uint8_t { No, Script, Clean };

struct Way {
  std::string codes;
  State state;
  Cut cut = Cut::No;
};

// A run that grows.
struct Run {
  std::vector<std::size_t> elements;
  std::vector<std::pair<std::size_t, Cut>> cuts;  // indices into the elements
  std::string text;
  std::int16_t font = 0;
  float size = 0;
  Point origin;
  State state;
  int group = -1;
  Box box;
};

class RunMaker {
 public:
  explicit RunMaker(const Layout& layout) : layout_(layout) {}

  std::vector<FormulaEntry> Make() {
    FindGroups();
    for (std::size_t i = 0; i < layout_.elements.size(); ++i) {
      if (layout_.elements[i].what != Element::What::Character) continue;
      if (!GoOn(i)) Start(i, runs_);
    }
    for (Run& run : runs_) run.box = BoxOf(run.elements, 0, run.elements.size());
    SplitWhatCollides();
    std::vector<FormulaEntry> entries;
    for (const Run& run : runs_) entries.push_back(EntryOf(run));
    return entries;
  }

 private:
  const Element& At(std::size_t index) const { return layout_.elements[index]; }

  // The innermost group of each element; a run never leaves its own.
  void FindGroups() {
    groupOf_.assign(layout_.elements.size(), -1);
    // A group comes behind those within it.
    for (std::size_t g = layout_.groups.size(); g-- > 0;) {
      const Group& group = layout_.groups[g];
      for (std::size_t i = group.begin; i < group.end; ++i) groupOf_[i] = static_cast<int>(g);
    }
  }

  static bool Same(float a, float b) { return std::abs(a - b) <= kSamePlace; }

  // Steps from the pen to where a character is to stand; nothing if none come near enough.
  static std::optional<std::string> StepsTo(const RunPen& pen, float x) {
    const float away = x - pen.x;
    if (std::abs(away) <= kSamePlace / 2) return std::string();
    const float step = kStep * pen.size;
    const int count = static_cast<int>(std::lround(std::clamp(away / step, -1e4F, 1e4F)));
    if (count > kMostSpaces * 4 || count < -kMostBack) return std::nullopt;
    if (std::abs(away - static_cast<float>(count) * step) > kSamePlace) return std::nullopt;
    return StepCodes(count);
  }

  // Tries one row of codes, with steps before or behind the scripts that it begins.
  void Try(const State& from, std::string_view ends, std::string_view starts, const Element& to,
           std::optional<Way>& best) const {
    State base = from;
    for (const char code : ends) Apply(base, static_cast<unsigned char>(code));
    for (const bool before : {false, true}) {
      if (before && starts.empty()) break;
      State state = base;
      std::string codes(ends);
      const auto run = [&](std::string_view more) {
        for (const char code : more) Apply(state, static_cast<unsigned char>(code));
        codes += more;
      };
      if (before) {
        State ahead = base;
        for (const char code : starts) Apply(ahead, static_cast<unsigned char>(code));
        RunPen pen = base.pen;
        pen.x = ahead.pen.x;  // steps at the outer size that bring the script to its place
        const auto steps = StepsTo(pen, to.x);
        if (!steps || steps->empty()) break;
        run(*steps);
        run(starts);
      } else {
        run(starts);
        const auto steps = StepsTo(state.pen, to.x);
        if (!steps) continue;
        run(*steps);
      }
      if (!Same(state.pen.x, to.x) || !Same(state.pen.y, to.y)) continue;
      if (std::abs(state.pen.size - to.size) > 0.001F * to.size) continue;
      if (best && best->codes.size() <= codes.size()) continue;
      const bool onwards = to.x >= base.pen.x - kSamePlace;
      const bool clean = state.scripts.empty() && starts.empty() && onwards;
      best = Way{codes, state, clean ? Cut::Clean : !starts.empty() && onwards ? Cut::Script : Cut::No};
    }
  }

  std::optional<Way> WayTo(const State& from, const Element& to) const {
    std::optional<Way> best;
    std::string inner;  // ends of the scripts within the outermost that ends
    State after = from;
    for (std::size_t depth = 0;; ++depth) {
      if (depth == 0) {
        TryStarts(from, "", to, best);
        if (best) return best;
      } else {
        const bool above = from.scripts[from.scripts.size() - depth] == '^';
        const int start = above ? kSuperscriptCode : kSubscriptCode;
        const int italic = above ? kItalicSuperscriptCode : kItalicSubscriptCode;
        for (const int code : {start + 2, start + 1, italic + 2}) {
          std::string ends = inner;
          ends += static_cast<char>(code);
          TryStarts(from, ends, to, best);
        }
        inner += static_cast<char>(start + 2);
      }
      if (depth == from.scripts.size()) return best;
    }
  }

  void TryStarts(const State& from, std::string_view ends, const Element& to,
                 std::optional<Way>& best) const {
    State base = from;
    for (const char code : ends) Apply(base, static_cast<unsigned char>(code));
    const float ratio = to.size / base.pen.size;
    if (std::abs(ratio - 1) < 0.002F) {
      if (Same(base.pen.y, to.y)) Try(from, ends, "", to, best);
    } else if (std::abs(ratio - kScriptFactor) < 0.002F) {
      const bool above = to.y < base.pen.y;
      for (const int code :
           {above ? kSuperscriptCode : kSubscriptCode, above ? kItalicSuperscriptCode : kItalicSubscriptCode})
        Try(from, ends, std::string(1, static_cast<char>(code)), to, best);
    } else if (std::abs(ratio - kScriptFactor * kScriptFactor) < 0.002F) {
      for (const char first : {static_cast<char>(kSuperscriptCode), static_cast<char>(kSubscriptCode)})
        for (const char second : {static_cast<char>(kSuperscriptCode), static_cast<char>(kSubscriptCode)})
          Try(from, ends, std::string{first, second}, to, best);
    }
  }

  void Put(Run& run, const Way& way, std::size_t index) const {
    const Element& element = At(index);
    if (way.cut != Cut::No) run.cuts.emplace_back(run.elements.size(), way.cut);
    run.elements.push_back(index);
    run.text += way.codes;
    run.state = way.state;
    if (run.state.pen.font != element.font) {
      run.text += static_cast<char>(kFirstSwitchCode + element.font);
      run.state.pen.font = element.font;
    }
    run.text += static_cast<char>(element.code);
    run.state.pen.x += Advance(element.code, element.font, run.state.pen.size);
  }

  bool GoOn(std::size_t index) {
    std::size_t tried = 0;
    for (std::size_t i = runs_.size(); i-- > 0 && tried < kRunsTried;) {
      Run& run = runs_[i];
      if (run.group != groupOf_[index]) continue;
      ++tried;
      if (const auto way = WayTo(run.state, At(index))) {
        Put(run, *way, index);
        return true;
      }
    }
    return false;
  }

  // A run may begin raised: with an accent above a tall letter, or a bracket made smaller. Its size is then
  // that of the first larger character that follows.
  const Element* BaseOf(std::size_t index) const {
    const Element& element = At(index);
    for (std::size_t i = index + 1; i < layout_.elements.size() && i <= index + kLookAhead; ++i) {
      const Element& next = At(i);
      if (groupOf_[i] != groupOf_[index] || next.what != Element::What::Character) return nullptr;
      if (next.size > 1.01F * element.size) return &next;
    }
    return nullptr;
  }

  void Start(std::size_t index, std::vector<Run>& into) {
    const Element& element = At(index);
    Run& run = into.emplace_back();
    run.group = groupOf_[index];
    run.font = element.font;
    const Element* base = BaseOf(index);
    run.size = base ? base->size : element.size;
    run.origin = {element.x, base ? base->y : element.y};
    run.state.pen = PenAt(run.origin, run.font, run.size);
    if (base) {
      if (const auto way = WayTo(run.state, element)) {
        Put(run, *way, index);
        return;
      }
      run.size = element.size;
      run.origin.y = element.y;
      run.state.pen = PenAt(run.origin, run.font, run.size);
    }
    Put(run, {"", run.state, Cut::No}, index);
  }

  // ---- Collisions ----

  Box InkOf(std::size_t index) const {
    const Element& element = At(index);
    if (element.what == Element::What::Line) return InkBoxOf(layout_.lines[element.line]);
    const Box ink = InkOfCharacter(element.code, element.font);
    const float s = element.size;
    return {element.x + ink.left * s, element.y + ink.top * s, element.x + ink.right * s,
            element.y + ink.bottom * s};
  }

  Box BoxOf(const std::vector<std::size_t>& elements, std::size_t begin, std::size_t end) const {
    GrowingBox box;
    for (std::size_t i = begin; i < end; ++i) {
      const Box ink = InkOf(elements[i]);
      if (ink.left < ink.right) box.Add(ink);
    }
    return box.Empty() ? Box{} : box.box;
  }

  static bool Collide(const Box& a, const Box& b) {
    return std::min(a.right, b.right) - std::max(a.left, b.left) > kTouching &&
           std::min(a.bottom, b.bottom) - std::max(a.top, b.top) > kTouching;
  }
  static Box Union(const Box& a, const Box& b) {
    if (a.left >= a.right) return b;
    return {std::min(a.left, b.left), std::min(a.top, b.top), std::max(a.right, b.right),
            std::max(a.bottom, b.bottom)};
  }

  // Cuts a run so that what can stay clear of a box does, before scripts only if nothing else helps.
  // The box by value, for it may be that of a run, and those move.
  void Split(std::size_t number, const Box other) {
    SplitAt(number, other, Cut::Clean);
    if (Collide(runs_[number].box, other)) SplitAt(number, other, Cut::Script);
  }

  void SplitAt(std::size_t number, const Box& other, Cut least) {
    const Run run = runs_[number];
    std::vector<std::size_t> cuts;
    std::vector<std::size_t> bounds;
    for (const auto& [at, cut] : run.cuts)
      if (cut >= least) bounds.push_back(at);
    bounds.push_back(run.elements.size());
    Box box;
    std::size_t from = 0;
    for (const std::size_t to : bounds) {
      if (to == from) continue;
      const Box piece = BoxOf(run.elements, from, to);
      const Box both = Union(box, piece);
      if (from != 0 && Collide(both, other) && !(Collide(box, other) && Collide(piece, other))) {
        cuts.push_back(from);
        box = piece;
      } else {
        box = both;
      }
      from = to;
    }
    if (cuts.empty()) return;
    cuts.push_back(run.elements.size());
    std::vector<Run> pieces;
    std::size_t begin = 0;
    for (const std::size_t end : cuts) {
      const std::size_t first = pieces.size();
      Start(run.elements[begin], pieces);
      for (std::size_t i = begin + 1; i < end; ++i) {
        const auto way = WayTo(pieces.back().state, At(run.elements[i]));
        way ? Put(pieces.back(), *way, run.elements[i]) : Start(run.elements[i], pieces);
      }
      for (std::size_t i = first; i < pieces.size(); ++i)
        pieces[i].box = BoxOf(pieces[i].elements, 0, pieces[i].elements.size());
      begin = end;
    }
    runs_[number] = std::move(pieces.front());
    runs_.insert(runs_.end(), std::make_move_iterator(pieces.begin() + 1),
                 std::make_move_iterator(pieces.end()));
  }

  void SplitWhatCollides() {
    std::vector<Box> lines;
    for (std::size_t i = 0; i < layout_.elements.size(); ++i)
      if (At(i).what == Element::What::Line) lines.push_back(InkOf(i));
    for (std::size_t i = 0; i < runs_.size(); ++i) {
      for (const Box& line : lines)
        if (Collide(runs_[i].box, line)) Split(i, line);
      for (std::size_t k = 0; k < runs_.size(); ++k)
        if (k != i && Collide(runs_[i].box, runs_[k].box)) Split(i, runs_[k].box);
    }
  }

  // ---- Entries ----

  FormulaEntry EntryOf(const Run& run) const {
    FormulaEntry entry{run.text, run.font, run.size, run.origin, 3};
    // What stands in the middle of its room, or at its right, and is one run, stays there when it is retyped.
    if (run.group >= 0) {
      const Group& group = layout_.groups[static_cast<std::size_t>(run.group)];
      std::size_t marks = 0;
      for (std::size_t i = group.begin; i < group.end; ++i) marks += At(i).what != Element::What::Place;
      if (marks == run.elements.size()) {
        const float width = MeasureRun(run.text, run.font, run.size);
        entry.anchor = group.anchor;
        entry.at.x += entry.anchor == 4 ? width / 2 : width;
      }
    }
    return entry;
  }

  const Layout& layout_;
  std::vector<Run> runs_;
  std::vector<int> groupOf_;
};

}  // namespace

std::vector<FormulaEntry> MakeRuns(const Layout& layout) {
  return RunMaker(layout).Make();
}

}  // namespace kelvane::formula
