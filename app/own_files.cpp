#include "app/own_files.h"

#include <algorithm>
#include <string>
#include <string_view>

#include "platform/controls.h"
#include "platform/failure.h"
#include "platform/files.h"

namespace kelvane {

namespace {

// Files that were not synced when the power went hold NUL bytes.
bool HoldsNul(std::string_view content) {
  return content.find('\0') != std::string_view::npos;
}

// Control characters are letters in a macro, but nothing in a line of settings.
bool IsNoText(std::string_view content) {
  return std::ranges::any_of(content, [](char c) {
    const auto code = static_cast<unsigned char>(c);
    return code < ' ' && c != '\t' && c != '\r' && c != '\n';
  });
}

void SetAside(const std::string& name, bool (*isDamaged)(std::string_view), const char* instead) {
  const std::string path = ProgramFolder + name;
  try {
    if (!TheFiles->Exists(path) || !isDamaged(TheFiles->ReadWhole(path))) return;
    const std::string kept = NameForDamaged(path);
    TheFiles->Rename(path, kept);
    TheDialogs->Message(MachinePath(path) + " is damaged. It is kept as " + MachinePath(kept) + ", and " +
                        instead + " are used.");
  } catch (const Failure&) {
    // What cannot be read is told of when it is read; what cannot be renamed is read as far as it goes.
  }
}

}  // namespace

void SetDamagedAside() {
  SetAside("QRX.DAT", IsNoText, "the settings of a new program");
  SetAside("QRX.MCR", HoldsNul, "the macros of a new program");
}

}  // namespace kelvane
