// Turns the precedence links of a scenario's tasks into junctions and links.
#pragma once

#include <cstdint>

#include "link_tables.h"
#include "program/program.h"

namespace merivane::neutraltext {

// For each task of the scenario in turn: two or more finish-to-start predecessors (successors) give
// a junction of type "Async. AND" and its links.
void AddFanInJunction(ProjectToModel& state, std::int16_t taskUid, ScenarioLinks& links);
void AddFanOutJunction(ProjectToModel& state, std::int16_t taskUid, ScenarioLinks& links);

// Behind these, for each task again: a single successor, or else a single predecessor, gives one
// plain link, unless its row has been used.
void AddPlainLink(ProjectToModel& state, std::int16_t taskUid, ScenarioLinks& links);

// Last: every start-to-start (finish-to-finish) row of the project, those between tasks of other
// scenarios among them, makes its two tasks the branches of a "Sync. And" junction. Error 9 when a
// link touches them and the scenario has no junction yet.
void ResolveStartToStartLinks(ProjectToModel& state, ScenarioLinks& links);
void ResolveFinishToFinishLinks(ProjectToModel& state, ScenarioLinks& links);

}  // namespace merivane::neutraltext
