// What the links of the scenario under merge say already, and the simplest changes to them.
#pragma once

#include <cstdint>
#include <string_view>

#include "program/program.h"

namespace merivane::roundtrip {

using namespace program;

bool DirectLinkExists(ProjectToModel& state, std::int16_t origin, std::int16_t destination);

// True when the way back from the destination along the first incoming link of each junction, all
// of a kind that holds "AND" (or "OR"), comes to a junction with a link from the origin. A link
// that leads from the origin straight to the destination doesn't count. A circle of junctions is
// error 28.
bool LinkedThroughAnd(ProjectToModel& state, std::int16_t origin, std::int16_t destination);
bool LinkedThroughOr(ProjectToModel& state, std::int16_t origin, std::int16_t destination);

// Adds the link and returns true, unless the origin has a link out or the destination one in. Both
// type texts end in a blank, whatever the ends are.
bool AddDirectLink(ProjectToModel& state, std::int16_t origin, std::int16_t destination);

// Deletes the links into the destination that come from a junction, save those from a
// synchronised AND. A link from a process is error 3021.
void DropPlainIncomingLinks(ProjectToModel& state, std::int16_t destination);

// Whether the scenario has a junction of that number, and the type text of a link's end.
bool IsJunction(ProjectToModel& state, std::int16_t number);
std::string_view EndType(ProjectToModel& state, std::int16_t number);

}  // namespace merivane::roundtrip
