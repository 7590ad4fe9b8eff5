#include "app/render.h"

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <filesystem>
#include <optional>
#include <vector>

#include "app/settings.h"
#include "app/startup.h"
#include "designer/character_files.h"
#include "document/fields.h"
#include "document/numbers.h"
#include "document/page.h"
#include "document/page_items.h"
#include "document/paper.h"
#include "output/page_list.h"
#include "output/page_output.h"
#include "output/pdf.h"
#include "output/pictures.h"
#include "output/postscript.h"
#include "output/svg.h"
#include "papers/paper_commands.h"
#include "platform/failure.h"
#include "platform/files.h"
#include "typography/metrics.h"
#include "typography/view.h"

namespace kelvane {
namespace {

constexpr char kHelp[] =
    R"(Usage: kelvane-render [OPTION]... FILE...
Renders pages of Kelvane as PDF, SVG, PNG or PostScript.

FILE is a page file, as Essay.001, or a paper, named without a number, as Essay.

  -o, --output FILE       where it goes; "-" is standard output, for one picture
                          at most. Several pages as SVG or PNG go to files with
                          -001, -002, ... behind the name. Without this option
                          the output lies beside FILE.
  -f, --format FORMAT     pdf, svg, png or ps; without it the ending of the output
                          tells, and pdf is made where there is none
  -p, --pages LIST        these pages of the paper that FILE belongs to: 1-3, 5
  -s, --size WxH          the paper's size in points, instead of the settings'
  -r, --resolution DPI    of PNG, 72 to 1200; 300 without it
  -t, --transparent       no white behind SVG and PNG
  -b, --bookmarks         bookmarks in PDF, from lines in the largest sizes
  -h, --help              this text
  -V, --version           the version

Exit code: 0 done, 1 something could not be read or written, 2 wrong use.
)";

enum class Format { Pdf, Svg, Png, PostScript };
constexpr const char* kEndings[] = {"pdf", "svg", "png", "ps"};

struct Options {
  std::vector<std::string> files;
  std::string output;
  std::optional<Format> format;
  std::optional<std::string> pages;
  std::optional<Point> size;
  int resolution = 300;
  bool transparent = false;
  bool bookmarks = false;
  bool help = false;
  bool version = false;
};

// Wrong use; the text says of what.
struct WrongUse {
  std::string what;
};

std::optional<Format> FormatNamed(std::string name) {
  for (char& c : name) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  for (std::size_t i = 0; i < std::size(kEndings); ++i) {
    if (name == kEndings[i]) return static_cast<Format>(i);
  }
  return std::nullopt;
}

Point SizeNamed(const std::string& text) {
  const std::size_t cross = text.find_first_of("xX");
  const auto width = NumberOf(text.substr(0, cross));
  const auto height = cross == text.npos ? std::nullopt : NumberOf(text.substr(cross + 1));
  constexpr float kMost = 14400;
  if (!width || !height || !(*width > 0 && *width <= kMost) || !(*height > 0 && *height <= kMost))
    throw WrongUse{"the size is written in points, as 595x842"};
  return {*width, *height};
}

int ResolutionNamed(const std::string& text) {
  const float number = NumberOf(text).value_or(0);
  if (!(number >= kLeastResolution && number <= kMostResolution) ||
      number != static_cast<float>(static_cast<int>(number)))
    throw WrongUse{"the resolution is a whole number from 72 to 1200"};
  return static_cast<int>(number);
}

// An option by its letter and its name; `take` gets what stands behind those that have a value.
struct Option {
  char letter;
  const char* name;
  bool hasValue;
  void (*take)(Options& options, const std::string& value);
};
constexpr Option kOptions[] = {
    {'o', "output", true,
     [](Options& o, const std::string& value) {
       if (value.empty()) throw WrongUse{"the output has a name"};
       o.output = value;
     }},
    {'f', "format", true,
     [](Options& o, const std::string& value) {
       o.format = FormatNamed(value);
       if (!o.format) throw WrongUse{"there is no format " + value};
     }},
    {'p', "pages", true,
     [](Options& o, const std::string& value) {
       if (!ReadPageList(value)) throw WrongUse{"pages are written as 1-3,5"};
       o.pages = value;
     }},
    {'s', "size", true, [](Options& o, const std::string& value) { o.size = SizeNamed(value); }},
    {'r', "resolution", true,
     [](Options& o, const std::string& value) { o.resolution = ResolutionNamed(value); }},
    {'t', "transparent", false, [](Options& o, const std::string&) { o.transparent = true; }},
    {'b', "bookmarks", false, [](Options& o, const std::string&) { o.bookmarks = true; }},
    {'h', "help", false, [](Options& o, const std::string&) { o.help = true; }},
    {'V', "version", false, [](Options& o, const std::string&) { o.version = true; }},
};

template <typename Is>
const Option& OptionThat(Is is, const std::string& written) {
  const auto* const found = std::ranges::find_if(kOptions, is);
  if (found == std::end(kOptions)) throw WrongUse{"there is no option " + written};
  return *found;
}

Options ReadOptions(std::span<const char* const> arguments) {
  Options options;
  std::size_t next = 0;
  const auto takeValue = [&](const std::string& written) -> std::string {
    if (next == arguments.size()) throw WrongUse{written + " wants a value"};
    return arguments[next++];
  };
  bool onlyFiles = false;
  while (next < arguments.size()) {
    const std::string word = arguments[next++];
    if (onlyFiles || word == "-" || !word.starts_with('-')) {
      options.files.push_back(word);
    } else if (word == "--") {
      onlyFiles = true;
    } else if (word.starts_with("--")) {
      const std::size_t equals = word.find('=');
      const std::string name = word.substr(2, equals == word.npos ? equals : equals - 2);
      const Option& option = OptionThat([&](const Option& o) { return o.name == name; }, "--" + name);
      if (!option.hasValue && equals != word.npos) throw WrongUse{"--" + name + " takes no value"};
      option.take(options, !option.hasValue      ? ""
                           : equals == word.npos ? takeValue(word)
                                                 : word.substr(equals + 1));
    } else {
      for (std::size_t i = 1; i < word.size(); ++i) {
        const std::string written = {'-', word[i]};
        const Option& option = OptionThat([&](const Option& o) { return o.letter == word[i]; }, written);
        if (!option.hasValue) {
          option.take(options, "");
          continue;
        }
        option.take(options, i + 1 < word.size() ? word.substr(i + 1) : takeValue(written));
        break;
      }
    }
  }
  return options;
}

// A page file ends in a dot and three digits; everything else is the name of a paper.
bool IsPageFile(const std::string& file) {
  const std::size_t dot = file.rfind('.');
  return dot != file.npos && file.size() == dot + 4 &&
         std::all_of(file.end() - 3, file.end(), [](char c) { return c >= '0' && c <= '9'; });
}

// The whole path, as the program has it, of a file that the person named.
std::string PathOf(const std::string& machineName) {
  std::error_code error;
  const std::filesystem::path path = std::filesystem::absolute(machineName, error);
  if (error) throw Failure("Cannot find the file \"" + machineName + "\": " + error.message() + ".");
  return BackslashPath(path.lexically_normal().string());
}

class Renderer {
 public:
  Renderer(const Options& options, const RenderStreams& streams) : options_(options), streams_(streams) {
    const std::size_t dot = options.output.rfind('.');
    format_ = options.format.value_or(
        dot == std::string::npos ? Format::Pdf
                                 : FormatNamed(options.output.substr(dot + 1)).value_or(Format::Pdf));
    if (format_ == Format::Png) streams.useTypefaces();
  }

