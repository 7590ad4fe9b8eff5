// The contact window, with real programs in place of the person's mail program and the mail transport.

#include "app/contact_window.h"

#include <chrono>
#include <filesystem>
#include <thread>

#include "app/exit.h"
#include "platform/files.h"
#include "platform/mail.h"
#include "tests/support/editor_test.h"
#include "tests/support/stand_ins.h"

namespace kelvane {
namespace {

constexpr char kKept[] = "\\State\\comment.txt";

class ContactWindowTest : public EditorTest {
 protected:
  void SetUp() override {
    Start();
    window->ChooseEntry("C&ontact");
    contact = static_cast<FakeWindow*>(ContactWindow);
  }
  // As the person writes.
  void Write(const std::string& address, const std::string& subject, const std::string& comment) {
    static_cast<FakeTextBox*>(ContactParts.address)->Type(address);
    static_cast<FakeTextBox*>(ContactParts.subject)->Type(subject);
    static_cast<FakeTextArea*>(ContactParts.comment)->Type(comment);
  }
  std::string Note() const { return ContactParts.note->Text(); }
  // Presses "Send" and lets the timer tick, as long as programs are waited for; what fails is returned.
  std::string Send(int millisecondsOfTick = 100) {
    try {
      contact->ClickButton("&Send");
      for (int tick = 0; tick < 400 && !contact->ButtonOf("&Send")->enabled; ++tick) {
        toolkit.TickAll();
        std::this_thread::sleep_for(std::chrono::milliseconds(millisecondsOfTick));
      }
    } catch (const Failure& failure) {
      return failure.what();
    }
    return {};
  }

