// Formulas by notation: what is taken and refused, where it comes to stand, and what runs it becomes. With
// the shipped widths, ink boxes and glyphs.

#include "formula/formula.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <random>
#include <string>
#include <vector>

#include "designer/character_files.h"
#include "document/lines.h"
#include "formula/drawn_signs.h"
#include "formula/layout.h"
#include "formula/notation.h"
#include "tests/support/program_test.h"
#include "typography/item_boxes.h"
#include "typography/metrics.h"
#include "typography/signs.h"

namespace kelvane {
namespace {

constexpr float kSize = 10;

class FormulaTest : public ProgramTest {
 protected:
  FormulaTest() {
    const std::filesystem::path data = std::filesystem::path(KELVANE_SOURCE_DIR) / "data";
    for (const auto& entry : std::filesystem::directory_iterator(data)) {
      const std::string name = entry.path().filename().string();
      if (name.ends_with(".WT") || name.ends_with(".TAB") || name == "MATH0.PSF")
        files.contents[ProgramFolder + name] = DiskFiles().ReadWhole(BackslashPath(entry.path().string()));
    }
    LoadCharacterDefs();
    LoadWidthTables();
    LoadInkBoxes();
    LoadLeans();
  }

  static std::vector<std::string> Corpus() {
    const std::string text =
        DiskFiles().ReadWhole(BackslashPath(KELVANE_SOURCE_DIR) + "\\tests\\formulas\\corpus.txt");
    std::vector<std::string> formulas;
    for (std::string_view rest = text; !rest.empty();) {
      const std::string_view line = TakeLine(rest);
      if (!line.empty() && line[0] != '#') formulas.emplace_back(line);
    }
    return formulas;
  }

  static std::variant<Formula, FormulaError> Try(std::string_view notation, bool display = true) {
    return SetFormula(notation, {kSize, display, 0});
  }
  static Formula Set(std::string_view notation, bool display = true) {
    auto set = Try(notation, display);
    if (const auto* error = std::get_if<FormulaError>(&set)) {
      ADD_FAILURE() << notation << ": " << error->message;
      return {};
    }
    return std::get<Formula>(std::move(set));
  }
  // "begin-end message", or nothing where it is accepted.
  static std::string ErrorOf(std::string_view notation) {
    const auto set = Try(notation);
    const auto* error = std::get_if<FormulaError>(&set);
    if (!error) return {};
    EXPECT_LE(error->begin, error->end);
    EXPECT_LE(error->end, notation.size());
    return std::to_string(error->begin) + "-" + std::to_string(error->end) + " " + error->message;
  }

