// The plugin with the web engine: one page on one site.

#include <QChildEvent>
#include <QDragEnterEvent>
#include <QPointer>
#include <QTimer>
#include <QWebEngineHistory>
#include <QWebEngineLoadingInfo>
#include <QWebEnginePage>
#include <QWebEngineProfile>
#include <QWebEngineSettings>
#include <QWebEngineUrlRequestInterceptor>
#include <QWebEngineView>
#include <utility>

#include "platform/qt/web_page.h"

namespace kelvane {
namespace {

bool IsOfWeb(const QUrl& url) {
  return url.scheme() == QStringLiteral("http") || url.scheme() == QStringLiteral("https");
}

// Lets nothing through that does not come from the web: a page must not reach files of the person by whatever
// element or script it asks for them.
class OnlyWeb final : public QWebEngineUrlRequestInterceptor {
 public:
  using QWebEngineUrlRequestInterceptor::QWebEngineUrlRequestInterceptor;
  void interceptRequest(QWebEngineUrlRequestInfo& info) override {
    const QString scheme = info.requestUrl().scheme();
    const bool inPage = scheme == QStringLiteral("data") || scheme == QStringLiteral("blob");
    if (!inPage && !IsOfWeb(info.requestUrl())) info.block(true);
  }
};

// What a link to a new window opens: it leads away and is gone.
class Leaving final : public QWebEnginePage {
 public:
  Leaving(QWebEngineProfile* profile, QObject* parent, std::function<void(const QUrl&)> leave)
      : QWebEnginePage(profile, parent), leave_(std::move(leave)) {}

 protected:
  bool acceptNavigationRequest(const QUrl& url, NavigationType, bool) override {
    leave_(url);
    deleteLater();
    return false;
  }

 private:
  std::function<void(const QUrl&)> leave_;
};

class SitePage final : public QWebEnginePage {
 public:
  SitePage(QWebEngineProfile* profile, QObject* parent) : QWebEnginePage(profile, parent) {
    QWebEngineSettings& set = *settings();
    set.setAttribute(QWebEngineSettings::LocalContentCanAccessFileUrls, false);
    set.setAttribute(QWebEngineSettings::LocalContentCanAccessRemoteUrls, false);
    set.setAttribute(QWebEngineSettings::JavascriptCanOpenWindows, false);
    set.setAttribute(QWebEngineSettings::JavascriptCanAccessClipboard, false);
    set.setAttribute(QWebEngineSettings::JavascriptCanPaste, false);
    set.setAttribute(QWebEngineSettings::AllowWindowActivationFromJavaScript, false);
    set.setAttribute(QWebEngineSettings::PluginsEnabled, false);
    set.setAttribute(QWebEngineSettings::FullScreenSupportEnabled, false);
    set.setAttribute(QWebEngineSettings::ScreenCaptureEnabled, false);
    // The offline page takes the place of the engine's own.
    set.setAttribute(QWebEngineSettings::ErrorPageEnabled, false);
    connect(this, &QWebEnginePage::featurePermissionRequested, this,
            [this](const QUrl& origin, Feature what) {
              setFeaturePermission(origin, what, PermissionDeniedByUser);
            });
  }

  QUrl Home;
  bool Acted = false;  // the person clicked or pressed a key since something led away last
  bool LoadingOffline = false;
  std::function<void(const QUrl&)> Leave;

 protected:
  bool acceptNavigationRequest(const QUrl& url, NavigationType type, bool isMainFrame) override {
    if (LoadingOffline && url.scheme() == QStringLiteral("data")) return true;
    if (!isMainFrame) return IsOfWeb(url) || url.scheme() == QStringLiteral("about");
    if (IsOfWeb(url) && url.host() == Home.host() && url.port() == Home.port()) return true;
    // Only what the person clicks leads out; what a page does by itself leads nowhere. To the engine a script
    // that goes elsewhere is a click as well.
    if (type == NavigationTypeLinkClicked && Leave && std::exchange(Acted, false)) Leave(url);
    return false;
  }
  QWebEnginePage* createWindow(WebWindowType) override {
    return new Leaving(profile(), this, [this](const QUrl& url) {
      if (Leave && std::exchange(Acted, false)) Leave(url);
    });
  }
  // No page asks the person for files, or stops them with boxes.
  QStringList chooseFiles(FileSelectionMode, const QStringList&, const QStringList&) override { return {}; }
  void javaScriptAlert(const QUrl&, const QString&) override {}
  bool javaScriptConfirm(const QUrl&, const QString&) override { return false; }
  bool javaScriptPrompt(const QUrl&, const QString&, const QString&, QString*) override { return false; }
  void javaScriptConsoleMessage(JavaScriptConsoleMessageLevel, const QString&, int, const QString&) override {
  }
};

class SiteView final : public QWebEngineView {
 public:
  using QWebEngineView::QWebEngineView;
  std::function<void()> OnAct;

