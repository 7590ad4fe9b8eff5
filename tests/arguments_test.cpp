#include "app/arguments.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "platform/failure.h"

namespace kelvane {
namespace {

using Arguments = std::vector<const char*>;

TEST(ArgumentsTest, NameOnePageFileByAnyBytes) {
  const std::string here = std::filesystem::current_path();
  const std::pair<Arguments, std::string> cases[] = {
      {{}, ""},
      {{"/P/a b.001"}, "/P/a b.001"},
      {{"./x/../a\\b.001"}, here + "/a\\b.001"},
      {{"\xE4.001"}, here + "/\xE4.001"},
      {{"-x"}, here + "/-x"},
      {{"file:///P/a%20b%E4%zz%4"}, "/P/a b\xE4%zz%4"},
      {{"file://localhost/P/%C3%a4"}, "/P/\xC3\xA4"},
  };
  for (const auto& [arguments, path] : cases) EXPECT_EQ(PageFileArgument(arguments), path);
}

TEST(ArgumentsTest, RefuseAnythingElseInOneLine) {
  for (const Arguments& arguments :
       {Arguments{"--help"}, {"a.001", "--version"}, {"a.001", "b.001"}, {"file://else.where/a.001"}}) {
    try {
      ADD_FAILURE() << PageFileArgument(arguments);
    } catch (const Failure& failure) {
      EXPECT_EQ(std::string(failure.what()).find('\n'), std::string::npos);
    }
  }
}

}  // namespace
}  // namespace kelvane
