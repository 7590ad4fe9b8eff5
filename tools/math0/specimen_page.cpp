#include "tools/math0/specimen_page.h"

#include <cmath>
#include <cstdint>

#include "document/numbers.h"
#include "document/page.h"
#include "platform/files.h"
#include "typography/metrics.h"

namespace kelvane::math0 {
namespace {

constexpr int kFirstSwitch = 224;

std::string InFace(int face, std::string_view text) {
  return static_cast<char>(kFirstSwitch + face) + std::string(text);
}

// A run as it is typed: in its first face, and without switches to the face already in force.
struct TypedRun {
  std::int16_t font = 0;
  std::string text;

  explicit TypedRun(const std::string& pieces) {
    int face = -1;
    for (const char c : pieces) {
      const int code = static_cast<unsigned char>(c) - kFirstSwitch;
      const bool isSwitch = code >= 0 && code < 16;
      if (isSwitch && face < 0) font = static_cast<std::int16_t>(code);
      if (!isSwitch || (face >= 0 && face != code)) text += c;
      if (isSwitch) face = code;
    }
  }
};

std::string Hundredths(float value) {
  return FormatSingle(std::round(value * 100) / 100);
}

}  // namespace

std::string Roman(std::string_view text) {
  return InFace(0, text);
}
std::string Bold(std::string_view text) {
  return InFace(1, text);
}
std::string Italic(std::string_view text) {
  return InFace(2, text);
}
std::string Sans(std::string_view text) {
  return InFace(4, text);
}
std::string Greek(std::string_view text) {
  return InFace(8, text);
}
std::string Math(std::string_view text) {
  return InFace(12, text);
}

void Page::Put(float x, float y, float size, const std::string& run, Anchor anchor) {
  const TypedRun typed(run);
  lines += Hundredths(x) + ' ' + Hundredths(y) + " m " + Hundredths(size) + " F" +
           "0123456789ABCDEF"[typed.font] + " (" + typed.text + ") " + std::to_string(anchor) + " s\r\n";
}

void Page::Save(const std::string& name) const {
  ClearPage();
  PageText = lines;
  WritePageSorted(ProgramFolder + name);
  ClearPage();
}

float WidthOf(const std::string& run, float size) {
  const TypedRun typed(run);
  return MeasureRun(typed.text, typed.font, size);
}

}  // namespace kelvane::math0
