#pragma once

// Bytes packed as zlib packs them ("Flate" in documents).

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace kelvane {

std::string Deflate(std::string_view bytes);

// Nothing if the bytes are not packed so, or would become more than `most`.
std::optional<std::string> Inflate(std::string_view packed, std::size_t most);

}  // namespace kelvane
