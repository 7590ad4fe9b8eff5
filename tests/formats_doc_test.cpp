// Every example of docs/formats.md, run through the program's own readers and writers. The document describes
// the notation of its blocks.

#include <cctype>
#include <cstdint>
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
#include "typography/glyph_procedures.h"
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

class FormatsDocument : public ProgramTest {
 protected:
  void ReadAsPage(const std::string& content) {
    files.contents[kPageFile] = content;
    ReadPage(kPageFile);
  }

  std::string ReadBack(const std::string& path) { return files.contents.at(path); }

  // Page files.

  std::string PageEntries(const std::string& content) {
    ReadAsPage(content);
    std::string result;
    for (std::string_view rest = PageText; !rest.empty();) {
      const std::string_view line = TakeLine(rest);
      TextEntry entry;
      if (!ParseTextEntry(line, entry)) {
        result.append("not an entry: ").append(line).append("\r\n");
        continue;
      }
      result += "x " + FormatSingle(entry.x) + ", y " + FormatSingle(entry.y) + ", size " +
                FormatSingle(entry.size) + ", typeface " + std::to_string(entry.font) + ", anchor " +
                std::to_string(entry.anchor);
      if (entry.justified) result += ", amount " + FormatSingle(entry.amount);
      result.append(": ").append(entry.text).append("\r\n");
    }
    return result;
  }

  std::string PageWidths(const std::string& content) {
    ReadAsPage(content);
    for (const TypefaceRecord& face : TypefaceTable) {
      if (face.Name.empty()) continue;
      files.contents[ProgramFolder + face.Name + ".WT"] =
          DiskFiles().ReadWhole(kSourceFolder + "data\\" + face.Name + ".WT");
    }
    LoadWidthTables();
    std::string result;
    for (std::string_view rest = PageText; !rest.empty();) {
      TextEntry entry;
      EXPECT_TRUE(ParseTextEntry(TakeLine(rest), entry));
      result += FormatFixed(MeasureRun(entry.text, entry.font, entry.size), 2, true) + "\r\n";
    }
    return result;
  }

  std::string PageRecords(const std::string& content) {
    ReadAsPage(content);
    return DrawingList;
  }

  std::string PagePlain(const std::string& content) {
    ReadAsPage(content);
    WritePagePlain(kPageFile);
    return ReadBack(kPageFile);
  }

  std::string PageSorted(const std::string& content) {
    ReadAsPage(content);
    WritePageSorted(kPageFile);
    return ReadBack(kPageFile);
  }

  std::string PageRefused(const std::string& content) {
    std::string message = FailureOf([&] { ReadAsPage(content); });
    const std::string name = MachinePath(kPageFile);
    const std::size_t at = message.find(name);
    EXPECT_NE(at, std::string::npos) << message;
    if (at != std::string::npos) message.replace(at, name.size(), "PAGE");
    return message + "\r\n";
  }

  std::string PageJob(const std::string& content) {
    files.contents[ProgramFolder + "QRX.PRO"] = "%!PS-Adobe-3.0\r\n";
    files.contents[kPageFile] = content;
    return OnePageJob(kPageFile);
  }

  std::string PageAsText(const std::string& content) {
    files.contents[kPageFile] = content;
    return PlainText(kPageFile);
  }

  // Drawing records.

  std::string RecordLine(const std::string& content) {
    return DrawingRecordToLine(GetField(content, 1, "\r\n")) + "\r\n";
  }

  std::string RecordStyle(const std::string& content) {
    const std::string record = GetField(content, 1, "\r\n");
    const LineStyle style = DecodeLineStyle(ReadSingle(GetField(record, CountFields(record, " "), " ")));
    return "colour " + std::to_string(style.colour) + ", width " + FormatSingle(style.width) + "\r\n";
  }

  std::string LineRecord(const std::string& content) {
    return LineToDrawingRecord(GetField(content, 1, "\r\n")) + "\r\n";
  }

  // Settings and macros.

