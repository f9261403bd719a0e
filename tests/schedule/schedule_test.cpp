#include "schedule/schedule.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <map>
#include <sstream>

#include "error_of.h"
#include "runtime/conversions.h"
#include "schedule/staffing.h"
#include "store/recordset.h"
#include "temporary_folder.h"

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

TEST(WorkingTime, DatesSkipNightsAndWeekends) {
  const WorkingTime& time = WorkingTime::Standard();
  const auto shown = [](Tenths clock) { return FormatDate(MomentOf(clock)); };
  const Tenths friday = ClockOf({2026, 1, 9, 8 * 3600});
  EXPECT_EQ(shown(time.NextStart(ClockOf({2026, 1, 9, 0}))), "1/9/2026 8:00:00 AM");
  EXPECT_EQ(shown(time.After(friday, 2400)), "1/9/2026 12:00:00 PM");
  EXPECT_EQ(shown(time.NextStart(time.After(friday, 2400))), "1/9/2026 1:00:00 PM");
  EXPECT_EQ(shown(time.After(friday, 4800)), "1/9/2026 5:00:00 PM");
  EXPECT_EQ(shown(time.NextStart(time.After(friday, 4800))), "1/12/2026 8:00:00 AM");
  EXPECT_EQ(shown(time.After(friday, 4800 * 200)), "10/15/2026 5:00:00 PM");
  EXPECT_EQ(shown(time.Before(friday, 2400)), "1/8/2026 1:00:00 PM");
  EXPECT_EQ(shown(time.Before(ClockOf({1899, 12, 31, 0}), -48)), "1/1/1900 8:04:48 AM");
  EXPECT_THROW(MomentOf(time.After(friday, 4800LL * 366 * 8000)), RunTimeError);
}

// Against a count day by day, through exceptions that lie one in another.
TEST(WorkingTime, TellsItselfInWords) {
  Week week = WorkingTime::StandardWeek();
  EXPECT_EQ(WorkingTime(week).Text(), "Monday to Friday 8:00-12:00 and 13:00-17:00");
  const Shifts night = {{0, 90 * kTenthsOfMinute}, {20 * 600, kTenthsOfCalendarDay}};
  week[2] = {};
  week[5] = week[6] = night;
  EXPECT_EQ(WorkingTime(week, {{.first = 20000, .last = 20001, .shifts = {}}}).Text(),
            "Monday and Tuesday 8:00-12:00 and 13:00-17:00; Thursday and Friday 8:00-12:00 and "
            "13:00-17:00; Saturday and Sunday 0:00-1:30 and 20:00-24:00, with 1 exception");
}

