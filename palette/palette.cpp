#include "palette/palette.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "document/lines.h"
#include "document/numbers.h"
#include "editing/cursor.h"
#include "editing/keyboard.h"
#include "editing/notes.h"
#include "editing/sign_entry.h"
#include "palette/palette_items.h"
#include "papers/paper_commands.h"
#include "platform/files.h"
#include "typography/colours.h"
#include "typography/curves.h"
#include "typography/item_boxes.h"
#include "typography/metrics.h"
#include "typography/run_painter.h"
#include "typography/zoom.h"

namespace kelvane {

Canvas* PaletteCanvas;
TextBox* SearchBox;

namespace {

// Pixels.
constexpr int kUsualWidth = 200;
constexpr int kLeastWidth = 110;
constexpr int kMostWidth = 600;
constexpr int kSearchHeight = 24;
constexpr float kCell = 32;
constexpr float kHeading = 20;
constexpr float kHeadingText = 12;
constexpr float kSignText = 17;
constexpr float kMostSign = 28;  // a wider or taller one is set smaller
constexpr float kEdge = 5;       // dragging it changes the width
constexpr float kThumb = 8;
constexpr float kNotch = 64;
constexpr std::int16_t kHeadingFace = 5;

constexpr std::size_t kMostRecent = 14;

bool Shown;
int Width = kUsualWidth;
std::vector<const Sign*> Recent;

// What is laid out: cells by item, and headings.
struct Cell {
  const PaletteItem* item;
  float left;
  float top;
};
struct Heading {
  const std::string* title;
  float top;
};
std::vector<PaletteSection>
    Found;  // the sections that are made anew: recently used, or what was searched for
std::vector<Cell> Cells;
std::vector<Heading> Headings;
float Height;  // of all of it
float Scroll;
std::size_t Chosen;

enum class Drag { None, Edge, Thumb };
Drag Dragging = Drag::None;
float DragStart;

float CanvasWidth() {
  return static_cast<float>(PaletteCanvas->PixelWidth());
}
float CanvasHeight() {
  return static_cast<float>(PaletteCanvas->PixelHeight());
}

void AddSection(const PaletteSection& section) {
  if (section.items.empty()) return;
  Headings.push_back({&section.title, Height});
  Height += kHeading;
  const auto columns =
      std::max<std::size_t>(1, static_cast<std::size_t>((CanvasWidth() - kEdge - kThumb) / kCell));
  for (std::size_t i = 0; i < section.items.size(); ++i) {
    Cells.push_back({&section.items[i], kEdge + static_cast<float>(i % columns) * kCell,
                     Height + static_cast<float>(i / columns) * kCell});
  }
  Height += static_cast<float>((section.items.size() + columns - 1) / columns) * kCell;
}

void ScrollTo(float top) {
  Scroll = std::clamp(top, 0.0F, std::max(Height - CanvasHeight(), 0.0F));
  PaletteCanvas->SetCoordinates(0, Scroll, CanvasWidth(), CanvasHeight());
  PaletteCanvas->Invalidate(Layer::Page);
  PaletteCanvas->Invalidate(Layer::Overlay);
}

// Lays everything out for the text of the search box.
void LayOutItems() {
  Cells.clear();
  Headings.clear();
  Found.clear();
  Height = 0;
  Chosen = 0;
  if (PaletteCanvas->PixelWidth() <= 0 || PaletteCanvas->PixelHeight() <= 0) return;
  const std::string wanted = SearchBox->Text();
  if (!wanted.empty()) {
    Found.push_back(FindItems(wanted));
    AddSection(Found.back());
  } else {
    Found.push_back({"Recently used", {}});
    for (const Sign* sign : Recent) Found.back().items.push_back(ItemOf(*sign));
    AddSection(Found.back());
    for (const PaletteSection& section : PaletteSections()) AddSection(section);
  }
  ScrollTo(Scroll);
}

std::string Tip(const PaletteItem& item) {
  return item.name + " - " + item.how;
}

std::optional<std::size_t> CellAt(float x, float y) {
  for (std::size_t i = 0; i < Cells.size(); ++i) {
    const Cell& cell = Cells[i];
    if (x >= cell.left && x < cell.left + kCell && y >= cell.top && y < cell.top + kCell) return i;
  }
  return std::nullopt;
}

void FocusPage() {
  if (Picture1) Picture1->Focus();
}

void Remember(const Sign& sign) {
  std::erase(Recent, &sign);
  Recent.insert(Recent.begin(), &sign);
  if (Recent.size() > kMostRecent) Recent.resize(kMostRecent);
}

void Insert(const PaletteItem& item) {
  if (CursorMode >= 0 || AnchorOfMode(CursorMode) == 0) {
    ShowNote("Choose an anchor and click on the page: signs go to the cursor point");
    return;
  }
  FocusPage();
  if (item.bracket) {
    AskTallBracket(*item.bracket);
    return;
  }
  if (item.sign) {
    InsertSign(*item.sign);
    const Sign& sign = *item.sign;  // the item goes when everything is laid out anew
    Remember(sign);
    if (SearchBox->Text().empty()) LayOutItems();
  } else {
    InsertCodes(std::string(1, static_cast<char>(item.code)));
  }
  const Point caret = EndsOfRun().caret;
  BringIntoView(caret.x, caret.y);
}

// ---- Painting ----

void PaintItem(Painter& painter, const View& view, const Cell& cell) {
  const PaletteItem& item = *cell.item;
  RunPainter runs(painter, view);
  const bool mark = item.sign && item.sign->kind == SignClass::Accent && item.sign->math0 != 0;
  const bool space = item.sign && item.sign->kind == SignClass::Space;
  const Box ink = InkBoxOf(item.picture, 0, kSignText, 3, {});
  const float whole = MeasureRun(item.picture, 0, kSignText);
  const float fit = kMostSign / std::max({kMostSign, whole, ink.bottom - ink.top});
  const float size = kSignText * fit;
  const float width = whole * fit;
  const float middle = cell.left + kCell / 2;
  float base = cell.top + kCell / 2 + 0.27F * size;
  // One that stands higher or hangs lower than its cell is set in the middle.
  if (base + ink.top * fit < cell.top || base + ink.bottom * fit > cell.top + kCell)
    base = cell.top + kCell / 2 - (ink.top + ink.bottom) / 2 * fit;
  const float left = middle - width / 2;
  if (mark) {
    const float letter = MeasureRun("x", 2, size);
    runs.Paint({"x", 2, size, {middle - letter / 2, base}, kLightGrey});
  }
  if (space) {
    const float from = std::min(left, left + width) - 1;
    const Pen pen{PaletteColour(kDarkGrey), 1, true};
    for (const float x : {from, from + std::abs(width) + 2})
      painter.DrawLine({x, cell.top + 9}, {x, cell.top + kCell - 9}, pen);
  }
  runs.Paint({item.picture, 0, size, {left, base}, kBlack});
}

void PaintSigns(Painter& painter, const Box& area) {
  painter.FillBox({0, Scroll, CanvasWidth(), Scroll + CanvasHeight()}, PaletteColour(kWhite));
  View view;
  view.area = area;
  view.ratio = PaletteCanvas->PixelRatio();
  view.printed = true;
  RunPainter headings(painter, view);
  for (const Heading& heading : Headings) {
    const float base = heading.top + kHeading - 6;
    headings.Paint({*heading.title, kHeadingFace, kHeadingText, {kEdge + 2, base}, kDarkGrey});
  }
  for (const Cell& cell : Cells)
    if (cell.top < area.bottom && cell.top + kCell > area.top) PaintItem(painter, view, cell);
  painter.DrawLine({0.5F, Scroll}, {0.5F, Scroll + CanvasHeight()}, {PaletteColour(kLightGrey), 1, true});
  if (Height <= CanvasHeight()) return;
  const float part = CanvasHeight() / Height;
  const float top = Scroll + Scroll * part;
  painter.FillBox({CanvasWidth() - kThumb + 2, top, CanvasWidth() - 1, top + CanvasHeight() * part},
                  PaletteColour(kLightGrey));
}

void PaintChosen(Painter& painter) {
  if (Chosen >= Cells.size()) return;
  const Cell& cell = Cells[Chosen];
  painter.StrokePath(FrameOf({cell.left + 1, cell.top + 1, cell.left + kCell - 1, cell.top + kCell - 1}),
                     {PaletteColour(kBlue), 1});
}

// ---- Keys and mouse ----

void Choose(std::size_t index) {
  Chosen = index;
  PaletteCanvas->Invalidate(Layer::Overlay);
  const Cell& cell = Cells[index];
  PaletteCanvas->SetToolTip(Tip(*cell.item));
}

// The cell in the next row of cells up or down that is nearest to the side.
std::size_t Vertical(bool down) {
  const Cell& from = Cells[Chosen];
  std::optional<std::size_t> best;
  for (std::size_t i = 0; i < Cells.size(); ++i) {
    const Cell& cell = Cells[i];
    if (down ? cell.top <= from.top : cell.top >= from.top) continue;
    const auto nearer = [&](const Cell& other) {
      const float gap = std::abs(cell.top - from.top) - std::abs(other.top - from.top);
      return gap < 0 || (gap == 0 && std::abs(cell.left - from.left) < std::abs(other.left - from.left));
    };
    if (!best || nearer(Cells[*best])) best = i;
  }
  return best.value_or(Chosen);
}

void ChooseByKey(std::size_t index) {
  Choose(index);
  ShowNote(Tip(*Cells[index].item));
  const Cell& cell = Cells[index];
  if (cell.top - kHeading < Scroll) ScrollTo(cell.top - kHeading);
  if (cell.top + kCell > Scroll + CanvasHeight()) ScrollTo(cell.top + kCell - CanvasHeight());
}

void Key(int code) {
  if (code == kKeyEscape) FocusPage();
  if (Cells.empty()) return;
  switch (code) {
    case kKeyLeft:
      return ChooseByKey(Chosen - std::min<std::size_t>(Chosen, 1));
    case kKeyRight:
      return ChooseByKey(std::min(Chosen + 1, Cells.size() - 1));
    case kKeyUp:
    case kKeyDown:
      return ChooseByKey(Vertical(code == kKeyDown));
    case kKeyHome:
      return ChooseByKey(0);
    case kKeyEnd:
      return ChooseByKey(Cells.size() - 1);
    case kKeyEnter:
    case ' ':
      return Insert(*Cells[Chosen].item);
    default:
      return;
  }
}

void Down(const MouseEvent& event) {
  if (event.button != MouseButton::Left) return;
  Dragging = event.pixelX < kEdge                     ? Drag::Edge
             : event.pixelX >= CanvasWidth() - kThumb ? Drag::Thumb
                                                      : Drag::None;
  DragStart = Dragging == Drag::Edge ? event.pixelX : event.pixelY;
}

void Move(const MouseEvent& event) {
  if (Dragging == Drag::Edge) {
    Width = std::clamp(Width - static_cast<int>(event.pixelX - DragStart), kLeastWidth, kMostWidth);
    if (Form1 && Form1->OnResize) Form1->OnResize();
  } else if (Dragging == Drag::Thumb) {
    ScrollTo(Scroll + (event.pixelY - DragStart) * Height / CanvasHeight());
    DragStart = event.pixelY;
  } else if (const auto cell = CellAt(event.x, event.y)) {
    Choose(*cell);
  } else {
    PaletteCanvas->SetToolTip("");
  }
}

void Up(const MouseEvent& event) {
  const bool click = Dragging == Drag::None && event.button == MouseButton::Left;
  Dragging = Drag::None;
  const auto cell = CellAt(event.x, event.y);
  if (click && cell) Insert(*Cells[*cell].item);
}

constexpr char kStateFile[] = "palette";

}  // namespace

void ResetPalette() {
  ResetTallBrackets();
  PaletteCanvas = nullptr;
  SearchBox = nullptr;
  Shown = false;
  Width = kUsualWidth;
  Scroll = 0;
  Recent.clear();
  Cells.clear();
  Headings.clear();
}

void BuildPalette(Window& window) {
  SearchBox = window.AddTextBox("Search Signs", false);
  SearchBox->OnChange = [] {
    Scroll = 0;
    LayOutItems();
  };
  SearchBox->OnEnter = [] {
    if (!Cells.empty()) Insert(*Cells[Chosen].item);
  };
  SearchBox->OnEscape = FocusPage;
  SearchBox->OnDown = [] { PaletteCanvas->Focus(); };
  PaletteCanvas = window.AddCanvas();
  PaletteCanvas->SetName("Signs");
  PaletteCanvas->OnPaint = [](Layer layer, const Box& area) {
    layer == Layer::Page ? PaintSigns(*PaletteCanvas, area) : PaintChosen(*PaletteCanvas);
  };
  PaletteCanvas->OnKeyPress = Key;
  PaletteCanvas->OnMouseDown = Down;
  PaletteCanvas->OnMouseMove = Move;
  PaletteCanvas->OnMouseUp = Up;
  PaletteCanvas->OnWheel = [](const WheelEvent& event) { ScrollTo(Scroll - event.steps * kNotch); };
}

void TogglePalette() {
  Shown = !Shown;
  if (Form1->OnResize) Form1->OnResize();
  if (Shown) {
    SearchBox->Focus();
    SearchBox->SelectAll();
  } else {
    FocusPage();
  }
}

bool PaletteShown() {
  return Shown;
}

int PaletteWidth() {
  return Shown ? Width : 0;
}

void PlacePalette(const Place& place) {
  const int search = std::min(kSearchHeight, place.height);
  SearchBox->SetPlace(Shown ? Place{place.left, place.top, place.width, search} : Place{});
  Form1->SetCanvasPlace(
      PaletteCanvas,
      Shown ? Place{place.left, place.top + search, place.width, place.height - search} : Place{});
  if (Shown) LayOutItems();
}

void ReadPaletteState() {
  if (StateFolder.empty() || !TheFiles->Exists(StateFolder + kStateFile)) return;
  const std::string content = TheFiles->ReadWhole(StateFolder + kStateFile);
  std::string_view rest = content;
  while (!rest.empty()) {
    const std::string_view line = TakeLine(rest);
    const auto value = [&](std::string_view key) {
      return line.starts_with(key) ? std::optional(std::string(line.substr(key.size()))) : std::nullopt;
    };
    if (const auto width = value("width "))
      Width = std::clamp<int>(RoundToInt16(ReadSingle(*width)), kLeastWidth, kMostWidth);
    if (line == "shown") Shown = true;
    if (const auto names = value("used ")) {
      const auto table = SignTable();
      const auto sign = std::ranges::find(table, *names, [](const Sign& s) { return std::string(s.names); });
      if (sign != table.end() && Recent.size() < kMostRecent) Recent.push_back(&*sign);
    }
  }
}

void WritePaletteState() {
  if (StateFolder.empty()) return;
  std::string content = "width " + std::to_string(Width) + "\r\n";
  if (Shown) content += "shown\r\n";
  for (const Sign* sign : Recent) content += std::string("used ") + sign->names + "\r\n";
  TheFiles->MakeFolder(StateFolder);
  WriteFileSafely(StateFolder + kStateFile, content);
}

}  // namespace kelvane
