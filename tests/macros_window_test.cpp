#include "macros/define_macro_window.h"
#include "macros/macros.h"
#include "platform/handlers.h"
#include "tests/support/editor_test.h"

namespace kelvane {
namespace {

constexpr char kDefaults[] = "m0|m1|m2|m3|m4|m5|m6|m7|m8|m9|";

// The editor with the Define Macro window open.
class MacrosWindowTest : public EditorTest {
 protected:
  void Open() {
    window->ChooseEntry("&Define");
    form = static_cast<FakeWindow*>(Form7);
    number = form->BoxOf("Macro Number");
    definition = form->BoxOf("Definition");
  }
  void SetUp() override {
    Start();
    Open();
  }
  // Clicks as the platform does, which shows what fails.
  void Click(const std::string& caption) {
    RunHandler([&] { form->ClickButton(caption); });
  }
  void Define(const std::string& macro, const std::string& text) {
    number->Type(macro);
    definition->Type(text);
    Click("Apply");
  }
  std::string Captions() {
    toolkit.TickAll();
    std::string captions;
    for (const MenuEntry* entry : MacroMenu) captions += entry->Caption() + "|";
    return captions;
  }

  FakeWindow* form = nullptr;
  FakeTextBox* number = nullptr;
  FakeTextBox* definition = nullptr;
};

TEST_F(MacrosWindowTest, ApplyReachesTheMenuWithTheTimer) {
  Define("3", "\xF0(n)\xF2");
  EXPECT_FALSE(form->visible);
  EXPECT_EQ(MacrosChanged, 1);
  EXPECT_EQ(MacroMenu[3]->Caption(), "m3");
  EXPECT_EQ(Captions(), "m0|m1|m2|\xF0(n)\xF2|m4|m5|m6|m7|m8|m9|");
  EXPECT_EQ(MacrosChanged, 0);
}

TEST_F(MacrosWindowTest, ApplyRefusesNumbersWithoutAMacro) {
  for (const char* wrong : {"10", "-1", "", "x", "99999"}) {
    dialogs.messages.clear();
    Define(wrong, "lost?");
    EXPECT_EQ(dialogs.messages.size(), 1u) << wrong;
    EXPECT_TRUE(form->visible);
    EXPECT_EQ(FocusedControl, static_cast<TextBox*>(number));
    EXPECT_EQ(definition->text, "lost?");
  }
  EXPECT_EQ(Captions(), kDefaults);
  Define("9th", "nine");  // the leading number counts
  EXPECT_EQ(Captions(), "m0|m1|m2|m3|m4|m5|m6|m7|m8|nine|");
}

TEST_F(MacrosWindowTest, DeleteRestoresTheDefault) {
  Define("4", "four");
  const std::string kept = Captions();
  for (const char* macro : {"12", "", "-4", "4"}) {
    Open();
    number->Type(macro);
    Click("Delete");
    EXPECT_FALSE(form->visible) << macro;
    EXPECT_EQ(Captions(), macro == std::string("4") ? kDefaults : kept) << macro;
  }
  EXPECT_NE(kept, kDefaults);
}

TEST_F(MacrosWindowTest, CancelEscapeAndTheFrameStoreNothing) {
  const std::function<void()> ways[] = {[&] { Click("Cancel"); }, [&] { number->PressEscape(); },
                                        [&] { form->ClickFrameClose(); }};
  for (const auto& leave : ways) {
    Open();
    EXPECT_EQ(number->text + definition->text, "");
    number->Type("4");
    definition->Type("four");
    leave();
    EXPECT_FALSE(form->visible);
    EXPECT_EQ(MacrosChanged, 1);
    EXPECT_EQ(Captions(), kDefaults);
  }
}

TEST_F(MacrosWindowTest, TheNumberShowsItsDefinition) {
  Define("5", "five");
  Open();
  for (const auto& [typed, shown] : {std::pair{"5", "five"}, {"55", ""}, {"", ""}}) {
    number->Type(typed);
    EXPECT_EQ(definition->text, shown) << typed;
  }
  // A definition typed before the number stays.
  definition->Type("mine");
  number->Type("5");
  EXPECT_EQ(definition->text, "mine");
  number->PressEnter();
  EXPECT_EQ(Captions(), "m0|m1|m2|m3|m4|mine|m6|m7|m8|m9|");
}

// What was applied a moment ago, before the timer came round, is neither lost nor undone.
TEST_F(MacrosWindowTest, ApplyingTwiceWithinOneInterval) {
  Define("1", "one");
  Open();
  Define("2", "two");
  window->ChooseEntry("Exit");
  EXPECT_TRUE(Content("\\Kelvane\\QRX.MCR").starts_with("m0\r\none\r\ntwo\r\nm3\r\n"));
}

}  // namespace
}  // namespace kelvane
