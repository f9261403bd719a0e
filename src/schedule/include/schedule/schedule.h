// Early and late dates of a plan on the standard calendar.
#pragma once

#include <vector>

#include "schedule/plan.h"

namespace merivane::schedule {

// Working time from the beginning of the plan.
struct TaskDates {
  Tenths earlyStart = 0;
  Tenths earlyFinish = 0;
  Tenths lateStart = 0;
  Tenths lateFinish = 0;
  Tenths totalSlack = 0;
  bool critical = false;
};

struct Schedule {
  std::vector<TaskDates> tasks;  // one for each task of the plan, in its order
  Tenths finish = 0;             // of the whole; it starts at 0

  // The dates on which it falls. A milestone stands where its predecessors end.
  DateTime StartOf(std::size_t task) const;
  DateTime FinishOf(std::size_t task) const;
  DateTime Start() const;
  DateTime Finish() const;

  WorkingTime calendar;
};

// Every task begins as early as its links and those of the summary tasks above it let it, never
// before the plan. A summary spans its tasks: a link into its start holds back all of them, a link
// into its finish holds back the finish alone, a link out of it waits for the first start or the
// last finish. Time and memory grow with the tasks and links.
//
// Links in a circle, also one that goes through the outline, are error 5; the description names the
// tasks in it.
Schedule MakeSchedule(const Plan& plan);

}  // namespace merivane::schedule
