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
  const std::string label =
      Next(Kind::Choice, text + " [" + labels.at(static_cast<std::size_t>(onEnter)) + "]").path;
  const auto pressed = std::find(labels.begin(), labels.end(), label);
  if (pressed == labels.end()) {
    ADD_FAILURE() << "There is no button " << label;
    return onEscape;
  }
  return static_cast<int>(pressed - labels.begin());
}

std::string ScriptedDialogs::ChooseToOpen(const std::string& title, const std::string& filter,
                                          const std::string& folder, const std::string& accept) {
  return Next(Kind::Open, accept + ": " + title + ", " + filter + ", " + folder).path;
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
