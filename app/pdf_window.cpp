#include "app/pdf_window.h"

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "app/context_help.h"
#include "document/fields.h"
#include "document/paper.h"
#include "editing/notes.h"
#include "output/page_list.h"
#include "output/page_output.h"
#include "output/pdf_export.h"
#include "papers/paper_commands.h"
#include "platform/files.h"
#include "typography/colours.h"
#include "typography/view.h"

namespace kelvane {

Window* PdfWindow = nullptr;

namespace {

// Pixels.
constexpr int kWidth = 420;
constexpr int kEdge = 10;
constexpr int kLabel = 84;
constexpr int kChoice = 100;
constexpr int kGap = 4;
constexpr int kBar = 10;  // height

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
bool Bookmarks = false;
std::unique_ptr<PdfExport> Running;

std::string WholePaper() {
  const std::vector<int> pages = PagesToExport();
  const std::string first = std::to_string(pages.front());
  return pages.size() == 1 ? first : first + "-" + std::to_string(pages.back());
}

// What would come of the choices, or why nothing would; how far it has come while it runs.
void ShowState() {
  const std::string list = Shown.pages->Text();
  Shown.one->SetDown(list == std::to_string(CurrentPageNumber));
  Shown.all->SetDown(list == WholePaper());
  Shown.bookmarks->SetDown(Bookmarks);
  Shown.bar->Invalidate(Layer::Page);
  if (Running) {
    Shown.exports->SetEnabled(false);
    Shown.tells->SetText("Page " + std::to_string(Running->Done()) + " of " +
                         std::to_string(Running->Count()));
    return;
  }
  const auto [pages, refusal] = ChoosePages(PagesToExport(), list);
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

void Close() {
  CancelPdfExport();
  PdfWindow->Hide();
  Picture1->Focus();
}

// Cancels what runs; the second time it closes the window.
void CancelOrClose() {
  if (!Running) return Close();
  CancelPdfExport();
  ShowState();
  ShowNote("The export was cancelled");
}

std::string AskForFile() {
  const std::string paper = CurrentPaperFile.empty() ? "" : "\\" + FileTitleOf(CurrentPaperFile) + ".pdf";
  const std::string chosen = TheDialogs->ChooseToSave("Export PDF", "*.pdf|*.pdf", FolderOfPaper() + paper);
  const std::size_t name = chosen.rfind('\\') + 1;
  if (chosen.empty() || chosen.find('.', name) != std::string::npos) return chosen;
  const std::string path = chosen + ".pdf";
  return MayReplace(path, false) ? path : "";
}

void Export() {
  if (Running) return;
  auto [pages, refusal] = ChoosePages(PagesToExport(), Shown.pages->Text());
  if (!refusal.empty()) return Shown.pages->SelectAll();
  const std::string path = AskForFile();
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

Button* AddButton(const char* caption, const char* toolTip, const Place& place, std::function<void()> act) {
  Button* button = PdfWindow->AddButton(caption, {}, toolTip);
  button->SetPlace(place);
  button->OnClick = std::move(act);
  return button;
}

Button* AddList(const char* caption, const char* toolTip, const Place& place, std::string (*list)()) {
  return AddButton(caption, toolTip, place, [list] {
    Shown.pages->SetText(list());
    ShowState();
  });
}

void Build() {
  PdfWindow = TheToolkit->NewWindow(false);
  PdfWindow->SetTitle("Export PDF");
  const int row = PdfWindow->RowHeight();
  const auto top = [row](int number) { return kEdge + number * (row + kGap); };
  const int left = kEdge + kLabel;
  PdfWindow->AddLabel("Pages")->SetPlace({kEdge, top(0), kLabel, row});
  Shown.pages = PdfWindow->AddPlainTextBox("Pages, as 1-3, 5");
  Shown.pages->SetPlace({left, top(0), kChoice, row});
  Shown.pages->OnChange = ShowState;
  Shown.pages->OnEnter = Export;
  Shown.pages->OnEscape = CancelOrClose;
  Shown.one = AddList("This Page", "The Page That Is Shown", {left + kChoice + kGap, top(0), kChoice, row},
                      [] { return std::to_string(CurrentPageNumber); });
  Shown.all = AddList("Whole Paper", "All Pages of the Paper",
                      {left + 2 * (kChoice + kGap), top(0), kChoice, row}, WholePaper);
  PdfWindow->AddLabel("Bookmarks")->SetPlace({kEdge, top(1), kLabel, row});
  Shown.bookmarks = AddButton("From Headings", "Bookmarks of the Lines in the Largest Sizes",
                              {left, top(1), kChoice + 20, row}, [] {
                                Bookmarks = !Bookmarks;
                                ShowState();
                              });
  Shown.tells = PdfWindow->AddLabel("");
  Shown.tells->SetPlace({left, top(2), kWidth - left - kEdge, row});
  Shown.bar = PdfWindow->AddCanvas();
  Shown.bar->SetName("Progress");
  Shown.bar->OnPaint = PaintBar;
  PdfWindow->SetCanvasPlace(Shown.bar, {kEdge, top(3), kWidth - 2 * kEdge, kBar});
  const int buttons = top(3) + kBar + 2 * kGap;
  Shown.exports = AddButton("Export...", "Choose a File and Write the Document",
                            {kWidth - kEdge - 184, buttons, 90, row}, Export);
  AddButton("Cancel", "Give Up the Export, or Close the Window (Esc)",
            {kWidth - kEdge - 90, buttons, 90, row}, CancelOrClose);
  PdfWindow->OnEscape = CancelOrClose;
  PdfWindow->OnCloseRequest = [] {
    Close();
    return true;
  };
  Shown.timer = TheToolkit->NewTimer();
  Shown.timer->OnTick = Continue;
  AddHelpKeys(*PdfWindow, "PDF");
}

// In the middle of the editor.
void PlaceInMiddle() {
  const int row = PdfWindow->RowHeight();
  const float width = kWidth * kTwipsPerPixel;
  const float height = static_cast<float>(2 * kEdge + 4 * (row + kGap) + kBar + kGap) * kTwipsPerPixel;
  const WindowPlace editor = Form1->GetWindowPlace();
  PdfWindow->SetWindowPlace(
      {editor.left + (editor.width - width) / 2, editor.top + (editor.height - height) / 2, width, height});
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
  if (!PdfWindow->Visible()) PlaceInMiddle();
  if (!Running) Shown.pages->SetText(WholePaper());
  ShowState();
  PdfWindow->Show();
  Shown.pages->Focus();
  Shown.pages->SelectAll();
}

void CancelPdfExport() {
  if (Shown.timer) Shown.timer->Stop();
  Running.reset();
}

}  // namespace kelvane
