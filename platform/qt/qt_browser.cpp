#include "platform/qt/qt_browser.h"

#include <QCoreApplication>
#include <QLibrary>
#include <QOpenGLContext>

#include <sched.h>
#include <sys/wait.h>
#include <unistd.h>

#include "platform/handlers.h"
#include "platform/qt/qt_text.h"

// Of QtGui; the engine calls it itself when a program links it.
Q_GUI_EXPORT void qt_gl_set_global_share_context(QOpenGLContext* context);
Q_GUI_EXPORT QOpenGLContext* qt_gl_global_share_context();

namespace kelvane {
namespace {

// The engine ends the program if it is loaded without a context to share. Asking Qt for one at every start
// would cost each start what only this window needs.
void ShareContext() {
  if (qt_gl_global_share_context() != nullptr) return;
  static QOpenGLContext* context = new QOpenGLContext(QCoreApplication::instance());
  context->create();
  qt_gl_set_global_share_context(context);
}

// The engine ends the whole program where it cannot shut its pages off: for root, and where a person may have
// no user namespace. So this is tried in a process of its own. Who sets the variable does without.
bool CanShutOff() {
  if (qEnvironmentVariableIntValue("QTWEBENGINE_DISABLE_SANDBOX") != 0) return true;
  if (geteuid() == 0) return false;
  const pid_t child = fork();
  if (child == 0) _exit(unshare(CLONE_NEWUSER) == 0 ? 0 : 1);
  int status = 1;
  return child > 0 && waitpid(child, &status, 0) == child && status == 0;
}

NewWebPage LoadEngine() {
  if (!CanShutOff()) return nullptr;
  QLibrary plugin(QCoreApplication::applicationDirPath() + u'/' + QLatin1String(kWebPlugin));
  if (!QLibrary::isLibrary(plugin.fileName() + QStringLiteral(".so"))) return nullptr;
  ShareContext();
  return reinterpret_cast<NewWebPage>(plugin.resolve(kNewWebPage));
}

}  // namespace

std::unique_ptr<QtBrowser> QtBrowser::Make(QWidget* parent, const std::string& accessibleName) {
  static const NewWebPage make = LoadEngine();
  if (make == nullptr) return nullptr;
  return std::unique_ptr<QtBrowser>(new QtBrowser(std::unique_ptr<WebPage>(make(parent)), accessibleName));
}

QtBrowser::QtBrowser(std::unique_ptr<WebPage> page, const std::string& accessibleName)
    : QtControl(page->Widget()), page_(std::move(page)) {
  widget_->setAccessibleName(PlainText(accessibleName));
  page_->OnAddress = [this](const QString& address) {
    RunHandler([&] {
      if (OnAddress) OnAddress(address.toStdString());
    });
  };
  page_->OnProgress = [this](bool loading, bool back, bool forward) {
    RunHandler([&] {
      if (OnProgress) OnProgress(loading, back, forward);
    });
  };
  page_->OnLeave = [this](const QString& address) {
    RunHandler([&] {
      if (OnLeave) OnLeave(address.toStdString());
    });
  };
}

void QtBrowser::Open(const std::string& home, const std::string& offline) {
  page_->Open(PlainText(home), PlainText(offline));
}

}  // namespace kelvane
