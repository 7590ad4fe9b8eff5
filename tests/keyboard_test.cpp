#include "editing/keyboard.h"

#include <functional>

#include "document/page.h"
#include "editing/cursor.h"
#include "tests/support/editor_test.h"
#include "typography/renderer.h"

namespace kelvane {
namespace {

class KeyboardTest : public EditorTest {
 protected:
  void SetUp() override { Start(); }
};

TEST_F(KeyboardTest, NothingIsTypedOrCommittedWithoutAPlace) {
  for (const std::int16_t mode : {0, 1, 9, 10, 11}) {
    CursorMode = mode;
    for (const int code : {int{'x'}, kKeyEnter, kKeyBackspace}) TypeKey(code);
    InsertText("m0");
    EXPECT_EQ(PendingRun, "");
    CommitPendingRun(true);
    EXPECT_EQ(CursorMode, mode);
  }
  CursorMode = 11;
  Text4->SetText("kept");
  CommitPendingRun(true);
  EXPECT_EQ(Text4->Text(), "kept");
  EXPECT_EQ(PageText, "");
}

TEST_F(KeyboardTest, TypingEndsTheMarking) {
  PlaceAt("Top Left", 10, 20);
  const std::function<void()> acts[] = {[] { TypeKey(kKeyEnter); }, [] { PlaceCursor(10, 20); },
                                        [] { CommitPendingRun(true); }};
  for (const auto& act : acts) {
    if (&act == &acts[2]) TypeKey('x');
    MarkedLeft = MarkedTop = 5;
    act();
    EXPECT_EQ(MarkedLeft + MarkedTop, 0) << &act - acts;
  }
}

// The run shows while it is typed just as it will stand once committed.
TEST_F(KeyboardTest, TypingShowsOnTheOverlayWhatTheCommitWillDraw) {
  for (int anchor = 1; anchor <= 9; ++anchor) {
    const std::string before = canvas->Drawn(Layer::Page);
    PlaceAt(kAnchorNames[anchor], 200, 100);
    canvas->Type("abx");
    canvas->Press(kKeyBackspace);
    window->ClickButton("Superscript");
    window->ChooseEntry("Symbol");
    canvas->Type("c d");
    EXPECT_EQ(canvas->Drawn(Layer::Page), before);
    const std::string overlay = canvas->Drawn(Layer::Overlay);
    canvas->Press(kKeyEnter);
    const std::string page = canvas->Drawn(Layer::Page);
    const std::string entry = page.substr(before.size());
    EXPECT_TRUE(entry.starts_with("text ")) << entry;
    EXPECT_TRUE(overlay.starts_with(entry)) << anchor << "\n" << overlay << entry;
    RedrawPage();
    EXPECT_EQ(canvas->Drawn(Layer::Page), page);
  }
}

}  // namespace
}  // namespace kelvane
