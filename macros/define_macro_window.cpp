#include "macros/define_macro_window.h"

#include <string>

#include "document/numbers.h"
#include "editing/notes.h"
#include "macros/macros.h"
#include "papers/paper_commands.h"
#include "platform/failure.h"

namespace kelvane {

Window* Form7;
TextBox* Form7_Text1;
TextBox* Form7_Text2;

namespace {

// Refreshes the captions while the window is open and once after it was closed; an idle program is not woken.
Timer* RefreshTimer;
constexpr int kRefreshInterval = 200;  // milliseconds

// Not only at the exit, which a program that is killed never comes to.
void RefreshTimer_Tick() {
  RefreshMacros();
  if (Form7->Visible()) return;
  RefreshTimer->Stop();
  try {
    KeepMacros();
  } catch (const Failure& failure) {
    // The exit tries again, and then it is a message.
    ShowNote(std::string("The macros are not in their file yet. ") + failure.what());
  }
}

// What Form7_Text1_Change put into the definition box. A text that the person typed there before the number
// is not replaced.
std::string ShownDefinition;

void ShowDefinition(const std::string& text) {
  ShownDefinition = text;
  Form7_Text2->SetText(text);
  Form7_Text2->SelectAll();
}

bool IsMacro(int number) {
  return number >= 0 && number < kMacros;
}

int ChosenNumber() {
  return RoundToInt16(ReadSingle(Form7_Text1->Text()));
}

// An empty box reads as 0 but names no macro.
bool NamesMacro() {
  const std::string text = Form7_Text1->Text();
  return text.find_first_of("0123456789") != std::string::npos && IsMacro(ChosenNumber());
}

void Leave() {
  MacrosChanged = 1;
  Form7->Hide();
}

void PlaceOverEditor() {
  constexpr float kOffset = 100 * kTwipsPerPixel;
  const WindowPlace editor = Form1->GetWindowPlace();
  Form7->SetWindowPlace(
      {editor.left + kOffset, editor.top + kOffset, 420 * kTwipsPerPixel, 128 * kTwipsPerPixel});
}

void AddButton(const char* caption, int left, void (*click)()) {
  Button* button = Form7->AddButton(caption, {}, "");
  button->SetPlace({left, 88, 84, 28});
  button->OnClick = click;
}

void BuildForm7() {
  Form7 = TheToolkit->NewWindow(false);
  Form7->SetTitle("Define Macro");
  Form7->AddLabel("Macro Number")->SetPlace({12, 12, 110, 26});
  Form7_Text1 = Form7->AddTextBox("Macro Number", false);
  Form7_Text1->SetPlace({126, 12, 60, 26});
  Form7_Text1->OnChange = Form7_Text1_Change;
  Form7->AddLabel("Definition")->SetPlace({12, 48, 110, 26});
  Form7_Text2 = Form7->AddTextBox("Definition", true);
  Form7_Text2->SetPlace({126, 48, 282, 26});
  Form7_Text2->OnEnter = Form7_Command3_Click;
  Form7_Text1->OnEnter = Form7_Command3_Click;
  Form7_Text1->OnEscape = Form7_Text2->OnEscape = Form7_Command1_Click;
  AddButton("Apply", 144, Form7_Command3_Click);
  AddButton("Delete", 234, Form7_Command2_Click);
  AddButton("Cancel", 324, Form7_Command1_Click);
  Form7->OnEscape = Form7_Command1_Click;
  Form7->OnCloseRequest = Form7_CloseRequest;
  RefreshTimer = TheToolkit->NewTimer();
  RefreshTimer->OnTick = RefreshTimer_Tick;
}

}  // namespace

void ResetDefineMacroWindow() {
  Form7 = nullptr;
}

void ShowDefineMacro() {
  if (!Form7) BuildForm7();
  // Choosing "Define" with the window open starts it afresh; what was applied before must not be lost.
  RefreshMacros();
  MacrosChanged = 0;
  for (int number = 0; number < kMacros; ++number) MacroTexts[number] = MacroCaption(number);
  Form7_Text1->SetText("");
  ShowDefinition("");
  if (!Form7->Visible()) PlaceOverEditor();
  Form7->Show();
  RefreshTimer->Start(kRefreshInterval);
  Form7_Text1->Focus();
}

void Form7_Text1_Change() {
  if (Form7_Text2->Text() == ShownDefinition) ShowDefinition(NamesMacro() ? MacroTexts[ChosenNumber()] : "");
}

void Form7_Command3_Click() {
  if (!NamesMacro()) {
    Form7_Text1->Focus();
    Form7_Text1->SelectAll();
    throw Failure("There is no macro of that number. Macros have the numbers 0 to 9.");
  }
  MacroTexts[ChosenNumber()] = Form7_Text2->Text();
  Leave();
}

void Form7_Command2_Click() {
  if (NamesMacro()) MacroTexts[ChosenNumber()] = DefaultMacro(ChosenNumber());
  Leave();
}

void Form7_Command1_Click() {
  Leave();
}

bool Form7_CloseRequest() {
  MacrosChanged = 1;
  return true;
}

}  // namespace kelvane
