#pragma once

// Formulas by notation at the cursor point: a line under it takes the notation, and the formula stands above
// the page as it will be placed.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "editing/tool.h"
#include "formula/formula.h"

namespace kelvane {

void ResetFormulaEntry();

// Opens the line at the placed cursor point, behind the run that is open there. What is selected of the run
// goes into it as notation; a formula that is selected opens again.
bool CanOpenFormula();
void OpenFormula();
// The same for the formula that an item belongs to; false if it belongs to none that is whole.
bool OpenFormulaOf(std::uint64_t id);

bool FormulaIsOpen();
// The formula in the making, as a value that it can be taken up from again.
struct FormulaInMaking {
  std::string notation;
  std::size_t caret = 0;  // byte of it
  FormulaStyle style;
  std::vector<std::uint64_t> instead;  // items that it takes the place of
  std::string behind;                  // a run that goes on behind it
};
std::optional<FormulaInMaking> FormulaNow();
// At the placed cursor point.
void TakeUpFormula(const FormulaInMaking& formula);
// Whether the notation has an error, so that it stays when the line is closed.
bool FormulaIsWrong();
// Places the formula; what cannot be placed is kept for Up, and said so.
void FinishFormula();

// Puts text in UTF-8 into the notation at its caret.
void InsertIntoFormula(std::string_view utf8);
// Puts notation with empty places in, opening the line if need be; what is selected goes into the first of
// them, and the caret behind it or into it.
void InsertTemplate(std::string_view notation);
// A matrix or another table of so many rows and columns.
std::string TableNotation(std::string_view environment, int rows, int columns);

// The caret into the next empty place, or else out of the braces that it is in.
void GoToNextPlace();

// What the commands for texts do while the line is open.
std::string SelectedNotation();
void EraseSelectedNotation();
void SelectWholeNotation();
bool CanUndoNotation();
bool CanRedoNotation();
void UndoNotation();
void RedoNotation();
// The size or typeface of typing was changed, which is the formula's.
void FollowTypeface();
// What an input method has in the making.
void ShowFormulaPreedit(const std::string& utf8);

// Where the caret of the notation is, points.
Point FormulaCaret();

}  // namespace kelvane
