#include "app/exit.h"

#include <string>

#include "app/after_editing.h"
#include "app/contact_window.h"
#include "app/pdf_window.h"
#include "app/settings.h"
#include "designer/designer_window.h"
#include "editing/formula_entry.h"
#include "editing/keyboard.h"
#include "editing/modes.h"
#include "macros/macros.h"
#include "palette/palette.h"
#include "papers/journal.h"
#include "papers/paper_commands.h"
#include "platform/controls.h"
#include "platform/failure.h"
#include "platform/files.h"

namespace kelvane {

namespace {

// The page is safe by now, so someone who may not write the program folder must still be able to leave. One
// message says all of it.
void KeepForNextStart() {
  std::string what;
  std::string reason;
  const auto keep = [&](const char* name, const auto& write) {
    try {
      write();
    } catch (const Failure& failure) {
      what += what.empty() ? name : std::string(" and ") + name;
      if (reason.find(failure.what()) == std::string::npos) reason += std::string("\n") + failure.what();
    }
  };
  keep("the settings", [] { WriteSettings(ProgramFolder + "QRX.DAT"); });
  keep("the macros", KeepMacros);
  keep("the signs used last", WritePaletteState);
  keep("the comment", StoreComment);
  if (what.empty()) return;
  what[0] = 'T';
  TheDialogs->Message(what + " could not be kept for the next start." + reason);
}

// What was put into the control-code box in Select belongs to no place, so it is on no page to be saved.
bool MayDropLooseText() {
  return PendingRun.empty() ||
         TheDialogs->Ask(
             "The text in the control-code box is not on the page yet and would be lost.\nLeave anyway?",
             false);
}

// Completing what is being edited does not place it.
bool MayDropFormula() {
  return !FormulaIsWrong() ||
         TheDialogs->Ask(
             "The formula has an error, so it is not on the page yet and would be lost.\nLeave anyway?",
             false);
}

bool SaveAndWriteSettings() {
  if (!MayLeaveDesigner() || !MayDropLooseText() || !OfferToSave()) return false;
  if (Form1) FormPlace = Form1->GetWindowPlace();
  // What was applied in the Define Macro window a moment ago has not met the timer yet.
  RefreshMacros();
  CancelPdfExport();
  KeepForNextStart();
  EndJournal();
  ReleasePaper();
  return true;
}

}  // namespace

bool ExitSequence() {
  return MayDropFormula() && AfterEditing(SaveAndWriteSettings);
}

void LeaveProgram() {
  if (ExitSequence()) TheToolkit->Quit();
}

}  // namespace kelvane
