#include "papers/versions_window.h"

#include <algorithm>
#include <array>
#include <ctime>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "document/lines.h"
#include "document/page.h"
#include "document/page_items.h"
#include "document/paper.h"
#include "editing/edit.h"
#include "editing/modes.h"
#include "papers/page_operations.h"
#include "papers/paper_commands.h"
#include "papers/versions.h"
#include "platform/canvas.h"
#include "platform/failure.h"
#include "platform/files.h"
#include "platform/text_view.h"
#include "typography/curves.h"
#include "typography/renderer.h"
#include "typography/view.h"

namespace kelvane {

Window* VersionsWindow = nullptr;

namespace {

constexpr WindowPlace kFirstPlace{60 * kTwipsPerPixel, 80 * kTwipsPerPixel, 600 * kTwipsPerPixel,
                                  380 * kTwipsPerPixel};
constexpr int kGap = 6;           // pixels
constexpr float kMargin = 12;     // around the paper in the picture, points
constexpr float kLarger = 3;      // what a click makes of the picture
constexpr float kFrameWidth = 2;  // pixels
constexpr ColourValue kOnlyThen =
    0x1450D2;  // frames of what the page lacks now, and of what it has got since
constexpr ColourValue kOnlyNow = 0xC86414;

// A row of the list.
struct Kept {
  std::optional<Version> version;  // none: what the file holds now
  std::string name;
  int removed = 0;  // the number of a page that was deleted
};
std::vector<Kept> Rows;
// What they are of: the file, how many pages had been shown, and whether the page had changed.
struct Listed {
  std::string page;
  int shown = 0;
  bool changed = false;
  bool operator==(const Listed&) const = default;
};
Listed ListedThen;
int Chosen = -1;
Page ChosenPage;
bool Readable = false;  // the chosen one
std::string WhyNot;

struct Parts {
  List* list = nullptr;
  Canvas* picture = nullptr;
  Label* differences = nullptr;
  Button* now = nullptr;
  Button* bringBack = nullptr;
  Button* close = nullptr;
};
Parts Own;
bool ShowsNow = false;        // the picture is that of the page in memory
std::optional<Point> Middle;  // of the larger picture, points

// The lines of a page that another one lacks, each as often as it stands there more often.
std::vector<std::string_view> SortedLines(std::string_view text) {
  std::vector<std::string_view> lines;
  while (!text.empty()) lines.push_back(TakeLine(text));
  std::ranges::sort(lines);
  return lines;
}
std::vector<std::string_view> LinesOnlyIn(const std::string& text, const std::string& other) {
  const std::vector<std::string_view> lines = SortedLines(text);
  const std::vector<std::string_view> others = SortedLines(other);
  std::vector<std::string_view> only;
  std::ranges::set_difference(lines, others, std::back_inserter(only));
  return only;
}
std::size_t CountOnlyIn(const Page& page, const Page& other) {
  return LinesOnlyIn(page.text, other.text).size() + LinesOnlyIn(page.drawings, other.drawings).size();
}

std::string DifferencesText() {
  if (Chosen < 0) return "No version of this page is kept yet: each save keeps what it replaces.";
  if (!Readable) return WhyNot;
  const std::size_t then = CountOnlyIn(ChosenPage, ThePage);
  const std::size_t now = CountOnlyIn(ThePage, ChosenPage);
  if (then + now == 0) return "This is the page as it is now.";
  return "Only in this version (orange): " + std::to_string(then) +
         ".  Only on the page now (blue): " + std::to_string(now) + ".";
}

std::string TimeText(std::int64_t time) {
  const std::time_t seconds = time;
  std::tm local{};
  localtime_r(&seconds, &local);
  std::array<char, 32> text;
  const std::size_t length = std::strftime(text.data(), text.size(), "%Y-%m-%d %H:%M:%S", &local);
  return {text.data(), length};
}

std::string SizeText(std::size_t bytes) {
  constexpr std::size_t kKilo = 1024;
  return std::to_string((bytes + kKilo - 1) / kKilo) + " KB";
}

// ---- The picture ----

void Frame(Painter& painter, const Box& box) {
  constexpr float kAround = 1.5F;  // points
  painter.StrokePath(
      FrameOf({box.left - kAround, box.top - kAround, box.right + kAround, box.bottom + kAround}),
      {ShowsNow ? kOnlyNow : kOnlyThen, kFrameWidth});
}

// Takes a line off a sorted list; false if it is not there.
bool TakeFrom(std::vector<std::string_view>& lines, std::string_view line) {
  const auto found = std::ranges::lower_bound(lines, line);
  if (found == lines.end() || *found != line) return false;
  lines.erase(found);
  return true;
}

void PaintPicture(Layer layer, const Box&) {
  const int width = Own.picture->PixelWidth();
  const int height = Own.picture->PixelHeight();
  if (layer == Layer::Overlay || width <= 0 || height <= 0 || !(Readable || ShowsNow)) return;
  const float w = static_cast<float>(width);
  const float h = static_cast<float>(height);
  const float all = std::min(w / (PaperWidth + 2 * kMargin), h / (PaperHeight + 2 * kMargin));
  View view;
  view.scale = Middle ? all * kLarger : all;
  view.ratio = Own.picture->PixelRatio();
  view.printed = true;
  const Point middle = Middle.value_or(Point{PaperWidth / 2, PaperHeight / 2});
  view.area = {middle.x - w / view.scale / 2, middle.y - h / view.scale / 2, middle.x + w / view.scale / 2,
               middle.y + h / view.scale / 2};
  Own.picture->SetCoordinates(view.area.left, view.area.top, w / view.scale, h / view.scale);
  const Page& page = ShowsNow ? ThePage : ChosenPage;
  const Page& other = ShowsNow ? ChosenPage : ThePage;
  const PageItems items(page);
  PaintPage(*Own.picture, view, items, view.area);
  if (!Readable) return;
  std::vector<std::string_view> texts = LinesOnlyIn(page.text, other.text);
  for (const TextItem& item : items.Texts())
    if (TakeFrom(texts, item.line) && item.draws)
      Frame(*Own.picture, CellsOf(item.entry, 0, item.entry.text.size()));
  std::vector<std::string_view> drawings = LinesOnlyIn(page.drawings, other.drawings);
  for (const DrawingItem& item : items.Drawings())
    if (TakeFrom(drawings, item.record) && item.draws) Frame(*Own.picture, BoundsOf(item.drawing));
}

void ClickPicture(const MouseEvent& event) {
  if (event.button != MouseButton::Left) return;
  Middle = Middle ? std::nullopt : std::optional(Point{event.x, event.y});
  Own.picture->Invalidate(Layer::Page);
}

// ---- The list ----

void ShowChosen() {
  Own.differences->SetText(DifferencesText());
  Own.now->SetDown(ShowsNow);
  Own.now->SetEnabled(Chosen >= 0);
  Own.bringBack->SetEnabled(Readable);
  Own.picture->Invalidate(Layer::Page);
}

void Choose(int row) {
  Chosen = row;
  ChosenPage = {};
  Readable = false;
  if (row >= 0) {
    try {
      const Kept& kept = Rows.at(static_cast<std::size_t>(row));
      const std::string content =
          kept.version ? ContentOfVersion(*kept.version) : TheFiles->ReadWhole(CurrentPaperFile);
      ChosenPage = PageOfContent(content, kept.name);
      Readable = true;
    } catch (const Failure& failure) {
      WhyNot = failure.what();
    }
  }
  ShowChosen();
}

Listed ListedNow() {
  return {CurrentPaperFile, PagesShown(), PageChanged != 0};
}

// The content of the file that is on the disk, if that is not the page in memory.
void AddFile() {
  if (!TheFiles->Exists(CurrentPaperFile)) return;
  const bool other = PageFileIsOther();
  if (!other && PageChanged == 0) return;
  Rows.push_back({{}, other ? "in the file now, by another program" : "in the file now"});
}

void FillList() {
  const std::string chosenFile =
      Chosen >= 0 ? Rows.at(static_cast<std::size_t>(Chosen)).version.value_or(Version{}).file : "";
  Rows.clear();
  ListedThen = ListedNow();
  if (!CurrentPaperFile.empty()) {
    AddFile();
    for (const Version& version : VersionsOf(CurrentPaperFile))
      Rows.push_back({version, "until " + TimeText(version.time) + ", " + SizeText(version.size)});
    for (const Version& version : RemovedPagesOf(CurrentPaperFile)) {
      const std::string name = NameOfRemoved(version);
      Rows.push_back({version, name + " deleted " + TimeText(version.time), PageNumberOf(name)});
    }
  }
  std::vector<List::Row> shown;
  int row = Rows.empty() ? -1 : 0;
  for (const Kept& kept : Rows) {
    if (kept.version && kept.version->file == chosenFile) row = static_cast<int>(shown.size());
    shown.push_back({kept.name});
  }
  Own.list->SetRows(shown);
  Own.list->Choose(row);
  VersionsWindow->SetTitle("Versions - Page " + std::to_string(CurrentPageNumber));
  Choose(row);
}

void BringBack() {
  if (!Readable) return;
  const Kept& row = Rows.at(static_cast<std::size_t>(Chosen));
  if (!row.version) {
    TakePageFile();
  } else if (row.removed > 0) {
    BringPageBack(row.removed, ContentOfVersion(*row.version));
  } else {
    FinishEditing();
    EditPage("bring back", [](Page& page) { page = ChosenPage; });
  }
  FillList();
}

void ShowNow() {
  ShowsNow = !ShowsNow;
  ShowChosen();
}

// ---- The window ----

void LayOut() {
  constexpr int kListPart = 5;  // of 12
  const int width = static_cast<int>(VersionsWindow->InnerWidth() / kTwipsPerPixel);
  const int height = static_cast<int>(VersionsWindow->InnerHeight() / kTwipsPerPixel);
  const int row = VersionsWindow->RowHeight();
  const int list = width * kListPart / 12;
  const int top = height - 2 * (row + kGap);
  Own.list->SetPlace({kGap, kGap, list - 2 * kGap, top - 2 * kGap});
  VersionsWindow->SetCanvasPlace(Own.picture, {list, kGap, width - list - kGap, top - 2 * kGap});
  Own.differences->SetPlace({kGap, top, width - 2 * kGap, row});
  const int buttons = height - row - kGap;
  Own.now->SetPlace({kGap, buttons, row * 5, row});
  Own.bringBack->SetPlace({width - 2 * (row * 4 + kGap), buttons, row * 4, row});
  Own.close->SetPlace({width - row * 4 - kGap, buttons, row * 4, row});
  Own.picture->Invalidate(Layer::Page);
}

void Close() {
  VersionsWindow->Hide();
}

Button* AddButton(const char* caption, const char* toolTip, void (*click)()) {
  Button* button = VersionsWindow->AddButton(caption, {}, toolTip);
  button->OnClick = click;
  return button;
}

void Build() {
  VersionsWindow = TheToolkit->NewWindow(false);
  Own.list = VersionsWindow->AddList("Versions");
  Own.list->OnChosen = Choose;
  Own.picture = VersionsWindow->AddCanvas();
  Own.picture->SetName("Picture of the page");
  Own.picture->SetToolTip("Click to see a part of it larger, and again to see all of it");
  Own.picture->OnPaint = PaintPicture;
  Own.picture->OnMouseDown = ClickPicture;
  Own.picture->OnKeyPress = [](int code) {
    if (code == kKeyEscape) Close();
  };
  Own.differences = VersionsWindow->AddLabel("");
  Own.now = AddButton("Show &Page Now", "Show the page as it is now in the picture", ShowNow);
  Own.bringBack = AddButton(
      "&Bring Back", "Put this version in the place of the page, or a deleted page back. Undo takes it back",
      BringBack);
  Own.close = AddButton("&Close", "Close", Close);
  VersionsWindow->OnResize = LayOut;
  VersionsWindow->OnEscape = Close;
  VersionsWindow->KeepPlaceAs("versions/place", kFirstPlace);
}

}  // namespace

void ResetVersionsWindow() {
  VersionsWindow = nullptr;
  Own = {};
  Rows.clear();
  ListedThen = {};
  Chosen = -1;
  ChosenPage = {};
  Readable = ShowsNow = false;
  Middle.reset();
}

void ShowVersions() {
  FinishEditing();
  if (VersionsWindow == nullptr) Build();
  Chosen = -1;
  ShowsNow = false;
  Middle.reset();
  FillList();
  VersionsWindow->Show();
  Own.list->Focus();
}

void FollowVersions() {
  if (VersionsWindow == nullptr || !VersionsWindow->Visible()) return;
  ListedThen == ListedNow() ? ShowChosen() : FillList();
}

}  // namespace kelvane
