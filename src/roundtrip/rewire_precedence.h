// New precedences that go through junctions, so that an occurrence keeps one link in and one out.
//
// All work in gCurrentScenario; a rule looks only at the first row of what it finds. Junctions are
// "Async. AND". A failure leaves the rows so far, and the project's counter as it was.
#pragma once

#include <cstdint>

#include "program/program.h"

namespace merivane::roundtrip {

using namespace program;

// One new precedence. The link leaves from the AND fan-out that the origin ends in, or from a new
// one, or from an origin without a link out; it arrives at the AND fan-in or start junction that
// feeds the destination, or at a new fan-in, or at a destination without a link in. Nothing is
// added where both ends are one or the link is there.
//
// Where the destination was fed by a process, the link from that process into the new fan-in bears
// its origin's type in the column Orgin_Type; Origin_Type stays Null.
void ConnectThroughJunctions(ProjectToModel& state, std::int16_t origin, std::int16_t destination);

// Puts a fan-in in front of the task, its first incoming link moved to it, and leaves the
// junction's number in gDestinationUse.
void AddFanInForPredecessors(ProjectToModel& state, Recordset& task);

// Links each of gNewPredecessors to gDestinationUse; one that has a link out gets a new fan-out in
// front of it. The last predecessor stays in gOriginUse.
void AttachNewPredecessors(ProjectToModel& state);

}  // namespace merivane::roundtrip
