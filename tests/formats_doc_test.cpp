// Every example of docs/formats.md, run through the program's own readers and writers. The document describes
// the notation of its blocks.

#include <cctype>
#include <functional>
#include <map>
#include <sstream>

#include "app/settings.h"
#include "app/startup.h"
#include "designer/character_files.h"
#include "document/fields.h"
#include "document/lines.h"
#include "document/numbers.h"
#include "document/page.h"
#include "document/paper.h"
#include "editing/cursor.h"
#include "help/help_files.h"
#include "macros/macros.h"
#include "output/plain_text.h"
#include "output/postscript.h"
#include "tests/support/program_test.h"
#include "typography/glyph_shapes.h"
#include "typography/item_boxes.h"
#include "typography/metrics.h"
#include "typography/renderer.h"
#include "typography/typefaces.h"
#include "typography/view.h"

namespace kelvane {
namespace {

const std::string kSourceFolder = BackslashPath(KELVANE_SOURCE_DIR) + "\\";
const std::string kPageFile = "\\Papers\\P.001";
constexpr std::string_view kNoLineEnd = "{no line end}";
constexpr std::size_t kLongBlanks = 20;  // from here on blanks are written by their number
constexpr int kSavedCode = 65;

struct Block {
  std::string name;
  std::string content;
  int line = 0;  // of the document
};

std::vector<Block> ReadBlocks() {
  const std::string document = DiskFiles().ReadWhole(kSourceFolder + "docs\\formats.md");
  std::vector<Block> blocks;
  bool inside = false;
  int lineNumber = 0;
  for (std::string_view rest = document; !rest.empty();) {
    const std::string_view line = TakeLine(rest);
    ++lineNumber;
    if (line.starts_with("```")) {
      if (!inside) blocks.push_back({std::string(line.substr(3)), {}, lineNumber});
      inside = !inside;
    } else if (inside) {
      blocks.back().content.append(line).append("\r\n");
    }
  }
  EXPECT_FALSE(inside) << "The last block of the document does not end";
  return blocks;
}

// The number at `position`, which moves behind it; -1 if there is none.
int TakeNumber(std::string_view text, std::size_t& position) {
  int number = -1;
  for (; position < text.size() && std::isdigit(static_cast<unsigned char>(text[position])); ++position)
    number = (number < 0 ? 0 : number) * 10 + (text[position] - '0');
  return number;
}

// The bytes that a block stands for.
std::string Decode(std::string_view block) {
  std::string bytes;
  for (std::size_t i = 0; i < block.size();) {
    std::size_t position = i + 1;
    const int code = block[i] == '{' ? TakeNumber(block, position) : -1;
    int count = 1;
    if (code >= 0 && position < block.size() && block[position] == '*') count = TakeNumber(block, ++position);
    if (code >= 0 && count >= 0 && position < block.size() && block[position] == '}') {
      bytes.append(static_cast<std::size_t>(count), static_cast<char>(code));
      i = position + 1;
    } else {
      bytes += block[i++];
    }
  }
  const std::size_t mark = bytes.rfind(kNoLineEnd);
  return mark == std::string::npos ? bytes : bytes.substr(0, mark);
}

// Bytes in the notation of the blocks, in the one form that makes them comparable.
std::string Encode(std::string_view bytes) {
  std::string text;
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    const auto code = static_cast<unsigned char>(bytes[i]);
    const std::size_t blanks = std::min(bytes.find_first_not_of(' ', i), bytes.size()) - i;
    if (blanks >= kLongBlanks) {
      text += "{32*" + std::to_string(blanks) + "}";
      i += blanks - 1;
    } else if (bytes.substr(i, 2) == "\r\n") {
      text += '\n';
      ++i;
    } else if (code < 32 || code > 126) {
      text += '{' + std::to_string(code) + '}';
    } else {
      text += bytes[i];
    }
  }
  return text.empty() || text.back() == '\n' ? text : text.append(kNoLineEnd).append("\n");
}

std::string At(Point point) {
  return FormatSingle(point.x) + ", " + FormatSingle(point.y);
}

std::string FirstLine(std::string_view content) {
  return std::string(TakeLine(content));
}

std::vector<std::string> LinesOf(std::string_view content) {
  std::vector<std::string> lines;
  while (!content.empty()) lines.emplace_back(TakeLine(content));
  return lines;
}

class FormatsDocument : public ProgramTest {
 protected:
  std::string& File(const std::string& name) { return files.contents[ProgramFolder + name]; }

