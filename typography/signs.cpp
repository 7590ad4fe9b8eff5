#include "typography/signs.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cmath>
#include <cstddef>
#include <optional>
#include <unordered_map>

#include "document/fields.h"
#include "platform/characters.h"
#include "typography/metrics.h"
#include "typography/typefaces.h"

namespace kelvane {

namespace {

constexpr char32_t kNegation = 0x338;
constexpr std::int16_t kUsualTextFace = 0;

int CodeOf(char byte) {
  return static_cast<unsigned char>(byte);
}

bool IsCombining(char32_t character) {
  return (character >= 0x300 && character < 0x370) || (character >= 0x20D0 && character < 0x2100);
}

// ---- Look-ups, made when they are first needed ----

using Codes = std::unordered_map<char32_t, char>;

Codes MakeCodes(char16_t (*characterOf)(unsigned char)) {
  Codes codes;
  for (int code = 1; code < kFirstSwitchCode; ++code) {
    const char16_t character = characterOf(static_cast<unsigned char>(code));
    if (character != 0) codes.emplace(character, static_cast<char>(code));
  }
  return codes;
}

const Codes& TextCodes() {
  static const Codes codes = MakeCodes(UnicodeOfText);
  return codes;
}
const Codes& SymbolCodes() {
  static const Codes codes = MakeCodes(UnicodeOfSymbol);
  return codes;
}

using ByCharacter = std::unordered_map<char32_t, const Sign*>;

const ByCharacter& Characters() {
  static const ByCharacter signs = [] {
    ByCharacter found;
    for (const Sign& sign : SignTable())
      if (sign.character != 0) found.emplace(sign.character, &sign);
    return found;
  }();
  return signs;
}

// Of Math0, by key.
const std::array<const Sign*, 128>& Keys() {
  static const std::array<const Sign*, 128> keys = [] {
    std::array<const Sign*, 128> found{};
    for (const Sign& sign : SignTable()) {
      const auto key = static_cast<std::size_t>(sign.math0);
      if (key != 0 && !found[key]) found[key] = &sign;
    }
    return found;
  }();
  return keys;
}

std::optional<char32_t> SameAs(char32_t character) {
  const auto same = SameSigns();
  const auto found = std::ranges::find(same, character, &SameSign::character);
  if (found == same.end()) return std::nullopt;
  return found->as;
}

// ---- Runs ----

// A run that begins in a typeface: switches come before characters of another one.
class RunWriter {
 public:
  explicit RunWriter(std::int16_t font) : start_(font), now_(font) {}

  void Character(std::int16_t font, char code) {
    Switch(font);
    run_ += code;
  }
  // A code that is the same in every typeface: a script or a fixed space.
  void Code(char code) { run_ += code; }
  // The run, back in the typeface that it began in.
  std::string Finish() {
    Switch(start_);
    return run_;
  }
  std::int16_t Font() const { return start_; }

 private:
  void Switch(std::int16_t font) {
    if (font != now_) run_ += static_cast<char>(kFirstSwitchCode + font);
    now_ = font;
  }