  void RenderFile(const std::string& machineName) {
    const std::string file = PathOf(machineName);
    const bool page = IsPageFile(file);
    paper_ = page ? file : file + ".001";
    pages_.clear();
    if (page && !options_.pages) {
      pages_ = {static_cast<int>(ReadSingle(file.substr(file.size() - 3)))};
    } else {
      const std::vector<int> all = PagesOf(paper_);
      if (all.empty()) throw Failure("Cannot render " + machineName + ": it is no page file and no paper.");
      ChosenPages chosen = ChoosePages(all, options_.pages.value_or(""));
      if (chosen.pages.empty())
        throw Failure("Cannot render " + machineName + ": it has none of these pages.");
      pages_ = std::move(chosen.pages);
    }
    const bool apart = format_ == Format::Svg || format_ == Format::Png;
    if (apart && pages_.size() > 1 && options_.output == "-")
      throw WrongUse{"standard output takes one picture; name its page with --pages"};
    if (!apart)
      return Write(OutputFile(page && options_.output.empty()), [&](const auto& take) { MakeWhole(take); });
    for (const int number : pages_) {
      const bool numbered = pages_.size() > 1 || options_.output.empty();
      Write(OutputFile(numbered, number), [&](const auto& take) { take(PictureOf(number)); });
    }
  }

