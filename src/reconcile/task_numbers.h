// Which task of a plan is which unit of the model.
#pragma once

#include <cstdint>
#include <vector>

#include "model_rows.h"
#include "reconcile/plan_content.h"
#include "store/connection.h"

namespace merivane::reconcile {

// Puts a number into the Text1 of each task in the work tables of `plan`: the unit's that it bears,
// where no earlier task bears it; otherwise that of a unit which no task bears, by its name below
// the same summary task; otherwise the next free one of `model`. Gives the rows that were found by
// their names. Error 321 where no task is a unit of `given`, or where none bears a number and most
// of them have names that the model doesn't know: such a plan would empty the model.
std::vector<std::int32_t> NumberTasks(store::Connection& plan, std::int32_t project,
                                      const ModelRows& model, const PlanContent& given);

}  // namespace merivane::reconcile
