#pragma once

// Abstract windows and controls. The window makes its controls and owns them; pointers stay valid as long
// as the window lives. Nobody has to check a pointer that a factory gave.
//
// Positions and sizes of controls are pixels inside the window's client area (below the menu bar); those of
// windows are twips, 15 to a logical pixel. Texts are 8-bit.

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/canvas.h"

namespace kelvane {

inline constexpr float kTwipsPerPixel = 15;
inline constexpr int kScrollBarPixels = 13;  // thickness

struct Place {
  int left = 0;
  int top = 0;
  int width = 0;
  int height = 0;
};

// Declared in platform/text_view.h.
class TextView;
class Tabs;
class List;
class TextArea;
class Browser;

class Control {
 public:
  virtual ~Control() = default;
  // A place without a width or a height hides the control; another does not show one that SetVisible hid.
  virtual void SetPlace(const Place& place) = 0;
  virtual void SetVisible(bool visible) = 0;
};

class Label : public Control {
 public:
  virtual void SetText(const std::string& text) = 0;
  virtual std::string Text() const = 0;
  // Paints the label now instead of at the next pass of the event loop.
  virtual void Repaint() = 0;
};

// A small drawing for a button on a 24 by 24 grid, y downwards. Boxes are outlines, discs are filled.
struct IconShape {
  enum class Kind { Line, Box, Disc, Letters };
  Kind kind = Kind::Line;
  float x0 = 0, y0 = 0;  // start; left and top; centre; left and baseline
  float x1 = 0, y1 = 0;  // end; right and bottom; x1 = radius; x1 = em size
  bool accent = false;   // the part that says what the button does
  bool italic = false;   // Letters only
  std::string letters;
};
using IconDrawing = std::vector<IconShape>;

class Button : public Control {
 public:
  // A button that stays down shows a mode; the owner sets it.
  virtual void SetDown(bool down) = 0;
  virtual void SetEnabled(bool enabled) = 0;
  std::function<void()> OnClick;
};

class TextBox : public Control {
 public:
  // SetText does not call OnChange.
  virtual void SetText(const std::string& text) = 0;
  virtual std::string Text() const = 0;
  virtual void Focus() = 0;
  virtual void SelectAll() = 0;
  std::function<void()> OnChange;  // the person changed the text
  // What to put in place of characters that the box has no code for, in UTF-8, behind that text. Empty:
  // nothing, and the owner tells. Without an owner who knows, a tool tip at the box names them.
  std::function<std::string(const std::string& before, const std::string& utf8)> SignsFor;
  std::function<void()> OnEnter;  // Enter, with or without Ctrl, was pressed in the box
  std::function<void()> OnEscape;
  std::function<void()> OnDown;  // the arrow key down, which does nothing within one line
};

class ScrollBar : public Control {
 public:
  // What is to be seen: values from `least` to `most`, of which `page` from `value` on are visible.
  // SetRange does not call OnScroll.
  virtual void SetRange(float least, float most, float page, float value) = 0;
  std::function<void(float)> OnScroll;  // the new value, chosen by the person
};

// A picture beside the caption of a menu entry, on white: its size in pixels, and what paints it from the
// point 0, 0 on, with so many device pixels to the pixel. It is painted when the menu first opens.
struct MenuPicture {
  float width = 0;
  float height = 0;
  std::function<void(Painter&, float ratio)> paint = {};
};

class MenuEntry {
 public:
  virtual ~MenuEntry() = default;
  // Caption with "&" before its mnemonic.
  virtual void SetCaption(const std::string& caption) = 0;
  // Caption shown as it stands: "&" is text, control codes are shown in a readable form.
  virtual void SetLiteralCaption(const std::string& caption) = 0;
  // The caption as it was set.
  virtual std::string Caption() const = 0;
  // Check marks are set by the owner alone; choosing an entry does not toggle it.
  virtual void SetChecked(bool checked) = 0;
  virtual bool Checked() const = 0;
  virtual void SetEnabled(bool enabled) = 0;
  virtual void SetPicture(const MenuPicture& picture) = 0;
  std::function<void()> OnChosen;
};

class Menu {
 public:
  virtual ~Menu() = default;
  virtual Menu* AddMenu(const std::string& caption) = 0;
  // `key` as "Ctrl+Shift+S", "F5", "PgUp", empty for none.
  virtual MenuEntry* AddEntry(const std::string& caption, const std::string& key) = 0;
  virtual void AddSeparator() = 0;
  // Called before the menu is shown, to refresh what is enabled.
  std::function<void()> OnOpen;
};

struct WindowPlace {
  float left = 0;
  float top = 0;
  float width = 0;
  float height = 0;
};

class Window {
 public:
  virtual ~Window() = default;

