#pragma once

// Where the maker is reached.

namespace kelvane {

inline constexpr char kMakerAddress[] = "comments@kelvane.example";
inline constexpr char kMakerPage[] = "https://www.kelvane.example/";

}  // namespace kelvane
