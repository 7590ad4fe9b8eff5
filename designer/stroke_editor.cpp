#include "designer/stroke_editor.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace kelvane {

template <typename Act>
void StrokeEditor::Change(Act act) {
  State next = state;
  act(next);
  CheckStrokeCount(next.strokes);
  if (next.strokes != state.strokes) {
    undone.push_back(std::move(state));
    redone.clear();
  }
  state = std::move(next);
}

PointSelection StrokeEditor::SelectedOrAll(const State& of) {
  return of.selection.empty() ? AllPoints(of.strokes) : of.selection;
}

void StrokeEditor::Load(GlyphStrokes strokes) {
  state = {std::move(strokes), {}, false};
  saved = state.strokes;
  undone.clear();
  redone.clear();
}

void StrokeEditor::Draw(Point at) {
  if (state.drawing && at == state.strokes.back().back()) {
    EndDrawing();
    return;
  }
  Change([at](State& next) {
    next.selection.clear();
    if (next.drawing) {
      ExtendStroke(next.strokes.back(), at);
      next.drawing = !IsClosed(next.strokes.back());
    } else {
      next.strokes.push_back({at});
      next.drawing = true;
    }
  });
}

void StrokeEditor::BendDrawn(Point control) {
  if (state.strokes.empty() || state.strokes.back().size() < 3) return;
  GlyphStroke& stroke = state.strokes.back();
  stroke[stroke.size() - 2] = control;
}

void StrokeEditor::TakeBackDrawn() {
  if (!state.drawing) return;
  Change([](State& next) {
    GlyphStroke& stroke = next.strokes.back();
    if (stroke.size() > 1) {
      stroke.resize(stroke.size() - 2);
    } else {
      next.strokes.pop_back();
      next.drawing = false;
    }
  });
}

void StrokeEditor::EndDrawing() {
  if (!state.drawing) return;
  state.drawing = false;
  if (state.strokes.back().size() > 1) return;
  // A start alone is no stroke, and leaves no step.
  state.strokes.pop_back();
  while (!undone.empty() && undone.back().drawing) undone.pop_back();
  if (!undone.empty() && undone.back().strokes == state.strokes) undone.pop_back();
}

void StrokeEditor::Select(PointSelection selection) {
  EndDrawing();
  state.selection = std::move(selection);
}

void StrokeEditor::Toggle(const PointSelection& points) {
  EndDrawing();
  const bool all = std::ranges::includes(state.selection, points);
  for (const PointPlace& place : points) {
    if (all) {
      state.selection.erase(place);
    } else {
      state.selection.insert(place);
    }
  }
}

void StrokeEditor::SelectNext(bool backwards) {
  EndDrawing();
  const PointSelection all = AllPoints(state.strokes);
  if (all.empty()) return;
  auto next = all.begin();
  if (backwards) {
    next = state.selection.empty() ? all.begin() : all.find(*state.selection.begin());
    next = std::prev(next == all.begin() ? all.end() : next);
  } else if (!state.selection.empty()) {
    next = all.upper_bound(*state.selection.rbegin());
    if (next == all.end()) next = all.begin();
  }
  state.selection = {*next};
}

void StrokeEditor::BeginDrag() {
  EndDrawing();
  dragged = state;
}

void StrokeEditor::DragSelection(Point by) {
  state.strokes = dragged.strokes;
  MovePoints(state.strokes, state.selection, by);
}

void StrokeEditor::DragPoint(const PointPlace& place, Point to) {
  state.strokes = dragged.strokes;
  const Point from = state.strokes[place.stroke][place.point];
  MovePoints(state.strokes, {place}, {to.x - from.x, to.y - from.y});
}

void StrokeEditor::EndDrag() {
  if (state.strokes == dragged.strokes) return;
  undone.push_back(std::move(dragged));
  redone.clear();
}

void StrokeEditor::Move(Point by) {
  EndDrawing();
  Change([&](State& next) { MovePoints(next.strokes, next.selection, by); });
}

void StrokeEditor::Mirror(bool upsideDown) {
  EndDrawing();
  Change([&](State& next) {
    MirrorPoints(next.strokes, WholeStrokes(next.strokes, SelectedOrAll(next)), upsideDown);
  });
}

void StrokeEditor::CloseStrokes() {
  // The stroke being drawn is the one that is meant.
  if (state.drawing && state.strokes.back().size() > 3) {
    const Point start = state.strokes.back().front();
    Draw(start);
    return;
  }
  EndDrawing();
  Change([&](State& next) {
    CloseOrOpen(next.strokes, next.selection);
    next.selection = WholeStrokes(next.strokes, next.selection);
  });
}

void StrokeEditor::Split() {
  EndDrawing();
  Change([&](State& next) {
    SplitSegments(next.strokes, next.selection);
    next.selection.clear();
  });
}

void StrokeEditor::Reverse() {
  EndDrawing();
  Change([](State& next) {
    ReverseStrokes(next.strokes, next.selection);
    next.selection = WholeStrokes(next.strokes, next.selection);
  });
}

void StrokeEditor::Delete() {
  EndDrawing();
  Change([](State& next) {
    DeletePoints(next.strokes, next.selection);
    next.selection.clear();
  });
}

std::string StrokeEditor::Copied() const {
  return StrokeText(TouchedStrokes(state.strokes, SelectedOrAll(state)));
}

void StrokeEditor::Paste(std::string_view text) {
  EndDrawing();
  const GlyphStrokes added = StrokesOfText(text);
  Change([&](State& next) {
    const std::size_t first = next.strokes.size();
    next.strokes.insert(next.strokes.end(), added.begin(), added.end());
    next.selection.clear();
    for (std::size_t s = first; s < next.strokes.size(); ++s)
      next.selection.merge(PointsOfStroke(next.strokes, s));
  });
}

void StrokeEditor::Replace(GlyphStrokes strokes) {
  EndDrawing();
  Change([&](State& next) { next = {std::move(strokes), {}, false}; });
}

void StrokeEditor::Undo() {
  if (undone.empty()) return;
  redone.push_back(std::move(state));
  state = std::move(undone.back());
  undone.pop_back();
}

void StrokeEditor::Redo() {
  if (redone.empty()) return;
  undone.push_back(std::move(state));
  state = std::move(redone.back());
  redone.pop_back();
}

}  // namespace kelvane
