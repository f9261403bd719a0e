// The main window: menus, the area of both dialogs, the status bar.
#pragma once

#include <QMainWindow>
#include <memory>

#include "desktop/qt_desktop.h"
#include "shell/frmMain.h"

class QMdiArea;

namespace merivane::desktop {

using namespace shell;

class FormWindow;
class HelpKey;
class ResultLine;

// Draws frmMain and all forms that it holds. Closing it ends the program.
class MainWindow : public QMainWindow {
 public:
  // Both outlive the window.
  MainWindow(QtDesktop& desktop, frmMain& main);
  ~MainWindow() override;

  // Text of the status bar: what came of the last translation or pick.
  QString Result() const;

 protected:
  void closeEvent(QCloseEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;

 private:
  void AddMenus();
  void Press(void (frmMain::*handler)());
  void AddForm(FormWindow* window);
  void TakeDropped(const QStringList& files);

  QtDesktop& desktop_;
  frmMain& main_;
  std::unique_ptr<HelpKey> helpKey_;
  QMdiArea* area_;
  FormWindow* modelToProject_ = nullptr;
  ResultLine* result_;
};

}  // namespace merivane::desktop
