#include "output/pdf_file.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "document/numbers.h"
#include "platform/characters.h"
#include "platform/compression.h"

namespace kelvane {
namespace {

// Beyond any sheet; viewers compute in single precision.
constexpr double kFarAway = 1e6;
constexpr int kDecimals = 3;

std::string Hex(std::uint64_t value, int digits) {
  std::string text;
  for (int shift = 4 * (digits - 1); shift >= 0; shift -= 4) text += "0123456789ABCDEF"[value >> shift & 15];
  return text;
}

std::string Padded(std::uint64_t value, std::size_t digits) {
  const std::string text = std::to_string(value);
  return std::string(digits - std::min(digits, text.size()), '0') + text;
}

}  // namespace

std::string PdfNumber(double value) {
  return FormatUpTo(std::clamp(value, -kFarAway, kFarAway), kDecimals);
}

std::string PdfText(std::string_view utf8) {
  std::string text = "<FEFF";
  for (const char32_t character : ReadUtf8(utf8)) {
    if (character < 0x10000) {
      text += Hex(character, 4);
    } else {
      text += Hex(0xD800 + ((character - 0x10000) >> 10), 4) + Hex(0xDC00 + (character & 0x3FF), 4);
    }
  }
  return text + ">";
}

std::string PdfReference(int object) {
  return std::to_string(object) + " 0 R";
}

void AppendPdfPath(std::string& content, const Path& path, const std::function<Point(Point)>& place) {
  const Point* point = path.points.data();
  const auto put = [&] {
    const auto [x, y] = place(*point++);
    content += PdfNumber(x) + " " + PdfNumber(y) + " ";
  };
  for (const Path::Step step : path.steps) {
    put();
    if (step == Path::Step::Curve) {
      put();
      put();
    }
    content += step == Path::Step::Move ? "m\n" : step == Path::Step::Line ? "l\n" : "c\n";
  }
}

PdfFile::PdfFile(std::function<void(std::string_view)> take)
    : take_(std::move(take)), places_(1), hash_{0xCBF29CE484222325U, 0x84222325CBF29CE4U} {
  // The bytes of the second line tell programs that copy files that this is no text.
  Put("%PDF-1.7\n%\xC2\xB5\xC2\xB6\n");
}

int PdfFile::Reserve() {
  places_.push_back(0);
  return static_cast<int>(places_.size()) - 1;
}

void PdfFile::Write(int object, std::string_view body) {
  places_[static_cast<std::size_t>(object)] = size_;
  Put(std::to_string(object) + " 0 obj\n" + std::string(body) + "\nendobj\n");
}

int PdfFile::Write(std::string_view body) {
  const int object = Reserve();
  Write(object, body);
  return object;
}

void PdfFile::WriteStream(int object, std::string_view entries, std::string_view content) {
  const std::string packed = Deflate(content);
  Write(object, "<<" + std::string(entries) + "/Filter/FlateDecode/Length " + std::to_string(packed.size()) +
                    ">>\nstream\n" + packed + "\nendstream");
}

int PdfFile::WriteStream(std::string_view entries, std::string_view content) {
  const int object = Reserve();
  WriteStream(object, entries, content);
  return object;
}

void PdfFile::Finish(int catalog, int information) {
  const std::uint64_t table = size_;
  Put("xref\n0 " + std::to_string(places_.size()) + "\n0000000000 65535 f \n");
  for (std::size_t i = 1; i < places_.size(); ++i) Put(Padded(places_[i], 10) + " 00000 n \n");
  const std::string id = "<" + Hex(hash_[0], 16) + Hex(hash_[1], 16) + ">";
  Put("trailer\n<</Size " + std::to_string(places_.size()) + "/Root " + PdfReference(catalog) + "/Info " +
      PdfReference(information) + "/ID[" + id + id + "]>>\nstartxref\n" + std::to_string(table) +
      "\n%%EOF\n");
}

void PdfFile::Put(std::string_view bytes) {
  constexpr std::uint64_t kPrime = 0x100000001B3U;
  for (const char byte : bytes) {
    for (std::uint64_t& hash : hash_) hash = (hash ^ static_cast<unsigned char>(byte)) * kPrime;
  }
  size_ += bytes.size();
  take_(bytes);
}

}  // namespace kelvane
