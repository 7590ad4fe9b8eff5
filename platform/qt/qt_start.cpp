#include "platform/qt/qt_start.h"

#include <fontconfig/fontconfig.h>

#include <QApplication>
#include <QFile>
#include <QFontDatabase>
#include <QIconEngine>
#include <QProxyStyle>
#include <QStandardPaths>

namespace kelvane {
namespace {

// The picture of the button that menu bars have for entries without room. Asking for it loads every plugin
// for pictures, and most windows never show it.
class ExtensionPicture final : public QIconEngine {
 public:
  explicit ExtensionPicture(const QStyle& style) : style_(style) {}
  void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State state) override {
    Icon().paint(painter, rect, Qt::AlignCenter, mode, state);
  }
  QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
    return Icon().pixmap(size, mode, state);
  }
  QSize actualSize(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
    return Icon().actualSize(size, mode, state);
  }
  QIconEngine* clone() const override { return new ExtensionPicture(style_); }

 private:
  QIcon Icon() const { return style_.standardIcon(QStyle::SP_ToolBarHorizontalExtensionButton); }

  const QStyle& style_;
};

class StyleWithoutPictures final : public QProxyStyle {
 public:
  QIcon standardIcon(StandardPixmap picture, const QStyleOption* option,
                     const QWidget* widget) const override {
    if (picture != SP_ToolBarHorizontalExtensionButton)
      return QProxyStyle::standardIcon(picture, option, widget);
    return QIcon(new ExtensionPicture(*baseStyle()));
  }
};

}  // namespace

std::future<void> ReadFontSystem() {
  return std::async(std::launch::async, [] { FcInit(); });
}

std::future<void> ListFonts(std::future<void>& fontSystem) {
  return std::async(std::launch::async, [&fontSystem] {
    fontSystem.wait();
    // All threads share the list. Nothing more: who measures a text meanwhile waits for the end of this.
    static_cast<void>(QFontDatabase::hasFamily(QString()));
  });
}

void LeaveMissingSessionBus() {
  constexpr char kAddress[] = "DBUS_SESSION_BUS_ADDRESS";
  const QString run = qEnvironmentVariable("XDG_RUNTIME_DIR");
  if (qEnvironmentVariableIsSet(kAddress) || (!run.isEmpty() && QFile::exists(run + QStringLiteral("/bus"))))
    return;
  const QString starter = QStringLiteral("dbus-launch");
  if (QFile::exists(QStringLiteral("/usr/bin/") + starter) ||
      !QStandardPaths::findExecutable(starter).isEmpty())
    return;
  qputenv(kAddress, "disabled:");
}

void UseStyleWithoutPictures() {
  QApplication::setStyle(new StyleWithoutPictures);
}

}  // namespace kelvane
