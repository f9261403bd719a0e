// The parts of a plan's file, in the schema's order.
#pragma once

#include "element.h"
#include "mspdi/plan_writer.h"
#include "schedule/schedule.h"

namespace merivane::mspdi {

using namespace runtime;

// A plan on its way into a file.
struct PlanOnPaper {
  Connection& connection;
  std::int32_t project;
  schedule::Plan plan;
  schedule::Schedule dates;
};

inline constexpr std::int64_t kText1Field = 188743731;

// Name, dates, settings, the declaration of "Text1", the calendar.
void WriteHead(const PlanOnPaper& paper, Element& project);

// The summary row of the whole, then every task.
void WriteTasks(const PlanOnPaper& paper, Element tasks);

// The resources; behind them the assignments of tasks to resources, both of which must be there.
// Adds to `counts`.
void WriteResources(const PlanOnPaper& paper, Element& project, WrittenCounts& counts);

}  // namespace merivane::mspdi
