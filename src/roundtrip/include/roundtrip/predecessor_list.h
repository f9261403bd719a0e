// A task's list of predecessors, as a plan tells it: "3,4SS+1d".
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace merivane::roundtrip {

enum class Relation { kFinishToStart, kStartToStart, kFinishToFinish, kStartToFinish };

// The entries between the commas; one of an empty list. A comma right in front of an entry belongs
// to it.
std::vector<std::string> PredecessorEntries(const std::string& list);

// SS, FF and SF are looked for in this order, anywhere in the entry and in any case; a lag isn't
// read.
Relation RelationOf(std::string_view entry);

// The number at the front of the entry, rounded; 0 without one, error 6 beyond 16 bits.
std::int16_t PlanIdOf(std::string_view entry);

}  // namespace merivane::roundtrip