  std::string SettingsRead(const std::string& content) {
    files.contents[ProgramFolder + "QRX.DAT"] = content;
    ReadSettings(ProgramFolder + "QRX.DAT");
    std::string result = "PDIR = " + PaperFolder + "\r\n";
    const auto add = [&](const char* key, float value) {
      result.append(key).append(" = ").append(FormatSingle(value)).append("\r\n");
    };
    add("PAPERWIDTH", PaperWidth);
    add("PAPERHEIGHT", PaperHeight);
    add("STARTX", STARTX);
    add("STARTY", STARTY);
    add("SCALE", SCALE);
    add("GRIDX", GridStepH);
    add("GRIDY", GridStepV);
    for (int i = 0; i < kGuides && GuideX[i] != 0; ++i) add("GUIDEX", GuideX[i]);
    for (int i = 0; i < kGuides && GuideY[i] != 0; ++i) add("GUIDEY", GuideY[i]);
    add("FONTNUMBER", BaseFont);
    add("FONTSIZE", FontSize);
    add("CURSORMODE", CursorMode);
    add("CURSORX", CursorX);
    add("CURSORY", CursorY);
    add("FORMLEFT", FormPlace.left);
    add("FORMTOP", FormPlace.top);
    add("FORMWIDTH", FormPlace.width);
    add("FORMHEIGHT", FormPlace.height);
    return result;
  }

  std::string SettingsWritten(const std::string& content) {
    SettingsRead(content);
    WriteSettings(ProgramFolder + "QRX.DAT");
    return ReadBack(ProgramFolder + "QRX.DAT");
  }

  std::string MacrosRead(const std::string& content) {
    files.contents[ProgramFolder + "QRX.MCR"] = content;
    ReadMacros();
    std::string result;
    for (int number = 0; number < kMacros; ++number) result += MacroCaption(number) + "\r\n";
    return result;
  }

  std::string MacrosWritten(const std::string& content) {
    MacrosRead(content);
    WriteMacros();
    return ReadBack(ProgramFolder + "QRX.MCR");
  }

  // Width tables and glyphs.

  std::string WidthTableRead(const std::string& content) {
    std::string bytes;
    std::istringstream hex(content);
    for (unsigned byte = 0; hex >> std::hex >> byte;) bytes += static_cast<char>(byte);
    for (const TypefaceRecord& face : TypefaceTable) {
      if (!face.Name.empty()) files.contents[ProgramFolder + face.Name + ".WT"] = bytes;
    }
    LoadWidthTables();
    std::string result = "unit " + FormatSingle(TypefaceTable[0].WidthUnit) + "\r\n";
    for (const int code : {1, 2, 3}) {
      result += "code " + std::to_string(code) + ": width " +
                FormatSingle(TypefaceTable[0].Widths[static_cast<std::size_t>(code)]) + ", advance " +
                FormatSingle(Advance(code, 0, 10)) + " at 10 points\r\n";
    }
    return result;
  }

  static std::vector<std::string> Strokes(std::string_view content) {
    std::vector<std::string> strokes;
    while (!content.empty()) strokes.emplace_back(TakeLine(content));
    return strokes;
  }

  std::string GlyphText(const std::string& content) {
    const GlyphProcedure glyph = BuildGlyph(Strokes(content));
    return glyph.text + "\r\nwidth " + FormatSingle(glyph.width) + "\r\n";
  }

  // The lines of code 65 after saving, from files of empty glyphs.
  std::string GlyphSaved(const std::string& content) {
    std::string font;
    std::string widths;
    for (const char* value : {"50 def", "[-2 -12 52 42] def", "{  } def"}) {
      font += std::string(value).starts_with('{') ? "/CharacterDefs 97 dict\r\n/.notdef\r\n" : "/.notdef\r\n";
      for (int code = 32; code <= 127; ++code) {
        const std::string number = std::to_string(code);
        font += "/a" + std::string(3 - number.size(), '0') + number + ' ' + value + "\r\n";
      }
    }
    for (int code = 32; code <= 127; ++code) widths += "1.000000\r\n";
    files.contents[ProgramFolder + "MATH0.PSF"] = font;
    files.contents[ProgramFolder + "QRX.PRO"] = "%!\r\n" + font;
    files.contents[ProgramFolder + "MATH0.TXT"] = widths;
    SaveGlyph(kSavedCode, Strokes(content));
    std::string result;
    const std::string saved = ReadBack(ProgramFolder + "MATH0.PSF");
    for (std::string_view rest = saved; !rest.empty();) {
      const std::string_view line = TakeLine(rest);
      if (line.starts_with("/a065 ")) result.append(line).append("\r\n");
    }
    EXPECT_EQ(ReadBack(ProgramFolder + "QRX.PRO"), "%!\r\n" + saved);
    return result + GetField(ReadBack(ProgramFolder + "MATH0.TXT"), kSavedCode - 31, "\r\n") + "\r\n";
  }

