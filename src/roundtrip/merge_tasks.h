// The tasks of a plan in the work tables, brought into the model of gInterimConn.
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

}  // namespace merivane::roundtrip
