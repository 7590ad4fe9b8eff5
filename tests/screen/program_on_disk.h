#pragma once

// For tests with the program's own fonts and papers: its files on the disk, and a folder for what they write.

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <string>

#include "app/startup.h"
#include "designer/character_files.h"
#include "platform/files.h"
#include "typography/metrics.h"

namespace kelvane {

// The state of a start, with the fonts of the source tree.
inline void StartFromDisk() {
  TheFiles = &DiskFiles();
  ProgramFolder = BackslashPath(KELVANE_SOURCE_DIR) + "\\data\\";
  ResetProgram();
  LoadCharacterDefs();
  LoadWidthTables();
}

class TestFolder {
 public:
  explicit TestFolder(const std::string& name)
      : path_(::testing::TempDir() + "kelvane-" + name + "-" + std::to_string(getpid())) {
    std::filesystem::create_directory(path_);
  }
  ~TestFolder() { std::filesystem::remove_all(path_); }
  TestFolder(const TestFolder&) = delete;
  TestFolder& operator=(const TestFolder&) = delete;

  std::string FileOf(const std::string& name) const { return path_ + "/" + name; }

 private:
  const std::string path_;
};

}  // namespace kelvane
