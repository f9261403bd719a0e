// Plan tasks as elements of the model: activities and occurrences from new tasks, names, durations
// and notes from known ones.
#pragma once

#include <cstdint>
#include <string>

#include "program/program.h"

namespace merivane::roundtrip {

using namespace program;

// Brings a new task into the model (its Text1 takes the new occurrence's number), or the name,
// duration and notes of a known one. A duration that the model keeps as an expression stays; a
// number that no occurrence bears is passed over. A known task of another scenario than
// gCurrentScenario is error 13.
void MergeTask(ProjectToModel& state, Recordset& task);

// The occurrence number (Text1) of the plan task `pid`; 0 for an unknown task and for one that has
// no number yet. Error 6 for a number beyond 16 bits, 13 for one that is no number.
std::int16_t ModelIdOfTask(ProjectToModel& state, std::int16_t pid);

// "Error in Translation", and the program ends.
[[noreturn]] void EndOnBrokenModel(ProjectToModel& state, const std::string& title);

}  // namespace merivane::roundtrip
