#include "desktop/main_window.h"

#include <QCloseEvent>
#include <QDropEvent>
#include <QMdiSubWindow>
#include <QMenuBar>
#include <QStackedWidget>
#include <QStandardPaths>
#include <QStatusBar>
#include <QTimer>
#include <algorithm>
#include <functional>
#include <optional>
#include <utility>

#include "form_area.h"
#include "help_context.h"
#include "model_to_project_window.h"
#include "program_picture.h"
#include "project_to_model_window.h"
#include "qt_text.h"
#include "recent_list.h"
#include "result_line.h"
#include "runtime/code_page.h"
#include "shell/named_files.h"
#include "side_dialog.h"
#include "start_page.h"
#include "user_settings.h"
#include "view_menu.h"
#include "workbench_file.h"
#include "workbench_window.h"

namespace merivane::desktop {

namespace {

struct MenuItem {
  const char* name;
  const char* caption;  // "-" for a separator
  int helpContext;
  void (frmMain::*handler)();  // null for a menu or a separator
};

constexpr MenuItem kItems[] = {
    {"mnuFile", "&File", 1001, nullptr},
    {"mnuIDEF3ToProject", "Cel&var to Project", 1002, &frmMain::mnuIDEF3ToProject},
    {"mnuProjectToIDEF3", "&Project to Celvar", 1003, &frmMain::mnuProjectToIDEF3},
    {"mnuSep1", "-", 0, nullptr},
    {"mnuExit", "&Exit", 1004, &frmMain::mnuExit},
    {"mnuOptions", "&Options", 1005, nullptr},
    {"mnuPath", "&Application Paths", 1006, &frmMain::mnuPath},
    {"mnuHelp", "&Help", 1007, nullptr},
    {"mnuContents", "&Contents", 1008, &frmMain::mnuContents},
    {"mnuIndex", "&Index", 1009, &frmMain::mnuIndex},
    {"mnuSep2", "-", 0, nullptr},
    {"mnuAboutVorn", "&Vorn Homepage", 1010, &frmMain::mnuAboutVorn},
    {"mnuAboutMerivane", "&About Merivane", 1011, &frmMain::mnuAboutMerivane},
};

}  // namespace

MainWindow::MainWindow(QtDesktop& desktop, frmMain& main)
    : desktop_(desktop),
      main_(main),
      helpKey_(std::make_unique<HelpKey>(desktop)),
      pages_(new QStackedWidget),
      start_(new StartPage(
          PathToQt(desktop.AppPath()) + "/samples",
          QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation) + "/Merivane")),
      area_(new FormArea),
      result_(new ResultLine(*statusBar(), desktop)) {
  setObjectName("frmMain");
  setWindowTitle("Merivane: Celvar <--> Microsoft Project");
  setWindowIcon(ApplicationIcon());
  SetHelpContext(this, frmMain::kHelpContextId);
  setCentralWidget(pages_);
  for (QWidget* page : {static_cast<QWidget*>(start_), static_cast<QWidget*>(area_)}) {
    pages_->addWidget(page);
  }
  setAcceptDrops(true);
  start_->setFocus();  // a menu that closes gives the focus back, and keeps it where none had it
  new WindowPlace(*this, {fontMetrics().averageCharWidth() * 120, fontMetrics().height() * 40});
  AddMenus();
  modelToProject_ = new ModelToProjectWindow(main_.modelToProject, desktop_);
  AddForm(modelToProject_);
  auto* toModel = new ProjectToModelWindow(main_.projectToModel, desktop_);
  toModel->OnShow = [this](const PlannedMerge& merge) {
    Open(std::make_unique<WorkbenchFile>(merge, desktop_, main_.workspace, main_.progress, *this));
  };
  projectToModel_ = toModel;
  AddForm(projectToModel_);
  ConnectStart();
  new OptionsDialog(main_.options, desktop_, this);
  new AboutDialog(main_.about, desktop_, this);
  new SplashWindow(main_.splash, this);
  main_.OnChange = [this] { setVisible(main_.IsVisible()); };
  desktop_.SetWindow(this);
  desktop_.OnHelpRequest = [this](int context) { main_.ShowContextHelp(context); };
}

