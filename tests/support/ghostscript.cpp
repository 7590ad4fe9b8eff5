#include "tests/support/ghostscript.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>

namespace kelvane {

std::string Ghostscript(const std::string& job, const std::string& arguments, const std::string& after) {
  const std::string path = ::testing::TempDir() + "kelvane-job-" + std::to_string(getpid()) + ".ps";
  std::ofstream(path, std::ios::binary) << job;
  const std::string command = "timeout 120 gs -q -dSAFER -dBATCH -dNOPAUSE " + arguments + " '" + path +
                              "' " + after + " 2>&1 < /dev/null";
  std::string output;
  FILE* pipe = popen(command.c_str(), "r");
  if (!pipe) {
    ADD_FAILURE() << "Cannot run " << command;
    return output;
  }
  char buffer[4096];
  while (const std::size_t count = std::fread(buffer, 1, sizeof buffer, pipe)) output.append(buffer, count);
  EXPECT_EQ(pclose(pipe), 0) << command << "\n" << output;
  std::filesystem::remove(path);
  return output;
}

}  // namespace kelvane
