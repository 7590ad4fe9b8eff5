// One line of text with a caret, as keys edit it.

#include "editing/line_editor.h"

#include <gtest/gtest.h>

#include "platform/canvas.h"

namespace kelvane {
namespace {

LineEditor LineWith(const std::string& text) {
  LineEditor line;
  line.Set(text, true);
  return line;
}

TEST(LineEditorTest, TheCaretGoesByCharactersAndWordsAndNeverIntoOne) {
  LineEditor line = LineWith("ab \\frac{né}");
  line.Key(kKeyLeft);
  line.Key(kKeyLeft);
  EXPECT_EQ(line.Caret(), 10u) << "before the accented letter, which is two bytes";
  line.MoveCaret(11);
  EXPECT_EQ(line.Caret(), 10u);
  line.Key(kKeyLeft | kWithControl);
  EXPECT_EQ(line.Caret(), 9u);
  line.Key(kKeyLeft | kWithControl);
  EXPECT_EQ(line.Caret(), 4u);
  line.Key(kKeyHome);
  line.Key(kKeyLeft);
  EXPECT_EQ(line.Caret(), 0u);
  line.Key(kKeyRight | kWithControl);
  line.Key(kKeyRight);
  EXPECT_EQ(line.Caret(), 3u);
  line.Key(kKeyEnd);
  line.Key(kKeyRight);
  EXPECT_EQ(line.Caret(), line.Text().size());
}

TEST(LineEditorTest, WhatIsSelectedGivesWayAndIsLeftAtItsSide) {
  LineEditor line = LineWith("abcdef");
  line.MoveCaret(2);
  line.Key(kKeyRight | kWithShift);
  line.Key(kKeyRight | kWithShift);
  EXPECT_EQ(line.Selected(), "cd");
  line.Key(kKeyLeft);
  EXPECT_EQ(line.Caret(), 2u);
  EXPECT_EQ(line.Selected(), "");
  line.Key(kKeyEnd | kWithShift);
  line.Key(kKeyRight);
  EXPECT_EQ(line.Caret(), 6u);
  line.MoveCaret(2);
  line.MoveCaret(4, true);
  line.Insert("xyz", 1);
  EXPECT_EQ(line.Text(), "abxyzef");
  EXPECT_EQ(line.Caret(), 3u);
  line.SelectAll();
  line.Key(kKeyDelete);
  EXPECT_EQ(line.Text(), "");
}

TEST(LineEditorTest, ErasingTakesWholeCharactersAndCanBeTakenBack) {
  LineEditor line = LineWith("aé bc");
  line.Key(kKeyWordBackspace);
  EXPECT_EQ(line.Text(), "aé ");
  line.Key(kKeyBackspace);
  line.Key(kKeyBackspace);
  EXPECT_EQ(line.Text(), "a");
  line.Key(kKeyDelete);  // nothing is there, so there is nothing to take back
  line.Undo();
  EXPECT_EQ(line.Text(), "aé ") << "both Backspaces";
  EXPECT_EQ(line.Caret(), 4u);
  line.Undo();
  EXPECT_EQ(line.Text(), "aé bc");
  EXPECT_FALSE(line.CanUndo());
  line.Redo();
  EXPECT_EQ(line.Text(), "aé ");
  line.Insert("x");
  EXPECT_FALSE(line.CanRedo());
  line.Set("other");
  line.Undo();
  EXPECT_EQ(line.Text(), "aé x");
}

TEST(LineEditorTest, WhatIsTypedInOneGoIsOneStepBack) {
  LineEditor line;
  for (const char c : std::string("\\frac ab")) line.Type(c);
  line.Key(kKeyLeft);
  line.Type('x');
  line.Undo();
  EXPECT_EQ(line.Text(), "\\frac ab") << "the caret was moved between";
  line.Undo();
  EXPECT_EQ(line.Text(), "\\frac ") << "a word at a time";
  line.Undo();
  EXPECT_EQ(line.Text(), "");
  line.Redo();
  line.SelectAll();
  line.Type('y');
  line.Type('z');
  line.Undo();
  EXPECT_EQ(line.Text(), "\\frac ");
}

}  // namespace
}  // namespace kelvane
