// The web engine on pages of a small server: what may be reached from them, and what is shown without
// network.

#include <gtest/gtest.h>
#include <unistd.h>

#include <QApplication>
#include <QHash>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTemporaryFile>
#include <QTest>

#include "platform/text_view.h"
#include "tests/screen/screen_test.h"

namespace kelvane {
namespace {

constexpr int kPatience = 20000;  // milliseconds

// Answers each request by its path, and notes the paths.
class Server : public QTcpServer {
 public:
  Server() {
    connect(this, &QTcpServer::newConnection, this, [this] {
      QTcpSocket* socket = nextPendingConnection();
      connect(socket, &QTcpSocket::readyRead, socket, [this, socket] {
        const QByteArray path = socket->readAll().split(' ').value(1);
        asked += path.toStdString() + "\n";
        const QByteArray body = pages.value(path, "<p>page</p>");
        socket->write(
            "HTTP/1.1 200 OK\r\nContent-Type: text/html\r\nConnection: close\r\nCache-Control: "
            "no-store\r\nContent-Length: " +
            QByteArray::number(body.size()) + "\r\n\r\n" + body);
        socket->disconnectFromHost();
      });
    });
    listen(QHostAddress::LocalHost);
  }
  std::string Address() const { return "http://127.0.0.1:" + std::to_string(serverPort()) + "/"; }
  bool WasAsked(const std::string& path) {
    return QTest::qWaitFor([&] { return asked.find(path) != std::string::npos; }, kPatience);
  }
  QHash<QByteArray, QByteArray> pages;
  std::string asked;
};

class WebPageTest : public ScreenTest {
 protected:
  void SetUp() override {
    ScreenTest::SetUp();
    browser = window->AddBrowser("Page");
    ASSERT_NE(browser, nullptr);
    browser->SetPlace({0, 0, 400, 300});
    browser->OnLeave = [this](const std::string& to) { left += to + "\n"; };
    browser->OnAddress = [this](const std::string& shown) { address = shown; };
    browser->OnProgress = [this](bool loading, bool, bool) { done = !loading; };
    // There is no window manager that would make it active.
    window->Show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&window->Frame()));
  }
  void Open(const std::string& home) {
    done = false;
    browser->Open(home, "<img src='" + server.Address() + "offline'>");
    EXPECT_TRUE(QTest::qWaitFor([&] { return done; }, kPatience));
  }

  Server server;
  Browser* browser = nullptr;
  std::string left;
  std::string address;
  bool done = false;
};

TEST_F(WebPageTest, StaysOnItsSiteAndReadsNoFiles) {
  QTemporaryFile secret;
  ASSERT_TRUE(secret.open());
  secret.write("secret");
  secret.flush();
  const QByteArray file = "file://" + secret.fileName().toUtf8();
  server.pages["/"] = "<iframe src='" + file +
                      "' onload='fetch(\"/frame?\"+this.contentDocument)'></iframe>" + "<script>fetch('" +
                      file +
                      "').then(r=>r.text()).then(t=>fetch('/got?'+t)).catch(e=>fetch('/refused'));"
                      "setTimeout(()=>{location='https://elsewhere.example/';"
                      "setTimeout(()=>fetch('/still'),300)},100);</script>";
  Open(server.Address());
  EXPECT_TRUE(server.WasAsked("/refused"));
  EXPECT_EQ(server.asked.find("/got"), std::string::npos);
  EXPECT_TRUE(server.WasAsked("/still")) << "what leads away leaves the page as it is";
  EXPECT_EQ(address, server.Address());
  EXPECT_EQ(left, "") << "a page leads nowhere by itself";
}

TEST_F(WebPageTest, ShowsTheOfflinePageAndTriesAgain) {
  std::string closed;
  {
    const Server gone;
    closed = gone.Address();
  }
  Open(closed);
  EXPECT_TRUE(server.WasAsked("/offline"));
  EXPECT_TRUE(QTest::qWaitFor([&] { return done; }, kPatience));
  server.asked.clear();
  browser->Reload();
  EXPECT_TRUE(server.WasAsked("/offline"));
  Open(server.Address());
  EXPECT_TRUE(server.WasAsked("/\n"));
}

}  // namespace
}  // namespace kelvane

int main(int argc, char** argv) {
  ::testing::InitGoogleTest(&argc, argv);
  // The sandbox refuses to run as root, which is who runs tests in a container.
  if (geteuid() == 0) qputenv("QTWEBENGINE_DISABLE_SANDBOX", "1");
  const QApplication application(argc, argv);
  return RUN_ALL_TESTS();
}
