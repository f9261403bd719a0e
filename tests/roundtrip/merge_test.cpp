#include "mpx_fixture.h"

namespace merivane::test {

namespace {

constexpr const char* kOccurrences =
    "TASK_UID, KV7_SCENARIO_HEX, KV7_PROCOCC_HEX, TASK_NAME, KV7_PROCOCC_DURATION, "
    "KV7_PROCOCC_BROUGHT_BACK from MSP_TASKS where TASK_UID > 0";
constexpr const char* kActivities = "Num, Name, Creator, Glossary from Activity_Pool";
constexpr const char* kCounters = "KV7_PROJ_MAX_USE_ID, KV7_PROJ_MAX_ACT_ID from MSP_PROJECTS";
constexpr const char* kLinks = "Scenario_Num, Origin_Num, Destination_Num from Links_in_Scenario";
constexpr const char* kMarks = "PID, Text1, Processed, SelectedForProcessing from ProjectAct";

class Merge : public MpxFixture {
 protected:
  bool Merged(const std::string& tasks, std::int16_t mode) {
    return Translate(Plan("", Tasks(tasks)), mode);
  }

  // Scenario 5 with the occurrences 11, 12 and 13 of the activities 1, 2 and 3, and scenario 6
  // below occurrence 12 with occurrence 14. A scenario and a task of another project stand beside
  // them.
  void AddModel() {
    Add("Scenario Msp_ProjID Num Parent_Num", {{2, 9, 0}, {1, 5, 0}, {1, 6, 12}});
    Add("Activity_Pool Msp_ProjID Num Name Glossary",
        {{1, 1, "Cut", "g"}, {1, 2, "Weld", "g"}, {1, 3, "Paint", "g"}, {1, 4, "Grind", "g"}});
    Add("MSP_TASKS Proj_ID TASK_UID KV7_SCENARIO_HEX KV7_PROC_HEX KV7_PROCOCC_HEX TASK_NAME "
        "KV7_PROCOCC_DURATION KV7_PROCOCC_BROUGHT_BACK",
        {{1, 1, 5, 1, 11, "Cut", "10", 1},
         {1, 2, 5, 2, 12, "Weld", "Normal(3,1)", 1},
         {1, 3, 5, 3, 13, "Paint", Value(), 1},
         {1, 4, 6, 4, 14, "Grind", "", 1},
         {2, 1, 9, 1, 11, "Other", "1", 1}});
  }

