#pragma once

// The strokes of one glyph while they are drawn and changed: selection, steps to undo, the stroke that is
// being drawn. Every change is one step, and a change that would make too many strokes throws Failure and is
// none.

#include <string>
#include <string_view>
#include <vector>

#include "designer/strokes.h"

namespace kelvane {

class StrokeEditor {
 public:
  // Begins with the strokes of a glyph; forgets the steps.
  void Load(GlyphStrokes strokes);
  const GlyphStrokes& Strokes() const { return state.strokes; }
  const PointSelection& Selection() const { return state.selection; }
  // Whether the strokes differ from those that were loaded, or saved last.
  bool Changed() const { return state.strokes != saved; }
  void TakeAsSaved() { saved = state.strokes; }

  // The last stroke is being drawn: it begins or goes on with the next point.
  bool Drawing() const { return state.drawing; }
  // Begins a stroke, or adds a straight segment. Its start closes and ends it; its last end ends it.
  void Draw(Point at);
  // Moves the control point of the segment that was drawn last, in the step that drew it.
  void BendDrawn(Point control);
  // Takes the last segment back, or the start.
  void TakeBackDrawn();
  void EndDrawing();

  void Select(PointSelection selection);
  // Selects what is not, or the other way round if all of it is.
  void Toggle(const PointSelection& points);
  // The point behind the selected one, or before it, all strokes round.
  void SelectNext(bool backwards);

  // What a drag does until EndDrag is one step. `by` and `to` are from where it began.
  void BeginDrag();
  void DragSelection(Point by);
  void DragPoint(const PointPlace& place, Point to);
  void EndDrag();

  // On the selected points, or the strokes that they belong to.
  void Move(Point by);
  void CloseStrokes();  // or on the stroke being drawn
  void Split();
  void Reverse();
  void Delete();
  // The same, and on the whole glyph if none is selected.
  void Mirror(bool upsideDown);
  std::string Copied() const;
  // Adds strokes, which are selected then.
  void Paste(std::string_view text);
  // Other strokes instead of all these.
  void Replace(GlyphStrokes strokes);

  bool CanUndo() const { return !undone.empty(); }
  bool CanRedo() const { return !redone.empty(); }
  void Undo();
  void Redo();

 private:
  struct State {
    GlyphStrokes strokes;
    PointSelection selection;
    bool drawing = false;
  };
  template <typename Act>
  void Change(Act act);
  static PointSelection SelectedOrAll(const State& of);

  State state;
  State dragged;  // as the drag began
  GlyphStrokes saved;
  std::vector<State> undone;  // states to go back to
  std::vector<State> redone;
};

}  // namespace kelvane
