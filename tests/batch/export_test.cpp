// A stored plan written as a file of its own, and databases and plans that others made.
#include "batch_fixture.h"

namespace merivane::test {

namespace {

TEST_F(BatchWithPlan, ExportGivesTheFilesOfTheTranslation) {
  Succeed("export @plan.mdb --project 1 --mpx @again.mpx --xml @again.xml");
  EXPECT_EQ(Read("again.xml"), Read("plan.xml"));
  const auto withoutDate = [](const std::string& text) {
    const std::size_t at = text.find("\r\n30,") + 2;
    return text.substr(0, at) + text.substr(text.find("\r\n", at));
  };
  EXPECT_EQ(withoutDate(Read("again.mpx")), withoutDate(Read("plan.mpx")));
  Replace("again.xml", "<Name>Set up the desk</Name>", "<Name>Set up the room</Name>");
  Succeed("to-model --xml @again.xml --interim @plan.mdb --merge 1 --output @model.txt");
  Succeed("export @plan.mdb --project 1 --xml @plan.xml --force");
  EXPECT_THAT(Read("plan.xml"), HasSubstr("<Name>Set up the room</Name>"));
}

TEST_F(BatchWithPlan, ExportTellsWhatAFileCantHold) {
  Sql("update MSP_TASKS set TASK_NAME = 'The \"big\" desk' || char(10) || 'and chair' where "
      "TASK_ID = 2");
  const std::string mpx = "export @plan.mdb --project 1 --mpx @again.mpx";
  EXPECT_EQ(Run(mpx), kDoneWithMessages);
  EXPECT_THAT(Read("again.mpx"), HasSubstr("70,2,2,The 'big' desk and chair,1.50d,"));
  EXPECT_THAT(err.str(), HasSubstr("1 text held quotes or line ends"));
  Sql("update MSP_PROJECTS set PROJ_OPT_MINUTES_PER_DAY = 0, PROJ_OPT_MINUTES_PER_WEEK = 0");
  EXPECT_EQ(Run("export @plan.mdb --project 1 --xml @plan.xml --force"), kDoneWithMessages);
  EXPECT_THAT(out.str() + err.str(),
              AllOf(HasSubstr("0 minutes a day"), HasSubstr("0 minutes a week"),
                    HasSubstr("1 message was shown")));
  EXPECT_THAT(Read("plan.xml"), HasSubstr("<MinutesPerDay>480</MinutesPerDay>"));
  Sql("update MSP_TASKS set TASK_ID = TASK_ID + 32767");
  ExpectFailures({{mpx + " --force", kFailed, "plan.mdb: the plan as planning XML, line "}});
}

TEST_F(BatchWithPlan, ExportWritesTablesForASpreadsheet) {
  Sql("update MSP_TASKS set TASK_NAME = '=Set, up' where TASK_ID = 2");
  const std::string table =
      "export @plan.mdb --project 1 --today 11/26/2026 --csv @plan.csv --force --table ";
  Succeed(table + "tasks");
  EXPECT_THAT(Read("plan.csv"),
              AllOf(StartsWith("\xEF\xBB\xBFID,Level,Task,Start,Finish,Days,"),
                    HasSubstr("\r\n2,1,\"'=Set, up\",2026-11-27 08:00,2026-11-30 12:00,1.50,1,"
                              "System administrator,no,yes,0.00\r\n")));
  Succeed(table + "assignments");
  EXPECT_THAT(Read("plan.csv"),
              HasSubstr("\r\n5,Work on the first task with the mentor,3,Mentor,"));
  const std::pair<const char*, const char*> costs[] = {
      {"RES_STD_RATE_FMT = RES_STD_RATE_FMT", "160.00"},
      {"RES_STD_RATE = 400, RES_STD_RATE_FMT = 3", "800.00"},
      {"RES_STD_RATE_FMT = 8", ""}};
  for (const auto& [change, cost] : costs) {
    Sql("update MSP_RESOURCES set " + std::string(change));
    Succeed(table + "resources");
    EXPECT_THAT(Read("plan.csv"),
                HasSubstr("\r\n2,System administrator,2.00,2.00," + std::string(cost) + "\r\n"));
  }
}

TEST_F(BatchWithPlan, ExportThatIsRefusedOrFailsLeavesWhatStands) {
  const std::string line = "export @plan.mdb --project 1 ";
  ExpectFailures({{line, kRefused, "--xml, --mpx or --csv"},
                  {line + "--csv @plan.mpx", kRefused, "plan.mpx"},
                  {line + "--mpx @plan.mpx", kRefused, "--force to replace it"},
                  {line + "--xml @plan.mdb", kRefused, "no name of planning XML"},
                  {line + "--mpx @a.mpx --table tasks", kRefused, "--csv"},
                  {line + "--csv @a.csv --table links", kRefused, "links"},
                  {line + "--csv @a.csv --mpx @none/plan.mpx", kRefused, "plan.mpx"},
                  {"export @plan.mdb --project 7 --xml @new.xml", kRefused, "no project '7'"}});
  Replace("plan.xml", "<PredecessorUID>1</PredecessorUID>", "<PredecessorUID>5</PredecessorUID>");
  Succeed("to-model --xml @plan.xml --interim @plan.mdb --overwrite --output @model.txt");
  ExpectFailures(
      {{line + "--xml @plan.xml --force", kFailed, "run in a circle through the tasks"}});
}

// By what the file is, not by how it is called.
TEST_F(Batch, PlansInOtherFormsAreToldWhatToDoWithThem) {
  const std::string file("\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1 plan", 13);
  folder.Write("plan.mpp", file);
  folder.Write("renamed.mdb", file);
  folder.Write("plan.mpd", "x");
  const char* saveAsXml = "Save it there as XML";
  const std::string rest = " --project 1 --output @model.txt";
  ExpectFailures(
      {{"projects @plan.mpp", kRefused, saveAsXml},
       {"to-model --database @renamed.mdb" + rest, kRefused, saveAsXml},
       {"to-model --database @plan.mpp" + rest, kRefused, saveAsXml},
       {"to-model --database @plan.mpp" + rest, kRefused, "Incorrect File Type"},
       {"to-model --database @plan.mpd" + rest, kRefused, "a copy of it whose name ends in .mdb"}});
  Run("projects @plan.mpd");
  EXPECT_THAT(err.str(), Not(HasSubstr("Save it")));
}

// One whose table of projects bears another name stands for one of an earlier edition.
TEST_F(Batch, RealPlanDatabasesAreReadAndAnEarlierEditionIsToldAsSuch) {
  const std::string real = MERIVANE_PLANS "/mpp9relations.mpd";
  if (!fs::exists(real)) GTEST_SKIP() << real << " is not there";
  std::string bytes = ReadFile(real);
  folder.Write("plan.mdb", bytes);
  EXPECT_EQ(Projects()[0]["tasks"], 5);
  EXPECT_NE(Run("to-model --database @plan.mdb --project 1 --output @model.txt"), kRefused);
  EXPECT_THAT(Read("model.txt"), HasSubstr("Process Occurrence List"));
  const std::string name = "MSP_PROJECTS";
  std::string wide;
  for (const char letter : name) wide += {letter, '\0'};
  for (const std::string& form : {name, wide}) {
    for (std::size_t at = bytes.find(form); at != std::string::npos; at = bytes.find(form, at)) {
      bytes[at] = 'X';
    }
  }
  folder.Write("early.mdb", bytes);
  ExpectFailures({{"projects @early.mdb", kRefused, "No table"},
                  {"projects @early.mdb", kRefused, "Microsoft Project 98"}});
  EXPECT_NE(Run("export @early.mdb --project 1 --xml @early.xml"), kDone);
  EXPECT_THAT(err.str(), HasSubstr("open it once in a later edition"));
}

}  // namespace
}  // namespace merivane::test
