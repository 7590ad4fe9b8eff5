#include "platform/files.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "tests/support/program_test.h"

namespace kelvane {
namespace {

TEST(Paths, TurnIntoTheMachinesFormAndBack) {
  const char* const cases[][2] = {{"\\home\\u\\a.001", "/home/u/a.001"},
                                  {"C:\\P\\a.001", "/P/a.001"},
                                  {"/home/u/a\\b", "/home/u/a\\b"},
                                  {"a.001", "a.001"},
                                  {"\\a:b", "/a:b"}};
  for (const auto& [path, machine] : cases) EXPECT_EQ(MachinePath(path), machine);
  EXPECT_EQ(BackslashPath("/home/u/Essay.001"), "\\home\\u\\Essay.001");
  EXPECT_THROW(BackslashPath("/home/u/a\\b.001"), Failure) << "there may be another file a/b.001";
}

using Contents = std::map<std::string, std::string>;

class SafeWriting : public ProgramTest {};

TEST_F(SafeWriting, EveryStepThatFailsLeavesTheOldFileWhole) {
  const std::string path = "\\P\\Essay.001";
  for (const bool lasting : {false, true}) {
    int nth = 0;
    for (bool written = false; !written;) {
      ASSERT_LT(++nth, 20);
      files.contents = {{path, "old"}};
      files.FailAnyStep(nth, lasting);
      try {
        WriteFileSafely(path, "new content");
        written = true;
      } catch (const Failure&) {
        EXPECT_EQ(files.contents.at(path), "old") << nth;
        // Where clearing up fails as well, the temporary file stays.
        EXPECT_TRUE(lasting || files.contents.size() == 1) << nth;
      }
      EXPECT_EQ(files.openHandles, 0) << nth;
    }
    EXPECT_EQ(nth, 7) << "resolve, create, write, sync, close and rename can fail";
    EXPECT_EQ(files.contents, Contents({{path, "new content"}}));
  }
}

TEST_F(SafeWriting, GoesByWayOfATemporaryFileBesideTheOldOne) {
  const char* const cases[][2] = {
      {"\\K\\QRX.DAT", "\\K\\QRX.~DAT"}, {"\\P.x\\Essay", "\\P.x\\Essay.~"}, {"a.b.001", "a.b.~001"}};
  for (const auto& [path, temporary] : cases) {
    files.contents.clear();
    files.FailStep(FileStep::Rename);
    files.FailStep(FileStep::Remove);
    EXPECT_THROW(WriteFileSafely(path, "x"), Failure);
    EXPECT_EQ(files.contents, Contents({{temporary, "x"}}));
  }
}

TEST_F(SafeWriting, KeepsATemporaryFileThatWasLeftBehind) {
  files.contents = {{"\\P\\Essay.001", "old"}, {"\\P\\Essay.~001", "all that is left"}};
  WriteFileSafely("\\P\\Essay.001", "new");
  EXPECT_EQ(files.contents, Contents({{"\\P\\Essay.001", "new"}, {"\\P\\Essay.~001", "all that is left"}}));
  files.leftovers = {"\\P\\Essay.~001"};
  WriteFileSafely("\\P\\Essay.001", "newer");
  EXPECT_EQ(files.contents, Contents({{"\\P\\Essay.001", "newer"}})) << "nobody's for sure";
}

TEST_F(SafeWriting, AFileThatStaysIsWrittenOnceItsNewContentIsSafe) {
  const std::string path = "\\P\\Essay.001";
  files.staying = {path};
  StateFolder = "\\State\\";
  for (int nth = 1, failures = 1; failures > 0; ++nth) {
    failures = 0;
    files.contents = {{path, "old"}};
    files.FailAnyStep(nth, true);
    try {
      WriteFileSafely(path, "new content");
    } catch (const Failure& failure) {
      ++failures;
      const std::string where = "/State/Essay.~001";
      const bool named = std::string(failure.what()).find(where) != std::string::npos;
      EXPECT_TRUE(named ? files.contents["\\State\\Essay.~001"] == "new content"
                        : files.contents[path] == "old")
          << nth << failure.what();
    }
    ASSERT_LT(nth, 20);
  }
  EXPECT_EQ(files.contents.at(path), "new content");
  files.FailNothing();
  StateFolder.clear();
  EXPECT_THROW(WriteFileSafely(path, "x"), Failure);
  EXPECT_EQ(files.contents.at(path), "new content");
}

TEST_F(SafeWriting, ALongNameHasAShorterTemporaryOne) {
  const std::string umlauts = "\\P\\" + std::string(1, 'x') + [] {
    std::string text;
    for (int i = 0; i < 127; ++i) text += "\xC3\xA4";
    return text;
  }();
  for (const std::string& path : {"\\P\\" + std::string(251, 'n') + ".001", umlauts}) {
    files.contents.clear();
    files.FailStep(FileStep::Rename);
    files.FailStep(FileStep::Remove);
    EXPECT_THROW(WriteFileSafely(path, "x"), Failure);
    ASSERT_EQ(files.contents.size(), 1U);
    const std::string temporary = files.contents.begin()->first.substr(3);
    EXPECT_LE(temporary.size(), 253U);
    EXPECT_TRUE(temporary.ends_with("n.~") || temporary.ends_with("\xA4.~")) << temporary;
  }
}

TEST_F(SafeWriting, ReplacesWhatALinkPointsTo) {
  files.links = {{"\\P\\Link.001", "\\Q\\Essay.001"}};
  files.contents = {{"\\Q\\Essay.001", "old"}};
  WriteFileSafely("\\P\\Link.001", "new");
  EXPECT_EQ(files.contents, Contents({{"\\Q\\Essay.001", "new"}}));
}

// Acts as an ordinary person, who owns the folder and what is in it, also where the administrator runs the
// tests.
class AsOrdinaryPerson {
 public:
  explicit AsOrdinaryPerson(const std::filesystem::path& folder) {
    constexpr uid_t kSomebody = 65534;
    if (before != 0) return;
    EXPECT_EQ(chown(folder.c_str(), kSomebody, kSomebody), 0);
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder))
      EXPECT_EQ(chown(entry.path().c_str(), kSomebody, kSomebody), 0);
    EXPECT_EQ(seteuid(kSomebody), 0);
  }
  ~AsOrdinaryPerson() { EXPECT_EQ(seteuid(before), 0); }
  AsOrdinaryPerson(const AsOrdinaryPerson&) = delete;
  AsOrdinaryPerson& operator=(const AsOrdinaryPerson&) = delete;

