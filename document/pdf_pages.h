#pragma once

// The pages that a PDF document of this program carries with it, so that it can be opened again.

#include <string>
#include <string_view>
#include <vector>

namespace kelvane {

// How the object of such a page begins; the number of the page follows. The rest of its dictionary has the
// length, and its stream is the packed content of the page's file.
inline constexpr char kAttachedPage[] =
    "/Type/EmbeddedFile/Subtype/application#2Fx-kelvane-page/KelvanePage ";

struct CarriedPage {
  int number = 0;  // 1 to 999
  std::string content;
};

// The pages by number; none if the file is no document of this program, or was written anew by another one.
// Throws Failure, naming `path`, if a page in it is damaged.
std::vector<CarriedPage> PagesInPdf(std::string_view file, const std::string& path);

}  // namespace kelvane
