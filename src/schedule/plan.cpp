#include "schedule/plan.h"

#include <algorithm>

#include "plan_tables.h"
#include "runtime/conversions.h"
#include "store/interim_db.h"

namespace merivane::schedule {

namespace {

void ReadHeader(Connection& connection, std::int32_t project, Plan& plan) {
  enum Column { kName, kStartOfProject, kStartOfModel };
  ProjectRows rows(connection, {.name = "MSP_PROJECTS"}, project,
                   {"PROJ_NAME", "PROJ_INFO_START_DATE", "KV7_PROJ_START_DATE"});
  if (rows.AtEnd()) return;
  plan.name = rows.TextAt(kName);
  for (const Column column : {kStartOfModel, kStartOfProject}) {
    if (const auto date = ParseDate(rows.TextAt(column))) plan.start = *date;
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

}  // namespace

Plan ReadPlan(Connection& connection, std::int32_t project, const DateTime& today) {
  const ReadScope scope(&connection);
  Plan plan;
  plan.start = {.year = today.year, .month = today.month, .day = today.day, .seconds = 0};
  ReadHeader(connection, project, plan);
  if (TableExists(&connection, "ProjectAct") != 0) ReadWorkTables(connection, project, plan);
  plan.broughtBack = !plan.tasks.empty();
  if (!plan.broughtBack) ReadPlanTables(connection, project, plan);
  FindParents(plan.tasks);
  return plan;
}

}  // namespace merivane::schedule
