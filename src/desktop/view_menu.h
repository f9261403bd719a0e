// The menu "View": opens pictures of a model or a plan.
#pragma once

#include <QObject>
#include <functional>
#include <vector>

#include "pictures/picture.h"
#include "program/progress.h"
#include "store/connection.h"

class QAction;
class QMainWindow;
class QMenu;

namespace merivane::desktop {

using namespace pictures;
using namespace program;
using namespace store;

class QtDesktop;

class ViewMenu : public QObject {
 public:
  // Adds the menu in front of `before`. All outlive it; it belongs to the window.
  ViewMenu(QMainWindow& window, QAction* before, QtDesktop& desktop, Workspace& workspace,
           Progress& progress);

  // The user wants to open a file. Set before an item is chosen, as is the next.
  std::function<void()> OnAsk;
  // A file that was shown.
  std::function<void(const std::string& path)> OnShown;

 private:
  QAction* AddItem(QMenu& menu, const char* name, const char* text, int helpContext,
                   void (ViewMenu::*show)());
  void ShowDiagram();
  void ShowChart();
  void ShowLog();
  void Ask();
  void Show(const std::string& path, void (ViewMenu::*draw)(const std::string& path));
  void DrawText(const std::string& path);
  void DrawDatabase(const std::string& path);
  void DrawPlan(const std::string& path);
  // Draws, as a run of `progress`, and shows what came of it in a window; without a picture a box
  // says `nothing` (UTF-8) and the note.
  void ShowPictures(Progress& progress, const std::string& path, const std::string& nothing,
                    const std::function<std::vector<pictures::Picture>(QString& note)>& draw);
  // False where the user cancelled it.
  bool Open(Connection& connection, const std::string& path);
  QMainWindow& window_;
  QtDesktop& desktop_;
  Workspace& workspace_;
  Progress& progress_;
};

}  // namespace merivane::desktop
