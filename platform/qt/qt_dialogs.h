#pragma once

// Message boxes and file dialogs over the active window.

#include <string>
#include <vector>

#include "platform/controls.h"

class QDialog;

namespace kelvane {

// Shows a dialog until it is answered. It blocks the window below it and no other, so that the help about it,
// opened from it with F1, can be read.
int RunDialog(QDialog& dialog, const std::string& about);

class QtDialogs final : public Dialogs {
 public:
  void Message(const std::string& text) override;
  bool Ask(const std::string& text, bool yesIsDefault) override;
  Answer AskBeforeLosing(const std::string& text) override;
  int Choose(const std::string& text, const std::vector<std::string>& labels, int onEnter,
             int onEscape) override;
  std::optional<std::string> AskText(const std::string& title, const std::string& label,
                                     const std::string& value,
                                     const std::function<std::string(const std::string&)>& check) override;
  std::string ChooseToOpen(const std::string& title, const std::string& filter, const std::string& start,
                           const std::string& accept = "Open") override;
  std::string ChooseToSave(const std::string& title, const std::string& filter,
                           const std::string& start) override;

 private:
  // `accept`: the button that takes the choice; empty for saving.
  std::string ChooseFile(const std::string& title, const std::string& filter, const std::string& start,
                         const std::string& accept);
};

}  // namespace kelvane
