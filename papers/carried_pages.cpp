#include "papers/carried_pages.h"

#include "document/paper.h"
#include "papers/versions.h"
#include "platform/failure.h"
#include "platform/files.h"
#include "platform/if_possible.h"

namespace kelvane {

void WriteCarriedPages(const std::vector<CarriedPage>& pages, const std::string& chosen) {
  for (const CarriedPage& page : pages) {
    const std::string file = PageFileName(chosen, page.number);
    if (file != chosen && TheFiles->Exists(file)) {
      throw Failure("The pages were not saved: " + MachinePath(file) +
                    " is already there. Choose the name of a new paper.");
    }
  }
  std::vector<std::string> written;
  const auto write = [&](bool replacing) {
    for (const CarriedPage& page : pages) {
      const std::string file = PageFileName(chosen, page.number);
      if ((file == chosen) != replacing) continue;
      if (replacing) KeepReplaced(file, page.content);
      WriteFileSafely(file, page.content);
      written.push_back(file);
    }
  };
  try {
    write(false);
    write(true);  // last, so that nothing can fail behind it
  } catch (const Failure&) {
    for (const std::string& file : written) IfPossible([&] { TheFiles->Remove(file); });
    throw;
  }
}

}  // namespace kelvane
