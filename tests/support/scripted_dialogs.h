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
  // What was asked: "<text> [Yes]" with the button that Enter takes, "Open: <title>, <filter>, <folder>" with
  // the caption of its button behind that unless it is "Open", "Save: ..." likewise.
  std::vector<std::string> asked;

  // The answers to come, in the order in which they are needed.
  void AnswerYes() { script.push_back({Kind::Question, Answer::Yes, {}}); }
  void AnswerNo() { script.push_back({Kind::Question, Answer::No, {}}); }
  void AnswerNeither() { script.push_back({Kind::Question, Answer::Neither, {}}); }
  void AnswerChoice(int index) { script.push_back({Kind::Choice, Answer::No, {}, index}); }
  // An empty path cancels.
  void AnswerOpen(const std::string& path) { script.push_back({Kind::Open, Answer::No, path}); }
  void AnswerSave(const std::string& path) { script.push_back({Kind::Save, Answer::No, path}); }

  // True when every answer was needed. The fixture expects it at the end of each test.
  bool AllAnswered() const { return script.empty(); }

  void Message(const std::string& text) override;
  bool Ask(const std::string& text, bool yesIsDefault) override;
  Answer AskBeforeLosing(const std::string& text) override;
  int Choose(const std::string& text, const std::vector<std::string>& labels, int onEnter,
             int onEscape) override;
  std::string ChooseToOpen(const std::string& title, const std::string& filter, const std::string& folder,
                           const std::string& accept = "Open") override;
  std::string ChooseToSave(const std::string& title, const std::string& filter,
                           const std::string& folder) override;

 private:
  enum class Kind { Question, Choice, Open, Save };
  struct Reply {
    Kind kind;
    Answer answer;
    std::string path;
    int index = -1;
  };

  // The next answer; a refusal, and a failed test, if it is of another kind.
  Reply Next(Kind kind, const std::string& what);

  std::deque<Reply> script;
};

}  // namespace kelvane