 private:
  const uid_t before = geteuid();
};

// The disk's own files, in a folder made for each test.
class FilesOnDisk : public ProgramTest {
 protected:
  FilesOnDisk() {
    TheFiles = &DiskFiles();
    std::string pattern = (std::filesystem::temp_directory_path() / "kelvane-XXXXXX").string();
    folder = mkdtemp(pattern.data());
    std::ofstream(folder / "a.001", std::ios::binary) << "old";
  }
  ~FilesOnDisk() override {
    std::error_code ignored;
    std::filesystem::remove_all(folder, ignored);
  }

  std::string Path(const std::string& name) const { return BackslashPath(folder.string()) + "\\" + name; }
  std::string Content(const std::string& name) const { return DiskFiles().ReadWhole(Path(name)); }
  void ExpectOldFileAlone() const {
    EXPECT_EQ(Content("a.001"), "old");
    EXPECT_FALSE(DiskFiles().Exists(Path("a.~001")));
  }

  std::filesystem::path folder;
};

TEST_F(FilesOnDisk, WriteAndReadAnyBytes) {
  std::string bytes(300000, '\0');
  for (std::size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<char>(i * 7);
  for (const std::string& content : {bytes, std::string()}) {
    WriteFileSafely(Path("a.001"), content);
    EXPECT_EQ(Content("a.001"), content);
  }
  EXPECT_FALSE(DiskFiles().Exists(Path("a.~001")));
  DiskFiles().Remove(Path("a.001"));
  EXPECT_FALSE(DiskFiles().Exists(Path("a.001")));
}

// Also while it is being written, when it is called otherwise.
TEST_F(FilesOnDisk, AReplacedFileKeepsItsRightsAndAttributes) {
  const std::string old = folder / "a.001";
  ASSERT_EQ(chmod(old.c_str(), 0600), 0);
  const bool attributes = setxattr(old.c_str(), "user.note", "kept", 4, 0) == 0;  // not on every file system
  const bool mayGive = chown(old.c_str(), 12, 34) == 0;
  const Files::Handle handle = DiskFiles().Create(Path("a.~001"), Path("a.001"));
  DiskFiles().Write(handle, "new");
  struct stat status;
  ASSERT_EQ(fstat(handle, &status), 0);
  EXPECT_EQ(status.st_mode & 0777U, 0600U);
  DiskFiles().Sync(handle);
  DiskFiles().Close(handle);
  DiskFiles().Rename(Path("a.~001"), Path("a.001"));
  EXPECT_EQ(Content("a.001"), "new");
  ASSERT_EQ(stat(old.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777U, 0600U);
  EXPECT_EQ(std::pair(status.st_uid, status.st_gid),
            mayGive ? std::pair(12U, 34U) : std::pair(geteuid(), getegid()));
  char note[8];
  EXPECT_EQ(getxattr(old.c_str(), "user.note", note, sizeof note), attributes ? 4 : -1);
}

TEST_F(FilesOnDisk, WhatCannotBeReplacedIsWrittenInPlace) {
  const std::filesystem::path closed = folder / "closed";
  const std::filesystem::path state = folder / "state";
  std::filesystem::create_directory(closed);
  std::filesystem::create_hard_link(folder / "a.001", folder / "b.001");
  std::ofstream(closed / "c.001", std::ios::binary) << "long old content";
  StateFolder = BackslashPath((state / "kelvane").string()) + "\\";
  {
    const AsOrdinaryPerson person(folder);
    WriteFileSafely(Path("b.001"), "new");
    EXPECT_EQ(Content("a.001"), "new");
    ASSERT_EQ(chmod(closed.c_str(), 0555), 0);
    WriteFileSafely(Path("closed\\c.001"), "new");
    EXPECT_EQ(Content("closed\\c.001"), "new");
    ASSERT_EQ(chmod(closed.c_str(), 0755), 0);
  }
  EXPECT_TRUE(std::filesystem::is_empty(state / "kelvane")) << "the safety copies are gone";
}

TEST_F(FilesOnDisk, AWriterThatIsKilledLeavesNothing) {
  const pid_t writer = fork();
  if (writer == 0) {
    const Files::Handle handle = DiskFiles().Create(Path("a.~001"), Path("a.001"));
    DiskFiles().Write(handle, "half");
    _exit(0);
  }
  int status = 0;
  ASSERT_EQ(waitpid(writer, &status, 0), writer);
  ExpectOldFileAlone();
}

// What a writer left that was killed between naming its file and putting it in place.
TEST_F(FilesOnDisk, TheNextWriteRemovesWhatAKilledWriterLeft) {
  const std::string old = folder / "a.001";
  if (setxattr(old.c_str(), "user.note", "x", 1, 0) != 0) GTEST_SKIP() << "no attributes on this file system";
  int ready[2];
  ASSERT_EQ(pipe(ready), 0);
  const pid_t writer = fork();
  if (writer == 0) {
    const Files::Handle handle = DiskFiles().Create(Path("a.~001"), Path("a.001"));
    DiskFiles().Write(handle, "half");
    DiskFiles().Sync(handle);
    DiskFiles().Close(handle);
    if (write(ready[1], "x", 1) != 1) _exit(1);
    while (true) pause();
  }
  char byte;
  ASSERT_EQ(read(ready[0], &byte, 1), 1);
  WriteFileSafely(Path("a.001"), "while it lives");
  EXPECT_EQ(Content("a.~001"), "half");
  kill(writer, SIGKILL);
  int status = 0;
  ASSERT_EQ(waitpid(writer, &status, 0), writer);
  std::filesystem::copy_file(folder / "a.~001", folder / "a.~0011");
  WriteFileSafely(Path("a.001"), "new");
  EXPECT_FALSE(DiskFiles().Exists(Path("a.~001")));
  std::ofstream(folder / "a.~001") << "somebody's own";
  WriteFileSafely(Path("a.001"), "newer");
  EXPECT_EQ(Content("a.~001"), "somebody's own");
  EXPECT_EQ(Content("a.~0011"), "half") << "a copy";
  EXPECT_EQ(getxattr(old.c_str(), "user.kelvane.writing", nullptr, 0), -1);
  close(ready[0]);
  close(ready[1]);
}

TEST_F(FilesOnDisk, AWriteProtectedFileIsNotReplaced) {
  const AsOrdinaryPerson person(folder);
  ASSERT_EQ(chmod((folder / "a.001").c_str(), 0444), 0);
  EXPECT_THROW(WriteFileSafely(Path("a.001"), "new"), Failure);
  ExpectOldFileAlone();
}

TEST_F(FilesOnDisk, LinksAreWrittenThrough) {
  std::filesystem::create_directory(folder / "real");
  std::filesystem::create_symlink("real/page", folder / "inner");
  std::filesystem::create_symlink("inner", folder / "outer");
  EXPECT_TRUE(DiskFiles().Exists(Path("outer"))) << "a link that leads nowhere still takes the name";
  for (const char* content : {"made", "replaced"}) {
    WriteFileSafely(Path("outer"), content);
    EXPECT_EQ(Content("real\\page"), content);
  }
  EXPECT_TRUE(std::filesystem::is_symlink(folder / "outer"));
  EXPECT_TRUE(SameFile(Path("outer"), Path("real\\..\\real\\page")));
  EXPECT_FALSE(SameFile(Path("outer"), Path("real\\other")));
  std::filesystem::create_symlink("circle", folder / "circle");
  EXPECT_THROW(DiskFiles().Resolve(Path("circle")), Failure);
}

TEST_F(FilesOnDisk, OnlyRegularFilesAreReadAndReplaced) {
  ASSERT_EQ(mkfifo((folder / "pipe").c_str(), 0600), 0);
  std::filesystem::create_directory(folder / "folder");
  for (const char* name : {"pipe", "folder"}) {
    EXPECT_NE(FailureOf([&] { DiskFiles().ReadWhole(Path(name)); }).find("not a regular file"),
              std::string::npos);
    EXPECT_THROW(WriteFileSafely(Path(name), "x"), Failure);
    EXPECT_TRUE(DiskFiles().Exists(Path(name)));
  }
}

TEST_F(FilesOnDisk, MessagesNameTheFileAndTheReason) {
  EXPECT_EQ(FailureOf([&] { DiskFiles().ReadWhole(Path("none.001")); }),
            "Cannot read the file " + (folder / "none.001").string() + ": No such file or directory.");
  EXPECT_EQ(FailureOf([&] { WriteFileSafely(Path("none\\a.001"), "x"); }),
            "Cannot write the file " + (folder / "none/a.001").string() + ": No such file or directory.");
}

TEST_F(FilesOnDisk, AFileThatGrowsTooLargeIsNamedAndStaysAsItWas) {
  rlimit before;
  ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &before), 0);
  const auto oldHandler = std::signal(SIGXFSZ, SIG_IGN);
  const rlimit small{100, before.rlim_max};
  ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
  const std::string reason = FailureOf([&] { WriteFileSafely(Path("a.001"), std::string(1000, 'x')); });
  ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &before), 0);
  std::signal(SIGXFSZ, oldHandler);
  EXPECT_EQ(reason, "Cannot write the file " + (folder / "a.001").string() +
                        ": File too large.\nWhat the file held before is still there.");
  ExpectOldFileAlone();
}

