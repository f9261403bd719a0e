// Plan tasks as elements of the model: scenarios from the outline, activities and occurrences from
// new tasks, names, durations and notes from known ones.
#pragma once

#include <cstdint>

#include "neutraltext/modGlobal.h"

namespace merivane {

// The occurrence number (Text1) of the plan task `pid`; 0 for an unknown task and for one that has
// no number yet. Error 6 for a number beyond 16 bits, 13 for one that is no number.
std::int16_t ModelIdOfTask(ProjectToModel& state, std::int16_t pid);

}  // namespace merivane
