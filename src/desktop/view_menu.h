// The menu "View": opens a model or a plan, and the messages of the session.
#pragma once

#include <QObject>
#include <functional>

#include "desktop/qt_desktop.h"
#include "workbench_window.h"

class QAction;
class QMainWindow;
class QMenu;

namespace merivane::desktop {

class FormArea;

inline const FileDialog kOpenDialog{
    "Models and plans (*.txt *.mdb *.mpx *.xml);;All files (*)|*.txt", "Open a model or a plan"};

class ViewMenu : public QObject {
 public:
  // Adds the menu in front of `before`. All outlive it; it belongs to the window.
  ViewMenu(QMainWindow& window, QAction* before, QtDesktop& desktop, FormArea& area);

  // The user wants to open a file that the dialog asks for. Set before an item is chosen.
  std::function<void(const FileDialog& dialog, WorkbenchWindow::Part part)> OnAsk;

 private:
  QAction* AddItem(QMenu& menu, const char* name, const char* text, int helpContext,
                   const std::function<void()>& act);
  void ShowLog();

  QMainWindow& window_;
  QtDesktop& desktop_;
};

}  // namespace merivane::desktop
