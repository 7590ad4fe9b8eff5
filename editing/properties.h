#pragma once

// What menus and boxes show and set: the values of the items selected in Select, or, where none of them has
// such a value, those for new items.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

namespace kelvane {

// The values that selected items share; nothing where they differ, or none has it.
struct Properties {
  std::size_t texts = 0;  // how many are selected
  std::size_t drawings = 0;
  std::optional<std::int16_t> font;
  std::optional<float> size;  // points
  std::optional<int> anchor;
  std::optional<std::int16_t> colour;
  std::optional<float> width;  // points

  std::size_t Count() const { return texts + drawings; }
};
// Those of the selection; of no items in every mode but Select.
const Properties& SelectedProperties();

// Whether a menu entry has the check mark.
bool ShowsFont(std::int16_t font);
bool ShowsColour(std::int16_t colour);
bool ShowsThickness(double width);
bool ShowsAnchor(int anchor);

// The choices of the menus. For selected items each is one step back.
void SetFont(std::int16_t font);
void SetColour(std::int16_t colour);
void SetThickness(double width);
// Runs keep their ink where it is. A justified run stays one with a left anchor only; with another it ends
// where it does without being stretched.
void SetAnchor(int anchor);

// The size box was changed: for new items that counts at once, for selected ones when it is entered.
void SizeBoxTyped();
// Enter in the size box. Why it is refused, if it is no size; nothing is changed then.
std::string EnterSize();
// Brings the size box and the label of typeface and size up to date.
void ShowProperties();

// Asks for the place of the selection and moves it there: the anchor point of a single run, the start of a
// single drawing, or the top left corner of the box.
void AskPosition();

}  // namespace kelvane
