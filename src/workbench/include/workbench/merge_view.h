// A merge before it runs, as the workbench shows it: the model with what becomes of it, and the
// plan that comes in over the one that was.
//
//   const FileView view = ViewMerge({"plan.xml", "model.mdb", 1}, desktop);
#pragma once

#include <cstdint>
#include <string>

#include "platform/desktop.h"
#include "workbench/file_view.h"

namespace merivane::workbench {

using namespace platform;

struct PlannedMerge {
  std::string plan;      // UTF-8, so below
  std::string database;  // that holds the model
  std::int32_t project = 0;
  bool isComplete = false;
  bool operator==(const PlannedMerge&) const = default;
};

// Tries the merge in a copy; nothing of the user's is touched. Notes tell what its preview tells,
// and elements, diagrams and chart have marks of it. Where the merge stops, what it would change
// without the stops is shown; where nothing comes of it, the model as it is. Pictures that can't be
// made are told in a line. Progress is shown on `shown`, from where RunCancelled comes up. Errors
// are those of the preview.
FileView ViewMerge(const PlannedMerge& merge, Desktop& shown);

}  // namespace merivane::workbench
