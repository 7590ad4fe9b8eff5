#include "app/menus.h"

#include <map>

#include "app/exit.h"
#include "app/main_window.h"
#include "document/numbers.h"
#include "document/paper.h"
#include "editing/notes.h"
#include "editing/keyboard.h"
#include "editing/modes.h"
#include "editing/undo.h"
#include "macros/define_macro_window.h"
#include "macros/macros.h"
#include "output/plain_text.h"
#include "output/postscript.h"
#include "platform/files.h"
#include "typography/colours.h"
#include "typography/renderer.h"
#include "typography/typefaces.h"
#include "typography/view.h"
#include "typography/zoom.h"

namespace kelvane {

namespace {

std::vector<BuiltEntry> Built;
MenuEntry* UndoEntry;
MenuEntry* RedoEntry;
MenuEntry* GridMenuV[6];
MenuEntry* GridMenuH[6];

// Every file command leaves typing and goes back to Select before it acts.
template <auto Command>
void AfterEditing() {
  LeaveEditing();
  Command();
}

// What leaves no trace on the page says at the foot of the window that it was done.
template <auto Save>
void Saving() {
  LeaveEditing();
  if (Save()) ShowNote("Saved: " + MachinePath(CurrentPaperFile));
}
template <auto Output>
void Outputting() {
  const std::string path = Output();
  if (!path.empty()) ShowNote("Written: " + MachinePath(path));
}

struct Row {
  const char* menu;
  const char* name;     // null: a separator
  const char* caption;  // captions of the file and view menus are fixed; two begin with the same mnemonic
  const char* key;
  void (*run)();  // null: its window is not built yet, the entry is disabled
  MenuEntry** handle = nullptr;
};

constexpr Row Separator(const char* menu) {
  return {menu, nullptr, nullptr, nullptr, nullptr};
}

const Row kRowsBeforeFormat[] = {
    {"&File", "mFileNew", "&New", "Ctrl+N", AfterEditing<NewPaper>},
    {"&File", "mFileOpen", "Op&en", "Ctrl+O", AfterEditing<OpenPaper>},
    {"&File", "mFileSave", "&Save", "Ctrl+S", Saving<SavePaper>},
    {"&File", "mFileSaveAs", "Save &As", "Ctrl+Shift+S", Saving<SavePaperAs>},
    Separator("&File"),
    {"&File", "mFilePrintOne", "Print &One Page", "Ctrl+Shift+P", Outputting<PrintOnePage>},
    {"&File", "mFilePrint", "&Print", "Ctrl+P", Outputting<PrintPaper>},
    {"&File", "mFileAscii", "&Output As ASCII", "", Outputting<OutputAsText>},
    Separator("&File"),
    {"&File", "mFileExit", "Exit", "Ctrl+Q", LeaveProgram},
    {"&Edit", "mEditUndo", "&Undo", "Ctrl+Z", Undo, &UndoEntry},
    {"&Edit", "mEditRedo", "&Redo", "Ctrl+Shift+Z", Redo, &RedoEntry},
    Separator("&Edit"),
    {"&Edit", "mEditMove", "&Move", "", nullptr},
    {"&Edit", "mEditCut", "Cu&t", "Ctrl+X", nullptr},
    {"&Edit", "mEditCopy", "&Copy", "Ctrl+C", nullptr},
    {"&Edit", "mEditPaste", "&Paste", "Ctrl+V", nullptr},
    {"&Edit", "mEditDelete", "&Delete", "Del", nullptr},
    {"&View", "mViewRefresh", "&Refresh", "F5", ShowPage},
    Separator("&View"),
    {"&View", "mViewZoomIn", "Zoom &In", "Ctrl++", ZoomIn},
    {"&View", "mViewZoomOut", "Zoom &Out", "Ctrl+-", ZoomOut},
    {"&View", "mViewTrueSize", "&100 %", "Ctrl+0", ZoomToTrueSize},
    {"&View", "mViewFitPage", "Fit &Page", "Ctrl+1", FitPage},
    {"&View", "mViewFitWidth", "Fit &Width", "Ctrl+2", FitWidth},
    Separator("&View"),
};

const Row kRowsAfterFormat[] = {
    Separator("F&ormat"),
    {"F&ormat", "mCharacterDesigner", "&Character Designer", "", nullptr},
    {"&Macros", "mMacrosDef", "&Define", "", ShowDefineMacro},
    {"&Help", "mHelpContents", "&Contents", "F1", nullptr},
    {"&Help", "mHelpContact", "C&ontact", "", nullptr},
    {"&Help", "mHelpWeb", "&Web Page", "", nullptr},
    Separator("&Help"),
    {"&Help", "mHelpAbout", "&About", "", nullptr},
};

// Finds the menus of a path, making those that are not there yet.
class MenuTree {
 public:
  explicit MenuTree(Window& window) : window_(window) {}

  Menu* Find(const std::string& path) {
    Menu*& menu = menus_[path];
    if (menu) return menu;
    const std::size_t slash = path.rfind('/');
    menu = slash == std::string::npos ? window_.AddMenu(path)
                                      : Find(path.substr(0, slash))->AddMenu(path.substr(slash + 1));
    return menu;
  }

