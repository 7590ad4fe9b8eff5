// The two kinds of entry of a page: text entries taken apart, drawings between their record and their line.

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <functional>
#include <initializer_list>
#include <optional>
#include <vector>

#include "document/fields.h"
#include "document/numbers.h"
#include "document/page.h"
#include "platform/failure.h"

namespace kelvane {
namespace {

constexpr std::size_t kLeastRecordTokens = 5;
constexpr std::size_t kLeastDrawnTokens = 7;  // a start, a segment and the closing value
constexpr std::size_t kMostPushed = 40;
// Operands are written with 7 digits, so a long closed path read back may miss its start by their errors. A
// gap of this size cannot be seen, but would turn a filled shape into a line.
constexpr float kClosingGap = 0.01F;  // points
// How places may move so that straight segments are written without loss. Twice the last digit of numbers
// beyond 100, so that there are middles between them; below 100 there is one more.
constexpr double kCoarseStep = 0.0002;  // points
constexpr double kFineStep = 0.00002;

// The next token of a text entry, from which blanks in front are taken; empty at the end.
std::string_view TakeToken(std::string_view& rest) {
  rest.remove_prefix(std::min(rest.find_first_not_of(' '), rest.size()));
  const std::string_view token = rest.substr(0, rest.find(' '));
  rest.remove_prefix(token.size());
  return token;
}

// Typeface of an F token. Pages made by hand may hold any digit: what is no typeface is set in the first.
std::int16_t FontOfToken(std::string_view token) {
  if (token.size() != 2) return 0;
  const char digit = token[1];
  if (digit >= '0' && digit <= '9') return static_cast<std::int16_t>(digit - '0');
  if (digit >= 'A' && digit <= 'F') return static_cast<std::int16_t>(digit - 'A' + 10);
  return 0;
}

bool ParseHead(std::string_view head, TextEntry& entry) {
  const std::string_view x = TakeToken(head);
  const std::string_view y = TakeToken(head);
  if (TakeToken(head) != "m") return false;
  const std::string_view size = TakeToken(head);
  const std::string_view font = TakeToken(head);
  if (!font.starts_with('F') || !TakeToken(head).empty()) return false;
  entry.x = ReadSingle(x);
  entry.y = ReadSingle(y);
  entry.size = ReadSingle(size);
  entry.font = FontOfToken(font);
  return true;
}

bool ParseTail(std::string_view tail, TextEntry& entry) {
  const std::string_view anchor = TakeToken(tail);
  const std::string_view second = TakeToken(tail);
  const std::string_view third = TakeToken(tail);
  if (!TakeToken(tail).empty()) return false;
  entry.justified = third == "a";
  if (!entry.justified && (second != "s" || !third.empty())) return false;
  entry.anchor = RoundToInt16(ReadSingle(anchor));
  entry.amount = entry.justified ? ReadSingle(second) : 0;
  return true;
}

void AppendTokens(std::string& text, std::initializer_list<float> numbers) {
  for (const float number : numbers) {
    if (!text.empty()) text += ' ';
    text += FormatSingle(number);
  }
}

float Middle(float from, float to) {
  return (from + to) * 0.5F;
}

// The points of a record being made from a line, in the order of the record.
class RecordBuilder {
 public:
  void Move(float x, float y) {
    if (numbers.empty()) startsWithMove = true;
    Append(x, y);
    SetCurrent(x, y);
  }

  void Line(float dx, float dy) {
    const float endX = currentX + dx;
    const float endY = currentY + dy;
    Append(Middle(currentX, endX), Middle(currentY, endY));
    Append(endX, endY);
    SetCurrent(endX, endY);
    lastIsStraight = true;
  }

  void Curve(float controlX, float controlY, float dx, float dy) {
    Append(currentX + controlX, currentY + controlY);
    Append(currentX + dx, currentY + dy);
    SetCurrent(currentX + dx, currentY + dy);
    lastIsStraight = false;
  }

