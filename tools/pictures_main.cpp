// build_pictures SOURCES DATA: writes the pointers and the About picture into the folder DATA from the
// descriptions in the folder SOURCES.

#include "tools/pictures/pictures.h"

#include <cstdio>

#include "platform/failure.h"
#include "platform/files.h"

int main(int argumentCount, char** arguments) {
  using namespace kelvane;
  if (argumentCount != 3) {
    std::fputs("Usage: build_pictures SOURCES DATA\n", stderr);
    return 2;
  }
  try {
    const std::string data = BackslashPath(arguments[2]) + "\\";
    for (const auto& [name, bytes] : pictures::BuildPictures(BackslashPath(arguments[1]) + "\\"))
      WriteFileSafely(data + name, bytes);
  } catch (const Failure& failure) {
    std::fprintf(stderr, "%s\n", failure.what());
    return 1;
  }
  return 0;
}