  void ReadAsPage(const std::string& content) {
    files.contents[kPageFile] = content;
    ReadPage(kPageFile);
  }

  std::string PageEntries(const std::string& content) {
    ReadAsPage(content);
    std::string result;
    for (const std::string& line : LinesOf(PageText)) {
      TextEntry entry;
      if (!ParseTextEntry(line, entry)) {
        result += "not an entry: " + line + "\r\n";
        continue;
      }
      result += "x " + FormatSingle(entry.x) + ", y " + FormatSingle(entry.y) + ", size " +
                FormatSingle(entry.size) + ", typeface " + std::to_string(entry.font) + ", anchor " +
                std::to_string(entry.anchor);
      if (entry.justified) result += ", amount " + FormatSingle(entry.amount);
      result += ": " + std::string(entry.text) + "\r\n";
    }
    return result;
  }

  // Gives every typeface the width file that `bytesOf` its name returns.
  template <typename BytesOf>
  void LoadWidths(BytesOf bytesOf) {
    for (const TypefaceRecord& face : TypefaceTable) {
      if (!face.Name.empty()) File(face.Name + ".WT") = bytesOf(face.Name);
    }
    LoadWidthTables();
  }

  std::string PageWidths(const std::string& content) {
    ReadAsPage(content);
    LoadWidths([](const std::string& name) {
      return DiskFiles().ReadWhole(kSourceFolder + "data\\" + name + ".WT");
    });
    std::string result;
    for (const std::string& line : LinesOf(PageText)) {
      TextEntry entry;
      EXPECT_TRUE(ParseTextEntry(line, entry));
      result += FormatFixed(MeasureRun(entry.text, entry.font, entry.size), 2, true) + "\r\n";
    }
    return result;
  }

  std::string WidthTableRead(const std::string& content) {
    std::string bytes;
    std::istringstream hex(content);
    for (unsigned byte = 0; hex >> std::hex >> byte;) bytes += static_cast<char>(byte);
    LoadWidths([&](const std::string&) { return bytes; });
    std::string result = "unit " + FormatSingle(TypefaceTable[0].WidthUnit) + "\r\n";
    for (const int code : {1, 2, 3}) {
      result += "code " + std::to_string(code) + ": width " +
                FormatSingle(TypefaceTable[0].Widths[static_cast<std::size_t>(code)]) + ", advance " +
                FormatSingle(Advance(code, 0, 10)) + " at 10 points\r\n";
    }
    return result;
  }

  // The ink boxes of typeface 0 at 100 points, on the page with y downwards.
  std::string InkRead(const std::string& content) {
    std::istringstream hex(content);
    std::string& bytes = File("INK.TAB");
    for (unsigned byte = 0; hex >> std::hex >> byte;) bytes += static_cast<char>(byte);
    LoadInkBoxes();
    std::string result;
    for (std::size_t code = 0; code * 8 < bytes.size(); ++code) {
      const Box ink = InkBoxOf(std::string(1, static_cast<char>(code)), 0, 100, 3, {});
      result += "code " + std::to_string(code) + ": " +
                (ink.right == ink.left ? "no ink"
                                       : At({ink.left, ink.top}) + " to " + At({ink.right, ink.bottom})) +
                "\r\n";
    }
    return result;
  }

  std::string LeanRead(const std::string& content) {
    std::istringstream hex(content);
    std::string& bytes = File("LEAN.TAB");
    for (unsigned byte = 0; hex >> std::hex >> byte;) bytes += static_cast<char>(byte);
    LoadLeans();
    std::string result;
    for (std::size_t code = 0; code < TypefaceTable[0].Leans.size(); ++code) {
      const Lean& lean = TypefaceTable[0].Leans[code];
      result += "code " + std::to_string(code) + ": correction " + FormatSingle(lean.correction) +
                ", accent " + FormatSingle(lean.accent) + "\r\n";
    }
    return result;
  }

  std::string PageRefused(const std::string& content) {
    std::string message = FailureOf([&] { ReadAsPage(content); });
    EXPECT_NE(message.find(MachinePath(kPageFile)), std::string::npos) << message;
    return ReplaceAll(message, MachinePath(kPageFile), "PAGE") + "\r\n";
  }