  // Makes the last point equal to the first where it misses it by no more than the written digits explain.
  void Close() {
    const std::size_t n = numbers.size();
    if (n < 6) return;
    const float gapX = numbers[n - 2] - numbers[0];
    const float gapY = numbers[n - 1] - numbers[1];
    if (gapX * gapX + gapY * gapY > kClosingGap * kClosingGap) return;
    numbers[n - 2] = numbers[0];
    numbers[n - 1] = numbers[1];
    if (!lastIsStraight) return;
    numbers[n - 4] = Middle(numbers[n - 6], numbers[0]);
    numbers[n - 3] = Middle(numbers[n - 5], numbers[1]);
  }

  std::string Record(float style) const {
    std::string record;
    for (const float number : numbers) AppendTokens(record, {number});
    if (!startsWithMove && !numbers.empty()) record.insert(0, " ");
    return record + ' ' + FormatSingle(style);
  }

 private:
  void Append(float x, float y) {
    numbers.push_back(x);
    numbers.push_back(y);
  }
  void SetCurrent(float x, float y) {
    currentX = x;
    currentY = y;
  }

  std::vector<float> numbers;
  float currentX = 0;
  float currentY = 0;
  bool lastIsStraight = false;
  bool startsWithMove = false;  // otherwise the record gets an empty first token, which makes it unusable
};

// The numbers that wait for their operator.
class OperandStack {
 public:
  void Push(float number) {
    if (count == kMostPushed) throw Failure("more than 40 numbers before an operator");
    numbers[count++] = number;
  }

  float Pop() {
    if (count == 0) throw Failure("an operator has too few numbers before it");
    return numbers[--count];
  }

