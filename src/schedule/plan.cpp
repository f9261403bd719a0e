#include "schedule/plan.h"

#include "plan_tables.h"
#include "store/interim_db.h"

namespace merivane::schedule {

namespace {

enum Column {
  kName,
  kStartOfProject,
  kStartOfModel,
  kCalendarName,
  kMinutesPerDay,
  kMinutesPerWeek,
  kHonors,
  kCriticalSlack,
  kFromStart,
  kFinish
};

// The number of a column within bounds; what lies beyond them is told.
std::int64_t MinutesAt(ProjectRows& rows, std::size_t column, std::int64_t most,
                       std::int64_t otherwise, const char* what, Plan& plan) {
  const std::int64_t minutes = rows.IntegerAt(column, otherwise);
  if (minutes > 0 && minutes <= most) return minutes;
  plan.warnings.push_back("The project has " + std::to_string(minutes) + " minutes " + what +
                          ", which can't be; " + std::to_string(otherwise) + " are taken.");
  return otherwise;
}

void ReadSettings(ProjectRows& rows, Plan& plan) {
  constexpr std::int64_t kDay = 1440;
  PlanSettings& settings = plan.settings;
  settings.minutesPerDay =
      MinutesAt(rows, kMinutesPerDay, kDay, settings.minutesPerDay, "a day", plan);
  settings.minutesPerWeek =
      MinutesAt(rows, kMinutesPerWeek, 7 * kDay, settings.minutesPerWeek, "a week", plan);
  settings.honorConstraints = rows.IntegerAt(kHonors, 1) != 0;
  settings.criticalSlack =
      rows.IntegerAt(kCriticalSlack, 0) * settings.minutesPerDay * kTenthsOfMinute;
  if (rows.IntegerAt(kFromStart, 1) == 0) {
    if (const auto date = ParseDate(rows.TextAt(kFinish))) settings.finish = ClockOf(*date);
  }
  const PlanCalendar* own = plan.calendars.FindBase(rows.TextAt(kCalendarName));
  if (own == nullptr) own = plan.calendars.FindBase("Standard");
  if (own == nullptr) return;
  settings.calendar = own->uid;
  plan.times = {plan.calendars.TimeOf(own->uid)};
}

void ReadHeader(Connection& connection, std::int32_t project, Plan& plan) {
  ProjectRows rows(
      connection, {.name = "MSP_PROJECTS"}, project,
      {"PROJ_NAME", "PROJ_INFO_START_DATE", "KV7_PROJ_START_DATE", "PROJ_INFO_CAL_NAME",
       "PROJ_OPT_MINUTES_PER_DAY", "PROJ_OPT_MINUTES_PER_WEEK", "PROJ_OPT_HONOR_CONSTRAINTS",
       "PROJ_OPT_CRITICAL_SLACK_LIMIT", "PROJ_INFO_SCHED_FROM", "PROJ_INFO_FINISH_DATE"});
  if (rows.AtEnd()) return;
  plan.name = rows.TextAt(kName);
  for (const Column column : {kStartOfModel, kStartOfProject}) {
    if (const auto date = ParseDate(rows.TextAt(column))) plan.start = *date;
  }
  if (!plan.broughtBack) ReadSettings(rows, plan);
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

}  // namespace

const char* KindText(LinkKind kind) {
  switch (kind) {
    case LinkKind::kFinishToFinish:
      return "FF";
    case LinkKind::kStartToFinish:
      return "SF";
    case LinkKind::kStartToStart:
      return "SS";
    case LinkKind::kFinishToStart:
      break;
  }
  return "FS";
}

std::string PredecessorText(std::int64_t predecessor, LinkKind kind, const Lag& lag,
                            double minutesPerDay) {
  const bool isPlain = kind == LinkKind::kFinishToStart && lag.amount == 0;
  return std::to_string(predecessor) + (isPlain ? "" : KindText(kind)) +
         LagText(lag, minutesPerDay);
}

Plan ReadPlan(Connection& connection, std::int32_t project, const DateTime& today) {
  const ReadScope scope(&connection);
  Plan plan;
  plan.start = {.year = today.year, .month = today.month, .day = today.day, .seconds = 0};
  if (TableExists(&connection, "ProjectAct") != 0) ReadWorkTables(connection, project, plan);
  plan.broughtBack = !plan.tasks.empty();
  if (!plan.broughtBack) plan.calendars = PlanCalendars(connection, project, plan.warnings);
  ReadHeader(connection, project, plan);
  if (!plan.broughtBack) ReadPlanTables(connection, project, plan);
  FindParents(plan.tasks);
  return plan;
}

}  // namespace merivane::schedule
