// Pointers of icon files: the hot spot decides where a click lands.

#include <QFile>
#include <QTemporaryDir>

#include "platform/files.h"
#include "platform/qt/qt_pointers.h"
#include "tests/screen/screen_test.h"

namespace kelvane {
namespace {

class PointersTest : public ScreenTest {
 protected:
  static std::string Shipped(const std::string& name) {
    return BackslashPath(KELVANE_SOURCE_DIR) + "\\data\\" + name;
  }
  std::string Written(const std::string& name, const std::string& bytes) {
    const std::string path = BackslashPath(folder.path().toStdString()) + "\\" + name;
    WriteFileSafely(path, bytes);
    return path;
  }
  QTemporaryDir folder;
};

TEST_F(PointersTest, ShippedPointersHaveTheHotSpotOfTheirFile) {
  for (const char* name : {"PVQtplt.ICO", "PVQbtrt.ICO", "PVQmid.ICO", "PVQcross.ICO"}) {
    const std::string bytes = DiskFiles().ReadWhole(Shipped(name));
    ASSERT_GT(bytes.size(), 22U) << name;
    const QCursor* pointer = PointerFromFile(Shipped(name));
    ASSERT_NE(pointer, nullptr) << name;
    EXPECT_EQ(pointer->hotSpot(), QPoint(bytes[10], bytes[12])) << name;
    EXPECT_EQ(pointer->pixmap().size(), QSize(32, 32)) << name;
    EXPECT_GT(qAlpha(pointer->pixmap().toImage().pixel(pointer->hotSpot())), 0) << name;
    EXPECT_EQ(PointerFromFile(Shipped(name)), pointer) << "read once";
  }
}

TEST_F(PointersTest, IconPointsWithItsCentre) {
  std::string bytes = DiskFiles().ReadWhole(Shipped("PVQtplt.ICO"));
  bytes[2] = 1;
  bytes.replace(10, 4, std::string("\x01\x00\x20\x00", 4));
  const QCursor* pointer = PointerFromFile(Written("icon.ICO", bytes));
  ASSERT_NE(pointer, nullptr);
  EXPECT_EQ(pointer->hotSpot(), QPoint(16, 16));
}

TEST_F(PointersTest, MissingOrBrokenFileGivesTheArrow) {
  Canvas* canvas = window->AddCanvas();
  const std::string half = DiskFiles().ReadWhole(Shipped("PVQpoint.ICO")).substr(0, 100);
  for (const std::string& bad : {std::string("\\no\\such\\file.ICO"), Written("broken.ICO", half)}) {
    EXPECT_TRUE(canvas->SetPointerIcon(Shipped("PVQpoint.ICO")));
    EXPECT_EQ(static_cast<QtCanvas*>(canvas)->cursor().shape(), Qt::BitmapCursor);
    EXPECT_FALSE(canvas->SetPointerIcon(bad)) << bad;
    EXPECT_EQ(static_cast<QtCanvas*>(canvas)->cursor().shape(), Qt::ArrowCursor) << bad;
  }
}

}  // namespace
}  // namespace kelvane
