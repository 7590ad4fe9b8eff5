#include "app/settings.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>
#include <string_view>

#include "document/fields.h"
#include "document/lines.h"
#include "document/numbers.h"
#include "document/paper.h"
#include "editing/cursor.h"
#include "platform/files.h"
#include "typography/typefaces.h"
#include "typography/view.h"

namespace kelvane {

namespace {

constexpr WindowPlace kDefaultPlace{0, 0, 640 * kTwipsPerPixel, 480 * kTwipsPerPixel};
constexpr float kAboveZero = std::numeric_limits<float>::min();
constexpr float kLargest = std::numeric_limits<float>::max();
constexpr float kLargestPaper = 14400;  // points, the largest sheet PostScript interpreters take
constexpr float kLargestScale = 1000;   // beyond that a point is wider than any screen

}  // namespace

WindowPlace FormPlace = kDefaultPlace;

namespace {

// A number of the file, its start value and the values that the editor can work with.
struct NumberSetting {
  const char* key;
  float* value;
  float start;
  float least;
  float most;
};
const NumberSetting kNumbers[] = {
    {"PAPERWIDTH", &PaperWidth, kDefaultPaperWidth, kAboveZero, kLargestPaper},
    {"PAPERHEIGHT", &PaperHeight, kDefaultPaperHeight, kAboveZero, kLargestPaper},
    {"STARTX", &STARTX, kDefaultStartX, -kLargest, kLargest},
    {"STARTY", &STARTY, kDefaultStartY, -kLargest, kLargest},
    {"SCALE", &SCALE, kDefaultScale, kAboveZero, kLargestScale},
    {"FONTSIZE", &FontSize, kDefaultFontSize, -kLargest, kLargest},
    {"CURSORX", &CursorX, 0, -kLargest, kLargest},
    {"CURSORY", &CursorY, 0, -kLargest, kLargest},
    {"FORMLEFT", &FormPlace.left, kDefaultPlace.left, -kLargest, kLargest},
    {"FORMTOP", &FormPlace.top, kDefaultPlace.top, -kLargest, kLargest},
    {"FORMWIDTH", &FormPlace.width, kDefaultPlace.width, 1, kLargest},
    {"FORMHEIGHT", &FormPlace.height, kDefaultPlace.height, 1, kLargest},
};

struct ChoiceSetting {
  const char* key;
  std::int16_t* value;
  std::int16_t start;
  std::int16_t least;
  std::int16_t most;
};
const ChoiceSetting kChoices[] = {
    {"GRIDX", &GridStepH, kDefaultGridStepH, 1, 6},
    {"GRIDY", &GridStepV, kDefaultGridStepV, 1, 6},
    {"FONTNUMBER", &BaseFont, 0, 0, kTypefaces - 1},
    {"CURSORMODE", &CursorMode, 0, 0, 9},
};

// Guide lists fill up in the order of the file; what comes after the sixteenth replaces it.
struct GuideList {
  float* guides;
  int count = 0;
  void Add(float value) {
    count = std::min(count + 1, kGuides);
    guides[count - 1] = value;
  }
};

// The key of a line in upper case; empty if the line has none.
std::string KeyOf(std::string_view line) {
  const std::size_t equals = line.find('=');
  if (equals == std::string_view::npos) return {};
  return UpperCase(TrimBlanks(line.substr(0, equals)));
}

// The number, or `start` in the place of one beyond the range of a single.
float ReadOr(float start, std::string_view value) {
  return std::abs(ReadDouble(value)) <= kLargest ? ReadSingle(value) : start;
}

void ReadLine(std::string_view line, GuideList& xGuides, GuideList& yGuides) {
  const std::string key = KeyOf(line);
  if (key.empty()) return;
  const std::string_view value = TrimBlanks(line.substr(line.find('=') + 1));
  if (key == "PDIR") PaperFolder = value;
  if (key == "GUIDEX") xGuides.Add(ReadOr(0, value));  // 0 ends the list
  if (key == "GUIDEY") yGuides.Add(ReadOr(0, value));
  for (const NumberSetting& setting : kNumbers) {
    if (key == setting.key) *setting.value = ReadOr(setting.start, value);
  }
  for (const ChoiceSetting& setting : kChoices) {
    if (key == setting.key) *setting.value = RoundToInt16(ReadSingle(value));
  }
}

// Values that would break the editor give way to the start values.
void ReplaceUnusable() {
  for (const NumberSetting& s : kNumbers) {
    if (*s.value < s.least || *s.value > s.most) *s.value = s.start;
  }
  for (const ChoiceSetting& s : kChoices) {
    if (*s.value < s.least || *s.value > s.most) *s.value = s.start;
  }
}

bool IsRewritten(const std::string& key) {
  return key == "FORMLEFT" || key == "FORMTOP" || key == "FORMWIDTH" || key == "FORMHEIGHT" || key == "PDIR";
}

// The lines that exit does not rewrite, byte for byte; the last one gets its line end if it lacks one.
std::string KeptLines(std::string_view content) {
  std::string kept;
  while (!content.empty()) {
    const std::string_view before = content;
    const std::string key = KeyOf(TakeLine(content));
    if (!IsRewritten(key)) kept += before.substr(0, before.size() - content.size());
  }
  if (!kept.empty() && kept.back() != '\n' && kept.back() != '\r') kept += "\r\n";
  return kept;
}

std::string SettingLine(const std::string& key, const std::string& value) {
  return key + " = " + value + "\r\n";
}

}  // namespace

void ResetSettings() {
  FormPlace = kDefaultPlace;
}

void ReadSettings(const std::string& path) {
  if (!TheFiles->Exists(path)) return;
  const std::string content = TheFiles->ReadWhole(path);
  GuideList xGuides{GuideX};
  GuideList yGuides{GuideY};
  for (std::string_view rest = content; !rest.empty();) ReadLine(TakeLine(rest), xGuides, yGuides);
  ReplaceUnusable();
}

void WriteSettings(const std::string& path) {
  const std::string old = TheFiles->Exists(path) ? TheFiles->ReadWhole(path) : "";
  std::string content = KeptLines(old);
  if (!PaperFolder.empty()) content += SettingLine("Pdir", PaperFolder);
  content += SettingLine("FormLeft", FormatSingle(FormPlace.left));
  content += SettingLine("FormTop", FormatSingle(FormPlace.top));
  content += SettingLine("FormWidth", FormatSingle(FormPlace.width));
  content += SettingLine("FormHeight", FormatSingle(FormPlace.height));
  if (content != old) WriteFileSafely(path, content);
}

}  // namespace kelvane
