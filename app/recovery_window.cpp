#include "app/recovery_window.h"

#include <algorithm>
#include <array>
#include <ctime>
#include <optional>
#include <string>
#include <vector>

#include "app/context_help.h"
#include "app/menus.h"
#include "document/fields.h"
#include "document/lines.h"
#include "document/page_items.h"
#include "editing/differences.h"
#include "editing/notes.h"
#include "papers/paper_commands.h"
#include "papers/recovery.h"
#include "platform/failure.h"
#include "typography/renderer.h"
#include "typography/view.h"

namespace kelvane {

Window* RecoveryWindow = nullptr;
RecoveryWindowControls RecoveryParts;

namespace {

// Twips; the first time.
constexpr WindowPlace kFirstPlace{60 * kTwipsPerPixel, 60 * kTwipsPerPixel, 760 * kTwipsPerPixel,
                                  620 * kTwipsPerPixel};
constexpr int kGap = 8;

// The number of the work that the pictures are of.
std::size_t Chosen = 0;
// What they show; none where there is nothing to be shown.
std::optional<PageItems> FileItems;
std::optional<PageItems> LeftItems;
Label* FileCaption;
Label* LeftCaption;

const LeftWork* ChosenWork() {
  return Chosen < FoundWork().size() ? &FoundWork()[Chosen] : nullptr;
}

bool CanBeRead(const Journal& journal) {
  return journal.kind == Journal::Kind::Whole || journal.kind == Journal::Kind::Damaged;
}

std::string TimeOf(std::uint32_t seconds) {
  const auto time = static_cast<std::time_t>(seconds);
  std::tm parts{};
  localtime_r(&time, &parts);
  std::array<char, 32> text;
  return std::string(text.data(), std::strftime(text.data(), text.size(), "%Y-%m-%d %H:%M", &parts));
}

std::string Counted(int number, const char* one, const char* many) {
  return std::to_string(number) + " " + (number == 1 ? one : many);
}

std::string PageName(const JournalFile& file) {
  if (file.path.empty()) return "A paper without a name";
  return FileTitleOf(file.path) + ", page " + std::to_string(file.number);
}

std::string WhatIsUnsaved(const Journal& journal) {
  std::string text = journal.edits > 0 ? Counted(journal.edits, "edit", "edits") : "";
  const auto add = [&text](const char* more) { text += (text.empty() ? "" : " and ") + std::string(more); };
  if (!journal.half.run.empty() || journal.half.retyped != 0) add("a run being typed");
  if (!journal.half.notation.empty()) add("a formula being typed");
  if (!journal.half.path.empty()) add("a path being drawn");
  return text;
}

std::string RowOf(const LeftWork& work) {
  const Journal& journal = work.journal;
  if (!CanBeRead(journal)) return "Unreadable: " + FileTitleOf(work.path);
  return PageName(journal.file) + "   -   " + TimeOf(journal.time) + "   -   " + WhatIsUnsaved(journal);
}

std::string AboutWork(const LeftWork& work) {
  const Journal& journal = work.journal;
  if (journal.kind == Journal::Kind::OtherVersion)
    return "Another version of Kelvane wrote this, and only that version can read it: " +
           MachinePath(work.path);
  if (!CanBeRead(journal)) return "Nothing of this can be read any more: " + MachinePath(work.path);
  std::string text = journal.file.path.empty() ? "It was in no file." : MachinePath(journal.file.path);
  if (journal.kind == Journal::Kind::Damaged)
    text += "  The end of what was kept is damaged and is not here.";
  return text;
}

// ---- The pictures ----

// The part of the paper that both pictures show, points: where they differ with what is around it, or all.
Box Shown;

// Room around what differs, and the least width of what is shown, points.
constexpr float kAround = 36;
constexpr float kLeastShown = 240;

template <typename Parse, typename Item>
void AddLines(const Differences& differences, Parse parse, Item item, std::optional<Box>& all) {
  for (const Difference& difference : differences) {
    for (std::string_view rest : {std::string_view(difference.before), std::string_view(difference.after)}) {
      while (!rest.empty()) {
        if (!parse(TakeLine(rest), item)) continue;
        const Box box = BoundsOf(item);
        all = all ? Box{std::min(all->left, box.left), std::min(all->top, box.top),
                        std::max(all->right, box.right), std::max(all->bottom, box.bottom)}
                  : box;
      }
    }
  }
}

Box WhatDiffers(const Page& file, const Page& left) {
  std::optional<Box> all;
  AddLines(Compare(file.text, left.text), ParseTextEntry, TextEntry(), all);
  AddLines(Compare(file.drawings, left.drawings), ParseDrawing, Drawing(), all);
  const Box paper{0, 0, PaperWidth, PaperHeight};
  if (!all) return paper;
  // With what is around it, though not with the desk beside the paper unless it lies there.
  const auto before = [](float edge) { return edge < 0 ? edge - kAround : std::max(edge - kAround, 0.0F); };
  const auto behind = [](float edge, float end) {
    return edge > end ? edge + kAround : std::min(edge + kAround, end);
  };
  Box shown{before(all->left), before(all->top), behind(all->right, PaperWidth),
            behind(all->bottom, PaperHeight)};
  const float more = std::max(kLeastShown - (shown.right - shown.left), 0.0F) / 2;
  shown.left -= more;
  shown.right += more;
  const bool large = shown.right - shown.left > PaperWidth || shown.bottom - shown.top > PaperHeight;
  return large ? paper : shown;
}

// As large as the canvas shows it, in its middle.
View PictureView(const Canvas& canvas) {
  const auto width = static_cast<float>(canvas.PixelWidth());
  const auto height = static_cast<float>(canvas.PixelHeight());
  View view;
  view.scale = std::min(width / (Shown.right - Shown.left), height / (Shown.bottom - Shown.top));
  view.ratio = canvas.PixelRatio();
  view.printed = true;
  if (!(view.scale > 0)) return view;
  const float across = width / view.scale;
  const float down = height / view.scale;
  // Beside the paper there is nothing to be seen, unless something lies there.
  const auto onPaper = [](float least, float most, float length, float paper) {
    const float start = (least + most - length) / 2;
    if (least < 0 || most > paper || length > paper) return start;
    return std::clamp(start, 0.0F, paper - length);
  };
  const float left = onPaper(Shown.left, Shown.right, across, PaperWidth);
  const float top = onPaper(Shown.top, Shown.bottom, down, PaperHeight);
  view.area = {left, top, left + across, top + down};
  return view;
}

void PaintPicture(Canvas& canvas, const std::optional<PageItems>& items) {
  const View view = PictureView(canvas);
  if (items && view.scale > 0) PaintPage(canvas, view, *items, view.area);
}

void ShowPicture(Canvas& canvas) {
  const View view = PictureView(canvas);
  if (view.scale > 0)
    canvas.SetCoordinates(view.area.left, view.area.top, view.area.right - view.area.left,
                          view.area.bottom - view.area.top);
  canvas.Invalidate(Layer::Page);
}

void ShowChosen() {
  const LeftWork* work = ChosenWork();
  FileItems.reset();
  LeftItems.reset();
  const bool readable = work && CanBeRead(work->journal);
  if (readable) {
    const Page left = WholePage(work->journal);
    LeftItems.emplace(left);
    if (work->stored) FileItems.emplace(*work->stored);
    Shown = WhatDiffers(work->stored.value_or(Page{}), left);
  }
  FileCaption->SetText(readable && !work->stored ? "There is no file" : "As the file is");
  RecoveryParts.about->SetText(work ? AboutWork(*work) : "");
  RecoveryParts.restore->SetEnabled(readable);
  RecoveryParts.keepBoth->SetEnabled(readable && !work->journal.file.path.empty());
  RecoveryParts.discard->SetEnabled(work != nullptr);
  for (Canvas* canvas : {RecoveryParts.file, RecoveryParts.left}) ShowPicture(*canvas);
}

void ShowList() {
  std::vector<List::Row> rows;
  for (const LeftWork& work : FoundWork()) rows.push_back({RowOf(work)});
  Chosen = std::min(Chosen, rows.empty() ? 0 : rows.size() - 1);
  RecoveryParts.list->SetRows(rows);
  RecoveryParts.list->Choose(rows.empty() ? -1 : static_cast<int>(Chosen));
  ShowChosen();
}

// ---- What becomes of it ----

void Later() {
  RecoveryWindow->Hide();
}

void GoOn() {
  RefreshMenus();
  if (FoundWork().empty()) return Later();
  ShowList();
}

void Restore() {
  if (!ChosenWork() || !RestoreWork(Chosen)) return;
  GoOn();
  Later();  // what is left waits until it is asked for
  if (Picture1) Picture1->Focus();
}

void KeepBoth() {
  if (!ChosenWork()) return;
  const std::string name = KeepWorkBeside(Chosen);
  GoOn();
  ShowNote("Written: " + MachinePath(name));
}

void Discard() {
  const LeftWork* work = ChosenWork();
  if (!work) return;
  const std::string what =
      CanBeRead(work->journal) ? PageName(work->journal.file) + ": " + WhatIsUnsaved(work->journal) : "This";
  if (!TheDialogs->Ask(what + " would be lost for good.\nDiscard it?", false)) return;
  DiscardWork(Chosen);
  GoOn();
}

// ---- The window ----

void LayOut() {
  const int width = static_cast<int>(RecoveryWindow->InnerWidth() / kTwipsPerPixel);
  const int height = static_cast<int>(RecoveryWindow->InnerHeight() / kTwipsPerPixel);
  const int row = RecoveryWindow->RowHeight();
  const int inner = width - 2 * kGap;
  const int rows = std::clamp<int>(static_cast<int>(FoundWork().size()), 2, 5);
  const int list = std::min(rows * row, height / 4);
  int y = kGap;
  RecoveryParts.list->SetPlace({kGap, y, inner, list});
  y += list;
  RecoveryParts.about->SetPlace({kGap, y, inner, row});
  y += row;
  const int half = (inner - kGap) / 2;
  const int right = kGap + half + kGap;
  FileCaption->SetPlace({kGap, y, half, row});
  LeftCaption->SetPlace({right, y, half, row});
  y += row;
  const int buttons = height - row - kGap;
  const int picture = std::max(buttons - kGap - y, 1);
  RecoveryWindow->SetCanvasPlace(RecoveryParts.file, {kGap, y, half, picture});
  RecoveryWindow->SetCanvasPlace(RecoveryParts.left, {right, y, half, picture});
  int x = width;
  for (Button* button :
       {RecoveryParts.later, RecoveryParts.discard, RecoveryParts.keepBoth, RecoveryParts.restore}) {
    x -= row * 4 + kGap;
    button->SetPlace({x, buttons, row * 4, row});
  }
  for (Canvas* canvas : {RecoveryParts.file, RecoveryParts.left}) ShowPicture(*canvas);
}

void Build() {
  RecoveryWindow = TheToolkit->NewWindow(false);
  RecoveryWindow->SetTitle("Unsaved Work");
  RecoveryParts.list = RecoveryWindow->AddList("Unsaved work");
  RecoveryParts.list->OnChosen = [](int row) {
    Chosen = static_cast<std::size_t>(std::max(row, 0));
    ShowChosen();
  };
  RecoveryParts.about = RecoveryWindow->AddLabel("");
  FileCaption = RecoveryWindow->AddLabel("");
  LeftCaption = RecoveryWindow->AddLabel("As it was when the program ended");
  const auto picture = [](const char* name, const std::optional<PageItems>& items) {
    Canvas* canvas = RecoveryWindow->AddCanvas();
    canvas->SetName(name);
    canvas->OnPaint = [canvas, &items](Layer layer, const Box&) {
      if (layer == Layer::Page) PaintPicture(*canvas, items);
    };
    return canvas;
  };
  RecoveryParts.file = picture("Picture of the file", FileItems);
  RecoveryParts.left = picture("Picture of the unsaved page", LeftItems);
  const auto button = [](const char* caption, const char* toolTip, void (*click)()) {
    Button* made = RecoveryWindow->AddButton(caption, {}, toolTip);
    made->OnClick = click;
    return made;
  };
  RecoveryParts.restore =
      button("&Restore", "Go on where it was broken off; nothing is saved by that", Restore);
  RecoveryParts.keepBoth = button("&Keep Both", "Write the unsaved page beside the file", KeepBoth);
  RecoveryParts.discard = button("&Discard", "Throw the unsaved page away", Discard);
  RecoveryParts.later = button("&Later", "Decide another time; everything is kept", Later);
  RecoveryWindow->OnEscape = Later;
  RecoveryWindow->OnResize = LayOut;
  RecoveryWindow->KeepPlaceAs("recovery/place", kFirstPlace);
  AddHelpKeys(*RecoveryWindow, "Unsaved work");
}

void Show() {
  if (!RecoveryWindow) Build();
  Chosen = 0;
  RecoveryWindow->Show();
  LayOut();
  ShowList();
  RecoveryParts.list->Focus();
}

}  // namespace

void ResetRecoveryWindow() {
  RecoveryWindow = nullptr;
  RecoveryParts = {};
  FileItems.reset();
  LeftItems.reset();
  Chosen = 0;
  Shown = {0, 0, PaperWidth, PaperHeight};
}

void OfferRecovery() {
  FindLeftWork();
  if (!FoundWork().empty()) Show();
}

void ShowRecovery() {
  OfferRecovery();
  if (FoundWork().empty()) ShowNote("There is no unsaved work of a program that was broken off");
}

}  // namespace kelvane
