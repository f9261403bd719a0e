#include "plan_tables.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <set>
#include <string_view>
#include <tuple>

#include "runtime/conversions.h"
#include "runtime/text.h"

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

// Columns of the rules of a task, as they follow those of the task itself.
const std::vector<const char*> kTaskColumns = {"TASK_UID",
                                               "TASK_ID",
                                               "TASK_NAME",
                                               "TASK_OUTLINE_LEVEL",
                                               "TASK_DUR",
                                               "TASK_DUR_FMT",
                                               "KV7_PROCOCC_DURATION",
                                               "KV7_PROCOCC_HEX",
                                               "TASK_CAL_UID",
                                               "TASK_CONSTRAINT_TYPE",
                                               "TASK_CONSTRAINT_DATE",
                                               "TASK_DEADLINE",
                                               "TASK_ACT_START",
                                               "TASK_ACT_FINISH",
                                               "TASK_RESUME_DATE",
                                               "TASK_REM_DUR",
                                               "TASK_LEVELING_DELAY",
                                               "TASK_LEVELING_DELAY_FMT",
                                               "TASK_IS_EXTERNAL",
                                               "TASK_IS_MANUAL",
                                               "TASK_IS_ACTIVE",
                                               "TASK_START_DATE",
                                               "TASK_FINISH_DATE",
                                               "TASK_IGNORES_RES_CAL",
                                               "KV7_PROCOCC_SSRELS",
                                               "KV7_PROCOCC_FFRELS"};
enum TaskColumn {
  kUid,
  kId,
  kName,
  kLevel,
  kDuration,
  kFormat,
  kDurationOfModel,
  kOccurrence,
  kCalendar,
  kConstraint,
  kConstraintDate,
  kDeadline,
  kActualStart,
  kActualFinish,
  kResume,
  kRemaining,
  kDelay,
  kDelayFormat,
  kExternal,
  kManual,
  kActive,
  kStart,
  kFinish,
  kIgnoresResources,
  kStartRelations,
  kFinishRelations
};

// What a model's plan keeps in step: the UID of a task, that of one which its relations name, how.
// In MSP_LINKS the task is the predecessor of such a pair, while in its MPX file it is the
// successor.
using Relations = std::set<std::tuple<std::int64_t, std::int64_t, LinkKind>>;

// `text` is like "4SS,5SS".
void AddRelations(std::string_view text, std::int64_t task, LinkKind kind, Relations& relations) {
  while (!text.empty()) {
    std::int64_t other = 0;
    std::from_chars(text.data(), text.data() + text.size(), other);
    relations.emplace(task, other, kind);
    const std::size_t comma = text.find(',');
    text.remove_prefix(comma == std::string_view::npos ? text.size() : comma + 1);
  }
}

std::optional<Tenths> MomentAt(ProjectRows& rows, std::size_t column) {
  const std::string text = rows.TextAt(column);
  const auto moment = text.empty() ? std::nullopt : ParseDate(text);
  return moment ? std::optional(ClockOf(*moment)) : std::nullopt;
}

TaskRules RulesOf(ProjectRows& rows) {
  TaskRules rules;
  constexpr auto kLast = static_cast<std::int64_t>(Constraint::kFinishNoLater);
  const std::int64_t constraint = rows.IntegerAt(kConstraint, 0);
  if (constraint > 0 && constraint <= kLast) rules.constraint = static_cast<Constraint>(constraint);
  rules.constraintDate = MomentAt(rows, kConstraintDate);
  rules.deadline = MomentAt(rows, kDeadline);
  rules.actualStart = MomentAt(rows, kActualStart);
  rules.actualFinish = MomentAt(rows, kActualFinish);
  rules.remaining = rows.IntegerAt(kRemaining, 0);
  if (rules.remaining > 0) rules.resume = MomentAt(rows, kResume);
  constexpr std::int64_t kElapsedDays = kFormatDays + 1;
  rules.levelingDelay = {std::max<Tenths>(rows.IntegerAt(kDelay, 0), 0),
                         rows.IntegerAt(kDelayFormat, kElapsedDays)};
  rules.external = rows.IntegerAt(kExternal, 0) != 0;
  if (rules.external || rows.IntegerAt(kManual, 0) != 0) {
    rules.fixedStart = MomentAt(rows, kStart);
    rules.fixedFinish = MomentAt(rows, kFinish);
  }
  rules.inactive = rows.IntegerAt(kActive, 1) == 0;
  return rules;
}

// The index of a calendar's working time, which is added where none is like it.
class TimesOfPlan {
 public:
  explicit TimesOfPlan(Plan& plan) : plan_(plan) {}

  std::size_t IndexOf(std::int64_t calendar) {
    if (plan_.calendars.Find(calendar) == nullptr) return 0;
    const auto [known, fresh] = indices_.emplace(calendar, 0);
    if (!fresh) return known->second;
    WorkingTime time = plan_.calendars.TimeOf(calendar);
    const auto same = std::ranges::find(plan_.times, time);
    known->second = static_cast<std::size_t>(same - plan_.times.begin());
    if (same == plan_.times.end()) plan_.times.push_back(std::move(time));
    return known->second;
  }

 private:
  Plan& plan_;
  std::unordered_map<std::int64_t, std::size_t> indices_;
};

