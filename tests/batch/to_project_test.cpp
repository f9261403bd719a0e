// A model goes out as a plan: of a text, of one that Merivane wrote, of a database.
#include <algorithm>

#include "batch_desktop.h"
#include "batch_fixture.h"

namespace merivane::test {

namespace {

TEST_F(Batch, HelpAndVersionSucceedAndWrongUsageIsRefused) {
  Succeed("--help");
  EXPECT_THAT(out.str(), HasSubstr("Examples:"));
  Succeed("--version");
  folder.Write("plan.mdb", "precious");
  ExpectFailures(
      {{"", kRefused, "subcommand"},
       {"to-project", kRefused, "--database"},
       {"to-project a.txt --database @a.mdb --overwrite --append", kRefused, "--overwrite"},
       {"to-project a.txt --database @a.mdb --today someday", kRefused, "someday"},
       {"to-project @model.doc --database @plan.mdb --overwrite", kRefused, "Incorrect File Type"},
       {"to-project %onboarding.txt --database @plan.mdb --overwrite --mpx a.doc", kRefused,
        "Incorrect File Type"},
       {"to-project %onboarding.txt --database @plan.mdb --append", kRefused, "plan.mdb"},
       {"to-project @none.txt --database @plan.mdb --overwrite", kFailed,
        "cannot open the celvar input text file"},
       {"to-model --output @a.txt", kRefused, "--database"},
       {"to-model --database @a.mdb --output @a.txt", kRefused, "--project"},
       {"to-model --mpx @a.mpx --interim @a.mdb --output @a.txt", kRefused,
        "--overwrite or --merge"},
       {"to-model --mpx @a.mpx --interim @a.mdb --overwrite --merge 1 --output @a.txt", kRefused,
        "--merge"}});
}

TEST_F(Batch, ToProjectTellsWhatWasWrittenAndProjectsListsIt) {
  const std::string line = "to-project %onboarding.txt --database @plan.mdb";
  Succeed(line + " --mpx @plan.mpx --code-page 932 --today 2/3/2026");
  EXPECT_THAT(out.str(),
              AllOf(HasSubstr("5 tasks, "), HasSubstr("; written: " + folder.Path("plan.mdb") +
                                                      ", " + folder.Path("plan.mpx"))));
  EXPECT_THAT(Read("plan.mpx"), AllOf(StartsWith("MPX,Microsoft Project for Windows,4.0,932\r\n"),
                                      HasSubstr("plan.mpx, Vorn,,,2/3/2026\r\n")));
  const std::string before = Read("plan.mdb");
  EXPECT_EQ(Run(line), kRefused);
  EXPECT_TRUE(Read("plan.mdb") == before);
  Succeed(line + " --append --quiet");
  EXPECT_EQ(out.str() + err.str(), "");
  const auto projects = Projects();
  ASSERT_EQ(projects.size(), 2U);
  EXPECT_EQ(projects[0]["tasks"], 5);
  EXPECT_EQ(projects[1]["id"], 2);
  EXPECT_EQ(projects[1]["name"], projects[0]["name"].get<std::string>() + "(2)");
}

TEST(ProgressLine, TellsHowFarARunIsAndLeavesNoTrace) {
  std::ostringstream terminal;
  ProgressLine line(terminal);
  for (const RunProgress& progress :
       {RunProgress{"Read", 0, 0}, {"Read", 12, 0}, {"Plan", 3, 20}}) {
    line.Show(progress);
  }
  for (int i = 0; i < 2; ++i) line.Clear();
  EXPECT_EQ(terminal.str(), "Read\r    \rRead: 12\r        \rPlan: 3 of 20\r             \r");
}

TEST_F(Batch, AFileOfAnotherKindShowsTheReadersBoxAndFails) {
  folder.Write("wrong.txt", "Just a letter.\n");
  EXPECT_EQ(Run("to-project @wrong.txt --database @plan.mdb --log @log.jsonl"), kFailed);
  EXPECT_THAT(err.str(), HasSubstr("Celvar input text file is not valid"));
  EXPECT_THAT(Log(),
              testing::ElementsAre(nlohmann::json{{"text", "Celvar input text file is not valid"},
                                                  {"title", "IDEF3 to Project 2000"},
                                                  {"icon", "critical"},
                                                  {"buttons", "ok"},
                                                  {"answer", "ok"}}));
  EXPECT_FALSE(IsThere("plan.mdb"));
}

TEST_F(Batch, ChoiceIsTakenFromTheCommandLineOrTheUserCancels) {
  const std::string line = "to-project %bakery.txt --database @plan.mdb --log @log.jsonl";
  EXPECT_EQ(Run(line), kFailed);
  const auto lines = Log();
  ASSERT_EQ(lines.size(), 2U);
  EXPECT_EQ(lines[0]["chooser"]["label1"], "Multiple scenarios found.");
  EXPECT_TRUE(lines[0]["chooser"]["answer"].is_null());
  EXPECT_EQ(lines[1]["buttons"], "yesno");
  EXPECT_EQ(lines[1]["answer"], "yes");
  const std::string first = lines[0]["chooser"]["items"][0];
  EXPECT_THAT(err.str(), HasSubstr(first));
  Succeed(line + " --overwrite --choose '" + first + "'");
  EXPECT_EQ(Log().at(0)["chooser"]["answer"], first);
}

TEST_F(Batch, ATextOfItsOwnIsAskedForAndTheLinesOfTheFileCount) {
  Succeed("to-project %festival.txt --database @plan.mdb");
  Succeed("to-model --database @plan.mdb --project 1 --output @model.txt");
  EXPECT_EQ(Run("to-project @model.txt --database @again.mdb"), kDoneWithMessages);
  EXPECT_THAT(err.str(), AllOf(HasSubstr("model.txt is in the form that Merivane writes"),
                               HasSubstr("--own-text")));
  Succeed("to-project @model.txt --database @again.mdb --overwrite --own-text");
  EXPECT_EQ(err.str(), "");
  EXPECT_THAT(out.str(), StartsWith("15 tasks, 6 resources, "));
  Succeed("to-project %clinic.txt --database @again.mdb --append --own-text");
  Succeed("report @model.txt --output @model.html");
  EXPECT_THAT(out.str(), StartsWith("3 diagrams and the plan;"));

  EXPECT_EQ(Run("check @model.txt --json"), kDoneWithMessages);
  std::vector<std::string> lines;
  std::istringstream text(Read("model.txt"));
  for (std::string line; std::getline(text, line);) lines.push_back(line);
  const auto findings = Json()["findings"];
  const auto unit = std::find_if(findings.begin(), findings.end(), [](const auto& finding) {
    return !finding["element"].is_null() && finding["element"]["kind"] == "unit";
  });
  ASSERT_NE(unit, findings.end());
  EXPECT_THAT(lines[(*unit)["line"].get<std::size_t>() - 1],
              EndsWith("  #" + std::to_string((*unit)["element"]["number"].get<int>()) + "\r"));
}

TEST_F(BatchWithPlan, AModelIsPlannedAgainAsItIsOrAsItWasMerged) {
  const std::string again = "to-project --from @plan.mdb --project 1 --database @again.mdb";
  Succeed(again + " --xml @again.xml");
  EXPECT_EQ(Read("again.xml"), Read("plan.xml"));
  Replace("plan.xml", "<Name>Set up the desk<", "<Name>Set up two desks<");
  Succeed("to-model --xml @plan.xml --interim @plan.mdb --merge 1 --output @model.txt");
  Succeed(again + " --overwrite --xml @merged.xml");
  EXPECT_EQ(Read("merged.xml"), Read("plan.xml"));
  Succeed(again + " --append --quiet");
  Succeed("projects @again.mdb");
  EXPECT_THAT(out.str(), HasSubstr("(2)\t5 tasks"));
}

// A rebuilt model has no project's name, no scenario's ID, and notes with a quote in front.
TEST_F(BatchWithPlan, PlanOfARebuiltModelIsMerged) {
  Succeed("to-model --mpx @plan.mpx --interim @plan.mdb --overwrite --output @model.txt");
  EXPECT_THAT(Read("model.txt"), HasSubstr("Scenario#1"));
  Succeed(
      "to-project --from @plan.mdb --project 1 --database @again.mdb --xml @again.xml --mpx "
      "@again.mpx");
  for (const std::string file : {"--xml @again.xml", "--mpx @again.mpx"}) {
    const std::string merge =
        "to-model " + file + " --interim @again.mdb --merge 1 --output @model.txt --force";
    Succeed(merge);
    Succeed(merge + " --complete");
    EXPECT_THAT(out.str(), HasSubstr("The merged model gives the plan that came in.")) << file;
  }
}

TEST_F(BatchWithPlan, WhatCannotBePlannedAgainIsRefused) {
  Succeed("to-project %clinic.txt --database @again.mdb");
  Sql("delete from Scenario");
  const std::string command = "to-project --database @again.mdb --overwrite ";
  ExpectFailures(
      {{command + "--from @plan.mdb --project 1", kRefused, "holds no model of that project"},
       {command + "--from @plan.mdb --project 7", kRefused, "7"},
       {command + "--from %clinic.txt --project 1", kRefused, "clinic.txt"},
       {command + "--from @none.mdb --project 1", kRefused, "none.mdb"},
       {command + "--from @again.mdb --project 1", kRefused, "are the same file"},
       {command + "--project 1", kRefused, "--from"},
       {command + "%clinic.txt --from @plan.mdb --project 1", kRefused, "--from"},
       {command, kRefused, "MODEL or --from"}});
}

}  // namespace
}  // namespace merivane::test
