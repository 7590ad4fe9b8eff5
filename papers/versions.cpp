#include "papers/versions.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdio>
#include <ctime>
#include <map>
#include <optional>
#include <set>

#include "document/lines.h"
#include "document/paper.h"
#include "platform/checksum.h"
#include "platform/failure.h"
#include "platform/files.h"

namespace kelvane {

namespace {

constexpr std::size_t kLastVersions = 20;
constexpr int kDays = 30;
constexpr std::int64_t kDay = 86400;
constexpr std::int64_t kLatest = 253402300799;  // the end of the year 9999
constexpr std::size_t kMostBytes = 256U << 20;
constexpr std::size_t kHashLength = 16;
constexpr std::size_t kLongestName = 100;  // bytes of a page file's name in that of a version
constexpr int kNumbers = 3000;             // of pages, with those taken away
// Behind the hash of a paper: what stands for the page of a file that was removed from it.
constexpr std::string_view kRemoved = "-removed";

std::string Trouble;
bool TroubleTold = false;

std::string Folder() {
  return StateFolder + "versions\\";
}

// FNV-1a: the same in every build, since it stands in names of files.
std::string HashOf(std::string_view bytes) {
  std::array<char, kHashLength + 1> text;
  std::snprintf(text.data(), text.size(), "%016llx", static_cast<unsigned long long>(Checksum(bytes)));
  return text.data();
}

// The end of a page file's name, as it can stand in the index and in the name of another file.
std::string ReadableName(const std::string& path) {
  std::string name = path.substr(path.rfind('\\') + 1);
  if (name.size() > kLongestName) name.erase(0, name.size() - kLongestName);
  std::ranges::replace_if(
      name, [](char c) { return static_cast<unsigned char>(c) < ' '; }, ' ');
  return name;
}

template <typename Number>
bool TakeNumber(std::string_view& rest, Number& number) {
  const auto [end, error] = std::from_chars(rest.data(), rest.data() + rest.size(), number);
  const auto length = static_cast<std::size_t>(end - rest.data());
  if (error != std::errc{} || length >= rest.size() || rest[length] != ' ') return false;
  rest.remove_prefix(length + 1);
  return true;
}

// `TIME SIZE PAGE FILE`; nothing for a line that is no such.
std::optional<Version> VersionOfLine(std::string_view line) {
  Version version;
  if (!TakeNumber(line, version.time) || !TakeNumber(line, version.size)) return {};
  if (version.time < 0 || version.time > kLatest || version.size > kMostBytes) return {};
  const std::size_t blank = line.find(' ');
  if (blank == std::string_view::npos) return {};
  version.page = line.substr(0, blank);
  version.file = line.substr(blank + 1);
  // Nothing but a file of the folder is ever read or removed.
  if (version.file.empty() || version.file.find_first_of("\\/") != std::string::npos) return {};
  return version;
}

std::vector<Version> ReadIndex() {
  std::vector<Version> versions;
  if (StateFolder.empty() || !TheFiles->Exists(Folder() + "index")) return versions;
  const std::string content = TheFiles->ReadWhole(Folder() + "index");
  for (std::string_view rest = content; !rest.empty();)
    if (std::optional<Version> version = VersionOfLine(TakeLine(rest))) versions.push_back(*version);
  std::ranges::stable_sort(versions, std::greater{}, &Version::time);
  return versions;
}

void WriteIndex(const std::vector<Version>& versions) {
  std::string content;
  for (const Version& version : versions)
    content += std::to_string(version.time) + ' ' + std::to_string(version.size) + ' ' + version.page + ' ' +
               version.file + "\n";
  WriteFileSafely(Folder() + "index", content);
}

// The number of the day where the person is.
std::int64_t DayOf(std::int64_t time) {
  const std::time_t seconds = time;
  std::tm local{};
  localtime_r(&seconds, &local);
  return local.tm_year * 366 + local.tm_yday;
}

// What stands for all pages that were removed from the paper of a page file.
std::string RemovedFrom(const std::string& path) {
  return HashOf(PageFileName(TheFiles->Resolve(path), 0)) + std::string(kRemoved);
}

void Keep(const std::string& page, const std::string& path, const std::string& content) {
  if (StateFolder.empty()) throw Failure("there is no folder for them");
  const Version kept{std::time(nullptr), content.size(), page,
                     page + "-" + HashOf(content) + "-" + ReadableName(path)};
  TheFiles->MakeFolder(Folder());
  std::vector<Version> before = ReadIndex();
  // A page that comes back to what it was is one version.
  std::erase_if(before, [&](const Version& other) { return other.page == page && other.file == kept.file; });
  before.insert(before.begin(), kept);
  const std::vector<Version> after = StillKept(before, kept.time);
  // The index has a line before there is a file, and a file is gone before its line is, so that no file is
  // left that no line tells of; a line without a file is passed over.
  WriteIndex(before);
  if (!TheFiles->Exists(Folder() + kept.file)) WriteFileSafely(Folder() + kept.file, content);
  std::set<std::string> files;
  for (const Version& version : after) files.insert(version.file);
  for (const Version& version : before)
    if (!files.contains(version.file) && TheFiles->Exists(Folder() + version.file))
      TheFiles->Remove(Folder() + version.file);
  if (after.size() < before.size()) WriteIndex(after);
}

void NoteTrouble(const Failure& failure) {
  if (!TroubleTold) Trouble = std::string("Earlier versions are not kept: ") + failure.what();
  TroubleTold = true;
}

// Those of a page, newest first.
std::vector<Version> Kept(const std::string& page) {
  std::vector<Version> versions = ReadIndex();
  std::erase_if(versions, [&](const Version& version) {
    return version.page != page || !TheFiles->Exists(Folder() + version.file);
  });
  return versions;
}

}  // namespace

void ResetVersions() {
  Trouble.clear();
  TroubleTold = false;
}

void KeepReplaced(const std::string& path, std::string_view content) {
  Trouble.clear();
  try {
    if (!TheFiles->Exists(path)) return;
    const std::string old = TheFiles->ReadWhole(path);
    if (old == content || old.empty()) return;
    const std::string target = TheFiles->Resolve(path);
    Keep(HashOf(target), target, old);
  } catch (const Failure& failure) {
    NoteTrouble(failure);
  }
}

void KeepRemoved(const std::string& path, const std::string& content) {
  Trouble.clear();
  try {
    if (!content.empty()) Keep(RemovedFrom(path), path, content);
  } catch (const Failure& failure) {
    NoteTrouble(failure);
  }
}

const std::string& VersionsTrouble() {
  return Trouble;
}

std::vector<Version> VersionsOf(const std::string& path) {
  return Kept(HashOf(TheFiles->Resolve(path)));
}

std::vector<Version> RemovedPagesOf(const std::string& path) {
  return Kept(RemovedFrom(path));
}

std::string NameOfRemoved(const Version& version) {
  const std::size_t name = version.page.size() + kHashLength + 2;
  return version.file.substr(std::min(name, version.file.size()));
}

std::string ContentOfVersion(const Version& version) {
  return TheFiles->ReadWhole(Folder() + version.file);
}

void RenumberVersions(const std::string& paperFile, const std::function<int(int)>& numberOf) {
  // Pages that are taken away are known until the program ends; another start uses their numbers again.
  static const std::string start = std::to_string(std::time(nullptr));
  try {
    std::vector<Version> versions = ReadIndex();
    if (versions.empty()) return;
    const std::string paper = TheFiles->Resolve(PageFileName(paperFile, 1));
    const auto page = [&](int number) {
      const std::string file = PageFileName(paper, number);
      return HashOf(number > kLastPage ? file + start : file);
    };
    std::map<std::string, std::string> renamed;
    for (int number = 1; number < kNumbers; ++number)
      if (numberOf(number) != number) renamed[page(number)] = page(numberOf(number));
    bool any = false;
    for (Version& version : versions) {
      const auto now = renamed.find(version.page);
      if (now == renamed.end()) continue;
      version.page = now->second;
      any = true;
    }
    if (any) WriteIndex(versions);
  } catch (const Failure&) {
    // The pages have their new names by now; their versions are then found under the old ones.
  }
}

std::vector<Version> StillKept(const std::vector<Version>& versions, std::int64_t now) {
  std::map<std::string, std::size_t> counts;
  std::map<std::string, std::int64_t> days;  // the day of the version before, going back
  std::size_t bytes = 0;
  std::vector<Version> kept;
  for (const Version& version : versions) {
    const std::int64_t day = DayOf(version.time);
    const auto [before, first] = days.emplace(version.page, day);
    const bool lastOfDay = first || before->second != day;
    before->second = day;
    const std::size_t most = version.page.ends_with(kRemoved) ? kLastPage : kLastVersions;
    const bool recent = ++counts[version.page] <= most;
    if (!recent && !(lastOfDay && now - version.time < kDays * kDay)) continue;
    if (bytes + version.size > kMostBytes) break;
    bytes += version.size;
    kept.push_back(version);
  }
  return kept;
}

}  // namespace kelvane
