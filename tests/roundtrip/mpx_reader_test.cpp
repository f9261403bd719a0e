#include <string>
#include <vector>

#include "mpx_fixture.h"

namespace merivane::test {
namespace {

constexpr const char* kTasks =
    "select PID, Name, Duration, Outline, Predecessor, Text1, notes from ProjectAct";
constexpr const char* kAssignments = "select ActivityPID, ResourcePID, Qty from ProjectResReqts";

// Tasks with an occurrence number that the model doesn't know stay as they were read; without one
// they get the next.
class MpxReader : public MpxFixture {
 protected:
  MpxReader() {
    Add("MSP_RESOURCES",
        {"Proj_ID", "RES_UID", "RES_Name", "KV7_OBJ_HEX", "KV7_OBJ_QUANTITY", "KV7_OBJ_GLOSSARY",
         "KV7_OBJ_SEND_TO_PROJECT"},
        {{1, 4, "Welder", 31, 2, "kept", 1},
         {1, 6, "Crane", 30, 1, "kept", 1},
         {1, 7, "Van", Value(), 1, "kept", 0},
         {2, 8, "Crane", 40, 1, "kept", 1}});
  }

  void Add(const std::string& table, const std::vector<std::string>& names,
           const std::vector<Row>& rows) {
    Recordset set;
    set.OpenDynamic("select * from " + table, tables.get());
    for (const Row& row : rows) set.AddNew(names, row);
    set.Close();
    tables->Commit();
  }

