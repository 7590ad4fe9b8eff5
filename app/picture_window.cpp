#include "app/picture_window.h"

#include <functional>
#include <string>

#include "app/choice_window.h"
#include "document/numbers.h"
#include "editing/notes.h"
#include "editing/selection.h"
#include "output/pictures.h"
#include "platform/files.h"
#include "typography/view.h"

namespace kelvane {

Window* PictureWindow = nullptr;

namespace {

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
ChoiceWindow Choices;
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

Pair AddPair(int row, const char* name, bool PictureChoice::*choice, const char* off, const char* on,
             const char* offTip, const char* onTip) {
  Choices.AddLabel(row, name);
  const auto add = [&](const char* caption, const char* toolTip, bool value) {
    return Choices.AddButton(caption, toolTip, Choices.PlaceOf(row, value ? 1 : 0), [choice, value] {
      Chosen.*choice = value;
      ShowChoices();
    });
  };
  return {choice, add(off, offTip, false), add(on, onTip, true)};
}

void Build() {
  constexpr int kDigits = 56;  // pixels
  PictureWindow = Choices.Build("Export Picture", 380, 96, "Pictures");
  Shown.part = AddPair(0, "What", &PictureChoice::selection, "Page", "Selection", "The Whole Page",
                       "What Is Selected");
  Shown.format = AddPair(1, "Format", &PictureChoice::svg, "PNG", "SVG", "A Picture Made of Pixels",
                         "A Drawing Made of Lines and Text");
  Shown.ground = AddPair(2, "Background", &PictureChoice::transparent, "White", "Transparent",
                         "On White Paper", "On Whatever Lies below the Picture");
  Choices.AddLabel(3, "Dots per inch");
  Shown.resolution = PictureWindow->AddPlainTextBox("Dots per inch, 72 to 1200");
  Shown.resolution->SetPlace(Choices.PlaceOf(3, 0, kDigits));
  Shown.resolution->OnChange = ShowChoices;
  Shown.resolution->OnEnter = Export;
  Shown.resolution->OnEscape = Close;
  Shown.tells = PictureWindow->AddLabel("");
  Shown.tells->SetPlace(Choices.RestOf(3, kDigits + ChoiceWindow::kGap));
  Shown.exports = Choices.AddEnd({.top = Choices.TopOf(4) + ChoiceWindow::kGap,
                                  .exportTip = "Choose a File and Write the Picture",
                                  .exports = Export,
                                  .cancelTip = "Close the Window (Esc)",
                                  .cancel = Close,
                                  .close = Close});
}

}  // namespace

void ResetPictureWindow() {
  PictureWindow = nullptr;
  Shown = {};
}

void ShowPictureWindow() {
  if (!PictureWindow) Build();
  Chosen = LastPictureChoice;
  Chosen.selection = AnythingSelected();
  Shown.resolution->SetText(std::to_string(Chosen.resolution));
  ShowChoices();
  Choices.Show();
  Shown.resolution->Focus();
  Shown.resolution->SelectAll();
}

}  // namespace kelvane