  std::string SettingsRead(const std::string& content) {
    File("QRX.DAT") = content;
    ReadSettings(ProgramFolder + "QRX.DAT");
    std::vector<std::pair<const char*, float>> values = {
        {"PAPERWIDTH", PaperWidth}, {"PAPERHEIGHT", PaperHeight}, {"STARTX", STARTX},  {"STARTY", STARTY},
        {"SCALE", SCALE},           {"GRIDX", GridStepH},         {"GRIDY", GridStepV}};
    for (int i = 0; i < kGuides && GuideX[i] != 0; ++i) values.emplace_back("GUIDEX", GuideX[i]);
    for (int i = 0; i < kGuides && GuideY[i] != 0; ++i) values.emplace_back("GUIDEY", GuideY[i]);
    values.insert(values.end(), {{"FONTNUMBER", BaseFont},
                                 {"FONTSIZE", FontSize},
                                 {"CURSORMODE", CursorMode},
                                 {"CURSORX", CursorX},
                                 {"CURSORY", CursorY},
                                 {"FORMLEFT", FormPlace.left},
                                 {"FORMTOP", FormPlace.top},
                                 {"FORMWIDTH", FormPlace.width},
                                 {"FORMHEIGHT", FormPlace.height}});
    std::string result = "PDIR = " + PaperFolder + "\r\n";
    for (const auto& [key, value] : values) result += key + (" = " + FormatSingle(value)) + "\r\n";
    return result;
  }

  std::string MacrosRead(const std::string& content) {
    File("QRX.MCR") = content;
    ReadMacros();
    std::string result;
    for (int number = 0; number < kMacros; ++number) result += MacroCaption(number) + "\r\n";
    return result;
  }

  // The lines of code 65 after saving, from files of empty glyphs.
  std::string GlyphSaved(const std::string& content) {
    std::string font;
    std::string widths;
    for (const std::string value : {"50 def", "[-2 -12 52 42] def", "{  } def"}) {
      font += value.starts_with('{') ? "/CharacterDefs 97 dict\r\n/.notdef\r\n" : "/.notdef\r\n";
      for (int code = 32; code <= 127; ++code) {
        const std::string number = std::to_string(code);
        font += "/a" + std::string(3 - number.size(), '0') + number + ' ' + value + "\r\n";
      }
    }
    for (int code = 32; code <= 127; ++code) widths += "1.000000\r\n";
    File("MATH0.PSF") = font;
    File("QRX.PRO") = "%!\r\n" + font;
    File("MATH0.TXT") = widths;
    SaveGlyph(kSavedCode, LinesOf(content));
    EXPECT_EQ(File("QRX.PRO"), "%!\r\n" + File("MATH0.PSF"));
    std::string result;
    for (const std::string& line : LinesOf(File("MATH0.PSF"))) {
      if (line.starts_with("/a065 ")) result += line + "\r\n";
    }
    return result + GetField(File("MATH0.TXT"), kSavedCode - 31, "\r\n") + "\r\n";
  }

  std::string ProcedurePieces(const std::string& content) {
    std::string result;
    const Path path = ExecuteGlyph(FirstLine(content)).path;
    const Point* point = path.points.data();
    for (const Path::Step step : path.steps) {
      const Point from = point[-(step != Path::Step::Move)];
      if (step == Path::Step::Line) result += "line from " + At(from) + " to " + At(*point) + "\r\n";
      if (step == Path::Step::Curve) result += "curve from " + At(from) + " to " + At(point[2]) + "\r\n";
      point += step == Path::Step::Curve ? 3 : 1;
    }
    return result;
  }

  std::string IndexHelp(const std::string& content, const std::string& name) {
    File("QRX.HLP") = content;
    IndexHelpFile();
    return File(name);
  }

