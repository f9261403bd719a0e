#include "plan_tables.h"

#include <algorithm>
#include <cmath>

#include "runtime/conversions.h"

namespace merivane::schedule {

namespace {

// The model keeps hundredths of a day where the table keeps whole days.
Tenths DurationOf(std::int64_t tenths, const Value& ofModel) {
  const Tenths stored = std::max<Tenths>(tenths, 0);
  if (!IsNumeric(ofModel)) return stored;
  constexpr double kLongest = 447392;  // days that the table's column holds
  const double days = ToDouble(ofModel);
  if (!(days >= 0 && days <= kLongest)) return stored;
  const std::string hundredths = FixedTwo(days);
  if (ToInt32(hundredths) * kTenthsOfDay != stored) return stored;
  return std::llround(ToDouble(hundredths) * kTenthsOfDay);
}

TaskIndices ReadTasks(Connection& connection, std::int32_t project, Plan& plan) {
  enum Column { kUid, kId, kName, kLevel, kDuration, kFormat, kDurationOfModel, kOccurrence };
  ProjectRows rows(connection, {.name = "MSP_TASKS", .order = " order by TASK_ID"}, project,
                   {"TASK_UID", "TASK_ID", "TASK_NAME", "TASK_OUTLINE_LEVEL", "TASK_DUR",
                    "TASK_DUR_FMT", "KV7_PROCOCC_DURATION", "KV7_PROCOCC_HEX"});
  TaskIndices indices;
  for (; !rows.AtEnd(); rows.Next()) {
    PlanTask task;
    task.uid = rows.IntegerAt(kUid, 0);
    task.name = rows.TextAt(kName);
    if (task.uid <= 0 || rows.At(kId).IsNull()) continue;
    if (task.name.empty() && rows.At(kDuration).IsNull()) continue;
    if (!indices.emplace(task.uid, plan.tasks.size()).second) continue;
    task.id = rows.IntegerAt(kId, 0);
    task.level = rows.IntegerAt(kLevel, 1);
    task.duration = DurationOf(rows.IntegerAt(kDuration, 0), rows.At(kDurationOfModel));
    task.durationFormat = rows.IntegerAt(kFormat, kFormatDays);
    if (const Value occurrence = rows.At(kOccurrence); IsNumeric(occurrence)) {
      task.occurrence = ToInt32(occurrence);
    }
    plan.tasks.push_back(std::move(task));
  }
  return indices;
}

void ReadLinks(Connection& connection, std::int32_t project, const TaskIndices& indices,
               Plan& plan) {
  enum Column { kPredecessor, kSuccessor, kType, kLag, kFormat, kElsewhere };
  ProjectRows rows(connection, {.name = "MSP_LINKS"}, project,
                   {"LINK_PRED_UID", "LINK_SUCC_UID", "LINK_TYPE", "LINK_LAG", "LINK_LAG_FMT",
                    "LINK_IS_CROSS_PROJ"});
  constexpr std::int64_t kStartToStart = static_cast<std::int64_t>(LinkKind::kStartToStart);
  for (; !rows.AtEnd(); rows.Next()) {
    const auto from = indices.find(rows.IntegerAt(kPredecessor, 0));
    const auto to = indices.find(rows.IntegerAt(kSuccessor, 0));
    const std::int64_t kind = rows.IntegerAt(kType, 1);
    if (from == indices.end() || to == indices.end()) continue;
    if (kind < 0 || kind > kStartToStart || rows.IntegerAt(kElsewhere, 0) != 0) continue;
    plan.links.push_back({.predecessor = from->second,
                          .successor = to->second,
                          .kind = static_cast<LinkKind>(kind),
                          .lag = {rows.IntegerAt(kLag, 0), rows.IntegerAt(kFormat, kFormatDays)}});
  }
}

}  // namespace

void ReadPlanTables(Connection& connection, std::int32_t project, Plan& plan) {
  const TaskIndices indices = ReadTasks(connection, project, plan);
  ReadLinks(connection, project, indices, plan);
}

}  // namespace merivane::schedule
