#include "workbench_file.h"

#include <QInputDialog>
#include <utility>
#include <vector>

#include "desktop/qt_desktop.h"
#include "qt_text.h"
#include "runtime/code_page.h"
#include "runtime/conversions.h"
#include "runtime/run_time_error.h"
#include "shell/run_result.h"
#include "store/recordset.h"

namespace merivane::desktop {

namespace {

// The project of the database, or the one that the user picks in front of `window`; nothing when
// cancelled or where there is none, which shows a box. Errors of the database come up.
std::optional<std::int32_t> PickProject(QtDesktop& desktop, QWidget& window,
                                        Connection& connection) {
  std::vector<std::int32_t> ids;
  QStringList names;
  Recordset rows;
  rows.OpenStatic("select PROJ_ID, PROJ_NAME from MSP_PROJECTS", &connection);
  for (; !rows.Eof(); rows.MoveNext()) {
    if (!IsNumeric(rows.Field(0))) continue;
    ids.push_back(ToInt32(rows.Field(0)));
    names.append(QString("%1  %2").arg(ids.back()).arg(ToQt(Joined(rows.Field(1)))));
  }
  if (ids.empty()) {
    desktop.ShowMessage(
        {FromUtf8(connection.DatabaseName()) + " holds no project.", MessageIcon::kExclamation});
    return std::nullopt;
  }
  if (ids.size() == 1) return ids.front();
  QInputDialog chooser(&window);
  chooser.setWindowTitle("Choose a project");
  chooser.setLabelText("Project:");
  chooser.setComboBoxItems(names);
  desktop.Execute(chooser);
  if (chooser.result() != QDialog::Accepted) return std::nullopt;
  return ids[static_cast<std::size_t>(names.indexOf(chooser.textValue()))];
}

}  // namespace

WorkbenchFile::WorkbenchFile(std::string path, QtDesktop& desktop, Workspace& workspace,
                             Progress& progress, QWidget& window)
    : path_(std::move(path)),
      desktop_(desktop),
      workspace_(workspace),
      progress_(progress),
      window_(window) {}

WorkbenchFile::WorkbenchFile(PlannedMerge merge, QtDesktop& desktop, Workspace& workspace,
                             Progress& progress, QWidget& window)
    : WorkbenchFile(merge.plan, desktop, workspace, progress, window) {
  merge_ = std::move(merge);
}

std::optional<FileView> WorkbenchFile::Guarded(
    const std::function<std::optional<FileView>()>& read) try {
  desktop_.TellAbout(path_);
  const SavedMousePointer pointer(desktop_, kPointerHourglass);
  std::optional<FileView> view = read();
  if (view && view->elements.empty() && !merge_) {
    std::string why = FromUtf8(path_) + " holds nothing that can be shown.";
    for (const std::string& line : view->lines) why += ' ' + line;
    desktop_.ShowMessage({why, MessageIcon::kExclamation});
    return std::nullopt;
  }
  return view;
} catch (const RunTimeError& error) {
  desktop_.ShowMessage({.text = error.Description(), .advice = PlanFileAdvice(path_, error)});
  return std::nullopt;
}

std::optional<FileView> WorkbenchFile::Read() {
  return Guarded([this]() -> std::optional<FileView> {
    if (!merge_ && Kind() == FileKind::kDatabase) return ReadDatabase();
    std::optional<FileView> view;
    RunUnlessCancelled(progress_, [&] {
      if (merge_) {
        view = ViewMerge(*merge_, desktop_);
      } else {
        view = Kind() == FileKind::kText ? ReadModel() : ViewPlanFile(path_, desktop_);
      }
    });
    return view;
  });
}

// The old model stays until the new one is read.
FileView WorkbenchFile::ReadModel() {
  auto model = std::make_unique<LiveModel>(path_, desktop_);
  for (const auto& [question, name] : answers_) model->Choose(question, name);
  FileView view = model->View();
  model_ = std::move(model);
  return view;
}

std::optional<FileView> WorkbenchFile::ReadDatabase() {
  Connection connection(workspace_);
  const bool isOpen = RunUnlessCancelled(
      progress_, [&] { connection.Open(ConnectionText(path_), OpenMode::kReadOnly); });
  if (!isOpen) return std::nullopt;
  if (!project_) project_ = PickProject(desktop_, window_, connection);
  if (!project_) return std::nullopt;
  std::optional<FileView> view;
  RunUnlessCancelled(progress_,
                     [&] { view = ViewDatabase(connection, *project_, desktop_.Today()); });
  return view;
}

std::optional<FileView> WorkbenchFile::Choose(const std::string& question, std::size_t name) {
  return Guarded([&]() -> std::optional<FileView> {
    if (!model_) return std::nullopt;
    const auto before = answers_;
    model_->Choose(question, name);
    answers_[question] = name;
    std::optional<FileView> view;
    if (!RunUnlessCancelled(progress_, [&] { view = model_->View(); })) {
      answers_ = before;
      const auto answer = answers_.find(question);
      model_->Choose(question, answer == answers_.end() ? 0 : answer->second);
    }
    return view;
  });
}

}  // namespace merivane::desktop
