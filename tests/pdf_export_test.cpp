// "Export PDF", and opening what it wrote.

#include "app/pdf_window.h"

#include <algorithm>

#include "app/exit.h"
#include "document/page.h"
#include "editing/notes.h"
#include "output/page_list.h"
#include "platform/handlers.h"
#include "tests/support/editor_test.h"

namespace kelvane {
namespace {

class PdfExportTest : public EditorTest {
 protected:
  void Open(int pages) {
    for (int number = 1; number <= pages; ++number)
      files.contents[PageFileName("\\P\\Essay.001", number)] =
          "72 100 m 11 F0 (page " + std::to_string(number) + ") 3 s\r\n";
    Start("\\P\\Essay.001");
  }
  FakeWindow& Dialog() {
    window->ChooseEntry("Export P&DF...");
    return *static_cast<FakeWindow*>(PdfWindow);
  }
  FakeTextBox& Pages() { return *static_cast<FakeWindow*>(PdfWindow)->BoxOf("Pages, as 1-3, 5"); }
  std::string Told() { return static_cast<FakeWindow*>(PdfWindow)->labels.back()->text; }
  void Tick() { toolkit.timers.back()->Tick(); }
  bool NoPdf() {
    return std::ranges::none_of(files.contents, [](const auto& file) {
      return file.first.find(".pdf") != std::string::npos || file.first.find('~') != std::string::npos;
    });
  }
  void ExportAll() {
    dialogs.AnswerSave("\\P\\Essay.pdf");
    Dialog().ClickButton("Export...");
    while (PdfWindow->Visible()) Tick();
  }
};

TEST_F(PdfExportTest, ListsOfPages) {
  const auto listed = [](const char* text) {
    std::string numbers;
    const auto pages = ReadPageList(text);
    if (!pages) return std::string("none");
    for (const int page : *pages) numbers += std::to_string(page) + " ";
    return numbers;
  };
  EXPECT_EQ(listed("1-3, 5"), "1 2 3 5 ");
  EXPECT_EQ(listed(" 5,2 ,2-3"), "2 3 5 ");
  EXPECT_EQ(listed("-2,998-"), "1 2 998 999 ");
  EXPECT_EQ(ReadPageList("")->size(), 999U);
  for (const char* wrong : {"0", "1000", "3-1", "1,,2", "-", "1-2-3", "a", "1.5", ",", "1-x"})
    EXPECT_EQ(listed(wrong), "none") << wrong;
}

TEST_F(PdfExportTest, RefusesPagesInPlaceAndWritesThoseChosen) {
  Open(4);
  FakeWindow& dialog = Dialog();
  EXPECT_EQ(Told(), "4 pages");
  for (const auto& [list, why] : {std::pair{"2-1", "Pages are written as 1-3, 5"},
                                  std::pair{"7", "The paper has none of these pages"}}) {
    Pages().Type(list);
    EXPECT_EQ(Told(), why);
    EXPECT_FALSE(dialog.ButtonOf("Export...")->enabled);
    Pages().PressEnter();
  }
  Pages().Type("2, 4");
  EXPECT_EQ(Told(), "2 pages");
  dialogs.AnswerSave("\\P\\Part");
  dialog.ClickButton("Export...");
  Tick();
  const std::string pdf = Content("\\P\\Part.pdf");
  EXPECT_NE(pdf.find("/Count 2/"), pdf.npos);
  EXPECT_NE(pdf.find("/Nums[0<</S/D/St 2>>1<</S/D/St 4>>]"), pdf.npos);
  EXPECT_EQ(static_cast<FakeLabel*>(NoteLabel)->text, "Written: /P/Part.pdf");
  dialogs.messages.clear();  // there are no fonts in memory
}

TEST_F(PdfExportTest, CancelledOrFailedLeavesNoFile) {
  Open(30);
  FakeWindow& dialog = Dialog();
  const auto begin = [&] {
    dialogs.AnswerSave("\\P\\Essay.pdf");
    Dialog().ClickButton("Export...");
    Tick();
    EXPECT_EQ(Told(), "Page 8 of 30");
  };
  begin();
  dialog.ClickButton("Cancel");
  EXPECT_TRUE(NoPdf());
  EXPECT_EQ(Told(), "30 pages");
  EXPECT_TRUE(PdfWindow->Visible());
  begin();
  EXPECT_TRUE(PdfWindow->OnCloseRequest());
  EXPECT_TRUE(NoPdf());
  for (const FileStep step : {FileStep::Write, FileStep::ReadWhole}) {
    begin();
    files.FailStep(step, 3);
    EXPECT_NE(FailureOf([&] { Tick(); }), "");
    EXPECT_TRUE(NoPdf());
    EXPECT_EQ(Told(), "30 pages");
  }
  begin();
  EXPECT_TRUE(ExitSequence());
  EXPECT_TRUE(NoPdf());
  begin();
  dialogs.AnswerYes();
  window->ChooseEntry("Insert &Before");
  EXPECT_NE(FailureOf([&] { Tick(); }).find("while they were exported"), std::string::npos);
  EXPECT_TRUE(NoPdf());
}

TEST_F(PdfExportTest, PageInMemoryIsExportedAsItIs) {
  Open(1);
  PlaceAt("Bottom Left", 100, 200);
  canvas->Type("unsaved");
  ExportAll();
  dialogs.messages.clear();
  window->ChooseEntry("&Save");
  const std::string saved = Content("\\P\\Essay.001");
  EXPECT_NE(saved.find("(unsaved)"), saved.npos);
  window->ChooseEntry("&New");
  dialogs.AnswerOpen("\\P\\Essay.pdf");
  window->ChooseEntry("Op&en");
  EXPECT_EQ(CurrentPaperFile, "");
  EXPECT_EQ(ContentOfPage(ThePage, PageOrder::ByPosition, ""), saved);
}

TEST_F(PdfExportTest, PaperOfSeveralPagesOpensUnderANewName) {
  Open(3);
  ExportAll();
  dialogs.messages.clear();
  const auto open = [&](const std::string& name) {
    dialogs.AnswerOpen("\\P\\Essay.pdf");
    dialogs.AnswerSave(name);
    RunHandler([&] { window->ChooseEntry("Op&en"); });
  };
  open("");
  EXPECT_EQ(CurrentPaperFile, "\\P\\Essay.001");
  files.contents["\\Q\\Taken.002"] = "mine";
  open("\\Q\\Taken.001");
  EXPECT_EQ(dialogs.messages.back(),
            "The pages were not saved: /Q/Taken.002 is already there. Choose the name of a new paper.");
  EXPECT_FALSE(files.Exists("\\Q\\Taken.001"));
  files.FailStep(FileStep::Rename, 2);
  open("\\Q\\New.001");
  EXPECT_FALSE(files.Exists("\\Q\\New.001")) << "all or none";
  open("\\Q\\New");
  EXPECT_EQ(CurrentPaperFile, "\\Q\\New.001");
  for (const char* page : {".001", ".002", ".003"})
    EXPECT_EQ(Content(std::string("\\Q\\New") + page), Content(std::string("\\P\\Essay") + page));
  dialogs.messages.clear();

  files.contents["\\P\\Other.pdf"] = "%PDF-1.4";
  dialogs.AnswerOpen("\\P\\Other.pdf");
  RunHandler([&] { window->ChooseEntry("Op&en"); });
  EXPECT_EQ(dialogs.messages.back(),
            "/P/Other.pdf carries no pages of Kelvane. Only a PDF that Kelvane has exported can be opened.");
  EXPECT_EQ(CurrentPaperFile, "\\Q\\New.001");
}

}  // namespace
}  // namespace kelvane
