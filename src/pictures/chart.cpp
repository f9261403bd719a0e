#include "pictures/chart.h"

#include <algorithm>
#include <array>
#include <map>
#include <optional>
#include <utility>
#include <vector>

#include "chart_bars.h"
#include "runtime/run_time_error.h"
#include "runtime/text.h"
#include "text_lines.h"
#include "time_axis.h"

namespace merivane::pictures {

namespace {

using schedule::Plan;

constexpr double kMargin = 24;
constexpr double kRow = 24;
constexpr double kIndent = 14;
constexpr double kNumberWidth = 34;
constexpr double kLeastOutline = 180;
constexpr double kMostOutline = 360;
constexpr double kBetweenColumns = 14;
constexpr double kMostPredecessors = 120;
constexpr double kBehindBar = 8;
constexpr double kLane = 8;
constexpr double kMostResources = 260;
constexpr double kBelowBar = 9;  // from the middle of a bar to the one of the plan as it was
constexpr int kDeepestIndent = 10;
constexpr std::size_t kColumns = 4;
constexpr std::size_t kFew = 16;  // figures beside those of tasks, links and resources

using Cells = std::array<std::string, kColumns>;

DateTime EarlierOf(const DateTime& a, const DateTime& b) { return ClockOf(b) < ClockOf(a) ? b : a; }
DateTime LaterOf(const DateTime& a, const DateTime& b) { return ClockOf(a) < ClockOf(b) ? b : a; }

// Which task of the plan as it was each task is, and those that are gone.
struct TasksBefore {
  std::vector<std::optional<std::size_t>> of;
  std::vector<std::size_t> gone;
};

TasksBefore MatchTasks(const Plan& plan, const Plan& before) {
  std::map<std::int64_t, std::size_t> byOccurrence, byUid;
  for (std::size_t task = 0; task < before.tasks.size(); ++task) {
    const schedule::PlanTask& planned = before.tasks[task];
    if (planned.occurrence) {
      byOccurrence.emplace(*planned.occurrence, task);
    } else {
      byUid.emplace(planned.uid, task);
    }
  }
  TasksBefore matched;
  std::vector<bool> isTaken(before.tasks.size());
  for (const schedule::PlanTask& task : plan.tasks) {
    const auto& places = task.occurrence ? byOccurrence : byUid;
    const auto found = places.find(task.occurrence.value_or(task.uid));
    const bool isThere = found != places.end() && !isTaken[found->second];
    matched.of.push_back(isThere ? std::optional(found->second) : std::nullopt);
    if (isThere) isTaken[found->second] = true;
  }
  for (std::size_t task = 0; task < isTaken.size(); ++task) {
    if (!isTaken[task]) matched.gone.push_back(task);
  }
  return matched;
}

class ChartDrawer {
 public:
  ChartDrawer(const DatedPlan& whole, const ChartOptions& options)
      : whole_(whole),
        plan_(whole.plan),
        dates_(whole.dates),
        options_(options),
        resources_(whole.staffing.NamesByTask(whole.plan.tasks.size())),
        overloads_(OverloadsOf(whole.plan, whole.dates, whole.staffing)),
        before_(options.before == nullptr ? TasksBefore{}
                                          : MatchTasks(plan_, options.before->plan)),
        cells_(options.columns ? CellsOfTasks() : std::vector<Cells>()),
        outline_(OutlineWidth()),
        axis_(Start(), Finish(), kMargin + kNumberWidth + outline_ + PlaceColumns()) {}

  Picture Draw() {
    picture_.id = "plan";
    picture_.title = plan_.name;
    picture_.width = axis_.Right() + kMargin;
    Describe();
    if (options_.headline) AddHeadline();
    const double top = picture_.height;
    picture_.height += TimeAxis::Height() + 4;
    for (std::size_t task = 0; task < plan_.tasks.size(); ++task) bars_.push_back(BarOf(task));
    const double rows = static_cast<double>(plan_.tasks.size() + before_.gone.size());
    const double behindTasks = picture_.height + kRow * rows;
    picture_.height = behindTasks + kRow * static_cast<double>(OverloadedResources()) + 4;
    picture_.figures.reserve(plan_.tasks.size() + plan_.links.size() + before_.gone.size() +
                             OverloadedResources() + kFew);
    picture_.figures.push_back(axis_.Draw(top, picture_.height));
    picture_.frozen = {axis_.Left(), top + TimeAxis::Height()};
    AddHeads(top + TimeAxis::Height() - 5);
    laneBehind_.resize(bars_.size());
    for (const schedule::PlanLink& link : plan_.links) AddLink(link);
    for (std::size_t task = 0; task < plan_.tasks.size(); ++task) AddTask(task);
    AddGone();
    AddOverloads(behindTasks);
    AddLegend();
    AddFoot();
    return std::move(picture_);
  }

