#pragma once

// Programs that stand in for those of the machine: shell scripts in a folder that is all of PATH meanwhile.

#include <string>

namespace kelvane {

class StandIns {
 public:
  StandIns();
  ~StandIns();
  StandIns(const StandIns&) = delete;
  StandIns& operator=(const StandIns&) = delete;

  // Makes a program of that name; its commands run in the folder of the stand-ins.
  void Make(const std::string& name, const std::string& commands);
  // What a stand-in has written to a file of the folder; waits a moment for it to come.
  std::string Written(const std::string& file) const;
  const std::string& Folder() const { return folder; }

 private:
  std::string folder;  // the machine's form, without a slash at its end
  std::string pathBefore;
};

}  // namespace kelvane
