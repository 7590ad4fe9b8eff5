#pragma once

// The program kelvane-render: pages and papers as documents and pictures, from a script or a build, without
// windows.

#include <functional>
#include <span>
#include <string>
#include <string_view>

namespace kelvane {

// Where it speaks to whoever started it.
struct RenderStreams {
  std::function<void(std::string_view)> out;
  std::function<void(std::string_view)> error;
  // Readies what pictures of points and outlines of typefaces need; called before they are made.
  std::function<void()> useTypefaces;
};

inline constexpr int kRendered = 0;
inline constexpr int kNotRendered = 1;
inline constexpr int kWrongOptions = 2;

// Does what the arguments say. Files are named as the machine names them. Returns the exit code.
int Render(std::span<const char* const> arguments, const std::string& programFolder,
           const RenderStreams& streams);

}  // namespace kelvane
