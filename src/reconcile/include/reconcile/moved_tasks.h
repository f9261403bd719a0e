// Which tasks stand elsewhere among their neighbours than in another plan.
#pragma once

#include <cstdint>
#include <vector>

#include "reconcile/plan_content.h"

namespace merivane::reconcile {

// Tasks by their numbers; 0 in front of the first one.
struct MovedTask {
  std::int32_t task = 0;
  std::int32_t behind = 0;       // in the plan
  std::int32_t otherBehind = 0;  // in the other one
};

// The fewest tasks that have to move, each with what follows it there, before those of each summary
// task stand as in `other`. Only tasks that lie below the same one in both are held against each
// other.
std::vector<MovedTask> MovedTasks(const PlanContent& plan, const PlanContent& other);

}  // namespace merivane::reconcile
