// A model, a plan or a database is looked at, and two of them are held against each other.
#include "batch_fixture.h"

namespace merivane::test {

namespace {

TEST_F(Batch, CheckTellsWhatOfADatabaseIsDamaged) {
  Succeed("to-project %onboarding.txt --database @plan.mdb");
  Succeed("check @plan.mdb");
  Sql("create table Lost (A); insert into Lost values (1)");
  folder.Write("plan.mdb", WithoutPageOf("Lost", folder.Path("plan.mdb")));
  EXPECT_EQ(Run("check @plan.mdb --json"), kFailed);
  EXPECT_THAT(out.str(), HasSubstr("It is damaged: "));
  Succeed("to-model --database @plan.mdb --project 1 --output @a.txt");  // whose pages are sound
  folder.Write("plan.mdb", Read("plan.mdb").substr(0, 60));
  EXPECT_EQ(Run("check @plan.mdb"), kRefused);
}

TEST_F(Batch, CheckTellsFindingsByLineAndInJson) {
  Succeed("check %onboarding.txt");
  EXPECT_THAT(out.str(), HasSubstr("\n0 errors, 0 warnings, 1 note\n"));
  EXPECT_EQ(Run("check %clinic.txt"), kDoneWithMessages);
  EXPECT_EQ(Run("check %bakery.txt"), kFailed);
  EXPECT_THAT(
      out.str(),
      AllOf(StartsWith(MERIVANE_SAMPLES "/bakery.txt:379: error: scenario 1 'Weekday bread': "),
            HasSubstr(" (and 5 more notes of cycle times under a day; --all lists"),
            Not(HasSubstr(":444: note:"))));
  EXPECT_EQ(Run("check %bakery.txt --all"), kFailed);
  EXPECT_THAT(out.str(), HasSubstr(":444: note: unit 2 'Bake the loaves': "));
  EXPECT_EQ(Run("check @none.txt"), kRefused);
  EXPECT_EQ(Run("check %bakery.txt --json"), kFailed);
  EXPECT_EQ(Json()["errors"], 1);
  EXPECT_EQ(Json()["notes"], 6);
  EXPECT_EQ(Json()["findings"][0]["line"], 379);
  EXPECT_EQ(Json()["findings"][0]["element"]["name"], "Weekday bread");
}

TEST_F(BatchWithPlan, CheckTellsAllThatAMergeOfAPlanWouldStumbleOver) {
  const std::string check = "check @plan.mpx --against @plan.mdb --project 1";
  Replace("plan.mpx", "Set up the desk", "Build the desk");  // meant, and so no finding
  Succeed(check);
  EXPECT_EQ(out.str(), "0 errors, 0 warnings\n");
  Replace("plan.mpx", ",\"4\",", ",\"4,9\",");
  EXPECT_EQ(Run(check), kDoneWithMessages) << err.str();
  Replace("plan.mpx", "\"2,3\"", "\"2SS\"");
  Replace("plan.mpx", "Mentor,Mentor", "Ada's mentor,Mentor");
  const std::string mpx = folder.Path("plan.mpx");
  ExpectFailures(
      {{check, kFailed, mpx + ":row 4: error: task 4 'Welcome"},
       {check, kFailed, mpx + ":resource row 3: error: resource 3 'Ada's"},
       {check, kFailed, "2 errors, 1 warning\n"},
       {"check %onboarding.txt --against @plan.mdb --project 1", kRefused, "onboarding.txt"},
       {"check @plan.mpx --against @plan.mdb --project 7", kRefused, "7"}});
  Run(check + " --json");
  EXPECT_EQ(Json()["plan"], mpx);
  EXPECT_EQ(Json()["findings"][0]["planRow"], 3);
}

TEST_F(BatchWithPlan, DiffTellsOfSameAndDifferentFilesByItsStatus) {
  Succeed("diff %onboarding.txt @plan.mdb --project 1");
  EXPECT_EQ(out.str(), "The models are the same.\n");
  Succeed("diff @plan.mpx @plan.mdb --project 1");
  EXPECT_EQ(out.str(), "The plans are the same.\n");
  Copy("plan.mpx", "changed.mpx");
  Replace("changed.mpx", "Set up the desk,1.50d", "Set up the desk,2.50d");
  Succeed("to-model --mpx @plan.mpx --interim @plan.mdb --merge 1 --output @model.txt --no-backup");
  Succeed("to-project %clinic.txt --database @plan.mdb --append");
  Succeed("diff @plan.mdb @plan.mdb --project 2");
  ExpectFailures(
      {{"diff @plan.mpx @changed.mpx", kFailed,
        "changed: row 2 of the plan, task 'Set up the desk': It takes 2.50 days instead of 1.50.\n"
        "0 added, 1 changed, 0 removed between the plans\n"},
       {"diff %onboarding.txt @model.txt", kFailed,
        "changed: unit 2 'Set up the desk': It takes 1 days instead of 1.5.\n"},
       {"diff %onboarding.txt @model.txt", kFailed, "between the models\n"},
       {"diff @plan.mdb @plan.mdb --project 1 --project 2", kFailed, "Set up the desk"}});
  EXPECT_EQ(Run("diff %onboarding.txt @changed.mpx --json"), kFailed);
  EXPECT_EQ(Json()["compared"], "plans");
  EXPECT_EQ(Json()["same"], false);
  EXPECT_EQ(Json()["differences"][0]["planRow"], 2);
}

TEST_F(BatchWithPlan, DiffRefusesWhatItCantCompare) {
  ExpectFailures(
      {{"diff %onboarding.txt", kRefused, "SECOND is required"},
       {"diff %onboarding.txt %README.md", kRefused, "is no name of a file to compare"},
       {"diff %onboarding.txt @none.mpx", kRefused, "isn't there"},
       {"diff %onboarding.txt @plan.mdb", kRefused, "a database needs --project"},
       {"diff %onboarding.txt @plan.mpx --project 1", kRefused, "neither file is one"},
       {"diff @plan.mdb %onboarding.txt --project 1 --project 1", kRefused, "once for each"},
       {"diff @plan.mdb %onboarding.txt --project 7", kRefused, "no project '7'"},
       {"diff %bakery.txt @plan.mpx", kRefused,
        "One of 'Weekday bread', 'Saturday cakes' has to be chosen."}});
  EXPECT_EQ(out.str(), "");
}

}  // namespace
}  // namespace merivane::test
