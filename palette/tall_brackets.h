#pragma once

// Brackets as tall as several lines, set of the pieces of Math0.

#include <functional>
#include <span>

#include "platform/controls.h"

namespace kelvane {

struct TallBracket {
  const char* name;
  const char* picture;  // for the panel, a run that begins in Times-Roman
  char top;             // keys of Math0
  char bar;
  char middle;  // 0: no piece of its own
  char foot;
};
std::span<const TallBracket> TallBrackets();

inline constexpr int kMostBracketLines = 200;

// Sets a bracket over so many lines, each as far from the next as the font size, the first one the line of
// the cursor point or, behind it, of the run being typed, which is completed. All pieces are one edit. Throws
// Failure outside 2 to kMostBracketLines. Does nothing while no cursor point is placed.
void SetTallBracket(const TallBracket& bracket, int lines);

// Asks how many lines, in a window that is made the first time; TallWindowMade is told of it.
void AskTallBracket(const TallBracket& bracket);
extern std::function<void(Window&)> TallWindowMade;
void ResetTallBrackets();

}  // namespace kelvane
