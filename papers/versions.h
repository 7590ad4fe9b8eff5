#pragma once

// Versions of page files: each save keeps what it replaces, in the state folder, and so does whatever removes
// a page.
//
// Of each page the last 20 are kept, and the last one of each day for 30 days, and of each paper the last 999
// pages that were removed; all of them together take 256 MB at most, and the oldest go first. The index
// `versions\index` has a line for each; the contents lie beside it.

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace kelvane {

// What a page file held until a save replaced it.
struct Version {
  std::int64_t time = 0;  // of that save, seconds since 1970
  std::size_t size = 0;   // bytes
  std::string page;       // tells page files apart
  std::string file;       // of the content, in the folder of versions
};

// Forgets that versions could not be kept.
void ResetVersions();

// Before `content` takes its place, keeps what the file holds, unless that is the same. A failure does not
// stand in the way of the save; it is told once, by VersionsTrouble.
void KeepReplaced(const std::string& path, std::string_view content);
// Keeps the content of a page file that is about to be removed, in the same way.
void KeepRemoved(const std::string& path, const std::string& content);
// Why the last of them could keep nothing, the first time that happened; empty otherwise.
const std::string& VersionsTrouble();

// Those of the page's file, newest first.
std::vector<Version> VersionsOf(const std::string& path);
// Pages that were removed from the paper of a page file, newest first, and the name that the file of one had
// in its folder.
std::vector<Version> RemovedPagesOf(const std::string& path);
std::string NameOfRemoved(const Version& version);
// Throws Failure.
std::string ContentOfVersion(const Version& version);

// Page files of `paperFile` have other names now: the versions of page `n` are those of page `numberOf(n)`.
// Numbers beyond the last page are those of pages that were taken away.
void RenumberVersions(const std::string& paperFile, const std::function<int(int)>& numberOf);

// Which of the versions, newest first, are still to be kept at a time.
std::vector<Version> StillKept(const std::vector<Version>& versions, std::int64_t now);

}  // namespace kelvane
