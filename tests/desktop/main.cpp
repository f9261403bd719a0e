#include <gtest/gtest.h>

#include <QApplication>
#include <QFont>
#include <QSettings>
#include <QTemporaryDir>
#include <iostream>

// Widgets without a screen, unless one is asked for.
int main(int argc, char** argv) {
  ::testing::InitGoogleTest(&argc, argv);
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
#ifdef Q_OS_WIN
  // That platform knows no font of Windows, and Wine hands no such variable on.
  qputenv("QT_QPA_FONTDIR", "Z:/usr/share/fonts/truetype/dejavu");
#endif
  qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString& text) {
    // What the platform without a screen can't do.
    if (!text.startsWith("This plugin does not support")) std::cerr << text.toStdString() << '\n';
  });
  const QApplication application(argc, argv);
#ifdef Q_OS_WIN
  QApplication::setStyle("fusion");  // as elsewhere
  QApplication::setFont(QFont("DejaVu Sans", 8));
#endif
  const QTemporaryDir settings;  // not the user's
  QSettings::setDefaultFormat(QSettings::IniFormat);
  QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, settings.path());
  QApplication::setOrganizationName("merivane-test");
  QApplication::setQuitOnLastWindowClosed(false);
  return RUN_ALL_TESTS();
}
