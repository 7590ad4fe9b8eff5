// Sessions: what a person does with the whole editor and what there is to see, one act or one expectation a
// line. Each file of tests/sessions/ is a test. A line "== " begins a session with a fresh editor, which is
// started by the first act that needs it; indented lines belong to the line above them. In texts \xHH is the
// character of that code, quotes keep blanks at the ends, and "nothing" is the empty text.

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>

#include "app/main_window.h"
#include "document/fields.h"
#include "document/numbers.h"
#include "document/page.h"
#include "editing/cursor.h"
#include "editing/keyboard.h"
#include "editing/notes.h"
#include "platform/handlers.h"
#include "tests/support/editor_test.h"
#include "typography/typefaces.h"

namespace kelvane {
namespace {

using Strings = std::vector<std::string>;

struct Line {
  int number = 0;
  std::string text;
  Strings block;
};

const std::map<std::string, int> kCanvasKeys = {{"Tab", kKeyTab},
                                                {"Enter", kKeyEnter},
                                                {"Ctrl+Enter", kKeyCtrlEnter},
                                                {"Backspace", kKeyBackspace},
                                                {"Escape", kKeyEscape},
                                                {"Left", kKeyLeft},
                                                {"Up", kKeyUp},
                                                {"Right", kKeyRight},
                                                {"Down", kKeyDown},
                                                {"Home", kKeyHome},
                                                {"End", kKeyEnd},
                                                {"Delete", kKeyDelete},
                                                {"Ctrl+Backspace", kKeyWordBackspace}};

constexpr const char* kPointerShapes[] = {"arrow", "move", "falling", "rising", "turn"};

// A script's text as bytes, and bytes as a script shows them.
std::string Bytes(const std::string& shown) {
  std::string bytes;
  for (std::size_t i = 0; i < shown.size(); ++i) {
    const bool code = shown.compare(i, 2, "\\x") == 0 && i + 3 < shown.size();
    bytes += code ? static_cast<char>(HexToInt(shown.substr(i + 2, 2))) : shown[i];
    if (code) i += 3;
  }
  return bytes;
}
std::string Shown(const std::string& bytes) {
  std::string shown;
  for (const char c : bytes) {
    char code[8];
    std::snprintf(code, sizeof code, "\\x%02X", static_cast<unsigned char>(c));
    shown += c < 32 || c > 126 ? code : std::string(1, c);
  }
  return shown;
}

std::string Joined(const Strings& parts, const char* between) {
  std::string all;
  for (const std::string& part : parts) all += (&part == &parts.front() ? "" : between) + part;
  return all;
}

// The content of a file or a list, which ends each line by CR LF.
std::string Lines(const std::string& content) {
  std::string lines = ReplaceAll(Shown(content), "\\x0D\\x0A", "\n");
  if (lines.ends_with('\n')) return lines.substr(0, lines.size() - 1);
  return lines.empty() ? lines : lines + "(no line end)";
}

class Session : public EditorTest {
 public:
  explicit Session(const std::string& scriptFile) : script(scriptFile) {
    for (const char* name :
         {"tplt", "left", "btlt", "bot", "btrt", "right", "tprt", "top", "mid", "point", "cross"})
      files.contents["\\Kelvane\\PVQ" + std::string(name) + ".ICO"] = "an icon";
  }

  void Run(const std::vector<Line>& lines) {
    for (const Line& line : lines) {
      const ::testing::ScopedTrace trace(script.c_str(), line.number, line.text);
      rest = line.text;
      block = line.block;
      const std::string word = Word();
      if (word == "expect") {
        Expect(line);
      } else {
        ExpectNoMessage();
        dialogs.asked.clear();
        clearsBefore[0] = canvas->Paints(Layer::Page);
        clearsBefore[1] = canvas->Paints(Layer::Overlay);
        RunHandler([&] { Do(word); });
      }
    }
    const ::testing::ScopedTrace trace(script.c_str(), lines.back().number, "the end of the session");
    ExpectNoMessage();
    TearDown();
  }

 private:
  void TestBody() override {}

  void ExpectNoMessage() { EXPECT_EQ(First(dialogs.messages), "") << "a message that nobody expects"; }

