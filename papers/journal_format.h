#pragma once

// The records of a journal as bytes, and what a journal leads to; docs/formats.md has the format. A journal
// holds one page: first the page whole with its steps, then what changed it, record by record.

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "document/page.h"
#include "editing/edit.h"
#include "editing/half_done.h"

namespace kelvane {

// The first line of every journal.
std::string JournalHead();

// What a page's file held when the editor read or wrote it.
struct JournalFile {
  std::string path;  // backslash form; empty: the paper has no name
  int number = 1;    // of the page
  bool there = false;
  std::uint64_t size = 0;
  std::uint64_t sum = 0;  // Checksum of the content
  bool operator==(const JournalFile&) const = default;
};

// A record in the making: what one act of the person changed, all of it or nothing.
class JournalRecord {
 public:
  bool Empty() const { return items_.empty(); }

  // The whole page. What follows in this and the later records goes on from here, with nothing half done.
  // `edits` since the file held it.
  void AddPage(const Page& page, const Steps& steps, const JournalFile& file, int edits);
  void AddStep(PageEvent event, const Step& step);
  void AddHalfDone(const HalfDone& before, const HalfDone& now);
  // The page has another file or number now, or its file has been written. `stored`: it holds the page.
  void AddFile(const JournalFile& file, bool stored);

  // The record's bytes; it is empty then. `time` in seconds since 1970.
  std::string Take(std::uint32_t time);

 private:
  std::string items_;
};

// What a journal leads to.
struct Journal {
  enum class Kind {
    NoJournal,     // another file, or nothing of a record is whole
    OtherVersion,  // of the program
    Whole,
    Damaged,  // cut off or changed; what stands before the damage is here
  };
  Kind kind = Kind::NoJournal;
  Page page;
  Steps steps;
  HalfDone half;
  std::vector<HalfDone> formulas;  // that were placed, as they were typed
  JournalFile file;
  int edits = 0;           // since the file held the page, steps back and forward included
  std::uint32_t time = 0;  // of the last record, seconds since 1970
};

// Takes any bytes.
Journal ReadJournal(std::string_view bytes);

}  // namespace kelvane
