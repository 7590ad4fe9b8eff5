#pragma once

// What the output commands share: the choice of files, and the care for the file that is replaced.

#include <string>
#include <vector>

namespace kelvane {

struct PageOutput {
  std::string pageFile;    // chosen by the person
  std::string outputPath;  // the same name with another extension
};

// Leaves editing, stores the current page and asks for a page file, which the button `acceptLabel` takes.
// False if the person cancelled. Throws Failure if the output would replace the page file itself.
bool ChoosePageOutput(const char* extension, const char* acceptLabel, PageOutput& choice);

// Asks for the file of an output that is named after the paper, with `behindName` behind its name. One that
// is written without an extension gets `extension`. Empty if the person cancelled.
std::string ChooseOutput(const char* title, const std::string& behindName, const std::string& extension);

// Throws Failure if an output would replace one of these pages of a paper.
void KeepPages(const std::string& path, const std::string& paperFile, const std::vector<int>& pages);

// Whether an output file may be written. A file of that name which is not `ours` is replaced only if the
// person says so.
bool MayReplace(const std::string& path, bool ours);

// Writes an output file where it may. False if the person kept the old one. Throws Failure, and the old file
// is whole.
bool WriteOutput(const std::string& path, const std::string& content, bool ours);

}  // namespace kelvane
