#include "schedule/schedule.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <sstream>

#include "error_of.h"
#include "runtime/conversions.h"
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

TEST(WorkingTime, DatesSkipNightsAndWeekends) {
  const WorkingTime friday({2026, 1, 9, 0});
  EXPECT_EQ(FormatDate(friday.StartAt(0)), "1/9/2026 8:00:00 AM");
  EXPECT_EQ(FormatDate(friday.FinishAt(2400)), "1/9/2026 12:00:00 PM");
  EXPECT_EQ(FormatDate(friday.StartAt(2400)), "1/9/2026 1:00:00 PM");
  EXPECT_EQ(FormatDate(friday.FinishAt(4800)), "1/9/2026 5:00:00 PM");
  EXPECT_EQ(FormatDate(friday.StartAt(4800)), "1/12/2026 8:00:00 AM");
  EXPECT_EQ(FormatDate(friday.FinishAt(4800 * 200)), "10/15/2026 5:00:00 PM");
  const WorkingTime sunday({1899, 12, 31, 0});
  EXPECT_EQ(FormatDate(sunday.StartAt(48)), "1/1/1900 8:04:48 AM");
  EXPECT_THROW(friday.StartAt(4800LL * 366 * 8000), RunTimeError);
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
      EXPECT_EQ(schedule.tasks[task].totalSlack, ToInt32(row.Field("TASK_TOTAL_SLACK")))
          << plan.tasks[task].name;
      EXPECT_EQ(schedule.tasks[task].critical, Joined(row.Field("TASK_IS_CRITICAL")) != "0")
          << plan.tasks[task].name;
    }
  }
}

}  // namespace
}  // namespace merivane::test
