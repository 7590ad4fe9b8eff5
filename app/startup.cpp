#include "app/startup.h"

#include "app/foot.h"
#include "app/main_window.h"
#include "app/menus.h"
#include "app/settings.h"
#include "designer/character_files.h"
#include "document/paper.h"
#include "editing/bezier.h"
#include "editing/cursor.h"
#include "editing/edit.h"
#include "editing/keyboard.h"
#include "editing/modes.h"
#include "editing/select_tool.h"
#include "editing/undo.h"
#include "help/help_files.h"
#include "macros/define_macro_window.h"
#include "macros/macros.h"
#include "output/plain_text.h"
#include "papers/paper_commands.h"
#include "palette/palette.h"
#include "platform/controls.h"
#include "platform/failure.h"
#include "platform/files.h"
#include "platform/handlers.h"
#include "typography/colours.h"
#include "typography/glyphs.h"
#include "typography/metrics.h"
#include "typography/renderer.h"
#include "typography/typefaces.h"
#include "typography/view.h"
#include "typography/zoom.h"

namespace kelvane {

namespace {

constexpr int kMacroInterval = 200;  // milliseconds

// A file of settings, macros or ink boxes that is there and cannot be read must not keep the person from the
// editor.
void ReadOrReport(void (*read)()) {
  try {
    read();
  } catch (const Failure& failure) {
    TheDialogs->Message(failure.what());
  }
}

void ConnectSubjects() {
  PageEdited = ShowPaperState;
  OpenText = RetypeItem;
}

void ShowChoices() {
  SetCanvasPointer(CursorMode);
  ShowFontLabel(CurrentFont, FontSize);
}

void StartMacroTimer() {
  Timer* timer = TheToolkit->NewTimer();
  timer->OnTick = RefreshMacros;
  timer->Start(kMacroInterval);
}

void LoadProgramFiles() {
  ReadOrReport([] { ReadSettings(ProgramFolder + "QRX.DAT"); });
  CurrentFont = BaseFont;
  LoadCharacterDefs();
  IndexHelpFile();
  LoadWidthTables();
  ReadOrReport(LoadInkBoxes);
  ReadOrReport(ReadMacros);
  ReadOrReport(ReadPaletteState);
}

}  // namespace

void ResetProgram() {
  ResetView();
  ResetColours();
  ResetTypefaces();
  ResetGlyphs();
  ResetCursor();
  ResetSettings();
  ResetPaper();
  ResetPaperCommands();
  ResetKeyboard();
  ResetBezier();
  ResetModes();
  ResetSelectTool();
  ResetUndo();
  ResetMacros();
  ResetPalette();
  ResetPlainText();
  ResetFoot();
  ResizeGuard = true;
  ConnectSubjects();
}

std::string ResolveProgramFolder(const std::string& executableFolder) {
  std::string folder = executableFolder;
  if (folder.empty() || folder.back() != '\\') folder += '\\';
  return folder.ends_with("\\VB98\\") ? "C:\\Orrimond\\Kelvane\\" : folder;
}

bool StartUp(const std::string& executableFolder) {
  ProgramFolder = ResolveProgramFolder(executableFolder);
  ResetProgram();
  try {
    LoadProgramFiles();
  } catch (const Failure& failure) {
    TheDialogs->Message(failure.what());
    return false;
  }
  BuildForm1();
  BuildForm7();
  ShowPageNumber();
  ShowChoices();
  StartMacroTimer();
  return true;
}

void ShowEditor(const std::string& pageFile) {
  Form1->SetWindowPlace(FormPlace);
  ResizeGuard = false;
  Form1->Show();
  Form1_Resize();
  Picture1->Focus();
  if (!pageFile.empty()) RunHandler([&] { OpenPaperFile(pageFile); });
  RefreshMenus();
}

}  // namespace kelvane
