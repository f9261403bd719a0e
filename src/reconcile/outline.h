// Units of a model as tasks of a plan: their places in the outline that the model gives, the
// numbers that put them into another order, and which task of a plan that comes in is which unit.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <set>
#include <vector>

#include "model_rows.h"
#include "reconcile/plan_content.h"
#include "store/connection.h"

namespace merivane::reconcile {

constexpr std::int32_t kNoPlace = -1;

struct OutlinePlace {
  std::int32_t parent = kNoPlace;  // the number of the summary task, 0 on the first level
  std::size_t place = 0;           // among all tasks
};

// By the rules of the translator, of each unit that goes to the plan. A unit whose scenario stands
// below one that doesn't go there falls under the task in front of it. kNoPlace: a unit around it
// is gone, or they go round in a circle, or there are more of them than a translation has levels.
// `numbers`: of units that get another one, by which they are put in order then.
std::map<std::int32_t, OutlinePlace> OutlineOf(const ModelRows& model,
                                               const std::function<bool(std::int32_t)>& isGone,
                                               const std::map<std::int32_t, std::int32_t>& numbers);

// A translation orders the units below one unit by their numbers. `places`: where each unit that
// goes to the plan stands there. The numbers of those that get another one: as few as can be, and
// none that anybody bears or that is among `known`, so that a plan with earlier numbers takes no
// unit for another one. Units that aren't among `known` don't count. Where too few numbers up to
// 32767 are free, the units below one stay as they are.
std::map<std::int32_t, std::int32_t> NumbersInOrder(
    const ModelRows& model, const std::map<std::int32_t, std::size_t>& places,
    const std::set<std::int32_t>& known);

// Puts a number into the Text1 of each task in the work tables of `plan`: the unit's that it bears,
// where no earlier task bears it; otherwise that of a unit which no task bears, by its name below
// the same summary task; otherwise the next free one of `model`. Gives the rows that were found by
// their names. Error 321 where no task is a unit of `given`, or where none bears a number and most
// of them have names that the model doesn't know: such a plan would empty the model.
std::vector<std::int32_t> NumberTasks(Connection& plan, std::int32_t project,
                                      const ModelRows& model, const PlanContent& given);

}  // namespace merivane::reconcile
