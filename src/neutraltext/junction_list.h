// The junctions of a scenario. Errors go to the caller.
#pragma once

#include <cstdint>

#include "link_tables.h"
#include "scenario_tree.h"

namespace merivane::neutraltext {

// From the interim tables.
void WriteStoredJunctions(ProjectToModel& state, std::int16_t scenarioNum, Connection* connection);

// Leaves the set on its first row, which decides between stored and generated junctions.
void WriteJunctionList(ScenarioTree& tree, Recordset& tasks, std::int16_t scenarioNum,
                       const JunctionTable& junctionTable);

}  // namespace merivane::neutraltext
