#pragma once

// The papers that come with the program, to be looked at.

#include <span>
#include <string>

namespace kelvane {

struct SamplePaper {
  const char* caption;  // with "&" before its mnemonic
  const char* name;     // of its files in the program folder
  int pages;
};
std::span<const SamplePaper> SamplePapers();

// Opens a copy of a page: nobody writes into the program folder. False if the person gave it up.
bool OpenSample(const SamplePaper& paper, int page);

}  // namespace kelvane
