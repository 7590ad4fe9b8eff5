#include "document/page.h"
#include "tests/support/editor_test.h"

namespace kelvane {
namespace {

using UndoTest = EditorTest;

// Large pages give up old steps instead of memory, but never the last one. Drawings count as text does.
TEST_F(UndoTest, LargePagesKeepFewerSteps) {
  for (std::string* part : {&PageText, &DrawingList}) {
    Start();
    part->assign(std::size_t{40} << 20, '0');
    PlaceAt("Top Left", 72, 99);
    canvas->Type("a\rb\r");
    part->assign(2, '0');
    for (int i = 0; i < 2; ++i) window->PressShortcut("Ctrl+Z");
    EXPECT_EQ(part->size() >> 20, 40U);
    EXPECT_NE(PageText.find("(a)"), std::string::npos);
    EXPECT_EQ(PageText.find("(b)"), std::string::npos);
  }
}

}  // namespace
}  // namespace kelvane
