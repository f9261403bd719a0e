// The two places in a database where the tasks and links of a project can lie.
#pragma once

#include <unordered_map>

#include "schedule/plan.h"
#include "schedule/project_rows.h"

namespace merivane::schedule {

using TaskIndices = std::unordered_map<std::int64_t, std::size_t>;  // by UID

// Tasks and links from MSP_TASKS and MSP_LINKS.
void ReadPlanTables(Connection& connection, std::int32_t project, Plan& plan);

// Tasks and links from ProjectAct; none where no file was brought back into the project.
void ReadWorkTables(Connection& connection, std::int32_t project, Plan& plan);

}  // namespace merivane::schedule
