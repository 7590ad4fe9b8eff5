#pragma once

// The window that offers what programs that were killed left behind.

#include "platform/text_view.h"

namespace kelvane {

// Null until it is made.
extern Window* RecoveryWindow;
struct RecoveryWindowControls {
  List* list;
  Canvas* file;
  Canvas* left;
  Label* about;
  Button* restore;
  Button* keepBoth;
  Button* discard;
  Button* later;
};
extern RecoveryWindowControls RecoveryParts;

void ResetRecoveryWindow();

// At the start: looks for such work, and shows the window if there is any.
void OfferRecovery();
// The same when a paper was opened, if there is some of that paper.
void OfferWorkOfPaper();
// Menu entry "Recover": the same, and says so if there is none.
void ShowRecovery();

}  // namespace kelvane
