// What the links of the scenario under merge say already, and the simplest changes to them.
#pragma once

#include <cstdint>

#include "program/program.h"

namespace merivane::roundtrip {

using namespace program;

bool DirectLinkExists(ProjectToModel& state, std::int16_t origin, std::int16_t destination);

// True for a direct link, and when the way back from the destination along the first incoming link
// of each junction, all of a kind that holds "OR" (or all "AND"), comes to a junction with a link
// from the origin. A circle of junctions is error 28.
bool IsLinked(ProjectToModel& state, std::int16_t origin, std::int16_t destination);

// Adds the link and returns true, unless the origin has a link out or the destination one in. Both
// type texts end in a blank, whatever the ends are.
bool AddDirectLink(ProjectToModel& state, std::int16_t origin, std::int16_t destination);

// Deletes the links into the destination that come from a junction, save those from a
// synchronised AND. A link from a process is error 3021.
void DropPlainIncomingLinks(ProjectToModel& state, std::int16_t destination);

}  // namespace merivane::roundtrip
