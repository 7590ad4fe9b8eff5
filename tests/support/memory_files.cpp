#include "tests/support/memory_files.h"

#include "platform/failure.h"

namespace kelvane {

void MemoryFiles::FailStep(FileStep step, int nth) {
  failing[step] = nth;
}

void MemoryFiles::FailAnyStep(int nth, bool lasting) {
  anyFailing = nth;
  anyLasting = lasting;
  steps = 0;
}

void MemoryFiles::FailNothing() {
  failing.clear();
  FailAnyStep(0);
}

bool MemoryFiles::IsToFail(FileStep step, const std::string& path) {
  for (const std::string& folder : spared)
    if (path.starts_with(folder)) return false;
  ++steps;
  const auto planned = failing.find(step);
  if (planned != failing.end() && --planned->second == 0) {
    failing.erase(planned);
    return true;
  }
  return anyFailing > 0 && (steps == anyFailing || (anyLasting && steps > anyFailing));
}

void MemoryFiles::Take(FileStep step, const std::string& path) {
  if (IsToFail(step, path)) throw Failure("Made to fail: " + MachinePath(path));
}

bool MemoryFiles::Exists(const std::string& path) {
  return contents.contains(path) || unreadable.contains(path) || links.contains(path);
}

std::string MemoryFiles::ReadWhole(const std::string& path) {
  Take(FileStep::ReadWhole, path);
  const auto link = links.find(path);
  const auto file = contents.find(link == links.end() ? path : link->second);
  if (file == contents.end() || unreadable.contains(path)) throw Failure("Cannot read the file " + path);
  return file->second;
}

std::string MemoryFiles::Resolve(const std::string& path) {
  Take(FileStep::Resolve, path);
  const auto link = links.find(path);
  return link == links.end() ? path : link->second;
}

Files::Handle MemoryFiles::Create(const std::string& path, const std::string&) {
  Take(FileStep::Create, path);
  if (Exists(path)) throw Failure("Cannot write the file " + path + ": it is there already");
  return Open(path);
}

Files::Handle MemoryFiles::Overwrite(const std::string& path) {
  Take(FileStep::Overwrite, path);
  return Open(path);
}

Files::Handle MemoryFiles::Open(const std::string& path) {
  contents[path].clear();
  handles[++lastHandle] = path;
  ++openHandles;
  return lastHandle;
}

void MemoryFiles::Write(Handle handle, std::string_view bytes) {
  std::string& content = contents.at(handles.at(handle));
  if (IsToFail(FileStep::Write, handles.at(handle))) {
    content.append(bytes.substr(0, bytes.size() / 2));
    throw Failure("Made to fail: " + MachinePath(handles.at(handle)));
  }
  content.append(bytes);
}

void MemoryFiles::Sync(Handle handle) {
  Take(FileStep::Sync, handles.at(handle));
}

void MemoryFiles::Close(Handle handle) {
  const std::string path = handles.at(handle);
  handles.erase(handle);
  if (locked.erase(path) == 0) --openHandles;
  Take(FileStep::Close, path);
}

void MemoryFiles::Rename(const std::string& from, const std::string& to) {
  Take(FileStep::Rename, to);
  contents[to] = contents.at(from);
  contents.erase(from);
}

void MemoryFiles::Remove(const std::string& path) {
  Take(FileStep::Remove, path);
  lockedElsewhere.erase(path);
  if (contents.erase(path) == 0) throw Failure("Cannot remove the file " + path);
}

std::optional<Files::Handle> MemoryFiles::OpenLocked(const std::string& path) {
  Take(FileStep::OpenLocked, path);
  if (lockedElsewhere.contains(path) || locked.contains(path)) return {};
  contents[path];
  locked.insert(path);
  handles[++lastHandle] = path;
  return lastHandle;
}

bool MemoryFiles::IsInPlace(Handle handle) {
  const std::string& path = handles.at(handle);
  return contents.contains(path) && !lockedElsewhere.contains(path);
}

std::vector<std::string> MemoryFiles::FilesIn(const std::string& folder) {
  std::vector<std::string> names;
  for (const auto& file : contents) {
    if (!file.first.starts_with(folder)) continue;
    const std::string name = file.first.substr(folder.size());
    if (!name.empty() && name.find('\\') == std::string::npos) names.push_back(name);
  }
  return names;
}

void MemoryFiles::LetGo() {
  handles.clear();
  locked.clear();
  openHandles = 0;
}

}  // namespace kelvane
