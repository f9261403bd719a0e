// The project's own row in MSP_PROJECTS.
#pragma once

#include <string>

#include "program/program.h"

namespace merivane::roundtrip {

using namespace program;

// Adds the row where there is none; sets its start date where there is one.
void StoreProjectHeader(ProjectToModel& state, const std::string& date);

// Sets its two counters to the greatest numbers given so far.
void UpdateMaxIds(ProjectToModel& state);

}  // namespace merivane::roundtrip
