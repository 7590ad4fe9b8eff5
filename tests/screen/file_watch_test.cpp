// The watch of a file: other programs replace it, write into it, remove and make it again.

#include <QDialog>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>

#include "platform/files.h"
#include "tests/screen/screen_test.h"

namespace kelvane {
namespace {

class FileWatchTest : public ScreenTest {
 protected:
  FileWatchTest() {
    std::string pattern = (std::filesystem::temp_directory_path() / "kelvane-XXXXXX").string();
    folder = mkdtemp(pattern.data());
    file = folder / "a.001";
    std::ofstream(file) << "old";
  }
  ~FileWatchTest() override {
    std::error_code ignored;
    std::filesystem::remove_all(folder, ignored);
  }

  std::filesystem::path folder;
  std::filesystem::path file;
};

TEST_F(FileWatchTest, TellsOnceOfEachChangeHoweverItIsMade) {
  FileWatch* watch = toolkit.NewFileWatch();
  int told = 0;
  watch->OnChange = [&] { ++told; };
  watch->Watch(BackslashPath(file.string()));
  const auto written = [&] {
    for (int i = 0; i < 5; ++i) std::ofstream(file, std::ios::app) << "more";
  };
  const auto replaced = [&] {
    std::ofstream(folder / "b") << "new";
    std::filesystem::rename(folder / "b", file);
  };
  const auto removed = [&] { std::filesystem::remove(file); };
  const std::function<void()> changes[] = {written, replaced, replaced, written, removed, written, written};
  int before = 0;
  for (const auto& change : changes) {
    change();
    EXPECT_TRUE(QTest::qWaitFor([&] { return told > before; }));
    ++before;
  }
  QTest::qWait(400);
  EXPECT_EQ(told, before);
  watch->Watch({});
  written();
  QTest::qWait(400);
  EXPECT_EQ(told, before);
}

TEST_F(FileWatchTest, WaitsForADialogToBeClosed) {
  Show();
  FileWatch* watch = toolkit.NewFileWatch();
  int told = 0;
  watch->OnChange = [&] { ++told; };
  watch->Watch(BackslashPath(file.string()));
  QDialog dialog(&window->Frame());
  dialog.setModal(true);
  dialog.show();
  EXPECT_TRUE(QTest::qWaitForWindowActive(&dialog));
  std::ofstream(file, std::ios::app) << "more";
  QTest::qWait(600);
  EXPECT_EQ(told, 0);
  dialog.close();
  EXPECT_TRUE(QTest::qWaitFor([&] { return told == 1; }));
}

}  // namespace
}  // namespace kelvane
