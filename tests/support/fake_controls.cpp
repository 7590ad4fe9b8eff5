#include "tests/support/fake_controls.h"

#include <algorithm>

#include <gtest/gtest.h>

namespace kelvane {
namespace {

// Puts a new object into a list of owners and hands it out.
template <typename T>
T* Add(std::vector<std::unique_ptr<T>>& list) {
  list.push_back(std::make_unique<T>());
  return list.back().get();
}

}  // namespace

void FakeButton::Click() {
  if (enabled && OnClick) OnClick();
}

void FakeTextBox::Type(const std::string& newText) {
  text = newText;
  allSelected = false;
  if (OnChange) OnChange();
}

void FakeTextBox::PressEnter() {
  if (OnEnter) OnEnter();
}

void FakeTextBox::PressEscape() {
  if (OnEscape) OnEscape();
}

void FakeScrollBar::SetRange(float newLeast, float newMost, float newPage, float newValue) {
  least = newLeast;
  most = newMost;
  page = newPage;
  value = newValue;
}

void FakeScrollBar::Scroll(float newValue) {
  value = newValue;
  if (OnScroll) OnScroll(newValue);
}

void FakeTextView::Show(const std::vector<TextBlock>& newBlocks) {
  blocks = newBlocks;
  top = {};
  marked.clear();
}

bool FakeTextView::Find(const std::string& text, bool) {
  found = text;
  return Words().find(text) != std::string::npos;
}

std::string FakeTextView::Words() const {
  std::string words;
  for (const TextBlock& block : blocks)
    for (const TextLine& line : block.lines) words += WordsOf(line) + "\n";
  return words;
}

void FakeTabs::Click(const std::string& caption) {
  const auto found = std::ranges::find(captions, caption);
  ASSERT_NE(found, captions.end()) << "No tab " << caption;
  chosen = static_cast<int>(found - captions.begin());
  if (OnChosen) OnChosen(chosen);
}

void FakeList::SetRows(const std::vector<Row>& newRows) {
  rows = newRows;
  chosen = -1;
}

void FakeList::Click(const std::string& text) {
  const auto found = std::ranges::find(rows, text, &Row::text);
  ASSERT_NE(found, rows.end()) << "No row " << text;
  chosen = static_cast<int>(found - rows.begin());
  if (OnChosen) OnChosen(chosen);
}

void FakeTextArea::Type(const std::string& newText) {
  text = newText;
  if (OnChange) OnChange();
}

void FakeBrowser::Open(const std::string& newHome, const std::string& newOffline) {
  home = newHome;
  offline = newOffline;
}

void FakeMenuEntry::SetCaption(const std::string& newCaption) {
  caption = newCaption;
  literal = false;
}

void FakeMenuEntry::SetLiteralCaption(const std::string& newCaption) {
  caption = newCaption;
  literal = true;
}

void FakeMenuEntry::Choose() {
  ASSERT_TRUE(enabled) << caption << " is not enabled";
  if (OnChosen) OnChosen();
}

Menu* FakeMenu::AddMenu(const std::string& menuCaption) {
  FakeMenu* menu = Add(menus);
  menu->caption = menuCaption;
  return menu;
}

MenuEntry* FakeMenu::AddEntry(const std::string& entryCaption, const std::string& key) {
  FakeMenuEntry* entry = Add(entries);
  entry->caption = entryCaption;
  entry->key = key;
  return entry;
}

FakeMenuEntry* FakeMenu::Find(const std::string& entryCaption) {
  std::vector<FakeMenuEntry*> all;
  Collect(all);
  for (FakeMenuEntry* entry : all)
    if (entry->caption == entryCaption) return entry;
  return nullptr;
}

void FakeMenu::Collect(std::vector<FakeMenuEntry*>& all) {
  for (const auto& entry : entries) all.push_back(entry.get());
  for (const auto& menu : menus) menu->Collect(all);
}

void FakeMenu::Open() {
  if (OnOpen) OnOpen();
  for (const auto& menu : menus) menu->Open();
}

void FakeWindow::ChooseEntry(const std::string& caption) {
  for (const auto& menu : menus) menu->Open();
  if (FakeMenuEntry* entry = Entry(caption)) entry->Choose();
}

void FakeWindow::ClickButton(const std::string& caption) {
  if (FakeButton* button = ButtonOf(caption)) button->Click();
}

void FakeWindow::PressShortcut(const std::string& key) {
  for (const auto& [shortcut, handler] : shortcuts) {
    if (shortcut == key) return handler();
  }
  for (FakeMenuEntry* entry : AllEntries()) {
    if (entry->key == key) return entry->Choose();
  }
  ADD_FAILURE() << "No shortcut " << key;
}

void FakeWindow::ClickFrameClose() {
  if (!OnCloseRequest || OnCloseRequest()) visible = false;
}

FakeMenuEntry* FakeWindow::Entry(const std::string& caption) {
  for (const auto& menu : menus)
    if (FakeMenuEntry* entry = menu->Find(caption)) return entry;
  ADD_FAILURE() << "No menu entry " << caption;
  return nullptr;
}

FakeButton* FakeWindow::ButtonOf(const std::string& caption) {
  for (const auto& button : buttons)
    if (button->caption == caption) return button.get();
  ADD_FAILURE() << "No button " << caption;
  return nullptr;
}

FakeTextBox* FakeWindow::BoxOf(const std::string& name) {
  for (const auto& box : boxes)
    if (box->name == name) return box.get();
  ADD_FAILURE() << "No text box " << name;
  return nullptr;
}

std::vector<FakeMenuEntry*> FakeWindow::AllEntries() {
  std::vector<FakeMenuEntry*> all;
  for (const auto& menu : menus) menu->Collect(all);
  return all;
}

void FakeWindow::SetWindowPlace(const WindowPlace& newPlace) {
  place = newPlace;
  if (visible && OnResize) OnResize();
}

void FakeWindow::Show() {
  visible = true;
  if (OnResize) OnResize();
}

Menu* FakeWindow::AddMenu(const std::string& caption) {
  FakeMenu* menu = Add(menus);
  menu->caption = caption;
  return menu;
}

Canvas* FakeWindow::AddCanvas() {
  return Add(canvases);
}

void FakeWindow::SetCanvasPlace(Canvas* canvas, const Place& canvasPlace) {
  for (const auto& own : canvases) {
    if (own.get() != canvas) continue;
    own->pixelWidth = canvasPlace.width;
    own->pixelHeight = canvasPlace.height;
    return;
  }
  ADD_FAILURE() << "A canvas of another window was placed";
}

Label* FakeWindow::AddLabel(const std::string& text) {
  FakeLabel* label = Add(labels);
  label->text = text;
  return label;
}

Button* FakeWindow::AddButton(const std::string& caption, const IconDrawing& icon,
                              const std::string& toolTip) {
  FakeButton* button = Add(buttons);
  button->caption = caption;
  button->icon = icon;
  button->toolTip = toolTip;
  return button;
}

TextBox* FakeWindow::AddTextBox(const std::string& accessibleName, bool fixedPitch) {
  FakeTextBox* box = Add(boxes);
  box->name = accessibleName;
  box->fixedPitch = fixedPitch;
  return box;
}

TextBox* FakeWindow::AddPlainTextBox(const std::string& accessibleName) {
  return AddTextBox(accessibleName, false);
}

TextView* FakeWindow::AddTextView(const std::string&) {
  return Add(views);
}

Tabs* FakeWindow::AddTabs(const std::string&) {
  return Add(tabs);
}

List* FakeWindow::AddList(const std::string&) {
  return Add(lists);
}

TextArea* FakeWindow::AddTextArea(const std::string&) {
  return Add(areas);
}

Browser* FakeWindow::AddBrowser(const std::string&) {
  return hasEngine ? Add(browsers) : nullptr;
}

ScrollBar* FakeWindow::AddScrollBar(bool horizontal) {
  FakeScrollBar* bar = Add(bars);
  bar->horizontal = horizontal;
  return bar;
}

Label* FakeWindow::AddStatusText(int width) {
  FakeLabel* label = Add(labels);
  label->place.width = width;
  return label;
}

void FakeWindow::AddShortcut(const std::string& key, std::function<void()> handler) {
  shortcuts.emplace_back(key, std::move(handler));
}

void FakeTimer::Tick() {
  if (interval > 0 && OnTick) OnTick();
}

Window* FakeToolkit::NewWindow(bool main) {
  FakeWindow* window = Add(windows);
  window->main = main;
  window->hasEngine = hasEngine;
  return window;
}

Timer* FakeToolkit::NewTimer() {
  return Add(timers);
}

void FakeToolkit::TickAll() {
  for (const auto& timer : timers) timer->Tick();
}

}  // namespace kelvane
