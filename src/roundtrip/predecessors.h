// A task's list of predecessors, held against the links of its scenario.
//
// All work in gCurrentScenario of gInterimProjId on gInterimConn. Only what the model doesn't say
// yet is added; nothing is taken away because the list no longer names it. A failure is a
// RunTimeError and leaves the rows written so far.
#pragma once

#include <cstdint>

#include "program/program.h"
#include "roundtrip/merge_listener.h"

namespace merivane::roundtrip {

using namespace program;

// `task` is a set of ProjectAct on the task. A task without predecessors loses its first incoming
// link, unless that comes from a junction that nothing leads into.
void MergeLinksOfTask(ProjectToModel& state, Recordset& task, MergeListener* listener);

// Entries of the list: its commas plus one; 0 for Null and empty text. A comma in first position
// isn't counted and ends the counting. Error 6 beyond 32,767.
std::int16_t CountPredecessors(const Value& text);

// For a list of one entry; the Text1 of the task must be a number. An SS or FF entry synchronises
// both tasks, SF is passed over, anything else is a precedence, dropped when the predecessor lies
// in another scenario. Leaves the two ends in gOriginUse and gDestinationUse.
void ApplySinglePredecessor(ProjectToModel& state, Recordset& task);

// For a list of several entries. SS and FF entries are carried out at once, in the list's order;
// the precedences that the model lacks then go in together.
void ApplySeveralPredecessors(ProjectToModel& state, Recordset& task);

}  // namespace merivane::roundtrip
