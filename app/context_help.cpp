#include "app/context_help.h"

#include <algorithm>
#include <iterator>

#include "editing/cursor.h"
#include "help/help_window.h"

namespace kelvane {

namespace {

// Controls by the beginnings of their accessible names: the first one that fits counts.
struct Topic {
  const char* name;
  const char* heading;
};
constexpr Topic kTopics[] = {
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
    {"Macro", "Macros"},
    {"Definition", "Macros"},
};

// File dialogs by their titles.
constexpr Topic kDialogs[] = {
    {"Open", "Saving and opening"}, {"Save As", "Saving and opening"}, {"Export Picture", "Pictures"}};

void ShowHelpOfPointed(const Window& window, const std::string& otherwise) {
  const std::string heading = HeadingAbout(window.NameUnderPointer());
  ShowHelpAt(heading.empty() ? otherwise : heading);
}

}  // namespace

std::string HeadingAbout(const std::string& control) {
  const auto isAnchor = [&](const char* name) { return control == name; };
  if (std::any_of(std::begin(kAnchorNames) + 1, std::end(kAnchorNames), isAnchor)) return "Anchors";
  for (const Topic& topic : kTopics)
    if (control.starts_with(topic.name)) return topic.heading;
  return {};
}

void AddHelpKeys(Window& window, const std::string& heading) {
  window.AddShortcut("F1", [heading] { ShowHelpAt(heading); });
  AddPointedHelpKey(window, heading);
}

void AddPointedHelpKey(Window& window, const std::string& heading) {
  window.AddShortcut("Shift+F1", [&window, heading] { ShowHelpOfPointed(window, heading); });
}

void AddHelpOfDialogs() {
  TheDialogs->OnHelp = [](const std::string& about) {
    for (const Topic& dialog : kDialogs)
      if (about == dialog.name) return ShowHelpAt(dialog.heading);
    ShowHelpOfMessage(about, "Messages");
  };
}

}  // namespace kelvane
