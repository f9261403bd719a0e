// The main window: menus, the first screen, the area of both dialogs, the status bar.
//
//   frmMain main(program);
//   MainWindow window(desktop, main);
//   desktop.OnEnd = [] { QApplication::exit(0); };
//   desktop.Run([&] { main.Start(); });  // shows it
//   window.OpenFiles({"/home/anne/model.txt"});
//
// It owns the windows of all forms and of opened files, and while it stands the desktop's window
// and the drawing of `main` are its own. Nothing is thrown: what fails is told in a box, and the
// end of the program comes by QtDesktop::OnEnd.
#pragma once

#include <QMainWindow>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "desktop/qt_desktop.h"
#include "shell/frmMain.h"

class QStackedWidget;

namespace merivane::desktop {

using namespace shell;

class FormArea;
class FormWindow;
class HelpKey;
class ResultLine;
class StartPage;
class ViewMenu;
class WorkbenchFile;
class WorkbenchWindow;

// Draws frmMain and all forms that it holds, and keeps no state of theirs; while neither dialog is
// loaded, the first screen stands in their place. Closing it ends the program, and in the midst of
// a run asks first. A model text that is dropped on it goes to its dialog; any other file gets a
// message.
class MainWindow : public QMainWindow {
 public:
  // Both outlive the window.
  MainWindow(QtDesktop& desktop, frmMain& main);
  ~MainWindow() override;

  // Text of the status bar: what came of the last translation or pick; empty before.
  QString Result() const;
  // One file, whichever way it was named: a model text, a plan or a database, which KindOfOpened
  // tells apart. Several, or one that isn't there, get a message.
  void OpenFiles(const QStringList& names);

 protected:
  void closeEvent(QCloseEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;

 private:
  void AddMenus();
  void ConnectStart();
  void ShowPage();
  // The window of the file that the dialog asks for; null where none comes of it.
  WorkbenchWindow* AskForFile(const FileDialog& dialog);
  WorkbenchWindow* OpenFile(const QStringList& names);
  WorkbenchWindow* Open(std::unique_ptr<WorkbenchFile> file);
  void ShowWorkbench(WorkbenchWindow* workbench);
  void BringBack(const std::string& plan, const std::string& database,
                 std::optional<std::int32_t> project);
  void Press(void (frmMain::*handler)());
  void AddForm(FormWindow* window);
  void TakeDropped(const QStringList& files);

  QtDesktop& desktop_;
  frmMain& main_;
  std::unique_ptr<HelpKey> helpKey_;
  QStackedWidget* pages_;
  StartPage* start_;
  FormArea* area_;
  ViewMenu* view_ = nullptr;
  FormWindow* modelToProject_ = nullptr;
  FormWindow* projectToModel_ = nullptr;
  ResultLine* result_;
};

}  // namespace merivane::desktop
