#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "runtime/conversions.h"
#include "schedule/plan.h"
#include "schedule/schedule.h"
#include "schedule/staffing.h"
#include "store/recordset.h"
#include "temporary_folder.h"

namespace merivane::test {

using namespace schedule;

namespace {

std::string Days(Tenths time) {
  return TextOfReal(static_cast<double>(time) / static_cast<double>(kTenthsOfDay));
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