  virtual void SetTitle(const std::string& title) = 0;
  // Shows the platform's mark of unsaved changes beside the title, or takes it away.
  virtual void SetChanged(bool changed) = 0;

  // Place on the screen in twips, frame excluded from width and height; while minimised or maximised, the
  // place the window is restored to. SetWindowPlace moves a window that would lie off every screen onto one.
  virtual void SetWindowPlace(const WindowPlace& place) = 0;
  virtual WindowPlace GetWindowPlace() const = 0;
  // The client area in twips, without menu bar, status line and the strips that scroll bars take at its right
  // and lower edge.
  virtual float InnerWidth() const = 0;
  virtual float InnerHeight() const = 0;

  virtual void Show() = 0;
  virtual void Hide() = 0;
  virtual bool Visible() const = 0;
  // Has what the first picture does not need done behind that picture, or before the first key is heard.
  virtual void WhenShown(std::function<void()> handler) = 0;

  virtual Menu* AddMenu(const std::string& caption) = 0;
  // A menu that is not in the menu bar; its keys do nothing. ShowPopup opens it at a pixel of a canvas.
  virtual Menu* AddPopup() = 0;
  virtual void ShowPopup(Menu* popup, Canvas* canvas, float pixelX, float pixelY) = 0;
  virtual Canvas* AddCanvas() = 0;
  virtual void SetCanvasPlace(Canvas* canvas, const Place& place) = 0;
  virtual Label* AddLabel(const std::string& text) = 0;
  // A button with an icon (tool tip and accessible name `caption`), or with its caption if `icon` is empty.
  virtual Button* AddButton(const std::string& caption, const IconDrawing& icon,
                            const std::string& toolTip) = 0;
  // `accessibleName` says what the box is for. `fixedPitch` boxes show the characters of a run in the face
  // "Letter Gothic" or the nearest fixed-pitch one, control codes as visible signs.
  virtual TextBox* AddTextBox(const std::string& accessibleName, bool fixedPitch) = 0;
  // A box for a line of the person's own language, UTF-8.
  virtual TextBox* AddPlainTextBox(const std::string& accessibleName) = 0;
  virtual ScrollBar* AddScrollBar(bool horizontal) = 0;
  virtual TextView* AddTextView(const std::string& accessibleName) = 0;
  virtual Tabs* AddTabs(const std::string& accessibleName) = 0;
  virtual List* AddList(const std::string& accessibleName) = 0;
  virtual TextArea* AddTextArea(const std::string& accessibleName) = 0;
  // Null where the engine that shows pages of the web is not installed.
  virtual Browser* AddBrowser(const std::string& accessibleName) = 0;
  // A text at the foot of the window, behind those that were added before. It has room for `width` pixels,
  // and the last one all that is free; what is longer is shortened in its middle, and the tool tip has it
  // whole.
  virtual Label* AddStatusText(int width) = 0;
  // Keys that work wherever the focus is in this window, e.g. "PgUp".
  virtual void AddShortcut(const std::string& key, std::function<void()> handler) = 0;

  // Height of a row of boxes and buttons in the person's font, pixels.
  virtual int RowHeight() const = 0;
  // Places the window where the person left it the last time, which the desktop keeps under `name`; the first
  // time at `first`.
  virtual void KeepPlaceAs(const std::string& name, const WindowPlace& first) = 0;
  // The accessible name of the control under the mouse pointer; empty if none is.
  virtual std::string NameUnderPointer() const = 0;

