// One entry of a predecessor list: a task's number in the plan and the kind of relation.
#pragma once

#include <cstdint>
#include <string_view>

namespace merivane::roundtrip {

enum class Relation { kFinishToStart, kStartToStart, kFinishToFinish, kStartToFinish };

// SS, FF and SF are looked for in this order, anywhere in the entry and in any case; a lag isn't
// read.
Relation RelationOf(std::string_view entry);

// The number at the entry's front, rounded; 0 without one, error 6 beyond 16 bits.
std::int16_t PlanIdOf(std::string_view entry);

}  // namespace merivane::roundtrip
