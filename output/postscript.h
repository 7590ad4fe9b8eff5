#pragma once

// PostScript output of one page or of a whole paper.

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace kelvane {

// The prolog QRX.PRO with its placeholders filled in, as it goes to the output.
std::string Prologue();
// Writes the prolog alone to a new file.
void WritePrologue(const std::string& outputPath);

// Makes the job of some page files, in parts that `job` takes in their order.
void MakeJob(const std::function<void(std::string_view)>& job, const std::vector<std::string>& pageFiles);

// The whole job for a page file, or for pages 1 to 999 of its paper. Throw Failure if QRX.PRO or a page file
// cannot be read.
std::string OnePageJob(const std::string& pageFile);
std::string WholePaperJob(const std::string& pageFile);

// The menu commands: ask for a page file and write its job beside it. Nothing is written when cancelled. They
// ask before they replace a file that is no job of this program. Return the output's path, or nothing.
std::string PrintOnePage();
std::string PrintPaper();

}  // namespace kelvane