  // The next word of the line, or what stands between quotes.
  std::string Word() {
    const bool quoted = rest.starts_with('"');
    const std::size_t end = rest.find(quoted ? '"' : ' ', 1);
    const std::string word = rest.substr(quoted, end - quoted);
    rest.erase(0, end == std::string::npos ? end : rest.find_first_not_of(' ', end + 1));
    return word;
  }
  float Number() { return ReadSingle(Word()); }
  // The rest of the line as a text.
  std::string Text() const {
    const bool quoted = rest.size() > 1 && rest.front() == '"' && rest.back() == '"';
    return rest == "nothing" ? "" : quoted ? rest.substr(1, rest.size() - 2) : rest;
  }

  void Begin(const std::string& pageFile) {
    Start(pageFile);
    started = true;
    for (const auto& file : files.contents) canvas->icons.push_back(file.first);
  }
  FakeWindow& Main() {
    if (!started) Begin({});
    return *window;
  }
  // The window on top.
  FakeWindow& Front() {
    for (const auto& other : toolkit.windows)
      if (!other->main && other->visible) return *other;
    return Main();
  }
  FakeTextBox& Box(const std::string& name) {
    static FakeTextBox none;
    FakeTextBox* box = Front().BoxOf(name);
    return box ? *box : none;
  }

  static std::string Caption(const FakeMenuEntry& entry) {
    return entry.literal ? Shown(entry.caption) : ReplaceAll(entry.caption, "&", "");
  }
  using Entries = std::vector<std::pair<std::string, FakeMenuEntry*>>;
  void Collect(const std::vector<std::unique_ptr<FakeMenu>>& menus, const std::string& above, Entries& all) {
    for (const auto& menu : menus) {
      const std::string path = above + ReplaceAll(menu->caption, "&", "") + "/";
      for (const auto& entry : menu->entries) all.emplace_back(path + Caption(*entry), entry.get());
      Collect(menu->menus, path, all);
    }
  }
  // The entries of the menus whose path, without "&", begins so.
  Entries EntriesOf(const std::string& begin) {
    for (const auto& menu : Main().menus) menu->Open();
    Entries all;
    Collect(Main().menus, "", all);
    std::erase_if(all, [&](const auto& entry) { return !entry.first.starts_with(begin); });
    return all;
  }

  void Choose(const std::string& path) {
    for (const auto& [name, entry] : EntriesOf(path))
      if (name == path) return entry->Choose();
    ADD_FAILURE() << "No menu entry " << path;
  }

  // The entries of the open popup that can be chosen, without those of menus below it.
  std::string Popup() {
    Strings captions;
    if (!Main().popup) return {};
    for (const auto& entry : Main().popup->entries)
      if (entry->enabled) captions.push_back(Caption(*entry));
    return Joined(captions, " | ");
  }
  void ChooseFromPopup(const std::string& caption) {
    std::vector<FakeMenuEntry*> all;
    if (Main().popup) Main().popup->Collect(all);
    for (FakeMenuEntry* entry : all)
      if (Caption(*entry) == caption) return entry->Choose();
    ADD_FAILURE() << "No such entry of the popup";
  }

  void Type(const std::string& text) {
    canvas->Type(text);
    keyCount += static_cast<int>(text.size());
  }

  // A key of the page or of the window, once or so many times, or "in" a box.
  void Key(const std::string& key) {
    if (key.ends_with("Tab") && !canvas->takesTab) return (void)canvas->OnTab(key == "Tab");
    const std::string how = Word();
    auto code = kCanvasKeys.find(key);
    int held = 0;
    // The keys of menu entries that can be chosen never come to the page.
    const std::vector<FakeMenuEntry*> entries = Main().AllEntries();
    const bool chooses = std::any_of(entries.begin(), entries.end(),
                                     [&](const auto* entry) { return entry->key == key && entry->enabled; });
    if (code == kCanvasKeys.end() && !chooses) {
      code = kCanvasKeys.find(key.substr(key.rfind('+') + 1));
      if (key.find("Shift+") != std::string::npos) held |= kWithShift;
      if (key.find("Ctrl+") != std::string::npos) held |= kWithControl;
    }
    if (how == "in") return key == "Enter" ? Box(Text()).PressEnter() : Box(Text()).PressEscape();
    for (int times = how.empty() ? 1 : std::stoi(how); times > 0; --times, ++keyCount)
      code != kCanvasKeys.end() ? canvas->Press(code->second | held) : Main().PressShortcut(key);
  }

