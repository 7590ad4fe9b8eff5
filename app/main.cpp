// Wires the editor to its windows and starts it.

#include <QApplication>
#include <QFileInfo>

#include "app/startup.h"
#include "platform/controls.h"
#include "platform/files.h"
#include "platform/qt/qt_dialogs.h"
#include "platform/qt/qt_toolkit.h"

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  QApplication::setApplicationName("Kelvane");
  QApplication::setQuitOnLastWindowClosed(false);
  kelvane::QtToolkit toolkit;
  kelvane::QtDialogs dialogs;
  kelvane::TheToolkit = &toolkit;
  kelvane::TheDialogs = &dialogs;

  const std::string folder = QCoreApplication::applicationDirPath().toLocal8Bit().toStdString();
  kelvane::StateFolder = kelvane::FindStateFolder();
  if (!kelvane::StartUp(kelvane::BackslashPath(folder))) return 1;

  const QStringList arguments = QCoreApplication::arguments();
  std::string pageFile;
  if (arguments.size() > 1) {
    // A relative name belongs to the folder the program was started in.
    const QString path = QFileInfo(arguments[1]).absoluteFilePath();
    pageFile = kelvane::BackslashPath(path.toLocal8Bit().toStdString());
  }
  kelvane::ShowEditor(pageFile);
  return QCoreApplication::exec();
}
