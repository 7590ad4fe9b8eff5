#include "papers/seen_file.h"

#include "platform/checksum.h"
#include "platform/files.h"

namespace kelvane {

SeenFile SeenWith(const std::string& path, std::string_view content) {
  return {path, true, content.size(), Checksum(content)};
}

SeenFile SeenMissing(const std::string& path) {
  return {path, false, 0, 0};
}

SeenFile LookAt(const std::string& path) {
  return TheFiles->Exists(path) ? SeenWith(path, TheFiles->ReadWhole(path)) : SeenMissing(path);
}

}  // namespace kelvane
