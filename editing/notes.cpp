#include "editing/notes.h"

namespace kelvane {

Label* NoteLabel = nullptr;

void ShowNote(const std::string& text) {
  if (NoteLabel) NoteLabel->SetText(text);
}

}  // namespace kelvane
