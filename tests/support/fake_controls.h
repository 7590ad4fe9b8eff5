#pragma once

// Windows and controls without a screen. They always hand out objects, remember what they were told, and let
// a test do what a person does.

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/controls.h"
#include "platform/text_view.h"
#include "tests/support/recording_canvas.h"

namespace kelvane {

// Puts a new object into a list of owners and hands it out.
template <typename T, typename... Parts>
T* Add(std::vector<std::unique_ptr<T>>& list, const Parts&... parts) {
  return list.emplace_back(std::make_unique<T>(parts...)).get();
}

// What every control remembers.
template <typename Base>
class FakeControl : public Base {
 public:
  Place place;
  void SetPlace(const Place& newPlace) override { place = newPlace; }
  bool shown = true;
  void SetVisible(bool isShown) override { shown = isShown; }
};

class FakeLabel : public FakeControl<Label> {
 public:
  explicit FakeLabel(std::string firstText = {}) : text(std::move(firstText)) {}
  std::string text;
  int repaints = 0;
  void SetText(const std::string& newText) override { text = newText; }
  std::string Text() const override { return text; }
  void Repaint() override { ++repaints; }
};

class FakeButton : public FakeControl<Button> {
 public:
  FakeButton(std::string itsCaption, IconDrawing itsIcon, std::string tip)
      : caption(std::move(itsCaption)), toolTip(std::move(tip)), icon(std::move(itsIcon)) {}
  std::string caption;
  std::string toolTip;
  IconDrawing icon;
  bool down = false;
  void SetDown(bool isDown) override { down = isDown; }
  bool enabled = true;
  void SetEnabled(bool isEnabled) override { enabled = isEnabled; }
  // One that is not enabled does not hear it.
  void Click() {
    if (enabled && OnClick) OnClick();
  }
};

class FakeTextBox : public FakeControl<TextBox> {
 public:
  explicit FakeTextBox(std::string itsName = {}, bool isFixedPitch = false)
      : name(std::move(itsName)), fixedPitch(isFixedPitch) {}
  std::string name;
  std::string text;
  bool fixedPitch = false;
  bool allSelected = false;
  void SetText(const std::string& newText) override { text = newText; }
  std::string Text() const override { return text; }
  void Focus() override { FocusedControl = static_cast<TextBox*>(this); }
  void SelectAll() override { allSelected = true; }
  // The person puts another text in.
  void Type(const std::string& newText);
  void PressEnter() { OnEnter ? OnEnter() : void(); }
  void PressEscape() { OnEscape ? OnEscape() : void(); }
  void PressDown() { OnDown ? OnDown() : void(); }
};

class FakeScrollBar : public FakeControl<ScrollBar> {
 public:
  explicit FakeScrollBar(bool isHorizontal) : horizontal(isHorizontal) {}
  bool horizontal = false;
  float least = 0;
  float most = 0;
  float page = 0;
  float value = 0;
  void SetRange(float newLeast, float newMost, float newPage, float newValue) override;
  void Scroll(float newValue) { OnScroll(value = newValue); }
};

class FakeTextView : public FakeControl<TextView> {
 public:
  std::vector<TextBlock> blocks;
  TextPlace top;
  std::vector<std::string> marked;
  std::string found;  // what was last looked for
  int textSize = 0;
  std::string printed;  // title
  bool copied = false;
  void Show(const std::vector<TextBlock>& newBlocks) override;
  void GoTo(TextPlace newTop) override { top = newTop; }
  TextPlace Top() const override { return top; }
  void Mark(const std::vector<std::string>& words) override { marked = words; }
  bool Find(const std::string& text, bool backwards) override;
  void ChangeTextSize(int steps) override { textSize = steps == 0 ? 0 : textSize + steps; }
  void KeepTextSizeAs(const std::string&) override {}
  void Print(const std::string& title) override { printed = title; }
  void CopyAll() override { copied = true; }
  void Focus() override { FocusedControl = static_cast<TextView*>(this); }
  // All words, a line for each line.
  std::string Words() const;
};

class FakeTabs : public FakeControl<Tabs> {
 public:
  std::vector<std::string> captions;
  int chosen = 0;
  void AddTab(const std::string& caption) override { captions.push_back(caption); }
  void Choose(int tab) override { chosen = tab; }
  int Chosen() const override { return chosen; }
  // The person chooses a tab.
  void Click(const std::string& caption);
};

class FakeList : public FakeControl<List> {
 public:
  std::vector<Row> rows;
  int chosen = -1;
  void SetRows(const std::vector<Row>& newRows) override;
  void Choose(int row) override { chosen = row; }
  void Focus() override { FocusedControl = static_cast<List*>(this); }
  // The person chooses the first row of that text; a missing one fails the test.
  void Click(const std::string& text);
};

class FakeTextArea : public FakeControl<TextArea> {
 public:
  std::string text;
  void SetText(const std::string& newText) override { text = newText; }
  std::string Text() const override { return text; }
  void Focus() override { FocusedControl = static_cast<TextArea*>(this); }
  void Type(const std::string& newText);
};

class FakeBrowser : public FakeControl<Browser> {
 public:
  std::string home;
  std::string offline;
  std::string done;  // "back forward reload stop "
  void Open(const std::string& newHome, const std::string& newOffline) override;
  void Back() override { done += "back "; }
  void Forward() override { done += "forward "; }
  void Reload() override { done += "reload "; }
  void Stop() override { done += "stop "; }
};

class FakeMenuEntry : public MenuEntry {
 public:
  FakeMenuEntry(std::string firstCaption, std::string keys)
      : caption(std::move(firstCaption)), key(std::move(keys)) {}
  std::string caption;
  std::string key;
  bool literal = false;
  bool checked = false;
  bool enabled = true;
  void SetCaption(const std::string& newCaption) override { Put(newCaption, false); }
  void SetLiteralCaption(const std::string& newCaption) override { Put(newCaption, true); }
  std::string Caption() const override { return caption; }
  void SetChecked(bool isChecked) override { checked = isChecked; }
  bool Checked() const override { return checked; }
  void SetEnabled(bool isEnabled) override { enabled = isEnabled; }
  void SetPicture(const MenuPicture& newPicture) override { picture = newPicture; }
  MenuPicture picture;
  // Choosing it; an entry that is not enabled cannot be chosen.
  void Choose();

