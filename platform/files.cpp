#include "platform/files.h"

// What every kind of file storage shares: names, and the one way in which files are replaced.

#include <algorithm>
#include <cstddef>

#include "platform/failure.h"

namespace kelvane {
namespace {

constexpr int kTemporaryNames = 100;

bool HasDrive(const std::string& path) {
  return path.size() >= 2 && path[1] == ':' &&
         std::string_view("/\\").find(path[0]) == std::string_view::npos;
}

// A free name in the folder of `path`.
std::string TemporaryName(const std::string& path) {
  const std::size_t nameStart = path.rfind('\\') + 1;  // 0 without a backslash
  const std::size_t dot = path.rfind('.');
  const bool hasExtension = dot != std::string::npos && dot >= nameStart;
  std::string name = hasExtension ? path.substr(0, dot) + ".~" + path.substr(dot + 1) : path + ".~";
  if (!TheFiles->Exists(name)) return name;
  for (int i = 1; i < kTemporaryNames; ++i) {
    std::string numbered = name + std::to_string(i);
    if (!TheFiles->Exists(numbered)) return numbered;
  }
  throw Failure("Cannot write the file " + MachinePath(path) + ": too many temporary files " +
                MachinePath(name) + " lie beside it.");
}

// One step of clearing up after a failure: that failure is what the person must hear of, not that this went
// wrong too.
template <typename Step>
void IfPossible(Step step) {
  try {
    step();
  } catch (const Failure&) {
  }
}

// Runs a step that works on the temporary file. Its failure is told of as one of the file that the person
// knows, with what became of that.
template <typename Step>
auto OnBehalfOf(const std::string& path, const std::string& temporary, Step step) {
  try {
    return step();
  } catch (const Failure& failure) {
    std::string message = failure.what();
    const std::string shown = MachinePath(temporary);
    const std::size_t at = message.find(shown);
    if (at != std::string::npos) message.replace(at, shown.size(), MachinePath(path));
    if (TheFiles->Exists(path)) message += "\nWhat the file held before is still there.";
    throw Failure(message);
  }
}

}  // namespace

std::string ProgramFolder;
std::string StateFolder;
Files* TheFiles = &DiskFiles();

bool SameFile(const std::string& path, const std::string& other) {
  return path == other || TheFiles->Resolve(path) == TheFiles->Resolve(other);
}

SafeFile::SafeFile(const std::string& name)
    : path(name), target(TheFiles->Resolve(path)), temporary(TemporaryName(target)) {
  handle = OnBehalfOf(path, temporary, [&] { return TheFiles->Create(temporary); });
}

SafeFile::~SafeFile() {
  if (open) IfPossible([&] { TheFiles->Close(handle); });
  if (!inPlace) IfPossible([&] { TheFiles->Remove(temporary); });
}

void SafeFile::Append(std::string_view bytes) {
  OnBehalfOf(path, temporary, [&] { TheFiles->Write(handle, bytes); });
}

void SafeFile::PutInPlace() {
  OnBehalfOf(path, temporary, [&] {
    TheFiles->Sync(handle);
    open = false;
    TheFiles->Close(handle);
  });
  TheFiles->Rename(temporary, target);
  inPlace = true;
}

void WriteFileSafely(const std::string& path, std::string_view content) {
  SafeFile file(path);
  file.Append(content);
  file.PutInPlace();
}

std::string MachinePath(const std::string& path) {
  if (path.starts_with('/')) return path;
  std::string machinePath = HasDrive(path) ? path.substr(2) : path;
  std::replace(machinePath.begin(), machinePath.end(), '\\', '/');
  return machinePath;
}

std::string BackslashPath(const std::string& machinePath) {
  std::string path = machinePath;
  std::replace(path.begin(), path.end(), '/', '\\');
  return path;
}

}  // namespace kelvane
