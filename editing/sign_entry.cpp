#include "editing/sign_entry.h"

#include <string>
#include <vector>

#include "editing/cursor.h"
#include "editing/formula_entry.h"
#include "editing/keyboard.h"
#include "editing/notes.h"
#include "typography/signs.h"
#include "typography/typefaces.h"

namespace kelvane {

namespace {

constexpr int kScriptKinds = 4;  // superscript, subscript, and the same two for italics
constexpr int kForward = 2;      // of the three codes of a script

// The kind of the innermost script that is open at the end of a text; -1 if none is.
int OpenScript(std::string_view text) {
  std::vector<int> open;
  for (const char c : text) {
    const int code = static_cast<unsigned char>(c) - kFirstScriptCode;
    if (code < 0 || code >= 3 * kScriptKinds) continue;
    if (code % 3 == 0) {
      open.push_back(code / 3);
    } else if (!open.empty()) {
      open.pop_back();
    }
  }
  return open.empty() ? -1 : open.back();
}

void ScriptKey(int kind) {
  const int open = OpenScript(RunBeforeCaret());
  const bool close = open >= 0 && open % 2 == kind;
  InsertScript(close ? 3 * open + kForward : 3 * kind);
}

// Names what has no place.
std::string Signs(std::string_view utf8, std::int16_t font) {
  std::string missing;
  const std::string run = SignsToRun(utf8, font, missing);
  if (!missing.empty()) ShowNote("No typeface has " + missing);
  return run;
}

}  // namespace

void InsertSigns(std::string_view utf8) {
  if (FormulaIsOpen()) return InsertIntoFormula(utf8);
  if (CursorMode < 0) InsertRun(Signs(utf8, FontAtCaret()));
}

std::string SignsBehind(const std::string& before, const std::string& utf8) {
  return Signs(utf8, FontBehind(before));
}

void InsertSign(const Sign& sign) {
  if (FormulaIsOpen()) return InsertIntoFormula(NameOf(sign) + " ");
  if (CursorMode < 0) InsertRun(RunOf(sign, FontAtCaret()));
}

void InsertCodes(const std::string& codes) {
  if (FormulaIsOpen()) return InsertIntoFormula(TextOfRun(codes, BaseFont));
  InsertText(codes);
}

void ScriptButton(int index) {
  if (!FormulaIsOpen()) return InsertScript(index);
  // The first of each three begins a script, the others end one.
  if (index % (kForward + 1) != 0) return GoToNextPlace();
  index / (kForward + 1) % 2 == 0 ? SuperscriptKey() : SubscriptKey();
}

void SuperscriptKey() {
  if (FormulaIsOpen()) return InsertTemplate("^{}");
  ScriptKey(0);
}

void SubscriptKey() {
  if (FormulaIsOpen()) return InsertTemplate("_{}");
  ScriptKey(1);
}

}  // namespace kelvane
