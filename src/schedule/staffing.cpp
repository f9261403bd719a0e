#include "schedule/staffing.h"

#include <algorithm>
#include <array>
#include <unordered_map>
#include <utility>

#include "runtime/conversions.h"
#include "schedule/project_rows.h"

namespace merivane::schedule {

namespace {

constexpr double kWorkInHour = 60000;  // thousandths of a minute

// The columns of a plan's tables, and of the work tables of what was brought back.
struct ResourceTables {
  ProjectRows::Table resources;
  std::array<const char*, 4> resource;  // key, place, name, units
  ProjectRows::Table assignments;
  std::array<const char*, 4> assignment;  // task, resource, units, work
};

constexpr ResourceTables kPlanTables{{.name = "MSP_RESOURCES"},
                                     {"RES_UID", "RES_ID", "RES_NAME", "RES_MAX_UNITS"},
                                     {.name = "MSP_ASSIGNMENTS"},
                                     {"TASK_UID", "RES_UID", "ASSN_UNITS", "ASSN_WORK"}};
constexpr ResourceTables kWorkTables{{.name = "ProjectRes", .projectColumn = "Msp_ProjID"},
                                     {"PID", "PID", "Name", "Qty"},
                                     {.name = "ProjectResReqts", .projectColumn = "Msp_ProjID"},
                                     {"ActivityPID", "ResourcePID", "Qty", "none"}};

double NumberAt(ProjectRows& rows, std::size_t column, double otherwise) {
  const Value value = rows.At(column);
  return IsNumeric(value) ? ToDouble(value) : otherwise;
}

// Hours in the unit of a rate, by the number of its format; nothing for a material's. A plan that
// tells none has rates for hours.
std::optional<double> HoursOfRate(std::int64_t format, const PlanSettings& settings) {
  const double day = static_cast<double>(settings.minutesPerDay) / 60;
  const double week = static_cast<double>(settings.minutesPerWeek) / 60;
  switch (format) {
    case 1:
      return 1 / 60.0;
    case 3:
      return day;
    case 4:
      return week;
    case 5:
      return 20 * day;
    case 7:
      return 52 * week;
    case 8:
      return std::nullopt;
    default:
      return 1;
  }
}

std::unordered_map<std::string, double> ReadRates(Connection& connection, std::int32_t project,
                                                  const Plan& plan) {
  std::unordered_map<std::string, double> rates;
  ProjectRows rows(connection, {.name = "MSP_RESOURCES"}, project,
                   {"RES_NAME", "RES_STD_RATE", "RES_STD_RATE_FMT"});
  for (; !rows.AtEnd(); rows.Next()) {
    const auto hours = HoursOfRate(rows.IntegerAt(2, 2), plan.settings);
    if (IsNumeric(rows.At(1)) && hours) {
      rates.emplace(rows.TextAt(0), ToDouble(rows.At(1)) / *hours);
    }
  }
  return rates;
}

}  // namespace

Staffing ReadStaffing(Connection& connection, std::int32_t project, const Plan& plan) {
  const ResourceTables& tables = plan.broughtBack ? kWorkTables : kPlanTables;
  const auto rates = ReadRates(connection, project, plan);
  Staffing staffing;
  std::unordered_map<std::int64_t, std::size_t> places;
  ProjectRows resources(connection, tables.resources, project,
                        {tables.resource.begin(), tables.resource.end()});
  for (; !resources.AtEnd(); resources.Next()) {
    PlanResource resource{.id = resources.IntegerAt(1, 0),
                          .name = resources.TextAt(2),
                          .units = NumberAt(resources, 3, 1)};
    if (resource.name.empty()) continue;
    const auto rate = rates.find(resource.name);
    if (rate != rates.end()) resource.costOfHour = rate->second;
    if (places.emplace(resources.IntegerAt(0, 0), staffing.resources.size()).second) {
      staffing.resources.push_back(std::move(resource));
    }
  }
  std::unordered_map<std::int64_t, std::size_t> tasks;
  for (std::size_t task = 0; task < plan.tasks.size(); ++task) {
    tasks.emplace(plan.tasks[task].uid, task);
  }
  ProjectRows assignments(connection, tables.assignments, project,
                          {tables.assignment.begin(), tables.assignment.end()});
  for (; !assignments.AtEnd(); assignments.Next()) {
    const auto task = tasks.find(assignments.IntegerAt(0, 0));
    const auto resource = places.find(assignments.IntegerAt(1, 0));
    if (task == tasks.end() || resource == places.end()) continue;
    const double units = NumberAt(assignments, 2, 1);
    const double length = static_cast<double>(plan.tasks[task->second].duration) / kTenthsOfHour;
    const double work = NumberAt(assignments, 3, 0);
    staffing.assignments.push_back(
        {task->second, resource->second, units, work > 0 ? work / kWorkInHour : length * units});
  }
  return staffing;
}

std::vector<std::string> Staffing::NamesByTask(std::size_t tasks) const {
  std::vector<std::string> names(tasks);
  for (const PlanAssignment& assignment : assignments) {
    std::string& text = names[assignment.task];
    text += (text.empty() ? "" : ", ") + resources[assignment.resource].name;
  }
  return names;
}

double Staffing::HoursOf(std::size_t resource) const {
  double hours = 0;
  for (const PlanAssignment& assignment : assignments) {
    if (assignment.resource == resource) hours += assignment.hours;
  }
  return hours;
}

std::optional<double> Staffing::CostOf(std::size_t resource) const {
  const auto rate = resources[resource].costOfHour;
  return rate ? std::optional(*rate * HoursOf(resource)) : std::nullopt;
}

namespace {

struct Demand {
  Tenths at = 0;
  double change = 0;
};

void AddOverloads(std::size_t resource, double units, std::vector<Demand> demands,
                  std::vector<Overload>& overloads) {
  constexpr double kRounding = 1e-9;
  std::sort(demands.begin(), demands.end(),
            [](const Demand& a, const Demand& b) { return a.at < b.at; });
  double asked = 0;
  bool over = false;
  for (std::size_t at = 0; at < demands.size();) {
    const Tenths moment = demands[at].at;
    for (; at < demands.size() && demands[at].at == moment; ++at) asked += demands[at].change;
    const bool isOver = asked > units + kRounding;
    if (isOver && !over) overloads.push_back({resource, moment, moment, asked});
    if (over) overloads.back().to = moment;
    if (isOver) overloads.back().units = std::max(overloads.back().units, asked);
    over = isOver;
  }
}

}  // namespace

std::vector<Overload> OverloadsOf(const Plan& plan, const Schedule& dates,
                                  const Staffing& staffing) {
  std::vector<std::vector<Demand>> demands(staffing.resources.size());
  for (const PlanAssignment& assignment : staffing.assignments) {
    const PlanTask& task = plan.tasks[assignment.task];
    const TaskMoments& moments = dates.moments[assignment.task];
    if (task.summary || task.rules.inactive || moments.earlyStart >= moments.earlyFinish) continue;
    demands[assignment.resource].push_back({moments.earlyStart, assignment.units});
    demands[assignment.resource].push_back({moments.earlyFinish, -assignment.units});
  }
  std::vector<Overload> overloads;
  for (std::size_t resource = 0; resource < demands.size(); ++resource) {
    AddOverloads(resource, staffing.resources[resource].units, std::move(demands[resource]),
                 overloads);
  }
  return overloads;
}

std::vector<std::string> PredecessorTexts(const Plan& plan) {
  std::vector<std::string> texts(plan.tasks.size());
  for (const PlanLink& link : plan.links) {
    std::string& text = texts[link.successor];
    text += (text.empty() ? "" : ", ") +
            PredecessorText(plan.tasks[link.predecessor].id, link.kind, link.lag,
                            static_cast<double>(plan.settings.minutesPerDay));
  }
  return texts;
}

}  // namespace merivane::schedule
