#include "app/web_window.h"

#include <memory>
#include <string>
#include <vector>

#include "app/context_help.h"
#include "app/maker.h"
#include "editing/notes.h"
#include "platform/failure.h"
#include "platform/files.h"
#include "platform/programs.h"

namespace kelvane {

Window* WebWindow = nullptr;

namespace {

// Twips; the first time.
constexpr WindowPlace kFirstPlace{80 * kTwipsPerPixel, 80 * kTwipsPerPixel, 800 * kTwipsPerPixel,
                                  600 * kTwipsPerPixel};

Browser* Page;
Button* Back;
Button* Forward;
Button* Reload;
Button* Stop;
TextBox* Address;
Label* Note;
bool NoEngine;  // it was asked for in vain

// Only addresses that belong into a browser or a mail program: anything else could start a program.
bool MayLeave(const std::string& address) {
  const bool known =
      address.starts_with("http://") || address.starts_with("https://") || address.starts_with("mailto:");
  return known && IsOneLine(address);
}

void OpenElsewhere(const std::string& address) {
  if (!MayLeave(address)) throw Failure("This address is not opened: " + address);
  try {
    const RunningProgram browser({"xdg-open", address}, "");
  } catch (const Failure& failure) {
    throw Failure("The address " + address + " cannot be opened. " + failure.what());
  }
}

void LayOut() {
  constexpr int kGap = 6;
  const int width = static_cast<int>(WebWindow->InnerWidth() / kTwipsPerPixel);
  const int height = static_cast<int>(WebWindow->InnerHeight() / kTwipsPerPixel);
  const int row = WebWindow->RowHeight();
  int x = kGap;
  for (Button* button : {Back, Forward, Reload, Stop}) {
    button->SetPlace({x, kGap, row * 5 / 2, row});
    x += row * 5 / 2 + kGap / 2;
  }
  Address->SetPlace({x, kGap, width - x - kGap, row});
  const int top = row + 2 * kGap;
  Page->SetPlace({0, top, width, height - row - top});
  Note->SetPlace({kGap, height - row, width - 2 * kGap, row});
}

// What is shown where the network is not there; a program folder without it has a line instead.
std::string OfflinePage() {
  const std::string path = ProgramFolder + "OFFLINE.HTM";
  return TheFiles->Exists(path) ? TheFiles->ReadWhole(path)
                                : "<p>The page cannot be reached. The manual opens with F1.</p>";
}

void ConnectPage() {
  Page->OnAddress = [](const std::string& address) {
    Address->SetText(address);
    Note->SetText("");
  };
  Page->OnProgress = [](bool loading, bool back, bool forward) {
    Back->SetEnabled(back);
    Forward->SetEnabled(forward);
    Reload->SetEnabled(!loading);
    Stop->SetEnabled(loading);
  };
  Page->OnLeave = [](const std::string& address) {
    OpenElsewhere(address);
    Note->SetText("Opened in your own browser: " + address);
  };
}

// False where there is no engine; the window is then not shown, and not tried again.
bool Build() {
  Window* window = TheToolkit->NewSeparateWindow();
  Page = window->AddBrowser("Web page");
  if (Page == nullptr) return false;
  WebWindow = window;
  WebWindow->SetTitle("Web Page");
  const auto add = [](const char* caption, const char* toolTip, void (Browser::*act)()) {
    Button* button = WebWindow->AddButton(caption, {}, toolTip);
    button->OnClick = [act] { (Page->*act)(); };
    return button;
  };
  Back = add("Back", "Back (Alt+Left)", &Browser::Back);
  Forward = add("Forward", "Forward (Alt+Right)", &Browser::Forward);
  Reload = add("Reload", "Reload (F5)", &Browser::Reload);
  Stop = add("Stop", "Stop (Esc)", &Browser::Stop);
  WebWindow->AddShortcut("Alt+Left", Back->OnClick);
  WebWindow->AddShortcut("Alt+Right", Forward->OnClick);
  WebWindow->AddShortcut("F5", Reload->OnClick);
  WebWindow->AddShortcut("Escape", Stop->OnClick);
  // The address is shown and can be copied; pages are reached by links.
  Address = WebWindow->AddPlainTextBox("Address");
  Note = WebWindow->AddLabel("");
  ConnectPage();
  WebWindow->OnResize = LayOut;
  WebWindow->KeepPlaceAs("web/place", kFirstPlace);
  AddHelpKeys(*WebWindow, "The web page");
  return true;
}

}  // namespace

void ResetWebWindow() {
  WebWindow = nullptr;
  NoEngine = false;
}

void ShowWebPage() {
  if (WebWindow == nullptr && !NoEngine) NoEngine = !Build();
  if (NoEngine) {
    OpenElsewhere(kMakerPage);
    ShowNote("Opened in your own browser: Qt WebEngine cannot run here");
    return;
  }
  WebWindow->Show();
  Page->Open(kMakerPage, OfflinePage());
}

}  // namespace kelvane
