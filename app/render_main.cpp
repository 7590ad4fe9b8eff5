// kelvane-render: wires the outputs to the machine's files and typefaces.

#include <csignal>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <span>

#include "app/render.h"
#include "platform/controls.h"
#include "platform/failure.h"
#include "platform/files.h"
#include "platform/outlines.h"
#include "platform/qt/qt_offscreen.h"
#include "platform/qt/qt_outlines.h"
#include "platform/qt/qt_toolkit.h"

namespace {

void Put(std::FILE* stream, std::string_view text) {
  if (std::fwrite(text.data(), 1, text.size(), stream) != text.size())
    throw kelvane::Failure("Cannot write to standard output.");
}

int Run(int argc, char** argv) {
  kelvane::QtToolkit toolkit;
  kelvane::TheToolkit = &toolkit;
  kelvane::ScreenOutline = [](const kelvane::ScreenFace& face, unsigned char code) {
    kelvane::UseTypefacesOffscreen();
    return kelvane::QtOutline(face, code);
  };
  const std::filesystem::path program = std::filesystem::canonical("/proc/self/exe");
  kelvane::StateFolder = kelvane::FindStateFolder();
  const std::span<const char* const> arguments(argv, static_cast<std::size_t>(argc));
  const int code = kelvane::Render(
      arguments.subspan(argc > 0 ? 1 : 0), kelvane::BackslashPath(program.parent_path().string()),
      {[](std::string_view text) { Put(stdout, text); }, [](std::string_view text) { Put(stderr, text); },
       kelvane::UseTypefacesOffscreen});
  if (std::fflush(stdout) != 0) throw kelvane::Failure("Cannot write to standard output.");
  return code;
}

}  // namespace

int main(int argc, char** argv) {
  // A file or a pipe that takes no more then fails to be written, with a message.
  std::signal(SIGXFSZ, SIG_IGN);
  std::signal(SIGPIPE, SIG_IGN);
  try {
    return Run(argc, argv);
  } catch (const kelvane::Failure& failure) {
    std::fprintf(stderr, "kelvane-render: %s\n", failure.what());
    return kelvane::kNotRendered;
  }
}
