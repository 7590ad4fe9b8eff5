#include "help/help_window.h"

#include <map>

#include "app/commands.h"
#include "app/context_help.h"
#include "app/main_window.h"
#include "designer/designer_window.h"
#include "document/paper.h"
#include "help/help_files.h"
#include "help/help_pages.h"
#include "macros/define_macro_window.h"
#include "tests/support/editor_test.h"

namespace kelvane {
namespace {

class HelpWindowTest : public EditorTest {
 protected:
  HelpWindowTest() {
    files.contents["\\Kelvane\\QRX.HLP"] =
        DiskFiles().ReadWhole(BackslashPath(KELVANE_SOURCE_DIR) + "\\data\\QRX.HLP");
  }
  void Open() {
    Start();
    window->ChooseEntry("&Contents");
    help = static_cast<FakeWindow*>(HelpWindow);
  }
  FakeList& Contents() { return static_cast<FakeList&>(*HelpParts.contents); }
  FakeList& Index() { return static_cast<FakeList&>(*HelpParts.index); }
  FakeList& Hits() { return static_cast<FakeList&>(*HelpParts.hits); }
  FakeTextView& Page() { return static_cast<FakeTextView&>(*HelpParts.page); }
  FakeTextBox& Box(TextBox* box) { return static_cast<FakeTextBox&>(*box); }
  // The heading that stands at the top of the page.
  std::string AtTop() {
    const TextBlock& block = Page().blocks[static_cast<std::size_t>(Page().top.block)];
    return block.kind == TextBlock::Kind::Heading ? WordsOf(block.lines.front()) : "(no heading)";
  }
  FakeWindow* help = nullptr;
};

TEST_F(HelpWindowTest, OpensEveryHeadingOfContentsAndIndex) {
  Open();
  EXPECT_EQ(AtTop(), "Kelvane");
  ASSERT_GT(Contents().rows.size(), 100U);
  for (FakeList* list : {&Contents(), &Index()}) {
    for (std::size_t row = 0; row < list->rows.size(); ++row) {
      list->OnChosen(static_cast<int>(row));
      EXPECT_EQ(AtTop(), list->rows[row].text);
      EXPECT_EQ(HelpParts.note->Text(), "");
    }
  }
  EXPECT_EQ(Contents().rows.front().level, 1);
}

TEST_F(HelpWindowTest, IndexIsFilteredAndSearchLeadsToTheLine) {
  Open();
  const std::size_t all = Index().rows.size();
  Box(HelpParts.filter).Type("GREEK sym");
  ASSERT_EQ(Index().rows.size(), 1U);
  Index().Click("Symbol keyboard: Greek");
  EXPECT_EQ(AtTop(), "Symbol keyboard: Greek");
  Box(HelpParts.filter).Type("");
  EXPECT_EQ(Index().rows.size(), all);

  static_cast<FakeTabs&>(*HelpParts.tabs).Click("Search");
  EXPECT_EQ(FocusedControl, HelpParts.query);
  EXPECT_FALSE(Contents().shown);
  EXPECT_TRUE(Hits().shown);
  Box(HelpParts.query).Type("superscript back");
  Box(HelpParts.query).PressEnter();
  EXPECT_EQ(AtTop(), "Superscripts and subscripts");
  EXPECT_EQ(Page().marked, (std::vector<std::string>{"SUPERSCRIPT", "BACK"}));
  ASSERT_EQ(Hits().rows[1].level, 1);
  Hits().OnChosen(1);
  EXPECT_NE(Page().top, TextPlace{});
  Box(HelpParts.query).Type("qqq");
  EXPECT_TRUE(Hits().rows.empty());
  EXPECT_NE(HelpParts.note->Text().find("qqq"), std::string::npos);
}

TEST_F(HelpWindowTest, GoesBackToWhereOneHadScrolled) {
  Open();
  EXPECT_FALSE(help->ButtonOf("Back")->enabled);
  Page().top = {3, 0};
  Page().OnLink("help:2.0");
  EXPECT_EQ(AtTop(), "First steps");
  Page().OnLink("help:99.0");
  Page().OnLink("http://elsewhere.example/");
  EXPECT_EQ(AtTop(), "First steps");
  ShowHelpAt("Roots");
  help->ClickButton("Back");
  help->PressShortcut("Alt+Left");
  EXPECT_EQ(Page().top, (TextPlace{3, 0}));
  EXPECT_FALSE(help->ButtonOf("Back")->enabled);
  help->PressShortcut("Alt+Right");
  help->ClickButton("Forward");
  EXPECT_EQ(AtTop(), "Roots");
  EXPECT_FALSE(help->ButtonOf("Forward")->enabled);
  help->ClickButton("Back");
  ShowHelpAt("Macros");
  EXPECT_FALSE(help->ButtonOf("Forward")->enabled) << "another way was taken";
  // Closed and opened, it stands where it was left.
  HelpWindow->Hide();
  window->ChooseEntry("&Contents");
  EXPECT_EQ(AtTop(), "Macros");
}

TEST_F(HelpWindowTest, FindsPrintsAndChangesItsSize) {
  Open();
  Box(HelpParts.find).Type("formula language");
  Box(HelpParts.find).PressEnter();
  EXPECT_EQ(Page().found, "formula language");
  EXPECT_EQ(HelpParts.note->Text(), "");
  Box(HelpParts.find).Type("qqq");
  help->PressShortcut("F3");
  EXPECT_NE(HelpParts.note->Text().find("qqq"), std::string::npos);
  help->PressShortcut("Ctrl+P");
  EXPECT_EQ(Page().printed, "Kelvane - Kelvane");
  help->ClickButton("A+");
  help->PressShortcut("Ctrl++");
  EXPECT_EQ(Page().textSize, 2);
  help->PressShortcut("Ctrl+0");
  EXPECT_EQ(Page().textSize, 0);
}

TEST_F(HelpWindowTest, SignsOfTheTablesArePaintedAsInPrint) {
  Open();
  RecordingCanvas painter;
  Page().OnPaintPicture("sign 8.97", 20, 1, painter);
  EXPECT_NE(painter.Drawn(Layer::Page).find("text Symbol 20 (a) 0 0"), std::string::npos)
      << painter.Drawn(Layer::Page);
  painter.ForgetDrawn();
  Page().OnPaintPicture("sign 12.83", 20, 1, painter);
  EXPECT_FALSE(painter.Drawn(Layer::Page).empty());
  painter.ForgetDrawn();
  Page().OnPaintPicture("sign x", 20, 1, painter);
  EXPECT_EQ(painter.Drawn(Layer::Page), "");
}

TEST_F(HelpWindowTest, SaysThatTheListsAreOfAnotherText) {
  files.contents["\\Kelvane\\QRX.HIX"] =
      "Roots" + std::string(80, ' ') + "<#3>\r\nGone" + std::string(80, ' ') + "<#400>\r\n";
  Open();
  EXPECT_EQ(HelpParts.note->Text(),
            "Of another help text: QRX.HIX. Delete that and start the program again. ");
  Index().Click("Roots");
  EXPECT_EQ(AtTop(), "Roots") << "where it is now";
  Index().Click("Gone");
  EXPECT_NE(HelpParts.note->Text().find("no heading \"Gone\""), std::string::npos);
}

TEST_F(HelpWindowTest, WorksWithoutListsAndWithAHundredPages) {
  std::string text;
  for (int page = 1; page <= 100; ++page)
    text += "<PAGE>\r\n<H1>Title " + std::to_string(page) + "</H1>\r\n<TABLE>\r\nopen\r\n";
  files.contents["\\Kelvane\\QRX.HLP"] = text;
  files.FailStep(FileStep::Create);
  Open();
  EXPECT_EQ(Contents().rows.size(), 100U);
  EXPECT_EQ(Index().rows.size(), 100U);
  Index().Click("Title 100");
  EXPECT_EQ(AtTop(), "Title 100");
  EXPECT_EQ(Page().blocks.back().kind, TextBlock::Kind::Note);
  // Changed behind the program's back: pages are no longer where they were.
  files.contents["\\Kelvane\\QRX.HLP"] = "new\r\n" + text;
  window->ChooseEntry("&Contents");
  Index().Click("Title 7");
  EXPECT_NE(Page().Words().find("has changed since the program was started"), std::string::npos);
}

TEST_F(HelpWindowTest, EveryControlAndDialogHasItsPage) {
  Open();
  HelpBook book = ReadHelpBook(files.contents["\\Kelvane\\QRX.HLP"], HelpPageStarts);
  std::vector<std::string> names = {"Page",      "Scroll",        "Scroll sideways", "Page Number",
                                    "Font Size", "Control Codes", "Signs",           "Search Signs"};
  for (const auto& button : window->buttons) names.push_back(button->caption);
  HelpPlace place;
  for (const std::string& name : names)
    EXPECT_TRUE(FindHelpHeading(book, HeadingAbout(kEditorPage, name), place)) << name;
  CurrentPaperFile = "\\P\\Essay.001";
  for (const char* entry : {"&Character Designer", "F&ind", "C&ontact", "&About", "&Versions", "&Recover",
                            "Pag&e Overview", "Export P&DF...", "Export Pict&ure..."})
    window->ChooseEntry(entry);
  for (const auto& made : toolkit.windows) {
    if (made->title.empty() || made.get() == window || made.get() == help) continue;
    HelpParts.page->Show({});
    made->PressShortcut("F1");
    EXPECT_FALSE(Page().blocks.empty()) << made->title;
  }
  for (const auto& button : static_cast<FakeWindow*>(DesignerWindow)->buttons)
    EXPECT_TRUE(FindHelpHeading(book, HeadingAbout(kDesignerPage, button->caption), place))
        << button->caption;
  window->pointed = "Superscript";
  window->PressShortcut("Shift+F1");
  EXPECT_EQ(AtTop(), "Superscripts and subscripts");
  window->pointed.clear();
  window->PressShortcut("Shift+F1");
  EXPECT_EQ(AtTop(), "The window");
  window->ChooseEntry("&Define");
  static_cast<FakeWindow*>(Form7)->PressShortcut("F1");
  EXPECT_EQ(AtTop(), "Macros");
  dialogs.OnHelp("Would you like to save the current paper.");
  EXPECT_EQ(AtTop(), "Would you like to save the current paper.");
  dialogs.OnHelp("Save As");
  EXPECT_EQ(AtTop(), "Saving and opening");
  for (const auto& [title, heading] :
       std::map<std::string, std::string>{{"Printer", "Printers"},
                                          {"Matrix", "Typing formulas"},
                                          {"Move Page", "Inserting and moving pages"}}) {
    dialogs.OnHelp(title);
    EXPECT_EQ(AtTop(), heading);
  }
  dialogs.OnHelp("Something else happened.");
  EXPECT_EQ(AtTop(), "Messages");
}

}  // namespace
}  // namespace kelvane
