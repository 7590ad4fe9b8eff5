// Drawings from lines of pen strokes and areas.

#include <sstream>

#include "document/lines.h"
#include "document/numbers.h"
#include "platform/failure.h"
#include "tools/pictures/pictures.h"

namespace kelvane::pictures {

namespace {

class DrawingReader {
 public:
  DrawingReader(std::string_view source, std::string name) : rest_(source), name_(std::move(name)) {}

  Picture Read() {
    while (!rest_.empty()) {
      ++line_;
      words_ = std::istringstream(std::string(TakeLine(rest_)));
      std::string word;
      if (words_ >> word && word[0] != '#') Obey(word);
    }
    return picture_;
  }

 private:
  [[noreturn]] void Refuse(const std::string& reason) const {
    throw Failure(name_ + ", line " + std::to_string(line_) + ": " + reason + ".");
  }

  std::string Word() {
    std::string word;
    if (!(words_ >> word)) Refuse("something is missing at its end");
    return word;
  }

  double Number() {
    const std::string word = Word();
    if (word.find_first_not_of("+-.0123456789") != std::string::npos)
      Refuse("\"" + word + "\" is not a number");
    return ReadDouble(word);
  }

  Pixel Colour() {
    const std::string digits = Word();
    if (digits.size() != 8 || digits.find_first_not_of("0123456789abcdef") != std::string::npos)
      Refuse("\"" + digits + "\" is not a colour");
    const unsigned long value = std::stoul(digits, nullptr, 16);
    return {static_cast<std::uint8_t>(value >> 24 & 0xFF), static_cast<std::uint8_t>(value >> 16 & 0xFF),
            static_cast<std::uint8_t>(value >> 8 & 0xFF), static_cast<std::uint8_t>(value & 0xFF)};
  }

  Point Position() {
    const double x = Number();
    const double y = Number();
    return {origin_.x + x * scale_, origin_.y + y * scale_};
  }

  void Obey(const std::string& word) {
    if (word == "size") {
      const int width = static_cast<int>(Number());
      const int height = static_cast<int>(Number());
      picture_ = Picture(width, height, Colour());
    } else if (word == "colour") {
      colour_ = Colour();
    } else if (word == "pen") {
      pen_.width = Number();
      pen_.thickness = Number();
      pen_.angle = Number();
    } else if (word == "at") {
      origin_.x = Number();
      origin_.y = Number();
      scale_ = Number();
    } else if (word == "stroke") {
      StrokeLines(picture_, Path(), pen_, colour_);
    } else if (word == "fill") {
      FillArea(picture_, Path(), colour_);
    } else {
      Refuse("\"" + word + "\" is no command");
    }
  }

  Polylines Path() {
    Polylines lines;
    std::string step;
    while (words_ >> step) {
      if (step == "M")
        lines.push_back({Position()});
      else if (lines.empty())
        Refuse("the path does not begin with M");
      else
        AppendStep(lines.back(), step);
    }
    return lines;
  }

  void AppendStep(Polyline& line, const std::string& step) {
    if (step == "L") {
      line.push_back(Position());
    } else if (step == "C") {
      const Point a = Position();
      const Point b = Position();
      AppendCurve(line, line.back(), a, b, Position());
    } else if (step == "Z") {
      line.push_back(line.front());
    } else {
      Refuse("\"" + step + "\" is no step of a path");
    }
  }

  std::string_view rest_;
  std::string name_;
  int line_ = 0;
  std::istringstream words_;
  Picture picture_;
  Pixel colour_ = {0, 0, 0, 255};
  Pen pen_;
  Point origin_;
  double scale_ = 1;
};

}  // namespace

Picture BuildDrawing(std::string_view source, const std::string& name) {
  return DrawingReader(source, name).Read();
}

}  // namespace kelvane::pictures
