// Wires the editor to its windows and starts it.

#include <QApplication>
#include <csignal>
#include <cstddef>
#include <cstdio>
#include <filesystem>
#include <future>
#include <span>

#include "app/arguments.h"
#include "app/startup.h"
#include "papers/journal.h"
#include "platform/clipboard.h"
#include "platform/controls.h"
#include "platform/failure.h"
#include "platform/files.h"
#include "platform/handlers.h"
#include "platform/memory.h"
#include "platform/outlines.h"
#include "platform/printer.h"
#include "platform/qt/qt_clipboard.h"
#include "platform/qt/qt_dialogs.h"
#include "platform/qt/qt_endings.h"
#include "platform/qt/qt_outlines.h"
#include "platform/qt/qt_printer.h"
#include "platform/qt/qt_start.h"
#include "platform/qt/qt_toolkit.h"

namespace {

constexpr int kWrongUse = 2;

std::span<const char* const> Arguments(int argc, char** argv) {
  return std::span<const char* const>(argv, static_cast<std::size_t>(argc)).subspan(argc > 0 ? 1 : 0);
}

int Run(int argc, char** argv) {
  // Before Qt, which wants a screen and knows options of its own.
  kelvane::RefuseOptions(Arguments(argc, argv));
  kelvane::LeaveMissingSessionBus();
  std::future<void> fontSystem = kelvane::ReadFontSystem();
  QApplication application(argc, argv);
  const std::future<void> fontList = kelvane::ListFonts(fontSystem);
  kelvane::UseStyleWithoutPictures();
  const std::string pageFile = kelvane::PageFileArgument(Arguments(argc, argv));
  QApplication::setOrganizationName("Kelvane");
  QApplication::setApplicationName("Kelvane");
  QApplication::setQuitOnLastWindowClosed(false);
  kelvane::QtToolkit toolkit;
  kelvane::QtDialogs dialogs;
  kelvane::QtClipboard clipboard;
  kelvane::QtPrinter printer;
  kelvane::TheToolkit = &toolkit;
  kelvane::TheDialogs = &dialogs;
  kelvane::TheClipboard = &clipboard;
  kelvane::ThePrinter = &printer;

  kelvane::ScreenOutline = kelvane::QtOutline;

  // Otherwise it would be read twice, since nothing tells the font system that it is being read already.
  fontSystem.wait();
  bool started = false;
  kelvane::RunHandler([&] {
    // By its bytes, since its name may be no text.
    const std::filesystem::path program = std::filesystem::canonical("/proc/self/exe");
    const std::string folder = kelvane::BackslashPath(program.parent_path().string());
    kelvane::StateFolder = kelvane::FindStateFolder();
    started = kelvane::StartUp(folder);
  });
  if (!started) return 1;
  std::string page;
  if (!pageFile.empty()) kelvane::RunHandler([&] { page = kelvane::BackslashPath(pageFile); });
  kelvane::WatchForEndings(application, kelvane::FlushJournal);
  kelvane::ShowEditor(page);
  return QCoreApplication::exec();
}

}  // namespace

int main(int argc, char** argv) {
  kelvane::KeepLargeBlocksApart();
  // A file that would grow too large then fails to be written with a message, instead of ending the program.
  std::signal(SIGXFSZ, SIG_IGN);
  try {
    return Run(argc, argv);
  } catch (const kelvane::Failure& failure) {
    std::fprintf(stderr, "%s\n", failure.what());
    return kWrongUse;
  }
}
