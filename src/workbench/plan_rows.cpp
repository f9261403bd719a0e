#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "outline.h"
#include "pictures/chart.h"
#include "runtime/run_time_error.h"
#include "schedule/plan.h"
#include "schedule/schedule.h"
#include "schedule/staffing.h"

namespace merivane::workbench {

using namespace schedule;

namespace {

class PlanRows {
 public:
  PlanRows(FileView& view, const Plan& plan, std::vector<std::string> resources)
      : view_(view), plan_(plan), resources_(std::move(resources)), elements_(plan.tasks.size()) {}

  // Without dates where they can't be worked out.
  void Add(const std::optional<Schedule>& dates) {
    FindElements();
    for (const PlanLink& link : plan_.links) links_[link.successor].push_back(&link);
    for (std::size_t task = 0; task < plan_.tasks.size(); ++task) {
      Element& element = view_.elements[elements_[task]];
      element.bar = "task-" + std::to_string(plan_.tasks[task].uid);
      element.task = plan_.tasks[task].id;
      AddTask(task, element);
      if (dates) AddDates(*dates, task, element);
    }
  }

 private:
  // Each task gets the unit that it stands for, or an element of its own.
  void FindElements() {
    std::map<std::int64_t, std::size_t> units;
    for (std::size_t at = 0; at < view_.elements.size(); ++at) {
      const Element& element = view_.elements[at];
      if (element.kind == Element::Kind::kUnit) units.emplace(element.number, at);
    }
    std::map<std::size_t, std::size_t> levels;  // of own elements, by task
    for (std::size_t task = 0; task < plan_.tasks.size(); ++task) {
      const PlanTask& planned = plan_.tasks[task];
      const auto unit = planned.occurrence ? units.find(*planned.occurrence) : units.end();
      if (unit != units.end()) {
        elements_[task] = unit->second;
        units.erase(unit);
        continue;
      }
      const auto above = planned.parent ? levels.find(*planned.parent) : levels.end();
      levels[task] = above == levels.end() ? 0 : above->second + 1;
      elements_[task] = view_.elements.size();
      view_.elements.push_back({.kind = Element::Kind::kTask,
                                .number = static_cast<std::int32_t>(planned.id),
                                .name = planned.name,
                                .level = levels[task]});
    }
  }

  void AddTask(std::size_t task, Element& element) {
    const PlanTask& planned = plan_.tasks[task];
    AddProperty(element, planned.summary ? "Summary task" : "Task",
                std::to_string(planned.id) +
                    (planned.name == element.name && element.kind == Element::Kind::kUnit
                         ? ""
                         : " " + planned.name));
    if (element.kind == Element::Kind::kTask) {
      AddProperty(element, "Duration", LengthText(planned.duration, planned.durationFormat));
      AddProperty(element, "Resources", resources_[task]);
    }
    std::string predecessors;
    for (const PlanLink* link : links_[task]) {
      const PlanTask& before = plan_.tasks[link->predecessor];
      predecessors +=
          (predecessors.empty() ? "" : "\n") + std::to_string(before.id) + KindText(link->kind) +
          LagText(link->lag, static_cast<double>(plan_.settings.minutesPerDay)) + " " + before.name;
    }
    AddProperty(element, "Predecessors", predecessors);
  }

  void AddDates(const Schedule& dates, std::size_t task, Element& element) {
    const TaskMoments& moments = dates.moments[task];
    for (const auto& [name, moment] : {std::pair{"Early start", moments.earlyStart},
                                       {"Early finish", moments.earlyFinish},
                                       {"Late start", moments.lateStart},
                                       {"Late finish", moments.lateFinish}}) {
      AddProperty(element, name, DateAndTimeText(MomentOf(moment)));
    }
    const TaskDates& worked = dates.tasks[task];
    AddProperty(element, "Slack",
                LengthText(worked.totalSlack, kFormatDays) + (worked.critical ? ", critical" : ""));
  }

  std::string LengthText(Tenths length, std::int64_t format) const {
    const std::string text =
        LagText({length, format}, static_cast<double>(plan_.settings.minutesPerDay));
    if (text.empty()) return "0d";
    return text.starts_with('+') ? text.substr(1) : text;
  }

  FileView& view_;
  const Plan& plan_;
  std::vector<std::string> resources_;                         // of each task
  std::vector<std::size_t> elements_;                          // of each task
  std::map<std::size_t, std::vector<const PlanLink*>> links_;  // by the task behind them
};

// What stands for the same unit in the plan as it was bore another name, or is gone.
void NameAsBefore(Plan& plan, const Plan& before) {
  std::map<std::int64_t, const std::string*> names;
  for (const PlanTask& task : before.tasks) {
    if (task.occurrence) names.emplace(*task.occurrence, &task.name);
  }
  for (PlanTask& task : plan.tasks) {
    const auto name = task.occurrence ? names.find(*task.occurrence) : names.end();
    if (name != names.end()) task.name = NameAndBefore(task.name, *name->second);
  }
}

void AddGone(FileView& view, const Plan& before) {
  std::map<std::int64_t, std::int64_t> uids;
  for (const PlanTask& task : before.tasks) {
    if (task.occurrence) uids.emplace(*task.occurrence, task.uid);
  }
  for (Element& element : view.elements) {
    if (element.kind != Element::Kind::kUnit || !element.bar.empty()) continue;
    const auto uid = uids.find(element.number);
    if (uid != uids.end()) element.bar = "before-" + std::to_string(uid->second);
  }
}

}  // namespace

std::string NameAndBefore(const std::string& name, const std::string& before) {
  return name == before ? name : name + " (was " + before + ")";
}

void AddPlan(FileView& view, Connection& connection, std::int32_t project, const DateTime& today,
             const DatedPlan* before) try {
  const ReadScope scope(&connection);
  Plan plan = schedule::ReadPlan(connection, project, today);
  view.lines.insert(view.lines.end(), plan.warnings.begin(), plan.warnings.end());
  if (plan.tasks.empty()) {
    view.whyNoChart = "The plan holds no task.";
    return;
  }
  if (before != nullptr) NameAsBefore(plan, before->plan);
  std::optional<Schedule> dates;
  try {
    const DatedPlan dated = WithDates(connection, project, today, plan);
    dates = dated.dates;
    view.chart = DrawChart(dated, {.before = before});
  } catch (const RunTimeError& error) {
    view.whyNoChart = error.Description();
  }
  const Staffing staffing = ReadStaffing(connection, project, plan);
  PlanRows(view, plan, staffing.NamesByTask(plan.tasks.size())).Add(dates);
  if (before != nullptr) AddGone(view, before->plan);
} catch (const RunTimeError& error) {
  view.whyNoChart = "The plan can't be read: " + error.Description();
}

}  // namespace merivane::workbench
