#pragma once

// "Export PDF": pages of the paper as a document in a file, made a page at a time so that the person can go
// on and can cancel.

#include <cstddef>
#include <string>
#include <vector>

#include "output/pdf.h"
#include "platform/files.h"

namespace kelvane {

class PdfExport {
 public:
  // The page in memory is exported as it is now, the others as their files have them. Throws Failure if the
  // file cannot be made or is a page of the paper.
  PdfExport(const std::string& path, std::vector<int> pages, bool bookmarks);

  // Adds the next page; behind the last one completes the document, puts it into its place and returns false.
  // Throws Failure. A document that was not completed leaves no file.
  bool Step();

  std::size_t Done() const { return next_; }
  std::size_t Count() const { return pages_.size(); }
  const std::string& Path() const { return path_; }
  // What the person should be told of missing fonts, once it is complete.
  const std::string& Missing() const { return missing_; }

 private:
  std::string ContentOf(int number) const;

  const std::string path_;
  const std::string paper_;
  const int current_;
  const int renumberings_;
  const std::string currentContent_;
  const std::vector<int> pages_;
  std::size_t next_ = 0;
  std::string missing_;
  SafeFile file_;
  PdfDocument document_;
};

}  // namespace kelvane
