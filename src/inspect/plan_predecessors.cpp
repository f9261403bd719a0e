#include "plan_predecessors.h"

#include "reconcile/plan_content.h"
#include "roundtrip/plan_as_mpx.h"
#include "runtime/conversions.h"
#include "store/recordset.h"

namespace merivane::inspect {

using namespace reconcile;

using namespace roundtrip;

namespace {

std::unordered_map<std::int32_t, std::int32_t> ScenariosOfUnits(Connection& connection,
                                                                const std::string& project) {
  std::unordered_map<std::int32_t, std::int32_t> scenarios;
  Recordset rows;
  rows.OpenStatic(
      "Select KV7_PROCOCC_HEX, KV7_SCENARIO_HEX from MSP_TASKS where TASK_UID > 0 and Proj_ID = " +
          project,
      &connection);
  for (; !rows.Eof(); rows.MoveNext()) {
    const auto unit = NumberIn(rows.Field(0));
    const auto scenario = NumberIn(rows.Field(1));
    if (unit && scenario) scenarios[*unit] = *scenario;
  }
  return scenarios;
}

}  // namespace

PlanPredecessors::PlanPredecessors(Connection& connection, std::int32_t project) {
  const auto scenarios = ScenariosOfUnits(connection, std::to_string(project));
  Recordset rows;
  rows.OpenStatic("Select PID, Name, Predecessor, Text1 from ProjectAct where Msp_ProjID = " +
                      std::to_string(project),
                  &connection);
  for (; !rows.Eof(); rows.MoveNext()) {
    const auto row = NumberIn(rows.Field(0));
    if (!row) continue;
    Task task{*row, Joined(rows.Field(1)), Joined(rows.Field(2)), NumberIn(rows.Field(3)), {}};
    const auto scenario = scenarios.find(task.unit.value_or(0));
    if (scenario != scenarios.end()) task.scenario = scenario->second;
    rows_.emplace(*row, tasks_.size());
    tasks_.push_back(std::move(task));
  }
}

const PlanPredecessors::Task* PlanPredecessors::Find(std::int32_t row) const {
  const auto place = rows_.find(row);
  return place == rows_.end() ? nullptr : &tasks_[place->second];
}

const PlanPredecessors::Task* PlanPredecessors::Named(const std::string& entry) const try {
  return Find(PlanIdOf(entry));
} catch (const RunTimeError&) {
  return nullptr;  // beyond any row
}

std::vector<std::string> PlanPredecessors::MissingFor(const Task& task) const {
  std::vector<std::string> missing;
  if (task.predecessors.empty()) return missing;
  for (const std::string& entry : PredecessorEntries(task.predecessors)) {
    if (Named(entry) == nullptr) missing.push_back(entry);
  }
  return missing;
}

std::vector<MergeChange> PlanPredecessors::PassedOver() const {
  constexpr const char* kMissing = "Take it out, or name a task that is there.";
  std::vector<MergeChange> passed;
  for (const Task& task : tasks_) {
    if (task.predecessors.empty()) continue;
    const auto tell = [&](const std::string& entry, const char* why, const char* advice) {
      passed.push_back({ChangeKind::kNotTaken,
                        {"task", task.row, task.name},
                        std::string("Its predecessor '").append(entry).append("' ").append(why),
                        advice,
                        task.row});
    };
    const std::vector<std::string> entries = PredecessorEntries(task.predecessors);
    for (const std::string& entry : entries) {
      const Task* from = Named(entry);
      const RelationKind relation = RelationKindOf(entry);
      if (relation == RelationKind::kStartToFinish) {
        tell(entry, "is of the kind start-to-finish, so that the merge passes it over.",
             "A model has no such link.");
      } else if (from == nullptr && entries.size() == 1 &&
                 relation != RelationKind::kFinishToStart) {
        tell(entry, "isn't in the plan, so that the merge makes a link to nothing of it.",
             kMissing);
      } else if (from == nullptr) {
        tell(entry, "isn't in the plan, so that the merge passes it over.", kMissing);
      } else if (from->scenario && task.scenario && from->scenario != task.scenario) {
        tell(entry, "lies under another summary task, so that the merge passes it over.",
             "Link the summary tasks instead; a link stays within its scenario.");
      }
    }
  }
  return passed;
}

}  // namespace merivane::inspect
