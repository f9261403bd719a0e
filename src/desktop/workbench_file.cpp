#include "workbench_file.h"

#include <utility>

#include "desktop/qt_desktop.h"
#include "project_picker.h"
#include "runtime/code_page.h"
#include "runtime/run_time_error.h"
#include "shell/message_advice.h"

namespace merivane::desktop {

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
