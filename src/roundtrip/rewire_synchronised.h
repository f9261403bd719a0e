// Tasks that the plan synchronises: two that finish together flow into one "Fan In" junction of
// type "Sync. AND", two that start together come out of one "Fan Out" of that type.
//
// The four routines are one algorithm with different rules. All work in gCurrentScenario. A failure
// leaves the rows so far and the project's counter as it was.
#pragma once

#include <cstdint>

#include "program/program.h"

namespace merivane::roundtrip {

using namespace program;

// By occurrence number, the predecessor first. The task loses its first incoming link.
// JoinFinishes fails (error 3021) on a predecessor whose first link out leads to a process,
// JoinStarts (statement error) where a link into either task remains to be looked at.
void JoinFinishes(ProjectToModel& state, std::int16_t predecessor, std::int16_t task);
void JoinStarts(ProjectToModel& state, std::int16_t predecessor, std::int16_t task);

// By number in the plan, the task first. Nothing is done when the plan lacks either number or has
// no occurrence number for it. Both fail (error 3021) where the task isn't on such a junction yet
// and the predecessor's link on that side has a process at its other end.
void JoinFinishesByTask(ProjectToModel& state, std::int16_t taskPid, std::int16_t predecessorPid);
void JoinStartsByTask(ProjectToModel& state, std::int16_t taskPid, std::int16_t predecessorPid);

}  // namespace merivane::roundtrip
