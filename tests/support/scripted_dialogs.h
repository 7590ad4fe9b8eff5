#pragma once

// Dialogs answered from a script. A question or file dialog that the script does not foresee fails the test.

#include <deque>
#include <string>
#include <vector>

#include "platform/controls.h"

namespace kelvane {

class ScriptedDialogs : public Dialogs {
 public:
  // Texts of the messages shown, in order.
  std::vector<std::string> messages;
  // What was asked: "<text> [Yes]" with the button that Enter takes, "Open: <title>, <filter>, <folder>",
  // "Save: ..." likewise.
  std::vector<std::string> asked;

  // The answers to come, in the order in which they are needed.
  void AnswerYes() { script.push_back({Kind::Question, true, {}}); }
  void AnswerNo() { script.push_back({Kind::Question, false, {}}); }
  // An empty path cancels.
  void AnswerOpen(const std::string& path) { script.push_back({Kind::Open, false, path}); }
  void AnswerSave(const std::string& path) { script.push_back({Kind::Save, false, path}); }

  // True when every answer was needed. The fixture expects it at the end of each test.
  bool AllAnswered() const { return script.empty(); }

  void Message(const std::string& text) override;
  bool Ask(const std::string& text, bool yesIsDefault) override;
  std::string ChooseToOpen(const std::string& title, const std::string& filter,
                           const std::string& folder) override;
  std::string ChooseToSave(const std::string& title, const std::string& filter,
                           const std::string& folder) override;

 private:
  enum class Kind { Question, Open, Save };
  struct Answer {
    Kind kind;
    bool yes;
    std::string path;
  };

  // The next answer; a refusal, and a failed test, if it is of another kind.
  Answer Next(Kind kind, const std::string& what);

  std::deque<Answer> script;
};

}  // namespace kelvane
