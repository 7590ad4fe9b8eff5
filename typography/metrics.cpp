#include "typography/metrics.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <string>
#include <vector>

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

constexpr std::size_t kCodes = 256;

// A table of the program folder, which may be missing.
std::string BytesOfTable(const std::string& name) {
  const std::string path = ProgramFolder + name;
  return TheFiles->Exists(path) ? TheFiles->ReadWhole(path) : "";
}

float Thousandths(const std::string& bytes, std::size_t at) {
  const auto low = static_cast<unsigned char>(bytes[at]);
  const auto high = static_cast<signed char>(bytes[at + 1]);
  return static_cast<float>(high * 256 + low) / 1000;
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

void LoadInkBoxes() {
  constexpr std::size_t kEntry = 8;  // bytes
  const std::string bytes = BytesOfTable("INK.TAB");
  for (std::size_t font = 0; font < kFirstGlyphFont; ++font) {
    std::vector<Box>& ink = TypefaceTable[font].Ink;
    ink.clear();
    for (std::size_t at = font * kCodes * kEntry; ink.size() < kCodes && at + kEntry <= bytes.size();
         at += kEntry) {
      const auto edge = [&](std::size_t number) { return Thousandths(bytes, at + 2 * number); };
      ink.push_back({edge(0), -edge(3), edge(2), -edge(1)});
    }
  }
}

void LoadLeans() {
  constexpr std::size_t kEntry = 4;  // bytes
  const std::string bytes = BytesOfTable("LEAN.TAB");
  for (std::size_t font = 0; font < kFirstGlyphFont; ++font) {
    std::vector<Lean>& leans = TypefaceTable[font].Leans;
    leans.clear();
    for (std::size_t at = font * kCodes * kEntry; leans.size() < kCodes && at + kEntry <= bytes.size();
         at += kEntry)
      leans.push_back({Thousandths(bytes, at), Thousandths(bytes, at + 2)});
  }
}

RunPen PenAt(Point origin, std::int16_t font, float size) {
  RunPen pen;
  pen.font = IsTypeface(font) ? font : std::int16_t{0};
  pen.size = size;
  pen.x = origin.x;
  pen.y = origin.y;
  return pen;
}

float MeasureRun(std::string_view text, std::int16_t font, float size) {
  return FollowRun(text, font, size).x;
}

RunPen FollowRun(std::string_view text, std::int16_t font, float size) {
  return WalkRun(text, PenAt({}, font, size), 0, [](std::size_t, const RunPen&) {});
}

RunReach ReachOfRun(std::string_view text, std::int16_t font, float size) {
  RunReach reach;
  const auto add = [&reach](const RunPen& pen) {
    reach.box.left = std::min(reach.box.left, pen.x);
    reach.box.right = std::max(reach.box.right, pen.x);
    reach.box.top = std::min(reach.box.top, pen.y);
    reach.box.bottom = std::max(reach.box.bottom, pen.y);
  };
  const RunPen end =
      WalkRun(text, PenAt({}, font, size), 0, [&](std::size_t, const RunPen& pen) { add(pen); });
  add(end);
  reach.width = end.x;
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

Box CellAt(const RunPen& pen, float step) {
  constexpr float kRise = 0.8F;
  constexpr float kFall = 0.2F;
  return {pen.x + std::min(step, 0.0F), pen.y - kRise * pen.size, pen.x + std::max(step, 0.0F),
          pen.y + kFall * pen.size};
}

Point AlignAtAnchor(Point at, int anchor, float width, float size) {
  if (anchor < 1 || anchor > 9) return at;
  // Anchors run round the item: 1 to 3 down its left side, 4 and 8 its middle, 5 to 7 up its right side.
  const bool middle = anchor == 4 || anchor == 8 || anchor == 9;
  const bool right = anchor >= 5 && anchor <= 7;
  const bool top = anchor == 1 || anchor == 7 || anchor == 8;
  const bool centre = anchor == 2 || anchor == 6 || anchor == 9;
  const double dx = right ? 1 : middle ? 0.5 : 0;
  const double dy = top ? 0.6 : centre ? 0.3 : 0;
  return {static_cast<float>(at.x - dx * width), static_cast<float>(at.y + dy * size)};
}

float JustificationSpace(std::string_view text, float amount, float width) {
  const auto blanks = std::count(text.begin(), text.end(), ' ');
  return blanks == 0 ? 0 : (amount - width) / static_cast<float>(blanks);
}

PlacedRun PlaceRun(const TextEntry& entry, float width) {
  return {AlignAtAnchor({entry.x, entry.y}, entry.anchor, width, entry.size),
          entry.justified ? JustificationSpace(entry.text, entry.amount, width) : 0};
}

PlacedRun PlaceRun(const TextEntry& entry) {
  const bool needsWidth = entry.justified || entry.anchor > 3;
  return PlaceRun(entry, needsWidth ? MeasureRun(entry.text, entry.font, entry.size) : 0);
}

}  // namespace kelvane