  // At one or, behind commas, several points; keys are held "with" it.
  void Mouse(void (RecordingCanvas::*event)(float, float, MouseButton)) {
    if (const std::size_t with = rest.find(" with "); with != std::string::npos) {
      const std::string keys = rest.substr(with);
      rest.erase(with);
      canvas->shift = keys.find("Shift") != std::string::npos;
      canvas->control = keys.find("Ctrl") != std::string::npos;
      canvas->alt = keys.find("Alt") != std::string::npos;
      Mouse(event);
      canvas->shift = canvas->control = canvas->alt = false;
      return;
    }
    const float x = Number();
    const std::string y = Word();
    MouseButton button = MouseButton::Left;
    if (rest == "right") button = MouseButton::Right;
    if (rest == "middle") button = MouseButton::Middle;
    // GCC's checks read a temporary of their own too early if the member is reached within the call.
    RecordingCanvas& page = *canvas;
    (page.*event)(x, ReadSingle(y), button);
    if (y.ends_with(',')) Mouse(event);
  }

  // The anchor, and where it says so a click "at" a point.
  void Anchor() {
    const std::size_t at = rest.find(" at ");
    Main().ClickButton(rest.substr(0, at));
    ++clickCount;
    if (at == std::string::npos) return;
    ++clickCount;
    rest.erase(0, at + 4);
    Mouse(&RecordingCanvas::Click);
  }

  void Turn() {
    if (rest == "up" || rest == "down") return Main().PressShortcut(rest == "up" ? "PgUp" : "PgDown");
    Box("Page Number").Type(Text());
    Box("Page Number").PressEnter();
  }

  // Opens the window that defines macros and fills it in.
  void Define(const std::string& number) {
    if (Front().main) Choose("Macros/Define");
    Box("Macro Number").Type(number);
    if (!rest.empty()) Box("Definition").Type(Bytes(Text()));
  }

  void Wheel() {
    WheelEvent event;
    const float notches = Number();
    (rest == "sideways" ? event.sideSteps : event.steps) = notches;
    event.shift = rest == "with Shift";
    event.control = rest == "with Ctrl";
    canvas->Wheel(event);
  }

  // "text" or "items", as another program or another of these editors leaves it.
  void FillClipboard(const std::string& kind) {
    std::string content = Bytes(Text());
    for (const std::string& line : block) content += Bytes(line) + "\r\n";
    clipboard.items = kind == "items" ? content : "";
    clipboard.text = kind == "text" ? content : "";
  }

  void Answer(const std::string& word) {
    if (word == "yes") return dialogs.AnswerYes();
    if (word == "no") return dialogs.AnswerNo();
    if (word == "cancel") return dialogs.AnswerNeither();
    if (word == "choice") return dialogs.AnswerChoice(std::stoi(Text()));
    if (word == "open") return dialogs.AnswerOpen(Text());
    if (word == "save") return dialogs.AnswerSave(Text());
    if (word == "text") return Text().empty() ? dialogs.CancelText() : dialogs.AnswerText(Text());
    ADD_FAILURE() << "That is no answer";
  }

  void PutFile(std::string& content) {
    int times = 1;
    if (block.empty() && !rest.empty()) {
      block.push_back(rest);
    } else if (!rest.empty()) {
      times = static_cast<int>(Number());
    }
    content.clear();
    for (; times > 0; --times)
      for (const std::string& line : block) content += Bytes(line) + "\r\n";
  }

  void Repeat(int times, const Strings& acts) {
    for (int i = 0; i < times; ++i) {
      for (const std::string& act : acts) {
        rest = act;
        Do(Word());
      }
    }
  }

  void Resize(float width) {
    Main().SetWindowPlace({0, 0, width * kTwipsPerPixel, Number() * kTwipsPerPixel});
  }

