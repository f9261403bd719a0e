// The three steps that fold a plan in the work tables into the model of gInterimConn.
//
// One code path serves both modes: when a model is rebuilt (gRebuildModel 1) every task counts as
// new. No step takes away what the plan no longer has, save single links. A failure is a
// RunTimeError and leaves the rows written so far. A listener (null: none) hears of each task.
#pragma once

#include "program/program.h"
#include "roundtrip/merge_listener.h"

namespace merivane::roundtrip {

using namespace program;

// Every task of outline level 1 and deeper becomes an occurrence, or changes its own. A plan
// without a row is error 3021. What was sent to the plan and isn't in it any more stays.
void BringBackTasks(ProjectToModel& state, MergeListener* listener);

// The predecessors of the tasks of level 1, then those of the deeper levels. Without a top scenario
// the program ends.
void MergeLinks(ProjectToModel& state, MergeListener* listener);
void MergeTopLevelLinks(ProjectToModel& state, MergeListener* listener);

// Group by group of siblings. The row in front of a group counts as its parent; one that has no
// scenario ends the work for good.
void MergeDecompositionLinks(ProjectToModel& state, MergeListener* listener);

// The assignments of the plan.
void MergeResourceRequirements(ProjectToModel& state);

}  // namespace merivane::roundtrip
