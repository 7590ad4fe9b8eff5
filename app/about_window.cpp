#include "app/about_window.h"

#include <memory>
#include <string>
#include <vector>

#include "app/context_help.h"
#include "app/maker.h"
#include "papers/paper_commands.h"
#include "platform/failure.h"
#include "platform/files.h"
#include "platform/programs.h"

namespace kelvane {

Window* AboutWindow = nullptr;
TextView* AboutText = nullptr;

namespace {

// Twips; the first time.
constexpr WindowPlace kFirstPlace{130 * kTwipsPerPixel, 60 * kTwipsPerPixel, 460 * kTwipsPerPixel,
                                  560 * kTwipsPerPixel};
constexpr int kTick = 200;  // milliseconds
constexpr int kMostTicks = 50;

Button* CopyButton;
Button* CloseButton;

std::unique_ptr<RunningProgram> Ghostscript;  // asked for its version
int Ticks;

TextBlock Heading(int level, const std::string& text) {
  return {TextBlock::Kind::Heading, level, {{{.text = text}}}};
}
TextBlock Paragraph(const std::string& text) {
  return {TextBlock::Kind::Paragraph, 0, {{{.text = text}}}};
}

void ShowText(const std::string& ghostscript) {
  AboutText->Show({
      {TextBlock::Kind::Picture, 0, {{{.text = ProgramFolder + "QRX.BMP"}}}},
      Heading(1, kProgramTitle),
      Paragraph("Sets mathematics on paper pages by placing it there."),
      Paragraph(std::string("Comments: ") + kMakerAddress),
      Heading(2, "Made of and running with"),
      {TextBlock::Kind::Table,
       0,
       {{{.text = TheToolkit->Version()}}, {{.text = "Ghostscript " + ghostscript}}}},
      Heading(2, "Licences"),
      Paragraph(
          "Qt: GNU Lesser General Public License, version 3, or GNU General Public License, version 2. It is "
          "loaded when the program starts and can be replaced by another build of it."),
      Paragraph(
          "Widths of the text typefaces, in the width tables and the prolog: from the metrics of the URW "
          "base 35 fonts, GNU Affero General Public License, version 3, with an exception for documents in "
          "PostScript or PDF that are set in them. The fonts themselves are those of the system."),
      Paragraph("Ghostscript: GNU Affero General Public License, version 3 or later. It is no part of the "
                "program."),
      Paragraph("zlib: zlib License. It is loaded when the program starts."),
      Paragraph(
          "Web engine, where it is installed: Qt WebEngine, GNU Lesser General Public License, version 3, or "
          "GNU General Public License, version 2, with the parts of Chromium under their own licences."),
      Paragraph("The font Math0, the manual and the sample papers are part of Kelvane."),
  });
}

void FollowGhostscript() {
  if (!Ghostscript) return;
  if (Ghostscript->Ended()) {
    std::string version = Ghostscript->Output();
    version.erase(std::min(version.find_first_of("\r\n"), version.size()));
    ShowText(Ghostscript->Status() == 0 && !version.empty() ? version : "does not say its version");
  } else if (++Ticks < kMostTicks) {
    return;
  } else {
    Ghostscript->Stop();
    ShowText("does not answer");
  }
  Ghostscript.reset();
}

void AskGhostscript() {
  Ticks = 0;
  try {
    Ghostscript = std::make_unique<RunningProgram>(std::vector<std::string>{"gs", "--version"}, "");
    ShowText("...");
  } catch (const Failure&) {
    ShowText("not installed");
  }
}

void LayOut() {
  constexpr int kGap = 8;
  const int width = static_cast<int>(AboutWindow->InnerWidth() / kTwipsPerPixel);
  const int height = static_cast<int>(AboutWindow->InnerHeight() / kTwipsPerPixel);
  const int row = AboutWindow->RowHeight();
  const int buttons = height - row - kGap;
  AboutText->SetPlace({kGap, kGap, width - 2 * kGap, buttons - 2 * kGap});
  CloseButton->SetPlace({width - 3 * row - kGap, buttons, 3 * row, row});
  CopyButton->SetPlace({width - 6 * row - 2 * kGap, buttons, 3 * row, row});
}

void Build() {
  AboutWindow = TheToolkit->NewWindow(false);
  AboutWindow->SetTitle("About Kelvane");
  AboutText = AboutWindow->AddTextView("About Kelvane");
  CopyButton = AboutWindow->AddButton("&Copy", {}, "Copy the text, for a report");
  CopyButton->OnClick = [] { AboutText->CopyAll(); };
  CloseButton = AboutWindow->AddButton("Close", {}, "");
  CloseButton->OnClick = [] { AboutWindow->Hide(); };
  AboutWindow->OnEscape = CloseButton->OnClick;
  AboutWindow->OnResize = LayOut;
  AboutWindow->KeepPlaceAs("about/place", kFirstPlace);
  AddHelpKeys(*AboutWindow, "About Kelvane");
  Timer* timer = TheToolkit->NewTimer();
  timer->OnTick = FollowGhostscript;
  timer->Start(kTick);
}

}  // namespace

void ResetAboutWindow() {
  AboutWindow = nullptr;
  AboutText = nullptr;
  Ghostscript.reset();
}

void ShowAbout() {
  if (AboutWindow == nullptr) Build();
  AboutWindow->Show();
  if (!Ghostscript) AskGhostscript();
}

}  // namespace kelvane
