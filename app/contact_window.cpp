#include "app/contact_window.h"

#include <memory>
#include <string>
#include <vector>

#include "app/context_help.h"
#include "app/maker.h"
#include "document/lines.h"
#include "platform/failure.h"
#include "platform/files.h"
#include "platform/mail.h"

namespace kelvane {

Window* ContactWindow = nullptr;
ContactWindowControls ContactParts;

namespace {

// Twips; the first time.
constexpr WindowPlace kFirstPlace{110 * kTwipsPerPixel, 90 * kTwipsPerPixel, 520 * kTwipsPerPixel,
                                  380 * kTwipsPerPixel};
constexpr int kTick = 200;  // milliseconds
// How long is waited for an answer, in ticks.
constexpr int kSignOnTicks = 5000 / kTick;
constexpr int kProgramTicks = 10000 / kTick;
constexpr int kTransportTicks = 60000 / kTick;
constexpr int kStoreTicks = 2000 / kTick;  // between two writings while one types

enum class Step { Idle, SigningOn, Sending };
Step StepNow = Step::Idle;
int TicksInStep = 0;
Mail Post;

bool Typed = false;  // since it was stored last
int TicksSinceStored = 0;

std::string CommentFile() {
  return StateFolder + "comment.txt";
}

bool IsEmpty() {
  return ContactParts.comment->Text().empty() && ContactParts.subject->Text().empty();
}

// The comment as text: for the clipboard, and as a mail would have it.
std::string WholeComment() {
  return "To: " + std::string(kMakerAddress) + "\nFrom: " + ContactParts.address->Text() +
         "\nSubject: " + ContactParts.subject->Text() + "\n\n" + ContactParts.comment->Text();
}

void ReadComment() {
  if (StateFolder.empty() || !TheFiles->Exists(CommentFile())) return;
  const std::string kept = TheFiles->ReadWhole(CommentFile());
  std::string_view rest = kept;
  for (TextBox* box : {ContactParts.address, ContactParts.subject})
    box->SetText(rest.empty() ? "" : std::string(TakeLine(rest)));
  ContactParts.comment->SetText(std::string(rest));
}

// --- Sending ---

void ShowStep(Step step, const std::string& note) {
  StepNow = step;
  TicksInStep = 0;
  ContactParts.send->SetEnabled(step == Step::Idle);
  ContactParts.note->SetText(note);
}

[[noreturn]] void GiveUp(const std::string& start, const std::string& why) {
  Post.GiveUp();
  ShowStep(Step::Idle, "It was not sent. The comment is kept.");
  throw Failure(start + why);
}

constexpr char kLogonFailure[] = "Logon Failure: ";
constexpr char kSendFailure[] = "The comment was not sent: ";

void Send() {
  if (StepNow != Step::Idle) return;
  if (IsEmpty()) {
    ContactParts.note->SetText("There is nothing to send yet.");
    ContactParts.comment->Focus();
    return;
  }
  StoreComment();
  ShowStep(Step::SigningOn, "Signing on ...");
  try {
    Post.SignOn();
  } catch (const Failure& failure) {
    GiveUp(kLogonFailure, failure.what());
  }
}

void ComposeAndSend() {
  try {
    Post.Compose({kMakerAddress, ContactParts.address->Text(), ContactParts.subject->Text(),
                  ContactParts.comment->Text()});
    Post.Send();
  } catch (const Failure& failure) {
    GiveUp(kSendFailure, failure.what());
  }
  ShowStep(Step::Sending, "Sending ...");
}

void EndSending() {
  ShowStep(Step::Idle,
           Post.LeavesItToThePerson()
               ? "Your mail program has the comment: send it there. It is kept here until you clear it."
               : "The comment is sent. It is kept here until you clear it.");
}

void WaitOrGiveUp() {
  ++TicksInStep;
  if (StepNow == Step::SigningOn && TicksInStep >= kSignOnTicks)
    GiveUp(kLogonFailure, "the mail program does not answer.");
  if (StepNow != Step::Sending) return;
  if (Post.LeavesItToThePerson() && TicksInStep >= kProgramTicks) {
    // Some mail programs end only when the person closes their window.
    Post.GiveUp();
    ShowStep(Step::Idle,
             "The mail program has not answered yet. The comment is kept here until you clear it.");
  } else if (TicksInStep >= kTransportTicks) {
    GiveUp(kSendFailure, "the mail transport does not answer.");
  }
}

void FollowMail() {
  if (StepNow == Step::Idle) return;
  switch (Post.Ask()) {
    case Mail::Progress::Working:
      WaitOrGiveUp();
      break;
    case Mail::Progress::Failed:
      GiveUp(StepNow == Step::SigningOn ? kLogonFailure : kSendFailure, Post.Error());
    case Mail::Progress::Done:
      StepNow == Step::SigningOn ? ComposeAndSend() : EndSending();
  }
}

void Tick() {
  if (Typed && ++TicksSinceStored >= kStoreTicks) {
    try {
      StoreComment();
    } catch (const Failure& failure) {
      // Nobody is to be stopped in the middle of a word; leaving the window tells it again.
      ContactParts.note->SetText(std::string("The comment is not kept: ") + failure.what());
    }
  }
  FollowMail();
}

// --- The window ---

void NoteTyping() {
  Typed = true;
}

void Clear() {
  if (!IsEmpty() && !TheDialogs->Ask("Clear the comment?", false)) return;
  ContactParts.subject->SetText("");
  ContactParts.comment->SetText("");
  ContactParts.note->SetText("");
  Typed = true;
  StoreComment();
}

void Copy() {
  TheToolkit->CopyText(WholeComment());
  ContactParts.note->SetText("The comment is on the clipboard.");
}

void Leave() {
  ContactWindow->Hide();
  StoreComment();
}

void LayOut() {
  constexpr int kGap = 8;
  const int width = static_cast<int>(ContactWindow->InnerWidth() / kTwipsPerPixel);
  const int height = static_cast<int>(ContactWindow->InnerHeight() / kTwipsPerPixel);
  const int row = ContactWindow->RowHeight();
  const int label = row * 4;
  int y = kGap;
  for (Control* box :
       std::initializer_list<Control*>{ContactParts.to, ContactParts.address, ContactParts.subject}) {
    box->SetPlace({label + 2 * kGap, y, width - label - 3 * kGap, row});
    y += row + kGap;
  }
  const int buttons = height - row - kGap;
  const int note = buttons - row;
  ContactParts.comment->SetPlace({kGap, y, width - 2 * kGap, note - y});
  ContactParts.note->SetPlace({kGap, note, width - 2 * kGap, row});
  int x = width;
  for (Button* button : {ContactParts.close, ContactParts.clear, ContactParts.copy, ContactParts.send}) {
    x -= row * 3 + kGap;
    button->SetPlace({x, buttons, row * 3, row});
  }
}

void Build() {
  ContactWindow = TheToolkit->NewWindow(false);
  ContactWindow->SetTitle("Contact");
  const int row = ContactWindow->RowHeight();
  int y = 8;
  const auto label = [&](const char* text) {
    ContactWindow->AddLabel(text)->SetPlace({8, y, row * 4, row});
    y += row + 8;
  };
  const auto add = [&](const char* text, const char* name) {
    label(text);
    TextBox* box = ContactWindow->AddPlainTextBox(name);
    box->OnChange = NoteTyping;
    box->OnEscape = Leave;
    return box;
  };
  label("To");
  ContactParts.to = ContactWindow->AddLabel(kMakerAddress);
  ContactParts.address = add("Your address", "Your mail address, for an answer");
  ContactParts.subject = add("Subject", "Subject");
  ContactParts.comment = ContactWindow->AddTextArea("Comment");
  ContactParts.comment->OnChange = NoteTyping;
  ContactParts.note = ContactWindow->AddLabel("");
  const auto button = [](const char* caption, const char* toolTip, void (*click)()) {
    Button* made = ContactWindow->AddButton(caption, {}, toolTip);
    made->OnClick = click;
    return made;
  };
  ContactParts.send = button("&Send", "Send the comment by mail", Send);
  ContactParts.copy = button("&Copy", "Copy the comment to the clipboard", Copy);
  ContactParts.clear = button("C&lear", "Throw the comment away", Clear);
  ContactParts.close = button("Close", "Close; the comment is kept", Leave);
  ContactWindow->OnEscape = Leave;
  ContactWindow->OnCloseRequest = [] {
    StoreComment();
    return true;
  };
  ContactWindow->OnResize = LayOut;
  ContactWindow->KeepPlaceAs("contact/place", kFirstPlace);
  AddHelpKeys(*ContactWindow, "Contact");
  Timer* timer = TheToolkit->NewTimer();
  timer->OnTick = Tick;
  timer->Start(kTick);
}

}  // namespace

void ResetContactWindow() {
  ContactWindow = nullptr;
  ContactParts = {};
  StepNow = Step::Idle;
  Post = {};
  Typed = false;
  TicksSinceStored = 0;
}

void ShowContact() {
  if (ContactWindow == nullptr) {
    Build();
    ReadComment();
  }
  ContactWindow->Show();
  ContactParts.comment->Focus();
}

void StoreComment() {
  if (ContactWindow == nullptr || !Typed || StateFolder.empty()) return;
  TicksSinceStored = 0;
  TheFiles->MakeFolder(StateFolder);
  WriteFileSafely(CommentFile(), ContactParts.address->Text() + "\n" + ContactParts.subject->Text() + "\n" +
                                     ContactParts.comment->Text());
  Typed = false;
}

}  // namespace kelvane
