#include "tests/support/scripted_dialogs.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace kelvane {

void ScriptedDialogs::Message(const std::string& text) {
  messages.push_back(text);
}

bool ScriptedDialogs::Ask(const std::string& text, bool yesIsDefault) {
  return Next(Kind::Question, text + (yesIsDefault ? " [Yes]" : " [No]")).answer == Answer::Yes;
}

Answer ScriptedDialogs::AskBeforeLosing(const std::string& text) {
  return Next(Kind::Question, text + " [Yes]").answer;
}

int ScriptedDialogs::Choose(const std::string& text, const std::vector<std::string>& labels, int onEnter,
                            int onEscape) {
  const int index =
      Next(Kind::Choice, text + " [" + labels.at(static_cast<std::size_t>(onEnter)) + "]").index;
  return index < 0 ? onEscape : index;
}

std::string ScriptedDialogs::ChooseToOpen(const std::string& title, const std::string& filter,
                                          const std::string& folder, const std::string& accept) {
  const std::string button = accept == "Open" ? "" : ", " + accept;
  return Next(Kind::Open, "Open: " + title + ", " + filter + ", " + folder + button).path;
}

std::string ScriptedDialogs::ChooseToSave(const std::string& title, const std::string& filter,
                                          const std::string& folder) {
  return Next(Kind::Save, "Save: " + title + ", " + filter + ", " + folder).path;
}

ScriptedDialogs::Reply ScriptedDialogs::Next(Kind kind, const std::string& what) {
  asked.push_back(what);
  if (script.empty() || script.front().kind != kind) {
    ADD_FAILURE() << "A dialog that was not foreseen: " << what;
    return {kind, Answer::No, {}};
  }
  Reply reply = script.front();
  script.pop_front();
  return reply;
}

}  // namespace kelvane
