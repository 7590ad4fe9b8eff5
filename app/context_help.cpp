#include "app/context_help.h"

#include <algorithm>
#include <iterator>
#include <span>

#include "editing/cursor.h"
#include "help/help_window.h"

namespace kelvane {

namespace {

// Controls by the beginnings of their accessible names: the first one that fits counts.
struct Topic {
  const char* name;
  const char* heading;
};
constexpr Topic kOfEditor[] = {
    {"Superscript", "Superscripts and subscripts"},
    {"Subscript", "Superscripts and subscripts"},
    {"Italic Su", "Superscripts and subscripts"},
    {"Back from", "Superscripts and subscripts"},
    {"Forward from", "Superscripts and subscripts"},
    {"Pg ", "Papers and pages"},
    {"Page Number", "Papers and pages"},
    {"Font Size", "Sizes"},
    {"Control Codes", "The control-code box"},
    {"OK", "The control-code box"},
    {"Select", "Select"},
    {"Draw Bezier", "Drawing lines and curves"},
    {"Draw ", "Drawing shapes"},
    {"Shape Drawing", "Shaping drawings"},
    {"Pages of", "Page overview"},
    {"Dots per inch", "Pictures"},
    {"Page", "The view"},
    {"Scroll", "The view"},
    {"Sign", "The panel of signs"},
    {"Search Signs", "The panel of signs"},
};
constexpr Topic kOfDesigner[] = {
    {"Draw", "Drawing strokes"},       {"Reverse", "Drawing strokes"}, {"Select", "Changing them"},
    {"Close", "Changing them"},        {"Split", "Changing them"},     {"Undo", "Changing them"},
    {"Redo", "Changing them"},         {"Restore", "Saving"},          {"Save", "Saving"},
    {"Fit", "Keys of the grid"},       {"Grid", "Keys of the grid"},   {"Characters", "What it shows"},
    {"Character ", "Behind the grid"},
};
struct WindowTopics {
  const char* page;
  std::span<const Topic> topics;
};
constexpr WindowTopics kWindows[] = {{kEditorPage, kOfEditor}, {kDesignerPage, kOfDesigner}};

// Dialogs by their titles, those that choose a file to read by what their button does.
constexpr Topic kDialogs[] = {{"Open", "Saving and opening"}, {"Save As", "Saving and opening"},
                              {"Print", "Printing"},          {"Export Picture", "Pictures"},
                              {"Write Text", "Plain text"},   {"Position", "Position"},
                              {"Scale", "Arranging items"},   {"Rotate", "Arranging items"},
                              {"Matrix", "Typing formulas"},  {"Move Page", "Inserting and moving pages"},
                              {"Export PDF", "PDF"},          {"Printer", "Printers"}};

}  // namespace

std::string HeadingAbout(const std::string& page, const std::string& control) {
  const auto isAnchor = [&](const char* name) { return control == name; };
  if (page == kEditorPage && std::any_of(std::begin(kAnchorNames) + 1, std::end(kAnchorNames), isAnchor))
    return "Anchors";
  for (const WindowTopics& window : kWindows) {
    if (page != window.page) continue;
    for (const Topic& topic : window.topics)
      if (control.starts_with(topic.name)) return topic.heading;
  }
  return {};
}

void AddHelpKeys(Window& window, const std::string& heading) {
  window.AddShortcut("F1", [heading] { ShowHelpAt(heading); });
  AddPointedHelpKey(window, heading);
}

void AddPointedHelpKey(Window& window, const std::string& heading) {
  window.AddShortcut("Shift+F1", [&window, heading] {
    const std::string pointed = HeadingAbout(heading, window.NameUnderPointer());
    ShowHelpAt(pointed.empty() ? heading : pointed);
  });
}

void AddHelpOfDialogs() {
  TheDialogs->OnHelp = [](const std::string& about) {
    for (const Topic& dialog : kDialogs)
      if (about == dialog.name || about.starts_with(dialog.name + std::string(" - ")))
        return ShowHelpAt(dialog.heading);
    ShowHelpOfMessage(about, "Messages");
  };
}

}  // namespace kelvane