  std::int16_t start_;
  std::int16_t now_;
  std::string run_;
};

struct SignPlace {
  std::int16_t font;
  char code;
};

std::optional<SignPlace> PlaceIn(const Codes& codes, char32_t character, std::int16_t font) {
  const auto found = codes.find(character);
  if (found == codes.end()) return std::nullopt;
  return SignPlace{font, found->second};
}

std::int16_t TextFaceFor(std::int16_t font) {
  return IsTextFace(font) ? font : kUsualTextFace;
}

// The place of a character that is one code, for a run in a typeface.
std::optional<SignPlace> PlaceOf(char32_t character, char math0, bool only, std::int16_t font) {
  const bool symbol = IsSymbolFace(font);
  const bool glyphs = font == kMath0 || font == kMath3;
  if (math0 != 0 && (only || glyphs)) return SignPlace{glyphs ? font : kMath0, math0};
  if (IsTextFace(font)) {
    if (const auto place = PlaceIn(TextCodes(), character, font)) return place;
  }
  if (const auto place = PlaceIn(SymbolCodes(), character, symbol ? font : kSymbol)) return place;
  if (math0 != 0) return SignPlace{kMath0, math0};
  return PlaceIn(TextCodes(), character, TextFaceFor(font));
}

void Step(RunWriter& run, int threes) {
  for (const char code : StepCodes(threes)) run.Code(code);
}

// A mark of Math0 over the middle of a character; most take no room.
void WriteMarked(RunWriter& run, SignPlace base, char mark) {
  const float width = Advance(CodeOf(base.code), base.font, 1);
  const float marks = Advance(CodeOf(mark), kMath0, 1);
  const int back = static_cast<int>(std::lround((width + marks) / 2 / 0.03F));
  run.Character(base.font, base.code);
  Step(run, -back);
  run.Character(kMath0, mark);
  Step(run, back - static_cast<int>(std::lround(marks / 0.03F)));
}

void WriteMade(RunWriter& run, std::string_view made) {
  const std::int16_t text = TextFaceFor(run.Font());
  std::int16_t font = text;
  for (const char c : made) {
    const int code = CodeOf(c);
    if (code < kFirstSwitchCode) {
      run.Character(font, c);
    } else if (code < kFirstScriptCode) {
      font = static_cast<std::int16_t>(code - kFirstSwitchCode);
      if (font == 0) font = text;
    } else {
      run.Code(c);
    }
  }
}

std::optional<SignPlace> PlaceOf(char32_t character, std::int16_t font) {
  if (character >= 32 && character < 127 && IsTextFace(font))
    return SignPlace{font, static_cast<char>(character)};
  const auto found = Characters().find(character);
  if (found == Characters().end()) {
    return character < 127 ? PlaceIn(TextCodes(), character, TextFaceFor(font)) : std::nullopt;
  }
  const Sign& sign = *found->second;
  if (sign.made || sign.mark) return std::nullopt;
  return PlaceOf(sign.character, sign.math0, sign.only, font);
}

bool WriteSign(RunWriter& run, const Sign& sign) {
  if (sign.made) {
    WriteMade(run, sign.made);
    return true;
  }
  const auto place =
      sign.mark ? PlaceOf(sign.base, run.Font()) : PlaceOf(sign.character, sign.math0, sign.only, run.Font());
  if (!place) return false;
  if (sign.mark) {
    WriteMarked(run, *place, sign.mark);
  } else {
    run.Character(place->font, place->code);
  }
  return true;
}

// Letters of the mathematical alphabets.
std::optional<SignPlace> PlaceInAlphabets(char32_t character) {
  for (const Alphabet& row : Alphabets()) {
    if (character < row.first || character >= row.first + static_cast<char32_t>(row.count)) continue;
    const char32_t letter = row.firstLetter + (character - row.first);
    return PlaceIn(IsSymbolFace(row.font) ? SymbolCodes() : TextCodes(), letter, row.font);
  }
  return std::nullopt;
}

// The place of a character that may carry a mark; as it is typed, a character of ASCII is a code of its
// typeface.
std::optional<SignPlace> PlaceOfTyped(char32_t character, std::int16_t font) {
  if (character >= 32 && character < 127) return SignPlace{font, static_cast<char>(character)};
  if (const auto letter = PlaceInAlphabets(character)) return letter;
  return PlaceOf(character, font);
}

// False if no typeface has it.
bool WriteCharacter(RunWriter& run, char32_t typed) {
  const char32_t character = SameAs(typed).value_or(typed);
  if (character == 0) return true;
  if (const auto place = PlaceOfTyped(character, run.Font())) {
    run.Character(place->font, place->code);
    return true;
  }
  const Sign* sign = SignOf(character);
  return sign && WriteSign(run, *sign);
}

// A character with a combining one behind it. False if it cannot be set so.
bool WriteWithMark(RunWriter& run, char32_t character, char32_t combining) {
  const Sign* accent = SignOf(combining);
  if (!accent || accent->math0 == 0) return false;
  // The accent takes the place of the dot.
  if (character == 'i' && IsTextFace(run.Font()) && combining != kNegation) character = U'\u0131';
  const auto place = PlaceOfTyped(SameAs(character).value_or(character), run.Font());
  if (!place) return false;
  WriteMarked(run, *place, accent->math0);
  return true;
}

// ---- Reading ----

// A code of a run that is no switch: a character with its typeface, a script or a fixed space.
struct Token {
  std::size_t index = 0;  // in the run
  std::int16_t font = 0;  // kNoFont for what is no character
  int code = 0;
};
constexpr std::int16_t kNoFont = -1;

std::vector<Token> TokensOf(std::string_view run, std::int16_t font) {
  std::vector<Token> tokens;
  for (std::size_t i = 0; i < run.size(); ++i) {
    const int code = CodeOf(run[i]);
    if (code >= kFirstScriptCode) {
      tokens.push_back({i, kNoFont, code});
    } else if (code >= kFirstSwitchCode) {
      font = static_cast<std::int16_t>(code - kFirstSwitchCode);
    } else {
      tokens.push_back({i, font, code});
    }
  }
  return tokens;
}

char32_t CharacterAt(const Token& token) {
  return token.font == kNoFont ? 0 : CharacterOf(token.font, token.code);
}

struct Reading {
  std::size_t count = 0;  // tokens; 0 if nothing is to be read here
  std::string text;
};

// The signs that are put together, by the first code of what makes them. Those that are made of characters of
// the text faces alone cannot be told from what is written so, nor can a single character, nor spaces from
// steps.
using MadeSigns = std::unordered_map<int, std::vector<std::pair<std::vector<Token>, const Sign*>>>;
const MadeSigns& SignsByFirstCode() {
  static const MadeSigns signs = [] {
    MadeSigns found;
    for (const Sign& sign : SignTable()) {
      if (!sign.made || sign.kind == SignClass::Space) continue;
      std::vector<Token> tokens = TokensOf(sign.made, kUsualTextFace);
      if (tokens.size() < 2 || std::ranges::all_of(tokens, IsTextFace, &Token::font)) continue;
      const int first = tokens.front().code;
      found[first].emplace_back(std::move(tokens), &sign);
    }
    return found;
  }();
  return signs;
}

// In a sign that is made, the usual text face stands for any of them.
bool SameToken(const Token& made, const Token& token) {
  if (made.code != token.code) return false;
  return made.font == kUsualTextFace ? IsTextFace(token.font) : made.font == token.font;
}

Reading ReadMade(const std::vector<Token>& tokens, std::size_t at) {
  Reading reading;
  const auto candidates = SignsByFirstCode().find(tokens[at].code);
  if (candidates == SignsByFirstCode().end()) return reading;
  for (const auto& [made, sign] : candidates->second) {
    if (made.size() <= reading.count || made.size() > tokens.size() - at) continue;
    if (std::equal(made.begin(), made.end(), tokens.begin() + static_cast<std::ptrdiff_t>(at), SameToken))
      reading = {made.size(), WriteUtf8(sign->character)};
  }
  return reading;
}

const Sign* SignMarked(char32_t base, char mark) {
  const auto found =
      std::ranges::find_if(SignTable(), [&](const Sign& s) { return s.mark == mark && s.base == base; });
  return mark == 0 || found == SignTable().end() ? nullptr : &*found;
}

// A character and the marks of Math0 that stand over or through it.
Reading ReadMarked(const std::vector<Token>& tokens, std::size_t at) {
  const auto isAccent = [](const Token& token) {
    return token.font >= kFirstGlyphFont && IsCombining(CharacterAt(token));
  };
  const char32_t base = CharacterAt(tokens[at]);
  if (base == 0 || base == ' ' || isAccent(tokens[at])) return {};
  // What is no accent marks the character that it was moved over.
  const auto isMark = [&](std::size_t i) {
    return isAccent(tokens[i]) || (tokens[i].font >= kFirstGlyphFont && tokens[i - 1].font == kNoFont &&
                                   SignMarked(base, static_cast<char>(tokens[i].code)));
  };
  std::string marks;
  char key = 0;
  std::size_t last = at;
  for (std::size_t i = at + 1; i < tokens.size() && (tokens[i].font == kNoFont || isMark(i)); ++i) {
    if (tokens[i].font == kNoFont) continue;
    key = marks.empty() ? static_cast<char>(tokens[i].code) : char{0};
    marks += WriteUtf8(CharacterAt(tokens[i]));
    last = i;
  }
  if (marks.empty()) return {};
  const Sign* whole = SignMarked(base, key);
  return {last - at + 1, whole ? WriteUtf8(whole->character) : WriteUtf8(base) + marks};
}

// ---- Names ----

std::string_view TypedNames(const Sign& sign) {
  const std::string_view names = sign.names;
  return names.substr(0, names.find('|'));
}

// Calls `take` with each name; stops when it returns true.
template <typename Take>
bool AnyName(const Sign& sign, Take take) {
  std::string_view names = TypedNames(sign);
  while (!names.empty()) {
    const std::size_t end = std::min(names.find(' '), names.size());
    if (take(names.substr(0, end))) return true;
    names.remove_prefix(std::min(end + 1, names.size()));
  }
  return false;
}

std::string Lower(std::string_view text) {
  std::string lower(text);
  for (char& c : lower) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return lower;
}

}  // namespace

const Sign* SignOf(char32_t character) {
  const auto found = Characters().find(SameAs(character).value_or(character));
  return found == Characters().end() ? nullptr : found->second;
}

const Sign* SignAt(std::int16_t font, int code) {
  if (font == kMath0 || font == kMath3)
    return code >= 32 && code < 128 ? Keys()[static_cast<std::size_t>(code)] : nullptr;
  if (code < 1 || code >= kFirstSwitchCode) return nullptr;
  const auto byte = static_cast<unsigned char>(code);
  const char32_t character = IsSymbolFace(font) ? UnicodeOfSymbol(byte)
                             : IsTextFace(font) ? UnicodeOfText(byte)
                                                : u'\0';
  return SignOf(character);
}

char32_t CharacterOf(std::int16_t font, int code) {
  if (font >= kFirstGlyphFont) {
    const Sign* sign = SignAt(font, code);
    return sign ? sign->character : 0;
  }
  const auto byte = static_cast<unsigned char>(code);
  if (IsSymbolFace(font)) return UnicodeOfSymbol(byte);
  return IsTextFace(font) ? UnicodeOfText(byte) : u'\0';
}

std::vector<const Sign*> SignsNamed(std::string_view beginning) {
  std::vector<const Sign*> found;
  for (const Sign& sign : SignTable())
    if (AnyName(sign, [&](std::string_view name) { return name.starts_with(beginning); }))
      found.push_back(&sign);
  std::stable_partition(found.begin(), found.end(), [&](const Sign* sign) {
    return AnyName(*sign, [&](std::string_view name) { return name == beginning; });
  });
  return found;
}

bool HasEveryWord(std::string_view text, std::string_view words) {
  const std::string lower = Lower(text);
  const std::string wanted = Lower(words);
  return std::ranges::all_of(SplitFields(wanted, " "),
                             [&](std::string_view word) { return lower.find(word) != lower.npos; });
}

std::vector<const Sign*> FindSigns(std::string_view words) {
  std::vector<const Sign*> found;
  for (const Sign& sign : SignTable())
    if (HasEveryWord(sign.names, words)) found.push_back(&sign);
  return found;
}

std::vector<const Sign*> SignsOfClass(SignClass kind) {
  std::vector<const Sign*> found;
  for (const Sign& sign : SignTable())
    if (sign.kind == kind) found.push_back(&sign);
  return found;
}

std::string NameOf(const Sign& sign, std::string_view beginning) {
  std::string name;
  AnyName(sign, [&](std::string_view one) {
    if (one.starts_with(beginning)) name = "\\" + std::string(one);
    return !name.empty();
  });
  return name.empty() ? WordsOf(sign) : name;
}

std::string WordsOf(const Sign& sign) {
  const std::string_view names = sign.names;
  return std::string(names.substr(std::min(names.find('|') + 1, names.size())));
}

std::string HowTyped(const Sign& sign) {
  const auto place =
      sign.made || sign.mark ? std::nullopt : PlaceOf(sign.character, sign.math0, sign.only, kUsualTextFace);
  if (!place) return "put together from others";
  const int code = CodeOf(place->code);
  const std::string face =
      IsTextFace(place->font) ? "text faces" : kTypefaceNames[place->font].postScriptName;
  return face + (code > 32 && code < 127 ? ", key " + std::string(1, place->code) + ", code " : ", code ") +
         std::to_string(code);
}

std::string RunOf(const Sign& sign, std::int16_t font) {
  RunWriter run(font);
  WriteSign(run, sign);
  return run.Finish();
}

std::string StepCodes(int threes) {
  std::string codes;
  for (; threes >= 4; threes -= 4) codes += "\xFF";
  for (; threes <= -3; threes += 3) codes += "\xF0\xF8";
  if (threes == 3) codes += "\xF6\xF2";
  if (threes == 2) codes += "\xF3\xFB";
  if (threes == 1) codes += "\xFF\xF0\xF8";
  if (threes == -1) codes += "\xF0\xF8\xF3\xFB";
  if (threes == -2) codes += "\xF9\xF5";
  return codes;
}

std::string SignsToRun(std::string_view utf8, std::int16_t font, std::string& missing) {
  const std::u32string text = ReadUtf8(utf8);
  RunWriter run(font);
  std::u32string named;
  for (std::size_t i = 0; i < text.size(); ++i) {
    char32_t character = text[i];
    if (character == '\r' && i + 1 < text.size() && text[i + 1] == '\n') continue;
    if (character == '\n' || character == '\r' || character == '\t' || character == 0x2028 ||
        character == 0x2029)
      character = ' ';
    if (i + 1 < text.size() && IsCombining(text[i + 1]) && WriteWithMark(run, character, text[i + 1])) {
      ++i;
    } else if (!WriteCharacter(run, character) && named.find(character) == named.npos) {
      named += character;
    }
  }
  for (const char32_t character : named) missing += (missing.empty() ? "" : " ") + WriteUtf8(character);
  return run.Finish();
}

std::vector<SignInPieces> PiecesOfRun(std::string_view run, std::int16_t font) {
  std::vector<SignInPieces> pieces;
  const std::vector<Token> tokens = TokensOf(run, font);
  for (std::size_t at = 0; at < tokens.size();) {
    Reading reading = ReadMade(tokens, at);
    if (reading.count == 0) reading = ReadMarked(tokens, at);
    if (reading.count > 0)
      pieces.push_back({tokens[at].index, tokens[at + reading.count - 1].index + 1, reading.text});
    at += std::max(reading.count, std::size_t{1});
  }
  return pieces;
}

std::string TextOfRun(std::string_view run, std::int16_t font) {
  std::string text;
  const std::vector<SignInPieces> pieces = PiecesOfRun(run, font);
  auto next = pieces.begin();
  for (const Token& token : TokensOf(run, font)) {
    if (next != pieces.end() && token.index >= next->end) ++next;
    if (next == pieces.end() || token.index < next->begin) {
      if (const char32_t character = CharacterAt(token)) text += WriteUtf8(character);
    } else if (token.index == next->begin) {
      text += next->text;
    }
  }
  return text;
}

}  // namespace kelvane
