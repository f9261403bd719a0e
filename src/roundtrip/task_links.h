// The predecessors of one plan task, brought into the scenario under merge.
#pragma once

#include "neutraltext/modGlobal.h"

namespace merivane {

// `task` is a set of ProjectAct on the task. A task without predecessors loses its first incoming
// link, unless that comes from a junction that nothing leads into.
void MergeLinksOfTask(ProjectToModel& state, Recordset& task);

}  // namespace merivane
