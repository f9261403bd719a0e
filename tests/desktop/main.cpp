#include <gtest/gtest.h>

#include <QApplication>
#include <iostream>

// Widgets without a screen, unless one is asked for.
int main(int argc, char** argv) {
  ::testing::InitGoogleTest(&argc, argv);
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString& text) {
    // What the platform without a screen can't do.
    if (!text.startsWith("This plugin does not support")) std::cerr << text.toStdString() << '\n';
  });
  const QApplication application(argc, argv);
  QApplication::setQuitOnLastWindowClosed(false);
  return RUN_ALL_TESTS();
}
