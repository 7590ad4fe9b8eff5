#include "app/find_window.h"

#include "app/context_help.h"
#include "app/menus.h"
#include "editing/tool.h"
#include "papers/find.h"
#include "papers/paper_commands.h"

namespace kelvane {

namespace {

Window* FindWindow;

constexpr int kWidth = 400;  // pixels
constexpr int kHeight = 106;

TextBox* FindBox;
TextBox* ReplaceBox;
Button* CaseButton;

void Close() {
  FindWindow->Hide();
  FindOpen = false;
  ShowCursor();
  Picture1->Focus();
}

void TakeSearch() {
  FindText = FindBox->Text();
  RestartFind();
  ShowCursor();
}

// Commands of the window change what can be undone and which page is shown.
void Run(const std::function<void()>& command) {
  command();
  RefreshMenus();
}

Button* AddButton(const char* caption, const char* toolTip, const Place& place, std::function<void()> run) {
  Button* button = FindWindow->AddButton(caption, {}, toolTip);
  button->SetPlace(place);
  button->OnClick = [run = std::move(run)] { Run(run); };
  return button;
}

TextBox* AddBox(const char* name, int top, std::function<void()> enter) {
  FindWindow->AddLabel(name)->SetPlace({10, top, 60, 26});
  TextBox* box = FindWindow->AddTextBox(name, true);
  box->SetPlace({72, top, 318, 26});
  box->OnEnter = [enter = std::move(enter)] { Run(enter); };
  box->OnEscape = Close;
  return box;
}

void ToggleCase() {
  FindCase = !FindCase;
  CaseButton->SetDown(FindCase);
  TakeSearch();
}

// In the upper right corner of the editor, where a page has its margin.
void PlaceInCorner() {
  constexpr float kDown = 110 * kTwipsPerPixel;
  const WindowPlace editor = Form1->GetWindowPlace();
  const float width = kWidth * kTwipsPerPixel;
  FindWindow->SetWindowPlace({editor.left + editor.width - width - 20 * kTwipsPerPixel, editor.top + kDown,
                              width, kHeight * kTwipsPerPixel});
}

void Build() {
  FindWindow = TheToolkit->NewWindow(false);
  FindWindow->SetTitle("Find");
  FindBox = AddBox("Find", 8, [] { FindNext(true); });
  FindBox->OnChange = TakeSearch;
  ReplaceBox = AddBox("Replace", 40, [] { ReplaceFound(ReplaceBox->Text()); });
  AddButton("Next", "Find Next (F3)", {10, 72, 60, 26}, [] { FindNext(true); });
  AddButton("Previous", "Find Previous (Shift+F3)", {74, 72, 72, 26}, [] { FindNext(false); });
  AddButton("Replace", "Replace What Was Found", {150, 72, 70, 26}, [] { ReplaceFound(ReplaceBox->Text()); });
  AddButton("All on Page", "Replace All on This Page", {224, 72, 86, 26},
            [] { ReplaceAllOnPage(ReplaceBox->Text()); });
  CaseButton = AddButton("Aa", "Capitals Matter", {314, 72, 76, 26}, ToggleCase);
  FindWindow->AddShortcut("F3", [] { Run([] { FindNext(true); }); });
  FindWindow->AddShortcut("Shift+F3", [] { Run([] { FindNext(false); }); });
  FindWindow->OnEscape = Close;
  FindWindow->OnCloseRequest = [] {
    Close();
    return true;
  };
  AddHelpKeys(*FindWindow, "Finding text");
}

}  // namespace

void ResetFindWindow() {
  FindWindow = nullptr;
}

void ShowFindWindow() {
  if (!FindWindow) Build();
  if (!FindWindow->Visible()) PlaceInCorner();
  FindWindow->Show();
  FindBox->Focus();
  FindBox->SelectAll();
  FindOpen = true;
  TakeSearch();
}

void FindAgain(bool forwards) {
  FindText.empty() ? ShowFindWindow() : FindNext(forwards);
}

}  // namespace kelvane
