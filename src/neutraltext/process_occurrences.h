// The process occurrences of a scenario of a plan's outline. Errors go to the caller.
#pragma once

#include <string>

#include "link_tables.h"
#include "scenario_tree.h"

namespace merivane::neutraltext {

// Occurrences of the rows under `parentOutline` (all rows for "0"), then their links.
void WriteProcessOccurrenceList(ScenarioTree& tree, Recordset& tasks,
                                const std::string& parentOutline, ScenarioLinks& links);

}  // namespace merivane::neutraltext
