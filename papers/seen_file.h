#pragma once

// What a page file held when this program last read or wrote it, by which it is seen that another program has
// changed it since.

#include <cstdint>
#include <string>
#include <string_view>

namespace kelvane {

struct SeenFile {
  std::string path;
  bool there = false;
  std::uint64_t size = 0;  // bytes
  std::uint64_t sum = 0;   // Checksum of the content, which may be too large to keep beside the page

  bool operator==(const SeenFile&) const = default;
};

SeenFile SeenWith(const std::string& path, std::string_view content);
SeenFile SeenMissing(const std::string& path);

// Reads the file as it is now. Throws Failure if it is there and cannot be read.
SeenFile LookAt(const std::string& path);

}  // namespace kelvane
