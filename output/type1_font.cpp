#include "output/type1_font.h"

#include <algorithm>
#include <charconv>
#include <cstddef>

#include "document/lines.h"
#include "platform/failure.h"
#include "platform/files.h"
#include "platform/outlines.h"
#include "typography/typefaces.h"

namespace kelvane {
namespace {

constexpr std::string_view kEncrypted = "eexec";
constexpr std::uint16_t kProgramKey = 55665;
constexpr std::uint16_t kGlyphKey = 4330;
constexpr std::size_t kRandomBytes = 4;  // in front of what is encrypted

// One step of the cipher of Type 1 fonts: takes a byte in or out.
std::uint16_t NextKey(std::uint16_t key, unsigned char cipher) {
  return static_cast<std::uint16_t>((cipher + key) * 52845U + 22719U);
}

std::string Decrypt(std::string_view bytes, std::uint16_t key) {
  std::string plain;
  plain.reserve(bytes.size());
  for (const char byte : bytes) {
    const auto cipher = static_cast<unsigned char>(byte);
    plain += static_cast<char>(cipher ^ (key >> 8));
    key = NextKey(key, cipher);
  }
  return plain.size() < kRandomBytes ? std::string() : plain.substr(kRandomBytes);
}

std::string Encrypt(std::string_view plain, std::uint16_t key) {
  std::string bytes;
  bytes.reserve(plain.size() + kRandomBytes);
  // Zeros for the random bytes: the result begins with no blank and no digit, as it must.
  for (const char byte : std::string(kRandomBytes, '\0') + std::string(plain)) {
    const auto cipher = static_cast<unsigned char>(static_cast<unsigned char>(byte) ^ (key >> 8));
    bytes += static_cast<char>(cipher);
    key = NextKey(key, cipher);
  }
  return bytes;
}

// Without the headers of the parts that a .pfb file has.
std::string WithoutHeaders(std::string_view file) {
  constexpr std::size_t kHeader = 6;
  std::string program;
  while (file.size() > kHeader && file[0] == '\x80' && (file[1] == 1 || file[1] == 2)) {
    std::size_t length = 0;
    for (std::size_t i = kHeader; i-- > 2;) length = length << 8 | static_cast<unsigned char>(file[i]);
    file.remove_prefix(kHeader);
    length = std::min(length, file.size());
    program += file.substr(0, length);
    file.remove_prefix(length);
  }
  return program;
}

bool IsBlank(char c) {
  return c == ' ' || c == '\n' || c == '\r' || c == '\t';
}

// Takes the next word off a text.
std::string_view TakeWord(std::string_view& text) {
  while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
  std::size_t end = 0;
  while (end < text.size() && !IsBlank(text[end])) ++end;
  const std::string_view word = text.substr(0, end);
  text.remove_prefix(end);
  return word;
}

std::size_t CountOf(std::string_view word) {
  std::size_t count = 0;
  std::from_chars(word.data(), word.data() + word.size(), count);
  return count;
}

// What stands behind a key: in its brackets if it has some, else the next word.
std::string ValueOf(std::string_view text, std::string_view key) {
  const std::size_t at = text.find(key);
  if (at == text.npos) return {};
  text.remove_prefix(at + key.size());
  while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
  if (text.empty() || (text.front() != '[' && text.front() != '{')) return std::string(TakeWord(text));
  return std::string(text.substr(1, text.find_first_of("]}") - 1));
}

// Reads "/name length RD bytes ND" for each glyph; false if the text is something else.
bool ReadGlyphs(std::string_view rest, Type1Font& font) {
  for (;;) {
    std::string_view ahead = rest;
    const std::string_view name = TakeWord(ahead);
    if (name == "end") break;
    const std::size_t length = CountOf(TakeWord(ahead));
    TakeWord(ahead);  // RD
    if (!name.starts_with('/') || ahead.size() < length + 1) return false;
    font.glyphs.emplace(name.substr(1), ahead.substr(1, length));
    rest = ahead.substr(length + 1);
    TakeWord(rest);  // ND
  }
  font.after = rest;
  return !font.glyphs.empty();
}

void ReadEncoding(std::string_view clear, Type1Font& font) {
  for (std::string_view rest = clear; !rest.empty();) {
    std::string_view line = TakeLine(rest);
    if (TakeWord(line) != "dup") continue;
    const std::size_t code = CountOf(TakeWord(line));
    const std::string_view name = TakeWord(line);
    if (code < font.encoding.size() && name.starts_with('/') && TakeWord(line) == "put")
      font.encoding[code] = name.substr(1);
  }
}

void RemoveDefinition(std::string& text, std::string_view key) {
  const std::size_t at = text.find(key);
  if (at == text.npos) return;
  const std::size_t end = text.find("def", at);
  if (end != text.npos) text.erase(at, end + 3 - at);
}

// The two characters of the standard encoding that a procedure puts together; none for nearly all.
struct Parts {
  int base = 0;
  int accent = 0;
};
std::optional<Parts> PartsOf(std::string_view procedure) {
  const std::string plain = Decrypt(procedure, kGlyphKey);
  int last = 0;
  int lastButOne = 0;
  for (std::size_t i = 0; i < plain.size();) {
    const int byte = static_cast<unsigned char>(plain[i]);
    const auto at = [&](std::size_t k) {
      return i + k < plain.size() ? static_cast<unsigned char>(plain[i + k]) : 0;
    };
    if (byte == 12) {
      if (at(1) == 6) return Parts{lastButOne, last};
      i += 2;
    } else if (byte < 32) {
      ++i;
    } else {
      lastButOne = last;
      if (byte < 247) {
        last = byte - 139;
        ++i;
      } else if (byte < 255) {
        last = byte < 251 ? (byte - 247) * 256 + at(1) + 108 : -(byte - 251) * 256 - at(1) - 108;
        i += 2;
      } else {
        last = at(4);
        i += 5;
      }
    }
  }
  return std::nullopt;
}

// Names of the accents of the standard encoding, from code 193 on.
constexpr std::array<std::string_view, 15> kAccents = {
    "grave", "acute", "circumflex", "tilde", "macron",       "breve",  "dotaccent", "dieresis",
    "",      "ring",  "cedilla",    "",      "hungarumlaut", "ogonek", "caron"};
constexpr int kFirstAccent = 193;

std::string NameOfPart(int code) {
  if (code == 245) return "dotlessi";
  if (code >= kFirstAccent && code < kFirstAccent + static_cast<int>(kAccents.size()))
    return std::string(kAccents[static_cast<std::size_t>(code - kFirstAccent)]);
  return std::string(1, static_cast<char>(code));
}

// The files by face, and where they are looked for.
constexpr const char* kFontFiles[kFirstGlyphFont] = {
    "NimbusRoman-Regular", "NimbusRoman-Bold",  "NimbusRoman-Italic", "NimbusRoman-BoldItalic",
    "NimbusSans-Regular",  "NimbusSans-Bold",   "NimbusSans-Italic",  "NimbusSans-BoldItalic",
    "StandardSymbolsPS",   "NimbusMonoPS-Bold", "StandardSymbolsPS",  "Z003-MediumItalic",
};
constexpr const char* kFontFolders[] = {
    "\\usr\\share\\fonts\\type1\\urw-base35\\",
    "\\usr\\share\\fonts\\urw-base35\\",
    "\\usr\\share\\fonts\\gsfonts\\",
    "\\usr\\share\\fonts\\X11\\Type1\\",
    "\\usr\\local\\share\\fonts\\",
};

}  // namespace

std::optional<Type1Font> ReadType1Font(std::string_view file) {
  const std::string joined = WithoutHeaders(file);
  const std::string_view program = joined.empty() ? file : joined;
  std::size_t begin = program.find(kEncrypted);
  if (!program.starts_with("%!") || begin == program.npos) return std::nullopt;
  begin += kEncrypted.size();
  while (begin < program.size() && IsBlank(program[begin])) ++begin;
  Type1Font font;
  font.clear = program.substr(0, begin);
  const std::string inner = Decrypt(program.substr(begin), kProgramKey);
  const std::size_t glyphs = inner.find("/CharStrings");
  const std::size_t first = inner.find("begin", glyphs == inner.npos ? 0 : glyphs);
  if (glyphs == inner.npos || first == inner.npos || inner.find("/lenIV") < glyphs) return std::nullopt;
  font.before = inner.substr(0, glyphs);
  if (!ReadGlyphs(std::string_view(inner).substr(first + 5), font)) return std::nullopt;
  font.name = ValueOf(font.clear, "/FontName");
  if (!font.name.starts_with('/')) return std::nullopt;
  font.name.erase(0, 1);
  font.box = ValueOf(font.clear, "/FontBBox");
  font.italicAngle = ValueOf(font.clear, "/ItalicAngle");
  font.stem = ValueOf(font.before, "/StdVW");
  ReadEncoding(font.clear, font);
  // Two subsets of one font are two fonts.
  RemoveDefinition(font.clear, "/UniqueID");
  RemoveDefinition(font.before, "/UniqueID");
  return font;
}

Type1Subset SubsetOf(const Type1Font& font, const std::set<std::string>& glyphs, const std::string& name) {
  std::set<std::string> wanted = glyphs;
  wanted.insert(".notdef");
  for (const std::string& glyph : glyphs) {
    const auto found = font.glyphs.find(glyph);
    const auto parts = found == font.glyphs.end() ? std::nullopt : PartsOf(found->second);
    if (parts) wanted.insert({NameOfPart(parts->base), NameOfPart(parts->accent)});
  }
  std::string list;
  int count = 0;
  for (const std::string& glyph : wanted) {
    const auto found = font.glyphs.find(glyph);
    if (found == font.glyphs.end()) continue;
    ++count;
    list += "/" + glyph + " " + std::to_string(found->second.size()) + " RD " + found->second + " ND\n";
  }
  Type1Subset subset;
  subset.program = font.clear;
  const std::string old = "/FontName /" + font.name;
  const std::size_t at = subset.program.find(old);
  if (at != std::string::npos) subset.program.replace(at, old.size(), "/FontName /" + name);
  subset.clearSize = subset.program.size();
  subset.program +=
      Encrypt(font.before + "/CharStrings " + std::to_string(count) + " dict dup begin\n" + list + font.after,
              kProgramKey);
  return subset;
}

std::optional<Type1Font> FontOfFace(std::int16_t face) {
  for (const char* folder : kFontFolders) {
    for (const char* extension : {".t1", ".pfb"}) {
      const std::string path = std::string(folder) + kFontFiles[face] + extension;
      if (!TheFiles->Exists(path)) continue;
      try {
        if (auto font = ReadType1Font(TheFiles->ReadWhole(path))) return font;
      } catch (const Failure&) {
        // A font that cannot be read is as good as none.
      }
    }
  }
  return std::nullopt;
}

std::string MissingFonts(const std::set<std::int16_t>& faces) {
  if (faces.empty()) return {};
  std::string names;
  for (const std::int16_t face : faces)
    names += (names.empty() ? "" : ", ") + std::string(kTypefaceNames[face].postScriptName);
  return "These typefaces have no font on this machine: " + names + ". " +
         (ScreenOutline ? "Their characters are outlines of the nearest typefaces there are."
                        : "Their characters are left out, since there are no outlines either.") +
         " Debian has the fonts in the package fonts-urw-base35.";
}

}  // namespace kelvane
