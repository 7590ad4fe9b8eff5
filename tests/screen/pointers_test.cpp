// Pointers of icon files: the hot spot decides where a click lands.

#include <QFile>
#include <QTemporaryDir>

#include "platform/files.h"
#include "platform/qt/qt_pointers.h"
#include "tests/screen/screen_test.h"

namespace kelvane {
namespace {

const QString kData = QStringLiteral(KELVANE_SOURCE_DIR "/data/");

std::string ProgramPath(const QString& machinePath) {
  return BackslashPath(machinePath.toStdString());
}

QByteArray Bytes(const QString& path) {
  QFile file(path);
  EXPECT_TRUE(file.open(QIODevice::ReadOnly));
  return file.readAll();
}

TEST(PointersTest, ShippedPointersHaveTheHotSpotOfTheirFile) {
  for (const char* name : {"PVQtplt.ICO", "PVQbtrt.ICO", "PVQmid.ICO", "PVQcross.ICO"}) {
    const QString path = kData + name;
    const QByteArray bytes = Bytes(path);
    ASSERT_GT(bytes.size(), 22) << name;
    const QCursor* pointer = PointerFromFile(ProgramPath(path));
    ASSERT_NE(pointer, nullptr) << name;
    EXPECT_EQ(pointer->hotSpot(), QPoint(bytes[10], bytes[12])) << name;
    EXPECT_EQ(pointer->pixmap().size(), QSize(32, 32)) << name;
    const QImage image = pointer->pixmap().toImage();
    EXPECT_GT(qAlpha(image.pixel(pointer->hotSpot())), 0) << name;
    EXPECT_EQ(PointerFromFile(ProgramPath(path)), pointer) << "read once";
  }
}

TEST(PointersTest, IconPointsWithItsCentre) {
  QTemporaryDir folder;
  QByteArray bytes = Bytes(kData + "PVQtplt.ICO");
  bytes[2] = 1;
  bytes.replace(10, 4, QByteArray("\x01\x00\x20\x00", 4));
  QFile file(folder.filePath("icon.ICO"));
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  file.write(bytes);
  file.close();
  const QCursor* pointer = PointerFromFile(ProgramPath(file.fileName()));
  ASSERT_NE(pointer, nullptr);
  EXPECT_EQ(pointer->hotSpot(), QPoint(16, 16));
}

class PointersOnCanvasTest : public ScreenTest {};

TEST_F(PointersOnCanvasTest, MissingOrBrokenFileGivesTheArrow) {
  Canvas* canvas = window->AddCanvas();
  auto* widget = static_cast<QtCanvas*>(canvas);
  EXPECT_TRUE(canvas->SetPointerIcon(ProgramPath(kData + "PVQpoint.ICO")));
  EXPECT_EQ(widget->cursor().shape(), Qt::BitmapCursor);
  EXPECT_FALSE(canvas->SetPointerIcon("\\no\\such\\file.ICO"));
  EXPECT_EQ(widget->cursor().shape(), Qt::ArrowCursor);
  QTemporaryDir folder;
  QFile file(folder.filePath("broken.ICO"));
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  file.write(Bytes(kData + "PVQpoint.ICO").first(100));
  file.close();
  EXPECT_FALSE(canvas->SetPointerIcon(ProgramPath(file.fileName())));
}

}  // namespace
}  // namespace kelvane