 private:
  void Put(const std::string& newCaption, bool isLiteral) { caption = newCaption, literal = isLiteral; }
};

class FakeMenu : public Menu {
 public:
  explicit FakeMenu(std::string itsCaption) : caption(std::move(itsCaption)) {}
  std::string caption;
  std::vector<std::unique_ptr<FakeMenu>> menus;
  std::vector<std::unique_ptr<FakeMenuEntry>> entries;
  int separators = 0;
  Menu* AddMenu(const std::string& menuCaption) override { return Add(menus, menuCaption); }
  MenuEntry* AddEntry(const std::string& entry, const std::string& key) override {
    return Add(entries, entry, key);
  }
  void AddSeparator() override { ++separators; }
  // The entry with that caption, "&" included, here or in a menu below; null if there is none.
  FakeMenuEntry* Find(const std::string& entryCaption);
  // Every entry here and below.
  void Collect(std::vector<FakeMenuEntry*>& all);
  // Opens this menu and those below, so that they refresh what is enabled.
  void Open();
};

class FakeWindow : public Window {
 public:
  explicit FakeWindow(bool isMain) : main(isMain) {}
  bool main = false;
  std::string title;
  bool changed = false;
  WindowPlace place{0, 0, 9600, 7200};
  bool visible = false;
  std::vector<std::unique_ptr<FakeMenu>> menus;
  std::vector<std::unique_ptr<FakeMenu>> popups;
  FakeMenu* popup = nullptr;  // the one that was opened last
  std::vector<std::unique_ptr<RecordingCanvas>> canvases;
  std::vector<std::unique_ptr<FakeLabel>> labels;  // those of the status line too
  std::vector<std::unique_ptr<FakeButton>> buttons;
  std::vector<std::unique_ptr<FakeTextBox>> boxes;
  std::vector<std::unique_ptr<FakeScrollBar>> bars;
  std::vector<std::unique_ptr<FakeTextView>> views;
  std::vector<std::unique_ptr<FakeTabs>> tabs;
  std::vector<std::unique_ptr<FakeList>> lists;
  std::vector<std::unique_ptr<FakeTextArea>> areas;
  std::vector<std::unique_ptr<FakeBrowser>> browsers;
  bool hasEngine = true;  // whether browsers can be made
  std::string pointed;    // name of the control under the pointer
  std::vector<std::pair<std::string, std::function<void()>>> shortcuts;

