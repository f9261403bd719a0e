// Who does the tasks of a plan, for how long, and for how much.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "schedule/plan.h"
#include "schedule/schedule.h"

namespace merivane::schedule {

struct PlanResource {
  std::int64_t id = 0;  // its place in the list
  std::string name;
  double units = 1;                       // that there are
  std::optional<double> costOfHour = {};  // nothing: the plan tells none, or it is a material
};

struct PlanAssignment {
  std::size_t task = 0;  // indices into the plan and the staffing
  std::size_t resource = 0;
  double units = 1;
  double hours = 0;  // of work
};

struct Staffing {
  std::vector<PlanResource> resources;
  std::vector<PlanAssignment> assignments;  // in the order of the table

  // The names of those who do a task, joined by ", ".
  std::vector<std::string> NamesByTask(std::size_t tasks) const;
  // Of a resource, hours and cost of all that it does; no cost where it has no rate.
  double HoursOf(std::size_t resource) const;
  std::optional<double> CostOf(std::size_t resource) const;
};

// From the tables that the plan is of. Rates of a plan that was brought back are those of the
// resource of that name. Work is the table's, otherwise the task's length times the units. Left
// out: rows without a name, assignments without a task or a resource of the plan. Errors of the
// database come up.
Staffing ReadStaffing(Connection& connection, std::int32_t project, const Plan& plan);

// A stretch of time in which more of a resource is asked for than there is.
struct Overload {
  std::size_t resource = 0;
  Tenths from = 0;  // moments of ClockOf
  Tenths to = 0;
  double units = 0;  // the most that is asked for at once
};

// In the order of the resources, then of time. Summaries, milestones and inactive tasks ask for
// nothing; a task asks for its units from its early start to its early finish, nights included.
std::vector<Overload> OverloadsOf(const Plan& plan, const Schedule& dates,
                                  const Staffing& staffing);

// Of each task, its predecessors as a plan's list tells them: "3, 4SS+1d".
std::vector<std::string> PredecessorTexts(const Plan& plan);

}  // namespace merivane::schedule
