// What a plan holds and a model has no place for.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace merivane::mspdi {

enum class Untaken {
  kInactiveTasks,
  kManualTasks,
  kMaterialResources,
  kCostResources,
  kLags,
  kStartToFinishLinks,
  kElapsedDurations,
  kSubprojects,
  kOuterLinks,
  kConstraints,
  kProgress,
  kNamelessTasks,
  kTaskCalendars,
  kFixedCosts,
  kWork,          // of an assignment, by its task
  kResourceCosts  // of resources
};
inline constexpr std::size_t kUntakenKinds = static_cast<std::size_t>(Untaken::kResourceCosts) + 1;

// The IDs of the tasks or resources by kind; one ID for each link of a task.
class UntakenRows {
 public:
  void Add(Untaken kind, std::int64_t id) { rows_[static_cast<std::size_t>(kind)].push_back(id); }
  const std::vector<std::int64_t>& Of(Untaken kind) const {
    return rows_[static_cast<std::size_t>(kind)];
  }

  // One line for each kind up to kProgress that there is, counted; empty where there is none of
  // them.
  std::string Text() const;

 private:
  std::array<std::vector<std::int64_t>, kUntakenKinds> rows_;
};

// A word for machines: "inactiveTasks".
const char* KeyOf(Untaken kind);

// What becomes of one row where all tasks are taken: "Its constraint is left out."; empty of lags,
// of start-to-finish links, and of kinds of resources, which a glossary keeps.
const char* SentenceOf(Untaken kind);

}  // namespace merivane::mspdi
