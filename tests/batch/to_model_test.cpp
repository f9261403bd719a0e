// A plan comes back into its model, or becomes one.
#include <tuple>

#include "batch_fixture.h"

namespace merivane::test {

namespace {

const std::string kMerge = "to-model --mpx @plan.mpx --interim @plan.mdb --merge 1";

TEST_F(BatchWithPlan, ToModelFindsTheProjectByIdOrNameAndGuardsTheOutput) {
  const std::string name = Projects()[0]["name"];
  const std::string line = "to-model --database @plan.mdb --output @model.txt --project ";
  ExpectFailures({{line + "'nothing like it'", kRefused, name}});
  Succeed(line + "'" + name + "'");
  EXPECT_THAT(Read("model.txt"), StartsWith("Dunmar Neutral Text"));
  ExpectFailures({{line + "1", kRefused, "--force"}});
  const std::string before = Read("plan.mdb");
  Succeed(line + "1 --force");
  EXPECT_TRUE(Read("plan.mdb") == before);
}

TEST_F(BatchWithPlan, MergeKeepsACopyAndFoldsTheChangeIn) {
  Replace("plan.mpx", "70,1,1,", "70,1,1,Newly ");
  const std::string merge =
      "to-model --mpx @plan.mpx --interim @plan.mdb --output @model.txt --force --merge ";
  ExpectFailures({{merge + "7", kRefused, "7"}});
  Succeed(merge + "1");
  EXPECT_THAT(Read("model.txt"), HasSubstr("  Name:  Newly "));
  EXPECT_THAT(Read("plan.mdb"), HasSubstr("Newly "));
  EXPECT_THAT(Read("plan.mdb.bak"), Not(HasSubstr("Newly ")));
  Succeed(merge + "1 --no-backup");
  EXPECT_FALSE(IsThere("plan.mdb.bak2"));
}

TEST_F(BatchWithPlan, ADryRunTellsWhatAMergeReportsAndWritesNothing) {
  Replace("plan.mpx", "Set up the desk", "Build the desk");
  const std::string change =
      "changed: row 2 of the plan, unit 2 'Build the desk': It was called 'Set up the desk'.\n";
  const auto before = Files();
  Succeed(kMerge + " --dry-run --no-proof");
  EXPECT_EQ(out.str(), change + "0 added, 1 changed, 0 removed, 0 kept\n");
  Succeed(kMerge + " --dry-run --json");
  EXPECT_EQ(Json()["changes"][0]["change"], "changed");
  EXPECT_TRUE(Files() == before);
  ExpectFailures({{kMerge, kRefused, "--output"}});
  Succeed(kMerge + " --output @model.txt");
  EXPECT_THAT(out.str(), StartsWith(change));
}

TEST_F(BatchWithPlan, ADryRunEndsAsItsMergeDoes) {
  Copy("plan.mpx", "stops.mpx");
  Replace("stops.mpx", "\"2,3\"", "\"2SS\"");
  const std::string sound = Read("plan.mdb");
  const std::tuple<const char*, const char*, const char*, int> rows[] = {
      {"p.mdb", "plan.mpx", "", kDone},
      {"p.mdb", "stops.mpx", "", kFailed},
      {"p.mdb", "none.mpx", "", kFailed},
      {"p.dat", "plan.mpx", "", kRefused},
      {"p.mdb", "plan.mpx", "update MSP_PROJECTS set PROJ_NAME = Null", kRefused},
      {"p.mdb", "plan.mpx", "update MSP_TASKS set TASK_OUTLINE_NUM = Null", kRefused},
      {"p.mdb", "plan.mpx", "drop table MSP_TASKS", kRefused},
      {"p.mdb", "plan.mpx", "drop table ProjectAct", kFailed},
      {"p.mdb", "plan.mpx", "delete from Scenario", kDoneWithMessages}};
  for (const auto& [database, mpx, sql, status] : rows) {
    folder.Write(database, sound);
    Sql(sql, database);
    const std::string merge =
        std::string("to-model --merge 1 --mpx @") + mpx + " --interim @" + database;
    EXPECT_EQ(Run(merge + " --dry-run"), status) << mpx << sql << err.str();
    EXPECT_EQ(Run(merge + " --output @model.txt --force"), status) << mpx << sql;
  }
}

TEST_F(BatchWithPlan, WhatIsToldBesideAMergeNeverFailsIt) {
  Sql("update MSP_ASSIGNMENTS set RES_UID = Null; update MSP_RESOURCES set RES_UID = 'x'"
      " where RES_UID = 2");
  Succeed(kMerge + " --dry-run");
  Succeed(kMerge + " --output @a.txt");
  Succeed(kMerge + " --output @b.txt --template @none.mdb");
  EXPECT_THAT(err.str(), HasSubstr("the proof can't be told: "));
  EXPECT_TRUE(IsThere("b.txt"));
  Sql("alter table MSP_ASSIGNMENTS rename column ASSN_UNITS to Units");
  EXPECT_EQ(Run(kMerge + " --output @c.txt"), kDoneWithMessages) << err.str();
  EXPECT_THAT(err.str(), HasSubstr("what changed can't be told: No column 'ASSN_UNITS'"));
  EXPECT_THAT(out.str(), HasSubstr("written: " + folder.Path("c.txt")));
}

TEST_F(BatchWithPlan, TheProofIsTheSameInThePreviewAndBehindTheMerge) {
  Succeed(kMerge + " --dry-run --json");
  const auto proof = Json()["proof"];
  EXPECT_EQ(proof["agrees"], false);
  ASSERT_EQ(proof["differences"].size(), 9U);
  EXPECT_EQ(proof["differences"][0]["change"], "differs");
  EXPECT_EQ(proof["differences"][0]["planRow"], 2);
  Succeed(kMerge + " --dry-run --json --no-proof");
  EXPECT_TRUE(Json()["proof"].is_null());
  for (const char* more : {" --dry-run", " --output @model.txt"}) {
    Succeed(kMerge + more);
    EXPECT_THAT(out.str(),
                AllOf(HasSubstr("9 differences between the plan that came in and what the merged"),
                      HasSubstr("differs: row 2 of the plan, task 'Set up the desk': It takes 1.50 "
                                "days in the plan, and 1 by the merged model. Set the cycle time "
                                "of its objects in the model. --complete keeps it.\n")));
  }
  Succeed(kMerge + " --output @model.txt --force --no-proof");
  EXPECT_THAT(out.str(), Not(HasSubstr("differ")));
}

TEST_F(BatchWithPlan, ACompleteMergeGivesThePlanThatCameIn) {
  const std::string merge = kMerge + " --complete";
  Succeed(merge + " --dry-run --json");
  EXPECT_EQ(Json()["merges"], true);
  EXPECT_EQ(Json()["proof"]["agrees"], true) << out.str();
  EXPECT_TRUE(Json()["changes"].empty()) << out.str();
  Succeed(merge + " --output @model.txt");
  EXPECT_THAT(out.str(), HasSubstr("The merged model gives the plan that came in."));
  EXPECT_THAT(Read("model.txt"), HasSubstr("Cycle-Time:  1.5\r\n"));
  Succeed("to-project --from @plan.mdb --project 1 --mpx @next.mpx --database @next.mdb");
  const auto behindHead = [](const std::string& text) { return text.substr(text.find("\r\n40,")); };
  EXPECT_EQ(behindHead(Read("next.mpx")), behindHead(Read("plan.mpx")));
}

// A resource that doesn't work comes back as what it was.
TEST_F(BatchWithPlan, WhatAModelDoesNotTakeIsToldInOneMessage) {
  folder.Write(
      "foreign.xml",
      "<Project xmlns=\"http://schemas.microsoft.com/project\"><Name>P</Name><Tasks>"
      "<Task><UID>1</UID><ID>1</ID><Name>Dig</Name><OutlineLevel>1</OutlineLevel>"
      "<PercentComplete>50</PercentComplete></Task>"
      "<Task><UID>2</UID><ID>2</ID><Name>Dropped</Name><OutlineLevel>1</OutlineLevel>"
      "<Active>0</Active></Task></Tasks><Resources><Resource><UID>1</UID><ID>1</ID>"
      "<Name>Cement</Name><Type>0</Type><MaterialLabel>t</MaterialLabel><Notes>grey</Notes>"
      "</Resource></Resources><Assignments><Assignment><UID>1</UID><TaskUID>1</TaskUID>"
      "<ResourceUID>1</ResourceUID><Units>12</Units></Assignment></Assignments></Project>");
  EXPECT_EQ(Run("to-model --xml @foreign.xml --interim @new.mdb --overwrite --output @model.txt"),
            kDoneWithMessages);
  EXPECT_THAT(err.str(),
              HasSubstr("A model doesn't take everything of this plan:\n1 inactive task: left out\n"
                        "1 material resource: an object whose glossary tells the kind\n"
                        "1 task with progress: the progress is left out"));
  EXPECT_THAT(Read("model.txt"), AllOf(HasSubstr("Resource kind: Material (t)\r\n"),
                                       HasSubstr("grey"), Not(HasSubstr("Dropped"))));
  Succeed("export @new.mdb --project 1 --xml @again.xml");
  EXPECT_THAT(Read("again.xml"),
              AllOf(HasSubstr("<MaterialLabel>t</MaterialLabel>"), HasSubstr("<Notes>grey</Notes>"),
                    HasSubstr("<Work>PT12H0M0S</Work>")));
  Run("to-model --xml @foreign.xml --interim @plan.mdb --merge 1 --dry-run --json");
  EXPECT_EQ(Json()["notTaken"]["inactiveTasks"], std::vector{2});
}

}  // namespace
}  // namespace merivane::test
