#include "app/pdf_window.h"

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "app/choice_window.h"
#include "document/paper.h"
#include "editing/notes.h"
#include "output/page_list.h"
#include "output/page_output.h"
#include "output/pdf_export.h"
#include "platform/files.h"
#include "typography/colours.h"
#include "typography/view.h"

namespace kelvane {

Window* PdfWindow = nullptr;

namespace {

// Between two looks at what the person does.
constexpr int kPagesAtOnce = 8;

struct Parts {
  TextBox* pages = nullptr;
  Button* one = nullptr;
  Button* all = nullptr;
  Button* bookmarks = nullptr;
  Label* tells = nullptr;
  Canvas* bar = nullptr;
  Button* exports = nullptr;
  Timer* timer = nullptr;
};
Parts Shown;
ChoiceWindow Choices;
bool Bookmarks = false;
std::unique_ptr<PdfExport> Running;

std::string ListOf(const std::vector<int>& pages) {
  const std::string first = std::to_string(pages.front());
  return pages.size() == 1 ? first : first + "-" + std::to_string(pages.back());
}

std::string WholePaper() {
  return ListOf(PagesOfPaper());
}

// What would come of the choices, or why nothing would; how far it has come while it runs.
void ShowState() {
  Shown.bookmarks->SetDown(Bookmarks);
  Shown.bar->Invalidate(Layer::Page);
  if (Running) {
    Shown.exports->SetEnabled(false);
    Shown.tells->SetText("Page " + std::to_string(Running->Done()) + " of " +
                         std::to_string(Running->Count()));
    return;
  }
  const std::vector<int> all = PagesOfPaper();
  const std::string list = Shown.pages->Text();
  Shown.one->SetDown(list == std::to_string(CurrentPageNumber));
  Shown.all->SetDown(list == ListOf(all));
  const auto [pages, refusal] = ChoosePages(all, list);
  Shown.exports->SetEnabled(refusal.empty());
  const std::string count = pages.size() == 1 ? "1 page" : std::to_string(pages.size()) + " pages";
  Shown.tells->SetText(refusal.empty() ? count : refusal);
}

void PaintBar(Layer layer, const Box&) {
  Canvas& bar = *Shown.bar;
  const auto width = static_cast<float>(bar.PixelWidth());
  const auto height = static_cast<float>(bar.PixelHeight());
  if (width <= 0 || height <= 0) return;
  bar.SetCoordinates(0, 0, width, height);
  bar.SelectLayer(layer);
  bar.Clear();
  if (layer != Layer::Page) return;
  const float part = Running ? static_cast<float>(Running->Done()) / static_cast<float>(Running->Count()) : 0;
  bar.FillBox({0, 0, width, height}, PaletteColour(kWhite));
  if (part > 0) bar.FillBox({0, 0, width * part, height}, PaletteColour(kBlue));
}

void StopExport() {
  if (!Running) return;
  CancelPdfExport();
  ShowNote("The export was cancelled");
}

void Close() {
  StopExport();
  PdfWindow->Hide();
  Picture1->Focus();
}

// Cancels what runs; the second time it closes the window.
void CancelOrClose() {
  if (!Running) return Close();
  StopExport();
  ShowState();
}

void Export() {
  if (Running) return;
  auto [pages, refusal] = ChoosePages(PagesOfPaper(), Shown.pages->Text());
  if (!refusal.empty()) return Shown.pages->SelectAll();
  const std::string path = ChooseOutput("Export PDF", "", "pdf");
  if (path.empty()) return;
  Running = std::make_unique<PdfExport>(path, std::move(pages), Bookmarks);
  ShowState();
  Shown.timer->Start(1);
}

void Finish(const PdfExport& done) {
  PdfWindow->Hide();
  Picture1->Focus();
  ShowNote("Written: " + MachinePath(done.Path()));
  if (!done.Missing().empty()) TheDialogs->Message(done.Missing());
}

// A step that fails ends the export: it is held here until it has gone well.
void Continue() {
  struct Showing {
    ~Showing() {
      if (!Running) Shown.timer->Stop();
      ShowState();
    }
  };
  const Showing atTheEnd;
  std::unique_ptr<PdfExport> exporting = std::move(Running);
  for (int i = 0; exporting && i < kPagesAtOnce; ++i) {
    if (!exporting->Step()) return Finish(*exporting);
  }
  Running = std::move(exporting);
}

Button* AddList(int before, const char* caption, const char* toolTip, std::string (*list)()) {
  return Choices.AddButton(caption, toolTip, Choices.PlaceOf(0, before), [list] {
    Shown.pages->SetText(list());
    ShowState();
  });
}

void Build() {
  // Pixels.
  constexpr int kWidth = 420;
  constexpr int kBar = 10;
  constexpr int kEdge = ChoiceWindow::kEdge;
  PdfWindow = Choices.Build("Export PDF", kWidth, 84, "PDF");
  Choices.AddLabel(0, "Pages");
  Shown.pages = PdfWindow->AddPlainTextBox("Pages, as 1-3, 5");
  Shown.pages->SetPlace(Choices.PlaceOf(0, 0));
  Shown.pages->OnChange = ShowState;
  Shown.pages->OnEnter = Export;
  Shown.pages->OnEscape = CancelOrClose;
  Shown.one =
      AddList(1, "This Page", "The Page That Is Shown", [] { return std::to_string(CurrentPageNumber); });
  Shown.all = AddList(2, "Whole Paper", "All Pages of the Paper", WholePaper);
  Choices.AddLabel(1, "Bookmarks");
  Shown.bookmarks = Choices.AddButton("From Headings", "Bookmarks of the Lines in the Largest Sizes",
                                      Choices.PlaceOf(1, 0, ChoiceWindow::kChoice + 20), [] {
                                        Bookmarks = !Bookmarks;
                                        ShowState();
                                      });
  Shown.tells = PdfWindow->AddLabel("");
  Shown.tells->SetPlace(Choices.RestOf(2));
  Shown.bar = PdfWindow->AddCanvas();
  Shown.bar->SetName("Progress");
  Shown.bar->OnPaint = PaintBar;
  PdfWindow->SetCanvasPlace(Shown.bar, {kEdge, Choices.TopOf(3), kWidth - 2 * kEdge, kBar});
  Shown.exports = Choices.AddEnd({.top = Choices.TopOf(3) + kBar + 2 * ChoiceWindow::kGap,
                                  .exportTip = "Choose a File and Write the Document",
                                  .exports = Export,
                                  .cancelTip = "Give Up the Export, or Close the Window (Esc)",
                                  .cancel = CancelOrClose,
                                  .close = Close});
  Shown.timer = TheToolkit->NewTimer();
  Shown.timer->OnTick = Continue;
}

}  // namespace

void ResetPdfWindow() {
  Running.reset();
  PdfWindow = nullptr;
  Shown = {};
  Bookmarks = false;
}

void ShowPdfWindow() {
  if (!PdfWindow) Build();
  if (!Running) Shown.pages->SetText(WholePaper());
  ShowState();
  Choices.Show();
  Shown.pages->Focus();
  Shown.pages->SelectAll();
}

void CancelPdfExport() {
  if (Shown.timer) Shown.timer->Stop();
  Running.reset();
}

}  // namespace kelvane
