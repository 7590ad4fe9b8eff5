#pragma once

// A checksum that is the same on every machine, since it is written into files: FNV-1a, 64 bits. A single
// byte that differs always shows.

#include <cstdint>
#include <string_view>

namespace kelvane {

inline std::uint64_t Checksum(std::string_view bytes) {
  constexpr std::uint64_t kStart = 0xCBF29CE484222325;
  constexpr std::uint64_t kPrime = 0x100000001B3;
  std::uint64_t sum = kStart;
  for (const char byte : bytes) sum = (sum ^ static_cast<unsigned char>(byte)) * kPrime;
  return sum;
}

}  // namespace kelvane
