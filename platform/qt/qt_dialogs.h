#pragma once

// Message boxes and file dialogs over the active window.

#include <string>
#include <vector>

#include "platform/controls.h"

namespace kelvane {

class QtDialogs final : public Dialogs {
 public:
  void Message(const std::string& text) override;
  bool Ask(const std::string& text, bool yesIsDefault) override;
  Answer AskBeforeLosing(const std::string& text) override;
  int Choose(const std::string& text, const std::vector<std::string>& labels, int defaultIndex,
             int escapeIndex) override;
  std::string ChooseToOpen(const std::string& title, const std::string& filter, const std::string& start,
                           const std::string& acceptLabel = "Open") override;
  std::string ChooseToSave(const std::string& title, const std::string& filter,
                           const std::string& start) override;

 private:
  // Saves if there is no `openLabel`.
  std::string ChooseFile(const std::string& title, const std::string& filter, const std::string& start,
                         const std::string& openLabel);
};

}  // namespace kelvane
