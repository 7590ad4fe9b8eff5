#pragma once

// The fixture of tests that use the whole editor: started as the program starts, on fakes.

#include <string>

#include "app/startup.h"
#include "document/paper.h"
#include "papers/paper_commands.h"
#include "tests/support/program_files.h"
#include "tests/support/program_test.h"
#include "typography/glyphs.h"

namespace kelvane {

class EditorTest : public ProgramTest {
 protected:
  EditorTest() { PutProgramFiles(files); }

  // Starts the editor; `window` and `canvas` are those of the real main window from here on.
  void Start(const std::string& pageFile = {}) {
    ASSERT_TRUE(StartUp("\\Kelvane"));
    window = static_cast<FakeWindow*>(Form1);
    canvas = static_cast<RecordingCanvas*>(Picture1);
    ShowEditor(pageFile);
  }

  // Chooses an anchor and clicks on the page.
  void PlaceAt(const std::string& anchor, float x, float y) {
    window->ClickButton(anchor);
    canvas->Click(x, y);
  }

  std::string Content(const std::string& path) const {
    const auto file = files.contents.find(path);
    return file == files.contents.end() ? "(no such file)" : file->second;
  }
};

}  // namespace kelvane