MainWindow::~MainWindow() {
  desktop_.SetWindow(nullptr);
  desktop_.OnHelpRequest = nullptr;
  main_.OnChange = nullptr;
}

void MainWindow::AddMenus() {
  QMenu* menu = nullptr;
  for (const MenuItem& item : kItems) {
    QAction* action = nullptr;
    if (item.handler != nullptr) {
      action = menu->addAction(item.caption);
      connect(action, &QAction::triggered, this,
              [this, handler = item.handler] { Press(handler); });
    } else if (item.helpContext != 0) {
      menu = menuBar()->addMenu(item.caption);
      action = menu->menuAction();
    } else {
      action = menu->addSeparator();
    }
    action->setObjectName(item.name);
    action->setMenuRole(QAction::NoRole);
    if (item.helpContext != 0) SetHelpContext(action, item.helpContext);
  }
  view_ = new ViewMenu(*this, findChild<QAction*>("mnuOptions"), desktop_, *area_);
}

void MainWindow::Press(void (frmMain::*handler)()) {
  frmMain& main = main_;
  desktop_.Run([&main, handler] { std::invoke(handler, main); });
}

void MainWindow::ConnectStart() {
  start_->OnToPlan = [this] { Press(&frmMain::mnuIDEF3ToProject); };
  start_->OnToModel = [this] { Press(&frmMain::mnuProjectToIDEF3); };
  start_->OnAsk = [this] { AskForFile(kOpenDialog); };
  start_->OnOpen = [this](const QStringList& names) { OpenFiles(names); };
  result_->OnSee = [this](const QString& file) { OpenFiles({file}); };
  view_->OnAsk = [this](const FileDialog& dialog, WorkbenchWindow::Part part) {
    if (WorkbenchWindow* opened = AskForFile(dialog)) opened->LookAt(part);
  };
}

// A dialog that hides for a question is still the one at work.
void MainWindow::ShowPage() {
  const QList<QMdiSubWindow*> frames = area_->subWindowList();
  const bool workbench = std::any_of(frames.begin(), frames.end(), [](QMdiSubWindow* frame) {
    return dynamic_cast<WorkbenchWindow*>(frame->widget()) != nullptr;
  });
  const bool dialogs = main_.modelToProject.IsLoaded() || main_.projectToModel.IsLoaded();
  QWidget* page = dialogs || workbench ? static_cast<QWidget*>(area_) : start_;
  if (pages_->currentWidget() == page) return;
  pages_->setCurrentWidget(page);
  page->setFocus();
}

WorkbenchWindow* MainWindow::AskForFile(const FileDialog& dialog) {
  std::string path;
  desktop_.Run([&] { path = desktop_.AskFileName(dialog); });
  return path.empty() ? nullptr : OpenFile({PathToQt(path)});
}

void MainWindow::OpenFiles(const QStringList& names) { OpenFile(names); }

WorkbenchWindow* MainWindow::OpenFile(const QStringList& names) {
  if (names.size() != 1) {
    desktop_.Run([this] { desktop_.ShowMessage({kOneFile, MessageIcon::kExclamation}); });
    return nullptr;
  }
  const std::string path = names.front().toStdString();
  if (FileIsThere(path)) {
    return Open(
        std::make_unique<WorkbenchFile>(path, desktop_, main_.workspace, main_.progress, *this));
  }
  desktop_.Run([&] {
    desktop_.TellAbout(path);
    desktop_.ShowMessage({FromUtf8(path + " is not there any more."), MessageIcon::kExclamation});
  });
  return nullptr;
}

