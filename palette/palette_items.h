#pragma once

// What the panel of signs offers: the signs by class, the codes of scripts and spaces, and tall brackets.

#include <string>
#include <string_view>
#include <vector>

#include "palette/tall_brackets.h"
#include "typography/sign_table.h"

namespace kelvane {

// One of the three pointers is set, or a code of a run.
struct PaletteItem {
  const Sign* sign = nullptr;
  int code = 0;
  const TallBracket* bracket = nullptr;
  std::string picture;  // a run that begins in Times-Roman
  std::string name;
  std::string how;  // how it is typed

  bool operator==(const PaletteItem& other) const {
    return sign == other.sign && code == other.code && bracket == other.bracket;
  }
};

struct PaletteSection {
  std::string title;
  std::vector<PaletteItem> items;
};

PaletteItem ItemOf(const Sign& sign);
// Every item, in the order of the panel.
const std::vector<PaletteSection>& PaletteSections();
// Those whose name has every word of a text, as one section.
PaletteSection FindItems(std::string_view words);

}  // namespace kelvane
