#include "tools/math0/notation.h"

#include <algorithm>

#include "tools/math0/specimen_page.h"

namespace kelvane::math0 {
namespace {

constexpr std::string_view kLeaning = "fTVWY";
constexpr std::string_view kSymbolRelations = "=<>";
constexpr std::string_view kSymbolOperators = "+-\xB4\xD7\xD9\xDA";
constexpr std::string_view kMathRelations = "#@?$%WXkceTM-=YBybmj2\x7F";
constexpr std::string_view kMathOperators = "po";

char Take(std::string_view& rest) {
  const char c = rest.empty() ? ' ' : rest.front();
  rest.remove_prefix(rest.empty() ? 0 : 1);
  return c;
}

// What stands before the next `end`, which goes too.
std::string_view TakeUpTo(std::string_view& rest, char end) {
  const std::string_view taken = rest.substr(0, rest.find(end));
  rest.remove_prefix(std::min(rest.size(), taken.size() + 1));
  return taken;
}

// The notation of a script: a group in braces, or one sign.
std::string_view TakeGroup(std::string_view& rest) {
  std::size_t length = 0;
  int depth = 0;
  do {
    const char c = length < rest.size() ? rest[length] : '}';
    if (c == '{') ++depth;
    if (c == '}') --depth;
    if (c == '`' || c == '~' || c == '!') ++length;  // its sign belongs to it
    ++length;
  } while (depth > 0);
  std::string_view group = rest.substr(0, length);
  rest.remove_prefix(std::min(rest.size(), length));
  if (group.starts_with('{')) group = group.substr(1, group.size() - 2);
  return group;
}

Part Sign(const std::string& run, std::string_view relations, std::string_view operators) {
  if (relations.find(run.back()) != std::string_view::npos) return {PartKind::Relation, run};
  if (operators.find(run.back()) != std::string_view::npos) return {PartKind::Operator, run};
  return {PartKind::Ordinary, run};
}

// An index stands closer to the foot of an italic letter. The tail of f needs room as well as its head.
Part Letter(char letter, std::string_view& rest) {
  std::string run = Italic({&letter, 1});
  if (letter == 'f') run.insert(0, kHair);
  if (rest.starts_with('_')) {
    rest.remove_prefix(1);
    run += '\xF9' + RunOf(TakeGroup(rest)) + '\xFB';
  } else if (kLeaning.find(letter) != std::string_view::npos) {
    run += kHair;
  }
  return {PartKind::Ordinary, run};
}

Part TakePart(std::string_view& rest) {
  char c = Take(rest);
  if ((c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z')) return Letter(c, rest);
  switch (c) {
    case ' ':
      return {PartKind::Ordinary, {}};
    case ';':
      return {PartKind::Thin, {}};
    case '@':
      return {PartKind::Quad, {}};
    case '^':
      return {PartKind::Ordinary, '\xF0' + RunOf(TakeGroup(rest)) + '\xF2'};
    case '_':
      return {PartKind::Ordinary, '\xF3' + RunOf(TakeGroup(rest)) + '\xF5'};
    case '\'':
      return {PartKind::Ordinary, Roman(TakeUpTo(rest, '\''))};
    case '!':
      c = Take(rest);
      return {PartKind::Ordinary, Bold({&c, 1})};
    case '`':
      c = Take(rest);
      return Sign(Math({&c, 1}), kMathRelations, kMathOperators);
    case '~':
      c = Take(rest);
      return Sign(Greek({&c, 1}), kSymbolRelations, kSymbolOperators);
    case '=':
    case '<':
    case '>':
    case '+':
    case '-':
      return Sign(Greek({&c, 1}), kSymbolRelations, kSymbolOperators);
    default:
      return {PartKind::Ordinary, Roman({&c, 1})};
  }
}

}  // namespace

std::vector<Part> PartsOf(std::string_view notation, bool continues) {
  std::vector<Part> parts;
  while (!notation.empty()) {
    Part part = TakePart(notation);
    const bool unary = parts.empty() ? !continues : parts.back().kind == PartKind::Relation;
    if (part.run.empty() && part.kind == PartKind::Ordinary) continue;
    if (part.kind == PartKind::Operator && unary) part.kind = PartKind::Ordinary;
    if (!parts.empty() && parts.back().kind == part.kind && !part.run.empty()) {
      parts.back().run += part.run;
    } else {
      parts.push_back(part);
    }
  }
  return parts;
}

std::string RunOf(std::string_view notation) {
  std::string run;
  for (const Part& part : PartsOf(notation)) {
    const std::string_view space = part.kind == PartKind::Relation ? kHair : "";
    run += std::string(space) + part.run + std::string(space);
  }
  return run;
}

}  // namespace kelvane::math0
