// The merge that keeps everything that a plan holds.
//
//   reconcile::MergeResult result = reconcile::MergeCompletely(state, "plan.mpx");
//   if (!result.merged) ...                        // a box has told why
//   for (const reconcile::Remark& remark : result.remarks) ...  // what a model can't hold
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "mspdi/plan_reader.h"
#include "platform/quiet_desktop.h"
#include "program/program.h"
#include "store/connection.h"

namespace merivane::reconcile {

using namespace platform;
using namespace program;

// What the plan says and the merged model doesn't, or says otherwise. Texts are Windows-1252.
struct Remark {
  std::optional<std::int32_t> row;  // in the plan
  std::string kind;                 // "task", "resource", "plan"
  std::string name;
  std::string sentence;
  std::string advice;
};

struct MergeResult {
  bool merged = false;
  std::map<std::int32_t, std::int32_t> numbers;  // of units that got another one for their order
  std::vector<std::int32_t> byName;  // rows of tasks without a number, found by name and place
  std::vector<Remark> remarks;  // in the order of the plan's rows, as far as they are of one kind
};

// Changes the model of gInterimProjId on gInterimConn until a translation with the choices of the
// last one gives the plan of the file ("*.xml": planning XML, any other MPX), writes the whole
// model to gOutFile, and leaves model, plan and work tables in the database, with gProjectConn open
// on it. What the plan doesn't speak of stays as it is. Nothing in the database has changed where
// the result isn't merged: a plan that can't be read, one that knows no task of the model, and one
// whose tasks wait for each other in a circle, told in a box by their names. RunCancelled, the end
// of the program and what the machine is to blame for come up. `ahead` is what planning XML holds,
// where it was read already.
MergeResult MergeCompletely(ProjectToModel& state, const std::string& planPath,
                            std::optional<mspdi::FilePlan> ahead = {});

// Lets a translation on `desktop` choose the scenarios that went to the plan of the project's last
// translation in `stored`. Errors of the database come up.
void ChooseAsBefore(QuietDesktop& desktop, store::Connection& stored, std::int32_t project);

}  // namespace merivane::reconcile
