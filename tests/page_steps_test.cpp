// Steps back and forward on several pages of a paper: their bytes, and what they keep.

#include <map>
#include <random>

#include "document/page.h"
#include "editing/differences.h"
#include "editing/edit.h"
#include "tests/support/editor_test.h"

namespace kelvane {
namespace {

class PageStepsTest : public EditorTest {
 protected:
  std::mt19937 random{11};
  std::size_t Roll(std::size_t sides) { return random() % sides; }

  static std::vector<std::string> LinesOf(const std::string& text) {
    std::vector<std::string> lines;
    for (std::size_t at = 0; at < text.size();) {
      const std::size_t end = text.find('\n', at) + 1;
      lines.push_back(text.substr(at, end - at));
      at = end;
    }
    return lines;
  }
  static std::string Joined(const std::vector<std::string>& lines) {
    std::string text;
    for (const std::string& line : lines) text += line;
    return text;
  }

  // Few different lines, so that many are the same.
  std::string Entry() {
    return std::to_string(Roll(5)) + " 20 m 11 F0 (" + std::string(Roll(4), 'x') + ") 1 s\r\n";
  }

  // Changes lines here and there, brings, takes away and moves some.
  std::string Edited(const std::string& text) {
    std::vector<std::string> lines = LinesOf(text);
    const auto place = [&](std::size_t more) {
      return lines.begin() + static_cast<std::ptrdiff_t>(Roll(lines.size() + more));
    };
    for (std::size_t times = Roll(5) + 1; times > 0; --times) {
      const std::size_t kind = lines.empty() ? 0 : Roll(5);
      if (kind < 2) lines.insert(place(1), Entry());
      if (kind == 2) *place(0) = Entry();
      if (kind == 3) lines.erase(place(0));
      if (kind == 4) std::swap(*place(0), *place(0));
    }
    if (Roll(40) == 0) lines.clear();
    return Joined(lines);
  }

  void Edit() {
    EditPage("edit", [this](Page& page) {
      if (Roll(4) > 0) page.text = Edited(page.text);
      if (Roll(3) > 0) return;
      page.drawings += std::to_string(Roll(90)) + " 1 2 3 4 5 1\r\n";
      ++page.drawingCount;
    });
  }

  static std::size_t Kept(const Differences& differences) {
    std::size_t bytes = 0;
    for (const Difference& difference : differences)
      bytes += difference.before.size() + difference.after.size();
    return bytes;
  }
};

struct Model {
  std::vector<Page> states = {{}};
  std::size_t now = 0;
};

TEST_F(PageStepsTest, ThousandsOfEditsAndTurnsAgreeWithTheModel) {
  Start();
  dialogs.AnswerSave("\\P\\Essay.001");
  ASSERT_TRUE(SavePaper());
  std::map<int, Model> models;
  for (int act = 0; act < 6000 && !HasFailure(); ++act) {
    SCOPED_TRACE(act);
    Model& model = models[CurrentPageNumber];
    const std::size_t kind = Roll(20);
    if (kind < 10) {
      Edit();
      if (ThePage == model.states[model.now]) continue;
      model.states.resize(++model.now);
      model.states.push_back(ThePage);
    } else if (kind < 14) {
      EXPECT_EQ(StepBack().taken, model.now > 0);
      model.now -= model.now > 0;
    } else if (kind < 17) {
      const bool more = model.now + 1 < model.states.size();
      EXPECT_EQ(StepForward().taken, more);
      model.now += more;
    } else if (kind == 17) {
      EXPECT_TRUE(SavePaper());
    } else {
      const int page = static_cast<int>(Roll(4)) + 1;
      if (page > CurrentPageNumber && ThePage.Empty()) dialogs.AnswerYes();
      GoToPage(page);
    }
    const Model& shown = models[CurrentPageNumber];
    EXPECT_TRUE(ThePage == shown.states[shown.now]);
  }
  EXPECT_EQ(models.size(), 4U);
}

// What a step keeps is in proportion to what was changed, not to where.
TEST_F(PageStepsTest, EditsOfManyPlacesKeepLittle) {
  std::vector<std::string> lines;
  for (int i = 0; i < 10000; ++i) lines.push_back("10 " + std::to_string(i) + " m 11 F0 (run) 1 s\r\n");
  const std::string page = Joined(lines);
  const std::size_t line = lines[5000].size();
  const auto kept = [&](const std::vector<std::string>& edited) {
    const Differences differences = Compare(page, Joined(edited));
    std::string text = page;
    Replace(text, differences, true);
    EXPECT_TRUE(text == Joined(edited));
    Replace(text, differences, false);
    EXPECT_TRUE(text == page);
    return Kept(differences);
  };
  std::vector<std::string> moved = lines;
  for (std::size_t i = 7; i < moved.size(); i += 1000) moved[i].insert(0, "1");
  EXPECT_LE(kept(moved), 10 * (2 * line + 1));
  std::vector<std::string> fewer = lines;
  for (std::size_t i = 9000; i > 0; i -= 1000) fewer.erase(fewer.begin() + static_cast<std::ptrdiff_t>(i));
  EXPECT_LE(kept(fewer), 9 * line);
  std::vector<std::string> turned = lines;  // the last one comes first
  std::rotate(turned.begin(), turned.end() - 1, turned.end());
  EXPECT_LE(kept(turned), 2 * line);
}

}  // namespace
}  // namespace kelvane
