#pragma once

// A short notation for what stands on one line of a formula.
//
//   letters                 italic, with room for the heads of f, T, V, W and Y
//   ~c  `c  !c  'words'     of Symbol, of Math0, bold, roman
//   = < > + -               of Symbol
//   ^x _x ^{...} _{...}     scripts
//   ;  @                    thin space, quad
//   blank                   nothing
//   the rest                roman

#include <string>
#include <string_view>
#include <vector>

namespace kelvane::math0 {

enum class PartKind { Ordinary, Relation, Operator, Thin, Quad };

// Signs that follow one another without space, in the codes of a run.
struct Part {
  PartKind kind;
  std::string run;
};

// A sign of operation is ordinary behind a relation, and at the start unless it `continues` a formula.
std::vector<Part> PartsOf(std::string_view notation, bool continues = false);

// The notation in one run, with narrow spaces about relations and no others: scripts and limits.
std::string RunOf(std::string_view notation);

}  // namespace kelvane::math0
