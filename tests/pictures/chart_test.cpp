#include "pictures/chart.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <random>
#include <tuple>

#include "figures.h"
#include "text_lines.h"
#include "time_axis.h"

namespace merivane::test {

using namespace pictures;

namespace {

using schedule::LinkKind;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

constexpr DateTime kMonday{.year = 2026, .month = 11, .day = 30, .seconds = 8 * 3600};

TEST(TimeAxisTest, LabelsFitFromHoursToMillennia) {
  // With the label of the second cell, and the first one of the row above; empty: none.
  const std::tuple<DateTime, const char*, const char*> rows[] = {
      {{2026, 11, 30, 9 * 3600}, "8:15", "Mon, Nov 30"},
      {{2026, 11, 30, 17 * 3600}, "9:00", "Mon, Nov 30"},
      {{2026, 12, 2, 8 * 3600}, "9:00", "Mon, Nov 30"},
      {{2026, 12, 24, 0}, "1", "Dec 2026"},
      {{2027, 5, 1, 0}, "7", "Dec 2026"},
      {{2028, 5, 1, 0}, "Dec", "2026"},
      {{2031, 5, 1, 0}, "Q1", "2026"},
      {{2045, 5, 1, 0}, "2027", ""},
      {{2090, 5, 1, 0}, "2030", ""},
      {{9999, 5, 1, 0}, "2500", ""}};
  for (const auto& [finish, label, above] : rows) {
    SCOPED_TRACE(FormatDate(finish));
    const TimeAxis axis(kMonday, finish, 100);
    EXPECT_GE(axis.X(kMonday), axis.Left());
    EXPECT_GT(axis.X(finish), axis.X(kMonday));
    EXPECT_LE(axis.X(finish), axis.Right());
    std::vector<Text> lower, upper;
    for (const Text& text : ShapesOf<Text>(axis.Draw(0, 100))) {
      (text.at.y > TimeAxis::Height() / 2 ? lower : upper).push_back(text);
    }
    ASSERT_GE(lower.size(), 2U);
    EXPECT_EQ(lower[1].text, label);
    EXPECT_EQ(upper.empty() ? "" : upper[0].text, above);
    for (std::size_t at = 1; at < lower.size(); ++at) {
      EXPECT_GT(lower[at].at.x - lower[at - 1].at.x, WidthOf(lower[at].text, Ink::kAxis));
    }
  }
}

schedule::PlanTask Task(std::int64_t uid, const char* name, double days, std::int64_t level = 2) {
  schedule::PlanTask task;
  task.uid = task.id = uid;
  task.name = name;
  task.level = level;
  task.duration = static_cast<schedule::Tenths>(days * schedule::kTenthsOfDay);
  return task;
}

long Count(const Picture& picture, Ink ink) {
  long count = 0;
  for (const Figure& figure : picture.figures) {
    if (figure.id.empty() && ink < Ink::kTaskLink) continue;  // the legend
    for (const Shape& shape : figure.shapes) {
      count += std::visit([&](const auto& part) { return part.ink == ink ? 1 : 0; }, shape);
    }
  }
  return count;
}

TEST(ChartTest, BarsTellKindResourcesAndDates) {
  schedule::Plan plan;
  plan.name = "Yard";
  plan.start = kMonday;
  plan.tasks = {Task(1, "Whole", 0, 1), Task(2, "Long", 3), Task(3, "Short", 0.5),
                Task(4, "End", 0)};
  plan.tasks[0].summary = true;
  for (std::size_t task : {1U, 2U, 3U}) plan.tasks[task].parent = 0;
  plan.links = {{.predecessor = 1, .successor = 3},
                {.predecessor = 2, .successor = 3},
                {.predecessor = 1, .successor = 2, .kind = LinkKind::kStartToStart},
                {.predecessor = 2, .successor = 3, .kind = LinkKind::kFinishToFinish}};
  schedule::Staffing staffing;
  staffing.resources = {{.name = "Ada"}, {.name = "<Bob>"}};
  staffing.assignments = {{.task = 1, .resource = 0}, {.task = 1, .resource = 1}};
  const Picture chart = DrawChart({plan, MakeSchedule(plan), staffing, ""});
  for (const Ink ink : {Ink::kSummary, Ink::kCritical, Ink::kTask, Ink::kMilestone,
                        Ink::kCriticalLink, Ink::kCriticalArrow}) {  // one head a link
    EXPECT_EQ(Count(chart, ink), 1) << static_cast<int>(ink);
  }
  EXPECT_EQ(Count(chart, Ink::kTaskLink), 3);
  EXPECT_EQ(Count(chart, Ink::kTaskArrow), 3);
  EXPECT_THAT(chart.description, HasSubstr("Nov 30, 2026 to Dec 2, 2026, 4 tasks, 3 days"));
  std::vector<std::string> titles;
  for (const Figure& figure : chart.figures) {
    if (!figure.id.empty()) titles.push_back(figure.title);
    EXPECT_LE(figure.area.Right(), chart.width);
  }
  EXPECT_THAT(titles, ElementsAre(HasSubstr("Whole"),
                                  "Long\nNov 30, 2026 8:00 to Dec 2, 2026 17:00\n3 days, "
                                  "critical\nResources: Ada, <Bob>",
                                  HasSubstr("0.5 days, slack 2.5 days"), HasSubstr("Milestone")));
}

struct Reach {
  double left = 0, right = 0, y = 0;
};

// Of the bar in the figure of a task: what is neither a text nor a cell.
Reach BarOf(const Figure& figure) {
  for (const Shape& shape : figure.shapes) {
    if (const auto* box = std::get_if<Box>(&shape)) {
      return {box->area.left, box->area.Right(), box->area.Centre().y};
    }
    const auto* path = std::get_if<Path>(&shape);
    if (path == nullptr) continue;
    const auto [left, right] = std::ranges::minmax(path->points, {}, &Point::x);
    const auto [top, bottom] = std::ranges::minmax(path->points, {}, &Point::y);
    return {left.x, right.x, (top.y + bottom.y) / 2};
  }
  ADD_FAILURE() << figure.id << " has no bar";
  return {};
}

schedule::Plan RandomPlan(std::mt19937& random) {
  schedule::Plan plan;
  plan.start = kMonday;
  const std::size_t count = 3 + random() % 12;
  for (std::size_t at = 0; at < count; ++at) {
    const auto uid = static_cast<std::int64_t>(at) + 1;
    plan.tasks.push_back(Task(uid, "Task", static_cast<double>(random() % 9) / 2, 1));
  }
  for (std::size_t link = 0; link < count; ++link) {
    std::size_t from = random() % count, to = random() % count;
    if (from == to) continue;
    if (from > to) std::swap(from, to);
    plan.links.push_back(
        {.predecessor = from, .successor = to, .kind = static_cast<LinkKind>(random() % 4)});
  }
  return plan;
}

TEST(ChartTest, BarsStandAtTheirDatesAndEachLinkReachesTheEndThatItHoldsBack) {
  std::mt19937 random(3);
  for (int round = 0; round < 80; ++round) {
    SCOPED_TRACE(round);
    const schedule::Plan plan = RandomPlan(random);
    const schedule::Schedule dates = MakeSchedule(plan);
    const Picture chart =
        DrawChart({plan, dates, {}, ""}, {.headline = round % 2 == 0, .columns = round % 3 == 0});
    std::vector<Reach> bars;
    std::vector<Point> tips;
    for (const Figure& figure : chart.figures) {
      if (figure.id.starts_with("task-")) bars.push_back(BarOf(figure));
      for (const Path& path : ShapesOf<Path>(figure)) {
        for (const Point& point : path.points) {
          EXPECT_GE(point.x, 0);
          EXPECT_LE(point.x, chart.width);
          EXPECT_LE(point.y, chart.height);
        }
        if (path.ink == Ink::kTaskArrow || path.ink == Ink::kCriticalArrow) {
          tips.push_back(path.points.front());
        }
      }
    }
    ASSERT_EQ(bars.size(), plan.tasks.size());
    ASSERT_EQ(tips.size(), plan.links.size());
    for (std::size_t a = 0; a < bars.size(); ++a) {
      for (std::size_t b = 0; b < bars.size(); ++b) {  // the same order as the dates
        const bool milestone = plan.tasks[a].duration == 0 || plan.tasks[b].duration == 0;
        if (!milestone && dates.moments[a].earlyStart < dates.moments[b].earlyStart) {
          EXPECT_LE(bars[a].left, bars[b].left) << a << " and " << b;
        }
      }
    }
    for (std::size_t at = 0; at < tips.size(); ++at) {
      const schedule::PlanLink& link = plan.links[at];
      const Reach& bar = bars[link.successor];
      EXPECT_NEAR(tips[at].y, bar.y, 8);
      EXPECT_GE(tips[at].x, bar.left - 0.01) << at;
      if (plan.tasks[link.successor].duration == 0) continue;
      const bool toFinish =
          link.kind == LinkKind::kFinishToFinish || link.kind == LinkKind::kStartToFinish;
      if (toFinish) {
        EXPECT_NEAR(tips[at].x, bar.right, 0.01) << at;
      } else if (link.kind == LinkKind::kStartToStart) {
        EXPECT_NEAR(tips[at].x, bar.left, 0.01) << at;
      }
    }
  }
}

TEST(ChartTest, LongNamesAndDeepOutlinesLeaveTheBarsTheirRoom) {
  schedule::Plan plan;
  plan.start = kMonday;
  for (const std::int64_t level : {1, 2, 30, 400}) {
    plan.tasks.push_back(Task(level, "", 1, level));
    plan.tasks.back().name = std::string(200, 'W');
  }
  schedule::Staffing crew;
  crew.resources = {{.name = std::string(300, 'm')}};
  crew.assignments = {{.task = 1, .resource = 0}};
  const Picture chart = DrawChart({plan, MakeSchedule(plan), crew, ""});
  for (const Figure& figure : chart.figures) {
    if (!figure.id.starts_with("task-")) continue;
    const Reach bar = BarOf(figure);
    for (const Text& text : ShapesOf<Text>(figure)) {
      if (text.anchor == Anchor::kEnd) continue;
      const double right = text.at.x + WidthOf(text.text, text.ink);
      if (text.ink == Ink::kResources) {
        EXPECT_GT(text.at.x, bar.right);
        EXPECT_LE(right, chart.width);
      } else {
        EXPECT_LT(right, bar.left) << figure.id;
      }
    }
  }
}

std::vector<std::string> TextsOf(const Figure& figure) {
  std::vector<std::string> texts;
  for (const Text& text : ShapesOf<Text>(figure)) texts.push_back(text.text);
  return texts;
}

TEST(ChartTest, ThePlanAsItWasLiesBelowByOccurrenceAndWhatIsGoneIsToldGrey) {
  DatedPlan now, before;
  now.plan.start = before.plan.start = kMonday;
  now.plan.tasks = {Task(1, "Kept", 2, 1), Task(2, "Renumbered", 2, 1), Task(3, "New", 1, 1)};
  before.plan.tasks = {Task(1, "Kept", 4, 1), Task(9, "Old number", 1, 1), Task(2, "Gone", 40, 1)};
  now.plan.tasks[1].occurrence = before.plan.tasks[1].occurrence = 17;
  for (DatedPlan* plan : {&now, &before}) plan->dates = MakeSchedule(plan->plan);
  const Picture chart = DrawChart(now, {.before = &before});
  EXPECT_EQ(Count(chart, Ink::kBefore), 3);
  EXPECT_THAT(Find(chart, "task-1").title,
              HasSubstr("Before: Nov 30, 2026 8:00 to Dec 3, 2026 17:00"));
  EXPECT_THAT(Find(chart, "task-2").title,
              HasSubstr("Before: Nov 30, 2026 8:00 to Nov 30, 2026 17:00"));
  EXPECT_THAT(Find(chart, "task-3").title, HasSubstr("Before: not in the plan"));
  const Figure& gone = Find(chart, "before-2");
  EXPECT_TRUE(gone.faint);
  EXPECT_THAT(TextsOf(gone), ElementsAre("2", "Gone"));
  EXPECT_LE(BarOf(gone).right, chart.width);  // it lasts longer than the plan of today
  EXPECT_EQ(Count(DrawChart(now), Ink::kBefore), 0);
}

TEST(ChartTest, ColumnsTellDatesDaysAndPredecessors) {
  DatedPlan whole;
  whole.plan.start = kMonday;
  whole.plan.tasks = {Task(1, "First", 1.5, 1), Task(2, "Second", 1, 1)};
  whole.plan.links = {{.predecessor = 0,
                       .successor = 1,
                       .kind = LinkKind::kFinishToStart,
                       .lag = {.amount = schedule::kTenthsOfDay}}};
  whole.dates = MakeSchedule(whole.plan);
  const Picture chart = DrawChart(whole, {.columns = true, .foot = "yard.mdb"});
  EXPECT_THAT(TextsOf(Find(chart, "task-1")),
              ElementsAre("1", "First", "Nov 30, 2026", "Dec 1, 2026", "1.5"));
  EXPECT_THAT(TextsOf(Find(chart, "task-2")),
              ElementsAre("2", "Second", "Dec 2, 2026", "Dec 3, 2026", "1", "1FS+1d"));
  EXPECT_THAT(TextsOf(chart.figures.back()),
              ElementsAre("Working time: Monday to Friday 8:00-12:00 and 13:00-17:00", "yard.mdb"));
  const Picture narrow = DrawChart(whole);
  EXPECT_GT(BarOf(Find(chart, "task-1")).left, BarOf(Find(narrow, "task-1")).left);
}

TEST(ChartTest, MoreWorkThanThereIsOfAResourceStandsBelowTheTasks) {
  DatedPlan whole;
  whole.plan.start = kMonday;
  for (const int task : {1, 2, 3}) whole.plan.tasks.push_back(Task(task, "Task", task, 1));
  whole.staffing.resources = {{.name = "Ada", .units = 1}, {.name = "Rope", .units = 2}};
  for (const std::size_t task : {0U, 1U, 2U}) {
    for (const std::size_t resource : {0U, 1U}) {
      whole.staffing.assignments.push_back({.task = task, .resource = resource});
    }
  }
  whole.dates = MakeSchedule(whole.plan);
  const Picture chart = DrawChart(whole);
  EXPECT_THAT(Find(chart, "overload-0").title,
              HasSubstr("Ada\nMore is asked for than there is:\nNov 30, 2026 8:00 to Dec 1"));
  EXPECT_THAT(Find(chart, "overload-1").title, HasSubstr("to Nov 30, 2026 17:00"));
  EXPECT_EQ(Count(chart, Ink::kOverload), 2);
  const auto overloads = OverloadsOf(whole.plan, whole.dates, whole.staffing);
  ASSERT_EQ(overloads.size(), 2U);
  EXPECT_EQ(overloads[0].units, 3);
  whole.plan.links = {{.predecessor = 0, .successor = 1}, {.predecessor = 1, .successor = 2}};
  whole.dates = MakeSchedule(whole.plan);
  EXPECT_EQ(Count(DrawChart(whole), Ink::kOverload), 0);
}

}  // namespace
}  // namespace merivane::test
