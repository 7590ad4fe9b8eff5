#include "tests/support/power_cut_files.h"

#include <algorithm>
#include <random>

#include "platform/failure.h"

namespace kelvane {

namespace {

constexpr std::size_t kMostOutcomes = 256;
constexpr char kLocks[] = "\\State\\locks\\";

std::string FolderOfPath(const std::string& path) {
  return path.substr(0, path.rfind('\\') + 1);
}

}  // namespace

PowerCutFiles::PowerCutFiles(const Contents& contents) {
  for (const auto& [path, content] : contents) {
    names_[path] = files_.size();
    files_.push_back({content, content});
  }
  syncedNames_ = names_;
}

void PowerCutFiles::Step() {
  if (cut_ || --left_ == 0) {
    cut_ = true;
    throw PowerCut();
  }
}

void PowerCutFiles::Apply(std::map<std::string, Number>& names, const NameChange& change) {
  // Where an earlier step was lost, there is nothing that could go.
  const auto gone = names.find(change.gone);
  if (gone != names.end() && gone->second == change.file) names.erase(gone);
  if (change.file) {
    names[change.name] = *change.file;
  } else {
    names.erase(change.name);
  }
}

void PowerCutFiles::Change(const NameChange& change) {
  Apply(names_, change);
  changes_.push_back(change);
}

std::string PowerCutFiles::ReadWhole(const std::string& path) {
  if (cut_) throw PowerCut();
  if (!names_.contains(path)) throw Failure("Cannot read the file " + path);
  return files_[names_.at(path)].now;
}

Files::Handle PowerCutFiles::Create(const std::string& path, const std::string&) {
  Step();
  if (Exists(path)) throw Failure("Cannot write the file " + path + ": it is there already");
  files_.emplace_back();
  Change({path, files_.size() - 1});
  handles_[++lastHandle_] = {files_.size() - 1};
  return lastHandle_;
}

Files::Handle PowerCutFiles::Overwrite(const std::string& path) {
  Step();
  handles_[++lastHandle_] = {names_.at(path)};
  return lastHandle_;
}

void PowerCutFiles::Write(Handle handle, std::string_view bytes) {
  Opened& opened = handles_.at(handle);
  std::string& content = files_[opened.file].now;
  for (const std::string_view part : {bytes.substr(0, bytes.size() / 2), bytes.substr(bytes.size() / 2)}) {
    Step();
    content.replace(opened.at, part.size(), part);
    opened.at += part.size();
  }
}

void PowerCutFiles::Sync(Handle handle) {
  Step();
  Opened& opened = handles_.at(handle);
  files_[opened.file].now.resize(opened.at);
  Step();
  files_[opened.file].synced = files_[opened.file].now;
  if (opened.made.empty()) return;
  Step();
  SyncFolderOf(opened.made);
  opened.made.clear();
}

void PowerCutFiles::SyncFolderOf(const std::string& path) {
  for (const NameChange& change : changes_)
    if (FolderOfPath(change.name) == FolderOfPath(path)) Apply(syncedNames_, change);
  std::erase_if(changes_, [&](const NameChange& c) { return FolderOfPath(c.name) == FolderOfPath(path); });
}

void PowerCutFiles::SyncAll() {
  syncedNames_ = names_;
  changes_.clear();
  for (File& file : files_) file.synced = file.now;
}

void PowerCutFiles::LetGo() {
  handles_.clear();
  locks_.clear();
}

void PowerCutFiles::Close(Handle handle) {
  // A lock of the program may come from the disk before.
  if (locks_.erase(handle) > 0 || !handles_.contains(handle)) return;
  if (!cut_) Step();
  handles_.erase(handle);
}

void PowerCutFiles::Rename(const std::string& from, const std::string& to) {
  Step();
  Change({to, names_.at(from), from});
  Step();
  SyncFolderOf(to);
}

std::optional<Files::Handle> PowerCutFiles::OpenLocked(const std::string& path) {
  if (path.starts_with(kLocks)) {
    locks_.insert(++lastHandle_);
    return lastHandle_;
  }
  for (const auto& [handle, opened] : handles_)
    if (names_.contains(path) && opened.file == names_.at(path)) return {};
  Step();
  const bool made = !Exists(path);
  if (made) {
    files_.emplace_back();
    Change({path, files_.size() - 1});
  }
  const Number file = names_.at(path);
  handles_[++lastHandle_] = {file, files_[file].now.size(), made ? path : ""};
  return lastHandle_;
}

std::vector<std::string> PowerCutFiles::FilesIn(const std::string& folder) {
  std::vector<std::string> names;
  for (const auto& [path, file] : names_)
    if (FolderOfPath(path) == folder) names.push_back(path.substr(folder.size()));
  return names;
}

void PowerCutFiles::Remove(const std::string& path) {
  if (path.starts_with(kLocks)) return;
  if (cut_) return;
  Step();
  if (!Exists(path)) throw Failure("Cannot remove the file " + path);
  Change({path, {}});
}

std::vector<std::string> PowerCutFiles::ContentsOf(const File& file) const {
  if (file.now == file.synced) return {file.synced};
  // Half of the blocks have come to the disk.
  std::string torn = file.now.substr(0, file.now.size() / 2);
  if (torn.size() < file.synced.size()) torn += file.synced.substr(torn.size());
  return {file.synced, file.now, torn};
}

std::vector<PowerCutFiles::Contents> PowerCutFiles::Outcomes() const {
  std::vector<std::vector<std::string>> contents;
  std::size_t all = 1;
  for (const File& file : files_) all *= contents.emplace_back(ContentsOf(file)).size();
  all <<= std::min<std::size_t>(changes_.size(), 20);
  std::mt19937_64 random(1);
  std::vector<Contents> outcomes;
  for (std::size_t i = 0; i < std::min(all, kMostOutcomes); ++i) {
    // The number of the outcome says what became of each thing; where there are too many, at random.
    std::size_t rest = all <= kMostOutcomes ? i : random() % all;
    std::map<std::string, Number> names = syncedNames_;
    for (const NameChange& change : changes_) {
      if (rest % 2 != 0) Apply(names, change);
      rest /= 2;
    }
    std::vector<std::string> found;
    for (const std::vector<std::string>& variants : contents) {
      found.push_back(variants[rest % variants.size()]);
      rest /= variants.size();
    }
    Contents& outcome = outcomes.emplace_back();
    for (const auto& [name, file] : names) outcome[name] = found[file];
  }
  return outcomes;
}

PowerCutFiles::Contents PowerCutFiles::Now() const {
  Contents contents;
  for (const auto& [name, file] : names_) contents[name] = files_[file].now;
  return contents;
}

}  // namespace kelvane
