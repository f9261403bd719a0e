// What a workbench window shows, a file or a merge before it runs, and the way to read it again.
#pragma once

#include <QString>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "program/progress.h"
#include "store/connection.h"
#include "workbench/file_view.h"
#include "workbench/live_model.h"

class QWidget;

namespace merivane::desktop {

using namespace program;
using namespace store;
using namespace workbench;

class QtDesktop;

// The words for a file that the user opens, by its ending.
inline FileKind KindOfName(const QString& name) { return KindOfOpened(name.toStdString()); }

inline QString KindWord(const QString& name) {
  switch (KindOfName(name)) {
    case FileKind::kText:
      return "model";
    case FileKind::kMpx:
      return "MPX plan";
    case FileKind::kXml:
      return "XML plan";
    case FileKind::kDatabase:
      break;
  }
  return "project database";
}

// Reads as a run with a bar, which the user may cancel. Nothing comes back then, nor where the file
// can't be read, which a box tells. REQUIRES: called in a handler of the desktop.
class WorkbenchFile {
 public:
  // All outlive it. A question of the reading is asked in front of `window`.
  WorkbenchFile(std::string path, QtDesktop& desktop, Workspace& workspace, Progress& progress,
                QWidget& window);

  // The same of a merge: its plan is the file.
  WorkbenchFile(PlannedMerge merge, QtDesktop& desktop, Workspace& workspace, Progress& progress,
                QWidget& window);

  const std::string& Path() const { return path_; }
  const std::optional<PlannedMerge>& Merge() const { return merge_; }
  FileKind Kind() const { return KindOfOpened(path_); }
  Progress& Work() const { return progress_; }
  // The project of a database that was read.
  std::optional<std::int32_t> Project() const { return project_; }

  // From the disk: the first time, and whenever it has changed. Choices stay.
  std::optional<FileView> Read();
  // With another choice.
  std::optional<FileView> Choose(const std::string& question, std::size_t name);

 private:
  FileView ReadModel();
  std::optional<FileView> ReadDatabase();
  std::optional<FileView> Guarded(const std::function<std::optional<FileView>()>& read);

  std::string path_;
  std::optional<PlannedMerge> merge_;
  QtDesktop& desktop_;
  Workspace& workspace_;
  Progress& progress_;
  QWidget& window_;
  std::optional<std::int32_t> project_;
  std::unique_ptr<LiveModel> model_;
  std::map<std::string, std::size_t> answers_;  // by question
};

}  // namespace merivane::desktop