  // What a person does. ChooseEntry opens the menus first; a missing entry, button, box or shortcut fails the
  // test.
  void ChooseEntry(const std::string& caption);
  void ClickButton(const std::string& caption);
  void PressShortcut(const std::string& key);
  void ClickFrameClose();
  FakeMenuEntry* Entry(const std::string& caption);
  FakeButton* ButtonOf(const std::string& caption);
  FakeTextBox* BoxOf(const std::string& name);
  std::vector<FakeMenuEntry*> AllEntries();

  void SetTitle(const std::string& newTitle) override { title = newTitle; }
  void SetChanged(bool isChanged) override { changed = isChanged; }
  void SetWindowPlace(const WindowPlace& newPlace) override;
  WindowPlace GetWindowPlace() const override { return place; }
  float InnerWidth() const override { return place.width; }
  float InnerHeight() const override { return place.height; }
  // As on a screen, a window hears of its size when it comes up and whenever it is changed.
  void Show() override;
  void Hide() override { visible = false; }
  bool Visible() const override { return visible; }
  void WhenShown(std::function<void()> handler) override { handler(); }
  Menu* AddMenu(const std::string& caption) override { return Add(menus, caption); }
  Menu* AddPopup() override { return Add(popups, std::string()); }
  void ShowPopup(Menu* menu, Canvas*, float, float) override {
    popup = static_cast<FakeMenu*>(menu);
    popup->Open();
  }
  Canvas* AddCanvas() override { return Add(canvases); }
  void SetCanvasPlace(Canvas* canvas, const Place& canvasPlace) override;
  Label* AddLabel(const std::string& text) override { return Add(labels, text); }
  Button* AddButton(const std::string& caption, const IconDrawing& icon, const std::string& tip) override {
    return Add(buttons, caption, icon, tip);
  }
  TextBox* AddTextBox(const std::string& name, bool fixedPitch) override {
    return Add(boxes, name, fixedPitch);
  }
  TextBox* AddPlainTextBox(const std::string& name) override { return AddTextBox(name, false); }
  ScrollBar* AddScrollBar(bool horizontal) override { return Add(bars, horizontal); }
  TextView* AddTextView(const std::string&) override { return Add(views); }
  Tabs* AddTabs(const std::string&) override { return Add(tabs); }
  List* AddList(const std::string&) override { return Add(lists); }
  TextArea* AddTextArea(const std::string&) override { return Add(areas); }
  Browser* AddBrowser(const std::string&) override { return hasEngine ? Add(browsers) : nullptr; }
  Label* AddStatusText(int width) override;
  void AddShortcut(const std::string& key, std::function<void()> handler) override {
    shortcuts.emplace_back(key, std::move(handler));
  }
  int RowHeight() const override { return 26; }
  void KeepPlaceAs(const std::string&, const WindowPlace& first) override { place = first; }
  std::string NameUnderPointer() const override { return pointed; }
};

class FakeTimer : public Timer {
 public:
  int interval = 0;  // milliseconds; 0 until it is started
  void Start(int milliseconds) override { interval = milliseconds; }
  void Stop() override { interval = 0; }
  // Lets one interval pass; nothing happens before it is started.
  void Tick() {
    if (interval > 0 && OnTick) OnTick();
  }
};

class FakeFileWatch : public FileWatch {
 public:
  std::string path;
  void Watch(const std::string& newPath) override { path = newPath; }
};

class FakeToolkit : public Toolkit {
 public:
  std::vector<std::unique_ptr<FakeFileWatch>> watches;
  std::vector<std::unique_ptr<FakeWindow>> windows;
  std::vector<std::unique_ptr<FakeTimer>> timers;
  bool quit = false;
  bool hasEngine = true;   // of windows made from now on
  std::string copiedText;  // on the clipboard
  Window* NewWindow(bool main) override {
    FakeWindow* window = Add(windows, main);
    window->hasEngine = hasEngine;
    return window;
  }
  Window* NewSeparateWindow() override { return NewWindow(false); }
  std::string Version() const override { return "Qt 6"; }
  void CopyText(const std::string& text) override { copiedText = text; }
  Timer* NewTimer() override { return Add(timers); }
  std::unique_ptr<Image> NewImage(int width, int height, const Box&, float, bool transparent) override {
    return std::make_unique<RecordingImage>(width, height, transparent);
  }
  FileWatch* NewFileWatch() override { return Add(watches); }
  void Quit() override { quit = true; }
  // One interval of every timer that runs.
  void TickAll();
};

}  // namespace kelvane
