#include "batch_fixture.h"

namespace merivane::test {

namespace {

class SafeRuns : public Batch {
 protected:
  void SetUp() override {
    ASSERT_EQ(ToProject(Sample("onboarding.txt"), {"--mpx", mpx}), kDone) << err.str();
    fs::copy_file(Sample("onboarding.txt"), model);
    fs::create_hard_link(model, folder.Path("hard.mpx"));
    Link(plan, folder.Path("soft.txt"));
  }
  void Sql(const std::string& sql) const {
    EXPECT_EQ(RawDatabase(plan).Run(sql), SQLITE_OK) << sql;
  }
  // The rows name files of the folder by "@".
  int RunIn(std::vector<std::string> arguments) {
    for (std::string& argument : arguments) {
      const auto at = argument.find('@');
      if (at != std::string::npos) argument.replace(at, 1, folder.Path(""));
    }
    return Run(arguments);
  }

  std::string other = folder.Path("other.txt");
};

#ifndef _WIN32
TEST_F(SafeRuns, ASourceThatNeverEndsIsRefused) {
  for (const char* name : {"endless.txt", "endless.mpx", "endless.xml"}) {
    fs::create_symlink("/dev/zero", folder.Path(name));
  }
  const std::vector<std::vector<std::string>> commands = {
      {"check", "@endless.txt"},
      {"draw", "@endless.txt", "--output", "@model.svg"},
      {"to-project", "@endless.txt", "--database", "@plan.mdb", "--overwrite"},
      {"to-model", "--mpx", "@endless.mpx", "--interim", plan, "--overwrite", "--output", other},
      {"to-model", "--xml", "@endless.xml", "--interim", plan, "--overwrite", "--output", other}};
  const auto isThere = [&](const char* name) { return fs::exists(folder.Path(name)); };
  const std::string before = ReadFile(plan);
  for (const auto& command : commands) {
    const int status = RunIn(command);
    EXPECT_TRUE(status == kFailed || status == kRefused) << command[1] << ' ' << status;
    EXPECT_FALSE(err.str().empty()) << command[1];
    EXPECT_TRUE(ReadFile(plan) == before && !isThere("other.txt") && !isThere("model.svg"));
  }
}
#endif

TEST_F(SafeRuns, ARefusedNameTouchesNothingAndIsTold) {
  const std::vector<std::string> rows[] = {
      {"to-project", "@model.txt", "--database", " @plan.mdb"},
      {"to-project", "@model.txt", "--database", "@plan.mdb "},
      {"to-project", "@model.txt", "--database", "@new.mdb", "--mpx", "@plan.mpx"},
      {"to-project", "@model.txt", "--database", "@new.mdb", "--mpx", "@hard.mpx", "--force"},
      {"to-project", "@model.txt", "--database", "@plan.mdb", "--overwrite", "--log", "@model.txt"},
      {"to-project", "@soft.txt", "--database", "@plan.mdb", "--overwrite"},
      {"to-project", "@model.txt", "--database", "@new.mdb", "--log", "@./new.mdb"},
      {"to-project", "@model.txt", "--database", ""},
      {"to-model", "--database", "@plan.mdb", "--project", "1", "--output", "  "},
      {"to-model", "--database", "@plan.mdb", "--project", "1", "--output", " @model.txt"},
      {"to-model", "--database", "@plan.mdb", "--project", "1", "--output", "@soft.txt", "--force"},
      {"to-model", "--mpx", "@plan.mpx", "--interim", "@plan.mdb", "--overwrite", "--output",
       "@x.txt", "--log", "@plan.mpx"},
      {"to-model", "--mpx", "@plan.mpx", "--interim", "@plan.mdb", "--overwrite", "--output",
       "@x.doc"},
      {"projects", "@plan.mdb", "--json", ""}};
  const auto before = Files();
  for (const auto& row : rows) {
    EXPECT_EQ(RunIn(row), kRefused) << ::testing::PrintToString(row);
    EXPECT_FALSE(err.str().empty()) << ::testing::PrintToString(row);
    EXPECT_TRUE(Files() == before) << ::testing::PrintToString(row);
  }
}

TEST_F(SafeRuns, AFailedRunLeavesEveryFileAsItWas) {
  folder.Write("empty.txt", "");
  folder.Write("letter.mpx", "Dear reader\r\n");
  folder.Write("empty.mpx", "");
  folder.Write("number.mpx",
               "MPX,Microsoft Project for Windows,4.0,ANSI\r\n12,0,0,480,/,:,AM,PM\r\n"
               "99999,a line longer than the one before it\r\n");
  fs::copy_file(Sample("bakery.txt"), folder.Path("choice.txt"));
  fs::copy_file(mpx, folder.Path("stops.mpx"));
  Replace(folder.Path("stops.mpx"), ",\"4\",", ",\"4SS\",");  // told after the tasks came back
  const std::vector<std::string> rows[] = {
      {"check", "@empty.txt"},
      {"to-project", "@empty.txt", "--database", "@plan.mdb", "--overwrite"},
      {"to-project", "@choice.txt", "--database", "@plan.mdb", "--overwrite", "--mpx", "@plan.mpx",
       "--force"},
      {"to-project", "@choice.txt", "--database", "@plan.mdb", "--append"},
      {"to-model", "--mpx", "@empty.mpx", "--interim", "@plan.mdb", "--overwrite", "--output",
       "@model.txt", "--force"},
      {"to-model", "--mpx", "@number.mpx", "--interim", "@plan.mdb", "--merge", "1", "--dry-run"},
      {"to-model", "--mpx", "@letter.mpx", "--interim", "@plan.mdb", "--merge", "1", "--output",
       "@x.txt"},
      {"to-model", "--mpx", "@stops.mpx", "--interim", "@plan.mdb", "--merge", "1", "--output",
       "@model.txt", "--force"},
      {"to-model", "--mpx", "@stops.mpx", "--interim", "@plan.mdb", "--merge", "1", "--no-backup",
       "--output", "@x.txt"}};
  const auto before = Files();
  for (const auto& row : rows) {
    EXPECT_EQ(RunIn(row), kFailed) << ::testing::PrintToString(row) << err.str();
    EXPECT_NE(out.str() + err.str(), "") << ::testing::PrintToString(row);
    EXPECT_TRUE(Files() == before) << ::testing::PrintToString(row);
  }
}

TEST_F(SafeRuns, KeepPartialLeavesTheRowsAndNamesTheCopy) {
  const std::string before = ReadFile(plan);
  EXPECT_EQ(ToProject(Sample("bakery.txt"), {"--overwrite", "--keep-partial"}), kFailed);
  EXPECT_NE(err.str().find(plan + ".bak"), std::string::npos) << err.str();
  EXPECT_TRUE(ReadFile(plan + ".bak") == before);
  ASSERT_EQ(Run({"projects", plan}), kDone);
  EXPECT_EQ(out.str().find("Onboarding"), std::string::npos) << out.str();

  EXPECT_EQ(Run({"to-project", Sample("bakery.txt"), "--database", folder.Path("new.mdb")}),
            kFailed);
  EXPECT_TRUE(fs::exists(folder.Path("new.mdb")));
}

TEST_F(SafeRuns, AReplacedDatabaseIsKeptAndAnAppendedOneIsNot) {
  const std::string before = ReadFile(plan);
  ASSERT_EQ(ToProject(Sample("onboarding.txt"), {"--overwrite"}), kDone) << err.str();
  EXPECT_TRUE(ReadFile(plan + ".bak") == before);
  EXPECT_NE(out.str().find(plan + ".bak"), std::string::npos) << out.str();
  ASSERT_EQ(RunIn({"to-model", "--mpx", mpx, "--interim", plan, "--overwrite", "--output", other}),
            kDone)
      << err.str();
  EXPECT_TRUE(fs::exists(plan + ".bak2"));
  const auto count = Files().size();
  ASSERT_EQ(ToProject(Sample("onboarding.txt"), {"--append"}), kDone) << out.str() << err.str();
  EXPECT_EQ(Files().size(), count);
}

TEST_F(SafeRuns, WhatIsToldBesideAMergeNeverFailsIt) {
  const std::vector<std::string> merge{"to-model", "--mpx", mpx, "--interim", plan, "--merge", "1"};
  Sql("update MSP_ASSIGNMENTS set RES_UID = Null; update MSP_RESOURCES set RES_UID = 'x'"
      " where RES_UID = 2");
  EXPECT_EQ(Run(merge, {"--dry-run"}), kDone) << err.str();
  EXPECT_EQ(Run(merge, {"--output", other}), kDone) << err.str();

  Sql("alter table MSP_ASSIGNMENTS rename column ASSN_UNITS to Units");
  EXPECT_EQ(Run(merge, {"--output", other, "--force"}), kDoneWithMessages) << err.str();
  EXPECT_NE(err.str().find("what changed can't be told: No column 'ASSN_UNITS'"),
            std::string::npos);
  EXPECT_NE(out.str().find("written: " + other), std::string::npos) << out.str();
}

#ifndef _WIN32
TEST_F(SafeRuns, AFailureNamesTheFileThatItAroseOn) {
  const std::vector<std::string> rows[] = {
      {"export", "@plan.mdb", "--project", "1", "--xml", "/sys/p.xml"},
      {"chart", "@plan.mdb", "--project", "1", "--output", "/sys/p.svg"},
      {"draw", "@model.txt", "--output", "/sys/p.svg"},
      {"report", "@model.txt", "--output", "/sys/p.html"}};
  for (const auto& row : rows) {
    EXPECT_EQ(RunIn(row), kFailed) << row[0];
    EXPECT_EQ(err.str(), "merivane-batch: Permission denied: '" + row.back() + "'\n");
  }
}
#endif

TEST_F(SafeRuns, AnAppendWithoutAFreeNumberIsRefused) {
  struct Row {
    const char* name;
    const char* sql;
  };
  for (const Row& row :
       {Row{"no project", "delete from MSP_PROJECTS"},
        Row{"past the last number", "update MSP_PROJECTS set PROJ_ID = 32767"},
        Row{"taken",
            "delete from MSP_PROJECTS; insert into MSP_PROJECTS (PROJ_ID, PROJ_NAME) "
            "values (2, 'b'), (1, 'a')"}}) {
    Sql(row.sql);
    const auto before = Files();
    EXPECT_EQ(ToProject(Sample("onboarding.txt"), {"--append"}), kRefused) << row.name;
    EXPECT_TRUE(Files() == before) << row.name;
  }
}

TEST_F(SafeRuns, AFaultOfTheMachineIsNoSuccess) {
  const auto before = Files();
  {
    RawDatabase writer(plan);
    writer.Run("begin immediate");
    setting.patience = kBrief;
    EXPECT_EQ(ToProject(Sample("onboarding.txt"), {"--append"}), kFailed) << out.str();
    EXPECT_TRUE(Files() == before);
  }

  std::ostream full(nullptr);  // takes nothing
  EXPECT_EQ(RunBatch({"projects", plan}, MERIVANE_BIN, full, err), kFailed);
  EXPECT_EQ(
      RunBatch({"to-project", model, "--database", plan, "--overwrite"}, MERIVANE_BIN, full, err),
      kFailed);
  EXPECT_TRUE(Files() == before);
  EXPECT_EQ(ToProject(Sample("bakery.txt"), {"--append", "--log", "/dev/full"}), kFailed);
  EXPECT_TRUE(Files() == before);
}

#ifndef _WIN32
TEST_F(SafeRuns, ALinkThatLeadsNowhereYetIsFollowed) {
  const std::string link = folder.Path("link.mdb");
  fs::create_symlink("target.mdb", link);
  EXPECT_EQ(Run({"to-project", model, "--database", link}), kDone) << err.str();
  EXPECT_TRUE(fs::is_symlink(link));
  EXPECT_TRUE(fs::is_regular_file(folder.Path("target.mdb")));
}
#endif

TEST_F(SafeRuns, WhatKilledRunsLeftGoesAfterADay) {
  const auto leave = [&](const char* name, int hours) {
    const std::string path = folder.Write(name, "");
    fs::last_write_time(path, fs::file_time_type::clock::now() - std::chrono::hours(hours));
    return path;
  };
  const std::string old = leave("merivane-01234567890123456789.mdb-journal", 25);
  const std::string young = leave("merivane-11234567890123456789", 23);
  const std::string users = leave("merivane-2024.mdb", 9999);
  EXPECT_EQ(ToProject(model, {"--overwrite"}), kDone) << err.str();
  EXPECT_FALSE(fs::exists(old));
  EXPECT_TRUE(fs::exists(young) && fs::exists(users));
}

TEST_F(SafeRuns, ControlCharactersDoNotReachTheTerminal) {
  Sql("update MSP_PROJECTS set PROJ_NAME = 'a' || char(27) || '[31m' || char(10) || char(144)");
  EXPECT_EQ(Run({"projects", plan}), kDone);
  EXPECT_EQ(out.str(), "1\ta?[31m??\t5 tasks\n");
  ASSERT_EQ(Run({"projects", plan, "--json"}), kDone);
  EXPECT_EQ(out.str().find_first_of("\x1b\x90"), std::string::npos);
  EXPECT_EQ(nlohmann::json::parse(out.str())[0]["name"], "a\x1b[31m\n\xC2\x90");
  EXPECT_EQ(Run({"to-model", "--database", plan, "--project", "9", "--output", other}), kRefused);
  EXPECT_NE(err.str().find("  1  a?[31m??\n"), std::string::npos) << err.str();
}

}  // namespace
}  // namespace merivane::test
