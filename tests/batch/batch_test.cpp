#include <gmock/gmock.h>

#include <algorithm>

#include "batch_fixture.h"
#include "raw_database.h"

namespace merivane::test {

using namespace batch;

namespace {

TEST_F(Batch, HelpAndVersionSucceedAndWrongUsageIsRefused) {
  EXPECT_EQ(Run({"--help"}), kDone);
  EXPECT_NE(out.str().find("Examples:"), std::string::npos);
  EXPECT_EQ(Run({"--version"}), kDone);
  const std::vector<std::string> wrong[] = {
      {},
      {"to-project"},
      {"to-project", "a.txt", "--database", plan, "--overwrite", "--append"},
      {"to-project", "a.txt", "--database", plan, "--today", "someday"},
      {"to-model", "--output", model},
      {"to-model", "--database", plan, "--output", model},
      {"to-model", "--mpx", mpx, "--interim", plan, "--output", model},
      {"to-model", "--mpx", mpx, "--interim", plan, "--overwrite", "--merge", "1", "--output",
       model},
      {"unknown"}};
  for (const auto& arguments : wrong) {
    EXPECT_EQ(Run(arguments), kRefused);
    EXPECT_FALSE(err.str().empty());
  }
  EXPECT_FALSE(fs::exists(plan));
}

TEST_F(Batch, ToProjectTellsWhatWasWrittenAndProjectsListsIt) {
  EXPECT_EQ(ToProject(Sample("onboarding.txt"), {"--mpx", mpx}), kDone) << err.str();
  EXPECT_NE(out.str().find("5 tasks, "), std::string::npos) << out.str();
  EXPECT_NE(out.str().find("; written: " + plan + ", " + mpx), std::string::npos) << out.str();
  EXPECT_EQ(ReadFile(mpx).substr(0, 4), "MPX,");
  const auto projects = Projects();
  ASSERT_EQ(projects.size(), 1U);
  EXPECT_EQ(projects[0]["id"], 1);
  EXPECT_EQ(projects[0]["tasks"], 5);
}

TEST_F(Batch, AnExistingDatabaseNeedsAWordAndQuietSaysNothing) {
  ASSERT_EQ(ToProject(Sample("onboarding.txt"), {"--quiet"}), kDone);
  EXPECT_EQ(out.str() + err.str(), "");
  const std::string before = ReadFile(plan);
  EXPECT_EQ(ToProject(Sample("onboarding.txt")), kRefused);
  EXPECT_TRUE(ReadFile(plan) == before);
  ASSERT_EQ(ToProject(Sample("onboarding.txt"), {"--append"}), kDone) << err.str();
  const auto projects = Projects();
  ASSERT_EQ(projects.size(), 2U);
  EXPECT_EQ(projects[1]["id"], 2);
  EXPECT_EQ(projects[1]["name"], projects[0]["name"].get<std::string>() + "(2)");
}

TEST_F(Batch, RefusedNamesTouchNothing) {
  const std::string database = folder.Write("plan.mdb", "precious");
  EXPECT_EQ(ToProject(folder.Write("model.doc", ""), {"--overwrite"}), kRefused);
  EXPECT_EQ(ToProject(Sample("onboarding.txt"), {"--overwrite", "--mpx", "plan.doc"}), kRefused);
  EXPECT_EQ(ToProject(folder.Path("none.txt"), {"--overwrite", "--log", log}), kFailed);
  EXPECT_EQ(Log().at(0)["text"], "cannot open the celvar input text file");
  EXPECT_EQ(Log().at(0)["title"], "IDEF3 to Project 2000");
  EXPECT_EQ(ToProject(Sample("onboarding.txt"), {"--append"}), kRefused);
  EXPECT_EQ(ReadFile(database), "precious");
}

TEST_F(Batch, AFileOfAnotherKindShowsTheReadersBoxAndFails) {
  const std::string wrong = folder.Write("wrong.txt", "Just a letter.\n");
  EXPECT_EQ(ToProject(wrong, {"--log", log}), kFailed);
  EXPECT_NE(err.str().find("Celvar input text file is not valid"), std::string::npos);
  const auto lines = Log();
  ASSERT_EQ(lines.size(), 1U);
  EXPECT_EQ(lines[0], (nlohmann::json{{"text", "Celvar input text file is not valid"},
                                      {"title", "IDEF3 to Project 2000"},
                                      {"icon", "critical"},
                                      {"buttons", "ok"},
                                      {"answer", "ok"}}));
  EXPECT_FALSE(fs::exists(plan));
}

TEST_F(Batch, ChoiceIsTakenFromTheCommandLineOrTheUserCancels) {
  EXPECT_EQ(ToProject(Sample("bakery.txt"), {"--log", log}), kFailed);
  const auto lines = Log();
  ASSERT_EQ(lines.size(), 2U);
  EXPECT_EQ(lines[0]["chooser"]["label1"], "Multiple scenarios found.");
  EXPECT_TRUE(lines[0]["chooser"]["answer"].is_null());
  EXPECT_EQ(lines[1]["buttons"], "yesno");
  EXPECT_EQ(lines[1]["answer"], "yes");
  const std::string first = lines[0]["chooser"]["items"][0];
  EXPECT_NE(err.str().find(first), std::string::npos);

  Succeed({"to-project", Sample("bakery.txt"), "--database", plan},
          {"--overwrite", "--choose", first, "--log", log});
  EXPECT_EQ(Log().at(0)["chooser"]["answer"], first);
}

TEST_F(Batch, CodePageAndTodayReachTheMpxFile) {
  ASSERT_EQ(ToProject(Sample("onboarding.txt"),
                      {"--mpx", mpx, "--code-page", "932", "--today", "2/3/2026"}),
            kDone);
  const std::string text = ReadFile(mpx);
  EXPECT_EQ(text.substr(0, text.find("\r\n")), "MPX,Microsoft Project for Windows,4.0,932");
  EXPECT_NE(text.find("30," + mpx + ", Vorn,,,2/3/2026\r\n"), std::string::npos);
}

TEST_F(Batch, ToModelFindsTheProjectByIdOrNameAndGuardsTheOutput) {
  ASSERT_EQ(ToProject(Sample("onboarding.txt")), kDone);
  const std::string name = Projects()[0]["name"];
  const auto toModel = [&](const std::string& project, std::vector<std::string> more = {}) {
    return Run({"to-model", "--database", plan, "--project", project, "--output", model}, more);
  };
  const std::string before = ReadFile(plan);
  EXPECT_EQ(toModel("nothing like it"), kRefused);
  EXPECT_NE(err.str().find(name), std::string::npos);
  EXPECT_FALSE(fs::exists(model));
  EXPECT_EQ(toModel(name), kDone) << err.str();
  EXPECT_EQ(ReadFile(model).substr(0, 19), "Dunmar Neutral Text");
  EXPECT_EQ(toModel("1"), kRefused);
  EXPECT_EQ(toModel("1", {"--force"}), kDone) << err.str();
  EXPECT_TRUE(ReadFile(plan) == before);
}

TEST_F(Batch, MergeKeepsACopyAndFoldsTheChangeIn) {
  ASSERT_EQ(ToProject(Sample("onboarding.txt"), {"--mpx", mpx}), kDone);
  const std::string before = ReadFile(plan);
  Replace(mpx, "70,1,1,", "70,1,1,Newly ");
  const auto merge = [&](const std::string& project, std::vector<std::string> more = {}) {
    return Run({"to-model", "--mpx", mpx, "--interim", plan, "--merge", project, "--output", model,
                "--force"},
               more);
  };
  EXPECT_EQ(merge("7"), kRefused);
  EXPECT_TRUE(ReadFile(plan) == before);
  EXPECT_EQ(merge("1"), kDone) << err.str();
  EXPECT_NE(ReadFile(model).find("  Name:  Newly "), std::string::npos);
  EXPECT_NE(ReadFile(plan).find("Newly "), std::string::npos);
  EXPECT_EQ(ReadFile(plan + ".bak").find("Newly "), std::string::npos);
  EXPECT_EQ(merge("1"), kDone) << err.str();
  EXPECT_TRUE(fs::exists(plan + ".bak2"));
  EXPECT_EQ(merge("1", {"--no-backup"}), kDone) << err.str();
  EXPECT_FALSE(fs::exists(plan + ".bak3"));
}

TEST_F(Batch, OverwriteBuildsANewModelFromThePlanAlone) {
  ASSERT_EQ(ToProject(Sample("onboarding.txt"), {"--mpx", mpx}), kDone);
  Succeed({"to-model", "--mpx", mpx, "--interim", folder.Path("fresh.mdb"), "--overwrite",
           "--output", model});
  EXPECT_NE(ReadFile(model).find("Scenario#1"), std::string::npos);
  EXPECT_EQ(Run({"to-model", "--mpx", folder.Path("none.mpx"), "--interim", plan, "--overwrite",
                 "--output", folder.Path("other.txt")}),
            kFailed);
  EXPECT_FALSE(fs::exists(folder.Path("other.txt")));
}

TEST_F(Batch, RealPlanDatabasesComeOutAsText) {
  const std::string source = MERIVANE_PLANS "/mpp9relations.mpd";
  if (!fs::exists(source)) GTEST_SKIP() << "no real plans beside this clone";
  fs::copy_file(source, plan);
  const auto projects = Projects();
  ASSERT_EQ(projects.size(), 1U);
  EXPECT_EQ(projects[0]["tasks"], 5);
  EXPECT_NE(Run({"to-model", "--database", plan, "--project", "1", "--output", model}), kRefused);
  EXPECT_NE(ReadFile(model).find("Process Occurrence List"), std::string::npos);
}

TEST_F(Batch, PicturesAreDrawnOfATextAndOfATranslatedModel) {
  const std::string svg = folder.Path("model.svg");
  Succeed({"draw", Sample("festival.txt"), "--output", svg});
  EXPECT_NE(out.str().find("5 diagrams; written: " + svg), std::string::npos) << out.str();
  const std::string all = ReadFile(svg);
  EXPECT_EQ(all.find("Not in the plan"), std::string::npos);
  ASSERT_EQ(ToProject(Sample("festival.txt"), {"--choose", "Sale by mail order"}), kDone);
  Succeed({"draw", "--database", plan, "--project", "1", "--scenario", "Stage building", "--output",
           svg, "--force"});
  const std::string one = ReadFile(svg);
  EXPECT_LT(one.size(), all.size());
  EXPECT_NE(one.find("Not in the plan: junction J9 (XOR) takes another path"), std::string::npos);
  const std::string chart = folder.Path("chart.svg");
  ASSERT_EQ(Run({"chart", plan, "--project", "1", "--output", chart}), kDone) << err.str();
  EXPECT_NE(ReadFile(chart).find(">Carpenter, Flatbed truck</text>"), std::string::npos);
}

TEST_F(Batch, AReportGoesOnWithoutThePlanThatTheModelLeavesOpen) {
  const std::string page = folder.Path("report.html");
  const std::vector<std::string> command = {"report", Sample("bakery.txt"), "--output", page};
  EXPECT_EQ(Run(command), kDoneWithMessages);
  EXPECT_NE(err.str().find("--choose"), std::string::npos) << err.str();
  EXPECT_NE(ReadFile(page).find("Multiple scenarios found."), std::string::npos);
  EXPECT_EQ(Run(command), kRefused);
  Succeed(command, {"--force", "--choose", "Weekday bread"});
  EXPECT_THAT(ReadFile(page), testing::HasSubstr("another scenario was chosen in the place of"));
  EXPECT_NE(ReadFile(page).find("id=\"plan-task-1\""), std::string::npos);
}

TEST_F(Batch, PicturesThatAreRefusedOrFailLeaveTheFile) {
  const std::string svg = folder.Write("model.svg", "precious");
  const std::string wrong = folder.Write("wrong.txt", "Just a letter.\n");
  const std::pair<std::vector<std::string>, int> rows[] = {
      {{"draw", Sample("bakery.txt"), "--output", svg}, kRefused},
      {{"draw", Sample("bakery.txt"), "--output", folder.Path("a.jpg"), "--force"}, kRefused},
      {{"draw", Sample("bakery.txt"), "--scenario", "x", "--output", svg, "--force"}, kRefused},
      {{"draw", "--output", svg, "--force"}, kRefused},
      {{"chart", wrong, "--project", "1", "--output", svg}, kRefused},
      {{"draw", Sample("bakery.txt"), "--output", folder.Path("none/a.svg")}, kRefused},
      {{"chart", wrong, "--project", "1", "--output", svg, "--force"}, kFailed},
      {{"draw", wrong, "--output", svg, "--force"}, kFailed},
      {{"draw", folder.Path("none.txt"), "--output", svg, "--force"}, kFailed},
      {{"draw", "--database", wrong, "--project", "1", "--output", svg, "--force"}, kFailed}};
  for (const auto& [arguments, status] : rows) {
    EXPECT_EQ(Run(arguments), status) << err.str();
    EXPECT_NE(err.str(), "");
  }
  EXPECT_EQ(ReadFile(svg), "precious");
}

// The scratch database is the program's own: a page of it that can't be read is no end of the text.
TEST_F(Batch, PicturesOfWhatTheMachineCouldNotReadAreNotWritten) {
  const std::string damaged = folder.Path("damaged.mdb");
  const struct {
    const char* command;
    const char* output;
    const char* index;
    int status;
  } rows[] = {{"draw", "a.svg", "Links_in_Scenario_by_Origin_Num", kFailed},
              {"draw", "a.svg", "MSP_TASKS_by_TASK_UID", kDone},  // needs no table of the plan
              {"report", "a.html", "Links_in_Scenario_by_Origin_Num", kFailed},
              {"report", "a.html", "MSP_TASKS_by_TASK_UID", kFailed}};
  for (const auto& row : rows) {
    SCOPED_TRACE(std::string(row.command) + " " + row.index);
    const auto root = RawDatabase(TemplateDatabase())
                          .Rows("select rootpage from sqlite_master where name = '" +
                                std::string(row.index) + "'");
    std::string bytes = ReadFile(TemplateDatabase());
    bytes.replace((std::stoul(root[0][0]) - 1) * 4096, 8, 8, '\xFF');
    folder.Write("damaged.mdb", bytes);
    const std::string output = folder.Write(row.output, "precious");
    EXPECT_EQ(Run({row.command, Sample("onboarding.txt"), "--template", damaged, "--output", output,
                   "--force"}),
              row.status)
        << err.str();
    EXPECT_EQ(ReadFile(output) == "precious", row.status == kFailed);
  }
}

TEST_F(Batch, CheckTellsWhatOfADatabaseIsDamaged) {
  const std::string plan = folder.Path("plan.mdb");
  EXPECT_EQ(Run({"to-project", Sample("onboarding.txt"), "--database", plan}), kDone);
  EXPECT_EQ(Run({"check", plan}), kDone) << err.str();
  EXPECT_EQ(out.str(), "0 errors, 0 warnings\n");
  RawDatabase(plan).Run("create table Lost (A); insert into Lost values (1)");
  const std::string root =
      RawDatabase(plan).Rows("select rootpage from sqlite_master where name = 'Lost'")[0][0];
  std::string bytes = ReadFile(plan);
  bytes.replace((std::stoul(root) - 1) * 4096, 8, 8, '\xFF');
  folder.Write("plan.mdb", bytes);
  EXPECT_EQ(Run({"check", plan, "--json"}), kFailed);
  EXPECT_THAT(out.str(), ::testing::HasSubstr("It is damaged: "));
  EXPECT_EQ(
      Run({"to-model", "--database", plan, "--project", "1", "--output", folder.Path("again.txt")}),
      kDone)
      << "the project's own pages are sound";
  folder.Write("plan.mdb", bytes.substr(0, 60));
  EXPECT_EQ(Run({"check", plan}), kRefused);
}

TEST_F(Batch, CheckTellsFindingsByLineAndInJson) {
  EXPECT_EQ(Run({"check", Sample("onboarding.txt")}), kDone);
  EXPECT_THAT(out.str(), ::testing::HasSubstr("\n0 errors, 0 warnings, 1 note\n"));
  EXPECT_EQ(Run({"check", Sample("clinic.txt")}), kDoneWithMessages);
  EXPECT_EQ(Run({"check", Sample("bakery.txt")}), kFailed);
  EXPECT_EQ(out.str().rfind(Sample("bakery.txt") + ":379: error: scenario 1 'Weekday bread': ", 0),
            0U);
  EXPECT_THAT(out.str(),
              ::testing::HasSubstr(" (and 5 more notes of cycle times under a day; --all lists"));
  EXPECT_THAT(out.str(), ::testing::Not(::testing::HasSubstr(":444: note:")));
  EXPECT_EQ(Run({"check", Sample("bakery.txt"), "--all"}), kFailed);
  EXPECT_THAT(out.str(), ::testing::HasSubstr(":444: note: unit 2 'Bake the loaves': "));
  EXPECT_EQ(Run({"check", folder.Path("none.txt")}), kRefused);
  EXPECT_EQ(Run({"check", Sample("bakery.txt"), "--json"}), kFailed);
  const auto json = nlohmann::json::parse(out.str());
  EXPECT_EQ(json["errors"], 1);
  EXPECT_EQ(json["notes"], 6);
  EXPECT_EQ(json["findings"][0]["line"], 379);
  EXPECT_EQ(json["findings"][0]["element"]["name"], "Weekday bread");
}

TEST_F(Batch, ADryRunTellsWhatAMergeReportsAndWritesNothing) {
  ToProject(Sample("onboarding.txt"), {"--mpx", mpx});
  Replace(mpx, "Set up the desk", "Build the desk");
  const std::string change =
      "changed: row 2 of the plan, unit 2 'Build the desk': It was called 'Set up the desk'.\n";
  const std::string before = ReadFile(plan);
  const std::vector<std::string> merge = {"to-model", "--mpx",   mpx, "--interim",
                                          plan,       "--merge", "1"};
  Succeed(merge, {"--dry-run", "--no-proof"});
  EXPECT_EQ(out.str(), change + "0 added, 1 changed, 0 removed, 0 kept\n");
  Succeed(merge, {"--dry-run", "--json"});
  EXPECT_EQ(nlohmann::json::parse(out.str())["changes"][0]["change"], "changed");
  EXPECT_EQ(ReadFile(plan), before);
  EXPECT_EQ(Run(merge), kRefused);
  Succeed(merge, {"--output", model});
  EXPECT_EQ(out.str().rfind(change, 0), 0U);
}

TEST_F(Batch, PicturesOfATextThatBreaksOffSaySo) {
  using testing::HasSubstr;
  const std::string text = ReadFile(Sample("festival.txt"));
  const std::size_t second = text.find("Scenario  ", text.find("End  Scenario\r\n"));
  ASSERT_NE(second, std::string::npos);
  const std::string head = text.substr(0, second + 400);
  const std::string cut = folder.Write("cut.txt", head);
  const std::string note = "Read in part: the text breaks off in line " +
                           std::to_string(std::count(head.begin(), head.end(), '\n') + 1) +
                           ", in scenario 2 of the text.";
  const std::string svg = folder.Path("cut.svg"), page = folder.Path("cut.html");
  EXPECT_EQ(Run({"draw", cut, "--output", svg}), kDoneWithMessages) << err.str();
  EXPECT_THAT(ReadFile(svg), HasSubstr(note));
  EXPECT_EQ(Run({"report", cut, "--output", page}), kDoneWithMessages) << err.str();
  EXPECT_THAT(ReadFile(page), HasSubstr("<p class=\"error\">" + note));

  const std::string none = folder.Write("none.txt", text.substr(0, text.find("Scenario List")));
  EXPECT_EQ(Run({"draw", none, "--output", svg, "--force"}), kFailed);
  EXPECT_EQ(Run({"report", none, "--output", page, "--force"}), kDoneWithMessages) << err.str();
  EXPECT_THAT(ReadFile(page), HasSubstr("in front of its scenarios."));
  EXPECT_THAT(ReadFile(page), HasSubstr("class=\"error\">Error<"));
  EXPECT_EQ(Run({"report", folder.Path("gone.txt"), "--output", page, "--force"}), kFailed);
}

TEST_F(Batch, AChartSaysWhereItsDatesComeFromAndIsRefusedWithoutATask) {
  ToProject(Sample("onboarding.txt"));
  const std::vector<std::string> chart = {
      "chart", plan, "--project", "1", "--output", folder.Path("plan.svg"), "--force"};
  Succeed(chart);
  const std::string computed = "dates computed from durations and links";
  EXPECT_THAT(out.str(), testing::HasSubstr(computed));
  EXPECT_THAT(ReadFile(folder.Path("plan.svg")), testing::HasSubstr(computed));
  const std::string xml = folder.Path("old.xml");
  Succeed({"export", plan, "--project", "1", "--xml", xml});
  Replace(xml, "Set up the desk", "Set up the old desk");
  const std::string whole = ReadFile(xml);
  const std::size_t start = whole.find("<Start>", whole.find("<UID>2</UID>"));
  Replace(xml, whole.substr(start, whole.find("</Start>", start) - start),
          "<Start>2001-02-03T09:30:00");
  const std::string old = folder.Path("old.mdb");
  std::filesystem::copy_file(plan, old);
  RawDatabase(plan).Run("delete from MSP_TASKS where TASK_UID = 2");
  for (const std::string& before : {xml, old}) {
    Succeed(chart, {"--columns", "--against", before});
    EXPECT_THAT(ReadFile(folder.Path("plan.svg")), testing::HasSubstr("No longer in the plan"));
    EXPECT_EQ(
        ReadFile(folder.Path("plan.svg")).find("before: Feb 3, 2001 9:30") != std::string::npos,
        before == xml);
  }
  EXPECT_EQ(Run({"chart", plan, "--project", "1", "--output", folder.Path("new.svg"), "--against",
                 Sample("bakery.txt")}),
            kFailed);
  EXPECT_THAT(err.str(), testing::HasSubstr("bakery.txt"));
  RawDatabase(plan).Run("delete from MSP_TASKS where TASK_UID > 0");
  EXPECT_EQ(Run(chart), kFailed);
  EXPECT_THAT(err.str(), testing::HasSubstr("holds no task"));
}

TEST_F(Batch, CheckTellsAllThatAMergeOfAPlanWouldStumbleOver) {
  ToProject(Sample("onboarding.txt"), {"--mpx", mpx});
  const std::vector<std::string> check = {"check", mpx, "--against", plan, "--project", "1"};
  Replace(mpx, "Set up the desk", "Build the desk");  // meant, and so no finding
  Succeed(check);
  EXPECT_EQ(out.str(), "0 errors, 0 warnings\n");
  Replace(mpx, ",\"4\",", ",\"4,9\",");
  EXPECT_EQ(Run(check), kDoneWithMessages) << err.str();
  Replace(mpx, "\"2,3\"", "\"2SS\"");
  Replace(mpx, "Mentor,Mentor", "Ada's mentor,Mentor");
  const auto files = Files();
  EXPECT_EQ(Run(check), kFailed);
  EXPECT_TRUE(Files() == files);
  EXPECT_THAT(out.str(), testing::HasSubstr(mpx + ":row 4: error: task 4 'Welcome"));
  EXPECT_THAT(out.str(), testing::HasSubstr(mpx + ":resource row 3: error: resource 3 'Ada's"));
  EXPECT_THAT(out.str(), testing::EndsWith("2 errors, 1 warning\n"));
  Run(check, {"--json"});
  const auto report = nlohmann::json::parse(out.str());
  EXPECT_EQ(report["plan"], mpx);
  EXPECT_EQ(report["findings"][0]["planRow"], 3);
  EXPECT_EQ(Run({"check", Sample("onboarding.txt"), "--against", plan, "--project", "1"}),
            kRefused);
  EXPECT_EQ(Run({"check", mpx, "--against", plan, "--project", "7"}), kRefused);
}

TEST_F(Batch, ADryRunEndsAsItsMergeDoes) {
  ToProject(Sample("onboarding.txt"), {"--mpx", mpx});
  fs::copy_file(mpx, folder.Path("stops.mpx"));
  Replace(folder.Path("stops.mpx"), "\"2,3\"", "\"2SS\"");
  const std::string sound = ReadFile(plan);
  struct Row {
    const char* database;
    const char* mpx;
    const char* sql;
    int status;
  };
  const Row rows[] = {
      {"p.mdb", "plan.mpx", "", kDone},
      {"p.mdb", "stops.mpx", "", kFailed},
      {"p.mdb", "none.mpx", "", kFailed},
      {"p.dat", "plan.mpx", "", kRefused},
      {"p.mdb", "plan.mpx", "update MSP_PROJECTS set PROJ_NAME = Null", kRefused},
      {"p.mdb", "plan.mpx", "update MSP_TASKS set TASK_OUTLINE_NUM = Null", kRefused},
      {"p.mdb", "plan.mpx", "drop table MSP_TASKS", kRefused},
      {"p.mdb", "plan.mpx", "drop table ProjectAct", kFailed},
      {"p.mdb", "plan.mpx", "delete from Scenario", kDoneWithMessages}};
  for (const Row& row : rows) {
    const std::string database = folder.Write(row.database, sound);
    RawDatabase(database).Run(row.sql);
    const std::vector<std::string> merge = {
        "to-model", "--mpx", folder.Path(row.mpx), "--interim", database, "--merge", "1"};
    EXPECT_EQ(Run(merge, {"--dry-run"}), row.status) << row.mpx << row.sql << err.str();
    EXPECT_EQ(Run(merge, {"--output", model, "--force"}), row.status) << row.mpx << row.sql;
  }
}

}  // namespace
}  // namespace merivane::test