// The working time that the resources of each task share; none where they differ.
std::unordered_map<std::int64_t, std::optional<std::size_t>> ReadResourceTimes(
    Connection& connection, std::int32_t project, TimesOfPlan& times) {
  enum ResourceColumn { kResource, kResourceCalendar, kType };
  std::unordered_map<std::int64_t, std::size_t> ofResources;
  ProjectRows resources(connection, {.name = "MSP_RESOURCES"}, project,
                        {"RES_UID", "RES_CAL_UID", "RES_TYPE"});
  for (; !resources.AtEnd(); resources.Next()) {
    const std::int64_t uid = resources.IntegerAt(kResource, 0);
    if (uid <= 0 || resources.IntegerAt(kType, 1) == 0) continue;
    ofResources[uid] = times.IndexOf(resources.IntegerAt(kResourceCalendar, kNoCalendar));
  }
  enum AssignmentColumn { kTask, kAssigned };
  std::unordered_map<std::int64_t, std::optional<std::size_t>> ofTasks;
  ProjectRows assignments(connection, {.name = "MSP_ASSIGNMENTS"}, project,
                          {"TASK_UID", "RES_UID"});
  for (; !assignments.AtEnd(); assignments.Next()) {
    const auto time = ofResources.find(assignments.IntegerAt(kAssigned, 0));
    if (time == ofResources.end()) continue;
    const auto [task, fresh] = ofTasks.emplace(assignments.IntegerAt(kTask, 0), time->second);
    if (!fresh && task->second != time->second) task->second = std::nullopt;
  }
  return ofTasks;
}

TaskIndices ReadTasks(Connection& connection, std::int32_t project, Plan& plan,
                      Relations& relations) {
  TimesOfPlan times(plan);
  const auto ofResources = plan.calendars.List().empty()
                               ? decltype(ReadResourceTimes(connection, project, times)){}
                               : ReadResourceTimes(connection, project, times);
  ProjectRows rows(connection, {.name = "MSP_TASKS", .order = " order by TASK_ID"}, project,
                   kTaskColumns);
  TaskIndices indices;
  std::size_t withoutPlace = 0;
  for (; !rows.AtEnd(); rows.Next()) {
    PlanTask task;
    task.uid = rows.IntegerAt(kUid, 0);
    task.name = rows.TextAt(kName);
    task.id = rows.IntegerAt(kId, 0);
    if (task.uid > 0 && task.id <= 0 && !rows.At(kId).IsNull()) ++withoutPlace;
    if (task.uid <= 0 || task.id <= 0) continue;
    if (task.name.empty() && rows.At(kDuration).IsNull()) continue;
    if (!indices.emplace(task.uid, plan.tasks.size()).second) continue;
    task.level = rows.IntegerAt(kLevel, 1);
    task.duration = DurationOf(rows.IntegerAt(kDuration, 0), rows.At(kDurationOfModel));
    task.durationFormat = rows.IntegerAt(kFormat, kFormatDays);
    if (IsNumeric(rows.At(kOccurrence))) task.occurrence = rows.IntegerAt(kOccurrence, 0);
    task.rules = RulesOf(rows);
    AddRelations(rows.TextAt(kStartRelations), task.uid, LinkKind::kStartToStart, relations);
    AddRelations(rows.TextAt(kFinishRelations), task.uid, LinkKind::kFinishToFinish, relations);
    task.calendar = times.IndexOf(rows.IntegerAt(kCalendar, kNoCalendar));
    const auto shared = ofResources.find(task.uid);
    if (task.calendar == 0 && shared != ofResources.end() && shared->second &&
        rows.IntegerAt(kIgnoresResources, 0) == 0) {
      task.calendar = *shared->second;
    }
    plan.tasks.push_back(std::move(task));
  }
  if (withoutPlace > 0) {
    plan.warnings.push_back(Counted(withoutPlace, "task has", "tasks have") +
                            " a place in the list that is none; left out.");
  }
  return indices;
}

void ReadLinks(Connection& connection, std::int32_t project, const TaskIndices& indices,
               const Relations& relations, Plan& plan) {
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
    const bool isTurned = relations.contains({from->first, to->first, static_cast<LinkKind>(kind)});
    plan.links.push_back({.predecessor = (isTurned ? to : from)->second,
                          .successor = (isTurned ? from : to)->second,
                          .kind = static_cast<LinkKind>(kind),
                          .lag = {rows.IntegerAt(kLag, 0), rows.IntegerAt(kFormat, kFormatDays)}});
  }
}

}  // namespace

void ReadPlanTables(Connection& connection, std::int32_t project, Plan& plan) {
  Relations relations;
  const TaskIndices indices = ReadTasks(connection, project, plan, relations);
  ReadLinks(connection, project, indices, relations, plan);
  plan.links.shrink_to_fit();
}

std::vector<StoredDates> ReadStoredDates(Connection& connection, std::int32_t project,
                                         const Plan& plan) {
  if (plan.broughtBack) return {};
  std::unordered_map<std::int64_t, StoredDates> stored;
  ProjectRows rows(connection, {.name = "MSP_TASKS"}, project,
                   {"TASK_UID", "TASK_START_DATE", "TASK_FINISH_DATE"});
  for (; !rows.AtEnd(); rows.Next()) {
    const auto start = MomentAt(rows, 1), finish = MomentAt(rows, 2);
    if (start && finish) stored.emplace(rows.IntegerAt(0, 0), StoredDates{*start, *finish});
  }
  std::vector<StoredDates> dates;
  dates.reserve(plan.tasks.size());
  for (const PlanTask& task : plan.tasks) {
    const auto found = stored.find(task.uid);
    if (found == stored.end() || found->second.finish < found->second.start) return {};
    dates.push_back(found->second);
  }
  return dates;
}

}  // namespace merivane::schedule
