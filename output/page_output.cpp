#include "output/page_output.h"

#include "document/fields.h"
#include "document/paper.h"
#include "editing/modes.h"
#include "papers/paper_commands.h"
#include "platform/controls.h"
#include "platform/failure.h"
#include "platform/files.h"

namespace kelvane {
namespace {

[[noreturn]] void RefuseToReplace(const std::string& pageFile, const char* wayOut) {
  throw Failure("The output would replace the page file " + MachinePath(pageFile) + " itself. " + wayOut);
}

}  // namespace

bool ChoosePageOutput(const char* extension, const char* acceptLabel, PageOutput& choice) {
  LeaveEditing();
  if (!StorePageBeforeOutput()) return false;
  const std::string start = CurrentPaperFile.empty() ? FolderOfPaper() : CurrentPaperFile;
  choice.pageFile = TheDialogs->ChooseToOpen("Open", kPageFilter, start, acceptLabel);
  if (choice.pageFile.empty()) return false;
  choice.outputPath = ChangeExtension(choice.pageFile, extension);
  if (SameFile(choice.outputPath, choice.pageFile))
    RefuseToReplace(choice.pageFile, "Choose a page file with another extension.");
  return true;
}

std::string ChooseOutput(const char* title, const std::string& behindName, const std::string& extension) {
  const std::string name =
      CurrentPaperFile.empty() ? "" : FileTitleOf(CurrentPaperFile) + behindName + "." + extension;
  const std::string filter = "*." + extension + "|*." + extension;
  const std::string chosen = TheDialogs->ChooseToSave(title, filter, FolderOfPaper() + name);
  if (chosen.empty() || chosen.find('.', chosen.rfind('\\') + 1) != chosen.npos) return chosen;
  const std::string path = chosen + "." + extension;
  return MayReplace(path, false) ? path : "";
}

void KeepPages(const std::string& path, const std::string& paperFile, const std::vector<int>& pages) {
  for (const int page : pages) {
    const std::string file = PageFileName(paperFile, page);
    if (!paperFile.empty() && SameFile(path, file)) RefuseToReplace(file, "Choose another name.");
  }
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
