// The predecessors of one plan task, brought into the scenario under merge.
#pragma once

#include "program/program.h"
#include "roundtrip/merge_listener.h"

namespace merivane::roundtrip {

using namespace program;

// `task` is a set of ProjectAct on the task. A task without predecessors loses its first incoming
// link, unless that comes from a junction that nothing leads into.
void MergeLinksOfTask(ProjectToModel& state, Recordset& task, MergeListener* listener);

}  // namespace merivane::roundtrip
