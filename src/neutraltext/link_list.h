// The links of a scenario. Errors go to the caller, save where told.
#pragma once

#include <cstdint>

#include "link_tables.h"
#include "scenario_tree.h"

namespace merivane::neutraltext {

// From a row of Links_in_Scenario.
void WriteStoredLink(LineWriter& out, Recordset& link);

// 1 when the two occurrences or junctions lie in the same scenario, else 0. Has its own guard,
// which shows the description and answers 0: a Null scenario number is such a failure.
int SameScenario(ProjectToModel& state, std::int16_t originNum, std::int16_t destinationNum,
                 Connection* connection, ScenarioOfElement& known);

// From the interim tables; those that leave the scenario are left out.
void WriteStoredLinks(ProjectToModel& state, std::int16_t scenarioNum, Connection* connection,
                      ScenarioOfElement& known);

// Stored links for a scenario number above 0, else those of the table.
void WriteLinkList(ScenarioTree& tree, std::int16_t scenarioNum, const LinkTable& linkTable);

}  // namespace merivane::neutraltext