  std::string ProcedurePieces(const std::string& content) {
    std::string result;
    for (const GlyphPiece& piece : ExecuteGlyph(GetField(content, 1, "\r\n"))) {
      if (piece.kind == GlyphPiece::Kind::Line)
        result += "line from " + At(piece.points[0]) + " to " + At(piece.points[1]);
      if (piece.kind == GlyphPiece::Kind::Curve)
        result += "curve from " + At(piece.points.front()) + " to " + At(piece.points.back());
      if (piece.kind == GlyphPiece::Kind::Circle)
        result += "circle about " + At(piece.points[0]) + ", radius " + FormatSingle(piece.radius);
      result += "\r\n";
    }
    return result;
  }

  // Prolog and help.

  std::string PrologJob(const std::string& content) {
    files.contents[ProgramFolder + "QRX.PRO"] = content;
    return Prologue();
  }

  std::string HelpContents(const std::string& content) { return IndexHelp(content, "QRX.HCT"); }
  std::string HelpIndex(const std::string& content) { return IndexHelp(content, "QRX.HIX"); }

  std::string HelpPages(const std::string& content) {
    IndexHelp(content, "QRX.HIX");
    std::string result;
    for (std::size_t i = 0; i < HelpPageStarts.size(); ++i) {
      result += "page " + std::to_string(i + 1) + " at byte " + std::to_string(HelpPageStarts[i]) + "\r\n";
    }
    return result;
  }

  std::string IndexHelp(const std::string& content, const std::string& name) {
    files.contents[ProgramFolder + "QRX.HLP"] = content;
    IndexHelpFile();
    return ReadBack(ProgramFolder + name);
  }

  // What a result block is made by, of the content of the block that its name begins with.
  using Maker = std::string (FormatsDocument::*)(const std::string&);
  const std::map<std::string, Maker> makers = {
      {"page-entries", &FormatsDocument::PageEntries},
      {"page-widths", &FormatsDocument::PageWidths},
      {"page-records", &FormatsDocument::PageRecords},
      {"page-plain", &FormatsDocument::PagePlain},
      {"page-sorted", &FormatsDocument::PageSorted},
      {"page-refused", &FormatsDocument::PageRefused},
      {"page-job", &FormatsDocument::PageJob},
      {"page-text", &FormatsDocument::PageAsText},
      {"record-line", &FormatsDocument::RecordLine},
      {"record-style", &FormatsDocument::RecordStyle},
      {"drawing-line-record", &FormatsDocument::LineRecord},
      {"settings-read", &FormatsDocument::SettingsRead},
      {"settings-written", &FormatsDocument::SettingsWritten},
      {"macros-read", &FormatsDocument::MacrosRead},
      {"macros-written", &FormatsDocument::MacrosWritten},
      {"width-table-read", &FormatsDocument::WidthTableRead},
      {"glyph-procedure", &FormatsDocument::GlyphText},
      {"glyph-saved", &FormatsDocument::GlyphSaved},
      {"procedure-pieces", &FormatsDocument::ProcedurePieces},
      {"prolog-job", &FormatsDocument::PrologJob},
      {"help-contents", &FormatsDocument::HelpContents},
      {"help-index", &FormatsDocument::HelpIndex},
      {"help-pages", &FormatsDocument::HelpPages},
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
      EXPECT_EQ(Encode((this->*maker->second)(Decode(source->content))), Encode(Decode(block.content)));
    } catch (const Failure& failure) {
      ADD_FAILURE() << failure.what();
    }
  }
  expectUsed();
  for (const auto& [name, maker] : makers) EXPECT_GT(examples[name], 0) << "No example of " << name;
}

}  // namespace
}  // namespace kelvane
