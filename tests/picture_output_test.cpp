// Pictures of the page in files and on the clipboard, and pages on printers.

#include "app/picture_window.h"
#include "document/page.h"
#include "editing/notes.h"
#include "editing/selection.h"
#include "output/pictures.h"
#include "tests/support/editor_test.h"
#include "typography/view.h"

namespace kelvane {
namespace {

class PictureOutputTest : public EditorTest {
 protected:
  void Open() {
    files.contents["\\P\\Essay.001"] =
        "100 200 m 10 F0 (one) 1 s\r\n100 300 m 10 F0 (two) 1 s\r\n"
        "50 60 m 1 lw 100 0 rl stroke\r\n";
    files.contents["\\P\\Essay.003"] = "100 200 m 11 F0 (three) 1 s\r\n";
    Start("\\P\\Essay.001");
  }
  FakeWindow& Dialog() {
    window->ChooseEntry("Export Pict&ure...");
    return *static_cast<FakeWindow*>(PictureWindow);
  }
  FakeTextBox& Resolution() {
    return *static_cast<FakeWindow*>(PictureWindow)->BoxOf("Dots per inch, 72 to 1200");
  }
  // What stands beside the resolution.
  std::string Told() { return static_cast<FakeWindow*>(PictureWindow)->labels.back()->text; }
};

TEST_F(PictureOutputTest, RefusesValuesInPlace) {
  Open();
  FakeWindow& dialog = Dialog();
  EXPECT_EQ(Told(), "2475 x 3500 pixels");
  for (const char* text : {"71", "1201", "", "abc", "3e2", "99999999999"}) {
    Resolution().Type(text);
    EXPECT_EQ(Told(), "A resolution from 72 to 1200 is needed") << text;
    EXPECT_FALSE(dialog.ButtonOf("Export...")->enabled) << text;
    Resolution().PressEnter();  // no file is asked for
  }
  PaperWidth = PaperHeight = 7200;
  Resolution().Type("400");
  EXPECT_EQ(Told(), "Too large: at most 163 for this size");
  Resolution().Type("163");
  EXPECT_EQ(Told(), "16300 x 16300 pixels");
  EXPECT_TRUE(dialog.ButtonOf("Export...")->enabled);
  PaperWidth = PaperHeight = 14400 * 2;
  Resolution().Type("72");
  EXPECT_EQ(Told(), "Too large for a PNG: export it as SVG");
  EXPECT_FALSE(dialog.ButtonOf("Selection")->enabled) << "nothing is selected";
}

TEST_F(PictureOutputTest, WritesThePageOrWhatIsSelectedOfIt) {
  Open();
  ShowGrid = true;
  GuideX[0] = 72;
  FakeWindow& dialog = Dialog();
  Resolution().Type("144");
  dialogs.AnswerSave("\\P\\page");
  dialog.ClickButton("Export...");
  EXPECT_EQ(dialogs.asked.back(), "Save: Export Picture, *.png|*.png, \\P\\Essay-1.png");
  EXPECT_EQ(NoteLabel->Text(), "Written: " + MachinePath("\\P\\page.png"));
  EXPECT_FALSE(PictureWindow->Visible());
  const std::string page = Content("\\P\\page.png");
  EXPECT_TRUE(page.starts_with("PNG 1188 1680 144\nbox 0 0 594 840 #FFFFFF\nstroke")) << page;
  EXPECT_EQ(page.find("line "), std::string::npos) << "no grid, no guides";
  EXPECT_NE(page.find("w 2\n"), std::string::npos) << "a line of a point";
  EXPECT_NE(page.find(" 20 (one)"), std::string::npos);

  Select({ItemsOfPage().Texts()[1].id});
  Dialog();
  dialog.ClickButton("Transparent");
  EXPECT_TRUE(dialog.ButtonOf("Selection")->down) << "what is selected is meant";
  EXPECT_EQ(Resolution().text, "144") << "as chosen last";
  dialogs.AnswerSave("\\P\\part.png");
  Resolution().PressEnter();
  const std::string part = Content("\\P\\part.png");
  EXPECT_NE(part.find("144 transparent\n"), std::string::npos) << part;
  EXPECT_NE(part.find("(two)"), std::string::npos);
  for (const char* other : {"(one)", "box", "stroke"})
    EXPECT_EQ(part.find(other), std::string::npos) << other;
  EXPECT_LT(SizeOfPicture({.selection = true, .resolution = 144}).width, 50);

  // A name without an extension gets one, which may be that of a file that is there.
  Dialog();
  dialogs.AnswerSave("\\P\\part");
  dialogs.AnswerNo();
  dialog.ClickButton("Export...");
  EXPECT_EQ(Content("\\P\\part.png"), part);
  EXPECT_TRUE(PictureWindow->Visible());
  dialogs.AnswerSave("\\P\\Essay.001");
  EXPECT_NE(FailureOf([&] { dialog.ClickButton("Export..."); }).find("page file"), std::string::npos);
  EXPECT_TRUE(Content("\\P\\Essay.001").starts_with("100 200 m"));

  // What stands in the box while an SVG is made is not what the next PNG gets.
  dialog.ClickButton("SVG");
  Resolution().Type("");
  dialogs.AnswerSave("\\P\\part.svg");
  dialog.ClickButton("Export...");
  EXPECT_TRUE(Content("\\P\\part.svg").starts_with("<?xml"));
  EXPECT_EQ(LastPictureChoice.resolution, 144);
}

TEST_F(PictureOutputTest, LeavesNoPartOfAFile) {
  Open();
  const auto before = files.contents;
  for (const FileStep step : {FileStep::Create, FileStep::Write, FileStep::Sync, FileStep::Rename}) {
    files.FailStep(step);
    dialogs.AnswerSave("\\P\\page.png");
    FailureOf([] { ExportPicture({}); });
    EXPECT_EQ(files.contents, before);
  }
}

TEST_F(PictureOutputTest, CopiesInThreeForms) {
  Open();
  window->PressShortcut("Ctrl+Alt+C");
  ASSERT_EQ(clipboard.forms.size(), 3U);
  EXPECT_EQ(clipboard.forms[0].kind, "image/svg+xml");
  EXPECT_NE(clipboard.forms[0].bytes.find("<svg"), std::string::npos);
  EXPECT_EQ(clipboard.forms[1].kind, "application/pdf");
  EXPECT_TRUE(clipboard.forms[1].bytes.starts_with("%PDF"));
  EXPECT_EQ(clipboard.forms[2].kind, "image/png");
  EXPECT_TRUE(clipboard.forms[2].bytes.starts_with("PNG 2475 3500 300\n"));
  EXPECT_NE(dialogs.messages.back().find("Times-Roman"), std::string::npos) << "its font is not in memory";
  EXPECT_EQ(NoteLabel->Text(), "Copied as a picture: the page");
  Select({ItemsOfPage().Drawings()[0].id});
  window->PressShortcut("Ctrl+Alt+C");
  EXPECT_EQ(clipboard.forms[2].bytes.find("(one)"), std::string::npos);
  EXPECT_EQ(NoteLabel->Text(), "Copied as a picture: the selection");
  // Beyond what a PNG may take the two others go there.
  ClearMarkedBox();
  PaperWidth = PaperHeight = 14400;
  EXPECT_EQ(CopyAsPicture(), "page");
  EXPECT_EQ(clipboard.forms.size(), 2U);
}

TEST_F(PictureOutputTest, PrintsThePagesAsTheyAre) {
  Open();
  PlaceAt("Top Left", 50, 50);
  canvas->Type("unsaved");
  window->ChooseEntry("Print to Prin&ter...");
  EXPECT_EQ(printer.job.title, "Essay");
  EXPECT_EQ(printer.job.pages, (std::vector<int>{1, 3}));
  ASSERT_EQ(printer.sheets.size(), 2U);
  for (const char* text : {"(unsaved)", "(one)", " w 1\n"})
    EXPECT_NE(printer.sheets[0].find(text), std::string::npos) << text;
  EXPECT_EQ(printer.sheets[0].find("box"), std::string::npos) << "paper is white already";
  EXPECT_NE(printer.sheets[1].find("(three)"), std::string::npos);
  EXPECT_EQ(Content("\\P\\Essay.001").find("unsaved"), std::string::npos) << "printing saves nothing";
  window->ChooseEntry("Print Previe&w...");
  EXPECT_EQ(printer.sheets.size(), 4U) << "the preview has all pages, too";
  files.unreadable.insert("\\P\\Essay.003");
  EXPECT_NE(FailureOf([&] { window->ChooseEntry("Print to Prin&ter..."); }).find("Essay.003"),
            std::string::npos);
}

}  // namespace
}  // namespace kelvane
