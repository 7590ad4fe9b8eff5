#include "platform/files.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <string>

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
}

TEST_F(SafeWriting, ReplacesWhatALinkPointsTo) {
  files.links = {{"\\P\\Link.001", "\\Q\\Essay.001"}};
  files.contents = {{"\\Q\\Essay.001", "old"}};
  WriteFileSafely("\\P\\Link.001", "new");
  EXPECT_EQ(files.contents, Contents({{"\\Q\\Essay.001", "new"}}));
}

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

  std::string Path(const std::string& name) const { return BackslashPath((folder / name).string()); }
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

TEST_F(FilesOnDisk, AReplacedFileKeepsItsAccessRights) {
  ASSERT_EQ(chmod((folder / "a.001").c_str(), 0640), 0);
  WriteFileSafely(Path("a.001"), "new");
  struct stat status;
  ASSERT_EQ(stat((folder / "a.001").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777U, 0640U);
}

TEST_F(FilesOnDisk, AWriteProtectedFileIsNotReplaced) {
  if (geteuid() == 0) GTEST_SKIP() << "nothing is write-protected for the administrator";
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

}  // namespace
}  // namespace kelvane