  void Do(const std::string& word) {
    // What there is before anybody does anything.
    if (word == "file") return PutFile(files.contents[Word()]);
    if (word == "remove") return (void)files.contents.erase(rest);
    if (word == "unreadable") return (void)files.unreadable.insert(rest);
    if (word == "fail") return rest == "all" ? files.FailAnyStep(1, true) : files.FailStep(FileStep::Create);
    if (word == "answer") return Answer(Word());
    if (word == "clipboard") return FillClipboard(Word());
    if (word == "start") return Begin(rest);
    FakeWindow& main = Main();
    // The page.
    if (word == "click") return Mouse(&RecordingCanvas::Click);
    if (word == "double") return Mouse(&RecordingCanvas::DoubleClick);
    if (word == "hold") return Mouse(&RecordingCanvas::Down);
    if (word == "move") return Mouse(&RecordingCanvas::Move);
    if (word == "release") return Mouse(&RecordingCanvas::Up);
    if (word == "leave") return canvas->OnMouseLeave();
    if (word == "wheel") return Wheel();
    if (word == "type") return Type(Bytes(Text()));
    if (word == "enter") return Type(Bytes(Text()) + '\r');
    if (word == "text") return canvas->OnText(Text());
    if (word == "preedit") return canvas->OnPreedit(Text());
    if (word == "key") return Key(Word());
    // Buttons, menus and boxes.
    if (word == "anchor") return Anchor();
    if (word == "script") return main.ClickButton(rest);
    if (word == "draw") return main.ClickButton("Draw Bezier");
    if (word == "press") return Front().ClickButton(rest);
    if (word == "menu") return Choose(rest);
    if (word == "popup") return ChooseFromPopup(rest);
    if (word == "font") return Choose("Format/Font Name/" + rest);
    if (word == "colour") return Choose("Format/Line Colour/" + rest);
    if (word == "thickness") return Choose("Format/Line Thickness/" + rest);
    if (word == "macro") return main.PressShortcut("Alt+" + rest);
    if (word == "page") return Turn();
    if (word == "define") return Define(Word());
    if (word == "box") return Box("Control Codes").Type(Bytes(Text()));
    if (word == "put") {
      FakeTextBox& into = Box(Word());
      return into.Type(Bytes(Text()));
    }
    if (word == "size") return Box("Font Size").Type(Text());
    // The windows, time, and all of it again.
    if (word == "resize") return Resize(Number());
    if (word == "close") return Front().ClickFrameClose();
    if (word == "wait") return toolkit.TickAll();
    if (word == "repeat") return Repeat(static_cast<int>(Number()), block);
    ADD_FAILURE() << "Nobody can do this";
  }

  // Takes the first of a list of texts; empty if there is none.
  static std::string First(Strings& texts) {
    if (texts.empty()) return {};
    const std::string first = texts.front();
    texts.erase(texts.begin());
    return Shown(first);
  }

  std::string Paints() {
    const int page = canvas->Paints(Layer::Page) - clearsBefore[0];
    const int overlay = canvas->Paints(Layer::Overlay) - clearsBefore[1];
    return "page " + std::to_string(page) + " overlay " + std::to_string(overlay);
  }

  std::string FocusedName() {
    if (FocusedControl == static_cast<Canvas*>(canvas)) return "page";
    for (const auto& box : Front().boxes)
      if (FocusedControl == static_cast<TextBox*>(box.get())) return box->name;
    return {};
  }

  std::string Captions(const std::string& menu, bool checkedOnly) {
    Strings captions;
    for (const auto& [path, entry] : EntriesOf(menu + "/"))
      if (entry->checked || !checkedOnly) captions.push_back(Caption(*entry));
    return Joined(captions, " | ");
  }

  // The button that is down, and the pointer's icon.
  std::string Tool() {
    Strings tool;
    for (const auto& button : Main().buttons)
      if (button->down) tool.push_back(button->caption);
    if (!canvas->pointer.empty()) tool.push_back(canvas->pointer);
    return Joined(tool, " with ");
  }

  std::string StateOf(const std::string& path) {
    for (const auto& [name, entry] : EntriesOf(path))
      if (name == path) return entry->enabled ? "enabled" : "disabled";
    return "missing";
  }

