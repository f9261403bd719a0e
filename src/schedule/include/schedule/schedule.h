// Early and late dates of a plan on its calendars. A plan goes in, as ReadPlan gives it or put
// together by hand; no database is touched.
//
//   const Plan plan = ReadPlan(connection, 1, today);
//   const Schedule schedule = MakeSchedule(plan);
//   for (std::size_t task = 0; task < plan.tasks.size(); ++task) {
//     if (schedule.tasks[task].critical) starts.push_back(schedule.StartOf(task));
//   }
//
// Times are tenths of a minute: counted in the project's working time (TaskDates), or as moments
// that run day and night (TaskMoments, see ClockOf). A schedule owns what it tells and stays when
// its plan is gone. The same plan has the same dates on every machine.
#pragma once

#include <vector>

#include "schedule/plan.h"

namespace merivane::schedule {

// The project's working time from the beginning of the plan. It stands still while a task goes on
// in hours of its own; the moments tell those too.
struct TaskDates {
  Tenths earlyStart = 0;
  Tenths earlyFinish = 0;
  Tenths lateStart = 0;
  Tenths lateFinish = 0;
  Tenths totalSlack = 0;
  bool critical = false;
};

// The same as moments of ClockOf.
struct TaskMoments {
  Tenths earlyStart = 0;
  Tenths earlyFinish = 0;
  Tenths lateStart = 0;
  Tenths lateFinish = 0;
};

struct Schedule {
  std::vector<TaskDates> tasks;      // one for each task of the plan, in its order
  std::vector<TaskMoments> moments;  // likewise
  TaskMoments whole;
  Tenths finish = 0;  // of the whole; it starts at 0

  // The dates on which it falls.
  DateTime StartOf(std::size_t task) const { return MomentOf(moments[task].earlyStart); }
  DateTime FinishOf(std::size_t task) const { return MomentOf(moments[task].earlyFinish); }
  DateTime Start() const { return MomentOf(whole.earlyStart); }
  DateTime Finish() const { return MomentOf(whole.earlyFinish); }
};

// Every task begins as early as its links and those of the summary tasks above it let it, never
// before the plan. A summary spans its tasks: a link into its start holds back all of them, a link
// into its finish holds back the finish alone, a link out of it waits for the first start or the
// last finish. Time and memory grow with the tasks and links.
//
// A task is done in the working time of its calendar; lags run in the project's. A milestone stands
// where its predecessors end. Constraints go before links where the plan honours them. What has
// begun stays; what is to be as late as possible uses its slack up; a task with dates of its own
// keeps them; an inactive one has dates, and neither a summary nor a successor heeds them. A task
// that is done is never critical.
//
// Links in a circle, also one that goes through the outline, are error 5; the description names the
// tasks in it.
Schedule MakeSchedule(const Plan& plan);

}  // namespace merivane::schedule
