#pragma once

// The fixture of every test that touches the program's state: start-up defaults, files in memory, scripted
// dialogs, and a main window of fakes whose handles are filled.

#include <gtest/gtest.h>

#include <string>

#include "platform/failure.h"
#include "tests/support/fake_clipboard.h"
#include "tests/support/fake_controls.h"
#include "tests/support/fake_printer.h"
#include "tests/support/memory_files.h"
#include "tests/support/recording_canvas.h"
#include "tests/support/scripted_dialogs.h"

namespace kelvane {

class ProgramTest : public ::testing::Test {
 protected:
  ProgramTest();
  ~ProgramTest() override;

  void TearDown() override;

  // The message of the Failure that `act` throws; fails the test if it throws none.
  template <typename Act>
  static std::string FailureOf(Act act) {
    try {
      act();
    } catch (const Failure& failure) {
      return failure.what();
    }
    ADD_FAILURE() << "Nothing failed";
    return {};
  }

  // The check marks of a menu: '1' for each entry that has one, '0' for the others.
  template <typename Entries>
  static std::string CheckMarks(const Entries& entries) {
    std::string marks;
    for (const MenuEntry* entry : entries) marks += entry->Checked() ? '1' : '0';
    return marks;
  }

  MemoryFiles files;
  ScriptedDialogs dialogs;
  FakeToolkit toolkit;
  FakeClipboard clipboard;
  FakePrinter printer;
  // The window behind Form1, and the canvas behind Picture1, until a test builds the real main window.
  FakeWindow* window = nullptr;
  RecordingCanvas* canvas = nullptr;
};

}  // namespace kelvane
