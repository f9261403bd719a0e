// Why a merge would stop, in the user's words, and what the trial of one goes on with.
#pragma once

#include <string>

#include "inspect/model_snapshot.h"
#include "plan_predecessors.h"
#include "platform/desktop.h"
#include "roundtrip/modMpxtoIDEF3.h"

namespace merivane::inspect {

using namespace platform;
using namespace roundtrip;

// `box` is the one that told the stop. REQUIRES: the step is one of a task.
MergeChange ExplainStep(const MergeStop& stop, const Message& box, const PlanPredecessors& plan);

// A row of planning XML, or a line of an MPX file.
MergeChange ExplainRow(const MergeStop& stop, const Message& box);

// The line with the names and the quantity that a merge takes.
std::string MendedLine(const std::string& line);

// What a box tells, without the words of the run time, as one line.
std::string ReasonOf(const Message& box);

}  // namespace merivane::inspect
