#include "view_menu.h"

#include <QAction>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>

#include "form_area.h"
#include "help_context.h"
#include "result_table.h"

namespace merivane::desktop {

namespace {

using Part = WorkbenchWindow::Part;

constexpr int kMenuContext = 1012;
constexpr int kDiagramContext = 1013;
constexpr int kChartContext = 1014;
constexpr int kLogContext = 1015;
constexpr int kOpenContext = 1016;
constexpr int kTabsContext = 1017;

}  // namespace

ViewMenu::ViewMenu(QMainWindow& window, QAction* before, QtDesktop& desktop, FormArea& area)
    : QObject(&window), window_(window), desktop_(desktop) {
  auto* menu = new QMenu("&View", &window);
  QAction* action = window.menuBar()->insertMenu(before, menu);
  action->setObjectName("mnuView");
  SetHelpContext(action, kMenuContext);
  AddItem(*menu, "mnuOpen", "&Open a model or a plan...", kOpenContext, [this] {
    OnAsk(kOpenDialog, Part::kWhole);
  })->setShortcut(QKeySequence::Open);
  AddItem(*menu, "mnuProcessDiagram", "Process &diagram...", kDiagramContext, [this] {
    OnAsk({"Models and translated models (*.txt *.mdb)|*.txt", "Process diagram"}, Part::kDiagrams);
  });
  AddItem(*menu, "mnuPlanChart", "Plan &chart...", kChartContext, [this] {
    OnAsk({"Plans (*.mdb)|*.mdb", "Plan chart"}, Part::kChart);
  });
  menu->addSeparator();
  QAction* tabs = AddItem(*menu, "mnuTabs", "Windows as &tabs", kTabsContext, [] {});
  tabs->setCheckable(true);
  tabs->setChecked(area.HasTabs());
  connect(tabs, &QAction::triggered, &area, [&area](bool isOn) {
    area.UseView(isOn ? QMdiArea::TabbedView : QMdiArea::SubWindowView);
  });
  QAction* log = AddItem(*menu, "mnuMessageLog", "&Messages of this session", kLogContext,
                         [this] { desktop_.Run([this] { ShowLog(); }); });
  log->setShortcut(QKeySequence("Ctrl+L"));
  log->setShortcutContext(Qt::ApplicationShortcut);
}

QAction* ViewMenu::AddItem(QMenu& menu, const char* name, const char* text, int helpContext,
                           const std::function<void()>& act) {
  QAction* action = menu.addAction(text);
  action->setObjectName(name);
  SetHelpContext(action, helpContext);
  connect(action, &QAction::triggered, this, act);
  return action;
}

void ViewMenu::ShowLog() {
  QDialog* open = window_.findChild<QDialog*>("logWindow");
  if (open == nullptr) open = new LogWindow(desktop_.Log(), desktop_, &window_);
  open->showNormal();
  open->raise();
  open->activateWindow();
}

}  // namespace merivane::desktop
