#include "app/arguments.h"

#include <cctype>
#include <cstddef>
#include <filesystem>
#include <string_view>

#include "platform/failure.h"

namespace kelvane {
namespace {

[[noreturn]] void Refuse(const std::string& why) {
  throw Failure("kelvane: " + why + "; start it with one page file, or with nothing");
}

int HexDigit(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  const int letter = std::tolower(static_cast<unsigned char>(c));
  return letter >= 'a' && letter <= 'f' ? letter - 'a' + 10 : -1;
}

std::string WithoutPercents(std::string_view address) {
  std::string path;
  for (std::size_t i = 0; i < address.size(); ++i) {
    const bool hasDigits = address[i] == '%' && i + 2 < address.size();
    const int high = hasDigits ? HexDigit(address[i + 1]) : -1;
    const int low = hasDigits ? HexDigit(address[i + 2]) : -1;
    if (high < 0 || low < 0) {
      path += address[i];
      continue;
    }
    path += static_cast<char>(high * 16 + low);
    i += 2;
  }
  return path;
}

}  // namespace

void RefuseOptions(std::span<const char* const> arguments) {
  for (const std::string_view argument : arguments) {
    if (argument.starts_with("--")) Refuse("there is no option " + std::string(argument));
  }
}

std::string PageFileArgument(std::span<const char* const> arguments) {
  RefuseOptions(arguments);
  if (arguments.size() > 1) Refuse("there are too many arguments");
  if (arguments.empty()) return {};
  constexpr std::string_view kScheme = "file://";
  constexpr std::string_view kThisMachine = "localhost";
  std::string_view name = arguments[0];
  if (!name.starts_with(kScheme)) {
    // A relative name belongs to the folder that the program was started in.
    return name.empty() ? std::string() : std::filesystem::absolute(name).lexically_normal().string();
  }
  name.remove_prefix(kScheme.size());
  if (name.starts_with(kThisMachine)) name.remove_prefix(kThisMachine.size());
  if (!name.starts_with('/')) Refuse(std::string(arguments[0]) + " is not on this machine");
  return WithoutPercents(name);
}

}  // namespace kelvane
