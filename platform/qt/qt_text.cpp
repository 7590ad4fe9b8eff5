#include "platform/qt/qt_text.h"

#include <QStringDecoder>
#include <QStringList>
#include <algorithm>
#include <array>
#include <unordered_map>

#include "platform/characters.h"

namespace kelvane {
namespace {

// Signs of the codes 224 to 255, all in the faces that every desktop has. Typeface switches show the digit of
// the typeface, 0 to 9 as circles, A to F as small capitals; script codes an arrow that says where the text
// goes: up or down; to the left (back) or to the right (forward); doubled for the italic forms.
constexpr std::array<char16_t, 32> kControlSigns = {
    0x25CE, 0x2460, 0x2461, 0x2462, 0x2463, 0x2464, 0x2465, 0x2466, 0x2467, 0x2468, 0x1D00,
    0x0299, 0x1D04, 0x1D05, 0x1D07, 0xA730, 0x2191, 0x2196, 0x2197, 0x2193, 0x2199, 0x2198,
    0x21D1, 0x21D6, 0x21D7, 0x21D3, 0x21D9, 0x21D8, 0x25CA, 0x25D8, 0x2422, 0x2423};

// Signs of the codes below 32 that are no letters: double lines. Control pictures would say more, but hardly
// any face has them.
constexpr char16_t kFirstControlSign = 0x2550;
constexpr char16_t kDeleteSign = 0x2302;
// Two characters of the code page that nobody could tell from others.
constexpr unsigned char kNoBreakSpace = 160;
constexpr char16_t kNoBreakSpaceSign = 0x237D;
constexpr unsigned char kSoftHyphen = 173;
constexpr char16_t kSoftHyphenSign = 0x2043;

std::array<char16_t, 256> MakeSigns() {
  std::array<char16_t, 256> signs{};
  for (unsigned code = 0; code < 256; ++code) {
    char16_t& sign = signs[code];
    sign = code >= 224 ? kControlSigns[code - 224] : UnicodeOfText(static_cast<unsigned char>(code));
    if (sign == 0) sign = code == 127 ? kDeleteSign : static_cast<char16_t>(kFirstControlSign + code);
  }
  signs[kNoBreakSpace] = kNoBreakSpaceSign;
  signs[kSoftHyphen] = kSoftHyphenSign;
  return signs;
}

const std::array<char16_t, 256> kSigns = MakeSigns();

std::unordered_map<char16_t, unsigned char> MakeCodesOfSigns() {
  std::unordered_map<char16_t, unsigned char> codes;
  for (int code = 0; code < 256; ++code) {
    codes.emplace(kSigns[static_cast<std::size_t>(code)], static_cast<unsigned char>(code));
  }
  codes.emplace(u'\u00A0', kNoBreakSpace);
  codes.emplace(u'\u00AD', kSoftHyphen);
  return codes;
}

}  // namespace

bool IsReadable(const QString& text) {
  const QList<uint> characters = text.toUcs4();
  return std::all_of(characters.begin(), characters.end(), [](uint c) { return QChar::isPrint(c); });
}

std::string ListOf(const QString& text) {
  QStringList listed;
  for (const char32_t character : text.toUcs4()) {
    const QString number = QString::number(static_cast<uint>(character), 16).toUpper();
    const QString shown = QChar::isPrint(character) ? QString::fromUcs4(&character, 1)
                                                    : QStringLiteral("U+") + number.rightJustified(4, u'0');
    if (!listed.contains(shown)) listed += shown;
  }
  return listed.join(u' ').toStdString();
}

QString PlainText(std::string_view text) {
  QStringDecoder decoder(QStringDecoder::Utf8);
  QString decoded = decoder.decode(QByteArrayView(text.data(), static_cast<qsizetype>(text.size())));
  if (!decoder.hasError()) return decoded;
  QString plain;
  plain.reserve(static_cast<qsizetype>(text.size()));
  for (const char byte : text) {
    const auto code = static_cast<unsigned char>(byte);
    const char16_t character = UnicodeOfText(code);
    plain += QChar(character != 0 ? character : static_cast<char16_t>(code));
  }
  return plain;
}

QString VisibleText(std::string_view run) {
  QString text;
  text.reserve(static_cast<qsizetype>(run.size()));
  for (const char byte : run) text += QChar(kSigns[static_cast<unsigned char>(byte)]);
  return text;
}

std::optional<unsigned char> CodeOfVisible(char16_t sign) {
  static const std::unordered_map<char16_t, unsigned char> codes = MakeCodesOfSigns();
  const auto found = codes.find(sign);
  if (found == codes.end()) return std::nullopt;
  return found->second;
}

std::string RunOfVisible(const QString& text) {
  std::string run;
  run.reserve(static_cast<std::size_t>(text.size()));
  for (const QChar sign : text) {
    if (const auto code = CodeOfVisible(sign.unicode())) run += static_cast<char>(*code);
  }
  return run;
}

}  // namespace kelvane
