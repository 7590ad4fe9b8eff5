#include "platform/compression.h"

#include <zlib.h>

#include <array>
#include <new>

namespace kelvane {
namespace {

// zlib reads through a pointer that it does not declare constant.
Bytef* InputOf(std::string_view bytes) {
  return reinterpret_cast<Bytef*>(const_cast<char*>(bytes.data()));
}

}  // namespace

std::string Deflate(std::string_view bytes) {
  uLongf size = compressBound(bytes.size());
  std::string packed(size, '\0');
  if (compress(reinterpret_cast<Bytef*>(packed.data()), &size, InputOf(bytes), bytes.size()) != Z_OK)
    throw std::bad_alloc();
  packed.resize(size);
  return packed;
}

std::optional<std::string> Inflate(std::string_view packed, std::size_t most) {
  z_stream stream{};
  if (inflateInit(&stream) != Z_OK) throw std::bad_alloc();
  stream.next_in = InputOf(packed);
  stream.avail_in = static_cast<uInt>(packed.size());
  std::string bytes;
  std::array<char, 65536> piece;
  int result = Z_OK;
  while (result == Z_OK && bytes.size() <= most) {
    stream.next_out = reinterpret_cast<Bytef*>(piece.data());
    stream.avail_out = piece.size();
    result = inflate(&stream, Z_NO_FLUSH);
    bytes.append(piece.data(), piece.size() - stream.avail_out);
  }
  inflateEnd(&stream);
  if (result != Z_STREAM_END || bytes.size() > most) return std::nullopt;
  return bytes;
}

}  // namespace kelvane
