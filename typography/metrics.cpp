#include "typography/metrics.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>

#include "platform/failure.h"
#include "platform/files.h"
#include "typography/typefaces.h"
#include "typography/view.h"

namespace kelvane {

namespace {

// Part of every advance and every script offset; with entry 0 of a width table at 600 it makes a width in
// thousandths of an em come out in ems. Page files and width tables rely on it.
constexpr double kWidthFactor = 0.6;
constexpr double kScriptSmaller = 0.8;
constexpr double kScriptLarger = 1.25;  // exactly undoes kScriptSmaller but for rounding
constexpr double kFixedSpace = 0.12;    // codes 254 and 255, ems

constexpr int kFixedSpaceCodes = 254;

enum class ScriptStep { Start, Back, Forward };

// The four scripts in the order of their codes, three codes each: start, back, forward.
struct Script {
  double raise;  // ems of the surrounding size, upwards
  double shift;  // ems sideways, for italics
};
constexpr Script kScripts[4] = {
    {0.6 * kWidthFactor, 0},
    {-0.4 * kWidthFactor, 0},
    {0.6 * kWidthFactor, 0.15 * kWidthFactor},
    {-0.4 * kWidthFactor, -0.1 * kWidthFactor},
};

float Single(double value) {
  return static_cast<float>(value);
}

void StartScript(RunPen& pen, const Script& script) {
  if (pen.depth >= kScriptDepth) return;
  pen.savedX[pen.depth++] = pen.x;
  pen.x = Single(pen.x + script.shift * pen.size);
  pen.y = Single(pen.y - script.raise * pen.size);
  pen.size = Single(pen.size * kScriptSmaller);
}

// The size is restored first, so that the baseline goes back by what it came.
void EndScript(RunPen& pen, const Script& script, ScriptStep step) {
  if (pen.depth == 0) return;
  --pen.depth;
  pen.size = Single(pen.size * kScriptLarger);
  pen.y = Single(pen.y + script.raise * pen.size);
  pen.x = step == ScriptStep::Back ? pen.savedX[pen.depth] : Single(pen.x - script.shift * pen.size);
}

}  // namespace

float Advance(int code, std::int16_t font, float size) {
  const TypefaceRecord& face = TypefaceTable[font];
  const double width = face.Widths[static_cast<std::size_t>(code)];
  const double advance = size * width / face.WidthUnit * kWidthFactor;
  // Written so that what is no number, or too large for one, advances nothing.
  return std::abs(advance) <= std::numeric_limits<float>::max() ? Single(advance) : 0;
}

void ApplyRunCode(RunPen& pen, int code) {
  if (code < kFirstScriptCode) {
    pen.font = static_cast<std::int16_t>(code - kFirstSwitchCode);
  } else if (code >= kFixedSpaceCodes) {
    pen.x = Single(pen.x + kFixedSpace * pen.size);
  } else if (code < kFirstScriptCode + 12) {
    const Script& script = kScripts[(code - kFirstScriptCode) / 3];
    const auto step = static_cast<ScriptStep>((code - kFirstScriptCode) % 3);
    step == ScriptStep::Start ? StartScript(pen, script) : EndScript(pen, script, step);
  }
}

void LoadWidthTables() {
  for (TypefaceRecord& face : TypefaceTable) {
    if (face.Name.empty()) continue;
    const std::string path = ProgramFolder + face.Name + ".WT";
    if (!TheFiles->Exists(path)) throw Failure("ERROR - Unknown typeface: " + face.Name);
    const std::string bytes = TheFiles->ReadWhole(path);
    face.Widths.fill(0);
    for (std::size_t i = 0; i < face.Widths.size() && (i + 1) * 4 <= bytes.size(); ++i) {
      std::uint32_t bits = 0;
      for (std::size_t b = 4; b-- > 0;) bits = bits << 8 | static_cast<unsigned char>(bytes[i * 4 + b]);
      std::memcpy(&face.Widths[i], &bits, sizeof bits);
    }
    face.WidthUnit = face.Widths[0];
  }
}

namespace {

// Calls `passed` with the pen behind each character and code of a run that begins at 0.
template <typename Passed>
RunPen Walk(std::string_view text, std::int16_t font, float size, Passed passed) {
  RunPen pen;
  pen.font = IsTypeface(font) ? font : std::int16_t{0};
  pen.size = size;
  for (const char c : text) {
    const int code = static_cast<unsigned char>(c);
    if (code >= kFirstSwitchCode) {
      ApplyRunCode(pen, code);
    } else {
      pen.x += Advance(code, pen.font, pen.size);
    }
    passed(pen);
  }
  return pen;
}

}  // namespace

float MeasureRun(std::string_view text, std::int16_t font, float size) {
  return FollowRun(text, font, size).x;
}

RunPen FollowRun(std::string_view text, std::int16_t font, float size) {
  return Walk(text, font, size, [](const RunPen&) {});
}

RunReach ReachOfRun(std::string_view text, std::int16_t font, float size) {
  RunReach reach;
  reach.width = Walk(text, font, size, [&reach](const RunPen& pen) {
                  reach.box.left = std::min(reach.box.left, pen.x);
                  reach.box.right = std::max(reach.box.right, pen.x);
                  reach.box.top = std::min(reach.box.top, pen.y);
                  reach.box.bottom = std::max(reach.box.bottom, pen.y);
                }).x;
  return reach;
}

float JustificationAmount(float x) {
  float amount = 0;
  for (const float guide : GuideX) {
    if (guide == 0) break;
    if (guide > x && (amount == 0 || guide - x < amount)) amount = guide - x;
  }
  return amount;
}

}  // namespace kelvane