// What stands open already comes to the front; a merge is looked at anew.
WorkbenchWindow* MainWindow::Open(std::unique_ptr<WorkbenchFile> file) {
  for (QMdiSubWindow* frame : area_->subWindowList()) {
    auto* open = dynamic_cast<WorkbenchWindow*>(frame->widget());
    if (open == nullptr || open->File().Path() != file->Path()) continue;
    if (open->File().Merge() != file->Merge()) continue;
    area_->setActiveSubWindow(frame);
    if (file->Merge()) open->ReadAgain();
    return open;
  }
  WorkbenchWindow* opened = nullptr;
  desktop_.Run([&] {
    std::optional<FileView> view = file->Read();
    if (!view) return;
    if (!file->Merge()) start_->Recent().Add(PathToQt(file->Path()));
    opened = new WorkbenchWindow(std::move(file), std::move(*view), desktop_);
    ShowWorkbench(opened);
  });
  return opened;
}

void MainWindow::ShowWorkbench(WorkbenchWindow* workbench) {
  workbench->OnToPlan = [this](const std::string& path,
                               const std::vector<ScenarioChoice>& choices) {
    for (const ScenarioChoice& choice : choices) {
      desktop_.SetReadyChoice(choice.question, choice.names[choice.chosen]);
    }
    Press(&frmMain::mnuIDEF3ToProject);
    modelToProject_->TakeDropped({PathToQt(path)});
  };
  workbench->OnBringBack = std::bind_front(&MainWindow::BringBack, this);
  QMdiSubWindow* frame = area_->addSubWindow(workbench);
  connect(frame, &QObject::destroyed, this, &MainWindow::ShowPage, Qt::QueuedConnection);
  frame->showMaximized();
  ShowPage();
  workbench->setFocus();
}

// Each name as if the user had browsed for it.
void MainWindow::BringBack(const std::string& plan, const std::string& database,
                           std::optional<std::int32_t> project) {
  Press(&frmMain::mnuProjectToIDEF3);
  projectToModel_->TakeDropped({PathToQt(plan)});
  if (database.empty()) return;
  desktop_.SetReadyMerge(project);
  projectToModel_->TakeDropped({PathToQt(database)});
  desktop_.SetReadyMerge({});
}

void MainWindow::AddForm(FormWindow* window) {
  window->OnSync = [this] { ShowPage(); };
  window->OnResult = [this](const QString& text, const QString& file, const QString& source) {
    result_->ShowResult(text, file);
    if (file.isEmpty()) return;
    for (const QString& name : {source, file}) start_->Recent().Add(name);
  };
  window->OnPick = [this](const PickNote& note, const std::function<void()>& undo) {
    result_->ShowPick(note, undo);
  };
  window->SetFrame(area_->addSubWindow(window));
}

void MainWindow::dragEnterEvent(QDragEnterEvent* event) {
  if (!DroppedFiles(*event).isEmpty()) event->acceptProposedAction();
}

void MainWindow::dropEvent(QDropEvent* event) {
  event->acceptProposedAction();
  QTimer::singleShot(0, this, [this, files = DroppedFiles(*event)] { TakeDropped(files); });
}

void MainWindow::TakeDropped(const QStringList& files) {
  const std::string first = files.value(0).toStdString();
  if (files.size() == 1 && HasExtension(first, "txt")) {
    Press(&frmMain::mnuIDEF3ToProject);
    modelToProject_->TakeDropped(files);
    return;
  }
  const std::string text = files.size() > 1
                               ? kOneFile
                               : FromUtf8(first) +
                                     " can be dropped on a dialog of the menu File. Here a model "
                                     "text (.txt) can.";
  desktop_.Run([&] { desktop_.ShowMessage({text, MessageIcon::kExclamation}); });
}

QString MainWindow::Result() const { return result_->Text(); }

void MainWindow::closeEvent(QCloseEvent* event) {
  if (!desktop_.AskInRun()) desktop_.Run([this] { main_.mnuExit(); });
  event->setAccepted(desktop_.Ended());
}

}  // namespace merivane::desktop
