#pragma once

// The pages that a PDF of this program carries, as page files of a paper again.

#include <string>
#include <vector>

#include "document/pdf_pages.h"

namespace kelvane {

// Writes them into the paper of `chosen`, all or none. No page that is there is replaced, but for the file
// that the person chose; what that held is kept as a version. Throws Failure.
void WriteCarriedPages(const std::vector<CarriedPage>& pages, const std::string& chosen);

}  // namespace kelvane
