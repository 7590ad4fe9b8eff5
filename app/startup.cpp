#include "app/startup.h"

#include "app/about_window.h"
#include "app/actions.h"
#include "app/contact_window.h"
#include "app/context_help.h"
#include "app/find_window.h"
#include "app/first_minutes.h"
#include "app/foot.h"
#include "app/main_window.h"
#include "app/menus.h"
#include "app/overview_window.h"
#include "app/own_files.h"
#include "app/pdf_window.h"
#include "app/picture_window.h"
#include "app/recovery_window.h"
#include "app/settings.h"
#include "app/web_window.h"
#include "designer/character_files.h"
#include "designer/designer_window.h"
#include "document/paper.h"
#include "editing/bezier.h"
#include "editing/change_mark.h"
#include "editing/cursor.h"
#include "editing/edit.h"
#include "editing/formula_entry.h"
#include "editing/keyboard.h"
#include "editing/modes.h"
#include "editing/select_tool.h"
#include "editing/shaping.h"
#include "help/help_files.h"
#include "help/help_window.h"
#include "macros/define_macro_window.h"
#include "macros/macros.h"
#include "output/pictures.h"
#include "output/plain_text.h"
#include "palette/palette.h"
#include "palette/tall_brackets.h"
#include "papers/find.h"
#include "papers/journal.h"
#include "papers/page_operations.h"
#include "papers/paper_commands.h"
#include "papers/recovery.h"
#include "papers/versions.h"
#include "papers/versions_window.h"
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
  PageEdited = [] {
    ShowPaperState();
    ShowCursor();
    RefreshMenus();
  };
  PaperOpened = OfferWorkOfPaper;
  OpenText = RetypeItem;
  LookAtBoth = OpenVersions;
  PaperShown = FollowVersions;
  OpenPlacedFormula = OpenFormulaOf;
  PaintFinds = PaintMatches;
  TallWindowMade = [](Window& window) { AddHelpKeys(window, "The panel of signs"); };
  OpenDrawing = [](std::uint64_t id, Point) { ShapeDrawing(id); };
}

void ShowChoices() {
  SetCanvasPointer(CursorMode);
  ShowFontLabel(CurrentFont, FontSize);
}

void LoadProgramFiles() {
  SetDamagedAside();
  ReadOrReport([] { ReadSettings(ProgramFolder + "QRX.DAT"); });
  CurrentFont = BaseFont;
  LoadCharacterDefs();
  MendGlyphWidths();
  IndexHelpFile();
  LoadWidthTables();
  ReadOrReport(LoadInkBoxes);
  ReadOrReport(LoadLeans);
  ReadOrReport(ReadMacros);
  ReadOrReport(ReadPaletteState);
}

}  // namespace

void ResetProgram() {
  ResetMenus();
  ResetView();
  ResetColours();
  ResetTypefaces();
  ResetGlyphs();
  ResetCursor();
  ResetSettings();
  ResetPaper();
  ResetJournal();
  ResetRecovery();
  ResetPaperCommands();
  ResetVersions();
  ResetVersionsWindow();
  ResetPageOperations();
  ResetFind();
  ResetFindWindow();
  ResetKeyboard();
  ResetFormulaEntry();
  ResetBezier();
  ResetShaping();
  ResetModes();
  ResetSelectTool();
  ResetEdits();
  ResetChangeMark();
  ResetMacros();
  ResetDefineMacroWindow();
  ResetDesigner();
  ResetPalette();
  ResetPlainText();
  ResetFoot();
  ResetFirstMinutes();
  ResetOverview();
  ResetPictures();
  ResetPictureWindow();
  ResetPdfWindow();
  ResetHelpWindow();
  ResetContactWindow();
  ResetWebWindow();
  ResetAboutWindow();
  ResetRecoveryWindow();
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
  PageWatch = TheToolkit->NewFileWatch();
  PageWatch->OnChange = [] {
    FollowPageFile();
    RefreshMenus();
  };
  ShowPageNumber();
  ShowChoices();
  AddPointedHelpKey(*Form1, kEditorPage);
  AddHelpOfDialogs();
  return true;
}

void ShowEditor(const std::string& pageFile) {
  Form1->SetWindowPlace(FormPlace);
  ResizeGuard = false;
  Form1->Show();
  Form1_Resize();
  Picture1->Focus();
  StartJournal();
  if (pageFile.empty()) {
    BeginFirstMinutes();
  } else {
    RunHandler([&] { OpenPaperFile(pageFile); });
  }
  RunHandler(OfferRecovery);
  RefreshMenus();
}

}  // namespace kelvane
