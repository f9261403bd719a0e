#include "pictures/process_model.h"

#include <gmock/gmock.h>

#include "error_of.h"
#include "model_fixture.h"
#include "pictures/chart.h"
#include "pictures/diagram.h"

namespace merivane::test {

using namespace pictures;

namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

class ProcessModelTest : public ModelFixture {
 protected:
  void Change(const std::string& statements) {
    program->workspace.CommitAll();
    Sql(statements);
  }
  ProcessModel Read() { return ReadProcessModel(Model(), 1); }
  std::string WhyLeft(int unit) {
    for (const auto& scenario : Read().scenarios) {
      for (const auto& candidate : scenario.units) {
        if (candidate.number == unit) return candidate.sent ? "sent" : candidate.whyLeft;
      }
    }
    return "missing";
  }
  const Fields left = {{"Send_to_Project", 0}};
};

TEST_F(ProcessModelTest, EachElementComesWithWhatAPageTellsOfIt) {
  Change(
      "update MSP_PROJECTS set PROJ_NAME = 'Quay', PROJ_PROP_AUTHOR = 'Ada', "
      "PROJ_PROP_SUBJECT = 'One'");
  Add("Misc", {{"Constraint_Pool", "  Nobody\r\n     at night\r\n"}});
  Add("Object_Pool", {{"Num", 7}, {"Name", "Crane"}, {"Dunmar_Type", "Resource"}});
  Add("Object_Pool", {{"Num", 8},
                      {"Name", "Rope"},
                      {"Dunmar_Type", "Resource"},
                      {"Celvar_Type", "Entity"},
                      {"Quantity", 2.5},
                      {"Alias", "R"}});
  Scenario(1, "Yard");
  Scenario(2, "Of 3", 3);
  Add("Activity_Pool", {{"Num", 5}, {"Name", "Lift"}, {"Glossary", "  Up.\r\n  And down.\r\n"}});
  Uob(3, 1, {{"Process_Num", 5}, {"Duration", " 2.50 "}, {"Ref", "A3"}});
  for (const int scenario : {1, 2}) {
    Add("Object_in_Activity_in_Scenario", {{"Scenario_Num", scenario},
                                           {"Activity_Num", 3},
                                           {"Object_Name", scenario == 1 ? "Crane" : "Other"}});
  }
  Add("Links_in_Scenario", {{"Scenario_Num", 9}, {"Origin_Num", 3}, {"Destination_Num", 3}});
  const ProcessModel model = Read();
  EXPECT_EQ(model.name + "," + model.author + "," + model.description, "Quay,Ada,One");
  EXPECT_EQ(model.constraintPool, "Nobody\nat night");
  ASSERT_EQ(model.objects.size(), 2U);
  EXPECT_EQ(model.objects[0].kind, "Resource");
  EXPECT_EQ(model.objects[1].kind + model.objects[1].quantity, "Entity2.5");
  ASSERT_EQ(model.scenarios.size(), 2U);
  ASSERT_EQ(model.scenarios[0].units.size(), 1U);
  const auto& unit = model.scenarios[0].units[0];
  EXPECT_EQ(unit.glossary, "Up.\nAnd down.");
  EXPECT_EQ(unit.duration, "2.50");
  EXPECT_THAT(unit.objects, ElementsAre("Crane"));
  EXPECT_THAT(unit.decompositions, ElementsAre(2));
  EXPECT_TRUE(model.scenarios[0].links.empty());
}

TEST_F(ProcessModelTest, ANullInAnyColumnIsDrawn) {
  Scenario(1, "Yard");
  Uobs({1, 2});
  Junction(100, "Fan Out", "Sync. AND");
  Links({{1, 100}, {100, 2}});
  Add("Object_Pool", {{"Num", 7}, {"Name", "Crane"}});
  Add("Fact_Pool", {{"Num", 8}, {"Name", "Fact"}});
  Add("Object_in_Activity_in_Scenario", {{"Scenario_Num", 1}, {"Activity_Num", 1}});
  for (const std::string name : {"MSP_PROJECTS", "Scenario", "Activity_in_Scenario",
                                 "Activity_Pool", "Junctions_in_Scenario", "Links_in_Scenario",
                                 "Object_Pool", "Fact_Pool", "Object_in_Activity_in_Scenario"}) {
    Recordset rows;
    rows.OpenStatic("select * from " + name, &Model());
    std::vector<std::string> columns;
    for (int at = 0; at < rows.FieldCount(); ++at) columns.push_back(rows.FieldName(at));
    rows.Close();
    for (const std::string& column : columns) {
      if (column == "Msp_ProjID" || column == "PROJ_ID") continue;
      SCOPED_TRACE(name + "." + column);
      Change("pragma synchronous = off; create table kept as select * from " + name + "; update " +
             name + " set " + column + " = null");
      const ProcessModel model = Read();
      EXPECT_EQ(DrawDiagrams(model.scenarios, {.objects = true}).size(), 1U);
      Change("pragma synchronous = off; delete from " + name + "; insert into " + name +
             " select * from kept; drop table kept");
    }
  }
}

TEST_F(ProcessModelTest, WhyAUnitStaysOutIsToldByWhatDecided) {
  Scenario(1, "Yard");
  Scenario(2, "Of U2", 2);
  Scenario(3, "By night", 4);
  Uobs({1, 4});
  Uob(2, 1, left);
  Uob(3, 1, left);
  Uob(5, 1, left);
  Junction(100, "Fan Out", "XOR");
  Junction(101, "Fan Out", "Async. AND");
  Junction(102, "Fan In", "Async. OR");
  Links({{1, 100}, {100, 2}, {2, 101}, {101, 3}, {100, 4}, {4, 102}, {102, 5}});
  Uob(20, 2, left);
  Uob(30, 3, left);
  EXPECT_EQ(WhyLeft(1), "sent");
  EXPECT_EQ(WhyLeft(2), "junction J100 (XOR) takes another path");
  EXPECT_EQ(WhyLeft(3), "junction J100 (XOR) takes another path");  // over what was left out
  EXPECT_EQ(WhyLeft(5), "the paths that were taken don't come to it");
  EXPECT_THAT(WhyLeft(20), HasSubstr("which its scenario decomposes, stays out"));
  EXPECT_EQ(WhyLeft(30), "another scenario was chosen in the place of 'By night'");
}

TEST_F(ProcessModelTest, AChartTellsWhereItsDatesComeFrom) {
  const auto draw = [this] {
    return DrawChart(ReadDatedPlan(Model(), 1, {.year = 2026, .month = 11, .day = 30}));
  };
  EXPECT_EQ(ErrorOf([&] { draw(); }), kInvalidProcedureCall);
  Change(
      "insert into MSP_TASKS (PROJ_ID, TASK_UID, TASK_ID, TASK_NAME, TASK_OUTLINE_LEVEL, TASK_DUR,"
      " TASK_DUR_FMT) values (1, 1, 1, 'T1', 1, 4800, 7), (1, 2, 2, 'T2', 1, 9600, 7);"
      "insert into MSP_LINKS (PROJ_ID, LINK_UID, LINK_PRED_UID, LINK_SUCC_UID, LINK_TYPE)"
      " values (1, 1, 1, 2, 1);"
      "insert into MSP_RESOURCES (PROJ_ID, RES_UID, RES_ID, RES_NAME) values (1, 3, 1, 'Ada');"
      "insert into MSP_ASSIGNMENTS (PROJ_ID, ASSN_UID, TASK_UID, RES_UID) values (1, 1, 2, 3)");
  const Picture today = draw();
  EXPECT_THAT(today.description, HasSubstr("2 tasks, 3 days of work from start to finish"));
  EXPECT_THAT(today.description, HasSubstr("from today, Nov 30, 2026, on"));
  std::string titles;
  for (const Figure& figure : today.figures) titles += figure.title + "\n";
  EXPECT_THAT(titles, HasSubstr("T2\nDec 1, 2026 8:00 to Dec 2, 2026 17:00\n2 days, critical\n"
                                "Resources: Ada"));
  Change("update MSP_PROJECTS set PROJ_INFO_START_DATE = '2026-02-02 08:00:00'");
  const std::string own = draw().description;
  EXPECT_THAT(own, HasSubstr("Feb 2, 2026 to Feb 4, 2026"));
  EXPECT_EQ(own.find("today"), std::string::npos);
  const std::string dates =
      " set TASK_START_DATE = '2/3/2026 8:00:00 AM', TASK_FINISH_DATE = '2/9/2026 5:00:00 PM'";
  Change("update MSP_TASKS" + dates + " where TASK_UID = 1");
  EXPECT_EQ(draw().description, own);  // of the other task the file has none
  Change("update MSP_TASKS" + dates);
  EXPECT_THAT(draw().description,
              HasSubstr("Feb 3, 2026 to Feb 9, 2026, 2 tasks, 5 days of work from "
                        "start to finish; dates as the file has them"));
}

}  // namespace
}  // namespace merivane::test