 protected:
  // Mouse and keys go to a child, which the engine makes anew as it likes.
  void childEvent(QChildEvent* event) override {
    if (event->added()) event->child()->installEventFilter(this);
    QWebEngineView::childEvent(event);
  }
  bool eventFilter(QObject* child, QEvent* event) override {
    const bool acts = event->type() == QEvent::MouseButtonRelease || event->type() == QEvent::KeyPress;
    if (acts && OnAct) OnAct();
    return QWebEngineView::eventFilter(child, event);
  }
  // A file dropped on a page could be read by it.
  void dragEnterEvent(QDragEnterEvent* event) override { event->ignore(); }
};

class EnginePage final : public WebPage {
 public:
  explicit EnginePage(QWidget* parent) {
    view_ = new SiteView(parent);
    view_->setContextMenuPolicy(Qt::NoContextMenu);
    // Without a name: nothing of what is visited stays on the disk.
    auto* profile = new QWebEngineProfile(view_);
    profile->setUrlRequestInterceptor(new OnlyWeb(profile));
    page_ = new SitePage(profile, view_);
    view_->setPage(page_);
    view_->OnAct = [this] { page_->Acted = true; };
    page_->Leave = [this](const QUrl& url) {
      // Afterwards: the engine waits for an answer, and whoever is told may show a message box.
      QTimer::singleShot(0, view_, [this, address = url.toString(QUrl::FullyEncoded)] {
        if (OnLeave) OnLeave(address);
      });
    };
    QObject::connect(page_, &QWebEnginePage::urlChanged, view_, [this](const QUrl& url) {
      if (OnAddress && IsOfWeb(url)) OnAddress(url.toString());
    });
    QObject::connect(page_, &QWebEnginePage::loadingChanged, view_,
                     [this](const QWebEngineLoadingInfo& load) {
                       if (load.status() == QWebEngineLoadingInfo::LoadStartedStatus) return Tell(true);
                       // What the person stopped, and a link that leads away, leave the page as it is.
                       const bool failed =
                           load.status() == QWebEngineLoadingInfo::LoadFailedStatus && !page_->LoadingOffline;
                       page_->LoadingOffline = false;
                       Tell(false);
                       if (failed) ShowOffline();
                     });
    QObject::connect(page_, &QWebEnginePage::renderProcessTerminated, view_, [this] { ShowOffline(); });
  }

  // The page must go before its profile; the view goes with its window.
  ~EnginePage() override { delete page_; }
  EnginePage(const EnginePage&) = delete;
  EnginePage& operator=(const EnginePage&) = delete;

  QWidget* Widget() override { return view_; }
  void Open(const QString& home, const QString& offline) override {
    page_->Home = QUrl(home);
    offlinePage_ = offline;
    Load(page_->Home);
  }
  void Back() override { page_->triggerAction(QWebEnginePage::Back); }
  void Forward() override { page_->triggerAction(QWebEnginePage::Forward); }
  void Reload() override { Load(isOffline_ ? page_->Home : page_->url()); }
  void Stop() override { page_->triggerAction(QWebEnginePage::Stop); }

 private:
  void Load(const QUrl& url) {
    isOffline_ = false;
    page_->load(url);
  }
  void ShowOffline() {
    isOffline_ = page_->LoadingOffline = true;
    page_->setHtml(offlinePage_, page_->Home);
  }
  void Tell(bool loading) {
    if (OnProgress) OnProgress(loading, page_->history()->canGoBack(), page_->history()->canGoForward());
  }

  QPointer<SiteView> view_;
  QPointer<SitePage> page_;
  QString offlinePage_;
  bool isOffline_ = false;
};

}  // namespace
}  // namespace kelvane

extern "C" Q_DECL_EXPORT kelvane::WebPage* kelvane_new_web_page(QWidget* parent) {
  return new kelvane::EnginePage(parent);
}
