// The plain fuzzer: known inputs, changed at random, the same ones for the same seed. It needs no special
// compiler.
//
//   kelvane_fuzz [--seconds N | --rounds N] [--seed N] [READER...]   fuzzes, all readers if none is named
//   kelvane_fuzz --inputs FOLDER                                     writes the known inputs, for libFuzzer
//   kelvane_fuzz --file FILE READER                                  reads one input, to look into a failure
//
// An input that crashes the program or keeps it for more than ten seconds is written to crash-READER.

#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "fuzz/readers.h"

namespace kelvane::fuzz {

namespace {

constexpr unsigned kMostSeconds = 10;  // for one input
constexpr std::size_t kLongestInput = 200000;

std::string Input;
std::string CrashFile;

// Only what may be called in a signal handler.
void KeepInput(int signal) {
  const int file = open(CrashFile.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
  if (file >= 0 && write(file, Input.data(), Input.size()) >= 0) close(file);
  std::signal(signal, SIG_DFL);
  std::raise(signal);
}

class Mutator {
 public:
  Mutator(const std::vector<std::string>& seeds, unsigned seed) : seeds_(seeds), random_(seed) {}

  std::string Next() {
    std::string text = seeds_[Roll(seeds_.size())];
    // Large inputs are slow, and a part of one reaches as much.
    if (text.size() > 4000 && Roll(8) != 0) text = text.substr(Roll(text.size() - 3000), Roll(3000));
    for (std::size_t i = Roll(12); i > 0; --i) Change(text);
    if (text.size() > kLongestInput) text.resize(kLongestInput);
    return text;
  }

 private:
  std::size_t Roll(std::size_t sides) { return random_() % sides; }

  std::string Token() {
    static const char* const kTokens[] = {"1e38",
                                          "-1e38",
                                          "1e-45",
                                          "nan",
                                          "inf",
                                          "0x10",
                                          "99999999999999999999",
                                          "2E9223372036854775807",
                                          "-0",
                                          "65536",
                                          ".",
                                          "-",
                                          "(",
                                          ")",
                                          "\"",
                                          "\\",
                                          "<",
                                          ">",
                                          "{",
                                          "}",
                                          "\r\n",
                                          "\n",
                                          "\r",
                                          " ",
                                          "=",
                                          "/",
                                          "m",
                                          "lw",
                                          "rl",
                                          "rb",
                                          "stroke",
                                          "fill",
                                          "a",
                                          "s",
                                          "F0",
                                          "FC",
                                          "moveto",
                                          "rlineto",
                                          "rp",
                                          "ci",
                                          "st",
                                          "def",
                                          "/.notdef",
                                          "CharacterDefs",
                                          "<PAGE>",
                                          "<H1>",
                                          "</H1>",
                                          "\xF0",
                                          "\xF3",
                                          "\xEC",
                                          "\xFE",
                                          "\xC2\xB2",
                                          "\xF0\x9D\x91\x8E",
                                          "\xED\xA0\x80",
                                          "\xF4\x90\x80\x80",
                                          "\xE2\x88"};
    return kTokens[Roll(std::size(kTokens))];
  }

  void Change(std::string& text) {
    const std::size_t at = Roll(text.size() + 1);
    switch (Roll(9)) {
      case 0:
        if (at < text.size()) text[at] = static_cast<char>(Roll(256));
        break;
      case 1:
        text.erase(at, Roll(40));
        break;
      case 2:
        text.insert(at, text.substr(Roll(text.size() + 1), Roll(60)));
        break;
      case 3:
        text.insert(at, 1 + Roll(5), static_cast<char>(Roll(256)));
        break;
      case 4:
        text.resize(at);
        break;
      case 5: {
        const std::string& other = seeds_[Roll(seeds_.size())];
        text.insert(at, other.substr(Roll(other.size() + 1), Roll(200)));
        break;
      }
      case 6: {  // much of the same
        const std::string part = Token();
        for (std::size_t i = Roll(200); i > 0; --i) text.insert(std::min(at, text.size()), part);
        break;
      }
      case 7:
        if (at < text.size()) text[at] = static_cast<char>(text[at] ^ (1 << Roll(8)));
        break;
      default:
        text.insert(at, Token());
    }
  }

  const std::vector<std::string>& seeds_;
  std::mt19937_64 random_;
};

struct Wishes {
  double seconds = 0;
  long rounds = 1000;
  unsigned seed = 1;
};

void Run(const Reader& reader, std::string input) {
  Input = std::move(input);
  alarm(kMostSeconds);
  reader.run(Input);
}

void Fuzz(const Reader& reader, const Wishes& wishes) {
  using Clock = std::chrono::steady_clock;
  CrashFile = std::string("crash-") + reader.name;
  const Clock::time_point begin = Clock::now();
  const auto spent = [begin] { return std::chrono::duration<double>(Clock::now() - begin).count(); };
  Mutator mutator(reader.seeds, wishes.seed);
  for (const std::string& seed : reader.seeds) Run(reader, seed);
  long done = 0;
  while (wishes.seconds > 0 ? spent() < wishes.seconds : done < wishes.rounds) {
    Run(reader, mutator.Next());
    ++done;
  }
  alarm(0);
  std::printf("%-12s %9ld inputs %7.1f s\n", reader.name, done, spent());
  std::fflush(stdout);
}

void WriteInputs(const std::vector<Reader>& readers, const std::filesystem::path& folder) {
  for (const Reader& reader : readers) {
    std::filesystem::create_directories(folder / reader.name);
    for (std::size_t i = 0; i < reader.seeds.size(); ++i)
      std::ofstream(folder / reader.name / std::to_string(i), std::ios::binary) << reader.seeds[i];
  }
}

// What one input may take. The sanitizers want much address space for themselves.
void LimitMemory() {
#if !defined(__SANITIZE_ADDRESS__)
  constexpr rlim_t kMostMemory = rlim_t{2} << 30;
  const rlimit limit{kMostMemory, kMostMemory};
  setrlimit(RLIMIT_AS, &limit);
#endif
}

int Main(const std::vector<std::string>& arguments) {
  Wishes wishes;
  std::string inputs;
  std::string file;
  std::vector<std::string> names;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const bool option = arguments[i].starts_with("--");
    const std::string value = option && i + 1 < arguments.size() ? arguments[i + 1] : "";
    if (arguments[i] == "--seconds") wishes.seconds = std::stod(value);
    if (arguments[i] == "--rounds") wishes.rounds = std::stol(value);
    if (arguments[i] == "--seed") wishes.seed = static_cast<unsigned>(std::stoul(value));
    if (arguments[i] == "--inputs") inputs = value;
    if (arguments[i] == "--file") file = value;
    option ? void(++i) : names.push_back(arguments[i]);
  }
  const std::vector<Reader> readers = Readers();
  if (!inputs.empty()) return WriteInputs(readers, inputs), 0;
  LimitMemory();
  for (const int signal : {SIGSEGV, SIGABRT, SIGFPE, SIGBUS, SIGILL, SIGALRM}) std::signal(signal, KeepInput);
  std::size_t found = 0;
  for (const Reader& reader : readers) {
    if (!names.empty() && std::ranges::find(names, reader.name) == names.end()) continue;
    ++found;
    if (file.empty()) {
      Fuzz(reader, wishes);
    } else {
      std::ifstream stream(file, std::ios::binary);
      CrashFile = "/dev/null";
      Run(reader, {std::istreambuf_iterator<char>(stream), {}});
    }
  }
  if (found == (names.empty() ? readers.size() : names.size())) return 0;
  std::fprintf(stderr, "There is no such reader.\n");
  return 2;
}

}  // namespace

}  // namespace kelvane::fuzz

int main(int argc, char** argv) {
  return kelvane::fuzz::Main({argv + 1, argv + argc});
}