 private:
  std::array<float, kMostPushed> numbers{};
  std::size_t count = 0;
};

// The places of a drawing along one axis: its start and the ends of its segments.
using Places = std::vector<float>;

bool IsWritten(float number) {
  return AsWritten(number) == number;
}

// Whether a straight segment is one in its record, and in that of the line which is written and read. A
// reader comes to `read` and `next` for its ends.
bool StaysStraight(float start, float end, float read, float next) {
  if (!IsWritten(Middle(start, end))) return false;
  const bool exact = read == start && next == end;
  return exact || AsWritten(Middle(read, next)) == Middle(AsWritten(read), AsWritten(next));
}

// Whether straight segments stay so. Goes on to the places that the reader comes to, which add up the errors
// of the written digits.
bool ReadsStraight(Places& places, const std::vector<bool>& straight, bool closed) {
  float start = places.front();
  float read = places.front() = AsWritten(start);
  for (std::size_t i = 0; i < straight.size(); ++i) {
    const float end = places[i + 1];
    const bool closes = closed && i + 1 == straight.size();
    const float next = closes ? places.front() : read + AsWritten(end - start);
    if (straight[i] && !StaysStraight(start, end, read, next)) return false;
    places[i + 1] = AsWritten(next);
    start = end;
    read = next;
  }
  return true;
}

// One of the numbers near another one, as it is written: the nearest first.
float Beside(double number, int tried, double step) {
  const int steps = tried % 2 == 0 ? tried / 2 : -(tried + 1) / 2;
  return AsWritten(static_cast<float>((std::round(number / step) + steps) * step));
}

// How places are looked for. Exact ones are those that a reader comes to without an error; there may be
// others that do, and are nearer.
struct Search {
  bool exact;
  int tries;         // for a place, of each kind of step
  std::size_t most;  // for all places
};

// Altogether no place moves by more than 0.02 points, which cannot be seen.
constexpr Search kSearches[] = {{false, 100, 1000}, {true, 40, 20000}, {true, 200, 60000}};

// Places so near to those that are wanted that straight segments stay straight. Nothing if there are none.
std::optional<Places> SettledPlaces(const Places& wanted, const std::vector<bool>& straight, bool closed,
                                    const Search& search) {
  Places places = wanted;
  Places read = wanted;
  std::vector<int> tried(places.size());
  const int tries = search.exact ? 2 * search.tries : search.tries;
  std::size_t left = search.most + 2 * places.size();
  for (std::size_t i = 0; left > 0; --left) {
    if (i == places.size()) {
      Places again = read;
      for (float& place : again) place = AsWritten(place);
      if (ReadsStraight(again, straight, closed)) return places;
      --i;
    }
    if (tried[i] >= tries) {  // the place before has to give way
      if (i == 0) return std::nullopt;
      --i;
      continue;
    }
    const int next = tried[i] % search.tries;
    const double step = tried[i]++ < search.tries ? kCoarseStep : kFineStep;
    if (i == 0) {
      places[i] = read[i] = Beside(wanted[i], next, step);
    } else {
      const float before = places[i - 1];
      const bool closes = closed && i + 1 == places.size();
      if (closes) tried[i] = tries;
      places[i] = closes         ? places.front()
                  : search.exact ? before + Beside(static_cast<double>(wanted[i]) - before, next, step)
                                 : Beside(wanted[i], next, step);
      read[i] = closes ? read.front() : read[i - 1] + AsWritten(places[i] - before);
      if (search.exact && (read[i] != places[i] || !IsWritten(places[i]))) continue;
      if (straight[i - 1] && !StaysStraight(before, places[i], read[i - 1], read[i])) continue;
    }
    if (++i < places.size()) tried[i] = 0;
  }
  return std::nullopt;
}

// Brings a drawing to places between which straight segments stay straight however often they are written and
// read.
void SettleSegments(Drawing& drawing, const std::vector<bool>& straight) {
  const bool closed = drawing.closed;
  Places wanted;
  Places read;
  for (float Point::*const axis : {&Point::x, &Point::y}) {
    wanted.clear();
    for (std::size_t i = 0; i < drawing.points.size(); i += 2)
      wanted.push_back(AsWritten(drawing.points[i].*axis));
    // Mostly they can stay. What has been read twice does not change any more.
    read = wanted;
    std::optional<Places> settled;
    if (!ReadsStraight(read, straight, closed) ||
        (read != wanted && !ReadsStraight(read, straight, closed))) {
      for (const Search& search : kSearches)
        if (!settled) settled = SettledPlaces(wanted, straight, closed, search);
      if (!settled) continue;
    }
    const Places& places = settled ? *settled : wanted;
    for (std::size_t i = 0; i < places.size(); ++i) drawing.points[2 * i].*axis = places[i];
  }
}

}  // namespace

bool FindRun(std::string_view line, std::size_t& begin, std::size_t& end) {
  const std::size_t open = line.find('(');
  const std::size_t close = line.rfind(')');
  if (open == std::string_view::npos || close == std::string_view::npos || close < open) return false;
  begin = open + 1;
  end = close;
  return true;
}

bool ParseTextEntry(std::string_view line, TextEntry& entry) {
  std::size_t begin = 0;
  std::size_t end = 0;
  if (!FindRun(line, begin, end)) return false;
  if (!ParseHead(line.substr(0, begin - 1), entry) || !ParseTail(line.substr(end + 1), entry)) return false;
  entry.text = line.substr(begin, end - begin);
  return true;
}

std::string LineOfEntry(const TextEntry& entry) {
  static constexpr char kDigits[] = "0123456789ABCDEF";
  const char font = kDigits[entry.font >= 0 && entry.font < 16 ? entry.font : 0];
  std::string line;
  AppendTokens(line, {entry.x, entry.y});
  line += " m";
  AppendTokens(line, {entry.size});
  line.append(" F").append(1, font).append(" (").append(entry.text).append(") ");
  line += std::to_string(entry.anchor);
  if (entry.justified) AppendTokens(line, {entry.amount});
  return line.append(entry.justified ? " a" : " s");
}

LineStyle DecodeLineStyle(float value) {
  const double colour = std::floor(value * 0.1);
  if (!(std::abs(colour) < 32767)) return {};
  return {static_cast<std::int16_t>(colour), static_cast<float>(value - 10 * colour)};
}

LineStyle CleanStyle(const LineStyle& style) {
  constexpr double kParts = 10000;  // of a point: less than singles up to 160 can tell
  return {style.colour, static_cast<float>(std::round(style.width * kParts) / kParts)};
}

std::string TokenOfStyle(const LineStyle& style) {
  return FormatSingle(static_cast<float>(style.colour * 10.0 + CleanStyle(style).width));
}

bool IsStraight(Point start, Point control, Point end) {
  return Middle(start.x, end.x) == control.x && Middle(start.y, end.y) == control.y;
}

bool ParseDrawing(std::string_view record, Drawing& drawing) {
  const std::vector<std::string_view> tokens = SplitFields(record, " ");
  if (tokens.size() < kLeastDrawnTokens) return false;
  const auto point = [&](std::size_t index) {
    return Point{ReadSingle(tokens[index]), ReadSingle(tokens[index + 1])};
  };
  drawing.points.assign(1, point(0));
  for (std::size_t i = 2; i + 4 < tokens.size(); i += 4) {
    drawing.points.push_back(point(i));
    drawing.points.push_back(point(i + 2));
  }
  drawing.style = DecodeLineStyle(ReadSingle(tokens.back()));
  drawing.closed = point(0) == point(tokens.size() - 3);
  return true;
}

void MapDrawing(Drawing& drawing, const std::function<Point(Point)>& map) {
  std::vector<Point>& points = drawing.points;
  std::vector<bool> straight;
  for (std::size_t i = 0; i + 2 < points.size(); i += 2)
    straight.push_back(IsStraight(points[i], points[i + 1], points[i + 2]));
  for (Point& point : points) point = map(point);
  if (drawing.closed) points.back() = points.front();
  if (std::ranges::count(straight, true) > 0) SettleSegments(drawing, straight);
  for (std::size_t i = 0; i < straight.size(); ++i) {
    const Point start = points[2 * i];
    const Point end = points[2 * i + 2];
    if (straight[i]) points[2 * i + 1] = {Middle(start.x, end.x), Middle(start.y, end.y)};
  }
}

std::string RecordOfDrawing(const Drawing& drawing, std::string_view style) {
  std::string record;
  for (const Point& point : drawing.points) AppendTokens(record, {point.x, point.y});
  return record.append(" ").append(style);
}

std::string DrawingRecordToLine(std::string_view record) {
  const std::vector<std::string_view> tokens = SplitFields(record, " ");
  if (tokens.size() < kLeastRecordTokens) return {};
  // A record that breaks off within a segment goes on with zeros.
  const auto number = [&](std::size_t index) {
    return index < tokens.size() ? ReadSingle(tokens[index]) : 0.0F;
  };
  float x = number(0);
  float y = number(1);
  const bool closed = x == number(tokens.size() - 3) && y == number(tokens.size() - 2);
  std::string line;
  AppendTokens(line, {x, y});
  line.append(" m ").append(tokens.back()).append(" lw");
  for (std::size_t i = 3; i < tokens.size(); i += 4) {
    const float controlX = number(i - 1);
    const float controlY = number(i);
    const float endX = number(i + 1);
    const float endY = number(i + 2);
    const bool straight = IsStraight({x, y}, {controlX, controlY}, {endX, endY});
    if (!straight) AppendTokens(line, {controlX - x, controlY - y});
    AppendTokens(line, {endX - x, endY - y});
    line += straight ? " rl" : " rb";
    x = endX;
    y = endY;
  }
  return line + (closed ? " fill" : " stroke");
}

std::string LineToDrawingRecord(std::string_view line) {
  if (line.empty()) return {};
  OperandStack stack;
  RecordBuilder path;
  float style = 0;
  for (const std::string_view token : SplitFields(line, " ")) {
    if (token == "m") {
      const float y = stack.Pop();
      path.Move(stack.Pop(), y);
    } else if (token == "rl") {
      const float dy = stack.Pop();
      path.Line(stack.Pop(), dy);
    } else if (token == "rb") {
      const float dy = stack.Pop();
      const float dx = stack.Pop();
      const float controlY = stack.Pop();
      path.Curve(stack.Pop(), controlY, dx, dy);
    } else if (token == "lw") {
      style = stack.Pop();
    } else if (token == "fill") {
      path.Close();
    } else if (token != "stroke") {
      stack.Push(ReadSingle(token));
    }
  }
  return path.Record(style);
}

}  // namespace kelvane
