#include "tests/support/fake_controls.h"

#include <gtest/gtest.h>

namespace kelvane {
void FakeTextBox::Type(const std::string& newText) {
  text = newText;
  allSelected = false;
  if (OnChange) OnChange();
}

void FakeScrollBar::SetRange(float newLeast, float newMost, float newPage, float newValue) {
  least = newLeast;
  most = newMost;
  page = newPage;
  value = newValue;
}

void FakeMenuEntry::Choose() {
  ASSERT_TRUE(enabled) << caption << " is not enabled";
  if (OnChosen) OnChosen();
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

void FakeWindow::SetCanvasPlace(Canvas* canvas, const Place& canvasPlace) {
  for (const auto& own : canvases) {
    if (own.get() != canvas) continue;
    own->pixelWidth = canvasPlace.width;
    own->pixelHeight = canvasPlace.height;
    return;
  }
  ADD_FAILURE() << "A canvas of another window was placed";
}

Label* FakeWindow::AddStatusText(int width) {
  FakeLabel* label = Add(labels);
  label->place.width = width;
  return label;
}

void FakeToolkit::TickAll() {
  for (const auto& timer : timers) timer->Tick();
}

}  // namespace kelvane
