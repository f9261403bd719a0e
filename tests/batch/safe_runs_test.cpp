// Whatever a run meets, the files that stood are whole afterwards, and what failed is told.
#include "batch_fixture.h"

namespace merivane::test {

namespace {

class SafeRuns : public BatchWithPlan {
 protected:
  SafeRuns() {
    fs::copy_file(MERIVANE_SAMPLES "/onboarding.txt", folder.Path("model.txt"));
    fs::create_hard_link(folder.Path("model.txt"), folder.Path("hard.mpx"));
    Link(folder.Path("plan.mdb"), folder.Path("soft.txt"));
  }
};

TEST_F(SafeRuns, ARefusedNameTouchesNothingAndIsTold) {
  const std::string toProject = "to-project @model.txt --database ";
  const std::string toModel = "to-model --database @plan.mdb --project 1 --output ";
  const std::string back = "to-model --mpx @plan.mpx --interim @plan.mdb --output @x.txt";
  ExpectFailures(
      {{toProject + "' @plan.mdb'", kRefused, ""},
       {toProject + "@new.mdb --mpx @plan.mpx", kRefused, "--force"},
       {toProject + "@new.mdb --xml @plan.xml", kRefused, "--force"},
       {toProject + "@new.mdb --mpx @hard.mpx --force", kRefused, "hard.mpx"},
       {toProject + "@plan.mdb --overwrite --log @model.txt", kRefused, "model.txt"},
       {toProject + "@new.mdb --log @./new.mdb", kRefused, "new.mdb"},
       {"to-project @soft.txt --database @plan.mdb --overwrite", kRefused, "the same file"},
       {toModel + "'  '", kRefused, ""},
       {toModel + "' @model.txt'", kRefused, ""},
       {toModel + "@soft.txt --force", kRefused, "soft.txt"},
       {back + " --overwrite --log @plan.mpx", kRefused, "plan.mpx"},
       {back + " --xml @plan.xml --merge 1", kRefused, "--mpx"},
       {"to-model --xml @plan.xml --interim @plan.mdb --merge 1 --output @x.doc", kRefused,
        "Incorrect File Type"},
       {"projects @plan.mdb --json ''", kRefused, ""}});
}

TEST_F(SafeRuns, AFailedRunLeavesEveryFileAsItWas) {
  folder.Write("empty.txt", "");
  folder.Write("letter.mpx", "Dear reader\r\n");
  folder.Write("empty.mpx", "");
  folder.Write("bad.xml", "<Project><Tasks><Task><UID>x</UID></Task>");
  folder.Write("number.mpx",
               "MPX,Microsoft Project for Windows,4.0,ANSI\r\n12,0,0,480,/,:,AM,PM\r\n"
               "99999,a line longer than the one before it\r\n");
  Copy("plan.mpx", "stops.mpx");
  Replace("stops.mpx", ",\"4\",", ",\"4SS\",");  // told after the tasks came back
  const std::string back = "to-model --interim @plan.mdb --output @model.txt --force ";
  ExpectFailures(
      {{"check @empty.txt", kFailed, ""},
       {"to-project @empty.txt --database @plan.mdb --overwrite", kFailed, ""},
       {"to-project %bakery.txt --database @plan.mdb --overwrite --mpx @plan.mpx --force", kFailed,
        "Multiple scenarios"},
       {"to-project %bakery.txt --database @plan.mdb --append", kFailed, ""},
       {"to-project %bakery.txt --database @plan.mdb --append --log /dev/full", kFailed, ""},
       {back + "--mpx @none.mpx --overwrite", kFailed, ""},
       {back + "--mpx @empty.mpx --overwrite", kFailed, ""},
       {back + "--mpx @letter.mpx --merge 1", kFailed, ""},
       {back + "--mpx @stops.mpx --merge 1", kFailed, ""},
       {back + "--mpx @stops.mpx --merge 1 --no-backup", kFailed, ""},
       {back + "--xml @bad.xml --merge 1", kFailed, "line 1"},
       {"to-model --mpx @number.mpx --interim @plan.mdb --merge 1 --dry-run", kFailed, ""}});
}

TEST_F(SafeRuns, KeepPartialLeavesTheRowsAndNamesTheCopy) {
  const std::string before = Read("plan.mdb");
  EXPECT_EQ(Run("to-project %bakery.txt --database @plan.mdb --overwrite --keep-partial"), kFailed);
  EXPECT_THAT(err.str(), HasSubstr("plan.mdb.bak"));
  EXPECT_TRUE(Read("plan.mdb.bak") == before);
  Succeed("projects @plan.mdb");
  EXPECT_THAT(out.str(), Not(HasSubstr("Onboarding")));
  EXPECT_EQ(Run("to-project %bakery.txt --database @new.mdb"), kFailed);
  EXPECT_TRUE(IsThere("new.mdb"));
}

TEST_F(SafeRuns, AReplacedDatabaseIsKeptAndAnAppendedOneIsNot) {
  const std::string before = Read("plan.mdb");
  Succeed("to-project %onboarding.txt --database @plan.mdb --overwrite");
  EXPECT_TRUE(Read("plan.mdb.bak") == before);
  EXPECT_THAT(out.str(), HasSubstr("plan.mdb.bak"));
  Succeed("to-model --mpx @plan.mpx --interim @plan.mdb --overwrite --output @x.txt");
  EXPECT_TRUE(IsThere("plan.mdb.bak2"));
  const auto count = Files().size();
  Succeed("to-project %onboarding.txt --database @plan.mdb --append");
  EXPECT_EQ(Files().size(), count);
}

TEST_F(SafeRuns, AnAppendWithoutAFreeNumberIsRefused) {
  for (const char* sql : {"delete from MSP_PROJECTS", "update MSP_PROJECTS set PROJ_ID = 32767",
                          "delete from MSP_PROJECTS; insert into MSP_PROJECTS (PROJ_ID, PROJ_NAME) "
                          "values (2, 'b'), (1, 'a')"}) {
    Sql(sql);
    ExpectFailures({{"to-project %onboarding.txt --database @plan.mdb --append", kRefused, ""}});
  }
}

TEST_F(SafeRuns, AFaultOfTheMachineIsNoSuccess) {
  const auto before = Files();
  std::ostream full(nullptr);  // takes nothing
  const std::string plan = folder.Path("plan.mdb");
  for (const std::vector<std::string>& words :
       {std::vector<std::string>{"projects", plan},
        {"to-project", folder.Path("model.txt"), "--database", plan, "--overwrite"}}) {
    EXPECT_EQ(RunBatch(words, MERIVANE_BIN, full, err), kFailed) << words[0];
    EXPECT_TRUE(Files() == before) << words[0];
  }
}

TEST_F(SafeRuns, AppendsAtOnceWaitForEachOtherAndTakeANumberEach) {
  RawDatabase writer(folder.Path("plan.mdb"));
  writer.Run("begin immediate");
  setting.patience = kBrief;
  ExpectFailures({{"to-project %onboarding.txt --database @plan.mdb --append", kFailed,
                   "is in use by another program"}});
  writer.Run("rollback");
  setting.patience = std::chrono::minutes(2);  // on a busy machine
  const auto append = [this] {
    std::ostringstream told;
    EXPECT_EQ(RunBatch({"to-project", MERIVANE_SAMPLES "/onboarding.txt", "--database",
                        folder.Path("plan.mdb"), "--append", "--quiet"},
                       MERIVANE_BIN, told, told, setting),
              kDone)
        << told.str();
  };
  std::thread other(append);
  append();
  other.join();
  EXPECT_EQ(writer.Ask("select group_concat(PROJ_ID) from MSP_PROJECTS"), "1,2,3");
}

#ifndef _WIN32
TEST_F(SafeRuns, ASourceThatNeverEndsIsRefused) {
  for (const char* name : {"endless.txt", "endless.mpx", "endless.xml"}) {
    fs::create_symlink("/dev/zero", folder.Path(name));
  }
  const std::string back = "to-model --interim @plan.mdb --overwrite --output @other.txt ";
  ExpectFailures(
      {{"check @endless.txt", kRefused, "endless.txt"},
       {"to-project @endless.txt --database @plan.mdb --overwrite", kFailed, "cannot open"},
       {back + "--mpx @endless.mpx", kFailed, "endless.mpx"},
       {back + "--xml @endless.xml", kFailed, "endless.xml"}});
}

TEST_F(SafeRuns, AFailureNamesTheFileThatItAroseOn) {
  for (const std::string line :
       {"export @plan.mdb --project 1 --xml /sys/p.xml",
        "chart @plan.mdb --project 1 --output /sys/p.svg", "draw @model.txt --output /sys/p.svg",
        "report @model.txt --output /sys/p.html"}) {
    EXPECT_EQ(Run(line), kFailed) << line;
    EXPECT_EQ(err.str(),
              "merivane-batch: Permission denied: '" + line.substr(line.rfind(' ') + 1) + "'\n");
  }
}

TEST_F(SafeRuns, ALinkThatLeadsNowhereYetIsFollowed) {
  fs::create_symlink("target.mdb", folder.Path("link.mdb"));
  Succeed("to-project @model.txt --database @link.mdb");
  EXPECT_TRUE(fs::is_symlink(folder.Path("link.mdb")));
  EXPECT_TRUE(fs::is_regular_file(folder.Path("target.mdb")));
}
#endif

TEST_F(SafeRuns, ControlCharactersDoNotReachTheTerminal) {
  Sql("update MSP_PROJECTS set PROJ_NAME = 'a' || char(27) || '[31m' || char(10) || char(144)");
  Succeed("projects @plan.mdb");
  EXPECT_EQ(out.str(), "1\ta?[31m??\t5 tasks\n");
  Succeed("projects @plan.mdb --json");
  EXPECT_EQ(out.str().find_first_of("\x1b\x90"), std::string::npos);
  EXPECT_EQ(Json()[0]["name"], "a\x1b[31m\n\xC2\x90");
  ExpectFailures(
      {{"to-model --database @plan.mdb --project 9 --output @x.txt", kRefused, "  1  a?[31m??\n"}});
}

}  // namespace
}  // namespace merivane::test
