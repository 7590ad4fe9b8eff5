// The same readers for libFuzzer, a program for each: KELVANE_READER is its name.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "fuzz/readers.h"

namespace {

const kelvane::fuzz::Reader& TheReader() {
  static const kelvane::fuzz::Reader reader = [] {
    for (kelvane::fuzz::Reader& each : kelvane::fuzz::Readers())
      if (each.name == std::string_view(KELVANE_READER)) return each;
    std::abort();
  }();
  return reader;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  TheReader().run({reinterpret_cast<const char*>(bytes), size});
  return 0;
}
