// The outline of the plan that a model gives.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>

#include "model_rows.h"

namespace merivane::reconcile {

constexpr std::int32_t kNoPlace = -1;

struct OutlinePlace {
  std::int32_t parent = kNoPlace;  // the number of the summary task, 0 on the first level
  std::size_t place = 0;           // among all tasks
};

// By the rules of the translator, of each unit that goes to the plan. A unit whose scenario stands
// below one that doesn't go there falls under the task in front of it. kNoPlace: a unit around it
// is gone, or they go round in a circle, or there are more of them than a translation has levels.
std::map<std::int32_t, OutlinePlace> OutlineOf(const ModelRows& model,
                                               const std::function<bool(std::int32_t)>& isGone);

}  // namespace merivane::reconcile