  // What there is to see of a subject.
  std::string See(const std::string& subject) {
    if (subject == "page") return Lines(PageText);
    if (subject == "drawing") return Lines(DrawingList);
    if (subject == "path") return CurrentDrawing;
    if (subject == "file") return Lines(Content(Word()));
    if (subject == "canvas") return canvas->Drawn(Layer::Page);
    if (subject == "overlay") return canvas->Drawn(Layer::Overlay);
    if (subject == "paints") return Paints();
    if (subject == "view") return canvas->coordinates;
    if (subject == "cursor") return FormatSingle(CursorX) + ' ' + FormatSingle(CursorY);
    if (subject == "mode") return std::to_string(CursorMode);
    if (subject == "tool") return Tool();
    if (subject == "pointer") return kPointerShapes[static_cast<std::size_t>(canvas->shape)];
    if (subject == "popup") return Popup();
    // What typing has cost so far: keys, with those held counted as one, and clicks of "anchor".
    if (subject == "keys") return std::to_string(keyCount);
    if (subject == "clicks") return std::to_string(clickCount);
    if (subject == "box") return Shown(Text4->Text());
    if (subject == "label") return FontLabel->Text();
    if (subject == "status") return CursorLabel->Text();
    if (subject == "note") return NoteLabel->Text();
    if (subject == "pages") return PageCountLabel->Text();
    if (subject == "title") return window->title;
    if (subject == "focus") return FocusedName();
    if (subject == "in") return Shown(Box(Word()).text);
    if (subject == "clipboard") return ReplaceAll(Shown(clipboard.text), "\\x0D\\x0A", "\n");
    if (subject == "asked") return First(dialogs.asked);
    if (subject == "message") return First(dialogs.messages);
    if (subject == "menu") return StateOf(Word());
    if (subject == "captions") return Captions(Word(), false);
    if (subject == "checked") return Captions(Word(), true);
    if (subject == "window") return Front().title;
    if (subject == "editor") return toolkit.quit || !window->visible ? "left" : "open";
    ADD_FAILURE() << "Nobody can see this";
    return {};
  }

  void Expect(const Line& line) {
    Main();
    if (rest.starts_with("no file ")) {
      EXPECT_FALSE(files.contents.contains(rest.substr(8)));
      return;
    }
    const std::string actual = See(Word());
    const bool part = rest.starts_with("contains") || rest.starts_with("lacks");
    const bool wanted = !part || Word() == "contains";
    const auto holds = [&](const std::string& text) {
      const std::string seen = actual.ends_with('\n') ? actual.substr(0, actual.size() - 1) : actual;
      return part ? seen.find(text) != std::string::npos : seen == text;
    };
    for (const std::string& text : block.empty() ? Strings{Text()}
                                   : part        ? block
                                                 : Strings{Joined(block, "\n")}) {
      if (holds(text) != wanted)
        ADD_FAILURE_AT(script.c_str(), line.number) << line.text << "\nwanted:\n"
                                                    << text << "\nactual:\n"
                                                    << actual;
    }
  }

  const std::string script;
  std::string rest;  // of the line that is being done
  Strings block;
  bool started = false;
  int keyCount = 0;
  int clickCount = 0;
  int clearsBefore[2] = {0, 0};
};

Strings Scripts() {
  Strings scripts;
  for (const auto& entry : std::filesystem::directory_iterator(KELVANE_SOURCE_DIR "/tests/sessions"))
    scripts.push_back(entry.path().string());
  std::sort(scripts.begin(), scripts.end());
  return scripts;
}
std::string NameOf(const ::testing::TestParamInfo<std::string>& script) {
  return std::filesystem::path(script.param).stem().string();
}

class SessionsTest : public ::testing::TestWithParam<std::string> {};

TEST_P(SessionsTest, Run) {
  std::ifstream file(GetParam());
  std::vector<std::vector<Line>> sessions;
  int number = 0;
  for (std::string text; std::getline(file, text);) {
    ++number;
    if (text.starts_with("== ")) {
      sessions.emplace_back();
    } else if (!text.empty() && !text.starts_with('#')) {
      ASSERT_FALSE(sessions.empty()) << "a line before the first session";
      std::vector<Line>& lines = sessions.back();
      text.starts_with("  ") && !lines.empty() ? lines.back().block.push_back(text.substr(2))
                                               : lines.push_back({number, text, {}});
    }
  }
  EXPECT_FALSE(sessions.empty());
  for (const std::vector<Line>& lines : sessions) {
    ASSERT_FALSE(lines.empty()) << "a session in which nothing happens";
    Session(GetParam()).Run(lines);
  }
}

INSTANTIATE_TEST_SUITE_P(All, SessionsTest, ::testing::ValuesIn(Scripts()), NameOf);

}  // namespace
}  // namespace kelvane
