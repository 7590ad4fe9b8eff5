#include "platform/qt/qt_text.h"

#include <QStringDecoder>
#include <QStringList>
#include <algorithm>
#include <array>
#include <unordered_map>

namespace kelvane {
namespace {

// Code page 1252, 128 to 159; from 160 on it is Latin-1. 0: not assigned.
constexpr std::array<char16_t, 32> kWindowsHigh = {
    0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0,      0x017D, 0,      0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178};

// The Symbol encoding, 32 to 126.
constexpr std::array<char16_t, 95> kSymbolLow = {
    0x0020, 0x0021, 0x2200, 0x0023, 0x2203, 0x0025, 0x0026, 0x220B, 0x0028, 0x0029, 0x2217, 0x002B,
    0x002C, 0x2212, 0x002E, 0x002F, 0x0030, 0x0031, 0x0032, 0x0033, 0x0034, 0x0035, 0x0036, 0x0037,
    0x0038, 0x0039, 0x003A, 0x003B, 0x003C, 0x003D, 0x003E, 0x003F, 0x2245, 0x0391, 0x0392, 0x03A7,
    0x0394, 0x0395, 0x03A6, 0x0393, 0x0397, 0x0399, 0x03D1, 0x039A, 0x039B, 0x039C, 0x039D, 0x039F,
    0x03A0, 0x0398, 0x03A1, 0x03A3, 0x03A4, 0x03A5, 0x03C2, 0x03A9, 0x039E, 0x03A8, 0x0396, 0x005B,
    0x2234, 0x005D, 0x22A5, 0x005F, 0x203E, 0x03B1, 0x03B2, 0x03C7, 0x03B4, 0x03B5, 0x03C6, 0x03B3,
    0x03B7, 0x03B9, 0x03D5, 0x03BA, 0x03BB, 0x03BC, 0x03BD, 0x03BF, 0x03C0, 0x03B8, 0x03C1, 0x03C3,
    0x03C4, 0x03C5, 0x03D6, 0x03C9, 0x03BE, 0x03C8, 0x03B6, 0x007B, 0x007C, 0x007D, 0x223C};

// The Symbol encoding, 160 to 223.
constexpr std::array<char16_t, 64> kSymbolHigh = {
    0x20AC, 0x03D2, 0x2032, 0x2264, 0x2044, 0x221E, 0x0192, 0x2663, 0x2666, 0x2665, 0x2660, 0x2194, 0x2190,
    0x2191, 0x2192, 0x2193, 0x00B0, 0x00B1, 0x2033, 0x2265, 0x00D7, 0x221D, 0x2202, 0x2022, 0x00F7, 0x2260,
    0x2261, 0x2248, 0x2026, 0x23D0, 0x23AF, 0x21B5, 0x2135, 0x2111, 0x211C, 0x2118, 0x2297, 0x2295, 0x2205,
    0x2229, 0x222A, 0x2283, 0x2287, 0x2284, 0x2282, 0x2286, 0x2208, 0x2209, 0x2220, 0x2207, 0x00AE, 0x00A9,
    0x2122, 0x220F, 0x221A, 0x22C5, 0x00AC, 0x2227, 0x2228, 0x21D4, 0x21D0, 0x21D1, 0x21D2, 0x21D3};

// Signs of the codes 224 to 255, all in the faces that every desktop has. Typeface switches show the digit of
// the typeface, 0 to 9 as circles, A to F as small capitals; script codes an arrow that says where the text
// goes: up or down; to the left (back) or to the right (forward); doubled for the italic forms.
constexpr std::array<char16_t, 32> kControlSigns = {
    0x25CE, 0x2460, 0x2461, 0x2462, 0x2463, 0x2464, 0x2465, 0x2466, 0x2467, 0x2468, 0x1D00,
    0x0299, 0x1D04, 0x1D05, 0x1D07, 0xA730, 0x2191, 0x2196, 0x2197, 0x2193, 0x2199, 0x2198,
    0x21D1, 0x21D6, 0x21D7, 0x21D3, 0x21D9, 0x21D8, 0x25CA, 0x25D8, 0x2422, 0x2423};

// Signs of the places of code page 1252 that are not assigned, in their order: quarter blocks.
constexpr char16_t kFirstEmptyPlaceSign = 0x2596;
// Signs of 0 to 31: double lines. Control pictures would say more, but hardly any face has them.
constexpr char16_t kFirstControlSign = 0x2550;
constexpr char16_t kDeleteSign = 0x2302;
// Two characters of the code page that nobody could tell from others.
constexpr unsigned char kNoBreakSpace = 160;
constexpr char16_t kNoBreakSpaceSign = 0x237D;
constexpr unsigned char kSoftHyphen = 173;
constexpr char16_t kSoftHyphenSign = 0x2043;

constexpr std::array<char16_t, 256> MakeSigns() {
  std::array<char16_t, 256> signs{};
  char16_t emptyPlace = kFirstEmptyPlaceSign;
  for (int code = 0; code < 256; ++code) {
    char16_t& sign = signs[static_cast<std::size_t>(code)];
    if (code < 32) {
      sign = static_cast<char16_t>(kFirstControlSign + code);
    } else if (code == 127) {
      sign = kDeleteSign;
    } else if (code >= 128 && code < 160) {
      sign = kWindowsHigh[static_cast<std::size_t>(code - 128)];
      if (sign == 0) sign = emptyPlace++;
    } else if (code >= 224) {
      sign = kControlSigns[static_cast<std::size_t>(code - 224)];
    } else {
      sign = static_cast<char16_t>(code);
    }
  }
  signs[kNoBreakSpace] = kNoBreakSpaceSign;
  signs[kSoftHyphen] = kSoftHyphenSign;
  return signs;
}

constexpr std::array<char16_t, 256> kSigns = MakeSigns();

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

char16_t UnicodeOfText(unsigned char code) {
  if (code < 32 || code == 127) return 0;
  if (code >= 128 && code < 160) return kWindowsHigh[code - 128U];
  return code;
}

char16_t UnicodeOfSymbol(unsigned char code) {
  if (code >= 32 && code < 127) return kSymbolLow[code - 32U];
  if (code >= 160 && code < 224) return kSymbolHigh[code - 160U];
  return 0;
}

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
