// A plan as a chart: the outline at the left, bars along a time axis. The dates are those of
// the schedule, which heeds calendars, constraints and progress; a bar reaches from start to
// finish.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "pictures/picture.h"
#include "schedule/plan.h"
#include "schedule/schedule.h"
#include "store/connection.h"

namespace merivane::pictures {

using namespace schedule;

// Names of the resources of each task of the plan, in its order, joined by ", ".
using TaskResources = std::vector<std::string>;

TaskResources ReadTaskResources(Connection& connection, std::int32_t project,
                                const schedule::Plan& plan);

// Critical tasks and links stand out; what a task is of stands behind its bar. The id of the
// picture is "plan", of a task's figure "task-" and its UID. `dated` (Windows-1252) ends the
// description: where the dates come from.
Picture DrawChart(const schedule::Plan& plan, const schedule::Schedule& dates,
                  const TaskResources& resources, bool headline = true,
                  const std::string& dated = {});

// Reads, works out the dates and draws. `today` is the beginning of a plan that tells none. Errors
// of the database come up as RunTimeErrors, links in a circle and a plan without a task as error 5.
Picture DrawChart(Connection& connection, std::int32_t project, const DateTime& today,
                  bool headline = true);

}  // namespace merivane::pictures