  std::function<void()> OnResize;
  // Escape was pressed on a control that has no use for it, such as a button.
  std::function<void()> OnEscape;
  // The frame's close button: true lets the window close.
  std::function<bool()> OnCloseRequest;
};

class Timer {
 public:
  virtual ~Timer() = default;
  virtual void Start(int milliseconds) = 0;
  virtual void Stop() = 0;
  std::function<void()> OnTick;
};

// Tells when a file may hold something else. Costs nothing while nothing happens.
class FileWatch {
 public:
  virtual ~FileWatch() = default;
  // Backslash form; empty: no file.
  virtual void Watch(const std::string& path) = 0;
  // The file or a name in its folder has changed and has been left alone for a moment since, or the person
  // has come back to the program. Not while a dialog stands open, but behind it.
  std::function<void()> OnChange;
};

enum class Answer { Yes, No, Neither };

class Dialogs {
 public:
  virtual ~Dialogs() = default;
  // F1 was pressed in a dialog: the text of the message or question, or the title of the file dialog.
  std::function<void(const std::string&)> OnHelp;
  virtual void Message(const std::string& text) = 0;
  // Yes and No; Escape and closing the box mean No. `yesIsDefault` says which one Enter takes.
  virtual bool Ask(const std::string& text, bool yesIsDefault) = 0;
  // The same question where No would lose something: Enter takes Yes, and Cancel, Escape and closing the box
  // are neither answer.
  virtual Answer AskBeforeLosing(const std::string& text) = 0;
  // A question with answers of its own: the index of the button pressed. `labels` have "&" before their
  // mnemonics. Enter takes the one numbered `onEnter`; Escape and closing the box take `onEscape`.
  virtual int Choose(const std::string& text, const std::vector<std::string>& labels, int onEnter,
                     int onEscape) = 0;
  // A text that the person enters, `value` at first; nothing if they cancelled. What `check` refuses keeps
  // the box open, with the reason it gave; empty accepts.
  virtual std::optional<std::string> AskText(const std::string& title, const std::string& label,
                                             const std::string& value,
                                             const std::function<std::string(const std::string&)>& check) = 0;
  // The chosen path in backslash form, empty if the person cancelled. `start` is where the dialog starts: a
  // folder, or a file that Enter then takes, and to save one that is not there yet; empty for the current
  // folder. `accept` is on the button that
  // takes the choice. ChooseToSave asks itself before it returns an existing file.
  virtual std::string ChooseToOpen(const std::string& title, const std::string& filter,
                                   const std::string& start, const std::string& accept = "Open") = 0;
  virtual std::string ChooseToSave(const std::string& title, const std::string& filter,
                                   const std::string& start) = 0;
};

// Makes windows, timers and the like. Everything it hands out lives as long as the toolkit.
class Toolkit {
 public:
  virtual ~Toolkit() = default;
  // `main`: the window whose closing ends the program; others are tool windows above it.
  virtual Window* NewWindow(bool main) = 0;
  // A window of its own beside the main one; it can be used while a dialog stands above that.
  virtual Window* NewSeparateWindow() = 0;
  virtual Timer* NewTimer() = 0;
  // A picture of `width` by `height` device pixels that show the logical rectangle `shown`, of which `ratio`
  // make a logical pixel. What is not painted is see-through, or white. Throws Failure if it is too large for
  // the machine's memory.
  virtual std::unique_ptr<Image> NewImage(int width, int height, const Box& shown, float ratio,
                                          bool transparent) = 0;
  virtual FileWatch* NewFileWatch() = 0;
  virtual void Quit() = 0;
  // What it is made of, with its version.
  virtual std::string Version() const = 0;
  virtual void CopyText(const std::string& text) = 0;
};

// In use by the whole program; start-up and tests set them.
extern Dialogs* TheDialogs;
extern Toolkit* TheToolkit;

}  // namespace kelvane
