#pragma once

// What a person can do with one choice: an entry of a menu, a button, a key, or several of them at once.

#include <functional>
#include <string>

#include "platform/controls.h"

namespace kelvane {

struct Command {
  std::string menu = {};     // path of captions, e.g. "&View/&Horizontal Grid Lines"; empty: it has a button
  std::string id = {};       // e.g. "mFileSave"; empty: a separator
  std::string caption = {};  // with "&" before its mnemonic
  std::string key = {};      // e.g. "Ctrl+Shift+S"; empty: none
  // False if the person gave it up. Null: what it needs is not built yet, and it cannot be chosen.
  std::function<bool()> run = {};
  std::function<bool()> enabled = {};  // null: always
  std::function<bool()> checked = {};  // null: no check mark
  bool endsEditing = false;            // it begins and ends as AfterEditing says
  std::string toolTip = {};            // of its button
  // A caption that changes takes the place of `caption`; a literal one shows "&" as it stands.
  std::function<std::string()> captionNow = {};
  bool literal = false;
  MenuPicture picture = {};
  MenuEntry** handle = nullptr;  // where the subject that drives the entry keeps it
};

}  // namespace kelvane
