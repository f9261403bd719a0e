#include "pictures/chart.h"

#include <algorithm>

#include "chart_bars.h"
#include "runtime/run_time_error.h"
#include "schedule/staffing.h"
#include "text_lines.h"
#include "time_axis.h"

namespace merivane::pictures {

namespace {

using schedule::Plan;
using schedule::Schedule;

constexpr double kMargin = 24;
constexpr double kRow = 24;
constexpr double kIndent = 14;
constexpr double kNumberWidth = 34;
constexpr double kLeastOutline = 180;
constexpr double kMostOutline = 360;
constexpr double kBehindBar = 8;
constexpr double kLane = 8;
constexpr double kMostResources = 260;
constexpr int kDeepestIndent = 10;

std::string DaysText(schedule::Tenths tenths) {
  constexpr auto kHundredths = schedule::kTenthsOfDay / 100;
  const auto hundredths = (tenths + kHundredths / 2) / kHundredths;
  std::string text = std::to_string(hundredths / 100);
  if (hundredths % 100 != 0) {
    text += '.' + std::to_string(hundredths % 100 / 10);
    if (hundredths % 10 != 0) text += std::to_string(hundredths % 10);
  }
  return text + (hundredths == 100 ? " day" : " days");
}

class ChartDrawer {
 public:
  ChartDrawer(const Plan& plan, const Schedule& dates, const TaskResources& resources)
      : plan_(plan),
        dates_(dates),
        resources_(resources),
        outline_(OutlineWidth()),
        axis_(dates.Start(), dates.Finish(), kMargin + kNumberWidth + outline_) {}

  Picture Draw(bool headline, const std::string& dated) {
    picture_.id = "plan";
    picture_.title = plan_.name;
    picture_.width = axis_.Right() + kMargin;
    Describe();
    picture_.description += dated;
    if (headline) AddHeadline();
    const double top = picture_.height;
    picture_.height += TimeAxis::Height() + 4;
    for (std::size_t task = 0; task < plan_.tasks.size(); ++task) bars_.push_back(BarOf(task));
    picture_.height += kRow * static_cast<double>(plan_.tasks.size()) + 4;
    picture_.figures.push_back(axis_.Draw(top, picture_.height));
    laneBehind_.resize(bars_.size());
    for (const schedule::PlanLink& link : plan_.links) AddLink(link);
    for (std::size_t task = 0; task < plan_.tasks.size(); ++task) AddTask(task);
    AddLegend();
    return std::move(picture_);
  }

 private:
  double IndentOf(std::size_t task) const {
    const auto level = std::clamp<std::int64_t>(plan_.tasks[task].level, 1, kDeepestIndent);
    return static_cast<double>(level - 1) * kIndent;
  }

  Ink NameInk(std::size_t task) const {
    return plan_.tasks[task].summary ? Ink::kSummaryName : Ink::kTaskName;
  }

  double OutlineWidth() const {
    double width = kLeastOutline;
    for (std::size_t task = 0; task < plan_.tasks.size(); ++task) {
      width = std::max(width, IndentOf(task) + WidthOf(plan_.tasks[task].name, NameInk(task)) + 12);
    }
    return std::min(width, kMostOutline);
  }

  void Describe() {
    const std::string tasks =
        std::to_string(plan_.tasks.size()) + (plan_.tasks.size() == 1 ? " task, " : " tasks, ");
    picture_.description = DateText(dates_.Start(), false) + " to " +
                           DateText(dates_.Finish(), false) + ", " + tasks +
                           DaysText(dates_.finish) + " of work from start to finish";
  }

  void AddHeadline() {
    Figure figure;
    const std::string name = Shortened(plan_.name, 800, Ink::kTitle);
    figure.shapes.push_back(Text{Ink::kTitle, {kMargin, kMargin + 15}, name});
    figure.shapes.push_back(Text{Ink::kSubtitle, {kMargin, kMargin + 34}, picture_.description});
    picture_.figures.push_back(std::move(figure));
    picture_.width =
        std::max(picture_.width, kMargin * 2 + WidthOf(picture_.description, Ink::kSubtitle));
    picture_.height = kMargin + 48;
  }

  bool IsMilestone(std::size_t task) const {
    return !plan_.tasks[task].summary && plan_.tasks[task].duration == 0;
  }

  Bar BarOf(std::size_t task) const {
    Bar bar;
    bar.y = picture_.height + kRow * (static_cast<double>(task) + 0.5);
    bar.start = axis_.X(dates_.StartOf(task));
    bar.finish = axis_.X(dates_.FinishOf(task));
    bar.kind = plan_.tasks[task].summary     ? BarKind::kSummary
               : IsMilestone(task)           ? BarKind::kMilestone
               : dates_.tasks[task].critical ? BarKind::kCritical
                                             : BarKind::kTask;
    return bar;
  }