 private:
  using Take = std::function<void(std::string_view)>;

  std::string FileOf(int number) const { return PageFileName(paper_, number); }

  static std::string Digits(int number) { return std::to_string(1000 + number).substr(1); }

  // The name of the output; with the number of a page before its ending where it takes one.
  std::string OutputFile(bool numbered, int number = 0) const {
    if (options_.output == "-") return {};
    if (number == 0) number = pages_.front();
    std::string name = ChangeExtension(paper_, kEndings[static_cast<int>(format_)]);
    if (!options_.output.empty()) name = PathOf(options_.output);
    if (!numbered) return name;
    const std::size_t dot = name.rfind('.');
    const std::size_t end = dot == name.npos || dot < name.rfind('\\') ? name.size() : dot;
    return name.insert(end, "-" + Digits(number));
  }

  template <typename Make>
  void Write(const std::string& path, Make make) {
    if (path.empty()) return make(streams_.out);
    KeepPages(path, paper_, pages_);
    SafeFile file(path);
    make([&](std::string_view bytes) { file.Append(bytes); });
    file.PutInPlace();
  }

  PageItems ItemsOf(int number, std::string& content) const {
    content = TheFiles->ReadWhole(FileOf(number));
    return PageItems(PageOfContent(content, FileOf(number)));
  }

  void MakeWhole(const Take& take) {
    if (format_ == Format::PostScript) {
      std::vector<std::string> files;
      for (const int number : pages_) files.push_back(FileOf(number));
      return MakeJob(take, files);
    }
    PdfDocument document(take, {FileTitleOf(paper_), options_.bookmarks});
    for (const int number : pages_) {
      std::string content;
      const PageItems items = ItemsOf(number, content);
      document.AddPage(items, WholeSheet(), number, content);
    }
    Warn(document.Finish());
  }

  std::string PictureOf(int number) {
    std::string content;
    const PageItems items = ItemsOf(number, content);
    const Box sheet = WholeSheet();
    std::string missing;
    std::string picture = format_ == Format::Png
                              ? PngOf(items, sheet, options_.resolution, options_.transparent, &missing)
                              : SvgOf(items, sheet, !options_.transparent, &missing);
    Warn(missing);
    return picture;
  }

  void Warn(const std::string& text) const {
    if (!text.empty()) streams_.error("kelvane-render: " + text + "\n");
  }

  const Options& options_;
  const RenderStreams& streams_;
  Format format_ = Format::Pdf;
  std::string paper_;  // one of its page files
  std::vector<int> pages_;
};

void LoadProgramFiles(const std::string& programFolder, const Options& options) {
  ProgramFolder = ResolveProgramFolder(programFolder);
  ResetProgram();
  ReadSettings(ProgramFolder + "QRX.DAT");
  if (options.size) {
    PaperWidth = options.size->x;
    PaperHeight = options.size->y;
  }
  LoadCharacterDefs();
  LoadWidthTables();
}

int RenderAll(const Options& options, const std::string& programFolder, const RenderStreams& streams) {
  int code = kRendered;
  const auto attempt = [&](const auto& act) {
    try {
      act();
    } catch (const Failure& failure) {
      streams.error("kelvane-render: " + std::string(failure.what()) + "\n");
      code = kNotRendered;
    }
  };
  attempt([&] { LoadProgramFiles(programFolder, options); });
  if (code != kRendered) return code;
  Renderer renderer(options, streams);
  for (const std::string& file : options.files) attempt([&] { renderer.RenderFile(file); });
  return code;
}

}  // namespace

int Render(std::span<const char* const> arguments, const std::string& programFolder,
           const RenderStreams& streams) {
  try {
    const Options options = ReadOptions(arguments);
    if (options.help || options.version) {
      streams.out(options.help ? std::string(kHelp) : std::string(kProgramTitle) + "\n");
      return kRendered;
    }
    if (options.files.empty()) throw WrongUse{"no page file or paper is named"};
    if (options.files.size() > 1 && !options.output.empty())
      throw WrongUse{"one output cannot take several files; name the paper and its pages"};
    return RenderAll(options, programFolder, streams);
  } catch (const WrongUse& wrong) {
    streams.error("kelvane-render: " + wrong.what + "\nTry kelvane-render --help.\n");
    return kWrongOptions;
  }
}

}  // namespace kelvane
