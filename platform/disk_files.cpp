// The files of the disk, by the system calls themselves: the standard streams hide a failing sync or close.

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <system_error>

#include "platform/failure.h"
#include "platform/files.h"

namespace kelvane {
namespace {

constexpr std::size_t kLargestFile = 256U << 20;  // no file of the program comes near
constexpr int kLongestLinkChain = 40;
constexpr mode_t kModeBits = 07777;

[[noreturn]] void Fail(const std::string& doing, const std::string& machinePath, const std::string& reason) {
  throw Failure("Cannot " + doing + " the file " + machinePath + ": " + reason + ".");
}

[[noreturn]] void FailBySystem(const std::string& doing, const std::string& machinePath) {
  Fail(doing, machinePath, std::generic_category().message(errno));
}

// Repeats a call that a signal interrupted.
template <typename Call>
auto Uninterrupted(Call call) {
  while (true) {
    const auto result = call();
    if (result >= 0 || errno != EINTR) return result;
  }
}

// Closes on leaving; for descriptors whose closing cannot lose anything.
class Descriptor {
 public:
  explicit Descriptor(int number) : descriptor(number) {}
  ~Descriptor() {
    if (descriptor >= 0) close(descriptor);
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  int Number() const { return descriptor; }

 private:
  int descriptor;
};

std::filesystem::path FolderOfMachinePath(const std::filesystem::path& path) {
  return path.has_parent_path() ? path.parent_path() : std::filesystem::path(".");
}

// Makes the renaming itself last through a power failure. Some file systems cannot sync a folder; they say
// so with EINVAL.
void SyncFolder(const std::string& machinePath) {
  const std::string folder = FolderOfMachinePath(machinePath).string();
  const Descriptor descriptor(
      Uninterrupted([&] { return open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); }));
  // A folder that may be written but not read cannot be opened here; the file itself is in place.
  if (descriptor.Number() < 0) return;
  if (Uninterrupted([&] { return fsync(descriptor.Number()); }) != 0 && errno != EINVAL)
    FailBySystem("sync the folder of", machinePath);
}

// Gives `from` the access rights of the file it is to replace. Refuses to replace what the person protected
// or what is no file: renaming alone would not care.
void TakeOverRights(const std::string& from, const std::string& to) {
  struct stat old;
  if (stat(to.c_str(), &old) != 0) {
    if (errno == ENOENT) return;
    FailBySystem("replace", to);
  }
  if (!S_ISREG(old.st_mode)) Fail("replace", to, "it is not a regular file");
  if (access(to.c_str(), W_OK) != 0) FailBySystem("replace", to);
  if (chmod(from.c_str(), old.st_mode & kModeBits) != 0) FailBySystem("replace", to);
}

class FilesOfTheDisk : public Files {
 public:
  bool Exists(const std::string& path) override {
    struct stat status;
    return lstat(MachinePath(path).c_str(), &status) == 0 || (errno != ENOENT && errno != ENOTDIR);
  }

  std::string ReadWhole(const std::string& path) override {
    const std::string name = MachinePath(path);
    // Without O_NONBLOCK, opening a pipe would wait for its other end.
    const Descriptor file(
        Uninterrupted([&] { return open(name.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK); }));
    if (file.Number() < 0) FailBySystem("read", name);
    struct stat status;
    if (fstat(file.Number(), &status) != 0) FailBySystem("read", name);
    if (!S_ISREG(status.st_mode)) Fail("read", name, "it is not a regular file");
    return ReadToEnd(file.Number(), name);
  }

  std::string Resolve(const std::string& path) override {
    std::filesystem::path target = MachinePath(path);
    std::error_code error;
    // The links at the end of the path are followed one by one, since the last may point to a file that is
    // still to be made.
    for (int links = 0; std::filesystem::is_symlink(target, error); ++links) {
      if (links == kLongestLinkChain) Fail("find", MachinePath(path), "too many symbolic links");
      const std::filesystem::path next = std::filesystem::read_symlink(target, error);
      if (error) Fail("find", MachinePath(path), error.message());
      target = FolderOfMachinePath(target) / next;
    }
    const std::filesystem::path folder = std::filesystem::canonical(FolderOfMachinePath(target), error);
    return BackslashPath((error ? target : folder / target.filename()).string());
  }

  Handle Create(const std::string& path) override {
    const std::string name = MachinePath(path);
    constexpr mode_t kReadableAndWritable = 0666;  // less what the person's mask takes away
    const int descriptor = Uninterrupted(
        [&] { return open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, kReadableAndWritable); });
    if (descriptor < 0) FailBySystem("write", name);
    names[descriptor] = name;
    return descriptor;
  }

  void Write(Handle handle, std::string_view bytes) override {
    while (!bytes.empty()) {
      const ssize_t written = Uninterrupted([&] { return write(handle, bytes.data(), bytes.size()); });
      if (written < 0) FailBySystem("write", names[handle]);
      bytes.remove_prefix(static_cast<std::size_t>(written));
    }
  }

  void Sync(Handle handle) override {
    if (Uninterrupted([&] { return fsync(handle); }) != 0) FailBySystem("write", names[handle]);
  }

  void Close(Handle handle) override {
    const std::string name = names[handle];
    names.erase(handle);
    // An interrupted close has closed; trying again might close what somebody else has opened since.
    if (close(handle) != 0 && errno != EINTR) FailBySystem("write", name);
  }

  void Rename(const std::string& from, const std::string& to) override {
    const std::string source = MachinePath(from);
    const std::string target = MachinePath(to);
    TakeOverRights(source, target);
    if (rename(source.c_str(), target.c_str()) != 0) FailBySystem("replace", target);
    SyncFolder(target);
  }

  void Remove(const std::string& path) override {
    const std::string name = MachinePath(path);
    if (unlink(name.c_str()) != 0) FailBySystem("remove", name);
  }

  void MakeFolder(const std::string& path) override {
    std::string name = MachinePath(path);
    while (name.size() > 1 && name.ends_with('/')) name.pop_back();
    constexpr mode_t kForThePerson = 0700;
    if (mkdir(name.c_str(), kForThePerson) == 0 || errno == EEXIST) return;
    const std::string above = FolderOfMachinePath(name).string();
    if (errno != ENOENT || above == name) FailBySystem("make", name);
    MakeFolder(BackslashPath(above));
    if (mkdir(name.c_str(), kForThePerson) != 0 && errno != EEXIST) FailBySystem("make", name);
  }

 private:
  static std::string ReadToEnd(int descriptor, const std::string& name) {
    std::string content;
    std::array<char, 65536> buffer;
    while (true) {
      const ssize_t count = Uninterrupted([&] { return read(descriptor, buffer.data(), buffer.size()); });
      if (count < 0) FailBySystem("read", name);
      if (count == 0) return content;
      content.append(buffer.data(), static_cast<std::size_t>(count));
      if (content.size() > kLargestFile) Fail("read", name, "it is too large");
    }
  }

  std::map<Handle, std::string> names;  // of the files being written, for messages
};

}  // namespace

std::string FindStateFolder() {
  const auto variable = [](const char* name) {
    const char* value = std::getenv(name);
    // A path that is not absolute is to be ignored.
    return std::string(value != nullptr && value[0] == '/' ? value : "");
  };
  std::string state = variable("XDG_STATE_HOME");
  const std::string home = variable("HOME");
  if (state.empty() && !home.empty()) state = home + "/.local/state";
  return state.empty() ? state : BackslashPath(state) + "\\kelvane\\";
}

Files& DiskFiles() {
  static FilesOfTheDisk files;
  return files;
}

}  // namespace kelvane
