#include "app/exit.h"

#include "app/after_editing.h"
#include "app/settings.h"
#include "document/paper.h"
#include "editing/keyboard.h"
#include "macros/macros.h"
#include "platform/controls.h"
#include "platform/failure.h"
#include "platform/files.h"

namespace kelvane {

namespace {

void WriteOrReport(void (*write)(), const char* what) {
  try {
    write();
  } catch (const Failure& failure) {
    // The page is safe by now; someone who may not write the program folder must still be able to leave.
    TheDialogs->Message(std::string(what) + " could not be kept for the next start.\n" + failure.what());
  }
}

// What was put into the control-code box in Select belongs to no place, so it is on no page to be saved.
bool MayDropLooseText() {
  return PendingRun.empty() ||
         TheDialogs->Ask(
             "The text in the control-code box is not on the page yet and would be lost.\nLeave anyway?",
             false);
}

bool SaveAndWriteSettings() {
  if (!MayDropLooseText() || !OfferToSave()) return false;
  if (Form1) FormPlace = Form1->GetWindowPlace();
  WriteOrReport([] { WriteSettings(ProgramFolder + "QRX.DAT"); }, "The settings");
  // What was applied in the Define Macro window a moment ago has not met the timer yet.
  RefreshMacros();
  WriteOrReport(WriteMacros, "The macros");
  return true;
}

}  // namespace

bool ExitSequence() {
  return AfterEditing(SaveAndWriteSettings);
}

void LeaveProgram() {
  if (ExitSequence()) TheToolkit->Quit();
}

}  // namespace kelvane
