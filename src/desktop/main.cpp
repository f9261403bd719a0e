#include <QApplication>
#include <QTimer>

#include "desktop/main_window.h"

int main(int argc, char** argv) {
  using namespace merivane::desktop;
  QApplication application(argc, argv);
  QApplication::setApplicationName("merivane");
  QApplication::setOrganizationName("merivane");
  QApplication::setDesktopFileName("merivane");
  QApplication::setQuitOnLastWindowClosed(false);
  DialogFileNames fileNames;
  QtDesktop desktop(fileNames);
  Program program(desktop);
  frmMain main(program);
  MainWindow window(desktop, main);
  desktop.OnEnd = [] { QApplication::exit(0); };
  QTimer::singleShot(0, &window, [&] { desktop.Run([&] { main.Start(); }); });
  return QApplication::exec();
}