 private:
  DateTime Start() const {
    if (options_.before == nullptr) return dates_.Start();
    return EarlierOf(dates_.Start(), options_.before->dates.Start());
  }

  DateTime Finish() const {
    if (options_.before == nullptr) return dates_.Finish();
    return LaterOf(dates_.Finish(), options_.before->dates.Finish());
  }

  double IndentOf(const schedule::PlanTask& task) const {
    const auto level = std::clamp<std::int64_t>(task.level, 1, kDeepestIndent);
    return static_cast<double>(level - 1) * kIndent;
  }

  static Ink NameInk(const schedule::PlanTask& task) {
    return task.summary ? Ink::kSummaryName : Ink::kTaskName;
  }

  double OutlineWidth() const {
    double width = kLeastOutline;
    for (const schedule::PlanTask& task : plan_.tasks) {
      width = std::max(width, IndentOf(task) + WidthOf(task.name, NameInk(task)) + 12);
    }
    return std::min(width, kMostOutline);
  }

  static constexpr std::array<const char*, kColumns> kHeads{"Start", "Finish", "Days", "After"};

  std::vector<Cells> CellsOfTasks() const {
    const std::vector<std::string> predecessors = PredecessorTexts(plan_);
    std::vector<Cells> cells;
    for (std::size_t task = 0; task < plan_.tasks.size(); ++task) {
      const schedule::TaskDates& dates = dates_.tasks[task];
      const std::string days = DaysText(dates.earlyFinish - dates.earlyStart);
      cells.push_back({DateText(dates_.StartOf(task)), DateText(dates_.FinishOf(task)),
                       days.substr(0, days.find(' ')),
                       Shortened(predecessors[task], kMostPredecessors, Ink::kListedNumber)});
    }
    return cells;
  }

  // Gives the width of all columns.
  double PlaceColumns() {
    if (!options_.columns) return 0;
    double left = kMargin + kNumberWidth + outline_;
    for (std::size_t column = 0; column < kColumns; ++column) {
      double width = WidthOf(kHeads[column], Ink::kAxis);
      for (const Cells& cells : cells_) {
        width = std::max(width, WidthOf(cells[column], Ink::kListedNumber));
      }
      columns_[column] = left;
      left += width + kBetweenColumns;
    }
    return left - (kMargin + kNumberWidth + outline_);
  }

  void AddHeads(double base) {
    if (!options_.columns) return;
    Figure figure;
    for (std::size_t column = 0; column < kColumns; ++column) {
      figure.shapes.push_back(Text{Ink::kAxis, {columns_[column], base}, kHeads[column]});
    }
    picture_.figures.push_back(std::move(figure));
  }

