// The outline of the plan that a model gives.
#pragma once

#include <cstdint>
#include <functional>
#include <map>

#include "model_rows.h"

namespace merivane::reconcile {

constexpr std::int32_t kNoPlace = -1;

// By the rules of the translator, the summary task of each unit that goes to the plan: by its
// number, 0 on the first level. A unit whose scenario stands below one that doesn't go there falls
// under the task in front of it. kNoPlace: a unit around it is gone, or they go round in a circle,
// or there are more of them than a translation has levels.
std::map<std::int32_t, std::int32_t> SummaryTasks(const ModelRows& model,
                                                  const std::function<bool(std::int32_t)>& isGone);

}  // namespace merivane::reconcile
