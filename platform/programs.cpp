#include "platform/programs.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <system_error>

#include "platform/failure.h"

extern char** environ;

namespace kelvane {
namespace {

constexpr std::size_t kMostOutput = 65536;
constexpr int kSignalled = 128;

[[noreturn]] void Fail(const std::string& program, int error) {
  throw Failure("Cannot run the program " + program + ": " + std::generic_category().message(error) + ".");
}

// A nameless file. Unlike a pipe it takes whatever is written without anybody reading it, so neither side can
// keep the other waiting.
int NamelessFile(const std::string& program) {
  const int file = memfd_create("kelvane", MFD_CLOEXEC);
  if (file < 0) Fail(program, errno);
  return file;
}

// Programs whose owners are gone. They are looked after when they end, or the system would keep them listed.
std::vector<pid_t>& LeftAlone() {
  static std::vector<pid_t> processes;
  return processes;
}

void ReapLeftAlone() {
  std::erase_if(LeftAlone(), [](pid_t process) { return waitpid(process, nullptr, WNOHANG) != 0; });
}

// The file actions and attributes of a start, freed on leaving.
struct Start {
  posix_spawn_file_actions_t actions = {};
  posix_spawnattr_t attributes = {};
  Start() {
    posix_spawn_file_actions_init(&actions);
    posix_spawnattr_init(&attributes);
  }
  ~Start() {
    posix_spawn_file_actions_destroy(&actions);
    posix_spawnattr_destroy(&attributes);
  }
  Start(const Start&) = delete;
  Start& operator=(const Start&) = delete;
};

}  // namespace

bool CanRun(const std::string& path) {
  struct stat about = {};
  return stat(path.c_str(), &about) == 0 && S_ISREG(about.st_mode) && access(path.c_str(), X_OK) == 0;
}

std::string FindProgram(const std::string& name) {
  const char* path = std::getenv("PATH");
  std::string_view folders = path != nullptr ? path : "";
  while (!folders.empty()) {
    const std::size_t end = std::min(folders.find(':'), folders.size());
    const std::string candidate = std::string(folders.substr(0, end)) + "/" + name;
    // A folder that is not absolute would mean another program in each folder.
    if (candidate.front() == '/' && CanRun(candidate)) return candidate;
    folders.remove_prefix(std::min(end + 1, folders.size()));
  }
  return {};
}

bool IsOneLine(std::string_view text) {
  return std::ranges::none_of(text, [](char character) {
    const auto code = static_cast<unsigned char>(character);
    return code < 32 || code == 127;
  });
}

RunningProgram::RunningProgram(const std::vector<std::string>& arguments, std::string_view input) {
  ReapLeftAlone();
  const std::string& name = arguments.front();
  const std::string path = name.find('/') == std::string::npos ? FindProgram(name) : name;
  if (path.empty()) Fail(name, ENOENT);
  const int in = NamelessFile(name);
  output = NamelessFile(name);
  int error = 0;
  while (!input.empty() && error == 0) {
    const ssize_t written = write(in, input.data(), input.size());
    if (written < 0 && errno != EINTR) error = errno;
    if (written > 0) input.remove_prefix(static_cast<std::size_t>(written));
  }
  lseek(in, 0, SEEK_SET);

  std::vector<std::string> texts = arguments;
  std::vector<char*> pointers;
  for (std::string& text : texts) pointers.push_back(text.data());
  pointers.push_back(nullptr);
  Start start;
  posix_spawn_file_actions_adddup2(&start.actions, in, STDIN_FILENO);
  posix_spawn_file_actions_adddup2(&start.actions, output, STDOUT_FILENO);
  posix_spawn_file_actions_adddup2(&start.actions, output, STDERR_FILENO);
  // A group of its own, so that what it starts can be ended with it and a key at a terminal ends only the
  // editor.
  posix_spawnattr_setpgroup(&start.attributes, 0);
  posix_spawnattr_setflags(&start.attributes, POSIX_SPAWN_SETPGROUP);
  if (error == 0)
    error = posix_spawn(&process, path.c_str(), &start.actions, &start.attributes, pointers.data(), environ);
  close(in);
  if (error != 0) {
    close(output);
    Fail(name, error);
  }
}

RunningProgram::~RunningProgram() {
  close(output);
  if (!Ended()) LeftAlone().push_back(process);
}

bool RunningProgram::Ended() {
  if (ended) return true;
  int how = 0;
  const pid_t answer = waitpid(process, &how, WNOHANG);
  if (answer == 0 || (answer < 0 && errno == EINTR)) return false;
  ended = true;
  if (answer < 0) {
    status = kSignalled;  // somebody else has waited for it
  } else {
    status = WIFEXITED(how) ? WEXITSTATUS(how) : kSignalled + WTERMSIG(how);
  }
  return true;
}

std::string RunningProgram::Output() const {
  std::string text(kMostOutput, '\0');
  const ssize_t size = pread(output, text.data(), text.size(), 0);
  text.resize(size > 0 ? static_cast<std::size_t>(size) : 0);
  return text;
}

void RunningProgram::Stop() {
  if (!Ended()) kill(-process, SIGTERM);
}

}  // namespace kelvane
