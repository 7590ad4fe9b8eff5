#include "platform/qt/qt_pointers.h"

#include <QBuffer>
#include <QImageReader>
#include <QPixmap>
#include <map>
#include <memory>

#include "platform/failure.h"
#include "platform/files.h"

namespace kelvane {
namespace {

// Offsets in the file: the directory's head and its first entry.
constexpr qsizetype kTypeAt = 2;
constexpr qsizetype kEntryAt = 6;
constexpr qsizetype kHotSpotAt = kEntryAt + 4;
constexpr qsizetype kEntryEnd = kEntryAt + 16;
constexpr char kIconType = 1;
constexpr char kCursorType = 2;

int Word(const QByteArray& bytes, qsizetype at) {
  return static_cast<unsigned char>(bytes[at]) | static_cast<unsigned char>(bytes[at + 1]) << 8;
}

std::unique_ptr<QCursor> ReadPointer(const std::string& path) {
  QByteArray bytes;
  try {
    bytes = QByteArray::fromStdString(TheFiles->ReadWhole(path));
  } catch (const Failure&) {
    return nullptr;
  }
  if (bytes.size() < kEntryEnd) return nullptr;
  const bool cursor = Word(bytes, kTypeAt) == kCursorType;
  const QPoint hotSpot(Word(bytes, kHotSpotAt), Word(bytes, kHotSpotAt + 2));
  if (cursor) {
    // Qt reads icons only. They differ in the type and in these two words: where a cursor has its hot spot,
    // an icon has planes and bits per pixel, which may be 0.
    bytes[kTypeAt] = kIconType;
    bytes.replace(kHotSpotAt, 4, QByteArray(4, '\0'));
  }
  QBuffer buffer(&bytes);
  QImageReader reader(&buffer, "ico");
  const QImage image = reader.read();
  if (image.isNull()) return nullptr;
  const QPoint centre(image.width() / 2, image.height() / 2);
  const QPoint at = cursor && image.rect().contains(hotSpot) ? hotSpot : centre;
  return std::make_unique<QCursor>(QPixmap::fromImage(image), at.x(), at.y());
}

}  // namespace

const QCursor* PointerFromFile(const std::string& path) {
  // Never destroyed: pixmaps must not be touched after the application object is gone.
  static std::map<std::string, std::unique_ptr<QCursor>>& pointers =
      *new std::map<std::string, std::unique_ptr<QCursor>>;
  const auto found = pointers.find(path);
  if (found != pointers.end()) return found->second.get();
  std::unique_ptr<QCursor> pointer = ReadPointer(path);
  if (pointer == nullptr) return nullptr;
  return (pointers[path] = std::move(pointer)).get();
}

}  // namespace kelvane
