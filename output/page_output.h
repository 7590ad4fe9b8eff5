#pragma once

// What the output commands share: the choice of a page file, and the care for the file that is replaced.

#include <string>

namespace kelvane {

struct PageOutput {
  std::string pageFile;    // chosen by the person
  std::string outputPath;  // the same name with another extension
};

// Leaves editing, stores the current page and asks for a page file, which the button `acceptLabel` takes.
// False if the person cancelled. Throws Failure if the output would replace the page file itself.
bool ChoosePageOutput(const char* extension, const char* acceptLabel, PageOutput& choice);

// Whether an output file may be written. A file of that name which is not `ours` is replaced only if the
// person says so.
bool MayReplace(const std::string& path, bool ours);

// Writes an output file where it may. False if the person kept the old one. Throws Failure, and the old file
// is whole.
bool WriteOutput(const std::string& path, const std::string& content, bool ours);

}  // namespace kelvane
