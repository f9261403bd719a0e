// The tasks of a plan in the work tables and their predecessors, held against each other.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "inspect/model_snapshot.h"
#include "store/connection.h"

namespace merivane::inspect {

using namespace store;

class PlanPredecessors {
 public:
  struct Task {
    std::int32_t row = 0;  // its number in the plan
    std::string name;
    std::string predecessors;
    std::optional<std::int32_t> unit;      // none for a task that is new
    std::optional<std::int32_t> scenario;  // of the unit
  };

  // Errors of the database come up as RunTimeErrors.
  PlanPredecessors(Connection& connection, std::int32_t project);

  // Null where the plan has no such row.
  const Task* Find(std::int32_t row) const;

  // Of the task's list the entries whose task the plan doesn't have.
  std::vector<std::string> MissingFor(const Task& task) const;

  // What a merge passes over without a word: missing predecessors, those under another summary
  // task, and those of the kind start-to-finish.
  std::vector<MergeChange> PassedOver() const;

 private:
  const Task* Named(const std::string& entry) const;

  std::vector<Task> tasks_;                             // in the plan's order
  std::unordered_map<std::int32_t, std::size_t> rows_;  // the first of a number
};

}  // namespace merivane::inspect
