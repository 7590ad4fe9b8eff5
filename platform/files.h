#pragma once

// Files as the program sees them: whole contents, backslash paths, and single steps that can each fail.

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kelvane {

// The folder that holds the program and its data files; backslash form, always ends in a backslash.
// Set once by start-up (tests set it to a folder of their own).
extern std::string ProgramFolder;

// The person's folder for what is no configuration and must not be lost; backslash form, ends in a backslash,
// made when it is first needed. Empty if there is none. Set as ProgramFolder is.
extern std::string StateFolder;
// XDG_STATE_HOME, else .local/state in the home folder, then kelvane.
std::string FindStateFolder();

// File operations. Paths are in backslash form (`\home\u\Essay.001`); a drive letter in front stands for
// the root. Every operation throws Failure with the file's name and the system's reason.
class Files {
 public:
  using Handle = int;

  virtual ~Files() = default;

  // True if something of that name is there, readable or not.
  virtual bool Exists(const std::string& path) = 0;
  // The whole content of a regular file.
  virtual std::string ReadWhole(const std::string& path) = 0;
  // The path with symbolic links followed, so that replacing a file replaces what a link points to.
  virtual std::string Resolve(const std::string& path) = 0;

  // True if the file cannot be replaced by another of its name, though it may be written: it has further
  // names, which would go on leading to the old content, or its folder is closed to the person.
  virtual bool MustStay(const std::string& path) = 0;

  // The steps of writing. Create makes a new file and fails if the name is taken; where the file `model` is
  // there, the new one has its owner, access rights and attributes from the start, as far as the system
  // allows. It may be without its name until Sync. Overwrite opens a file that is there at its start; Sync
  // cuts off what it held beyond what was written. Close releases the handle even when it throws.
  virtual Handle Create(const std::string& path, const std::string& model) = 0;
  virtual Handle Overwrite(const std::string& path) = 0;
  virtual void Write(Handle handle, std::string_view bytes) = 0;
  virtual void Sync(Handle handle) = 0;
  virtual void Close(Handle handle) = 0;
  // Puts `from` in the place of `to` in one step. Fails if `to` is there and is no regular file or
  // write-protected.
  virtual void Rename(const std::string& from, const std::string& to) = 0;
  virtual void Remove(const std::string& path) = 0;
  // Removes the file if Create has made it and whoever wrote it ended before Rename: true if it is gone now.
  // What might be somebody's own stays.
  virtual bool RemoveLeftover(const std::string& path) = 0;
  // Makes the folder, for the person alone, and those above it, where they are missing.
  virtual void MakeFolder(const std::string& path) = 0;

  // Opens a file to be written at its end, made for the person alone where it is missing, and keeps it from
  // other programs that open it so until it is closed, or until this program ends in whatever way. Nothing if
  // another one has it.
  virtual std::optional<Handle> OpenLocked(const std::string& path) = 0;
  // Whether the file that was opened so still goes by its name.
  virtual bool IsInPlace(Handle handle) = 0;
  // Has what was written reach the disk without waiting for it. Throws what went wrong with the last time.
  virtual void SyncSoon(Handle handle) = 0;
  // Names of the files in a folder, sorted; none if there is no such folder.
  virtual std::vector<std::string> FilesIn(const std::string& folder) = 0;
};

// The files in use: those of the disk unless a test puts others in their place.
extern Files* TheFiles;
Files& DiskFiles();

// Filled at start-up: called before a file is replaced, so that what might be lost with it is on the disk.
// Throws nothing.
extern std::function<void()> BeforeReplacing;

// True if the two paths lead to one file, links followed, or are equal.
bool SameFile(const std::string& path, const std::string& other);

// New content of `path`, in pieces: written to a temporary file beside it, which is synced, closed and
// renamed over the old one when it is complete. A link stays; what it points to is replaced. The temporary
// name has "~" behind the dot of the extension (`QRX.DAT` by way of `QRX.~DAT`), with a number behind it
// where that name is taken, since what somebody left there may be all that is left of a page; what surely is
// the leftover of a writer that was killed goes. On any failure, and without PutInPlace, the old file is
// whole and the temporary file is gone where it can be removed. Every step throws Failure.
//
// A file that must stay is written in place, once the new content lies synced in the state folder. If that
// fails half-way, the copy there is kept and named in the message.
class SafeFile {
 public:
  explicit SafeFile(const std::string& path);
  ~SafeFile();
  SafeFile(const SafeFile&) = delete;
  SafeFile& operator=(const SafeFile&) = delete;

  void Append(std::string_view bytes);
  // The last step: nothing may be appended behind it.
  void PutInPlace();

 private:
  const std::string path_;
  const std::string target_;
  const bool mustStay_;
  const std::string temporary_;
  Files::Handle handle_;
  bool open_ = true;
  bool done_ = false;
};

// Replaces the content of `path`, or makes the file, by a SafeFile.
void WriteFileSafely(const std::string& path, std::string_view content);

// A free name for a file that is damaged and to be kept: `QRX.DAT.damaged`, with a number where that is
// taken.
std::string NameForDamaged(const std::string& path);

// Backslash form to the machine's form and back. The only place that knows the difference. A path with a
// backslash in a name has no backslash form: BackslashPath throws Failure.
std::string MachinePath(const std::string& path);
std::string BackslashPath(const std::string& machinePath);

}  // namespace kelvane
