#pragma once

// Files kept in memory, any step of which can be made to fail.

#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "platform/files.h"

namespace kelvane {

enum class FileStep { ReadWhole, Resolve, Create, Write, Sync, Close, Rename, Remove, Overwrite, OpenLocked };

class MemoryFiles : public Files {
 public:
  // Contents by path. Tests read and write it at will.
  std::map<std::string, std::string> contents;
  // Paths that are there but fail to be read.
  std::set<std::string> unreadable;
  // Symbolic links and what they point to.
  std::map<std::string, std::string> links;
  // Files that writers who were killed have left behind.
  std::set<std::string> leftovers;
  // Files that must be written in place.
  std::set<std::string> staying;
  // Number of handles that were made and not closed.
  int openHandles = 0;
  // Steps carried out or failed since the last FailStep.
  int steps = 0;

  // The `nth` step of that kind from now on (1 is the next) fails, once.
  void FailStep(FileStep step, int nth = 1);
  // The `nth` step of any kind from now on fails, and with `lasting` every one after it.
  void FailAnyStep(int nth, bool lasting = false);
  // Steps on files in these folders neither fail nor count.
  std::vector<std::string> spared;
  // Takes failures that did not come about back.
  void FailNothing();

  bool Exists(const std::string& path) override;
  std::string ReadWhole(const std::string& path) override;
  std::string Resolve(const std::string& path) override;
  bool MustStay(const std::string& path) override { return staying.contains(path); }
  Handle Create(const std::string& path, const std::string& model) override;
  // Empties the file at once.
  Handle Overwrite(const std::string& path) override;
  // A failing write leaves half of its bytes in the file, as a full disk does.
  void Write(Handle handle, std::string_view bytes) override;
  void Sync(Handle handle) override;
  void Close(Handle handle) override;
  void Rename(const std::string& from, const std::string& to) override;
  void Remove(const std::string& path) override;
  bool RemoveLeftover(const std::string& path) override {
    return leftovers.erase(path) > 0 && contents.erase(path) > 0;
  }
  void MakeFolder(const std::string&) override {}
  std::optional<Handle> OpenLocked(const std::string& path) override;
  bool IsInPlace(Handle handle) override;
  void SyncSoon(Handle handle) override { Sync(handle); }
  std::vector<std::string> FilesIn(const std::string& folder) override;

  // Files that another program has locked.
  std::set<std::string> lockedElsewhere;
  // The program was killed: nothing is open or locked any more.
  void LetGo();

 private:
  Handle Open(const std::string& path);
  bool IsToFail(FileStep step, const std::string& path);
  void Take(FileStep step, const std::string& path);

  std::map<Handle, std::string> handles;
  std::set<std::string> locked;  // by handles that are open
  Handle lastHandle = 0;
  std::map<FileStep, int> failing;  // steps left until the one that fails
  int anyFailing = 0;
  bool anyLasting = false;
};

}  // namespace kelvane
