// The steps of a merge: what the work tables hold of a plan comes into the model of gInterimConn.
#pragma once

#include "program/program.h"
#include "roundtrip/merge_listener.h"

namespace merivane::roundtrip {

using namespace program;

// Every task of outline level 1 and deeper becomes an occurrence in the scenario of its place, or
// changes its own; when a model is rebuilt (gRebuildModel 1) every task counts as new. A plan
// without a row is error 3021. What was sent to the plan and isn't in it any more stays. A failure
// is a RunTimeError and leaves the rows written so far. A listener (null: none) hears of each task,
// and of a failure in its place.
void BringBackTasks(ProjectToModel& state, MergeListener* listener);

// The predecessors of the tasks of level 1, then those of the deeper levels. No step takes away
// what the plan no longer has, save single links. Without a top scenario the program ends; another
// failure is a RunTimeError and leaves the rows written so far. A listener (null: none) hears of
// each task, and of a failure in its place.
void MergeLinks(ProjectToModel& state, MergeListener* listener);

// Assignments become the objects of occurrences; those that the plan no longer has go only when a
// model is rebuilt. A failure is a RunTimeError and leaves the rows written so far.
void MergeResourceRequirements(ProjectToModel& state);

// Junctions that a merge leaves without a purpose. Both walk the junctions of the project as they
// stood at the start; rows deleted since are skipped.
//
// Deletes the junctions that have no link in or no link out; only when a model is rebuilt.
void RemoveDanglingJunctions(ProjectToModel& state);

// A junction with exactly one link in and one out stands for nothing: the incoming link goes on to
// the far end of the outgoing one, which is deleted with the junction. The link's types and names
// stay.
void CollapseJunctions(ProjectToModel& state);

}  // namespace merivane::roundtrip
