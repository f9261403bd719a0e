// The scenarios that the tasks of a plan lie in, by its outline.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "plan_outline.h"
#include "program/program.h"

namespace merivane::roundtrip {

// For one pass over the plan, which adds scenarios through it alone. The outline outlives it.
class TaskScenarios {
 public:
  TaskScenarios(ProjectToModel& state, const PlanOutline& outline)
      : state_(state), outline_(outline) {}

  // The scenario's number; made where there is none. `task` is a set of ProjectAct on the task. A
  // task that lies deep without a row above it is error 3021.
  std::int16_t ScenarioForTask(Recordset& task);

 private:
  std::int16_t DecompositionOf(const std::string& parent, Recordset& scenarios);
  std::int16_t Add(Recordset& scenarios, std::int16_t number, const Value& parent);
  std::int16_t NextNumber();

  ProjectToModel& state_;
  const PlanOutline& outline_;
  std::optional<std::int16_t> highest_;  // asked for once
};

}  // namespace merivane::roundtrip