  std::string Resources() {
    return Table(
        "select RES_UID, RES_Name, KV7_OBJ_HEX, KV7_OBJ_QUANTITY, KV7_OBJ_GLOSSARY, "
        "KV7_OBJ_BROUGHT_BACK from MSP_RESOURCES where RES_UID > 0");
  }
};

TEST_F(MpxReader, TheFieldNamesTellWhereTheFieldsOfATaskStand) {
  struct Case {
    const char* rule;
    std::string resourceFields, taskFields, task, row;
  };
  const std::string own = "70,1,1,Weld,2d,Yes,1,,\"2,3SS\",,9";
  const std::string texts = "70,1,1,Weld,2d,Yes,1,,5" + std::string(33, ',') + "9,,7";
  const std::vector<Case> cases = {
      {"own", "40,ID,Unique ID,", "60,ID,", own, "1|Weld|2.00|1|2,3SS|9|-\n"},
      {"initials", "40,ID,Initials,", "60,ID,",
       "70,1,Weld,\"2,3\",5,9" + std::string(12, ',') + "16h,,1", "1|Weld|2.00|1|2,3|9|-\n"},
      {"name", "40,ID,Name,", "60,ID,", "70,1,Weld,5,,,,,2w,,,,1,9", "1|Weld|10.00|1|5|1|-\n"},
      {"texts", "40,ID,Unique ID,", "60,ID,TEXT2", texts, "1|Weld|2.00|1|5|9|-\n"},
      {"the resources' field names win", "40,ID,Name,", "60,ID,Text2", "70,1,Weld,5,,,,,2w,,,,1,9",
       "1|Weld|10.00|1|5|2|-\n"},
  };
  for (const Case& test : cases) {
    Translate(Lines({"MPX", "11,2,", "30,plan,", test.resourceFields, test.taskFields, test.task}),
              kMergePlan);
    EXPECT_EQ(Table(kTasks), test.row) << test.rule;
  }
}

TEST_F(MpxReader, TasksTheirNotesAndAssignmentsAreRead) {
  const std::string mpx =
      Plan(Lines({"50,1,1,Welder,W,1,"}),
           Lines({"75,1,1,", "70,x,1,Not a number,1d,Yes,1,,,,9", "70,0,0,,1d,Yes,1,,,,9",
                  "75,1,1,", "70,3,3,Weld,16,Yes,two,,,,9", "71,\"First\x7Fsecond\"", "more of it",
                  "72,1,", "75,1,2,8.00h", "75,1,3,8.00h", "75,x,1,", "75,2,many,",
                  "70,4,4,,1d,Yes,1,,,,9", "75,7,1,", "70,5,5,Cut,3ed,Yes,3.5,,\"3,4FF\",,nine",
                  "70,6,6,Grind,,Yes,2,,,,9", "71,x", "75,1,0.5,"}),
           "11,1,0,");
  Translate(mpx, kMergePlan);
  EXPECT_EQ(Table(kTasks),
            "3|Weld|2.00|1||9|\"First\r\nsecond\n"
            "5|Cut|1.00|4|3,4FF|1|-\n"
            "6|Grind|1.00|2||9|\n");
  EXPECT_EQ(Table(kAssignments), "3|1|2\n3|7|1\n6|1|0.5\n");
}

TEST_F(MpxReader, NothingIsReadBehindTheLastKnownRecord) {
  Translate(Plan("", Task(1, "Weld", 1, "9") + "80,1\r\n" + Task(2, "Cut", 1, "9")), kMergePlan);
  EXPECT_EQ(Table(kTasks), "1|Weld|1.00|1||9|-\n");
}

TEST_F(MpxReader, ResourcesAreUpdatedAddedAndDropped) {
  const std::string mpx =
      Plan(Lines({"50,1,1,Welder,W,,10/h,", "51,\"Good\x7Fhands\"", "and eyes, two", "0,like this",
                  "55,Standard,", "56,1", "57,1", "50,2,2,,x,1,", "50,3,3,Robot,R,1.5,",
                  "50,4,4,Van,V,3,", "99,x"}),
           Task(1, "Weld", 1, "9"));
  // The search stops at the record above the known ones, so that nothing is dropped and no task
  // read.
  EXPECT_FALSE(Translate(mpx, kMergePlan));
  const std::string seen = "4|Welder|31|-|\"Good\r\nhands\"\r\nand eyes, two\r\n0,like this\r|0\n";
  EXPECT_EQ(Resources(), seen +
                             "6|Crane|30|1|kept|1\n7|Van|-|3|kept|0\n8|Crane|40|1|kept|-\n"
                             "7|Robot|31|1.5|-|0\n");
  EXPECT_EQ(Table("select PID, Name, Qty from ProjectRes"), "1|Welder|-\n3|Robot|1.5\n4|Van|3\n");
}

TEST_F(MpxReader, AResourceThatThePlanLostIsDeleted) {
  EXPECT_TRUE(Translate(Plan(Lines({"50,1,1,Welder,W,3,"}), Task(1, "Weld", 1, "9")), kMergePlan));
  EXPECT_EQ(Resources(), "4|Welder|31|3|kept|0\n7|Van|-|1|kept|0\n8|Crane|40|1|kept|-\n");
}

TEST_F(MpxReader, TheHeaderAndTheStartDateAreKept) {
  const std::string head = "11,2,0,30,plan,,,Standard,Fri 17/10/14,";
  Translate(Plan("", Task(1, "Weld", 1, "9")), kMergePlan);
  EXPECT_EQ(Table("select Header, Msp_ProjID from P_Misc"),
            head + std::string(kMpxResourceFields) + "|1\n");
  const char* project = "select PROJ_PROP_AUTHOR, KV7_PROJ_START_DATE from MSP_PROJECTS";
  EXPECT_EQ(Table(project), "Merivane|17/10/14\n");
  std::string noDate = Plan("", Task(1, "Weld", 1, "9"));
  noDate.replace(noDate.find("17/10/14"), 8, "17/19/14");
  Translate(noDate, kMergePlan);
  EXPECT_EQ(Table(project), "Merivane|17/10/14\n") << "what is no date leaves the stored one";
}

TEST_F(MpxReader, OnlyARebuiltModelForgetsThePlanInTheDatabase) {
  for (const std::int16_t mode : {kMergePlan, kRebuildModel}) {
    Add("MSP_PROJECTS", {"Proj_ID"}, {{2}});
    Add("MSP_TASKS", {"Proj_ID", "TASK_UID", "TASK_NAME", "KV7_PROCOCC_HEX"},
        {{1, 50, "old", 50}, {2, 51, "other", 51}});
    Add("Activity_Pool", {"Msp_ProjID", "Num", "Name"}, {{2, 60, "other"}});
    Add("ProjectAct", {"Msp_ProjID", "PID"}, {{2, 9}});
    Translate(Plan("", Task(1, "Weld", 1, "9")), mode);
    const std::string kept = mode == kMergePlan ? "2\n1\n" : "1\n";
    EXPECT_EQ(Table("select Proj_ID from MSP_PROJECTS"), kept);
    EXPECT_EQ(Table("select TASK_NAME from MSP_TASKS where TASK_UID > 0"),
              mode == kMergePlan ? "old\nother\n" : "other\nother\nWeld\n");
    EXPECT_EQ(Table("select Name from Activity_Pool"), mode == kMergePlan ? "other\n" : "Weld\n");
    EXPECT_EQ(Table("select PID, Text1 from ProjectAct"), mode == kMergePlan ? "1|9\n" : "1|1\n");
  }
}

}  // namespace
}  // namespace merivane::test
