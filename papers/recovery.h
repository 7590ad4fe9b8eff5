#pragma once

// What programs that were killed left in their journals, and what becomes of it.

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "document/page.h"
#include "papers/journal_format.h"
#include "platform/files.h"

namespace kelvane {

// A journal that was left behind, with something that is in no file. It stays locked, so that no other
// program offers it too.
struct LeftWork {
  std::string path;  // of the journal
  Files::Handle handle = 0;
  Journal journal;
  std::optional<Page> stored;  // what the page's file holds now; none if it is not there or no page
};

void ResetRecovery();

// Looks for such journals, those that were found before included. Journals that hold nothing which is not in
// a file are removed.
void FindLeftWork();
const std::vector<LeftWork>& FoundWork();

// The page as it was left, what was half done included, as it would be on paper.
Page WholePage(const Journal& journal);

// Puts the page of found work into the editor. False if the person gave it up. It is found work no longer.
bool RestoreWork(std::size_t index);
// Writes the page beside its file, as a paper of its own, and says where. Throws Failure; it is found work
// then.
std::string KeepWorkBeside(std::size_t index);
void DiscardWork(std::size_t index);

}  // namespace kelvane
