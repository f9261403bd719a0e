// What became of one plan in another.
#pragma once

#include <vector>

#include "inspect/model_snapshot.h"
#include "reconcile/plan_content.h"

namespace merivane::inspect {

using namespace reconcile;

// In the words of a merge's changes, each with its row in the second plan, or of what is gone in
// the first. A task is found by its unit and name, by its name in its place, by its name alone, and
// with another name by its unit.
std::vector<MergeChange> DifferencesBetween(const PlanContent& before, const PlanContent& after);

}  // namespace merivane::inspect