// A second program is a child process: one that opens a file anew is as good as another one.
TEST(LockedFiles, BelongToOneProgramUntilItEnds) {
  const std::filesystem::path folder = std::filesystem::temp_directory_path() / "kelvane-locked-files";
  std::filesystem::remove_all(folder);
  Files& disk = DiskFiles();
  const std::string inside = BackslashPath(folder.string()) + "\\";
  EXPECT_TRUE(disk.FilesIn(inside).empty());
  disk.MakeFolder(inside + "deeper\\");
  const std::string path = inside + "a";
  const std::optional<Files::Handle> first = disk.OpenLocked(path);
  ASSERT_TRUE(first);
  disk.Write(*first, "one");
  EXPECT_FALSE(disk.OpenLocked(path));
  disk.Write(*first, " two");
  disk.SyncSoon(*first);
  disk.SyncSoon(*first);
  disk.Sync(*first);
  EXPECT_EQ(disk.ReadWhole(path), "one two");
  EXPECT_EQ(disk.FilesIn(inside), std::vector<std::string>{"a"});

  // Taken over: the name leads to another file, and only that one is in the way of others.
  disk.Remove(path);
  EXPECT_FALSE(disk.IsInPlace(*first));
  const std::optional<Files::Handle> second = disk.OpenLocked(path);
  ASSERT_TRUE(second);
  EXPECT_TRUE(disk.IsInPlace(*second));
  EXPECT_FALSE(disk.IsInPlace(*first));
  disk.Close(*first);
  EXPECT_FALSE(disk.OpenLocked(path));
  disk.Close(*second);

  int ready[2];
  ASSERT_EQ(pipe(ready), 0);
  const pid_t other = fork();
  if (other == 0) {
    const bool locked = disk.OpenLocked(path).has_value();
    [[maybe_unused]] const ssize_t told = write(ready[1], locked ? "y" : "n", 1);
    pause();
  }
  char locked = 0;
  ASSERT_EQ(read(ready[0], &locked, 1), 1);
  EXPECT_EQ(locked, 'y');
  EXPECT_FALSE(disk.OpenLocked(path));
  kill(other, SIGKILL);
  waitpid(other, nullptr, 0);
  const std::optional<Files::Handle> third = disk.OpenLocked(path);
  ASSERT_TRUE(third);
  disk.Close(*third);
  close(ready[0]);
  close(ready[1]);
  std::filesystem::remove_all(folder);
}

}  // namespace
}  // namespace kelvane