  MenuEntry* Add(const std::string& menu, const std::string& name, const std::string& caption,
                 const std::string& key, std::function<void()> run) {
    MenuEntry* entry = Find(menu)->AddEntry(caption, key);
    const bool available = static_cast<bool>(run);
    entry->SetEnabled(available);
    entry->OnChosen = std::move(run);
    Built.push_back({menu, name, caption, key, entry, available});
    return entry;
  }

  template <std::size_t N>
  void Add(const Row (&rows)[N]) {
    for (const Row& row : rows) {
      if (!row.name) {
        Find(row.menu)->AddSeparator();
        continue;
      }
      MenuEntry* entry = Add(row.menu, row.name, row.caption, row.key, row.run);
      if (row.handle) *row.handle = entry;
    }
  }

 private:
  Window& window_;
  std::map<std::string, Menu*> menus_;
};

// Menus of fixed choices: a name, a caption and a value for each entry.

void AddFontMenu(MenuTree& menus) {
  static constexpr char kDigits[] = "0123456789ABCDEF";
  for (std::int16_t font = 0; font < kTypefaces; ++font) {
    FontMenu[font] = menus.Add("F&ormat/Font &Name", std::string("mFont") + kDigits[font],
                               kTypefaceNames[font].menuCaption, "", [font] { ChooseFont(font); });
  }
}

// The path being drawn takes the style when it is finished, so it shows it at once.
void ShowPathInNewStyle() {
  ShowCursor();
}

void AddColourMenu(MenuTree& menus) {
  static constexpr const char* kCaptions[16] = {
      "Black",     "Dark Blue", "Dark Green", "Dark Cyan", "Dark Red", "Dark Magenta", "Brown",  "Light Grey",
      "Dark Grey", "Blue",      "Green",      "Cyan",      "Red",      "Magenta",      "Yellow", "White",
  };
  for (std::int16_t colour = 0; colour < 16; ++colour) {
    ColourMenu[colour] = menus.Add("F&ormat/&Line Colour", "mColour" + std::to_string(colour),
                                   kCaptions[colour], "", [colour] {
                                     ChooseColour(colour);
                                     ShowPathInNewStyle();
                                   });
  }
}

void AddThicknessMenu(MenuTree& menus) {
  static constexpr const char* kNames[] = {"010", "025", "050", "075", "100", "150", "200"};
  static constexpr const char* kCaptions[] = {"0.10 pt", "0.25 pt", "0.50 pt", "0.75 pt",
                                              "1.0 pt",  "1.5 pt",  "2.0 pt"};
  for (std::size_t i = 0; i < kThicknesses.size(); ++i) {
    ThicknessMenu[i] =
        menus.Add("F&ormat/Line &Thickness", std::string("mThickness") + kNames[i], kCaptions[i], "", [i] {
          ChooseThickness(kThicknesses[i]);
          ShowPathInNewStyle();
        });
  }
}

// The entries named mGridV set the horizontal lines and those named mGridH the vertical ones: the letter is
// the direction of the step. Both names stand in settings files and manuals.
void AddGridMenu(MenuTree& menus, const std::string& menu, const std::string& prefix, std::int16_t& step,
                 MenuEntry* (&entries)[6], int firstShown) {
  for (std::int16_t choice = 1; choice <= 6; ++choice) {
    std::string caption = "Step &" + std::to_string(choice) + " pt, ";
    caption += choice < firstShown ? "no lines" : "lines every " + std::to_string(2 * choice) + " pt";
    entries[choice - 1] = menus.Add(menu, prefix + std::to_string(choice), caption, "", [&step, choice] {
      step = choice;
      CheckGridMenus();
      ShowPage();
    });
  }
}

void AddMacroMenu(MenuTree& menus) {
  for (int number = 0; number < kMacros; ++number) {
    MacroMenu[number] = menus.Add("&Macros/&Call", "mMacro" + std::to_string(number), MacroCaption(number),
                                  "Alt+" + std::to_string(number), [number] { CallMacro(number); });
    MacroMenu[number]->SetLiteralCaption(MacroCaption(number));
  }
}

void ShowWhatCanBeUndone() {
  UndoEntry->SetCaption(UndoLabel().empty() ? "&Undo" : "&Undo " + UndoLabel());
  RedoEntry->SetCaption(RedoLabel().empty() ? "&Redo" : "&Redo " + RedoLabel());
}

}  // namespace

void BuildMenus(Window& window) {
  Built.clear();
  MenuTree menus(window);
  menus.Add(kRowsBeforeFormat);
  AddGridMenu(menus, "&View/&Horizontal Grid Lines", "mGridV", GridStepV, GridMenuV, 2);
  AddGridMenu(menus, "&View/&Vertical Grid Lines", "mGridH", GridStepH, GridMenuH, 3);
  AddFontMenu(menus);
  AddColourMenu(menus);
  AddThicknessMenu(menus);
  AddMacroMenu(menus);
  menus.Add(kRowsAfterFormat);
  menus.Find("&Edit")->OnOpen = ShowWhatCanBeUndone;
}

const std::vector<BuiltEntry>& BuiltMenus() {
  return Built;
}

void CheckGridMenus() {
  for (int i = 0; i < 6; ++i) {
    if (GridMenuV[i]) GridMenuV[i]->SetChecked(i + 1 == GridStepV);
    if (GridMenuH[i]) GridMenuH[i]->SetChecked(i + 1 == GridStepH);
  }
}

}  // namespace kelvane
