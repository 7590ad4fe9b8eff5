#include "platform/qt/qt_clipboard.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>
#include <algorithm>
#include <cstddef>
#include <string_view>

#include "platform/qt/qt_text.h"

namespace kelvane {
namespace {

const QString kItems = QStringLiteral("application/x-kelvane-items");

bool IsLineEnd(unsigned char code) {
  return code == '\n' || code == '\r';
}

}  // namespace

void QtClipboard::Put(const std::string& items, const std::string& text) {
  auto* data = new QMimeData;
  QString shown;
  for (std::size_t start = 0; start <= text.size();) {
    const std::size_t end = std::min(text.find("\r\n", start), text.size());
    shown += VisibleText(std::string_view(text).substr(start, end - start));
    if (end < text.size()) shown += u'\n';
    start = end + 2;
  }
  data->setText(shown);
  if (!items.empty()) data->setData(kItems, QByteArray::fromStdString(items));
  QGuiApplication::clipboard()->setMimeData(data);
}

void QtClipboard::PutText(const std::string& utf8) {
  QGuiApplication::clipboard()->setText(QString::fromStdString(utf8));
}

std::string QtClipboard::Items() const {
  const QMimeData* data = QGuiApplication::clipboard()->mimeData();
  return data == nullptr ? std::string() : data->data(kItems).toStdString();
}

std::string QtClipboard::Text() const {
  return QGuiApplication::clipboard()->text().toStdString();
}

std::string QtClipboard::CodesOf(const std::string& utf8, std::string& untypable) const {
  std::string codes;
  QString dropped;
  QString text = QString::fromStdString(utf8);
  text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
  for (const QChar character : text) {
    const auto code = CodeOfVisible(character.unicode());
    if (character == u'\n' || character == u'\r' || character == QChar::LineSeparator ||
        character == QChar::ParagraphSeparator) {
      codes += '\n';
    } else if (character == u'\t') {
      codes += ' ';
    } else if (code && *code != 0 && !IsLineEnd(*code)) {
      codes += static_cast<char>(*code);
    } else {
      dropped += character;
    }
  }
  untypable = ListOf(dropped);
  return codes;
}

}  // namespace kelvane
