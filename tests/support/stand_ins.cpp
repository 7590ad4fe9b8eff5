#include "tests/support/stand_ins.h"

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <thread>

namespace kelvane {

StandIns::StandIns() {
  std::string made = (std::filesystem::temp_directory_path() / "kelvane_stand_ins_XXXXXX").string();
  folder = mkdtemp(made.data());
  const char* path = std::getenv("PATH");
  pathBefore = path != nullptr ? path : "";
  setenv("PATH", folder.c_str(), 1);
}

StandIns::~StandIns() {
  setenv("PATH", pathBefore.c_str(), 1);
  std::error_code ignored;
  std::filesystem::remove_all(folder, ignored);
}

void StandIns::Make(const std::string& name, const std::string& commands) {
  const std::string file = folder + "/" + name;
  std::ofstream(file) << "#!/bin/sh\nPATH=/usr/bin:/bin\ncd " << folder << "\n" << commands << "\n";
  std::filesystem::permissions(file, std::filesystem::perms::owner_all);
}

std::string StandIns::Written(const std::string& file) const {
  const std::string path = folder + "/" + file;
  for (int i = 0; i < 200 && !std::filesystem::exists(path); ++i)
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
  std::ifstream stream(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

}  // namespace kelvane
