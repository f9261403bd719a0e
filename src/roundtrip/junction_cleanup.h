// Junctions that a merge leaves without a purpose. Both walk the junctions of the project as they
// stood at the start; rows deleted since are skipped.
#pragma once

#include "program/program.h"

namespace merivane::roundtrip {

using namespace program;

// Deletes the junctions that have no link in or no link out; only when a model is rebuilt.
void RemoveDanglingJunctions(ProjectToModel& state);

// A junction with exactly one link in and one out stands for nothing: the incoming link goes on to
// the far end of the outgoing one, which is deleted with the junction. The link's types and names
// stay.
void CollapseJunctions(ProjectToModel& state);

}  // namespace merivane::roundtrip
