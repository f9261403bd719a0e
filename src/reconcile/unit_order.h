// Numbers of units that put the tasks of a plan into their order.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <set>

#include "model_rows.h"

namespace merivane::reconcile {

// A translation orders the units below one unit by their numbers. `places`: where each unit that
// goes to the plan stands there. The numbers of those that get another one: as few as can be, and
// none that anybody bears or that is among `known`, so that a plan with earlier numbers takes no
// unit for another one. Units that aren't among `known` don't count. Where too few numbers up to
// 32767 are free, the units below one stay as they are.
std::map<std::int32_t, std::int32_t> NumbersInOrder(
    const ModelRows& model, const std::map<std::int32_t, std::size_t>& places,
    const std::set<std::int32_t>& known);

}  // namespace merivane::reconcile
