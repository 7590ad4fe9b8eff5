#include "platform/files.h"

// What every kind of file storage shares: names, and the one way in which files are replaced.

#include <algorithm>
#include <cstddef>

#include "platform/failure.h"
#include "platform/if_possible.h"

namespace kelvane {
namespace {

constexpr int kTemporaryNames = 100;
constexpr std::size_t kLongestName = 255;  // bytes, of a file in its folder

bool HasDrive(const std::string& path) {
  return path.size() >= 2 && path[1] == ':' &&
         std::string_view("/\\").find(path[0]) == std::string_view::npos;
}

// `name` cut to a number of bytes, between two characters if it is UTF-8.
std::string_view Beginning(std::string_view name, std::size_t bytes) {
  while (bytes > 0 && (static_cast<unsigned char>(name[bytes]) & 0xC0U) == 0x80U) --bytes;
  return name.substr(0, bytes);
}

// A free name in the folder of `path`; `freed` tells whether a name that is taken could be freed.
std::string TemporaryName(const std::string& path, bool (*freed)(const std::string&)) {
  constexpr std::size_t kMark = 2;                     // ".~"
  constexpr std::size_t kNumber = 2;                   // digits that tell temporary files apart
  const std::size_t nameStart = path.rfind('\\') + 1;  // 0 without a backslash
  const std::size_t dot = path.rfind('.');
  const bool hasExtension = dot != std::string::npos && dot >= nameStart;
  std::string name = hasExtension ? path.substr(0, dot) + ".~" + path.substr(dot + 1) : path + ".~";
  if (name.size() - nameStart + kNumber > kLongestName) {
    const std::string_view whole = std::string_view(path).substr(nameStart);
    name = path.substr(0, nameStart);
    name += Beginning(whole, kLongestName - kMark - kNumber);
    name += ".~";
  }
  for (int i = 0; i < kTemporaryNames; ++i) {
    std::string numbered = i == 0 ? name : name + std::to_string(i);
    if (!TheFiles->Exists(numbered) || freed(numbered)) return numbered;
  }
  throw Failure("Cannot write the file " + MachinePath(path) + ": too many temporary files " +
                MachinePath(name) + " lie beside it.");
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

std::string NameBeside(const std::string& target) {
  return TemporaryName(target, [](const std::string& name) { return TheFiles->RemoveLeftover(name); });
}

// A free name in the state folder, which is made if it is missing. What a writer that was killed left there
// may be all that is left of a page.
std::string SafetyName(const std::string& path, const std::string& target) {
  if (StateFolder.empty())
    throw Failure("Cannot write the file " + MachinePath(path) + ": there is no folder for a safety copy.");
  TheFiles->MakeFolder(StateFolder);
  return TemporaryName(StateFolder + target.substr(target.rfind('\\') + 1),
                       [](const std::string&) { return false; });
}

// Writes over a file that must stay. Its old content is gone from the first byte on, but the safety copy is
// there whatever happens.
void CopyInPlace(const std::string& safety, const std::string& target) {
  try {
    const std::string content = TheFiles->ReadWhole(safety);
    const Files::Handle handle = TheFiles->Overwrite(target);
    try {
      TheFiles->Write(handle, content);
      TheFiles->Sync(handle);
    } catch (const Failure&) {
      IfPossible([&] { TheFiles->Close(handle); });
      throw;
    }
    TheFiles->Close(handle);
  } catch (const Failure& failure) {
    throw Failure(std::string(failure.what()) + "\nWhat was to be written is in " + MachinePath(safety) +
                  ".");
  }
}

}  // namespace

std::string ProgramFolder;
std::string StateFolder;
Files* TheFiles = &DiskFiles();
std::function<void()> BeforeReplacing;

bool SameFile(const std::string& path, const std::string& other) {
  return path == other || TheFiles->Resolve(path) == TheFiles->Resolve(other);
}

SafeFile::SafeFile(const std::string& name)
    : path_(name),
      target_(TheFiles->Resolve(path_)),
      mustStay_(TheFiles->MustStay(target_)),
      temporary_(mustStay_ ? SafetyName(path_, target_) : NameBeside(target_)) {
  handle_ = OnBehalfOf(path_, temporary_, [&] { return TheFiles->Create(temporary_, target_); });
}

SafeFile::~SafeFile() {
  if (open_) IfPossible([&] { TheFiles->Close(handle_); });
  if (!done_) IfPossible([&] { TheFiles->Remove(temporary_); });
}

void SafeFile::Append(std::string_view bytes) {
  OnBehalfOf(path_, temporary_, [&] { TheFiles->Write(handle_, bytes); });
}

void SafeFile::PutInPlace() {
  if (BeforeReplacing) BeforeReplacing();
  OnBehalfOf(path_, temporary_, [&] {
    TheFiles->Sync(handle_);
    open_ = false;
    TheFiles->Close(handle_);
  });
  if (!mustStay_) {
    TheFiles->Rename(temporary_, target_);
    done_ = true;
    return;
  }
  done_ = true;  // what is in the safety copy stays until the file holds it
  CopyInPlace(temporary_, target_);
  IfPossible([&] { TheFiles->Remove(temporary_); });
}

void WriteFileSafely(const std::string& path, std::string_view content) {
  SafeFile file(path);
  file.Append(content);
  file.PutInPlace();
}

std::string NameForDamaged(const std::string& path) {
  std::string name = path + ".damaged";
  for (int i = 1; TheFiles->Exists(name); ++i) name = path + ".damaged" + std::to_string(i);
  return name;
}

std::string MachinePath(const std::string& path) {
  if (path.starts_with('/')) return path;
  std::string machinePath = HasDrive(path) ? path.substr(2) : path;
  std::replace(machinePath.begin(), machinePath.end(), '\\', '/');
  return machinePath;
}

std::string BackslashPath(const std::string& machinePath) {
  if (machinePath.find('\\') != std::string::npos)
    throw Failure("The name of a paper and of its folders cannot contain a backslash: " + machinePath);
  std::string path = machinePath;
  std::replace(path.begin(), path.end(), '/', '\\');
  return path;
}

}  // namespace kelvane
