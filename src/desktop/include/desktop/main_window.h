// The main window: menus, the area of both dialogs, the status bar.
#pragma once

#include <QMainWindow>
#include <memory>

#include "desktop/qt_desktop.h"
#include "shell/frmMain.h"

class QMdiArea;
class QPushButton;

namespace merivane::desktop {

using namespace shell;

class ElidedLabel;
class FormWindow;
class HelpKey;

// Draws frmMain and all forms that it holds. Closing it ends the program.
class MainWindow : public QMainWindow {
 public:
  // Both outlive the window.
  MainWindow(QtDesktop& desktop, frmMain& main);
  ~MainWindow() override;

  // Text of the status bar: what came of the last translation.
  QString Result() const;

 protected:
  void closeEvent(QCloseEvent* event) override;

 private:
  void AddMenus();
  void Press(void (frmMain::*handler)());
  void AddForm(FormWindow* window);
  void ShowResult(const QString& text, const QString& file);
  QPushButton* AddResultButton(const char* name, const char* caption,
                               QString (*place)(const QString& file));

  QtDesktop& desktop_;
  frmMain& main_;
  std::unique_ptr<HelpKey> helpKey_;
  QMdiArea* area_;
  ElidedLabel* result_;
  QString written_;  // by the last translation; empty: nothing
  QPushButton* open_ = nullptr;
  QPushButton* showInFolder_ = nullptr;
};

}  // namespace merivane::desktop
