// What the report page tells of the plan: the words at its head, the chart, tasks and resources.
#pragma once

#include <string>
#include <vector>

#include "pictures/report.h"

namespace merivane::pictures {

// Markup: a list of what a reader asks first.
std::string SummaryOf(const Report& report);

// What the model left open and its facts or the user decided, a sentence of Windows-1252 each:
// which branch a junction takes, which scenario stands for a unit, which one at the top.
std::vector<std::string> DecisionsOf(const ProcessModel& model);

// Markup: the chart, for a screen and in sheets for paper, and its tasks as a table.
std::string PlanInPictureAndWords(const DatedPlan& plan);

// Markup: who does how much, for how much, and when more than there is.
std::string ResourcesOf(const DatedPlan& plan);

}  // namespace merivane::pictures
