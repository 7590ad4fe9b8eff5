#include "platform/files.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>

#include "platform/failure.h"
#include "tests/support/program_test.h"

namespace kelvane {
namespace {

TEST(Paths, TurnIntoTheMachinesFormAndBack) {
  EXPECT_EQ(MachinePath("\\home\\u\\Essay.001"), "/home/u/Essay.001");
  EXPECT_EQ(MachinePath("C:\\P\\Essay.001"), "/P/Essay.001");
  EXPECT_EQ(MachinePath("/home/u/a\\b"), "/home/u/a\\b");
  EXPECT_EQ(MachinePath("Essay.001"), "Essay.001");
  EXPECT_EQ(MachinePath("\\a:b"), "/a:b");
  EXPECT_EQ(BackslashPath("/home/u/Essay.001"), "\\home\\u\\Essay.001");
}

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
        // When clearing up fails as well, the temporary file may stay; it never takes the old one's name.
        if (!lasting) {
          EXPECT_EQ(files.contents.size(), 1U) << nth;
        }
      }
      EXPECT_EQ(files.openHandles, 0) << nth;
    }
    EXPECT_EQ(nth, 7) << "resolve, create, write, sync, close and rename can fail";
    EXPECT_EQ(files.contents.at(path), "new content");
    EXPECT_EQ(files.contents.size(), 1U);
  }
}

TEST_F(SafeWriting, GoesByWayOfATemporaryFileBesideTheOldOne) {
  const auto temporaryOf = [&](const std::string& path) {
    files.contents.clear();
    files.FailStep(FileStep::Rename);
    files.FailStep(FileStep::Remove);
    EXPECT_THROW(WriteFileSafely(path, "x"), Failure);
    return files.contents.begin()->first;
  };
  EXPECT_EQ(temporaryOf("\\K\\QRX.DAT"), "\\K\\QRX.~DAT");
  EXPECT_EQ(temporaryOf("\\K\\MATH0.PSF"), "\\K\\MATH0.~PSF");
  EXPECT_EQ(temporaryOf("\\P.x\\Essay"), "\\P.x\\Essay.~");
  EXPECT_EQ(temporaryOf("a.b.001"), "a.b.~001");
}

TEST_F(SafeWriting, KeepsATemporaryFileThatWasLeftBehind) {
  files.contents = {{"\\P\\Essay.001", "old"}, {"\\P\\Essay.~001", "all that is left"}};
  WriteFileSafely("\\P\\Essay.001", "new");
  EXPECT_EQ(files.contents.at("\\P\\Essay.001"), "new");
  EXPECT_EQ(files.contents.at("\\P\\Essay.~001"), "all that is left");
  EXPECT_EQ(files.contents.size(), 2U);
}

TEST_F(SafeWriting, ReplacesWhatALinkPointsTo) {
  files.links = {{"\\P\\Link.001", "\\Q\\Essay.001"}};
  files.contents = {{"\\Q\\Essay.001", "old"}};
  WriteFileSafely("\\P\\Link.001", "new");
  EXPECT_EQ(files.contents.at("\\Q\\Essay.001"), "new");
  EXPECT_FALSE(files.contents.contains("\\P\\Link.001"));
}

// The disk's own files, in a folder made for each test.
class FilesOnDisk : public ::testing::Test {
 protected:
  FilesOnDisk() {
    std::string pattern = (std::filesystem::temp_directory_path() / "kelvane-XXXXXX").string();
    folder = mkdtemp(pattern.data());
  }
  ~FilesOnDisk() override {
    std::error_code ignored;
    std::filesystem::remove_all(folder, ignored);
  }

  std::string Path(const std::string& name) const { return BackslashPath((folder / name).string()); }
  void Put(const std::string& name, const std::string& content) const {
    std::ofstream(folder / name, std::ios::binary) << content;
  }
  static std::string ReasonOf(const std::function<void()>& act) {
    try {
      act();
    } catch (const Failure& failure) {
      return failure.what();
    }
    return "nothing failed";
  }

  std::filesystem::path folder;
};

