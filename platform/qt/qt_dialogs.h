#pragma once

// Message boxes and file dialogs over the active window.

#include <string>

#include "platform/controls.h"

namespace kelvane {

class QtDialogs final : public Dialogs {
 public:
  void Message(const std::string& text) override;
  bool Ask(const std::string& text, bool yesIsDefault) override;
  Answer AskBeforeLosing(const std::string& text) override;
  std::string ChooseToOpen(const std::string& title, const std::string& filter,
                           const std::string& start) override;
  std::string ChooseToSave(const std::string& title, const std::string& filter,
                           const std::string& start) override;

 private:
  std::string Choose(bool save, const std::string& title, const std::string& filter,
                     const std::string& start);
};

}  // namespace kelvane
