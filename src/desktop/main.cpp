#include <QApplication>
#include <QDir>
#include <QSettings>
#include <QTimer>

#ifdef Q_OS_UNIX
#include <unistd.h>

#include <QSocketNotifier>
#endif

#include "desktop/main_window.h"
#include "platform/program_run.h"
#ifdef Q_OS_WIN
#include <string_view>

#include "desktop/render_pictures.h"
#include "desktop/system_look.h"
#include "pictures/packed_pictures.h"
#endif

namespace {

using namespace merivane;
using namespace merivane::desktop;

#ifdef Q_OS_UNIX
int wakePipe[2];

// A handler of signals may do little: the event loop, which sees the byte, does the rest.
void EndOnSignal(QtDesktop& desktop) {
  if (pipe(wakePipe) != 0) return;
  auto* notifier = new QSocketNotifier(wakePipe[0], QSocketNotifier::Read, qApp);
  QObject::connect(notifier, &QSocketNotifier::activated, qApp, [notifier, &desktop] {
    notifier->setEnabled(false);
    desktop.EndUnasked();
  });
  platform::ListenForEnd([] {
    if (write(wakePipe[1], "", 1) < 0) _exit(EXIT_FAILURE);
  });
}
#else
void EndOnSignal(QtDesktop&) {}
#endif

// Where merivane.ini lies beside the program, as in the folder that it is unpacked from, it holds
// all that is remembered.
void TakeSettingsBesideProgram() {
  const QDir folder(QApplication::applicationDirPath());
  if (!folder.exists("merivane.ini")) return;
  QSettings::setDefaultFormat(QSettings::IniFormat);
  QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, folder.path());
  QApplication::setOrganizationName(".");  // a folder in that one
}

}  // namespace

int main(int argc, char** argv) {
  platform::TakeLibrariesOfTheSystemAlone();
#ifdef Q_OS_WIN
  if (argc > 1 && std::string_view(argv[1]) == pictures::kRenderWord)
    return RenderForAnother(argc, argv);
  SystemLook::WelcomeDark();
#endif
  QApplication application(argc, argv);
#ifdef Q_OS_WIN
  const SystemLook look;
#endif
  QApplication::setApplicationName("merivane");
  QApplication::setOrganizationName("merivane");
  QApplication::setDesktopFileName("merivane");
  TakeSettingsBesideProgram();
  QApplication::setQuitOnLastWindowClosed(false);
  int status = 0;
  {
    DialogFileNames fileNames;
    QtDesktop desktop(fileNames);
    Program program(desktop);
    frmMain main(program);
    MainWindow window(desktop, main);
    desktop.OnEnd = [] { QApplication::exit(0); };
    EndOnSignal(desktop);
    QTimer::singleShot(0, &window, [&] {
      desktop.Run([&] { main.Start(); });
      QStringList files = QApplication::arguments().mid(1);
      for (QString& file : files) file = QDir::current().absoluteFilePath(file);
      if (!files.empty()) window.OpenFiles(files);
    });
    status = QApplication::exec();
  }
  platform::EndAsAsked();
  return status;
}
