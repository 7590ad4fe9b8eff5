#include "output/page_output.h"

#include "document/fields.h"
#include "document/paper.h"
#include "editing/modes.h"
#include "papers/paper_commands.h"
#include "platform/controls.h"
#include "platform/failure.h"
#include "platform/files.h"

namespace kelvane {

bool ChoosePageOutput(const char* extension, const char* acceptLabel, PageOutput& choice) {
  LeaveEditing();
  if (!StorePageBeforeOutput()) return false;
  const std::string start = CurrentPaperFile.empty() ? FolderOfPaper() : CurrentPaperFile;
  choice.pageFile = TheDialogs->ChooseToOpen("Open", kPageFilter, start, acceptLabel);
  if (choice.pageFile.empty()) return false;
  choice.outputPath = ChangeExtension(choice.pageFile, extension);
  if (SameFile(choice.outputPath, choice.pageFile)) {
    throw Failure("The output would replace the page file " + MachinePath(choice.pageFile) +
                  " itself. Choose a page file with another extension.");
  }
  return true;
}

bool MayReplace(const std::string& path, bool ours) {
  return ours || !TheFiles->Exists(path) || TheDialogs->Ask("Replace " + MachinePath(path) + "?", false);
}

bool WriteOutput(const std::string& path, const std::string& content, bool ours) {
  if (!MayReplace(path, ours)) return false;
  WriteFileSafely(path, content);
  return true;
}

}  // namespace kelvane