  std::string TitleOf(std::size_t task) const {
    const schedule::PlanTask& planned = plan_.tasks[task];
    const schedule::TaskDates& dates = dates_.tasks[task];
    std::string text = planned.name + "\n" + DateText(dates_.StartOf(task), true) + " to " +
                       DateText(dates_.FinishOf(task), true) + "\n";
    if (IsMilestone(task)) {
      text += "Milestone";
    } else {
      text += DaysText(dates.earlyFinish - dates.earlyStart);
    }
    text += dates.critical ? ", critical" : ", slack " + DaysText(dates.totalSlack);
    if (!resources_[task].empty()) text += "\nResources: " + resources_[task];
    return text;
  }

  void AddTask(std::size_t task) {
    const schedule::PlanTask& planned = plan_.tasks[task];
    const Bar& bar = bars_[task];
    const double base = bar.y + 4;
    const double left = kMargin + kNumberWidth + IndentOf(task);
    Figure figure;
    figure.id = "task-" + std::to_string(planned.uid);
    figure.title = TitleOf(task);
    figure.area = {kMargin, bar.y - kRow / 2, axis_.Right() - kMargin, kRow};
    figure.shapes.push_back(Text{Ink::kListedNumber,
                                 {kMargin + kNumberWidth - 10, base},
                                 std::to_string(planned.id),
                                 Anchor::kEnd});
    figure.shapes.push_back(Text{NameInk(task),
                                 {left, base},
                                 Shortened(planned.name, axis_.Left() - left - 8, NameInk(task))});
    AddBar(bar, figure);
    AddResources(task, bar, figure);
    picture_.figures.push_back(std::move(figure));
  }

  void AddResources(std::size_t task, const Bar& bar, Figure& figure) {
    if (resources_[task].empty()) return;
    const std::string text = Shortened(resources_[task], kMostResources, Ink::kResources);
    const double left = bar.Right() + kBehindBar + (laneBehind_[task] ? kLane : 0);
    figure.shapes.push_back(Text{Ink::kResources, {left, bar.y + 3.5}, text});
    picture_.width = std::max(picture_.width, left + WidthOf(text, Ink::kResources) + kMargin);
  }

  void AddLink(const schedule::PlanLink& link) {
    if (link.kind == schedule::LinkKind::kFinishToFinish) {
      laneBehind_[link.predecessor] = laneBehind_[link.successor] = true;
    }
    const bool critical =
        dates_.tasks[link.predecessor].critical && dates_.tasks[link.successor].critical;
    picture_.figures.push_back(
        DrawTaskLink(bars_[link.predecessor], bars_[link.successor], link.kind, critical));
  }

  void AddLegend() {
    constexpr double kSample = 26;
    constexpr std::pair<BarKind, const char*> kKinds[] = {{BarKind::kTask, "Task"},
                                                          {BarKind::kCritical, "Critical task"},
                                                          {BarKind::kSummary, "Summary"},
                                                          {BarKind::kMilestone, "Milestone"}};
    Figure figure;
    double left = axis_.Left();
    const double y = picture_.height + 20;
    for (const auto& [kind, name] : kKinds) {
      const bool point = kind == BarKind::kMilestone;
      AddBar({.kind = kind, .start = point ? left + 8 : left, .finish = left + kSample, .y = y},
             figure);
      left += (point ? 16 : kSample) + 8;
      figure.shapes.push_back(Text{Ink::kAxis, {left, y + 3.5}, name});
      left += WidthOf(name, Ink::kAxis) + 24;
    }
    picture_.width = std::max(picture_.width, left);
    picture_.figures.push_back(std::move(figure));
    picture_.height = y + 12 + kMargin / 2;
  }

  const Plan& plan_;
  const Schedule& dates_;
  const TaskResources& resources_;
  double outline_;
  TimeAxis axis_;
  std::vector<Bar> bars_;
  std::vector<bool> laneBehind_;  // a link runs beside the bar's end
  Picture picture_;
};

}  // namespace

TaskResources ReadTaskResources(Connection& connection, std::int32_t project, const Plan& plan) {
  return ReadStaffing(connection, project, plan).NamesByTask(plan.tasks.size());
}

Picture DrawChart(const Plan& plan, const Schedule& dates, const TaskResources& resources,
                  bool headline, const std::string& dated) {
  return ChartDrawer(plan, dates, resources).Draw(headline, dated);
}

Picture DrawChart(Connection& connection, std::int32_t project, const DateTime& today,
                  bool headline) {
  const ReadScope scope(&connection);
  const Plan plan = schedule::ReadPlan(connection, project, today);
  if (plan.tasks.empty()) {
    throw RunTimeError(kInvalidProcedureCall, "The plan holds no task: there is nothing to draw.");
  }
  std::string dated = "; dates computed from durations and links";
  if (plan.start == today) dated += ", from today, " + DateText(today, false) + ", on";
  return DrawChart(plan, schedule::MakeSchedule(plan), ReadTaskResources(connection, project, plan),
                   headline, dated);
}

}  // namespace merivane::pictures
