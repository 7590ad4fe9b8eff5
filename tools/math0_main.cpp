// build_math0 DATA: makes the font Math0 and its specimen pages in the folder DATA, which holds the fixed
// text of MATH0.PSF and QRX.PRO.

#include <cstdio>

#include "platform/failure.h"
#include "platform/files.h"
#include "tools/math0/font_files.h"

int main(int argumentCount, char** arguments) {
  using namespace kelvane;
  if (argumentCount != 2) {
    std::fputs("Usage: build_math0 DATA\n", stderr);
    return 2;
  }
  try {
    ProgramFolder = BackslashPath(arguments[1]) + "\\";
    math0::BuildFontFiles();
    math0::BuildSpecimen();
  } catch (const Failure& failure) {
    std::fprintf(stderr, "%s\n", failure.what());
    return 1;
  }
  return 0;
}