  StandIns programs;
  FakeWindow* contact = nullptr;
};

TEST_F(ContactWindowTest, HandsTheCommentToTheMailProgram) {
  programs.Make("xdg-email",
                "[ \"$1\" = --version ] && exit 0\nfor a in \"$@\"; do echo \"[$a]\"; done > got.new\n"
                "mv got.new got");
  Write("ada@example.org",
        "Gr\xC3\xB6\xC3\x9F"
        "e; $(touch x)",
        "First\n\"second\" 'line'");
  EXPECT_EQ(Send(), "");
  EXPECT_EQ(programs.Written("got"),
            "[--utf8]\n[--subject]\n[Gr\xC3\xB6\xC3\x9F"
            "e; $(touch x)]\n[--body]\n[First\n\"second\" 'line'\n\n"
            "Answer to: ada@example.org\n]\n[comments@kelvane.example]\n");
  EXPECT_NE(Note().find("Your mail program has the comment"), std::string::npos) << Note();
  EXPECT_EQ(ContactParts.comment->Text(), "First\n\"second\" 'line'") << "it may not be sent in the end";
  // The real one takes no option without a value.
  Write("", "", "Text");
  EXPECT_EQ(Send(), "");
  EXPECT_EQ(programs.Written("got"), "[--utf8]\n[--body]\n[Text]\n[comments@kelvane.example]\n");
}

TEST_F(ContactWindowTest, SendsThroughTheTransportWhereThereIsNoMailProgram) {
  programs.Make("sendmail", "cat > in\necho \"$@\" > got.new\nmv got.new got");
  Write("ada@example.org",
        "Gr\xC3\xB6\xC3\x9F"
        "e",
        "Text\n.\nBcc: eve@example.org");
  EXPECT_EQ(Send(), "");
  EXPECT_EQ(programs.Written("got"), "-i -- comments@kelvane.example\n");
  EXPECT_EQ(programs.Written("in"),
            "From: ada@example.org\nTo: comments@kelvane.example\nSubject: =?UTF-8?B?R3LDtsOfZQ==?=\n"
            "MIME-Version: 1.0\nContent-Type: text/plain; charset=utf-8\nContent-Transfer-Encoding: 8bit\n\n"
            "Text\n.\nBcc: eve@example.org\n");
  EXPECT_NE(Note().find("is sent"), std::string::npos) << Note();
}

TEST_F(ContactWindowTest, SaysWhySigningOnFailed) {
  if (CanRun("/usr/sbin/sendmail") || CanRun("/usr/lib/sendmail"))
    GTEST_SKIP() << "this machine has a transport";
  Write("", "Subject", "Comment");
  EXPECT_EQ(Send(), "Logon Failure: There is no mail program: neither xdg-email nor sendmail is installed.");
  programs.Make("xdg-email", "echo no desktop >&2; exit 3");
  EXPECT_EQ(Send(), "Logon Failure: no desktop");
  programs.Make("xdg-email", "kill -9 $$");
  EXPECT_NE(Send().find("status 137"), std::string::npos);
  EXPECT_EQ(ContactParts.comment->Text(), "Comment");
  EXPECT_EQ(Content(kKept), "\nSubject\nComment");
}

TEST_F(ContactWindowTest, SurvivesProgramsThatFailOrHang) {
  Write("", "Subject", "Comment");
  programs.Make("sendmail", "echo mailbox full; exit 75");
  EXPECT_EQ(Send(), "The comment was not sent: mailbox full");
  programs.Make("sendmail", "exec sleep 100");
  EXPECT_EQ(Send(2), "The comment was not sent: the mail transport does not answer.");
  programs.Make("xdg-email", "exec sleep 100");
  EXPECT_EQ(Send(2), "Logon Failure: the mail program does not answer.");
  // A mail program may stay as long as its window is open: it is left alone.
  programs.Make("xdg-email", "[ \"$1\" = --version ] && exit 0\nsleep 3; touch late");
  EXPECT_EQ(Send(40), "");
  EXPECT_NE(Note().find("has not answered yet"), std::string::npos) << Note();
  programs.Written("late");
  EXPECT_TRUE(std::filesystem::exists(programs.Folder() + "/late")) << "it was ended";
  EXPECT_EQ(ContactParts.comment->Text(), "Comment");
}

TEST_F(ContactWindowTest, RefusesWhatIsNoAddress) {
  programs.Make("sendmail", "touch got");
  for (const char* address : {"ada", "a@b, c@d", "a@b\nBcc: x@y", "-f@x", "@b"}) {
    Write(address, "Subject", "Comment");
    EXPECT_NE(Send().find("is no mail address"), std::string::npos) << address;
  }
  EXPECT_FALSE(std::filesystem::exists(programs.Folder() + "/got"));
  Write("", "", "");
  EXPECT_EQ(Send(), "");
  EXPECT_EQ(Note(), "There is nothing to send yet.");
}

TEST_F(ContactWindowTest, KeepsTheCommentFromStartToStart) {
  Write("ada@example.org", "S", "one\ntwo\n");
  for (int tick = 0; tick < 20; ++tick) toolkit.TickAll();
  EXPECT_EQ(Content(kKept), "ada@example.org\nS\none\ntwo\n") << "kept while one types";
  static_cast<FakeTextArea*>(ContactParts.comment)->Type("one\ntwo\nthree");
  contact->ClickFrameClose();
  static_cast<FakeTextBox*>(ContactParts.subject)->Type("S2");
  EXPECT_TRUE(ExitSequence());
  EXPECT_EQ(Content(kKept), "ada@example.org\nS2\none\ntwo\nthree") << "what was typed a moment ago as well";
  Start();
  window->ChooseEntry("C&ontact");
  contact = static_cast<FakeWindow*>(ContactWindow);
  EXPECT_EQ(ContactParts.address->Text() + ContactParts.subject->Text() + ContactParts.comment->Text(),
            "ada@example.orgS2one\ntwo\nthree");
  contact->ClickButton("&Copy");
  EXPECT_EQ(toolkit.copiedText,
            "To: comments@kelvane.example\nFrom: ada@example.org\nSubject: S2\n\none\ntwo\nthree");
  dialogs.AnswerNo();
  contact->ClickButton("C&lear");
  EXPECT_EQ(ContactParts.comment->Text(), "one\ntwo\nthree");
  dialogs.AnswerYes();
  contact->ClickButton("C&lear");
  EXPECT_EQ(Content(kKept), "ada@example.org\n\n");
}

TEST_F(ContactWindowTest, TellsWhereTheCommentCannotBeKept) {
  Write("", "S", "text");
  files.FailStep(FileStep::Write);
  for (int tick = 0; tick < 11; ++tick) toolkit.TickAll();
  EXPECT_NE(Note().find("is not kept"), std::string::npos) << Note();
  contact->PressShortcut("F1");
  files.FailStep(FileStep::Write);
  EXPECT_NE(FailureOf([&] { contact->ClickButton("Close"); }), "");
  EXPECT_EQ(ContactParts.comment->Text(), "text");
}

}  // namespace
}  // namespace kelvane
