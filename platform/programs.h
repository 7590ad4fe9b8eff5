#pragma once

// Programs of the machine, run beside the editor: a mail program, a browser, Ghostscript. The editor never
// waits for one; its owner asks from time to time how it goes.

#include <string>
#include <string_view>
#include <vector>

namespace kelvane {

// Whether the machine's path leads to a program that can be run.
bool CanRun(const std::string& path);
// The machine's path of a program on PATH that can be run; empty if there is none.
std::string FindProgram(const std::string& name);

// Whether a text has no control characters, so that it can stand in a header of a mail.
bool IsOneLine(std::string_view text);

class RunningProgram {
 public:
  // Starts `arguments[0]`, which is found on PATH or is a path, with `input` to read. Throws Failure if it
  // cannot be started.
  RunningProgram(const std::vector<std::string>& arguments, std::string_view input);
  // A program that still runs goes on by itself.
  ~RunningProgram();
  RunningProgram(const RunningProgram&) = delete;
  RunningProgram& operator=(const RunningProgram&) = delete;

  // Whether it has ended. Never waits.
  bool Ended();
  // Once it has ended: its exit status, or 128 and the number of the signal that ended it.
  int Status() const { return status; }
  // What it has written until now, errors included, up to 64 KB.
  std::string Output() const;
  // Ends it and what it has started.
  void Stop();

 private:
  int process = -1;
  int output = -1;  // descriptor of a nameless file
  bool ended = false;
  int status = 0;
};

}  // namespace kelvane
