#pragma once

// A disk whose power goes at any moment. What was written and not synced is then there in whole, in part or
// not at all, and so is each change of names in a folder that was not synced since, in any combination.

#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/files.h"

namespace kelvane {

// Thrown where the power goes. Nothing of the program catches it.
struct PowerCut {};

class PowerCutFiles : public Files {
 public:
  using Contents = std::map<std::string, std::string>;

  // All of it lies safely on the disk.
  explicit PowerCutFiles(const Contents& contents);

  // The power goes at the `nth` step from now on, 1 the next. Reading is no step.
  void CutAt(int nth) { left_ = nth; }
  bool IsCut() const { return cut_; }
  // All that was written reaches the disk.
  void SyncAll();
  // The program was killed: nothing is open any more.
  void LetGo();
  // What the disk may hold afterwards; some of them, where there are very many.
  std::vector<Contents> Outcomes() const;
  // What the program sees.
  Contents Now() const;

  bool Exists(const std::string& path) override { return names_.contains(path); }
  std::string ReadWhole(const std::string& path) override;
  std::string Resolve(const std::string& path) override { return path; }
  bool MustStay(const std::string& path) override { return path == staying; }
  Handle Create(const std::string& path, const std::string& model) override;
  Handle Overwrite(const std::string& path) override;
  void Write(Handle handle, std::string_view bytes) override;
  void Sync(Handle handle) override;
  void Close(Handle handle) override;
  void Rename(const std::string& from, const std::string& to) override;
  void Remove(const std::string& path) override;
  bool RemoveLeftover(const std::string&) override { return false; }
  void MakeFolder(const std::string&) override {}

  // Locks do not lie on this disk and take no steps.
  std::optional<Handle> OpenLocked(const std::string& path) override;
  bool IsInPlace(Handle) override { return true; }
  void SyncSoon(Handle) override {}  // may be late
  std::vector<std::string> FilesIn(const std::string& folder) override;

  std::string staying;  // a file that must be written in place

 private:
  using Number = std::size_t;  // of a file on the disk, whatever its names
  struct File {
    std::string synced;
    std::string now;
  };
  // A step in a folder: the name comes to lead to another file, or to none; the other name goes with it.
  struct NameChange {
    std::string name;
    std::optional<Number> file;
    std::string gone = {};
  };
  struct Opened {
    Number file = 0;
    std::size_t at = 0;
    std::string made = {};  // its name, if that is new and was not synced yet
  };

  void Step();
  void SyncFolderOf(const std::string& path);
  void Change(const NameChange& change);
  static void Apply(std::map<std::string, Number>& names, const NameChange& change);
  std::vector<std::string> ContentsOf(const File& file) const;

  std::vector<File> files_;
  std::map<std::string, Number> names_;
  std::map<std::string, Number> syncedNames_;
  std::vector<NameChange> changes_;  // that are not synced, in their order
  std::set<Handle> locks_;
  std::map<Handle, Opened> handles_;
  Handle lastHandle_ = 0;
  int left_ = 0;
  bool cut_ = false;
};

}  // namespace kelvane
