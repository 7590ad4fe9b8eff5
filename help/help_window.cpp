#include "help/help_window.h"

#include <algorithm>
#include <vector>

#include "document/fields.h"
#include "help/help_files.h"
#include "help/help_pages.h"
#include "help/help_search.h"
#include "platform/failure.h"
#include "platform/files.h"
#include "typography/item_boxes.h"
#include "typography/run_painter.h"

namespace kelvane {

Window* HelpWindow = nullptr;
HelpWindowControls HelpParts;

namespace {

constexpr char kTitle[] = "Help";
// Twips; the first time.
constexpr WindowPlace kFirstPlace{60 * kTwipsPerPixel, 60 * kTwipsPerPixel, 860 * kTwipsPerPixel,
                                  620 * kTwipsPerPixel};
constexpr std::size_t kMostFaultsShown = 8;
// What is seen of a sign above and below its baseline, ems.
constexpr float kSignAbove = 1;
constexpr float kSignBelow = 0.6F;

enum Tab { kContentsTab, kIndexTab, kSearchTab };

HelpBook Book;
std::vector<HelpEntry> Contents;
std::vector<HelpEntry> Index;
std::vector<HelpEntry> ShownIndex;    // what the filter leaves
std::vector<HelpPlace> PlacesOfHits;  // by row of the list of hits
std::string ReadText;                 // the help text that Book was made of
std::string ListFaults;               // what is wrong with contents and index

// Where one has been; the last ones are ahead after going back.
std::vector<HelpPlace> Trail;
std::size_t TrailAt = 0;
bool PageShown = false;

int Pixels(float twips) {
  return static_cast<int>(twips / kTwipsPerPixel);
}

// --- Reading ---

// The list beside the help text; one that cannot be read is made of the text.
std::string ReadList(const char* name, const std::string& help, std::string (*make)(std::string_view)) {
  const std::string path = ProgramFolder + name;
  if (TheFiles->Exists(path)) {
    try {
      return TheFiles->ReadWhole(path);
    } catch (const Failure& failure) {
      ListFaults += std::string(failure.what()) + " ";
    }
  }
  return make(help);
}

// Whether a list is of another text: it is never made anew while it is there.
bool IsStale(const std::vector<HelpEntry>& entries, std::size_t expected) {
  return entries.size() != expected || std::ranges::any_of(entries, [](const HelpEntry& entry) {
           HelpPlace place;
           return !FindEntry(Book, entry, place) || place.page != entry.page;
         });
}

void CheckLists(const std::string& help) {
  const bool contents = IsStale(Contents, ReadHelpContents(ContentsOfHelp(help)).size());
  const bool index = IsStale(Index, ReadHelpIndex(IndexOfHelp(help)).size());
  if (!contents && !index) return;
  const std::string names = contents && index ? "QRX.HCT and QRX.HIX" : contents ? "QRX.HCT" : "QRX.HIX";
  ListFaults += "Of another help text: " + names + ". Delete that and start the program again. ";
}

void FilterIndex() {
  const std::vector<std::string> words = WordsOfQuery(HelpParts.filter->Text());
  ShownIndex.clear();
  std::vector<List::Row> rows;
  for (const HelpEntry& entry : Index) {
    const std::string upperText = UpperCase(entry.text);
    const bool shown = std::ranges::all_of(
        words, [&](const std::string& word) { return upperText.find(word) != std::string::npos; });
    if (!shown) continue;
    ShownIndex.push_back(entry);
    rows.push_back({.text = entry.text});
  }
  HelpParts.index->SetRows(rows);
}

void ShowLists() {
  std::vector<List::Row> rows;
  rows.reserve(Contents.size());
  for (const HelpEntry& entry : Contents) rows.push_back({.text = entry.text, .level = entry.level});
  HelpParts.contents->SetRows(rows);
  FilterIndex();
}

// Reads the three files anew where the text is another than the last time.
void ReadBook() {
  const std::string help = TheFiles->ReadWhole(ProgramFolder + "QRX.HLP");
  if (PageShown && help == ReadText) return;
  ReadText = help;
  Book = ReadHelpBook(help, HelpPageStarts);
  ListFaults.clear();
  const std::string contents = ReadList("QRX.HCT", help, ContentsOfHelp);
  const std::string index = ReadList("QRX.HIX", help, IndexOfHelp);
  Contents = ReadHelpContents(contents);
  Index = ReadHelpIndex(index);
  CheckLists(help);
  ShowLists();
}

// --- Showing ---

void ShowFoot(const std::string& text) {
  HelpParts.note->SetText(text.empty() ? ListFaults : text);
}

std::vector<TextBlock> BlocksToShow(const HelpPage& page) {
  std::vector<TextBlock> blocks = page.blocks;
  for (TextBlock& block : blocks) {
    if (block.kind == TextBlock::Kind::Picture) block.lines[0][0].text.insert(0, ProgramFolder);
  }
  for (std::size_t i = 0; i < page.faults.size() && i < kMostFaultsShown; ++i) {
    blocks.push_back({TextBlock::Kind::Note, 0, {{{.text = page.faults[i]}}}});
  }
  return blocks;
}

// The entry of the contents that stands last before a place.
int RowOf(const HelpPlace& place) {
  int row = -1;
  for (std::size_t i = 0; i < Contents.size(); ++i) {
    HelpPlace at;
    if (!FindEntry(Book, Contents[i], at) || at.page != place.page) continue;
    if (row < 0 || at.at.block <= place.at.block) row = static_cast<int>(i);
  }
  return row;
}

void ShowPlace(const HelpPlace& place) {
  const HelpPage& page = Book.pages[static_cast<std::size_t>(place.page)];
  HelpParts.page->Show(BlocksToShow(page));
  HelpParts.page->GoTo(place.at);
  HelpWindow->SetTitle(page.title + " - " + kTitle);
  HelpParts.contents->Choose(RowOf(place));
  HelpParts.back->SetEnabled(TrailAt > 0);
  HelpParts.forward->SetEnabled(TrailAt + 1 < Trail.size());
  PageShown = true;
  ShowFoot("");
}

// Keeps where the page is scrolled to, so that one comes back to that.
void NoteTop() {
  if (PageShown && TrailAt < Trail.size()) Trail[TrailAt].at = HelpParts.page->Top();
}

void GoTo(const HelpPlace& place) {
  NoteTop();
  const bool same = PageShown && TrailAt < Trail.size() && Trail[TrailAt].page == place.page &&
                    Trail[TrailAt].at == place.at;
  if (!same) {
    Trail.resize(Trail.empty() ? 0 : TrailAt + 1);
    Trail.push_back(place);
    TrailAt = Trail.size() - 1;
  }
  ShowPlace(place);
}

void GoBack() {
  if (TrailAt == 0) return;
  NoteTop();
  ShowPlace(Trail[--TrailAt]);
}

void GoForward() {
  if (TrailAt + 1 >= Trail.size()) return;
  NoteTop();
  ShowPlace(Trail[++TrailAt]);
}

void GoToEntry(const HelpEntry& entry) {
  HelpPlace place;
  if (FindEntry(Book, entry, place)) {
    GoTo(place);
    return;
  }
  // What the list says is nowhere: the page it names is the nearest there is.
  const bool isPage = entry.page >= 0 && entry.page < static_cast<int>(Book.pages.size());
  if (isPage) GoTo({entry.page, {}});
  ShowFoot("The help text has no heading \"" + entry.text + "\". " + ListFaults);
}

void GoToLink(const std::string& link) {
  HelpPlace place;
  if (PlaceOfLink(Book, link, place)) GoTo(place);
}

void Search() {
  const std::string query = HelpParts.query->Text();
  std::vector<List::Row> rows;
  PlacesOfHits.clear();
  for (const HelpHit& hit : SearchHelp(Book, query)) {
    rows.push_back({Book.pages[static_cast<std::size_t>(hit.page)].title, 0, true});
    PlacesOfHits.push_back({hit.page, {}});
    for (const HelpHit::Line& line : hit.lines) {
      rows.push_back({.text = line.excerpt, .level = 1});
      PlacesOfHits.push_back({hit.page, line.at});
    }
  }
  HelpParts.hits->SetRows(rows);
  const bool nothing = rows.empty() && !WordsOfQuery(query).empty();
  ShowFoot(nothing ? "The words \"" + query + "\" stand together on no page." : "");
}

void GoToHit(int row) {
  GoTo(PlacesOfHits[static_cast<std::size_t>(row)]);
  HelpParts.page->Mark(WordsOfQuery(HelpParts.query->Text()));
}

void FindOnPage(bool backwards) {
  const std::string text = HelpParts.find->Text();
  if (text.empty()) {
    HelpParts.find->Focus();
    return;
  }
  const bool found = HelpParts.page->Find(text, backwards);
  ShowFoot(found ? "" : "\"" + text + "\" is not on this page. Search goes through all pages.");
}

// The characters of a sign as print shows them.
void PaintSign(const std::string& name, float em, float ratio, Painter& painter) {
  int font = 0;
  int code = 0;
  if (!SignOfName(name, font, code)) return;
  View view;
  view.scale = 1;
  view.ratio = ratio;
  view.printed = true;
  // Accents lie around their origin, and tall signs go beyond what is seen of a line.
  const Box ink = InkOfCharacter(code, static_cast<std::int16_t>(font));
  const float size = em * std::min(1.0F, (kSignAbove + kSignBelow) / (ink.bottom - ink.top));
  const float y =
      std::max(-kSignAbove * em - ink.top * size, std::min(0.0F, kSignBelow * em - ink.bottom * size));
  const Point origin{std::max(0.0F, -ink.left * size), y};
  RunPainter signs(painter, view);
  const std::string run(1, static_cast<char>(code));
  signs.Paint({.text = run, .font = static_cast<std::int16_t>(font), .size = size, .origin = origin});
  signs.Flush();
}

// --- The window ---

void ShowTab(int tab) {
  HelpParts.tabs->Choose(tab);
  HelpParts.contents->SetVisible(tab == kContentsTab);
  HelpParts.index->SetVisible(tab == kIndexTab);
  HelpParts.filter->SetVisible(tab == kIndexTab);
  HelpParts.hits->SetVisible(tab == kSearchTab);
  HelpParts.query->SetVisible(tab == kSearchTab);
}

void ChooseTab(int tab) {
  ShowTab(tab);
  if (tab == kContentsTab) HelpParts.contents->Focus();
  if (tab == kIndexTab) HelpParts.filter->Focus();
  if (tab == kSearchTab) HelpParts.query->Focus();
}

void LayOut() {
  constexpr int kGap = 6;
  const int width = Pixels(HelpWindow->InnerWidth());
  const int height = Pixels(HelpWindow->InnerHeight());
  const int row = HelpWindow->RowHeight();
  int x = kGap;
  const auto place = [&](Control* control, int boxWidth) {
    control->SetPlace({x, kGap, boxWidth, row});
    x += boxWidth + kGap / 2;
  };
  place(HelpParts.back, row * 2);
  place(HelpParts.forward, row * 5 / 2);
  place(HelpParts.smaller, row * 4 / 3);
  place(HelpParts.larger, row * 4 / 3);
  place(HelpParts.print, row * 2);
  x += kGap;
  const int next = row * 2;
  place(HelpParts.find, std::clamp(width - x - next - 2 * kGap, row, row * 9));
  place(HelpParts.findNext, next);

  const int top = row + 2 * kGap;
  const int foot = height - row;
  const int panel = std::clamp(width / 3, row * 9, row * 12);
  const int below = top + row + kGap / 2;
  HelpParts.tabs->SetPlace({kGap, top, panel, row});
  HelpParts.contents->SetPlace({kGap, below, panel, foot - below});
  for (TextBox* box : {HelpParts.filter, HelpParts.query}) box->SetPlace({kGap, below, panel, row});
  const int list = below + row + kGap / 2;
  for (List* rows : {HelpParts.index, HelpParts.hits}) rows->SetPlace({kGap, list, panel, foot - list});
  HelpParts.page->SetPlace({panel + 2 * kGap, top, width - panel - 3 * kGap, foot - top});
  HelpParts.note->SetPlace({kGap, foot, width - 2 * kGap, row});
}

void AddButtons() {
  const auto add = [](const char* caption, const char* toolTip, std::function<void()> click) {
    Button* button = HelpWindow->AddButton(caption, {}, toolTip);
    button->OnClick = std::move(click);
    return button;
  };
  HelpParts.back = add("Back", "Back (Alt+Left)", GoBack);
  HelpParts.forward = add("Forward", "Forward (Alt+Right)", GoForward);
  HelpParts.smaller = add("A-", "Smaller text (Ctrl+-)", [] { HelpParts.page->ChangeTextSize(-1); });
  HelpParts.larger = add("A+", "Larger text (Ctrl++)", [] { HelpParts.page->ChangeTextSize(1); });
  HelpParts.print = add("Print", "Print this page (Ctrl+P)", [] {
    HelpParts.page->Print("Kelvane - " + Book.pages[static_cast<std::size_t>(Trail[TrailAt].page)].title);
  });
  HelpParts.find = HelpWindow->AddPlainTextBox("Find on this page (Ctrl+F)");
  HelpParts.find->OnEnter = [] { FindOnPage(false); };
  HelpParts.findNext = add("Find", "Find on this page (F3)", [] { FindOnPage(false); });
}

void AddPanel() {
  HelpParts.tabs = HelpWindow->AddTabs("What the list shows");
  for (const char* caption : {"Contents", "Index", "Search"}) HelpParts.tabs->AddTab(caption);
  HelpParts.tabs->OnChosen = ChooseTab;
  HelpParts.filter = HelpWindow->AddPlainTextBox("Words of the index");
  HelpParts.filter->OnChange = FilterIndex;
  HelpParts.query = HelpWindow->AddPlainTextBox("Words to search for");
  HelpParts.query->OnChange = Search;
  HelpParts.contents = HelpWindow->AddList("Contents");
  HelpParts.contents->OnChosen = [](int row) { GoToEntry(Contents[static_cast<std::size_t>(row)]); };
  HelpParts.index = HelpWindow->AddList("Index");
  HelpParts.index->OnChosen = [](int row) { GoToEntry(ShownIndex[static_cast<std::size_t>(row)]); };
  HelpParts.hits = HelpWindow->AddList("Pages found");
  HelpParts.hits->OnChosen = GoToHit;
  // From the box to what it found, and straight to the best of it.
  HelpParts.filter->OnEnter = [] {
    if (!ShownIndex.empty()) GoToEntry(ShownIndex.front());
  };
  HelpParts.query->OnEnter = [] {
    if (!PlacesOfHits.empty()) GoToHit(0);
  };
}

void AddKeys() {
  HelpWindow->AddShortcut("Alt+Left", GoBack);
  HelpWindow->AddShortcut("Alt+Right", GoForward);
  HelpWindow->AddShortcut("Ctrl++", HelpParts.larger->OnClick);
  HelpWindow->AddShortcut("Ctrl+-", HelpParts.smaller->OnClick);
  HelpWindow->AddShortcut("Ctrl+0", [] { HelpParts.page->ChangeTextSize(0); });
  HelpWindow->AddShortcut("Ctrl+P", HelpParts.print->OnClick);
  HelpWindow->AddShortcut("Ctrl+F", [] {
    HelpParts.find->Focus();
    HelpParts.find->SelectAll();
  });
  HelpWindow->AddShortcut("F3", [] { FindOnPage(false); });
  HelpWindow->AddShortcut("Shift+F3", [] { FindOnPage(true); });
  HelpWindow->AddShortcut("F1", [] { ShowHelpAt("The help window"); });
}

void Build() {
  HelpWindow = TheToolkit->NewSeparateWindow();
  HelpWindow->SetTitle(kTitle);
  AddButtons();
  AddPanel();
  HelpParts.page = HelpWindow->AddTextView("Page of the help");
  HelpParts.page->OnLink = GoToLink;
  HelpParts.page->OnPaintPicture = PaintSign;
  HelpParts.page->KeepTextSizeAs("help/textSize");
  HelpParts.note = HelpWindow->AddLabel("");
  AddKeys();
  const auto hide = [] { HelpWindow->Hide(); };
  HelpWindow->OnEscape = hide;
  for (TextBox* box : {HelpParts.find, HelpParts.filter, HelpParts.query}) box->OnEscape = hide;
  HelpWindow->OnResize = LayOut;
  HelpWindow->KeepPlaceAs("help/place", kFirstPlace);
  ShowTab(kContentsTab);
}

void Open() {
  if (HelpWindow == nullptr) Build();
  ReadBook();
  HelpWindow->Show();
}

}  // namespace

void ResetHelpWindow() {
  HelpWindow = nullptr;
  HelpParts = {};
  Book = {};
  Contents.clear();
  Index.clear();
  ShownIndex.clear();
  PlacesOfHits.clear();
  ReadText.clear();
  ListFaults.clear();
  Trail.clear();
  TrailAt = 0;
  PageShown = false;
}

void ShowHelp() {
  Open();
  if (PageShown) return;
  // What stands before the first page is no page of its own unless there is no other.
  GoTo({Book.pages.size() > 1 ? 1 : 0, {}});
  HelpParts.page->Focus();
}

void ShowHelpAt(const std::string& heading) {
  Open();
  HelpPlace place;
  if (FindHelpHeading(Book, heading, place)) {
    GoTo(place);
    HelpParts.page->Focus();
    return;
  }
  if (!PageShown) GoTo({Book.pages.size() > 1 ? 1 : 0, {}});
  ShowTab(kSearchTab);
  HelpParts.query->SetText(heading);
  Search();
}

void ShowHelpOfMessage(const std::string& message, const std::string& otherwise) {
  Open();
  HelpPlace best;
  std::size_t longest = 0;
  for (std::size_t page = 0; page < Book.pages.size(); ++page) {
    const std::vector<TextBlock>& blocks = Book.pages[page].blocks;
    for (std::size_t block = 1; block < blocks.size(); ++block) {
      if (blocks[block].kind != TextBlock::Kind::Heading) continue;
      const std::string heading = WordsOf(blocks[block].lines.front());
      const std::string start = heading.substr(0, heading.find("..."));
      if (start.size() <= longest || start.size() < 8 || !message.starts_with(start)) continue;
      longest = start.size();
      best = {static_cast<int>(page), {static_cast<int>(block), 0}};
    }
  }
  if (longest == 0) {
    ShowHelpAt(otherwise);
  } else {
    GoTo(best);
    HelpParts.page->Focus();
  }
}

}  // namespace kelvane
