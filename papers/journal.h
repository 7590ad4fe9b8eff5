#pragma once

// The journal of the page in memory: every change of it and every key of what is half done, written as it
// happens, so that a program that is killed loses nothing.
//
// A journal is begun by the first change after a page came into memory, with the page whole; then each act of
// the person is one record behind the others. It is synced within a second, without anybody waiting, and
// before a file is replaced. When it has grown by a few MB another one begins, with the page whole again and
// its latest steps, and takes its place. While it is open it is locked, by which it is told from those of
// programs that were killed. It goes when its page has been left in order.

#include <string>

#include "papers/journal_format.h"
#include "papers/seen_file.h"
#include "platform/files.h"

namespace kelvane {

// No journal, and none is written.
void ResetJournal();
// Fills the hooks: from now on a journal is written.
void StartJournal();

// Where the journals of this person's programs lie, and the end of their names.
std::string JournalFolder();
inline constexpr char kJournalEnd[] = ".journal";

// Another page has come into memory: what the journal holds is no longer needed.
void BeginJournalOfPage(const SeenFile& file, int number);
// The page in memory has another file or number; `stored`: its file was written, and holds it.
void NoteFileOfPage(const SeenFile& file, int number, bool stored);
// The page in memory came from a journal that was left behind, open as `handle`, with so many edits that its
// file does not hold. That journal goes when the new one is safe.
void ContinueJournal(const std::string& path, Files::Handle handle, int edits);

// Has everything reach the disk before it returns, as far as that can be done.
void FlushJournal();
// The page is left for good and in order.
void EndJournal();

}  // namespace kelvane