  static Box InkOf(const FormulaEntry& entry) {
    return InkBoxOf(entry.run, entry.font, entry.size, entry.anchor, entry.at);
  }
  static std::vector<Box> BoxesOf(const Formula& formula) {
    std::vector<Box> boxes;
    for (const FormulaEntry& entry : formula.entries) boxes.push_back(InkOf(entry));
    for (const Drawing& drawing : formula.drawings) boxes.push_back(InkBoxOf(drawing));
    return boxes;
  }
  static const FormulaEntry& EntryWith(const Formula& formula, std::string_view text) {
    static const FormulaEntry none;
    for (const FormulaEntry& entry : formula.entries)
      if (TextOfRun(entry.run, entry.font) == text) return entry;
    ADD_FAILURE() << "No entry " << text;
    return none;
  }
};

TEST_F(FormulaTest, LinesWithScriptsAndAccentsAreOneRun) {
  for (const char* notation :
       {"x^2+y^2=z^2", "a_1+b_{ij}-x_1^2", "f'(x)+f^2(x)", "e^{i\\pi}+1=0", "x^{a_i}+2^{2^x}",
        "\\hat x+\\bar A", "A\\cap B\\ne\\emptyset", "\\sin^2\\alpha+\\cos^2\\alpha=1", "T^2V_1W^{-1}",
        "f_n'(x)+\\mu_1'", "{}^{14}_{6}\\mathrm{C}", "\\langle x,y\\rangle\\le\\|x\\|",
        "a\\not=b,\\quad c"}) {
    const Formula set = Set(notation);
    ASSERT_EQ(set.entries.size(), 1U) << notation;
    EXPECT_TRUE(set.drawings.empty()) << notation;
    EXPECT_EQ(set.entries[0].at.y, 0) << notation;
    EXPECT_EQ(set.entries[0].anchor, 3) << notation;
  }
  const FormulaEntry run = Set("x^2+y^2=z^2").entries[0];
  EXPECT_EQ(run.font, 2);
  EXPECT_EQ(run.run,
            "x\xF0\xE0"
            "2\xF2\xFF\xFF\xE8+\xFF\xFF\xE2y\xF0\xE0"
            "2\xF2\xFF\xFF\xFF\xE8=\xFF\xFF\xFF\xE2z\xF0\xE0"
            "2");
}

TEST_F(FormulaTest, RunsPutEachCharacterWhereTheLayoutHasIt) {
  for (const std::string& notation : Corpus()) {
    const Formula set = Set(notation);
    const formula::Reading reading = formula::ReadNotation(notation);
    const bool display = reading.tree.told ? reading.tree.display : true;
    formula::Layout layout = formula::LayOut(reading.tree, {kSize, display, 0});
    std::erase_if(layout.elements,
                  [](const auto& element) { return element.what != formula::Element::What::Character; });
    std::size_t found = 0;
    for (const FormulaEntry& entry : set.entries) {
      TextEntry item{entry.at.x, entry.at.y, entry.size, entry.font, entry.run, entry.anchor};
      WalkRun(item.text, PenAt(PlaceRun(item).origin, item.font, item.size), 0,
              [&](std::size_t index, const RunPen& pen) {
                const auto same = std::ranges::find_if(layout.elements, [&](const formula::Element& element) {
                  return element.code == static_cast<unsigned char>(item.text[index]) &&
                         element.font == pen.font && std::abs(element.x - pen.x) < 0.06F &&
                         std::abs(element.y - pen.y) < 0.06F && std::abs(element.size - pen.size) < 0.01F;
                });
                ASSERT_NE(same, layout.elements.end()) << notation << ", " << item.text[index];
                layout.elements.erase(same);
                ++found;
              });
    }
    EXPECT_TRUE(layout.elements.empty()) << notation;
    EXPECT_GT(found, 0U) << notation;
  }
}

// The foot of an integral and the tick of a root have room that their boxes do not show; limits and indices
// stand there. Rules of a table may cross.
TEST_F(FormulaTest, InkBoxesStayApart) {
  for (const std::string& notation : Corpus()) {
    const bool hollow = notation.find("int") != notation.npos || notation.find("sqrt[") != notation.npos;
    if (hollow) continue;
    const std::vector<Box> boxes = BoxesOf(Set(notation));
    for (std::size_t i = 0; i < boxes.size(); ++i) {
      for (std::size_t k = i + 1; k < boxes.size(); ++k) {
        const Box &a = boxes[i], &b = boxes[k];
        EXPECT_FALSE(std::min(a.right, b.right) - std::max(a.left, b.left) > 0.05F &&
                     std::min(a.bottom, b.bottom) - std::max(a.top, b.top) > 0.05F)
            << notation << ": " << i << " and " << k;
      }
    }
  }
}

TEST_F(FormulaTest, FractionsStandAboutTheAxis) {
  const Formula set = Set("\\frac{a+b}{c}");
  ASSERT_EQ(set.drawings.size(), 1U);
  const Box bar = InkBoxOf(set.drawings[0]);
  EXPECT_NEAR((bar.top + bar.bottom) / 2, -2.5, 0.01);
  const FormulaEntry &above = EntryWith(set, "a+b"), &below = EntryWith(set, "c");
  // Retyped, both stay in the middle of the bar.
  for (const FormulaEntry* entry : {&above, &below}) {
    EXPECT_EQ(entry->anchor, 4);
    EXPECT_NEAR(entry->at.x, (bar.left + bar.right) / 2, 0.06);
  }
  EXPECT_NEAR(above.at.y, -6.77, 0.01);
  EXPECT_NEAR(below.at.y, 6.86, 0.01);
  // Towers and deep letters make room; within a line all is smaller and closer.
  const Formula tall = Set("\\frac{y_{y_y}}{A^{A^A}}");
  const Box tallBar = InkBoxOf(tall.drawings.at(0));
  for (const FormulaEntry& entry : tall.entries) {
    const Box ink = InkOf(entry);
    EXPECT_GT(std::max(tallBar.top - ink.bottom, ink.top - tallBar.bottom), 0.79) << entry.run;
  }
  EXPECT_NEAR(EntryWith(Set("\\frac{a}{b}", false), "a").size, 8, 0.001);
  EXPECT_NEAR(EntryWith(Set("\\dfrac{a}{b}", false), "a").size, 10, 0.001);
}

TEST_F(FormulaTest, LimitsStandAboveOrBeside) {
  const auto lower = [](const Formula& set) { return EntryWith(set, "k=1"); };
  const Formula stacked = Set("\\sum_{k=1}a"), beside = Set("\\sum_{k=1}a", false);
  EXPECT_LT(lower(stacked).at.x, InkOf(EntryWith(stacked, "∑a")).right);
  EXPECT_GT(lower(stacked).at.y, 9);
  EXPECT_EQ(lower(stacked).anchor, 4);
  EXPECT_GT(InkOf(EntryWith(Set("\\sum\\nolimits_{k=1}a"), "k=1")).left, 11);
  EXPECT_GT(lower(Set("\\sum\\limits_{k=1}a", false)).at.y, 7);
  EXPECT_EQ(beside.entries.size(), 1U);
  // An integral's limits follow its lean.
  const Formula integral = Set("\\int_a^b");
  EXPECT_GT(InkOf(EntryWith(integral, "b")).left, InkOf(EntryWith(integral, "a")).left + 3);
}

// Baselines that a classical typesetter has for these at ten points, measured there.
TEST_F(FormulaTest, PartsStandWhereTheyAreLookedFor) {
  struct Place {
    const char* notation;
    const char* part;
    float y;
    bool display;
  };
  constexpr float kNear = 0.08F * kSize;
  const Place kPlaces[] = {
      {"\\frac{a}{b}", "a", -6.77F, true},
      {"\\frac{a}{b}", "b", 6.86F, true},
      {"\\frac{a}{b}", "a", -3.94F, false},
      {"\\frac{a}{b}", "b", 3.45F, false},
      {"\\sum_{i=1}^nx", "n", -12.5F, true},
      {"\\sum_{i=1}^nx", "i=1", 11.8F, true},
      {"\\prod_px", "p", 11.5F, true},
      {"\\lim_{x\\to0}f", "x→0", 6.2F, true},
      {"\\int_0^1f", "1", -11.1F, true},
      {"\\int_0^1f", "0", 9.1F, true},
      {"\\binom nk", "n", -6.77F, true},
      {"\\binom nk", "k", 6.86F, true},
      {"\\left(\\frac ab\\right)^2", "2", -9.0F, true},
      {"\\begin{matrix}a\\\\b\\end{matrix}", "a", -6.1F, true},
      {"\\begin{matrix}a\\\\b\\end{matrix}", "b", 5.9F, true},
      {"\\begin{cases}a\\\\b\\end{cases}", "a", -6.8F, true},
      {"\\frac{y}{a^2}", "a2", 6.9F, true},
      {"\\frac{1}{b+\\frac{1}{x}}", "x", 10.8F, true},
      {"\\underbrace{a+b}_n", "n", 14.0F, true},
      {"\\overbrace{a+b}^n", "n", -16.1F, true},
  };
  for (const Place& place : kPlaces)
    EXPECT_NEAR(EntryWith(Set(place.notation, place.display), place.part).at.y, place.y, kNear)
        << place.notation << ": " << place.part;
}

TEST_F(FormulaTest, SpaceIsThatOfTheClasses) {
  const auto width = [](const char* notation) { return Set(notation).width; };
  // A sign between two operands has room, one in front of its operand has none.
  EXPECT_NEAR(width("a-b") - width("-b") - width("a"), 4.8, 0.1);
  EXPECT_NEAR(width("(-b)") - width("-b"), width("()"), 0.05);
  EXPECT_GT(width("a=-b") - width("-b") - width("a="), 3);
  EXPECT_NEAR(width("x^{a+b}") - width("x^a") - width("x^b") + width("x"), 0.8F * 5.49F, 0.05);
  EXPECT_NEAR(width("\\sin x") - width("\\sin") - width("x"), 1.2, 0.05);
  EXPECT_NEAR(width("\\sin(x)") - width("\\sin") - width("(x)"), 0, 0.05);
  EXPECT_NEAR(width("a{,}b") - width("ab"), 2.5, 0.05);
  EXPECT_NEAR(width("a,b") - width("ab"), 3.7, 0.05);
  EXPECT_NEAR(width("a\\quad b") - width("ab"), 9.6, 0.05);
  EXPECT_NEAR(width("a\\phantom{xx}b") - width("a{xx}b"), 0, 0.4);
  EXPECT_TRUE(Set("\\phantom{\\frac ab}").entries.empty());
  EXPECT_TRUE(Set("\\phantom{\\frac ab}").drawings.empty());
  // Ink of leaning letters does not run into what follows.
  EXPECT_GT(width("f(x)"), width("f") + width("(x)") + 0.9F);
}

TEST_F(FormulaTest, MarksStandOverTheTopsOfTheirLetters) {
  for (const char* letter : {"a", "x", "d", "f", "A", "T", "\\alpha", "\\beta"}) {
    const Formula set = Set("\\hat{" + std::string(letter) + "}");
    ASSERT_EQ(set.entries.size(), 1U) << letter;
    const FormulaEntry& entry = set.entries[0];
    Box mark, body;
    WalkRun(entry.run, PenAt(entry.at, entry.font, entry.size), 0, [&](std::size_t index, const RunPen& pen) {
      const Box ink = InkOfCharacter(static_cast<unsigned char>(entry.run[index]), pen.font);
      (pen.font == kMath0 ? mark : body) = {pen.x + ink.left * pen.size, pen.y + ink.top * pen.size,
                                            pen.x + ink.right * pen.size, pen.y + ink.bottom * pen.size};
    });
    EXPECT_LT(mark.bottom, body.top) << letter;
    EXPECT_GT(mark.bottom, body.top - 2) << letter;
    EXPECT_GE((mark.left + mark.right) / 2, (body.left + body.right) / 2 - 0.2F) << letter;
    EXPECT_LE((mark.left + mark.right) / 2, body.right + 0.2F) << letter;
  }
  // Wide ones, lines and braces reach over all that is under them.
  for (const char* notation :
       {"\\widehat{abc}", "\\overline{abc}", "\\overbrace{a+b+c}", "\\overrightarrow{ABC}"}) {
    const Formula set = Set(notation);
    const std::vector<Box> boxes = BoxesOf(set);
    ASSERT_EQ(boxes.size(), 2U) << notation;
    const Box& top = boxes[0].top < boxes[1].top ? boxes[0] : boxes[1];
    const Box& body = boxes[0].top < boxes[1].top ? boxes[1] : boxes[0];
    EXPECT_LT(top.bottom, body.top) << notation;
    EXPECT_NEAR(top.left, body.left, 1) << notation;
    EXPECT_NEAR(top.right, body.right, 1) << notation;
  }
}

TEST_F(FormulaTest, PiecesOfBracketsJoinAndEmbraceWhatIsBetween) {
  for (const char* inside :
       {"\\frac{a}{b}", "\\begin{matrix}a\\\\b\\\\c\\end{matrix}", "\\dfrac{\\dfrac{a}{b}}{c}"}) {
    for (const char* bracket : {"\\left(!\\right)", "\\left[!\\right]", "\\left\\{!\\right\\}"}) {
      std::string notation = bracket;
      notation.replace(notation.find('!'), 1, inside);
      const Formula set = Set(notation), alone = Set(inside);
      Box left{1e6F, 1e6F, -1e6F, -1e6F};
      float lastBottom = 1e6F;
      std::vector<Box> pieces;
      for (const FormulaEntry& entry : set.entries)
        if (entry.font == kMath0 && InkOf(entry).left < 3) pieces.push_back(InkOf(entry));
      std::ranges::sort(pieces, {}, &Box::top);
      for (const Box& piece : pieces) {
        if (lastBottom < 1e5F) {
          EXPECT_NEAR(piece.top, lastBottom, 0.3) << notation;
        }
        lastBottom = piece.bottom;
        left = {std::min(left.left, piece.left), std::min(left.top, piece.top),
                std::max(left.right, piece.right), std::max(left.bottom, piece.bottom)};
      }
      ASSERT_FALSE(pieces.empty()) << notation;
      EXPECT_NEAR((left.top + left.bottom) / 2, -2.5, 0.2) << notation;
      // As much as the delimiter factor asks for.
      EXPECT_GE(left.bottom - left.top, 0.9F * (alone.ink.bottom - alone.ink.top)) << notation;
    }
  }
}

TEST_F(FormulaTest, ColumnsLineUp) {
  const Formula matrix = Set("\\begin{pmatrix}1&22\\\\333&4\\end{pmatrix}");
  EXPECT_EQ(EntryWith(matrix, "1").at.x, EntryWith(matrix, "333").at.x);
  EXPECT_EQ(EntryWith(matrix, "22").at.x, EntryWith(matrix, "4").at.x);
  EXPECT_EQ(EntryWith(matrix, "1").at.y, EntryWith(matrix, "22").at.y);
  const Formula array = Set("\\begin{array}{r|l}1&22\\\\\\hline333&4\\end{array}");
  EXPECT_EQ(EntryWith(array, "1").anchor, 5);
  EXPECT_NEAR(InkOf(EntryWith(array, "22")).left, InkOf(EntryWith(array, "4")).left, 0.2);
  EXPECT_EQ(array.drawings.size(), 2U);
  // The signs of aligned lines stand under each other.
  const Formula lines = Set("\\begin{aligned}a+b&=c\\\\d&=e\\end{aligned}");
  ASSERT_EQ(lines.entries.size(), 2U);
  float at[2] = {};
  for (std::size_t i = 0; i < 2; ++i) {
    const FormulaEntry& entry = lines.entries[i];
    WalkRun(entry.run, PenAt(entry.at, entry.font, entry.size), 0, [&](std::size_t index, const RunPen& pen) {
      if (entry.run[index] == '=') at[i] = pen.x;
    });
  }
  EXPECT_NEAR(at[0], at[1], 0.06);
}

TEST_F(FormulaTest, RootsAndLinesReachOverAllThatIsUnderThem) {
  for (const char* inside : {"x", "b^2-4ac", "\\frac{a}{f}", "\\sum_{k=1}^n f"}) {
    const Formula root = Set("\\sqrt{" + std::string(inside) + "}");
    Box bar = InkBoxOf(root.drawings.back());
    const Box ink = root.ink;
    EXPECT_NEAR(bar.top, ink.top, 0.01) << inside;
    EXPECT_GE(bar.right, ink.right - 0.01) << inside;
    // The bar goes on where the sign ends.
    const Box sign = InkOf(root.entries[0]);
    EXPECT_NEAR(bar.left, sign.right, 0.02) << inside;
    EXPECT_NEAR(bar.top, sign.top, 0.02) << inside;
    EXPECT_GE(sign.bottom, Set(inside).ink.bottom - 0.3) << inside;
  }
}

// Ink beside the room of a sign would meet its neighbours, and a line that closes is an area.
TEST_F(FormulaTest, DrawnSignsKeepWithinTheirRoom) {
  const auto check = [](const std::string& notation, bool filled) {
    const Formula set = Set(notation);
    EXPECT_GT(set.ink.right - set.ink.left, 0.1F * kSize) << notation;
    EXPECT_GT(set.ink.left, -0.1F * kSize) << notation;
    EXPECT_LT(set.ink.right, set.width + 0.03F * kSize) << notation;
    for (const Drawing& drawing : set.drawings) EXPECT_EQ(drawing.closed, filled) << notation;
  };
  for (const formula::DrawnSign& sign : formula::DrawnSigns())
    check("{\\" + std::string(sign.names.substr(0, sign.names.find(' '))) + "}",
          sign.parts.starts_with("f "));
  for (const char letter : std::string_view("ABDEFGHIJLMOPSTUVWXY1"))
    check("\\mathbb{" + std::string(1, letter) + "}", false);
  EXPECT_EQ(Set("a\\lesssim b").width, Set("a≲b").width);
  EXPECT_LT(EntryWith(Set("\\bigsqcup_{i}x"), "i").at.x, 9) << "its limit stands below";
}

TEST_F(FormulaTest, EverySignCanBeNamedOrTyped) {
  for (const Sign& sign : SignTable()) {
    if (sign.kind == SignClass::Accent || sign.kind == SignClass::Piece) continue;
    std::string_view names = sign.names;
    names = names.substr(0, names.find('|'));
    while (!names.empty()) {
      const std::size_t end = std::min(names.find(' '), names.size());
      const std::string name(names.substr(0, end));
      names.remove_prefix(std::min(end + 1, names.size()));
      if (name == "sqrt") continue;  // takes an argument here
      const Formula set = Set("a\\" + name + " b");
      EXPECT_GT(set.width, Set("ab").width - (name == "negspace" ? 9 : 0)) << name;
    }
  }
  EXPECT_EQ(Set("x² ≤ α₁").entries[0].run, Set("x^2\\le\\alpha_1").entries[0].run);
  EXPECT_EQ(Set("𝐱").entries[0].run, Set("\\mathbf{x}").entries[0].run);
  EXPECT_EQ(Set("\\mathsf{A}").entries[0].font, 4);
  EXPECT_EQ(std::get<Formula>(SetFormula("a1", {kSize, true, 5})).entries[0].font, 6);
}

TEST_F(FormulaTest, EveryNameIsTakenWithItsPlacesFilled) {
  std::size_t count = 0;
  for (std::string typed : FormulaNames("")) {
    for (std::size_t at; (at = typed.find("{}")) != typed.npos;) typed.replace(at, 2, "{c}");
    const std::string name = typed.substr(1, typed.find_first_of("{\\", 1) - 1);
    // These need more around them than places.
    static const std::vector<std::string> kParts = {
        "left",      "middle", "right",    "begin",         "end",        "\\",     "cr",     "newline",
        "hline",     "limits", "nolimits", "displaylimits", "over",       "atop",   "choose", "root",
        "mskip",     "kern",   "mkern",    "hskip",         "hdashline",  "hspace", "mspace", "color",
        "textcolor", "not",    "Box",      "square",        "mathchoice", ""};
    if (std::ranges::find(kParts, name) != kParts.end() || name.starts_with("big") || name.starts_with("Big"))
      continue;
    EXPECT_EQ(ErrorOf("x" + typed + " y"), "") << typed;
    ++count;
  }
  EXPECT_GT(count, 200U);
}

TEST_F(FormulaTest, WhatIsWrongIsSaidWithItsPlace) {
  const std::pair<const char*, const char*> kWrong[] = {
      {"\\frac{a}{b", "8-9 no closing brace"},
      {"a}", "1-2 no opening brace"},
      {"a+\\foo b", "2-6 unknown name \\foo"},
      {"x^2^3", "3-4 a second superscript"},
      {"x_", "1-2 something is missing behind _"},
      {"\\frac{a}", "0-8 something is missing behind \\frac"},
      {"\\sqrt[3", "5-6 no closing bracket"},
      {"\\left(x", "0-5 \\left without \\right"},
      {"x\\right)", "1-7 \\right without \\left"},
      {"\\left x\\right)", "6-7 no bracket behind \\left"},
      {"\\begin{pmatrix}a", "0-6 no \\end{pmatrix}"},
      {"\\begin{matrix}a\\end{pmatrix}", "15-28 \\end{pmatrix} for \\begin{matrix}"},
      {"\\begin{wonder}a\\end{wonder}", "0-14 unknown table \\begin{wonder}"},
      {"a&b", "1-2 a column mark outside of a table"},
      {"a\\\\b", "1-3 a line end outside of a table"},
      {"$a", "0-1 no closing $"},
      {"\\", "0-1 a backslash without a name"},
      {"x\\limits^2", "1-8 \\limits behind no operator"},
      {"a\x01", "1-2 a control character"},
      {"\xFF", "0-1 text that is no UTF-8"},
      {"\xE6\xB0\xB4", "0-3 no sign for \xE6\xB0\xB4"},
      {"\\color{wonder}x", "0-14 unknown colour wonder"},
  };
  for (const auto& [notation, error] : kWrong) EXPECT_EQ(ErrorOf(notation), error) << notation;
}

TEST_F(FormulaTest, RubbishIsRefusedInTime) {
  const auto many = [](std::string_view what, int times) {
    std::string all;
    for (int i = 0; i < times; ++i) all += what;
    return all;
  };
  for (const char* opening : {"{", "\\left(", "\\sqrt{", "x^{", "\\text{", "\\text{$", "\\begin{matrix}",
                              "\\hat", "^", "\\frac", "\\not", "\\substack{", "\\sqrt["})
    EXPECT_NE(ErrorOf(many(opening, 1000)), "") << opening;
  EXPECT_EQ(ErrorOf(many("{", 5000) + many("}", 5000)), "60-61 nested too deeply");
  EXPECT_NE(ErrorOf(many("{", 10000)).find("nested too deeply"), std::string::npos);
  EXPECT_EQ(ErrorOf(std::string(1 << 20, 'x')), "0-1048576 longer than 16,384 characters");
  // What is long but sound is set.
  EXPECT_EQ(ErrorOf(many("x^2+", 4000)), "");
  EXPECT_EQ(ErrorOf("\\begin{matrix}" + many("a&", 3000) + "\\end{matrix}"), "");

  // Cut off and garbled anywhere: an answer, and nothing else.
  std::minstd_rand random(14);
  for (const std::string& notation : Corpus()) {
    for (std::size_t length = 0; length < notation.size(); ++length) Try(notation.substr(0, length));
    for (int i = 0; i < 20; ++i) {
      std::string garbled = notation;
      for (int k = 0; k < 3; ++k) {
        static constexpr std::string_view kInstead = "{}[]()^_&\\$%'~ a2|";
        garbled[random() % garbled.size()] = kInstead[random() % kInstead.size()];
      }
      const auto set = Try(garbled);
      if (const auto* formula = std::get_if<Formula>(&set)) {
        EXPECT_TRUE(std::isfinite(formula->width + formula->height + formula->depth)) << garbled;
      }
    }
  }
}

TEST_F(FormulaTest, WhatStandsRoundPastedFormulasIsTakenOff) {
  const std::string plain = Set("E=mc^2").entries[0].run;
  for (const char* pasted : {"$$E=mc^2$$", "\\[ E = mc^2 \\]", "\\[E=mc^2\\].",
                             "\\begin{equation}\\label{e}E=mc^2\\tag{1}\\end{equation}",
                             "\\begin{equation*} E=mc^2 \\end{equation*}", "E=mc^2 % a remark",
                             "  E\n=\nmc^{2}\n", "\\displaystyle E=mc^2", "\\(E=mc^2\\)", "$E=mc^2$"})
    EXPECT_EQ(Set(pasted).entries[0].run, plain) << pasted;
  // Dollar signs say that it stands within a line.
  EXPECT_NEAR(EntryWith(Set("$\\frac ab$"), "a").size, 8, 0.001);
  EXPECT_NEAR(EntryWith(Set("$$\\frac ab$$", false), "a").size, 10, 0.001);
}

TEST_F(FormulaTest, EmptyPlacesAndCaretsAreWhereTheNotationHasThem) {
  const Formula set = Set("x+\\frac{}{y}^{}");
  ASSERT_EQ(set.empty.size(), 2U);
  EXPECT_EQ(set.empty[0].offset, 8U);
  EXPECT_EQ(set.empty[1].offset, 14U);
  EXPECT_LT(set.empty[0].at.y, -6);
  EXPECT_GT(set.empty[1].at.x, set.empty[0].at.x);
  EXPECT_NEAR(set.empty[1].size, 8, 0.001);
  const Formula line = Set("a+b^2");
  float last = -1;
  for (const std::size_t offset : {0U, 1U, 2U, 4U, 5U}) {
    const FormulaPlace caret = CaretOfFormula(line, offset);
    EXPECT_GT(caret.at.x, last) << offset;
    last = caret.at.x;
  }
  EXPECT_EQ(last, line.width);
  EXPECT_LT(CaretOfFormula(line, 4).at.y, -3);
  // Those of a matrix are its cells.
  const Formula matrix = Set("\\begin{pmatrix}&\\\\&\\end{pmatrix}");
  ASSERT_EQ(matrix.empty.size(), 4U);
  EXPECT_EQ(matrix.empty[0].at.x, matrix.empty[2].at.x);
  EXPECT_LT(matrix.empty[0].at.x + 9, matrix.empty[1].at.x);
  EXPECT_LT(matrix.empty[0].at.y + 11, matrix.empty[2].at.y);
}

TEST_F(FormulaTest, WhatIsPutOnAPageIsReadBackTheSame) {
  for (const std::string& notation : Corpus()) {
    const Formula set = Set(notation);
    const Page page = PageOfFormula(set, {123.4F, 234.5F});
    EXPECT_EQ(static_cast<std::size_t>(page.drawingCount), set.drawings.size());
    const Page read = PageOfContent(ContentOfPage(page, PageOrder::AsTyped, "p"), "p");
    EXPECT_EQ(read.text, page.text) << notation;
    EXPECT_EQ(read.drawingCount, page.drawingCount) << notation;
    std::size_t entries = 0;
    for (std::string_view rest = page.text; !rest.empty(); ++entries) {
      TextEntry entry;
      ASSERT_TRUE(ParseTextEntry(TakeLine(rest), entry)) << notation;
      EXPECT_EQ(entry.text, set.entries.at(entries).run);
      EXPECT_NEAR(entry.x, set.entries[entries].at.x + 123.4F, 0.001);
    }
    EXPECT_EQ(entries, set.entries.size());
  }
  const Page red = PageOfFormula(Set("\\color{red}\\frac{a}{b}"), {0, 0});
  EXPECT_TRUE(red.drawings.ends_with(" 120.4\r\n")) << red.drawings;
}

}  // namespace
}  // namespace kelvane