  // What a result block is made by, of the content of the block that its name begins with.
  using Text = const std::string&;
  const std::map<std::string, std::function<std::string(Text)>> makers = {
      {"page-entries", [this](Text content) { return PageEntries(content); }},
      {"page-widths", [this](Text content) { return PageWidths(content); }},
      {"page-records", [this](Text content) { return ReadAsPage(content), DrawingList; }},
      {"page-plain",
       [this](Text content) {
         ReadAsPage(content);
         WritePagePlain(kPageFile);
         return files.contents[kPageFile];
       }},
      {"page-sorted",
       [this](Text content) {
         ReadAsPage(content);
         WritePageSorted(kPageFile);
         return files.contents[kPageFile];
       }},
      {"page-refused", [this](Text content) { return PageRefused(content); }},
      {"page-job",
       [this](Text content) {
         File("QRX.PRO") = "%!PS\r\n";
         files.contents[kPageFile] = content;
         return OnePageJob(kPageFile);
       }},
      {"page-text",
       [this](Text content) {
         files.contents[kPageFile] = content;
         return PlainText(kPageFile);
       }},
      {"record-line", [](Text content) { return DrawingRecordToLine(FirstLine(content)) + "\r\n"; }},
      {"record-style",
       [](Text content) {
         const std::string record = FirstLine(content);
         const LineStyle style = DecodeLineStyle(ReadSingle(GetField(record, CountFields(record, " "), " ")));
         return "colour " + std::to_string(style.colour) + ", width " + FormatSingle(style.width) + "\r\n";
       }},
      {"drawing-line-record", [](Text content) { return LineToDrawingRecord(FirstLine(content)) + "\r\n"; }},
      {"settings-read", [this](Text content) { return SettingsRead(content); }},
      {"settings-written",
       [this](Text content) {
         SettingsRead(content);
         WriteSettings(ProgramFolder + "QRX.DAT");
         return File("QRX.DAT");
       }},
      {"macros-read", [this](Text content) { return MacrosRead(content); }},
      {"macros-written",
       [this](Text content) {
         MacrosRead(content);
         WriteMacros();
         return File("QRX.MCR");
       }},
      {"width-table-read", [this](Text content) { return WidthTableRead(content); }},
      {"ink-read", [this](Text content) { return InkRead(content); }},
      {"lean-read", [this](Text content) { return LeanRead(content); }},
      {"glyph-procedure",
       [](Text content) {
         const GlyphProcedure glyph = BuildGlyph(LinesOf(content));
         return glyph.text + "\r\nwidth " + FormatSingle(glyph.width) + "\r\n";
       }},
      {"glyph-saved", [this](Text content) { return GlyphSaved(content); }},
      {"procedure-pieces", [this](Text content) { return ProcedurePieces(content); }},
      {"prolog-job", [this](Text content) { return File("QRX.PRO") = content, Prologue(); }},
      {"help-contents", [this](Text content) { return IndexHelp(content, "QRX.HCT"); }},
      {"help-index", [this](Text content) { return IndexHelp(content, "QRX.HIX"); }},
      {"help-pages",
       [this](Text content) {
         IndexHelp(content, "QRX.HIX");
         std::string result;
         for (std::size_t i = 0; i < HelpPageStarts.size(); ++i)
           result +=
               "page " + std::to_string(i + 1) + " at byte " + std::to_string(HelpPageStarts[i]) + "\r\n";
         return result;
       }},
  };
};

TEST_F(FormatsDocument, EveryExampleHolds) {
  std::map<std::string, int> examples;
  const Block* source = nullptr;
  bool sourceUsed = true;
  const auto expectUsed = [&] {
    EXPECT_TRUE(sourceUsed) << "The block at line " << (source ? source->line : 0) << " has no result";
  };
  const std::vector<Block> blocks = ReadBlocks();
  for (const Block& block : blocks) {
    if (block.name == "grammar") continue;
    SCOPED_TRACE("docs/formats.md, line " + std::to_string(block.line) + ", " + block.name);
    const auto maker = makers.find(block.name);
    if (maker == makers.end()) {
      expectUsed();
      source = &block;
      sourceUsed = false;
      continue;
    }
    ++examples[block.name];
    const bool belongs = source && block.name.starts_with(source->name + "-") &&
                         block.name.find('-', source->name.size() + 1) == std::string::npos;
    EXPECT_TRUE(belongs) << "No block before this one gives such a result";
    if (!belongs) continue;
    sourceUsed = true;
    files.contents.clear();
    ResetProgram();
    try {
      EXPECT_EQ(Encode(maker->second(Decode(source->content))), Encode(Decode(block.content)));
    } catch (const Failure& failure) {
      ADD_FAILURE() << failure.what();
    }
  }
  expectUsed();
  for (const auto& [name, maker] : makers) EXPECT_GT(examples[name], 0) << "No example of " << name;
}

}  // namespace
}  // namespace kelvane
