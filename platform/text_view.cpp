#include "platform/text_view.h"

namespace kelvane {

std::string WordsOf(const TextLine& line) {
  std::string words;
  for (const TextPiece& piece : line) words += piece.text;
  return words;
}

}  // namespace kelvane
