#include "tools/math0/glyphs.h"

#include <algorithm>

#include "document/numbers.h"
#include "tools/math0/merge.h"

namespace kelvane::math0 {
namespace {

void AppendPoint(std::string& line, Vec point) {
  if (!line.empty()) line += ' ';
  line += FormatSingle(static_cast<float>(point.x)) + ' ' + FormatSingle(static_cast<float>(point.y));
}

}  // namespace

std::vector<Glyph> AllGlyphs() {
  std::vector<Glyph> all;
  for (const auto group :
       {OperatorGlyphs(), DelimiterGlyphs(), ArrowGlyphs(), RelationGlyphs(), LetterGlyphs(), MarkGlyphs()}) {
    all.insert(all.end(), group.begin(), group.end());
  }
  std::sort(all.begin(), all.end(), [](const Glyph& a, const Glyph& b) { return a.key < b.key; });
  return all;
}

std::vector<std::string> Strokes(const Glyph& glyph) {
  std::vector<std::string> strokes;
  for (const Contour& contour : Merge(glyph.draw(), glyph.name)) {
    std::string line;
    AppendPoint(line, contour.start);
    for (const Segment& segment : contour.segments) {
      AppendPoint(line, segment.control);
      AppendPoint(line, segment.end);
    }
    strokes.push_back(line);
  }
  return strokes;
}

}  // namespace kelvane::math0
