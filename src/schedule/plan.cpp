#include "schedule/plan.h"

#include <algorithm>
#include <string_view>
#include <unordered_map>

#include "runtime/conversions.h"
#include "store/recordset.h"

namespace merivane::schedule {

namespace {

constexpr std::int64_t kFormatDays = 7;
constexpr std::int64_t kEstimated = 32;  // added to a format
constexpr std::int64_t kPercent = 19;
constexpr std::int64_t kElapsedPercent = 20;

// Formats of durations: odd numbers count working time, the even ones behind them elapsed time.
std::int64_t WithoutEstimate(std::int64_t format) { return format & ~kEstimated; }

// The rows of a project in one table; a column that the table lacks is Null in all of them.
class ProjectRows {
 public:
  ProjectRows(Connection& connection, const char* table, std::int32_t project, const char* rest) {
    rows_.OpenStatic("select * from " + std::string(table) +
                         " where PROJ_ID = " + std::to_string(project) + rest,
                     &connection);
  }

  bool AtEnd() { return rows_.Eof(); }
  void Next() { rows_.MoveNext(); }

  int Column(std::string_view name) { return rows_.FindField(name); }
  Value At(int column) { return column < 0 ? Value() : rows_.Field(column); }
  std::int64_t IntegerAt(int column, std::int64_t otherwise) {
    const Value value = At(column);
    return IsNumeric(value) ? ToInt32(value) : otherwise;
  }

 private:
  Recordset rows_;
};

DateTime StartOfProject(ProjectRows& project, const DateTime& today) {
  for (const char* column : {"PROJ_INFO_START_DATE", "KV7_PROJ_START_DATE"}) {
    const auto date = ParseDate(Joined(project.At(project.Column(column))));
    if (date) return *date;
  }
  return {.year = today.year, .month = today.month, .day = today.day, .seconds = 0};
}

Tenths DurationOf(std::int64_t wholeDays, const Value& ofModel, bool merged) {
  const Tenths stored = std::max<Tenths>(wholeDays, 0);
  if (!IsNumeric(ofModel)) return stored;
  constexpr double kLongest = 1e6;  // days; far beyond the last date
  const double days = ToDouble(ofModel);
  if (!(days >= 0 && days <= kLongest)) return stored;
  const std::string hundredths = FixedTwo(days);
  if (!merged && ToInt32(hundredths) * kTenthsOfDay != stored) return stored;
  return static_cast<Tenths>(ToDouble(hundredths) * kTenthsOfDay + 0.5);
}

void ReadTasks(ProjectRows& rows, Plan& plan) {
  const int uid = rows.Column("TASK_UID");
  const int id = rows.Column("TASK_ID");
  const int name = rows.Column("TASK_NAME");
  const int level = rows.Column("TASK_OUTLINE_LEVEL");
  const int duration = rows.Column("TASK_DUR");
  const int format = rows.Column("TASK_DUR_FMT");
  const int ofModel = rows.Column("KV7_PROCOCC_DURATION");
  const int merged = rows.Column("KV7_PROCOCC_BROUGHT_BACK");
  for (; !rows.AtEnd(); rows.Next()) {
    PlanTask task;
    task.uid = rows.IntegerAt(uid, 0);
    task.name = Joined(rows.At(name));
    if (task.uid <= 0 || rows.At(id).IsNull()) continue;
    if (task.name.empty() && rows.At(duration).IsNull()) continue;
    task.id = rows.IntegerAt(id, 0);
    task.level = rows.IntegerAt(level, 1);
    task.duration =
        DurationOf(rows.IntegerAt(duration, 0), rows.At(ofModel), rows.IntegerAt(merged, 0) == 1);
    task.elapsed = WithoutEstimate(rows.IntegerAt(format, kFormatDays)) % 2 == 0;
    plan.tasks.push_back(std::move(task));
  }
}

// A task lies below the nearest one in front of it that has a lower level.
void FindParents(std::vector<PlanTask>& tasks) {
  std::vector<std::size_t> above;
  for (std::size_t task = 0; task < tasks.size(); ++task) {
    while (!above.empty() && tasks[above.back()].level >= tasks[task].level) above.pop_back();
    if (!above.empty()) {
      tasks[task].parent = above.back();
      tasks[above.back()].summary = true;
    }
    above.push_back(task);
  }
}

using IndexOfUid = std::unordered_map<std::int64_t, std::size_t>;

IndexOfUid DropRepeatedUids(std::vector<PlanTask>& tasks) {
  IndexOfUid indices;
  std::size_t kept = 0;
  for (PlanTask& task : tasks) {
    if (!indices.emplace(task.uid, kept).second) continue;
    if (&tasks[kept] != &task) tasks[kept] = std::move(task);
    ++kept;
  }
  tasks.resize(kept);
  return indices;
}

void ReadLinks(ProjectRows& rows, const IndexOfUid& indices, Plan& plan) {
  const int predecessor = rows.Column("LINK_PRED_UID");
  const int successor = rows.Column("LINK_SUCC_UID");
  const int type = rows.Column("LINK_TYPE");
  const int lag = rows.Column("LINK_LAG");
  const int format = rows.Column("LINK_LAG_FMT");
  const int elsewhere = rows.Column("LINK_IS_CROSS_PROJ");
  for (; !rows.AtEnd(); rows.Next()) {
    const auto from = indices.find(rows.IntegerAt(predecessor, 0));
    const auto to = indices.find(rows.IntegerAt(successor, 0));
    const std::int64_t kind = rows.IntegerAt(type, 1);
    if (from == indices.end() || to == indices.end() || kind < 0 || kind > 3) continue;
    if (rows.IntegerAt(elsewhere, 0) != 0) continue;
    plan.links.push_back({.predecessor = from->second,
                          .successor = to->second,
                          .kind = static_cast<LinkKind>(kind),
                          .lag = rows.IntegerAt(lag, 0),
                          .lagFormat = rows.IntegerAt(format, kFormatDays)});
  }
}

}  // namespace

bool PlanLink::LagIsElapsed() const { return WithoutEstimate(lagFormat) % 2 == 0; }

bool PlanLink::LagIsPercentage() const {
  const std::int64_t format = WithoutEstimate(lagFormat);
  return format == kPercent || format == kElapsedPercent;
}

Plan ReadPlan(Connection& connection, std::int32_t project, const DateTime& today) {
  const ReadScope scope(&connection);
  Plan plan;
  ProjectRows header(connection, "MSP_PROJECTS", project, "");
  plan.start = today;
  if (!header.AtEnd()) {
    plan.name = Joined(header.At(header.Column("PROJ_NAME")));
    plan.start = StartOfProject(header, today);
  }
  ProjectRows tasks(connection, "MSP_TASKS", project, " order by TASK_ID");
  ReadTasks(tasks, plan);
  const IndexOfUid indices = DropRepeatedUids(plan.tasks);
  FindParents(plan.tasks);
  ProjectRows links(connection, "MSP_LINKS", project, "");
  ReadLinks(links, indices, plan);
  return plan;
}

}  // namespace merivane::schedule
