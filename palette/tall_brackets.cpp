#include "palette/tall_brackets.h"

#include <string>
#include <string_view>
#include <vector>

#include "document/numbers.h"
#include "document/page.h"
#include "editing/cursor.h"
#include "editing/edit.h"
#include "editing/keyboard.h"
#include "editing/notes.h"
#include "papers/paper_commands.h"
#include "platform/failure.h"
#include "typography/metrics.h"
#include "typography/renderer.h"
#include "typography/typefaces.h"

namespace kelvane {

std::function<void(Window&)> TallWindowMade;

namespace {

constexpr TallBracket kBrackets[] = {
    {"left parenthesis", "\xEC(", '7', '|', 0, '1'},
    {"right parenthesis", "\xEC)", '9', '|', 0, '3'},
    {"left square", "\xEC[", 'r', '|', 0, 'f'},
    {"right square", "\xEC]", 't', '|', 0, 'g'},
    {"left brace", "\xEC{", '7', '|', '4', '1'},
    {"right brace", "\xEC}", '9', '|', '6', '3'},
    {"single bar", "\xEC|", '|', '|', 0, '|'},
    {"double bar",
     "\xEC"
     "5",
     '5', '5', 0, '5'},
};

// A piece reaches so far above its baseline, in ems, and is one em tall.
constexpr float kPieceRise = 0.75F;

Window* TallWindow;
TextBox* LinesBox;
const TallBracket* Asked;

// Keys from top to foot.
std::string Pieces(const TallBracket& bracket, int lines) {
  // The middle is a piece of its own, with as many bars above it as below.
  const int count = bracket.middle && lines % 2 == 0 ? lines + 1 : lines;
  std::string pieces(static_cast<std::size_t>(count), bracket.bar);
  pieces.front() = bracket.top;
  pieces.back() = bracket.foot;
  if (bracket.middle) pieces[static_cast<std::size_t>(count / 2)] = bracket.middle;
  return pieces;
}

// Where the first line's baseline is, and where the bracket hangs: at its left, its middle or its right.
TextEntry FirstPiece() {
  TextEntry entry;
  entry.font = kMath0;
  entry.size = FontSize;
  if (RunIsOpen()) {
    const Point end = EndsOfRun().end;
    entry.x = end.x;
    entry.y = end.y;
    entry.anchor = 3;
  } else {
    const int anchor = AnchorOfMode(CursorMode);
    entry.x = CursorX;
    entry.y = AlignAtAnchor({CursorX, CursorY}, anchor, 0, FontSize).y;
    entry.anchor = anchor <= 3 ? 3 : anchor >= 5 && anchor <= 7 ? 5 : 4;
  }
  return entry;
}

void Click_Cancel() {
  TallWindow->Hide();
}

void Click_Ok() {
  SetTallBracket(*Asked, RoundToInt16(ReadSingle(LinesBox->Text())));
  TallWindow->Hide();
}

void BuildTallWindow() {
  TallWindow = TheToolkit->NewWindow(false);
  TallWindow->SetTitle("Tall Bracket");
  TallWindow->AddLabel("Over how many lines?")->SetPlace({12, 12, 150, 26});
  LinesBox = TallWindow->AddTextBox("Number of Lines", false);
  LinesBox->SetPlace({166, 12, 60, 26});
  LinesBox->OnEnter = Click_Ok;
  Button* ok = TallWindow->AddButton("OK", {}, "");
  ok->SetPlace({52, 50, 84, 28});
  ok->OnClick = Click_Ok;
  Button* cancel = TallWindow->AddButton("Cancel", {}, "");
  cancel->SetPlace({142, 50, 84, 28});
  cancel->OnClick = LinesBox->OnEscape = TallWindow->OnEscape = Click_Cancel;
  if (TallWindowMade) TallWindowMade(*TallWindow);
}

}  // namespace

std::span<const TallBracket> TallBrackets() {
  return kBrackets;
}

void SetTallBracket(const TallBracket& bracket, int lines) {
  if (lines < 2 || lines > kMostBracketLines)
    throw Failure("A tall bracket has 2 to " + std::to_string(kMostBracketLines) + " lines.");
  if (CursorMode >= 0 || AnchorOfMode(CursorMode) == 0) return;
  TextEntry piece = FirstPiece();
  const std::string keys = Pieces(bracket, lines);
  const float top = piece.y - kPieceRise * FontSize;
  piece.size = FontSize * static_cast<float>(lines) / static_cast<float>(keys.size());
  const std::int16_t mode = CursorMode;
  CommitPendingRun(false);
  CursorMode = mode;
  EditPage("tall bracket", [&](Page& page) {
    if (!page.text.empty() && page.text.back() != '\n') page.text += "\r\n";
    for (std::size_t i = 0; i < keys.size(); ++i) {
      piece.text = std::string_view(keys).substr(i, 1);
      piece.y = top + (static_cast<float>(i) + kPieceRise) * piece.size;
      page.text += LineOfEntry(piece) + "\r\n";
    }
  });
  ShowCursor();
}

void ResetTallBrackets() {
  TallWindow = nullptr;
}

void AskTallBracket(const TallBracket& bracket) {
  Asked = &bracket;
  if (!TallWindow) BuildTallWindow();
  const WindowPlace editor = Form1->GetWindowPlace();
  constexpr float kOffset = 140 * kTwipsPerPixel;
  if (!TallWindow->Visible()) {
    TallWindow->SetWindowPlace(
        {editor.left + kOffset, editor.top + kOffset, 240 * kTwipsPerPixel, 90 * kTwipsPerPixel});
  }
  if (LinesBox->Text().empty()) LinesBox->SetText("2");
  TallWindow->Show();
  LinesBox->Focus();
  LinesBox->SelectAll();
}

}  // namespace kelvane
