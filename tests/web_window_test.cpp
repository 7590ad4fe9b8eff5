// The web page window, its stand-in where there is no engine, the samples, the first hint and the About box.

#include "app/web_window.h"

#include <chrono>
#include <thread>

#include "app/about_window.h"
#include "app/commands.h"
#include "app/menus.h"
#include "app/samples.h"
#include "document/page.h"
#include "editing/notes.h"
#include "tests/support/editor_test.h"
#include "tests/support/stand_ins.h"

namespace kelvane {
namespace {

class WebWindowTest : public EditorTest {
 protected:
  StandIns programs;
};

TEST_F(WebWindowTest, ShowsThePageAndSendsLinksElsewhereToThePersonsBrowser) {
  programs.Make("xdg-open", "echo \"$1\" > got.new; mv got.new got");
  files.contents["\\Kelvane\\OFFLINE.HTM"] = "offline";
  Start();
  const std::size_t windows = toolkit.windows.size();
  window->ChooseEntry("&Web Page");
  ASSERT_EQ(toolkit.windows.size(), windows + 1) << "made when it is asked for, not before";
  auto* web = static_cast<FakeWindow*>(WebWindow);
  FakeBrowser& page = *web->browsers.front();
  EXPECT_EQ(page.home + " " + page.offline, "https://www.kelvane.example/ offline");
  page.OnProgress(true, false, true);
  EXPECT_FALSE(web->ButtonOf("Back")->enabled);
  EXPECT_TRUE(web->ButtonOf("Stop")->enabled);
  web->ClickButton("Back");
  web->ClickButton("Forward");
  web->PressShortcut("Escape");
  EXPECT_EQ(page.done, "forward stop ");
  page.OnAddress("https://www.kelvane.example/news");
  EXPECT_EQ(web->BoxOf("Address")->text, "https://www.kelvane.example/news");
  page.OnLeave("https://elsewhere.example/?a=$(x)");
  EXPECT_EQ(programs.Written("got"), "https://elsewhere.example/?a=$(x)\n");
  for (const char* address : {"file:///etc/passwd", "/bin/sh", "-x", "javascript:1", "https://a\nb"})
    EXPECT_NE(FailureOf([&] { page.OnLeave(address); }).find("is not opened"), std::string::npos) << address;
}

TEST_F(WebWindowTest, OpensThePersonsBrowserWhereThereIsNoEngine) {
  toolkit.hasEngine = false;
  Start();
  EXPECT_NE(FailureOf([&] { window->ChooseEntry("&Web Page"); }).find("xdg-open"), std::string::npos);
  programs.Make("xdg-open", "echo \"$1\" > got.new; mv got.new got");
  window->ChooseEntry("&Web Page");
  EXPECT_EQ(programs.Written("got"), "https://www.kelvane.example/\n");
  EXPECT_NE(NoteLabel->Text().find("your own browser"), std::string::npos) << NoteLabel->Text();
  EXPECT_EQ(WebWindow, nullptr);
}

TEST_F(WebWindowTest, AboutBoxTellsTheVersionsAndLicences) {
  programs.Make("gs", "sleep 0.05; echo 10.00.0");
  Start();
  window->ChooseEntry("&About");
  const auto& view = static_cast<const FakeTextView&>(*AboutText);
  for (int tick = 0; tick < 100 && view.Words().find("10.00.0") == std::string::npos; ++tick) {
    toolkit.TickAll();
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
  }
  for (const char* words :
       {"\\Kelvane\\QRX.BMP\n", "Kelvane ver 1.7\n", "Qt 6\n", "10.00.0\n", "Lesser General"})
    EXPECT_NE(view.Words().find(words), std::string::npos) << words;
  static_cast<FakeWindow*>(AboutWindow)->ClickButton("&Copy");
  EXPECT_TRUE(view.copied);
}

TEST_F(WebWindowTest, SamplesAreThoseOfTheProgramFolderAndOpenAsCopies) {
  const std::string folder = BackslashPath(KELVANE_SOURCE_DIR) + "\\data\\";
  std::size_t pages = 0;
  for (const SamplePaper& paper : SamplePapers()) {
    for (int page = 1; page <= paper.pages + 1; ++page) {
      const std::string name = PageFileName(std::string(paper.name) + ".001", page);
      EXPECT_EQ(DiskFiles().Exists(folder + name), page <= paper.pages) << name;
      if (page > paper.pages) break;
      files.contents["\\Kelvane\\" + name] = DiskFiles().ReadWhole(folder + name);
      ++pages;
    }
  }
  EXPECT_GE(pages, 13U);
  Start();
  const auto before = files.contents;
  for (const Command& command : Commands()) {
    if (command.id.starts_with("mSample")) RunCommand(command);
  }
  EXPECT_FALSE(ThePage.Empty());
  EXPECT_EQ(CurrentPaperFile, "");
  EXPECT_EQ(PageChanged, 0) << "a page only looked at is not asked about";
  EXPECT_EQ(files.contents, before);
}

TEST_F(WebWindowTest, CanvasGivesAHintUntilTheFirstRun) {
  const std::string mark = "\\State\\used";
  files.contents.erase(mark);
  Start();
  const auto hints = [&] {
    return canvas->Drawn(Layer::Overlay).find("F1 opens the manual") != std::string::npos;
  };
  EXPECT_TRUE(hints());
  PlaceAt("Bottom Left", 72, 100);
  EXPECT_TRUE(hints());
  toolkit.TickAll();
  EXPECT_EQ(Content(mark), "(no such file)");
  canvas->Type("x");
  EXPECT_FALSE(hints());
  toolkit.TickAll();
  EXPECT_EQ(Content(mark), "");
  Start();
  EXPECT_FALSE(hints());
}

}  // namespace
}  // namespace kelvane
