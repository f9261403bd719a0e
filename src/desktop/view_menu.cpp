#include "view_menu.h"

#include <QAction>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QPointer>
#include <QTimer>

#include "desktop/qt_desktop.h"
#include "help_context.h"
#include "log_window.h"
#include "picture_window.h"
#include "pictures/chart.h"
#include "pictures/diagram.h"
#include "pictures/scratch_model.h"
#include "platform/quiet_desktop.h"
#include "project_picker.h"
#include "qt_text.h"
#include "runtime/run_time_error.h"
#include "shell/browse.h"
#include "shell/message_advice.h"

namespace merivane::desktop {

namespace {

constexpr int kMenuContext = 1012;
constexpr int kDiagramContext = 1013;
constexpr int kChartContext = 1014;
constexpr int kLogContext = 1015;
constexpr int kOpenContext = 1016;

// What the reader's boxes said, for the status bar.
QString NoteOf(const QuietDesktop& desktop) {
  QStringList texts;
  for (const std::string& text : desktop.MessageTexts()) texts.append(ToQt(text).simplified());
  return texts.join("  ");
}

std::vector<pictures::Picture> Draw(const pictures::ProcessModel& model, QString& note,
                                    Progress& progress, const std::string& part = {}) {
  std::vector<pictures::Picture> drawings;
  const pictures::DiagramOptions options{.note = part};
  for (pictures::Diagram& diagram : pictures::DrawDiagrams(model.scenarios, options, progress)) {
    if (diagram.outline) {
      note += " The scenario '" + ToQt(diagram.picture.title) +
              "' is too large to be laid out: its units stand in a list.";
    }
    drawings.push_back(std::move(diagram.picture));
  }
  return drawings;
}

// None where the reader would end the program. `part` says how far a text was read that breaks off.
pictures::ProcessModel ReadText(Program& program, const std::string& path, std::string& part) try {
  pictures::ScratchModel scratch(program);
  scratch.Read(path);
  part = scratch.BreaksOff();
  return pictures::ReadProcessModel(scratch.Database(), pictures::ScratchModel::kProject);
} catch (const ProgramEnd&) {
  return {};
}

}  // namespace

ViewMenu::ViewMenu(QMainWindow& window, QAction* before, QtDesktop& desktop, Workspace& workspace,
                   Progress& progress)
    : QObject(&window),
      window_(window),
      desktop_(desktop),
      workspace_(workspace),
      progress_(progress) {
  auto* menu = new QMenu("&View", &window);
  QAction* action = window.menuBar()->insertMenu(before, menu);
  action->setObjectName("mnuView");
  SetHelpContext(action, kMenuContext);
  AddItem(*menu, "mnuOpen", "&Open a model or a plan...", kOpenContext, &ViewMenu::Ask)
      ->setShortcut(QKeySequence::Open);
  AddItem(*menu, "mnuProcessDiagram", "Process &diagram...", kDiagramContext,
          &ViewMenu::ShowDiagram);
  AddItem(*menu, "mnuPlanChart", "Plan &chart...", kChartContext, &ViewMenu::ShowChart);
  menu->addSeparator();
  QAction* log =
      AddItem(*menu, "mnuMessageLog", "&Messages of this session", kLogContext, &ViewMenu::ShowLog);
  log->setShortcut(QKeySequence("Ctrl+L"));
  log->setShortcutContext(Qt::ApplicationShortcut);
}

QAction* ViewMenu::AddItem(QMenu& menu, const char* name, const char* text, int helpContext,
                           void (ViewMenu::*show)()) {
  QAction* action = menu.addAction(text);
  action->setObjectName(name);
  SetHelpContext(action, helpContext);
  connect(action, &QAction::triggered, this,
          [this, show] { desktop_.Run([this, show] { (this->*show)(); }); });
  return action;
}

// Outside of the handler of the menu item, which is a run of its own.
void ViewMenu::Ask() {
  QTimer::singleShot(0, this, [this] { OnAsk(); });
}

void ViewMenu::Show(const std::string& path, void (ViewMenu::*draw)(const std::string& path)) try {
  if (path.empty()) return;
  desktop_.TellAbout(path);
  const SavedMousePointer pointer(desktop_, kPointerHourglass);
  (this->*draw)(path);
} catch (const RunTimeError& error) {
  desktop_.ShowMessage({.text = error.Description(), .advice = PlanFileAdvice(path, error)});
}

void ViewMenu::ShowDiagram() {
  const std::string path =
      desktop_.AskFileName({"Models and translated models (*.txt *.mdb)|*.txt", "Process diagram"});
  Show(path, HasExtension(path, "mdb") ? &ViewMenu::DrawDatabase : &ViewMenu::DrawText);
}

void ViewMenu::ShowChart() {
  Show(desktop_.AskFileName({"Plans (*.mdb)|*.mdb", "Plan chart"}), &ViewMenu::DrawPlan);
}

void ViewMenu::DrawText(const std::string& path) {
  QuietDesktop quiet;
  quiet.appPath = desktop_.AppPath();
  quiet.templatePath = desktop_.TemplatePath();
  quiet.ShowProgressOn(desktop_);
  Program program(quiet);
  ShowPictures(program.progress, path, path + " holds no scenario that can be drawn.",
               [&](QString& note) {
                 std::string part;
                 const pictures::ProcessModel model = ReadText(program, path, part);
                 note = NoteOf(quiet);
                 return Draw(model, note, program.progress, part);
               });
}

bool ViewMenu::Open(Connection& connection, const std::string& path) {
  return RunUnlessCancelled(progress_,
                            [&] { connection.Open(ConnectionText(path), OpenMode::kReadOnly); });
}

void ViewMenu::DrawDatabase(const std::string& path) {
  Connection connection(workspace_);
  if (!Open(connection, path)) return;
  const auto project = PickProject(desktop_, window_, connection);
  if (!project) return;
  ShowPictures(progress_, path, path + " holds no model of this project, only its plan.",
               [&](QString& note) {
                 const auto model = pictures::ReadProcessModel(connection, *project);
                 if (!model.scenarios.empty()) note = "Grey: stays out of the plan.";
                 return Draw(model, note, progress_);
               });
}

void ViewMenu::DrawPlan(const std::string& path) {
  Connection connection(workspace_);
  if (!Open(connection, path)) return;
  const auto project = PickProject(desktop_, window_, connection);
  if (!project) return;
  ShowPictures(progress_, path, "", [&](QString& note) {
    progress_.Begin("Drawing the chart", 0);
    std::vector chart{pictures::DrawChart(connection, *project, desktop_.Today())};
    note = ToQt(chart.front().description);
    return chart;
  });
}

void ViewMenu::ShowLog() {
  QDialog* open = window_.findChild<QDialog*>("logWindow");
  if (open == nullptr) open = new LogWindow(desktop_.Log(), desktop_, &window_);
  open->showNormal();
  open->raise();
  open->activateWindow();
}

void ViewMenu::ShowPictures(
    Progress& progress, const std::string& path, const std::string& nothing,
    const std::function<std::vector<pictures::Picture>(QString& note)>& draw) {
  QString note;
  QPointer<PictureWindow> made;
  const bool done = RunUnlessCancelled(progress, [&] {
    std::vector<pictures::Picture> drawings = draw(note);
    if (drawings.empty()) return;
    made = new PictureWindow(std::move(drawings), note.trimmed(), progress, desktop_, &window_);
  });
  if (made) {
    made->show();
    OnShown(path);
  } else if (done) {
    const std::string text = nothing + (note.isEmpty() ? "" : " " + note.toStdString());
    desktop_.ShowMessage({FromUtf8(text), MessageIcon::kExclamation});
  }
}

}  // namespace merivane::desktop
