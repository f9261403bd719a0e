// The ways from a task back to the tasks before it.
#pragma once

#include <cstdint>
#include <string>

#include "pass.h"

namespace merivane::translator {

// Walks back from the junction in junctionQueue(0) through all junctions to the first UOBs in the
// plan on each way, and links each to the task `succUID`. Gives their numbers, each with a comma
// behind it. A circle of junctions is error 9.
std::string CollectJunctionPredecessors(Pass& pass, const Value& succUID);

// Commas of a text; one in the first position ends the count.
std::int16_t CountCommas(const std::string& text);

}  // namespace merivane::translator
