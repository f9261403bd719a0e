// A plan as a table for a spreadsheet.
#pragma once

#include <cstdint>
#include <string>

#include "runtime/dates.h"
#include "store/connection.h"

namespace merivane::batch {

using namespace runtime;
using namespace store;

enum class PlanTable { kTasks, kResources, kAssignments };

struct TableText {
  std::string text;      // CSV in UTF-8, with the mark of that in front
  std::size_t rows = 0;  // without the head
};

// Dates are those of the schedule, "2026-11-26 08:00"; days are of the plan's own length, numbers
// have a point. `today` is the start of a plan that tells none. Errors of the database come up,
// links in a circle as error 5.
TableText PlanAsTable(Connection& connection, std::int32_t project, const DateTime& today,
                      PlanTable table);

}  // namespace merivane::batch
