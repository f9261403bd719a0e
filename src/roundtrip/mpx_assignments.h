// Assignments of resources to tasks in an MPX file.
#pragma once

#include <cstdint>

#include "mpx_file.h"

namespace merivane::roundtrip {

// Adds the record 75 in hand to ProjectResReqts; only the first of a task and resource counts. One
// without a task, or with a field 2 or 3 that is no number, is passed over.
void ReadAssignment(ProjectToModel& state, const MpxLines& lines, std::int32_t taskPid);

}  // namespace merivane::roundtrip
