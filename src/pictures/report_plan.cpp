
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <map>

#include "page_text.h"
#include "pictures/svg.h"
#include "runtime/text.h"
#include "text_lines.h"

namespace merivane::pictures {

namespace {

// Paper as broad as A4 and letter have it between their margins, in points of the picture that are
// no smaller than 7 points of a printer where its letters are smallest.
constexpr double kSheetWidth = 690;
constexpr double kSheetHeight = 900;

std::string Quoted(const std::string& name) { return "'" + name + "'"; }

std::string Listed(const std::vector<std::string>& names) {
  std::string text;
  for (const std::string& name : names) text += (text.empty() ? "" : ", ") + name;
  return text;
}

// Those that were taken and those that weren't; a decision has both.
struct Decision {
  std::vector<std::string> taken;
  std::vector<std::string> left;

  void Add(bool isTaken, const std::string& name) {
    (isTaken ? taken : left).push_back(Quoted(name));
  }
  void TellIn(std::vector<std::string>& decisions, const std::string& of) const {
    if (taken.empty() || left.empty()) return;
    decisions.push_back(of + ": " + Listed(taken) + ", not " + Listed(left));
  }
};

bool IsSent(const ModelScenario& scenario) {
  return std::any_of(scenario.units.begin(), scenario.units.end(),
                     [](const ModelUnit& unit) { return unit.sent; });
}

void TellBranches(const ModelScenario& scenario, std::vector<std::string>& decisions) {
  std::map<std::int32_t, const ModelUnit*> units;
  for (const ModelUnit& unit : scenario.units) units.emplace(unit.number, &unit);
  for (const ModelJunction& junction : scenario.junctions) {
    if (junction.fanIn || junction.kind == JunctionKind::kAnd) continue;
    Decision decision;
    for (const ModelLink& link : scenario.links) {
      const auto unit = units.find(link.destination);
      if (link.origin != junction.number || unit == units.end()) continue;
      decision.Add(unit->second->sent, unit->second->name);
    }
    decision.TellIn(decisions, "junction " + junction.id + " (" + junction.type + ")");
  }
}

// Of the tasks that decide the end, the names by time.
std::string CriticalPath(const DatedPlan& plan) {
  std::vector<std::size_t> tasks;
  for (std::size_t task = 0; task < plan.plan.tasks.size(); ++task) {
    if (plan.dates.tasks[task].critical && !plan.plan.tasks[task].summary) tasks.push_back(task);
  }
  std::stable_sort(tasks.begin(), tasks.end(), [&](std::size_t a, std::size_t b) {
    return plan.dates.moments[a].earlyStart < plan.dates.moments[b].earlyStart;
  });
  std::vector<std::string> names;
  names.reserve(tasks.size());
  for (const std::size_t task : tasks) names.push_back(plan.plan.tasks[task].name);
  return Listed(names);
}

std::string FindingsText(const Report& report) {
  if (report.findings.empty()) return "none";
  std::size_t errors = 0, warnings = 0;
  for (const inspect::Finding& finding : report.findings) {
    if (finding.severity == inspect::Severity::kError) ++errors;
    if (finding.severity == inspect::Severity::kWarning) ++warnings;
  }
  return Counted(errors, "error") + ", " + Counted(warnings, "warning") + ", " +
         Counted(report.findings.size() - errors - warnings, "note");
}

// "12.5": of eight hours.
std::string DaysOf(double hours) {
  const std::string text = DaysText(std::llround(hours * kTenthsOfHour));
  return text.substr(0, text.find(' '));
}

// Two digits behind the point.
std::string MoneyText(double cost) {
  const long long hundredths = std::llround(std::abs(cost) * 100);
  const std::string cents = std::to_string(hundredths % 100);
  return (cost < 0 ? "-" : "") + std::to_string(hundredths / 100) +
         (cents.size() < 2 ? ".0" : ".") + cents;
}

void AddEntry(const char* term, const std::string& text, std::string& list) {
  if (!text.empty()) list += std::string("<dt>") + term + "</dt><dd>" + text + "</dd>\n";
}

}  // namespace

std::vector<std::string> DecisionsOf(const ProcessModel& model) {
  std::vector<std::string> decisions;
  std::map<std::int32_t, Decision> ofUnits;
  std::map<std::int32_t, std::string> units;
  Decision atTop;
  for (const ModelScenario& scenario : model.scenarios) {
    Decision& decision = scenario.parent == 0 ? atTop : ofUnits[scenario.parent];
    decision.Add(IsSent(scenario), scenario.name);
    for (const ModelUnit& unit : scenario.units) units.emplace(unit.number, unit.name);
  }
  atTop.TellIn(decisions, "scenario");
  for (const auto& [unit, decision] : ofUnits) {
    decision.TellIn(decisions, "unit " + std::to_string(unit) + ' ' + Quoted(units[unit]));
  }
  for (const ModelScenario& scenario : model.scenarios) {
    if (IsSent(scenario)) TellBranches(scenario, decisions);
  }
  return decisions;
}

std::string SummaryOf(const Report& report) {
  std::string list = "<dl>\n";
  if (report.plan) {
    const DatedPlan& whole = *report.plan;
    AddEntry("Length", Escaped(DaysText(whole.dates.finish) + " of work"), list);
    AddEntry("Start and finish",
             Escaped(DateAndTimeText(whole.dates.Start()) + " to " +
                     DateAndTimeText(whole.dates.Finish())),
             list);
    AddEntry("Critical path", Escaped(CriticalPath(whole)), list);
    AddEntry("Working time", Escaped(whole.plan.times.front().Text()), list);
    std::string decisions;
    for (const std::string& decision : DecisionsOf(report.model)) {
      decisions += (decisions.empty() ? "" : "<br>") + Escaped(decision);
    }
    AddEntry("Decided", decisions, list);
  }
  AddEntry("Findings", LinkTo("findings", FindingsText(report)), list);
  return list + "</dl>\n";
}

std::string PlanInPictureAndWords(const DatedPlan& plan) {
  const Picture chart = DrawChart(plan, {.headline = false});
  const std::vector<std::string> predecessors = PredecessorTexts(plan.plan);
  const std::vector<std::string> resources = plan.staffing.NamesByTask(plan.plan.tasks.size());
  Table table({{"No.", "narrow"},
               {"Task", "wide"},
               {"Start"},
               {"Finish"},
               {"Days", "narrow"},
               {"After", "narrow"},
               {"Resources"}});
  for (std::size_t task = 0; task < plan.plan.tasks.size(); ++task) {
    const TaskDates& dates = plan.dates.tasks[task];
    const std::string days = DaysText(dates.earlyFinish - dates.earlyStart);
    table.Row({std::to_string(plan.plan.tasks[task].id),
               Escaped(plan.plan.tasks[task].name) +
                   (dates.critical ? " <span class=\"quiet\">(critical)</span>" : ""),
               DateAndTimeText(plan.dates.StartOf(task)),
               DateAndTimeText(plan.dates.FinishOf(task)), days.substr(0, days.find(' ')),
               Escaped(predecessors[task]), Escaped(resources[task])});
  }
  return "<p class=\"quiet\">" + Escaped(chart.description) + "</p>\n<figure class=\"chart\">\n" +
         ToSvgElement(chart) + ToSvgSheets(chart, kSheetWidth, kSheetHeight) +
         "</figure>\n<details>\n<summary>The plan in words</summary>\n" + table.Html() +
         "</details>\n";
}

std::string ResourcesOf(const DatedPlan& plan) {
  std::map<std::size_t, std::string> over;
  for (const Overload& overload : OverloadsOf(plan.plan, plan.dates, plan.staffing)) {
    std::string& text = over[overload.resource];
    text += (text.empty() ? "" : "<br>") + DateAndTimeText(MomentOf(overload.from)) + " to " +
            DateAndTimeText(MomentOf(overload.to)) + ": " + Number(overload.units) + " at once";
  }
  Table table({{"Resource", "wide"},
               {"There are", "narrow"},
               {"Days of work", "narrow"},
               {"Cost", "narrow"},
               {"More is asked for than there is"}});
  for (std::size_t at = 0; at < plan.staffing.resources.size(); ++at) {
    const PlanResource& resource = plan.staffing.resources[at];
    const auto cost = plan.staffing.CostOf(at);
    table.Row({Escaped(resource.name), Number(resource.units), DaysOf(plan.staffing.HoursOf(at)),
               cost ? MoneyText(*cost) : "", over[at]});
  }
  return plan.staffing.resources.empty() ? "<p class=\"quiet\">None.</p>\n" : table.Html();
}

}  // namespace merivane::pictures
