// Plans as MPX text on their way in, whole and damaged.
#include "mpx_fixture.h"

namespace merivane::test {

namespace {

constexpr const char* kTasks =
    "PID, Name, Duration, Outline, Predecessor, Text1, notes from ProjectAct";

// A task with an occurrence number that the model doesn't know stays as it was read; one without
// gets the next number.
class MpxReader : public MpxFixture {
 protected:
  MpxReader() {
    Add("MSP_RESOURCES Proj_ID RES_UID RES_Name KV7_OBJ_HEX KV7_OBJ_QUANTITY KV7_OBJ_GLOSSARY "
        "KV7_OBJ_SEND_TO_PROJECT",
        {{1, 4, "Welder", 31, 2, "kept", 1},
         {1, 6, "Crane", 30, 1, "kept", 1},
         {1, 7, "Van", Value(), 1, "kept", 0},
         {2, 8, "Crane", 40, 1, "kept", 1}});
  }
};

TEST_F(MpxReader, TheFieldNamesTellWhereTheFieldsOfATaskStand) {
  const std::string named = "70,1,Weld,5,,,,,2w,,,,1,9";
  const std::string initials = "70,1,Weld,\"2,3\",5,9" + std::string(12, ',') + "16h,,1";
  const std::string texts = "70,1,1,Weld,2d,Yes,1,,5" + std::string(33, ',') + "9,,7";
  const std::vector<std::vector<std::string>> cases = {
      {"40,ID,Unique ID,;60,ID,;70,1,1,Weld,2d,Yes,1,,\"2,3SS\",,9", "1|Weld|2.00|1|2,3SS|9|-\n"},
      {"40,ID,Initials,;60,ID,;" + initials, "1|Weld|2.00|1|2,3|9|-\n"},
      {"40,ID,Name,;60,ID,;" + named, "1|Weld|10.00|1|5|1|-\n"},
      {"40,ID,Unique ID,;60,ID,TEXT2;" + texts, "1|Weld|2.00|1|5|9|-\n"},
      {"40,ID,Name,;60,ID,Text2;" + named, "1|Weld|10.00|1|5|2|-\n"},
  };
  for (const auto& test : cases) {
    Translate(Lines("MPX;11,2,;30,plan,;" + test[0]), kMergePlan);
    EXPECT_EQ(Table(kTasks), test[1]) << test[0];
  }
}

TEST_F(MpxReader, TasksTheirNotesAndAssignmentsAreRead) {
  Translate(
      Plan("",
           Lines("75,1,1,;70,x,1,Not a number,1d,Yes,1,,,,9;70,0,0,,1d,Yes,1,,,,9;75,1,1,;"
                 "70,3,3,Weld,16,Yes,two,,,,9;71,\"First\x7Fsecond\";more of it;72,1,;"
                 "75,1,2,8h;75,1,3,8h;75,x,1,;75,2,many,;70,4,4,,1d,Yes,1,,,,9;75,7,1,;75,1.0,4,;"
                 "70,5,5,Cut,3ed,Yes,3.5,,\"3,4FF\",,nine;70,6,6,Grind,,Yes,2,,,,9;71,x;"
                 "75,1,0.5,;80,1;70,7,7,Polish,1d,Yes,1,,,,9"),
           "11,1,0,"),
      kMergePlan);
  EXPECT_EQ(Table(kTasks),
            "3|Weld|2.00|1||9|\"First\r\nsecond\n5|Cut|1.00|4|3,4FF|1|-\n6|Grind|1.00|2||9|\n");
  EXPECT_EQ(Table("ActivityPID, ResourcePID, Qty from ProjectResReqts"), "3|1|2\n3|7|1\n6|1|0.5\n");
}

TEST_F(MpxReader, ResourcesAreUpdatedAddedAndDropped) {
  EXPECT_TRUE(Translate(
      Plan(Lines("50,1,1,Welder,W,,10/h,;51,\"Good\x7Fhands\";and eyes, two;0,like this;"
                 "55,Standard,;56,1;57,1;50,2,2,,x,1,;50,3,3,Robot,R,1.5,;50,4,4,Van,V,3,"),
           Tasks("1 Weld 1 9")),
      kMergePlan));
  EXPECT_EQ(Table("RES_UID, RES_Name, KV7_OBJ_HEX, KV7_OBJ_QUANTITY, KV7_OBJ_GLOSSARY, "
                  "KV7_OBJ_BROUGHT_BACK from MSP_RESOURCES where RES_UID > 0"),
            "4|Welder|31|-|\"Good\r\nhands\"\r\nand eyes, two\r\n0,like this\r|0\n"
            "7|Van|-|3|kept|0\n8|Crane|40|1|kept|-\n7|Robot|31|1.5|-|0\n");
  EXPECT_EQ(Table("PID, Name, Qty from ProjectRes"), "1|Welder|-\n3|Robot|1.5\n4|Van|3\n");
}

TEST_F(MpxReader, TheHeaderAndTheStartDateAreKept) {
  std::string plan = Plan("", Tasks("1 Weld 1 9"));
  const char* project = "PROJ_PROP_AUTHOR, KV7_PROJ_START_DATE from MSP_PROJECTS";
  for (const std::string date : {"17/10/14", "17/19/14"}) {
    plan.replace(plan.find("17/1"), 8, date);
    EXPECT_TRUE(Translate(plan, kMergePlan));
    EXPECT_EQ(
        Table("Header, Msp_ProjID from P_Misc"),
        "11,2,0,30,plan,,,Standard,Fri " + date + "," + std::string(kMpxResourceFields) + "|1\n");
    EXPECT_EQ(Table(project), "Merivane|17/10/14\n") << "what is no date leaves the stored one";
  }
}

TEST_F(MpxReader, OnlyARebuiltModelForgetsThePlanInTheDatabase) {
  Add("MSP_PROJECTS Proj_ID", {{2}});
  Add("MSP_TASKS Proj_ID TASK_UID TASK_NAME KV7_PROCOCC_HEX",
      {{1, 50, "old", 50}, {2, 51, "other", 51}});
  Add("Activity_Pool Msp_ProjID Num Name", {{2, 60, "other"}});
  const auto contents = [&](std::int16_t mode) {
    Add("ProjectAct Msp_ProjID PID", {{2, 9}});
    EXPECT_TRUE(Translate(Plan("", Tasks("1 Weld 1 9")), mode));
    return Table("Proj_ID from MSP_PROJECTS") +
           Table("TASK_NAME from MSP_TASKS where TASK_UID > 0") + Table("Name from Activity_Pool") +
           Table("PID, Text1 from ProjectAct");
  };
  EXPECT_EQ(contents(kMergePlan), "2\n1\nold\nother\nother\n1|9\n");
  EXPECT_EQ(contents(kRebuildModel), "1\nother\nWeld\nWeld\n1|1\n");
}

class DamagedMpx : public MpxFixture {
 protected:
  // "done", or the last box, behind "ended: " when the program ended on it.
  std::string Outcome(const std::string& mpx, std::int16_t mode = kRebuildModel) {
    desktop.boxes.clear();
    bool done = false;
    const bool ended = EndsProgram([&] { done = Translate(mpx, mode); });
    return done ? "done" : (ended ? "ended: " : "") + desktop.MessageTexts().at(0);
  }
};

TEST_F(DamagedMpx, EndsInTheBoxOfItsFault) {
  const std::string weld = Tasks("1 Weld 1"), whole = Plan("", weld);
  const auto without = [&](const std::string& line) {
    const std::size_t at = whole.find("\r\n" + line);
    return whole.substr(0, at) + whole.substr(whole.find("\r\n", at + 2));
  };
  const std::string past = ErrorText(kInputPastEndOfFile), mismatch = ErrorText(kTypeMismatch);
  const std::string quotes = "70,2,2,\"a\"\"b\",1d,";
  const std::vector<std::pair<std::string, std::string>> cases = {
      {whole, "done"},
      {"", past},
      {"Dunmar Neutral Text\r\n11,2,\r\n", "ended: "},
      {std::string("\0\x01\xFFMPX\0,,\r\n", 11) + std::string(5000, '\0'), past},
      {without("11,"), past},
      {without("30,"), past},
      {without("40,"), past},
      {without("60,"), past},
      {Plan("", weld, "11,days,"), mismatch},
      {Plan("", "70" + std::string(1000000, ',') + "\r\n" + weld), "done"},
      {Plan("", "70000,\r\n"), ErrorText(kOverflow)},
      {Plan("", ""), ErrorText(kNoCurrentRecord)},
      {Plan("", Tasks("1 Weld 2")), ErrorText(kNoCurrentRecord)},
      {Plan("", "70,2,2,\"Weld,1d,Yes,1,,,\r\n" + weld), "done"},
      {Plan("", weld + quotes),
       "ended: Merivane requires that Task and Resource names do not have double quotes.  Please "
       "change '" +
           quotes + "'."},
      {Plan("", "70,2,2,\"Cut, weld\",1d,"),
       "ended: Merivane requires that Task names do not have commas.  Please change '\"Cut, "
       "weld'."},
      {Plan("50,x,1,Welder,W,1,\r\n", weld), mismatch},
      {Plan("50,1,1,Welder,W,100%,\r\n", weld), mismatch},
  };
  for (const auto& [mpx, outcome] : cases) EXPECT_EQ(Outcome(mpx), outcome) << mpx.substr(0, 300);
  EXPECT_FALSE(Translate(Plan("50,1,1,Welder's mate,W,1,\r\n", weld), kMergePlan));
}

TEST_F(DamagedMpx, APlanWithoutATopScenarioEndsTheProgram) {
  EXPECT_EQ(Outcome(Plan("", Tasks("0 Plan 0"))), "ended: Error in Translation");
}

TEST_F(DamagedMpx, CutAnywhereItEndsAndCanBeReadAgain) {
  const std::string whole =
      Plan(Lines("50,1,1,Welder,W,1,;51,\"Good hands\";55,Standard"),
           Tasks("1 Weld 1") + Lines("71,\"Note\";75,1,1,8.00h") + Tasks("2 Cut 2 - 1"));
  for (std::size_t length = 0; length < whole.size(); length += 7) {
    const std::string outcome =
        Outcome(whole.substr(0, length), length % 2 == 0 ? kMergePlan : kRebuildModel);
    EXPECT_FALSE(outcome.empty()) << length;
    EXPECT_TRUE(outcome != "done" || length > whole.find("\r\n70,")) << length;
  }
  EXPECT_EQ(Outcome(whole), "done");
}

TEST_F(DamagedMpx, AFileThatAFailedRunLeftOpenKeepsItsNumberUntilTheNextRun) {
  Outcome(Plan("", ""));
  const std::int16_t left = State().mpxInFileNo;
  ASSERT_TRUE(program->files.IsOpen(left));
  EXPECT_EQ(Outcome(Plan("", Tasks("1 Weld 1"))), "done");
  EXPECT_FALSE(program->files.IsOpen(left));
  EXPECT_FALSE(program->files.IsOpen(State().gOutFile));
  EXPECT_TRUE(Model().ends_with("End  Scenario List\r\n\r\n"));
}

TEST_F(DamagedMpx, AMissingFileOrConnectionIsToldInABox) {
  EXPECT_FALSE(TranslateMpx(State(), folder.Path("nowhere.mpx"), "", kMergePlan));
  const std::string plan = folder.Write("plan.mpx", Plan("", Tasks("1 Weld 1")));
  EXPECT_FALSE(TranslateMpx(State(), plan, "", kMergePlan));
  EXPECT_EQ(desktop.MessageTexts().at(1), ErrorText(kObjectNotSet));
}

}  // namespace
}  // namespace merivane::test
