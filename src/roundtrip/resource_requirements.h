// The assignments of a plan in the work tables, brought into the model of gInterimConn.
#pragma once

#include "program/program.h"

namespace merivane::roundtrip {

using namespace program;

// Assignments become the objects of occurrences; those that the plan no longer has go only when a
// model is rebuilt. A failure is a RunTimeError and leaves the rows written so far.
void MergeResourceRequirements(ProjectToModel& state);

}  // namespace merivane::roundtrip
