#include "app/formula_menu.h"

#include <cstdlib>
#include <optional>
#include <string>
#include <variant>

#include "app/typing_view.h"
#include "document/numbers.h"
#include "editing/formula_entry.h"
#include "formula/formula.h"
#include "formula/painting.h"

namespace kelvane {

namespace {

constexpr char kMenu[] = "&Edit/Formula &Blocks";
// Of the picture of a template, pixels.
constexpr float kPicture = 36;
constexpr float kText = 13;
constexpr int kMostCells = 20;

struct Template {
  const char* id;
  const char* caption;
  const char* key;
  const char* notation;
  const char* picture;  // the same with its places filled
};
constexpr Template kTemplates[] = {
    {"Fraction", "&Fraction", "Ctrl+/", "\\frac{}{}", "\\frac{a}{b}"},
    {"Root", "&Root", "Ctrl+Alt+R", "\\sqrt{}", "\\sqrt{x}"},
    {"Root2", "R&oot with Index", "", "\\sqrt[]{}", "\\sqrt[n]{x}"},
    {"Power", "&Power", "Ctrl+Alt+H", "^{}", "x^{n}"},
    {"Index", "&Index", "Ctrl+Alt+I", "_{}", "x_{i}"},
    {"Both", "I&ndex and Power", "Ctrl+Alt+N", "_{}^{}", "x_{i}^{n}"},
    {"Sum", "&Sum with Limits", "Ctrl+Alt+S", "\\sum_{}^{}", "\\sum_{i}^{n}"},
    {"Integral", "Inte&gral with Limits", "Ctrl+Alt+G", "\\int_{}^{}", "\\int_{a}^{b}"},
    {"Limit", "&Limit", "Ctrl+Alt+L", "\\lim_{}", "\\lim_{x}"},
    {"Cases", "&Cases", "Ctrl+Alt+Y", "\\begin{cases} {} & {} \\\\ {} & {} \\end{cases}",
     "\\begin{cases} a \\\\ b \\end{cases}"},
    {"Brackets", "&Brackets", "Ctrl+Alt+B", "\\left({}\\right)", "\\left(\\frac{a}{b}\\right)"},
    {"Accent", "&Accent", "Ctrl+Alt+A", "\\hat{}", "\\hat{x}"},
    {"Overbrace", "O&verbrace", "Ctrl+Alt+O", "\\overbrace{}^{}", "\\overbrace{ab}^{n}"},
    {"Underbrace", "&Underbrace", "Ctrl+Alt+U", "\\underbrace{}_{}", "\\underbrace{ab}_{n}"},
    {"Binomial", "Bino&mial", "Ctrl+Alt+K", "\\binom{}{}", "\\binom{n}{k}"},
};

// In the middle of its box, and smaller if it would not fit.
void PaintPicture(Painter& painter, float ratio, const char* notation) {
  View view;
  view.area = {0, 0, kPicture, kPicture};
  view.ratio = ratio;
  view.printed = true;
  for (const float size : {kText, 0.8F * kText, 0.6F * kText, 0.45F * kText}) {
    const auto set = SetFormula(notation, {size, true, 0});
    const auto* formula = std::get_if<Formula>(&set);
    if (!formula) return;
    const Box& ink = formula->ink;
    if (ink.right - ink.left > kPicture - 4 || ink.bottom - ink.top > kPicture - 4) continue;
    PaintFormula(painter, view, *formula,
                 {(kPicture - ink.left - ink.right) / 2, (kPicture - ink.top - ink.bottom) / 2});
    return;
  }
}

MenuPicture PictureOf(const char* notation) {
  return {kPicture, kPicture,
          [notation](Painter& painter, float ratio) { PaintPicture(painter, ratio, notation); }};
}

// "3 x 2" as rows and columns; the reason if it is not.
std::optional<std::pair<int, int>> TableSize(const std::string& text) {
  const std::size_t sign = text.find_first_of("xX*,");
  if (sign == std::string::npos) return std::nullopt;
  const float rows = ReadSingle(text.substr(0, sign));
  const float columns = ReadSingle(text.substr(sign + 1));
  const auto fits = [](float count) { return count >= 1 && count <= kMostCells; };
  if (!fits(rows) || !fits(columns)) return std::nullopt;
  return std::pair(static_cast<int>(rows), static_cast<int>(columns));
}

bool AskMatrix() {
  const auto refuse = [](const std::string& text) -> std::string {
    return TableSize(text) ? "" : "Rows and columns from 1 to 20, such as 3 x 2";
  };
  const std::optional<std::string> answer = TheDialogs->AskText("Matrix", "Rows x columns", "3 x 3", refuse);
  if (!answer) return false;
  const auto [rows, columns] = *TableSize(*answer);
  InsertTemplate(TableNotation("pmatrix", rows, columns));
  return true;
}

}  // namespace

std::vector<Command> FormulaCommands() {
  std::vector<Command> commands;
  commands.push_back({.menu = "&Edit",
                      .id = "mEditFormula",
                      .caption = "&Formula",
                      .key = "Ctrl+M",
                      .run =
                          [] {
                            OpenFormula();
                            return true;
                          },
                      .enabled = CanOpenFormula});
  const auto add = [&](const std::string& id, const char* caption, const char* key, std::function<bool()> run,
                       const char* picture) {
    commands.push_back({.menu = kMenu,
                        .id = "mFormula" + id,
                        .caption = caption,
                        .key = key,
                        .run = std::move(run),
                        .enabled = CanOpenFormula,
                        .picture = PictureOf(picture)});
  };
  for (const Template& one : kTemplates) {
    const auto insert = [&one] {
      InsertTemplate(one.notation);
      return true;
    };
    add(one.id, one.caption, one.key, insert, one.picture);
  }
  add("Matrix", "Matri&x...", "Ctrl+Alt+M", AskMatrix, "\\begin{pmatrix}a&b\\\\c&d\\end{pmatrix}");
  return commands;
}

}  // namespace kelvane