TEST_F(FilesOnDisk, WriteAndReadAnyBytes) {
  std::string bytes(300000, '\0');
  for (std::size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<char>(i * 7);
  WriteFileSafely(Path("a.001"), bytes);
  EXPECT_EQ(DiskFiles().ReadWhole(Path("a.001")), bytes);
  WriteFileSafely(Path("a.001"), "");
  EXPECT_EQ(DiskFiles().ReadWhole(Path("a.001")), "");
  EXPECT_FALSE(DiskFiles().Exists(Path("a.~001")));
  DiskFiles().Remove(Path("a.001"));
  EXPECT_FALSE(DiskFiles().Exists(Path("a.001")));
}

TEST_F(FilesOnDisk, AReplacedFileKeepsItsAccessRights) {
  Put("a.001", "old");
  ASSERT_EQ(chmod((folder / "a.001").c_str(), 0640), 0);
  WriteFileSafely(Path("a.001"), "new");
  struct stat status;
  ASSERT_EQ(stat((folder / "a.001").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777U, 0640U);
}

TEST_F(FilesOnDisk, AWriteProtectedFileIsNotReplaced) {
  if (geteuid() == 0) GTEST_SKIP() << "nothing is write-protected for the administrator";
  Put("a.001", "old");
  ASSERT_EQ(chmod((folder / "a.001").c_str(), 0444), 0);
  EXPECT_THROW(WriteFileSafely(Path("a.001"), "new"), Failure);
  EXPECT_EQ(DiskFiles().ReadWhole(Path("a.001")), "old");
  EXPECT_FALSE(DiskFiles().Exists(Path("a.~001")));
}

TEST_F(FilesOnDisk, LinksAreWrittenThrough) {
  std::filesystem::create_directory(folder / "real");
  std::filesystem::create_symlink("real/page", folder / "inner");
  std::filesystem::create_symlink("inner", folder / "outer");
  EXPECT_TRUE(DiskFiles().Exists(Path("outer"))) << "a link that leads nowhere still takes the name";
  WriteFileSafely(Path("outer"), "made");
  EXPECT_EQ(DiskFiles().ReadWhole(Path("real\\page")), "made");
  WriteFileSafely(Path("outer"), "replaced");
  EXPECT_EQ(DiskFiles().ReadWhole(Path("real\\page")), "replaced");
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
    EXPECT_NE(ReasonOf([&] { DiskFiles().ReadWhole(Path(name)); }).find("not a regular file"),
              std::string::npos);
    EXPECT_THROW(WriteFileSafely(Path(name), "x"), Failure);
    EXPECT_TRUE(DiskFiles().Exists(Path(name)));
  }
}

TEST_F(FilesOnDisk, MessagesNameTheFileAndTheReason) {
  EXPECT_EQ(ReasonOf([&] { DiskFiles().ReadWhole(Path("none.001")); }),
            "Cannot read the file " + (folder / "none.001").string() + ": No such file or directory.");
  EXPECT_EQ(ReasonOf([&] { WriteFileSafely(Path("none\\a.001"), "x"); }),
            "Cannot write the file " + (folder / "none/a.001").string() + ": No such file or directory.");
}

TEST_F(FilesOnDisk, AFileThatGrowsTooLargeIsNamedAndStaysAsItWas) {
  Put("a.001", "old");
  rlimit before;
  ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &before), 0);
  const auto oldHandler = std::signal(SIGXFSZ, SIG_IGN);
  const rlimit small{100, before.rlim_max};
  ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
  const std::string reason = ReasonOf([&] { WriteFileSafely(Path("a.001"), std::string(1000, 'x')); });
  ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &before), 0);
  std::signal(SIGXFSZ, oldHandler);
  EXPECT_EQ(reason, "Cannot write the file " + (folder / "a.001").string() +
                        ": File too large.\nWhat the file held before is still there.");
  EXPECT_EQ(DiskFiles().ReadWhole(Path("a.001")), "old");
  EXPECT_FALSE(DiskFiles().Exists(Path("a.~001")));
}

TEST_F(FilesOnDisk, CreateNeverTruncates) {
  Put("a.001", "old");
  EXPECT_THROW(DiskFiles().Create(Path("a.001")), Failure);
  EXPECT_EQ(DiskFiles().ReadWhole(Path("a.001")), "old");
}

}  // namespace
}  // namespace kelvane
