// The predecessors of a plan in the work tables, brought into the model of gInterimConn.
#pragma once

#include "program/program.h"
#include "roundtrip/merge_listener.h"

namespace merivane::roundtrip {

using namespace program;

// The predecessors of the tasks of level 1, then those of the deeper levels. No step takes away
// what the plan no longer has, save single links. Without a top scenario the program ends; another
// failure is a RunTimeError and leaves the rows written so far. A listener (null: none) hears of
// each task, and of a failure in its place.
void MergeLinks(ProjectToModel& state, MergeListener* listener);

}  // namespace merivane::roundtrip
