#pragma once

// Mail by what the machine has for it: the person's mail program (xdg-email), else the local mail transport
// (sendmail). Signing on, composing and sending are steps of their own; none of them keeps the editor
// waiting.

#include <memory>
#include <string>

#include "platform/programs.h"

namespace kelvane {

struct MailMessage {
  std::string to;
  std::string from;     // the person's address, may be empty
  std::string subject;  // UTF-8, as the body
  std::string body;     // lines ended by "\n"
};

class Mail {
 public:
  // Begins signing on: finds what sends and asks it whether it is there. Throws Failure if there is nothing.
  void SignOn();
  // Takes the message, once signed on. Throws Failure if it cannot be sent as it is.
  void Compose(const MailMessage& message);
  // Begins sending it.
  void Send();

  enum class Progress { Working, Done, Failed };
  // How the step that was begun last goes.
  Progress Ask();
  // Why it failed, as the program said it.
  std::string Error() const;
  // Whether the person's mail program has the message, and it is for them to send it there.
  bool LeavesItToThePerson() const { return byProgram; }
  // Stops what is working; a mail program that has its window open is left alone.
  void GiveUp();

 private:
  bool byProgram = false;
  bool sending = false;
  std::string path;
  std::vector<std::string> arguments;
  std::string input;
  std::unique_ptr<RunningProgram> running;
};

}  // namespace kelvane
