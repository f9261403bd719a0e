// A plan as its tables hold it: tasks in the order of the list, and the links between them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "runtime/dates.h"
#include "schedule/lag.h"
#include "schedule/working_time.h"
#include "store/connection.h"

namespace merivane::schedule {

using namespace store;

struct PlanTask {
  std::int64_t uid = 0;  // differs from those of all other tasks
  std::int64_t id = 0;   // its place in the list
  std::string name;
  std::int64_t level = 1;             // of the outline, as the table has it
  std::optional<std::size_t> parent;  // index of the summary task right above it
  bool summary = false;               // tasks lie below it
  Tenths duration = 0;                // never negative; of a summary as the table has it
  std::int64_t durationFormat = kFormatDays;
  std::optional<std::int64_t> occurrence;  // number of the process occurrence that it stands for

  bool IsElapsed() const { return Lag{duration, durationFormat}.IsElapsed(); }
};

// Numbers of MSP_LINKS.
enum class LinkKind {
  kFinishToFinish = 0,
  kFinishToStart = 1,
  kStartToFinish = 2,
  kStartToStart = 3
};

struct PlanLink {
  std::size_t predecessor = 0;  // indices of tasks
  std::size_t successor = 0;
  LinkKind kind = LinkKind::kFinishToStart;
  Lag lag = {};
};

struct Plan {
  std::string name;
  DateTime start;
  std::vector<PlanTask> tasks;
  std::vector<PlanLink> links;  // in the order of the table, or of the tasks' lists
  bool broughtBack = false;     // it is what an MPX or XML file brought back
};

// Reads a project of a database of Merivane or of another program: the plan that a file last
// brought back into it, as the work tables keep it, otherwise the one of the MSP_ tables. The start
// is the project's own, otherwise the model's, otherwise `today`. Left out: rows of UID 0 and below
// and level 0 (summaries of the whole), rows without a place in the list, blank rows, a UID's
// second row, links of other projects, of tasks that aren't there and of unknown kinds. A failure
// is the store's RunTimeError.
//
// A duration is the model's own (hundredths of a day) where the table's whole days come from it;
// otherwise the table's.
Plan ReadPlan(Connection& connection, std::int32_t project, const DateTime& today);

}  // namespace merivane::schedule
