// A plan as a chart: the outline at the left, bars along a time axis. The dates are those that the
// tables have of each task, otherwise those of the schedule, which heeds calendars, constraints and
// progress; a bar reaches from start to finish.
//
//   const DatedPlan plan = ReadDatedPlan(connection, project, today);
//   WritePictures({DrawChart(plan, {.columns = true})}, "plan.svg");
#pragma once

#include <string>
#include <vector>

#include "pictures/picture.h"
#include "schedule/plan.h"
#include "schedule/schedule.h"
#include "schedule/staffing.h"
#include "store/connection.h"

namespace merivane::pictures {

using namespace schedule;

// A plan with its dates and those who do its tasks.
struct DatedPlan {
  schedule::Plan plan;
  schedule::Schedule dates;  // of its tasks, in their order
  schedule::Staffing staffing;
  std::string dated;  // Windows-1252: "; dates computed from durations and links"
};

// Reads and works out the dates. `today` is the beginning of a plan that tells none. Errors of the
// database come up as RunTimeErrors, links in a circle and a plan without a task as error 5, dates
// beyond the year 9999 as 6.
DatedPlan ReadDatedPlan(Connection& connection, std::int32_t project, const DateTime& today);
// The same of a plan from elsewhere, without those who do its tasks: with the dates that it came
// with, one for each task, or with computed ones where `stored` is empty.
DatedPlan DatedPlanOf(schedule::Plan plan, const std::vector<StoredDates>& stored,
                      const DateTime& today);
// The same of a plan that ReadPlan has read.
DatedPlan WithDates(Connection& connection, std::int32_t project, const DateTime& today,
                    schedule::Plan plan);

struct ChartOptions {
  bool headline = true;               // the plan's name and what it spans above it
  bool columns = false;               // start, finish, days and predecessors beside each name
  std::string foot = {};              // Windows-1252: the last line
  const DatedPlan* before = nullptr;  // the plan as it was: thin bars below those of today
};

// Critical tasks and links stand out; who does a task stands behind its bar; below the bars, when
// more of a resource is asked for than there is. A task of `before` is the one that stands for the
// same occurrence, otherwise of the same UID; one that is gone stands in a grey row. The id of the
// picture is "plan", of a task's figure "task-" and its UID.
Picture DrawChart(const DatedPlan& plan, const ChartOptions& options = {});

std::string DateText(const DateTime& date);         // "Feb 3, 2003"
std::string DateAndTimeText(const DateTime& date);  // "Feb 3, 2003 14:30"
// "1 day", "2.25 days": of the plan's days of eight hours.
std::string DaysText(schedule::Tenths tenths);

}  // namespace merivane::pictures
