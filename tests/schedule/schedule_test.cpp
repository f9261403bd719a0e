#include "schedule/schedule.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <sstream>

#include "error_of.h"
#include "runtime/conversions.h"

namespace merivane::test {

using namespace schedule;

namespace {

// "A 2, B 0, -C 1": names and days; each "-" in front of a name is one level of the outline.
// "A>B, A>B SS+1": links, finish-to-start where no kind is given, with a lag.
Plan PlanOf(const std::string& tasks, const std::string& links) {
  Plan plan{.name = "Plan", .start = {2026, 1, 5, 0}, .tasks = {}, .links = {}};
  std::map<std::string, std::size_t> indices;
  std::vector<std::size_t> above;
  std::istringstream taskList(tasks);
  for (std::string item; std::getline(taskList >> std::ws, item, ',');) {
    const std::size_t depth = item.find_first_not_of('-');
    const std::size_t blank = item.find(' ');
    const std::size_t index = plan.tasks.size();
    above.resize(depth);
    PlanTask task;
    task.name = item.substr(depth, blank - depth);
    task.duration = static_cast<Tenths>(std::stod(item.substr(blank)) * kTenthsOfDay);
    if (item.ends_with('e')) task.durationFormat = 8;
    if (depth > 0) {
      task.parent = above.back();
      plan.tasks[above.back()].summary = true;
    }
    above.push_back(index);
    indices[task.name] = index;
    plan.tasks.push_back(task);
  }
  const std::map<std::string, LinkKind> kinds = {{"FF", LinkKind::kFinishToFinish},
                                                 {"FS", LinkKind::kFinishToStart},
                                                 {"SF", LinkKind::kStartToFinish},
                                                 {"SS", LinkKind::kStartToStart}};
  std::istringstream linkList(links);
  for (std::string item; std::getline(linkList >> std::ws, item, ',');) {
    const std::size_t arrow = item.find('>');
    std::istringstream rest(item.substr(arrow + 1));
    std::string successor;
    std::string kind = "FS";
    rest >> successor >> kind;
    PlanLink link{.predecessor = indices.at(item.substr(0, arrow)),
                  .successor = indices.at(successor),
                  .kind = kinds.at(kind.substr(0, 2))};
    link.lag = ParseLag(kind.substr(2));
    plan.links.push_back(link);
  }
  return plan;
}

std::string Days(Tenths time) {
  return TextOfReal(static_cast<double>(time) / static_cast<double>(kTenthsOfDay));
}

struct Case {
  const char* name;
  const char* tasks;
  const char* links;
  const char* dates;  // early start, early finish, slack ("!": critical) of each task, in days
};

TEST(Schedules, DatesFollowLinksAndOutline) {
  const Case cases[] = {
      {"no links", "A 2,B 3", "", "A 0-2 1, B 0-3 !"},
      {"finish to start with lag", "A 2,B 1", "A>B FS+2d", "A 0-2 !, B 4-5 !"},
      {"a lead before the plan's start", "A 2,B 1", "A>B FS-5d", "A 0-2 !, B 0-1 1"},
      {"start to start", "A 2,B 1,C 4", "A>B SS+8h", "A 0-2 2, B 1-2 2, C 0-4 !"},
      {"finish to finish", "A 3,B 1", "A>B FF+480m", "A 0-3 !, B 3-4 !"},
      {"start to finish", "A 3,B 1", "A>B SF+.4w", "A 0-3 !, B 1-2 1"},
      {"percentage of the predecessor", "A 4,B 1", "A>B SS+50%", "A 0-4 !, B 2-3 1"},
      {"elapsed lag over a weekend", "A 5,B 1", "A>B FS+2ed", "A 0-5 !, B 5-6 !"},
      {"elapsed lag behind a milestone at the start", "M 0,B 1", "M>B FS+1ed", "M 0-0 !, B 1-2 !"},
      {"elapsed duration", "A 6 e,B 1", "A>B", "A 0-2 !, B 2-3 !"},
      {"diamond", "A 1,B 2,C 4,D 1", "A>B,A>C,B>D,C>D", "A 0-1 !, B 1-3 2, C 1-5 !, D 5-6 !"},
      {"a summary spans its tasks and is held back as one", "A 2,S 9,-B 1,-C 3,D 1", "A>S,B>C,S>D",
       "A 0-2 !, S 2-6 !, B 2-3 !, C 3-6 !, D 6-7 !"},
      {"a summary's start is its first task's", "S 9,-A 1,-B 2,C 3,D 1", "C>A,C>B FS+1d,S>D SS",
       "S 3-6 !, A 3-4 2, B 4-6 !, C 0-3 !, D 3-4 2"},
      {"a link into a summary's finish holds that alone", "A 5,S 9,-B 1,C 1", "A>S FF,S>C",
       "A 0-5 !, S 0-5 !, B 0-1 4, C 5-6 !"},
      {"two levels", "S 1,-T 1,--A 2,--B 1,-C 1,D 9", "A>B,T>C",
       "S 0-4 5, T 0-3 5, A 0-2 5, B 2-3 5, C 3-4 5, D 0-9 !"}};
  for (const Case& item : cases) {
    SCOPED_TRACE(item.name);
    const Plan plan = PlanOf(item.tasks, item.links);
    const Schedule schedule = MakeSchedule(plan);
    std::string dates;
    for (std::size_t task = 0; task < plan.tasks.size(); ++task) {
      const TaskDates& found = schedule.tasks[task];
      dates += (task == 0 ? "" : ", ") + plan.tasks[task].name + " " + Days(found.earlyStart) +
               "-" + Days(found.earlyFinish) + " " +
               (found.critical ? "!" : Days(found.totalSlack));
      EXPECT_EQ(found.critical, found.totalSlack == 0);
      EXPECT_GE(found.lateFinish, found.lateStart);
      EXPECT_LE(found.lateFinish, schedule.finish);
    }
    EXPECT_EQ(dates, item.dates);
  }
}

TEST(ScheduleFailures, CirclesNameTheirTasks) {
  const auto description = [](const std::string& tasks, const std::string& links) {
    std::string told = "no error";
    ErrorOf([&] { MakeSchedule(PlanOf(tasks, links)); }, &told);
    return told;
  };
  using testing::HasSubstr;
  EXPECT_THAT(description("A 1,B 1,C 1,D 1", "A>B,B>C,C>B,C>D"), HasSubstr("tasks 'C', 'B'. Take"));
  EXPECT_THAT(description("A 1,B 1", "B>B"), HasSubstr("The task 'B' is linked to itself"));
  EXPECT_THAT(description("S 1,-A 1", "A>S"), HasSubstr("'A', 'S'"));
  EXPECT_THAT(description("S 1,-A 1,B 1", "S>B,B>A"), HasSubstr("circle"));
}

// Rules of one task, by its name.
using Change = std::function<void(TaskRules&)>;

Tenths At(int day, int hour) { return ClockOf({2026, 1, day, hour * 3600}); }

TEST(Schedules, ConstraintsAndProgressMoveTasks) {
  const auto constrain = [](Constraint kind, Tenths date) -> Change {
    return [kind, date](TaskRules& rules) {
      rules.constraint = kind;
      rules.constraintDate = date;
    };
  };
  // A 2 days, B 1 day behind it, C 5 days beside them, from Monday the 5th; B is the one changed.
  const struct {
    const char* name;
    Change change;
    const char* dates;  // of B, with its slack
  } cases[] = {
      {"as soon as possible", [](TaskRules&) {}, "1/7/2026 8-1/7/2026 17 2"},
      {"as late as possible",
       [](TaskRules& rules) { rules.constraint = Constraint::kAsLateAsPossible; },
       "1/9/2026 8-1/9/2026 17 0"},
      {"start no earlier", constrain(Constraint::kStartNoEarlier, At(8, 13)),
       "1/8/2026 13-1/9/2026 12 0.5"},
      {"finish no earlier", constrain(Constraint::kFinishNoEarlier, At(8, 17)),
       "1/8/2026 8-1/8/2026 17 1"},
      {"must start", constrain(Constraint::kMustStartOn, At(6, 8)), "1/6/2026 8-1/6/2026 17 0"},
      {"must finish", constrain(Constraint::kMustFinishOn, At(8, 17)), "1/8/2026 8-1/8/2026 17 0"},
      {"start no later", constrain(Constraint::kStartNoLater, At(6, 13)),
       "1/6/2026 13-1/7/2026 12 0"},
      {"finish no later", constrain(Constraint::kFinishNoLater, At(8, 17)),
       "1/7/2026 8-1/7/2026 17 1"},
      {"deadline that is missed", [](TaskRules& rules) { rules.deadline = At(6, 17); },
       "1/7/2026 8-1/7/2026 17 -1"},
      {"begun before its predecessor", [](TaskRules& rules) { rules.actualStart = At(5, 8); },
       "1/5/2026 8-1/5/2026 17 4"},
      {"begun, the rest later",
       [](TaskRules& rules) {
         rules.actualStart = At(5, 8);
         rules.resume = At(8, 8);
         rules.remaining = 2400;
       },
       "1/5/2026 8-1/8/2026 12 1.5"},
      {"done",
       [](TaskRules& rules) {
         rules.actualStart = At(5, 8);
         rules.actualFinish = At(6, 12);
       },
       "1/5/2026 8-1/6/2026 12 0"},
      {"levelled by two days and nights",
       [](TaskRules& rules) {
         rules.levelingDelay = {28800, 8};
       },
       "1/9/2026 8-1/9/2026 17 0"},
      {"dates of its own",
       [](TaskRules& rules) {
         rules.fixedStart = At(10, 9);
         rules.fixedFinish = At(11, 10);
       },
       "1/10/2026 9-1/11/2026 10 0"}};
  for (const auto& item : cases) {
    SCOPED_TRACE(item.name);
    Plan plan = PlanOf("A 2,B 1,C 5", "A>B");
    item.change(plan.tasks[1].rules);
    const Schedule schedule = MakeSchedule(plan);
    const auto shown = [](const DateTime& date) {
      return FormatDate({date.year, date.month, date.day, 0}) + " " +
             std::to_string(date.seconds / 3600);
    };
    const std::string dates = shown(schedule.StartOf(1)) + "-" + shown(schedule.FinishOf(1)) + " " +
                              Days(schedule.tasks[1].totalSlack);
    EXPECT_EQ(dates, item.dates);
    EXPECT_EQ(schedule.tasks[1].critical,
              schedule.tasks[1].totalSlack <= 0 && !plan.tasks[1].rules.actualFinish);
  }
}

// A milestone stays in the evening, an elapsed lag counts from there, and a finish that waits for a
// start is the morning of it; a lag in between makes it the evening before.
TEST(Schedules, MomentsBetweenTwoDaysAreKept) {
  const Plan plan =
      PlanOf("A 1,M 0,B 1,C 1,D 1,E 1,F 1,Z 3", "A>M,M>B FS+12eh,A>C,C>D SF,C>E SF+1d,M>F FS+96eh");
  const Schedule schedule = MakeSchedule(plan);
  const auto finish = [&](std::size_t task) { return FormatDate(schedule.FinishOf(task)); };
  EXPECT_EQ(finish(1), "1/5/2026 5:00:00 PM");
  EXPECT_EQ(FormatDate(schedule.StartOf(2)), "1/6/2026 8:00:00 AM");
  EXPECT_EQ(finish(4), "1/6/2026 8:00:00 AM");
  EXPECT_EQ(finish(5), "1/6/2026 5:00:00 PM");
  EXPECT_EQ(FormatDate(schedule.StartOf(6)), "1/12/2026 8:00:00 AM");
}

TEST(Schedules, InactiveTasksHoldNothingBack) {
  Plan plan = PlanOf("S 9,-A 2,-B 9,C 1", "B>C,S>C,A>B");
  plan.tasks[2].rules.inactive = true;
  const Schedule schedule = MakeSchedule(plan);
  EXPECT_EQ(FormatDate(schedule.FinishOf(0)), "1/6/2026 5:00:00 PM");
  EXPECT_EQ(FormatDate(schedule.StartOf(3)), "1/7/2026 8:00:00 AM");
  EXPECT_EQ(FormatDate(schedule.StartOf(2)), "1/7/2026 8:00:00 AM");
  EXPECT_FALSE(schedule.tasks[2].critical);
  EXPECT_EQ(FormatDate(schedule.Finish()), "1/7/2026 5:00:00 PM");
}

// A predecessor may be done in the night, and what follows waits for the day.
TEST(Schedules, TasksAreDoneInTheHoursOfTheirCalendar) {
  Plan plan = PlanOf("A 1,B 1,M 0,E 1 e,F 1", "A>B,B>M,A>E,E>F");
  const Shifts night = {{0, 3 * 600}, {4 * 600, 8 * 600}, {23 * 600, 24 * 600}};
  plan.times.emplace_back(Week{night, night, night, night, night, {}, {}});
  plan.times.emplace_back(Week{Shifts{{0, kTenthsOfCalendarDay}}, {}, {}, {}, {}, {}, {}});
  plan.tasks[1].calendar = 1;
  const Schedule schedule = MakeSchedule(plan);
  EXPECT_EQ(FormatDate(schedule.StartOf(1)), "1/5/2026 11:00:00 PM");
  EXPECT_EQ(FormatDate(schedule.FinishOf(1)), "1/6/2026 8:00:00 AM");
  EXPECT_EQ(FormatDate(schedule.StartOf(2)), "1/6/2026 8:00:00 AM");
  EXPECT_EQ(FormatDate(schedule.StartOf(3)), "1/5/2026 5:00:00 PM");
  EXPECT_EQ(FormatDate(schedule.FinishOf(3)), "1/6/2026 1:00:00 AM");
  EXPECT_EQ(FormatDate(schedule.StartOf(4)), "1/6/2026 8:00:00 AM");
  plan.tasks[0].calendar = 2;
  EXPECT_EQ(FormatDate(MakeSchedule(plan).FinishOf(0)), "1/5/2026 4:00:00 PM");
}

// A long chain of links, and a deep outline: neither may cost the stack.
TEST(Schedules, LongChainsAreCarriedOut) {
  constexpr std::size_t kTasks = 100000;
  Plan plan{
      .name = "", .start = {2026, 1, 5, 0}, .tasks = std::vector<PlanTask>(kTasks), .links = {}};
  for (std::size_t task = 0; task < kTasks; ++task) {
    plan.tasks[task].duration = 10;
    if (task > kTasks / 2) {
      plan.tasks[task].parent = task - 1;
      plan.tasks[task - 1].summary = true;
    } else if (task > 0) {
      plan.links.push_back({.predecessor = task, .successor = task - 1});
    }
  }
  EXPECT_NO_THROW(MakeSchedule(plan));
}

}  // namespace
}  // namespace merivane::test
