#include "tests/support/program_test.h"

#include <algorithm>
#include <iterator>

#include "app/startup.h"
#include "designer/designer_window.h"
#include "editing/cursor.h"
#include "editing/edit.h"
#include "editing/keyboard.h"
#include "editing/modes.h"
#include "editing/notes.h"
#include "macros/define_macro_window.h"
#include "macros/macros.h"
#include "papers/paper_commands.h"
#include "platform/files.h"
#include "typography/colours.h"
#include "typography/glyphs.h"
#include "typography/renderer.h"
#include "typography/typefaces.h"
#include "typography/zoom.h"

namespace kelvane {
namespace {

template <typename... Handles>
void Empty(Handles&... handles) {
  (std::fill(std::begin(handles), std::end(handles), nullptr), ...);
}

// Handles of controls that go away with the fixture, and the hooks that tests or start-up filled.
void EmptyHandlesAndHooks() {
  Form1 = Form7 = nullptr;
  Picture1 = DesignerCanvas = nullptr;
  FontLabel = CursorLabel = NoteLabel = PageCountLabel = nullptr;
  PageBox = Text1 = Text4 = Form7_Text1 = Form7_Text2 = nullptr;
  ShapingButton = nullptr;
  DesignerWindow = nullptr;
  DesignerSide = nullptr;
  DesignerBackground = nullptr;
  Empty(FontMenu, ColourMenu, ThicknessMenu, MacroMenu, AnchorButtons, ShapeButtons);
  PageEdited = ViewMoved = nullptr;
  PaintFinds = nullptr;
  FocusedControl = nullptr;
}

template <typename Handles>
void FillMenu(Window& window, const char* caption, Handles& handles) {
  Menu* menu = window.AddMenu(caption);
  for (auto& handle : handles) handle = menu->AddEntry({}, {});
}

// Enough of a main window for every routine that shows something.
void FillHandles(FakeWindow& window) {
  Form1 = &window;
  Picture1 = window.AddCanvas();
  Picture1->OnPaint = PaintLayer;
  PageBox = window.AddTextBox("Page Number", false);
  Text1 = window.AddTextBox("Font Size", false);
  Text4 = window.AddTextBox("Control Codes", true);
  FontLabel = window.AddLabel({});
  for (Button*& button : AnchorButtons) button = window.AddButton({}, {}, {});
  FillMenu(window, "Font &Name", FontMenu);
  FillMenu(window, "Line &Colour", ColourMenu);
  FillMenu(window, "Line &Thickness", ThicknessMenu);
  FillMenu(window, "&Macro", MacroMenu);
}

}  // namespace

ProgramTest::ProgramTest() {
  EmptyHandlesAndHooks();
  TheFiles = &files;
  TheDialogs = &dialogs;
  TheToolkit = &toolkit;
  TheClipboard = &clipboard;
  ThePrinter = &printer;
  ProgramFolder = "\\Kelvane\\";
  StateFolder = "\\State\\";
  toolkit.NewWindow(true);
  window = toolkit.windows.front().get();
  FillHandles(*window);
  canvas = window->canvases.front().get();
  ResetProgram();
  canvas->ForgetDrawn();
}

ProgramTest::~ProgramTest() {
  EmptyHandlesAndHooks();
  TheFiles = &DiskFiles();
  TheDialogs = nullptr;
  TheToolkit = nullptr;
  TheClipboard = nullptr;
  ThePrinter = nullptr;
}

void ProgramTest::TearDown() {
  EXPECT_TRUE(dialogs.AllAnswered()) << "A dialog that the test foresaw did not come";
  EXPECT_EQ(files.openHandles, 0);
}

}  // namespace kelvane
