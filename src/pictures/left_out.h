// Why units stay out of the plan.
#pragma once

#include "pictures/process_model.h"

namespace merivane::pictures {

// Fills in whyLeft of each unit that isn't sent, from what was sent around it: the nearest junction
// in front that takes another path, the unit above it, or the choice of another scenario.
// REQUIRES: a scenario stands behind the one whose unit it decomposes.
void TellWhyLeft(ProcessModel& model);

}  // namespace merivane::pictures
