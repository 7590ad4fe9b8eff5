#include "app/main_window.h"

#include <cctype>
#include <map>
#include <set>
#include <tuple>

#include "app/commands.h"
#include "editing/cursor.h"
#include "editing/keyboard.h"
#include "tests/support/editor_test.h"
#include "typography/typefaces.h"
#include "typography/view.h"

namespace kelvane {
namespace {

class MainWindowTest : public EditorTest {
 protected:
  // Gives the area beside the scroll bars a size in twips.
  void Resize(float width, float height) { window->SetWindowPlace({0, 0, width, height}); }

  static FakeMenu* MenuOf(const std::vector<std::unique_ptr<FakeMenu>>& menus, const std::string& path) {
    const std::size_t slash = path.find('/');
    for (const auto& menu : menus) {
      if (menu->caption != path.substr(0, slash)) continue;
      return slash == std::string::npos ? menu.get() : MenuOf(menu->menus, path.substr(slash + 1));
    }
    ADD_FAILURE() << "No menu " << path;
    return nullptr;
  }

  // The rows of the table with their entries, which stand in each menu in the table's order.
  std::map<std::string, FakeMenuEntry*> Rows() const {
    std::map<std::string, FakeMenuEntry*> rows;
    std::map<std::string, std::size_t> taken;
    for (const Command& command : Commands()) {
      if (command.menu.empty() || command.id.empty()) continue;
      rows[command.id] = MenuOf(window->menus, command.menu)->entries.at(taken[command.menu]++).get();
    }
    return rows;
  }
};

TEST_F(MainWindowTest, WithoutItsFontsOrHelpTheEditorDoesNotStart) {
  const std::pair<std::string, std::string> missing[] = {{"MATH0.PSF", "ERROR: Missing file MATH0.PSF"},
                                                         {"QRX.HLP", "ERROR: Missing file QRX.HLP"},
                                                         {"CB.WT", "ERROR - Unknown typeface: CB"},
                                                         {"MATH0.WT", "ERROR - Unknown typeface: MATH0"}};
  const auto expectRefusal = [&](const std::string& message) {
    dialogs.messages.clear();
    EXPECT_FALSE(StartUp("\\Kelvane\\"));
    EXPECT_EQ(dialogs.messages, std::vector<std::string>{message});
  };
  for (const auto& [name, message] : missing) {
    const auto file = files.contents.extract("\\Kelvane\\" + name);
    expectRefusal(message);
    files.contents["\\Kelvane\\" + name] = file.mapped();
  }
  files.contents["\\Kelvane\\MATH0.PSF"] = "/CharacterDefs\r\n/.notdef { } def\r\n";
  expectRefusal("ERROR: MATH0.PSF file format");
  EXPECT_EQ(toolkit.windows.size(), 1u);  // the fixture's own
}

TEST_F(MainWindowTest, RowsAndButtonsDoSomethingOrAreDisabled) {
  Start();
  const auto rows = Rows();
  EXPECT_EQ(rows.size(), window->AllEntries().size()) << "an id stands twice";
  for (const auto& [id, entry] : rows) EXPECT_TRUE(entry->OnChosen || !entry->enabled) << id;
  for (const auto& button : window->buttons) {
    SCOPED_TRACE(button->caption);
    EXPECT_TRUE(button->OnClick);
    EXPECT_FALSE(button->toolTip.empty());
    EXPECT_GT(button->place.width, 0);
  }
  // The dot of an anchor's icon lies where the anchor is.
  const IconShape left = window->ButtonOf("Top Left")->icon.back();
  const IconShape right = window->ButtonOf("Bottom Right")->icon.back();
  EXPECT_TRUE(left.x0 < right.x0 && left.y0 < right.y0);
}

TEST_F(MainWindowTest, KeysAreUniqueAndMnemonicsInTheirMenu) {
  std::set<std::string> keys;
  std::set<std::string> menus;
  std::set<std::string> mnemonics;
  const auto note = [&](const std::string& menu, const std::string& caption) {
    const std::size_t sign = caption.find('&');
    // That caption is fixed and shares its letter with another.
    if (sign == std::string::npos || caption == "&Output As ASCII") return;
    const auto letter = static_cast<char>(std::tolower(static_cast<unsigned char>(caption.at(sign + 1))));
    EXPECT_TRUE(mnemonics.insert(menu + ':' + letter).second) << menu << ' ' << caption;
  };
  for (const Command& command : Commands()) {
    EXPECT_TRUE(command.key.empty() || keys.insert(command.key).second) << command.key;
    if (command.menu.empty()) continue;
    const std::size_t slash = command.menu.find('/');
    const std::string top = command.menu.substr(0, slash);
    if (menus.insert(top).second) note("", top);
    if (top != command.menu && menus.insert(command.menu).second) note(top, command.menu.substr(slash + 1));
    if (!command.literal) note(command.menu, command.caption);
  }
}

TEST_F(MainWindowTest, BoxAndCanvasFollowTheWindow) {
  Start();
  const auto expectPixels = [&](int boxWidth, int canvasWidth, int canvasHeight) {
    EXPECT_EQ(
        std::tuple(static_cast<FakeTextBox*>(Text4)->place.width, canvas->pixelWidth, canvas->pixelHeight),
        std::tuple(boxWidth, canvasWidth, canvasHeight));
  };
  Resize(6000, 4000);
  expectPixels(4785 / 15, 5640 / 15, 219);  // 3280 twips high
  Resize(1499, 2000);
  Resize(2000, 999);
  expectPixels(4785 / 15, 5640 / 15, 219);
  Resize(1500, 1000);
  EXPECT_EQ(std::tuple(static_cast<FakeTextBox*>(Text4)->place.width, canvas->pixelWidth),
            std::tuple(285 / 15, 1140 / 15));
}

TEST_F(MainWindowTest, AWindowThatStartsTooSmallIsLaidOutLikeAUsualOne) {
  files.contents["\\Kelvane\\QRX.DAT"] = "FormWidth = 1350\r\nFormHeight = 900\r\n";
  Start();
  EXPECT_GT(static_cast<FakeTextBox*>(Text4)->place.width, 100);
  EXPECT_GT(static_cast<FakeTextBox*>(Text4)->place.top, 0) << "below the script buttons";
}

TEST_F(MainWindowTest, NothingIsLaidOutWhileTheWindowIsBuilt) {
  ASSERT_TRUE(StartUp("\\Kelvane"));
  window = static_cast<FakeWindow*>(Form1);
  Form1_Resize();
  EXPECT_EQ(static_cast<FakeTextBox*>(Text4)->place.width, 0);
  CursorMode = 3;
  window->Show();
  EXPECT_EQ(CursorMode, 3);
}

// All of it can be seen in the smallest window that start-up makes.
TEST_F(MainWindowTest, ControlsDoNotOverlapInTheFirstWindow) {
  Start();
  std::vector<std::pair<std::string, Place>> places;
  for (const auto& button : window->buttons) places.emplace_back(button->caption, button->place);
  for (const auto& box : window->boxes) places.emplace_back(box->name, box->place);
  for (const auto& bar : window->bars) places.emplace_back("bar", bar->place);
  places.emplace_back("label", static_cast<FakeLabel*>(FontLabel)->place);
  places.emplace_back("Font Size label", static_cast<FakeLabel*>(Form1Parts.sizeLabel)->place);
  places.emplace_back("canvas", Place{24, 48, canvas->pixelWidth, canvas->pixelHeight});
  // The scroll bars lie beside the inner size, which is all that the fake window has.
  constexpr int kRight = 640 + kScrollBarPixels;
  constexpr int kBottom = 480 + kScrollBarPixels;
  for (std::size_t i = 0; i < places.size(); ++i) {
    const auto& [name, a] = places[i];
    EXPECT_TRUE(a.left >= 0 && a.top >= 0 && a.left + a.width <= kRight && a.top + a.height <= kBottom)
        << name;
    for (std::size_t k = 0; k < i; ++k) {
      const Place& b = places[k].second;
      const bool apart = a.left + a.width <= b.left || b.left + b.width <= a.left ||
                         a.top + a.height <= b.top || b.top + b.height <= a.top;
      EXPECT_TRUE(apart) << name << " and " << places[k].first;
    }
  }
}

TEST_F(MainWindowTest, ScrollBarsShowTheView) {
  Start();
  auto* bar = static_cast<FakeScrollBar*>(Form1Parts.vertical);
  EXPECT_FLOAT_EQ(bar->value, VisibleTop);
  bar->Scroll(200);
  EXPECT_FLOAT_EQ(VisibleTop, 200);
  EXPECT_FLOAT_EQ(bar->value, 200);
  static_cast<FakeScrollBar*>(Form1Parts.horizontal)->Scroll(100);
  EXPECT_FLOAT_EQ(VisibleLeft, 100);
  window->ChooseEntry("Fit &Page");
  EXPECT_FLOAT_EQ(bar->value, VisibleTop);
  EXPECT_FLOAT_EQ(bar->page, VisibleBottom - VisibleTop);
}

}  // namespace
}  // namespace kelvane
