// The files of the disk, by the system calls themselves: the standard streams hide a failing sync or close.

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <system_error>
#include <utility>

#include "platform/failure.h"
#include "platform/file_syncer.h"
#include "platform/files.h"

namespace kelvane {
namespace {

constexpr std::size_t kLargestFile = 256U << 20;  // no file of the program comes near
constexpr int kLongestLinkChain = 40;
constexpr mode_t kModeBits = 07777;
constexpr mode_t kPlainModeBits = 0777;
// The mark of a file that is being written, until it takes its place. Its value is the file's number on its
// disk, which a copy of the file does not share.
constexpr char kMark[] = "user.kelvane.writing";

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
  explicit Descriptor(int number) : descriptor_(number) {}
  ~Descriptor() {
    if (descriptor_ >= 0) close(descriptor_);
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  int Number() const { return descriptor_; }

 private:
  int descriptor_;
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

bool MayWrite(const std::string& machinePath) {
  return faccessat(AT_FDCWD, machinePath.c_str(), W_OK, AT_EACCESS) == 0;
}

// Refuses to replace what the person protected or what is no file: renaming alone would not care.
void CheckReplaceable(const std::string& machinePath) {
  struct stat old;
  if (stat(machinePath.c_str(), &old) != 0) {
    if (errno == ENOENT) return;
    FailBySystem("replace", machinePath);
  }
  if (!S_ISREG(old.st_mode)) Fail("replace", machinePath, "it is not a regular file");
  if (!MayWrite(machinePath)) FailBySystem("replace", machinePath);
}

// Extended attributes, which hold the access lists too. What the system does not let one set is left out.
void CopyAttributes(int from, int to) {
  const ssize_t size = flistxattr(from, nullptr, 0);
  if (size <= 0) return;
  std::string names(static_cast<std::size_t>(size), '\0');
  const ssize_t listed = flistxattr(from, names.data(), names.size());
  for (ssize_t at = 0; at < listed;) {
    const std::string name = names.c_str() + at;
    at += static_cast<ssize_t>(name.size()) + 1;
    const ssize_t length = fgetxattr(from, name.c_str(), nullptr, 0);
    if (length < 0 || name == kMark) continue;
    std::string value(static_cast<std::size_t>(length), '\0');
    const ssize_t got = fgetxattr(from, name.c_str(), value.data(), value.size());
    if (got >= 0) fsetxattr(to, name.c_str(), value.data(), static_cast<std::size_t>(got), 0);
  }
}

// Makes the new, empty file `to` one that those may read and write who could the file `model`, and nobody
// else.
bool TakeOver(const std::string& model, int to) {
  const Descriptor from(Uninterrupted([&] { return open(model.c_str(), O_RDONLY | O_CLOEXEC); }));
  struct stat old;
  if ((from.Number() >= 0 ? fstat(from.Number(), &old) : stat(model.c_str(), &old)) != 0) return false;
  mode_t mode = old.st_mode & kModeBits;
  struct stat made;
  if (fchown(to, old.st_uid, old.st_gid) != 0 && fchown(to, static_cast<uid_t>(-1), old.st_gid) != 0) {
    // Another group gets no more than everybody has.
    mode = (mode & ~static_cast<mode_t>(S_IRWXG)) | (mode & S_IRWXO) << 3;
  }
  if (fstat(to, &made) != 0 || made.st_uid != old.st_uid) mode &= kPlainModeBits;
  if (fchmod(to, mode) != 0) return false;
  if (from.Number() >= 0 && made.st_gid == old.st_gid) CopyAttributes(from.Number(), to);
  return true;
}

std::string NumberOf(int file) {
  struct stat status;
  return fstat(file, &status) == 0 ? std::to_string(status.st_ino) : "";
}

// Whether the open file bears the mark. Where the file system keeps no attributes none does.
bool IsMarked(int file) {
  std::array<char, 32> value;
  const ssize_t length = fgetxattr(file, kMark, value.data(), value.size());
  return length > 0 && std::string_view(value.data(), static_cast<std::size_t>(length)) == NumberOf(file);
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

  bool MustStay(const std::string& path) override {
    const std::string name = MachinePath(path);
    const std::string folder = FolderOfMachinePath(name).string();
    struct stat file;
    struct stat around;
    if (stat(name.c_str(), &file) != 0 || !S_ISREG(file.st_mode) || !MayWrite(name)) return false;
    if (file.st_nlink > 1 || !MayWrite(folder)) return true;
    // In such a folder one may replace what is one's own only.
    const uid_t person = geteuid();
    return stat(folder.c_str(), &around) == 0 && (around.st_mode & S_ISVTX) != 0 && person != 0 &&
           person != file.st_uid && person != around.st_uid;
  }

  Handle Create(const std::string& path, const std::string& model) override {
    const std::string name = MachinePath(path);
    const std::string modelName = MachinePath(model);
    struct stat status;
    const bool hasModel = stat(modelName.c_str(), &status) == 0 && S_ISREG(status.st_mode);
    // For nobody else until it has the model's rights; without a model less what the person's mask takes
    // away.
    const mode_t mode = hasModel ? 0600 : 0666;
    if (lstat(name.c_str(), &status) == 0) Fail("write", name, std::generic_category().message(EEXIST));
    Handle handle = CreateNameless(name, mode);
    if (handle >= 0) {
      files_[handle] = {.name = name, .nameless = true};
    } else {
      handle =
          Uninterrupted([&] { return open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode); });
      if (handle < 0) FailBySystem("write", name);
      files_[handle] = {.name = name};
    }
    if (hasModel && !TakeOver(modelName, handle)) {
      const int reason = errno;
      if (!files_[handle].nameless) unlink(name.c_str());
      files_.erase(handle);
      close(handle);
      Fail("write", name, std::generic_category().message(reason));
    }
    MarkAndLock(handle, name);
    return handle;
  }

  Handle Overwrite(const std::string& path) override {
    const std::string name = MachinePath(path);
    const Handle handle = Uninterrupted([&] { return open(name.c_str(), O_WRONLY | O_CLOEXEC); });
    if (handle < 0) FailBySystem("write", name);
    files_[handle] = {.name = name, .overwritten = true};
    return handle;
  }

  void Write(Handle handle, std::string_view bytes) override {
    while (!bytes.empty()) {
      const ssize_t written = Uninterrupted([&] { return write(handle, bytes.data(), bytes.size()); });
      if (written < 0) FailBySystem("write", files_[handle].name);
      bytes.remove_prefix(static_cast<std::size_t>(written));
    }
  }

  void Sync(Handle handle) override {
    Opened& file = files_[handle];
    syncer_.Forget(handle);
    if (file.overwritten && ftruncate(handle, lseek(handle, 0, SEEK_CUR)) != 0)
      FailBySystem("write", file.name);
    if (Uninterrupted([&] { return fsync(handle); }) != 0) FailBySystem("write", file.name);
    if (std::exchange(file.made, false)) SyncFolder(file.name);
    if (!file.nameless) return;
    if (linkat(AT_FDCWD, PathOf(handle).c_str(), AT_FDCWD, file.name.c_str(), AT_SYMLINK_FOLLOW) != 0)
      FailBySystem("write", file.name);
    file.nameless = false;
  }

  void Close(Handle handle) override {
    const std::string name = files_[handle].name;
    files_.erase(handle);
    syncer_.Forget(handle);
    // An interrupted close has closed; trying again might close what somebody else has opened since.
    if (close(handle) != 0 && errno != EINTR) FailBySystem("write", name);
  }

  void Rename(const std::string& from, const std::string& to) override {
    const std::string source = MachinePath(from);
    const std::string target = MachinePath(to);
    CheckReplaceable(target);
    if (rename(source.c_str(), target.c_str()) != 0) FailBySystem("replace", target);
    if (const auto lock = locks_.find(source); lock != locks_.end()) {
      fremovexattr(lock->second, kMark);
      Unlock(source);
    }
    SyncFolder(target);
  }

  void Remove(const std::string& path) override {
    const std::string name = MachinePath(path);
    Unlock(name);
    if (unlink(name.c_str()) != 0) FailBySystem("remove", name);
  }

  bool RemoveLeftover(const std::string& path) override {
    const std::string name = MachinePath(path);
    const Descriptor file(
        Uninterrupted([&] { return open(name.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOFOLLOW); }));
    if (file.Number() < 0 || !IsMarked(file.Number())) return false;
    // A writer that lives holds the lock.
    if (flock(file.Number(), LOCK_EX | LOCK_NB) != 0) return false;
    return unlink(name.c_str()) == 0;
  }

  void MakeFolder(const std::string& path) override {
    std::string name = MachinePath(path);
    while (name.size() > 1 && name.ends_with('/')) name.pop_back();
    constexpr mode_t kForThePerson = 0700;
    if (mkdir(name.c_str(), kForThePerson) == 0) return SyncFolder(name);
    if (errno == EEXIST) return;
    const std::string above = FolderOfMachinePath(name).string();
    if (errno != ENOENT || above == name) FailBySystem("make", name);
    MakeFolder(BackslashPath(above));
    if (mkdir(name.c_str(), kForThePerson) != 0 && errno != EEXIST) FailBySystem("make", name);
  }

  std::optional<Handle> OpenLocked(const std::string& path) override {
    const std::string name = MachinePath(path);
    constexpr mode_t kForThePerson = 0600;
    while (true) {
      struct stat before;
      const bool made = lstat(name.c_str(), &before) != 0;
      const Handle handle = Uninterrupted(
          [&] { return open(name.c_str(), O_RDWR | O_CREAT | O_APPEND | O_CLOEXEC, kForThePerson); });
      if (handle < 0) FailBySystem("write", name);
      const bool locked = Uninterrupted([&] { return flock(handle, LOCK_EX | LOCK_NB); }) == 0;
      const int reason = errno;
      if (locked && IsNamed(handle, name)) {
        files_[handle] = {.name = name, .made = made};
        return handle;
      }
      close(handle);
      if (!locked && reason == EWOULDBLOCK) return {};
      if (!locked) Fail("lock", name, std::generic_category().message(reason));
      // Its owner has removed it in between.
    }
  }

  bool IsInPlace(Handle handle) override { return IsNamed(handle, files_[handle].name); }

  void SyncSoon(Handle handle) override {
    Opened& file = files_[handle];
    if (const int reason = syncer_.TakeError(handle); reason != 0)
      Fail("write", file.name, std::generic_category().message(reason));
    const std::string folder =
        std::exchange(file.made, false) ? FolderOfMachinePath(file.name).string() : std::string();
    syncer_.Sync(handle, folder);
  }

  std::vector<std::string> FilesIn(const std::string& folder) override {
    std::vector<std::string> names;
    std::error_code error;
    for (std::filesystem::directory_iterator entry(MachinePath(folder), error), end; !error && entry != end;
         entry.increment(error)) {
      std::error_code ofEntry;
      if (entry->is_regular_file(ofEntry)) names.push_back(entry->path().filename().string());
    }
    std::sort(names.begin(), names.end());
    return names;
  }

 private:
  // A file being written.
  struct Opened {
    std::string name;       // for messages
    bool nameless = false;  // gets its name when it is synced
    bool overwritten = false;
    bool made = false;  // its name is new and was not synced yet
  };

  static bool IsNamed(Handle handle, const std::string& name) {
    struct stat opened;
    struct stat named;
    return fstat(handle, &opened) == 0 && stat(name.c_str(), &named) == 0 && opened.st_ino == named.st_ino &&
           opened.st_dev == named.st_dev;
  }

  static std::string PathOf(Handle handle) { return "/proc/self/fd/" + std::to_string(handle); }

  // A file in the folder of `name` that has no name yet, so that nothing is left of it if the program is
  // killed. Below 0 where the file system has none.
  static Handle CreateNameless(const std::string& name, mode_t mode) {
    if (access("/proc/self/fd", X_OK) != 0) return -1;
    const std::string folder = FolderOfMachinePath(name).string();
    return Uninterrupted([&] { return open(folder.c_str(), O_WRONLY | O_TMPFILE | O_CLOEXEC, mode); });
  }

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

  // Marks a new file as one that is being written, and holds it, by a descriptor of its own, until it takes
  // its place or is removed: it outlives Close. Without attributes or locks a leftover is nobody's for sure.
  void MarkAndLock(Handle handle, const std::string& name) {
    const std::string number = NumberOf(handle);
    if (fsetxattr(handle, kMark, number.data(), number.size(), 0) != 0) return;
    const int lock = fcntl(handle, F_DUPFD_CLOEXEC, 0);
    if (lock < 0) return;
    Unlock(name);
    locks_[name] = lock;
    flock(lock, LOCK_EX | LOCK_NB);
  }
  void Unlock(const std::string& name) {
    const auto lock = locks_.extract(name);
    if (!lock.empty()) close(lock.mapped());
  }

  std::map<Handle, Opened> files_;
  std::map<std::string, int> locks_;  // descriptors, by the names of files that are being written
  FileSyncer syncer_;
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