  // Links of the first project.
  void AddLinks(const std::vector<Row>& rows) {
    Add("Links_in_Scenario Scenario_Num Num Origin_Num Origin_Type Destination_Num", rows);
    Sql("update Links_in_Scenario set Msp_ProjID = 1");
  }
};

TEST_F(Merge, ARebuiltModelTakesScenariosFromTheOutlineAndNumbersFromTheCounters) {
  EXPECT_TRUE(
      Translate(Plan("", Tasks("7 Plan 0 99; 1 Cut 1 99 - 2.5d; 2 Saw 2 98") + "71,\"Slowly\"\r\n" +
                             Tasks("3 File 2; 4 Polish 4; 5 Weld 1; 6 Tack 2; 2 Again 4")),
                kRebuildModel));
  EXPECT_EQ(Table("Num, Name, Parent_Num from Scenario"),
            "1|Scenario#1|0\n2|Scenario#2|1\n3|Scenario#3|3\n4|Scenario#4|5\n");
  EXPECT_EQ(Table(kOccurrences),
            "1|1|1|Cut|2.50|1\n2|2|2|Saw|1.00|1\n3|2|3|File|1.00|1\n4|3|4|Polish|1.00|1\n"
            "5|1|5|Weld|1.00|1\n6|4|6|Tack|1.00|1\n7|2|7|Again|1.00|1\n")
      << "an id that stands twice follows its first row";
  EXPECT_EQ(Table(std::string(kActivities) + " where Num < 3"),
            "1|Cut|Merivane|\n2|Saw|Merivane|\"Slowly\n");
  EXPECT_EQ(Table(kMarks).substr(0, 24), "7|0|1|0\n1|1|1|0\n2|2|1|0\n");
  EXPECT_EQ(Table(kCounters), "7|7\n");
}

TEST_F(Merge, KnownTasksTakeNameDurationAndNotesFromThePlan) {
  AddModel();
  EXPECT_TRUE(Translate(Plan("", Tasks("1 Saw 1 11 - 12d") + "71,\"Slow.\"\r\n" +
                                     Tasks("2 Weld 1 12 - 4d; 5 New 2 0; 4 No 1 77; 3 Paint 1 13")),
                        kMergePlan));
  EXPECT_EQ(Table(kOccurrences),
            "1|5|11|Saw|12.00|1\n2|5|12|Weld|Normal(3,1)|1\n3|5|13|Paint|1.00|1\n"
            "4|6|14|Grind||0\n1|9|11|Other|1|1\n5|6|15|New|1.00|1\n");
  EXPECT_EQ(Table(kActivities),
            "1|Saw|-|\"Slow.\n2|Weld|-|\n3|Paint|-|\n4|Grind|-|g\n5|New|Merivane|\n");
  EXPECT_EQ(Table(kCounters), "15|5\n");
}

TEST_F(Merge, AMovedTaskStopsTheTranslationAndWhatWasMergedStays) {
  AddModel();
  EXPECT_FALSE(Merged("1 Saw 1 11; 9 New 1 0; 4 Grind 1 14; 8 Late 1 0", kMergePlan));
  EXPECT_EQ(desktop.MessageTexts(), std::vector<std::string>{ErrorText(kTypeMismatch)});
  EXPECT_EQ(Table("TASK_NAME, KV7_PROCOCC_BROUGHT_BACK from MSP_TASKS where Proj_ID = 1"),
            "Saw|1\nWeld|0\nPaint|0\nGrind|0\nNew|1\n");
  EXPECT_EQ(Table(kMarks), "1|11|0|0\n9|15|0|0\n4|14|0|0\n8|0|0|0\n");
}

TEST_F(Merge, AnErrorLeavesTheNumbersAndMarksOfWhatWasMerged) {
  AddModel();
  Add("MSP_TASKS Proj_ID TASK_UID KV7_SCENARIO_HEX KV7_PROC_HEX KV7_PROCOCC_HEX",
      {{1, 5, 6, 4, 15}});
  AddLinks({{6, 32766, 14, "Process-Occurrence", 77}});
  EXPECT_FALSE(
      Merged("1 Cut 1 11; 2 Weld 1 12; 4 Grind 2 14; 5 Tack 2 15 4; 6 Bend 2 0", kMergePlan));
  EXPECT_EQ(desktop.MessageTexts(), std::vector<std::string>{ErrorText(kOverflow)});
  EXPECT_EQ(Table(kCounters), "32767|5\n");
  EXPECT_EQ(Table(kMarks), "1|11|1|0\n2|12|1|0\n4|14|1|1\n5|15|0|1\n6|32767|0|1\n");
}

TEST_F(Merge, PredecessorsAreFoldedInScenarioByScenario) {
  EXPECT_TRUE(
      Merged("1 A 1; 2 B 2; 3 C 3; 4 D 3 - 3; 5 E 2 - 2; 6 F 1 - 1; 7 G 1 - 3", kRebuildModel));
  EXPECT_EQ(Table(kLinks), "1|1|6\n2|2|5\n3|3|4\n") << "none crosses scenarios";
}

TEST_F(Merge, AParentWithoutAScenarioEndsThePasses) {
  // The row in front of C and D isn't their parent.
  EXPECT_TRUE(Merged("1 A 1; 2 B 3; 3 C 2; 4 D 2 - 3; 5 E 1 - 1", kRebuildModel));
  EXPECT_EQ(Table(kLinks), "1|1|5\n");
  EXPECT_EQ(Table(kMarks), "1|1|1|0\n2|2|1|0\n3|3|0|0\n4|4|0|0\n5|5|1|0\n");
}

TEST_F(Merge, ATaskThatLostItsPredecessorsLosesItsFirstIncomingLink) {
  AddModel();
  AddLinks({{5, 30, 13, "Process-Occurrence", 11},
            {5, 31, 12, "Process-Occurrence", 11},
            {5, 32, 20, "Junction", 12},  // which nothing leads into
            {5, 33, 21, "Junction", 13},
            {5, 34, 22, "Junction", 21},
            {6, 35, 12, "Process-Occurrence", 11}});
  EXPECT_TRUE(Merged("1 Cut 1 11; 2 Weld 1 12; 3 Paint 1 13", kMergePlan));
  EXPECT_EQ(Table("Num from Links_in_Scenario"), "31\n32\n34\n35\n");
}

TEST_F(Merge, JunctionsWithOneWayInAndOutCollapseAndDanglingOnesGoWithARebuiltModel) {
  Add("Scenario Msp_ProjID Num Parent_Num", {{1, 5, 0}});
  // A chain over 20 and 21 to 22, which leads nowhere, 23, which forks, and 24 of another project.
  AddLinks({{5, 30, 1, "", 20},
            {5, 31, 20, "", 21},
            {5, 32, 21, "", 22},
            {5, 33, 1, "", 23},
            {5, 34, 23, "", 2},
            {5, 35, 23, "", 3}});
  Add("Junctions_in_Scenario Msp_ProjID Num", {{1, 20}, {1, 21}, {1, 22}, {1, 23}, {2, 24}});
  for (const std::int16_t mode : {kMergePlan, kRebuildModel}) {
    EXPECT_TRUE(Merged("1 A 1 9", mode));
    EXPECT_EQ(Table("Num from Junctions_in_Scenario"),
              mode == kMergePlan ? "22\n23\n24\n" : "23\n24\n");
    EXPECT_EQ(Table("Num, Destination_Num from Links_in_Scenario"), "30|22\n33|23\n34|2\n35|3\n");
  }
}

TEST_F(Merge, AssignmentsBecomeObjectsAndOnlyARebuiltModelDropsThoseOfTasksWithoutParts) {
  const auto objectsBehind = [&](std::int16_t mode, int occurrence) {
    Sql("delete from MSP_RESOURCES; delete from Object_in_Activity_in_Scenario");
    AddModel();
    Add("MSP_RESOURCES Proj_ID RES_UID RES_Name KV7_OBJ_HEX",
        {{1, 1, "Welder", 41}, {1, 2, "Crane", 42}});
    Add("Object_in_Activity_in_Scenario Msp_ProjID Scenario_Num Activity_Num Object_Occ_Num Qty",
        {{1, 5, occurrence, 41, 3}, {1, 5, 12, 42, 3}, {1, 5, 13, 42, 3}});
    EXPECT_TRUE(Translate(Plan(Lines("50,1,1,Welder,W,1,;50,2,2,Crane,C,1,;50,3,3,Robot,R,1,"),
                               Tasks("1 Cut 1 11") + Lines("75,1,0,;75,2,0,;75,3,2,;75,9,1,") +
                                   Tasks("9 Unknown 1 77") + Lines("75,1,1,")),
                          mode));
    return Table(
        "Activity_Num, Object_Occ_Num, Qty, Brought_from_Project, Scenario_Num, "
        "Object_Name from Object_in_Activity_in_Scenario");
  };
  EXPECT_EQ(objectsBehind(kMergePlan, 11),
            "11|41|1|1|5|-\n12|42|3|0|5|-\n13|42|3|0|5|-\n11|42|0|1|5|Crane\n11|43|2|1|5|Robot\n");
  EXPECT_EQ(objectsBehind(kRebuildModel, 1),
            "1|41|1|1|5|-\n12|42|3|0|5|-\n1|42|0|1|5|Crane\n1|43|2|1|5|Robot\n2|41|1|1|5|Welder\n");
}

}  // namespace
}  // namespace merivane::test
