#include "app/picture_window.h"

#include <functional>
#include <string>

#include "app/context_help.h"
#include "app/menus.h"
#include "document/numbers.h"
#include "editing/notes.h"
#include "editing/selection.h"
#include "output/pictures.h"
#include "papers/paper_commands.h"
#include "platform/files.h"
#include "typography/view.h"

namespace kelvane {

Window* PictureWindow = nullptr;

namespace {

// Pixels.
constexpr int kWidth = 380;
constexpr int kEdge = 10;
constexpr int kLabel = 96;
constexpr int kChoice = 100;
constexpr int kGap = 4;

// Two buttons, of which the one that holds is down.
struct Pair {
  bool PictureChoice::*choice = nullptr;
  Button* off = nullptr;
  Button* on = nullptr;
};

struct Parts {
  Pair part;
  Pair format;
  Pair ground;
  TextBox* resolution = nullptr;
  Label* tells = nullptr;
  Button* exports = nullptr;
};
Parts Shown;
PictureChoice Chosen;

void Close() {
  PictureWindow->Hide();
  Picture1->Focus();
}

// What would come of the choices, or why nothing would.
void ShowChoices() {
  Chosen.resolution = CountOf(Shown.resolution->Text());
  for (const Pair& pair : {Shown.part, Shown.format, Shown.ground}) {
    pair.off->SetDown(!(Chosen.*pair.choice));
    pair.on->SetDown(Chosen.*pair.choice);
  }
  Shown.part.on->SetEnabled(AnythingSelected());
  const std::string refusal = RefusalOfPicture(Chosen);
  Shown.exports->SetEnabled(refusal.empty());
  if (!refusal.empty()) return Shown.tells->SetText(refusal);
  const auto [width, height] = SizeOfPicture(Chosen);
  Shown.tells->SetText(Chosen.svg ? "Lines and text, sharp at any size"
                                  : std::to_string(width) + " x " + std::to_string(height) + " pixels");
}

void Export() {
  ShowChoices();
  if (!RefusalOfPicture(Chosen).empty()) return Shown.resolution->SelectAll();
  const std::string path = ExportPicture(Chosen);
  if (path.empty()) return;
  Close();
  ShowNote("Written: " + MachinePath(path));
}

Button* AddButton(const char* caption, const char* toolTip, const Place& place, std::function<void()> act) {
  Button* button = PictureWindow->AddButton(caption, {}, toolTip);
  button->SetPlace(place);
  button->OnClick = std::move(act);
  return button;
}

Pair AddPair(int top, int height, const char* name, bool PictureChoice::*choice, const char* off,
             const char* on, const char* offTip, const char* onTip) {
  PictureWindow->AddLabel(name)->SetPlace({kEdge, top, kLabel, height});
  const auto add = [&](const char* caption, const char* toolTip, bool value) {
    const int left = kEdge + kLabel + (value ? kChoice + kGap : 0);
    return AddButton(caption, toolTip, {left, top, kChoice, height}, [choice, value] {
      Chosen.*choice = value;
      ShowChoices();
    });
  };
  return {choice, add(off, offTip, false), add(on, onTip, true)};
}

void Build() {
  PictureWindow = TheToolkit->NewWindow(false);
  PictureWindow->SetTitle("Export Picture");
  const int row = PictureWindow->RowHeight();
  const auto top = [row](int number) { return kEdge + number * (row + kGap); };
  Shown.part = AddPair(top(0), row, "What", &PictureChoice::selection, "Page", "Selection", "The Whole Page",
                       "What Is Selected");
  Shown.format = AddPair(top(1), row, "Format", &PictureChoice::svg, "PNG", "SVG", "A Picture Made of Pixels",
                         "A Drawing Made of Lines and Text");
  Shown.ground = AddPair(top(2), row, "Background", &PictureChoice::transparent, "White", "Transparent",
                         "On White Paper", "On Whatever Lies below the Picture");
  PictureWindow->AddLabel("Dots per inch")->SetPlace({kEdge, top(3), kLabel, row});
  Shown.resolution = PictureWindow->AddPlainTextBox("Dots per inch, 72 to 1200");
  Shown.resolution->SetPlace({kEdge + kLabel, top(3), 56, row});
  Shown.resolution->OnChange = ShowChoices;
  Shown.resolution->OnEnter = Export;
  Shown.resolution->OnEscape = Close;
  Shown.tells = PictureWindow->AddLabel("");
  Shown.tells->SetPlace({kEdge + kLabel + 62, top(3), kWidth - 2 * kEdge - kLabel - 62, row});
  const int buttons = top(4) + kGap;
  Shown.exports = AddButton("Export...", "Choose a File and Write the Picture",
                            {kWidth - kEdge - 184, buttons, 90, row}, Export);
  AddButton("Cancel", "Close the Window (Esc)", {kWidth - kEdge - 90, buttons, 90, row}, Close);
  PictureWindow->OnEscape = Close;
  PictureWindow->OnCloseRequest = [] {
    Close();
    return true;
  };
  AddHelpKeys(*PictureWindow, "Pictures");
}

// In the middle of the editor.
void PlaceInMiddle() {
  const int row = PictureWindow->RowHeight();
  const float width = kWidth * kTwipsPerPixel;
  const float height = static_cast<float>(2 * kEdge + 5 * (row + kGap) + kGap) * kTwipsPerPixel;
  const WindowPlace editor = Form1->GetWindowPlace();
  PictureWindow->SetWindowPlace(
      {editor.left + (editor.width - width) / 2, editor.top + (editor.height - height) / 2, width, height});
}

}  // namespace

void ResetPictureWindow() {
  PictureWindow = nullptr;
  Shown = {};
}

void ShowPictureWindow() {
  if (!PictureWindow) Build();
  if (!PictureWindow->Visible()) PlaceInMiddle();
  Chosen = LastPictureChoice;
  Chosen.selection = AnythingSelected();
  Shown.resolution->SetText(std::to_string(Chosen.resolution));
  ShowChoices();
  PictureWindow->Show();
  Shown.resolution->Focus();
  Shown.resolution->SelectAll();
}

}  // namespace kelvane