  void Describe() {
    picture_.description = DateText(dates_.Start()) + " to " + DateText(dates_.Finish()) + ", " +
                           Counted(plan_.tasks.size(), "task") + ", " + DaysText(dates_.finish) +
                           " of work from start to finish" + whole_.dated;
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

  static std::string SpanText(const schedule::Schedule& dates, std::size_t task) {
    return DateAndTimeText(dates.StartOf(task)) + " to " + DateAndTimeText(dates.FinishOf(task));
  }

  std::string TitleOf(std::size_t task) const {
    const schedule::PlanTask& planned = plan_.tasks[task];
    const schedule::TaskDates& dates = dates_.tasks[task];
    std::string text = planned.name + "\n" + SpanText(dates_, task) + "\n";
    if (IsMilestone(task)) {
      text += "Milestone";
    } else {
      text += DaysText(dates.earlyFinish - dates.earlyStart);
    }
    text += dates.critical ? ", critical" : ", slack " + DaysText(dates.totalSlack);
    if (!resources_[task].empty()) text += "\nResources: " + resources_[task];
    if (options_.before != nullptr) text += "\nBefore: " + BeforeText(task);
    return text;
  }

  std::string BeforeText(std::size_t task) const {
    if (!before_.of[task]) return "not in the plan";
    return SpanText(options_.before->dates, *before_.of[task]);
  }

  void AddTask(std::size_t task) {
    const schedule::PlanTask& planned = plan_.tasks[task];
    const Bar& bar = bars_[task];
    Figure figure;
    figure.id = "task-" + std::to_string(planned.uid);
    figure.title = TitleOf(task);
    AddName(planned, bar.y, figure);
    if (options_.columns) {
      for (std::size_t column = 0; column < kColumns; ++column) {
        if (cells_[task][column].empty()) continue;
        figure.shapes.push_back(
            Text{Ink::kListedNumber, {columns_[column], bar.y + 4}, cells_[task][column]});
      }
    }
    AddBar(bar, figure);
    if (options_.before != nullptr && before_.of[task]) {
      AddBefore(*before_.of[task], bar.y + kBelowBar, figure);
    }
    AddResources(task, bar, figure);
    picture_.figures.push_back(std::move(figure));
  }

  void AddName(const schedule::PlanTask& task, double y, Figure& figure) const {
    const double base = y + 4;
    const double left = kMargin + kNumberWidth + IndentOf(task);
    const double right = kMargin + kNumberWidth + outline_;
    figure.area = {kMargin, y - kRow / 2, axis_.Right() - kMargin, kRow};
    figure.shapes.push_back(Text{Ink::kListedNumber,
                                 {kMargin + kNumberWidth - 10, base},
                                 std::to_string(task.id),
                                 Anchor::kEnd});
    figure.shapes.push_back(
        Text{NameInk(task), {left, base}, Shortened(task.name, right - left - 8, NameInk(task))});
  }

  void AddBefore(std::size_t task, double y, Figure& figure) const {
    const schedule::Schedule& dates = options_.before->dates;
    AddBar({.kind = BarKind::kBefore,
            .start = axis_.X(dates.StartOf(task)),
            .finish = axis_.X(dates.FinishOf(task)),
            .y = y},
           figure);
  }

  // What the plan as it was holds besides.
  void AddGone() {
    double y = bars_.empty() ? picture_.height : bars_.back().y + kRow;
    for (const std::size_t task : before_.gone) {
      const schedule::PlanTask& planned = options_.before->plan.tasks[task];
      Figure figure;
      figure.id = "before-" + std::to_string(planned.uid);
      figure.title = planned.name +
                     "\nNo longer in the plan; before: " + SpanText(options_.before->dates, task);
      figure.faint = true;
      AddName(planned, y, figure);
      AddBefore(task, y, figure);
      picture_.figures.push_back(std::move(figure));
      y += kRow;
    }
  }

  std::size_t OverloadedResources() const {
    std::size_t count = 0;
    for (std::size_t at = 0; at < overloads_.size(); ++at) {
      if (at == 0 || overloads_[at].resource != overloads_[at - 1].resource) ++count;
    }
    return count;
  }

  void AddOverloads(double top) {
    double y = top - kRow / 2;
    for (std::size_t at = 0; at < overloads_.size();) {
      const std::size_t resource = overloads_[at].resource;
      const std::string& name = whole_.staffing.resources[resource].name;
      y += kRow;
      Figure figure;
      figure.id = "overload-" + std::to_string(resource);
      figure.title = name + "\nMore is asked for than there is:";
      figure.area = {kMargin, y - kRow / 2, axis_.Right() - kMargin, kRow};
      const double left = kMargin + kNumberWidth;
      figure.shapes.push_back(
          Text{Ink::kTaskName, {left, y + 4}, Shortened(name, outline_ - 8, Ink::kTaskName)});
      for (; at < overloads_.size() && overloads_[at].resource == resource; ++at) {
        const DateTime from = MomentOf(overloads_[at].from), to = MomentOf(overloads_[at].to);
        figure.title += "\n" + DateAndTimeText(from) + " to " + DateAndTimeText(to);
        AddBar({.kind = BarKind::kOverload, .start = axis_.X(from), .finish = axis_.X(to), .y = y},
               figure);
      }
      picture_.figures.push_back(std::move(figure));
    }
  }

  void AddResources(std::size_t task, const Bar& bar, Figure& figure) {
    if (resources_[task].empty()) return;
    const std::string text = Shortened(resources_[task], kMostResources, Ink::kResources);
    const double left = bar.Right() + kBehindBar + (laneBehind_[task] ? kLane : 0);
    const double width = WidthOf(text, Ink::kResources);
    figure.shapes.push_back(Box{Ink::kGround, {left - 2, bar.y - 7, width + 4, 14}});
    figure.shapes.push_back(Text{Ink::kResources, {left, bar.y + 3.5}, text});
    picture_.width = std::max(picture_.width, left + width + kMargin);
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
    constexpr std::pair<BarKind, const char*> kKinds[] = {
        {BarKind::kTask, "Task"},
        {BarKind::kCritical, "Critical task"},
        {BarKind::kSummary, "Summary"},
        {BarKind::kMilestone, "Milestone"},
        {BarKind::kBefore, "As it was"},
        {BarKind::kOverload, "More work than there is of a resource"}};
    Figure figure;
    double left = axis_.Left();
    const double y = picture_.height + 20;
    const auto tell = [&](const char* name) {
      figure.shapes.push_back(Text{Ink::kAxis, {left, y + 3.5}, name});
      left += WidthOf(name, Ink::kAxis) + 24;
    };
    for (const auto& [kind, name] : kKinds) {
      if (kind == BarKind::kBefore && options_.before == nullptr) continue;
      if (kind == BarKind::kOverload && overloads_.empty()) continue;
      const bool point = kind == BarKind::kMilestone;
      AddBar({.kind = kind, .start = point ? left + 8 : left, .finish = left + kSample, .y = y},
             figure);
      left += (point ? 16 : kSample) + 8;
      tell(name);
    }
    if (axis_.ShowsWeekends()) {
      figure.shapes.push_back(Box{Ink::kWeekend, {left, y - 8, 16, 16}});
      left += 24;
      tell("Weekend");
    }
    picture_.width = std::max(picture_.width, left);
    picture_.figures.push_back(std::move(figure));
    picture_.height = y + 12 + kMargin / 2;
  }

  void AddFoot() {
    constexpr double kLine = 15;
    Figure figure;
    for (const std::string& line : {"Working time: " + plan_.times.front().Text(), options_.foot}) {
      if (line.empty()) continue;
      picture_.width = std::max(picture_.width, 2 * kMargin + WidthOf(line, Ink::kAxis));
      figure.shapes.push_back(Text{Ink::kAxis, {kMargin, picture_.height}, line});
      picture_.height += kLine;
    }
    picture_.figures.push_back(std::move(figure));
  }

  const DatedPlan& whole_;
  const Plan& plan_;
  const Schedule& dates_;
  const ChartOptions& options_;
  std::vector<std::string> resources_;  // names of those who do each task
  std::vector<Overload> overloads_;
  TasksBefore before_;
  std::vector<Cells> cells_;
  double outline_;
  std::array<double, kColumns> columns_{};  // where each begins
  TimeAxis axis_;
  std::vector<Bar> bars_;
  std::vector<bool> laneBehind_;  // a link runs beside the bar's end
  Picture picture_;
};

}  // namespace

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

namespace {

// In the place of what was worked out here; slack and the critical path stay.
void TakeStoredDates(const std::vector<StoredDates>& stored, DatedPlan& whole) {
  TaskMoments& all = whole.dates.whole;
  all.earlyStart = stored.front().start;
  all.earlyFinish = stored.front().finish;
  for (std::size_t task = 0; task < stored.size(); ++task) {
    whole.dates.moments[task].earlyStart = stored[task].start;
    whole.dates.moments[task].earlyFinish = stored[task].finish;
    all.earlyStart = std::min(all.earlyStart, stored[task].start);
    all.earlyFinish = std::max(all.earlyFinish, stored[task].finish);
  }
  const WorkingTime& time = whole.plan.times.front();
  whole.dates.finish = time.WorkedBy(all.earlyFinish) - time.WorkedBy(all.earlyStart);
  whole.dated = "; dates as the file has them";
}

}  // namespace

DatedPlan ReadDatedPlan(Connection& connection, std::int32_t project, const DateTime& today) {
  const ReadScope scope(&connection);
  return WithDates(connection, project, today, schedule::ReadPlan(connection, project, today));
}

DatedPlan DatedPlanOf(schedule::Plan plan, const std::vector<StoredDates>& stored,
                      const DateTime& today) {
  if (plan.tasks.empty()) {
    throw RunTimeError(kInvalidProcedureCall, "The plan holds no task: there is nothing to draw.");
  }
  DatedPlan whole;
  whole.plan = std::move(plan);
  whole.dated = "; dates computed from durations and links";
  if (whole.plan.start == today) whole.dated += ", from today, " + DateText(today) + ", on";
  whole.dates = schedule::MakeSchedule(whole.plan);
  if (!stored.empty()) TakeStoredDates(stored, whole);
  return whole;
}

DatedPlan WithDates(Connection& connection, std::int32_t project, const DateTime& today,
                    schedule::Plan plan) {
  const std::vector<StoredDates> stored = ReadStoredDates(connection, project, plan);
  DatedPlan whole = DatedPlanOf(std::move(plan), stored, today);
  whole.staffing = ReadStaffing(connection, project, whole.plan);
  return whole;
}

Picture DrawChart(const DatedPlan& plan, const ChartOptions& options) {
  return ChartDrawer(plan, options).Draw();
}

}  // namespace merivane::pictures