TEST(WorkingTime, ExceptionsTakeTheirDays) {
  const Tenths first = DayOf({2026, 1, 7, 0});
  const Shifts morning = {{6 * 600, 10 * 600}};
  const WorkingTime time(WorkingTime::StandardWeek(), {{first, first, {}},
                                                       {first - 1, first + 1, morning},
                                                       {first + 3, first + 4, morning},
                                                       {first + 12, first + 40, {}}});
  const Tenths hours[] = {8, 4, 0, 4, 8, 4, 4, 8, 8, 8, 8, 8, 0, 0};
  Tenths clock = (first - 2) * kTenthsOfCalendarDay;
  Tenths worked = time.WorkedBy(clock);
  for (const Tenths ofDay : hours) {
    EXPECT_EQ(time.WorkedBy(clock), worked) << FormatDate(MomentOf(clock));
    for (const Tenths offset : {1, 1200, 2399}) {
      if (offset >= ofDay * 600) continue;
      EXPECT_EQ(time.WorkedBy(time.StartAt(worked + offset)), worked + offset);
      EXPECT_EQ(time.StartAt(worked + offset) / kTenthsOfCalendarDay, clock / kTenthsOfCalendarDay);
    }
    worked += ofDay * 600;
    clock += kTenthsOfCalendarDay;
  }
  EXPECT_EQ(FormatDate(MomentOf(time.StartAt(worked))), "2/17/2026 8:00:00 AM");
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

class PlanTables : public testing::Test {
 protected:
  PlanTables() { std::filesystem::copy_file(MERIVANE_BIN "/MerivaneTemplate.mdb", path); }

  void Add(const std::string& table, const std::vector<std::string>& columns,
           const std::vector<std::vector<Value>>& rows) {
    Connection connection(workspace);
    connection.Open(ConnectionText(path));
    Recordset set;
    set.OpenDynamic("select * from " + table, &connection);
    for (const std::vector<Value>& row : rows) set.AddNew(columns, row);
  }
  Plan Read(const std::string& database) {
    Connection connection(workspace);
    connection.Open(ConnectionText(database), OpenMode::kReadOnly);
    return ReadPlan(connection, 1, {2026, 1, 5, 0});
  }

  Workspace workspace;
  TemporaryFolder folder;
  std::string path = folder.Path("plan.mdb");
};

TEST_F(PlanTables, ModelsDurationCountsUntilAnotherProgramChangesThePlan) {
  Add("MSP_TASKS",
      {"PROJ_ID", "TASK_UID", "TASK_ID", "TASK_NAME", "TASK_DUR", "KV7_PROCOCC_DURATION"},
      {{1, 12, 2, "from the model", 9600, "2.5"},
       {1, 11, 1, "changed in the plan", 14400, "2.5"},
       {1, 14, 4, "expression", 4800, "Norm(3,1)"},
       {1, 14, 5, "a UID twice", 4800, "1"},
       {1, 15, Value(), "added by a merge", 0, "1"}});
  std::string read;
  for (const PlanTask& task : Read(path).tasks)
    read += task.name + " " + Days(task.duration) + "\n";
  EXPECT_EQ(read, "changed in the plan 3\nfrom the model 2.5\nexpression 1\n");
}

TEST_F(PlanTables, PlanThatAFileBroughtBackCountsBeforeTheStoredOne) {
  Add("MSP_TASKS", {"PROJ_ID", "TASK_UID", "TASK_ID", "TASK_NAME"}, {{1, 1, 1, "old"}});
  Add("ProjectAct", {"Msp_ProjID", "PID", "Name", "Outline", "Duration", "Predecessor", "Text1"},
      {{1, 7, "T7", 0, "1.25", "", "0"},
       {1, 1, "T1", 1, "1.25", "", "17"},
       {1, 2, "T2", 1, "1.25", "1, 3ss+1.5ed,9FF", "0"},
       {1, 3, "T3", 2, "1.25", "1FS-50%,2SF+1mo,x", "18"}});
  const Plan plan = Read(path);
  std::string read;
  for (const PlanTask& task : plan.tasks) {
    read += task.name + " " + Days(task.duration) + " " +
            std::to_string(task.occurrence.value_or(0)) + "\n";
  }
  for (const PlanLink& link : plan.links) {
    read += std::to_string(link.predecessor) + ">" + std::to_string(link.successor) + " " +
            std::to_string(static_cast<int>(link.kind)) + LagText(link.lag, 480) + "\n";
  }
  EXPECT_EQ(read,
            "T1 1.25 17\nT2 1.25 0\nT3 1.25 18\n"
            "0>1 1\n2>1 3+1.5ed\n0>2 1-50%\n1>2 2+1mo\n");
  EXPECT_EQ(plan.tasks[2].parent, 1U);
}

// Three tasks begin on Monday; the crew of two is asked for three times over on the first day.
TEST_F(PlanTables, StaffingTellsHoursCostAndWhenTooMuchIsAskedFor) {
  Add("MSP_TASKS", {"PROJ_ID", "TASK_UID", "TASK_ID", "TASK_NAME", "TASK_DUR"},
      {{1, 11, 1, "one day", 4800},
       {1, 12, 2, "two days", 9600},
       {1, 13, 3, "milestone", 0},
       {1, 14, 4, "behind", 4800}});
  Add("MSP_LINKS", {"PROJ_ID", "LINK_UID", "LINK_PRED_UID", "LINK_SUCC_UID", "LINK_TYPE"},
      {{1, 1, 12, 14, 1}});
  Add("MSP_RESOURCES",
      {"PROJ_ID", "RES_UID", "RES_ID", "RES_NAME", "RES_MAX_UNITS", "RES_STD_RATE",
       "RES_STD_RATE_FMT"},
      {{1, 1, 1, "Crew", 2, 80, 3},
       {1, 2, 2, "Crane", 1, 30, Value()},
       {1, 3, 3, "Cement", 1, 5, 8},
       {1, 4, 4, "", 1, 5, 2}});
  Add("MSP_ASSIGNMENTS", {"PROJ_ID", "ASSN_UID", "TASK_UID", "RES_UID", "ASSN_UNITS", "ASSN_WORK"},
      {{1, 1, 11, 1, 2, Value()},
       {1, 2, 12, 1, 1, 720000},
       {1, 3, 12, 2, 1, 0},
       {1, 4, 13, 2, 5, 0},
       {1, 5, 14, 1, 2, 0},
       {1, 6, 14, 3, 1, 0},
       {1, 7, 14, 4, 1, 0},
       {1, 8, 99, 1, 9, 0}});
  Connection connection(workspace);
  connection.Open(ConnectionText(path), OpenMode::kReadOnly);
  const Plan plan = ReadPlan(connection, 1, {2026, 1, 5, 0});
  const Staffing staffing = ReadStaffing(connection, 1, plan);
  std::string told;
  for (std::size_t at = 0; at < staffing.resources.size(); ++at) {
    const auto cost = staffing.CostOf(at);
    told += staffing.resources[at].name + " " + TextOfReal(staffing.HoursOf(at)) + " h " +
            (cost ? TextOfReal(*cost) : "-") + "\n";
  }
  EXPECT_EQ(told, "Crew 44 h 440\nCrane 16 h 480\nCement 8 h -\n");
  EXPECT_THAT(staffing.NamesByTask(plan.tasks.size()),
              testing::ElementsAre("Crew", "Crew, Crane", "Crane", "Crew, Cement"));
  const auto overloads = OverloadsOf(plan, MakeSchedule(plan), staffing);
  ASSERT_EQ(overloads.size(), 1U);
  EXPECT_EQ(overloads[0].resource, 0U);
  EXPECT_EQ(overloads[0].units, 3);
  EXPECT_EQ(FormatDate(MomentOf(overloads[0].from)), FormatDate({2026, 1, 5, 8 * 3600}));
  EXPECT_EQ(FormatDate(MomentOf(overloads[0].to)), FormatDate({2026, 1, 5, 17 * 3600}));
  EXPECT_THAT(PredecessorTexts(plan), testing::ElementsAre("", "", "", "2"));
}

TEST_F(PlanTables, CalendarsAreReadWithWhatTheyAreBasedOn) {
  Add("MSP_PROJECTS",
      {"PROJ_ID", "PROJ_INFO_START_DATE", "PROJ_INFO_CAL_NAME", "PROJ_OPT_MINUTES_PER_DAY",
       "PROJ_OPT_MINUTES_PER_WEEK"},
      {{1, "1/5/2026", "Early", 10000, 2100}});
  Add("MSP_CALENDARS", {"PROJ_ID", "CAL_UID", "CAL_BASE_UID", "CAL_IS_BASE_CAL", "CAL_NAME"},
      {{1, -65535, 0, 0, Value()},
       {1, 1, -1, -1, "Standard"},
       {1, 2, -1, -1, "Early"},
       {1, 3, 2, 0, "Ada"},
       {1, 4, -1, -1, "Never"},
       {1, 5, 6, 0, "round"},
       {1, 6, 5, 0, "about"}});
  const std::vector<std::string> days = {
      "PROJ_ID",    "CAL_UID",       "CD_DAY_OR_EXCEPTION", "CD_WORKING",    "CD_FROM_DATE",
      "CD_TO_DATE", "CD_FROM_TIME1", "CD_TO_TIME1",         "CD_FROM_TIME2", "CD_TO_TIME2"};
  std::vector<std::vector<Value>> rows;
  for (int day = 2; day <= 6; ++day) {
    rows.push_back({1, 2, day, 1, Value(), Value(), "6:00:00 AM", "12:00:00 PM", Value(), Value()});
    rows.push_back({1, 4, day, 0, Value(), Value(), Value(), Value(), Value(), Value()});
  }
  rows.push_back(
      {1, 2, 0, 0, "1/6/2026", "1/6/2026 11:59:00 PM", Value(), Value(), Value(), Value()});
  rows.push_back(
      {1, 2, 0, 1, "1/6/2026", "1/9/2026", "1:00:00 PM", "2:00:00 PM", Value(), Value()});
  rows.push_back({1, 3, 0, 0, "1/5/2026", "1/5/2026", Value(), Value(), Value(), Value()});
  rows.push_back({1, 3, 4, 1, Value(), Value(), "1/1/2000 8:00:00 PM", "1/1/2000", "9:00:00 PM",
                  "10:00:00 PM"});
  rows.push_back({1, 2, 0, 0, Value(), Value(), Value(), Value(), Value(), Value()});
  Add("MSP_CALENDAR_DATA", days, rows);
  Add("MSP_RESOURCES", {"PROJ_ID", "RES_UID", "RES_ID", "RES_NAME", "RES_TYPE", "RES_CAL_UID"},
      {{1, 1, 1, "Ada", -1, 3}, {1, 2, 2, "Bob", -1, 2}, {1, 3, 3, "Sand", 0, 3}});
  Add("MSP_TASKS",
      {"PROJ_ID", "TASK_UID", "TASK_ID", "TASK_NAME", "TASK_DUR", "TASK_CAL_UID",
       "TASK_CONSTRAINT_TYPE", "TASK_CONSTRAINT_DATE", "TASK_IGNORES_RES_CAL"},
      {{1, 1, 1, "own", 3600, -1, 0, Value(), 0},
       {1, 2, 2, "Ada's", 3600, -1, 0, Value(), 0},
       {1, 3, 3, "both", 3600, -1, 0, Value(), 0},
       {1, 4, 4, "standard", 4800, 1, 4, "1/8/2026 8:00:00 AM", 0},
       {1, 5, 5, "not Ada's", 3600, -1, 0, Value(), -1},
       {1, 6, 6, "never", 4800, 4, 0, Value(), 0}});
  Add("MSP_ASSIGNMENTS", {"PROJ_ID", "TASK_UID", "RES_UID"},
      {{1, 2, 1}, {1, 3, 1}, {1, 3, 2}, {1, 5, 1}, {1, 1, 3}});
  const Plan plan = Read(path);
  const Schedule schedule = MakeSchedule(plan);
  std::string dates;
  for (std::size_t task = 0; task < plan.tasks.size(); ++task) {
    dates += plan.tasks[task].name + " " + FormatDate(schedule.StartOf(task)) + " to " +
             FormatDate(schedule.FinishOf(task)) + "\n";
  }
  EXPECT_EQ(dates,
            "own 1/5/2026 6:00:00 AM to 1/5/2026 12:00:00 PM\n"
            "Ada's 1/7/2026 8:00:00 PM to 1/8/2026 8:00:00 AM\n"
            "both 1/5/2026 6:00:00 AM to 1/5/2026 12:00:00 PM\n"
            "standard 1/8/2026 8:00:00 AM to 1/8/2026 5:00:00 PM\n"
            "not Ada's 1/5/2026 6:00:00 AM to 1/5/2026 12:00:00 PM\n"
            "never 1/5/2026 8:00:00 AM to 1/5/2026 5:00:00 PM\n");
  EXPECT_EQ(plan.settings.minutesPerDay, 480);
  EXPECT_EQ(plan.settings.minutesPerWeek, 2100);
  EXPECT_THAT(plan.warnings,
              testing::UnorderedElementsAre(
                  testing::HasSubstr("10000 minutes a day"), testing::HasSubstr("overlap; of the"),
                  testing::HasSubstr("'Ada' has hours"), testing::HasSubstr("without a date"),
                  testing::HasSubstr("'Never' has no working time"),
                  testing::HasSubstr("'round' is based on itself")));
}

TEST_F(PlanTables, PlansOfProjectFallOnItsOwnDates) {
  for (const char* name : {"mpp9relations.mpd", "task-links-project2000-mpd9.mpd"}) {
    const std::string stored = std::string(MERIVANE_PLANS) + "/" + name;
    if (!std::filesystem::exists(stored)) GTEST_SKIP() << stored << " is not there";
    Connection connection(workspace);
    connection.Open(ConnectionText(stored), OpenMode::kReadOnly);
    const Plan plan = Read(stored);
    const Schedule schedule = MakeSchedule(plan);
    for (std::size_t task = 0; task < plan.tasks.size(); ++task) {
      Recordset row;
      row.OpenStatic(
          "select * from MSP_TASKS where TASK_UID = " + std::to_string(plan.tasks[task].uid),
          &connection);
      EXPECT_EQ(FormatDate(schedule.StartOf(task)), Joined(row.Field("TASK_START_DATE")))
          << name << " " << plan.tasks[task].name;
      EXPECT_EQ(FormatDate(schedule.FinishOf(task)), Joined(row.Field("TASK_FINISH_DATE")))
          << name << " " << plan.tasks[task].name;
      EXPECT_EQ(schedule.tasks[task].totalSlack, ToInt32(row.Field("TASK_TOTAL_SLACK")))
          << plan.tasks[task].name;
      EXPECT_EQ(schedule.tasks[task].critical, Joined(row.Field("TASK_IS_CRITICAL")) != "0")
          << plan.tasks[task].name;
    }
  }
}

}  // namespace
}  // namespace merivane::test
