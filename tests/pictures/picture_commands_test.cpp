// What is drawn of a model and of a plan.
#include <algorithm>

#include "batch_fixture.h"

namespace merivane::test {

namespace {

TEST_F(Batch, PicturesAreDrawnOfATextAndOfATranslatedModel) {
  Succeed("draw %festival.txt --output @model.svg");
  EXPECT_THAT(out.str(), HasSubstr("5 diagrams; written: " + folder.Path("model.svg")));
  const std::string all = Read("model.svg");
  EXPECT_THAT(all, Not(HasSubstr("Not in the plan")));
  Succeed("to-project %festival.txt --database @plan.mdb --choose 'Sale by mail order'");
  Succeed(
      "draw --database @plan.mdb --project 1 --scenario 'Stage building' --output @model.svg "
      "--force");
  EXPECT_LT(Read("model.svg").size(), all.size());
  EXPECT_THAT(Read("model.svg"),
              HasSubstr("Not in the plan: junction J9 (XOR) takes another path"));
  Succeed("chart @plan.mdb --project 1 --output @chart.svg");
  EXPECT_THAT(Read("chart.svg"), HasSubstr(">Carpenter, Flatbed truck</text>"));
}

TEST_F(Batch, AReportGoesOnWithoutThePlanThatTheModelLeavesOpen) {
  const std::string command = "report %bakery.txt --output @report.html";
  EXPECT_EQ(Run(command), kDoneWithMessages);
  EXPECT_THAT(err.str(), HasSubstr("--choose"));
  EXPECT_THAT(Read("report.html"), HasSubstr("Multiple scenarios found."));
  EXPECT_EQ(Run(command), kRefused);
  Succeed(command + " --force --choose 'Weekday bread'");
  EXPECT_THAT(Read("report.html"), AllOf(HasSubstr("another scenario was chosen in the place of"),
                                         HasSubstr("id=\"plan-task-1\"")));
}

TEST_F(Batch, PicturesThatAreRefusedOrFailLeaveTheFile) {
  folder.Write("model.svg", "precious");
  folder.Write("wrong.txt", "Just a letter.\n");
  const std::string forced = " --output @model.svg --force";
  ExpectFailures({{"draw %bakery.txt --output @model.svg", kRefused, "--force"},
                  {"draw %bakery.txt --output @a.jpg", kRefused, "a.jpg"},
                  {"draw %bakery.txt --output @none/a.svg", kRefused, "a.svg"},
                  {"draw %bakery.txt --scenario x" + forced, kRefused, "x"},
                  {"draw" + forced, kRefused, "--database"},
                  {"chart @wrong.txt --project 1 --output @model.svg", kRefused, "--force"},
                  {"chart @wrong.txt --project 1" + forced, kFailed, "wrong.txt"},
                  {"draw @wrong.txt" + forced, kFailed, "not valid"},
                  {"draw @none.txt" + forced, kFailed, "cannot open"},
                  {"draw --database @wrong.txt --project 1" + forced, kFailed, "wrong.txt"}});
}

// The scratch database is the program's own: a page of it that can't be read is no end of the text.
TEST_F(Batch, PicturesOfWhatTheMachineCouldNotReadAreNotWritten) {
  const std::string links = "Links_in_Scenario_by_Origin_Num", tasks = "MSP_TASKS_by_TASK_UID";
  const std::tuple<std::string, std::string, int> rows[] = {
      {"draw", links, kFailed},
      {"draw", tasks, kDone},  // needs no table of the plan
      {"report", links, kFailed},
      {"report", tasks, kFailed}};
  for (const auto& [command, index, status] : rows) {
    folder.Write("damaged.mdb", WithoutPageOf(index, TemplateDatabase()));
    const std::string output = command == "draw" ? "a.svg" : "a.html";
    folder.Write(output, "precious");
    EXPECT_EQ(Run(command + " %onboarding.txt --template @damaged.mdb --force --output @" + output),
              status)
        << command << index << err.str();
    EXPECT_EQ(Read(output) == "precious", status == kFailed) << command << index;
  }
}

TEST_F(Batch, PicturesOfATextThatBreaksOffSaySo) {
  const std::string text = ReadFile(MERIVANE_SAMPLES "/festival.txt");
  const std::size_t second = text.find("Scenario  ", text.find("End  Scenario\r\n"));
  const std::string head = text.substr(0, second + 400);
  folder.Write("cut.txt", head);
  const std::string note = "Read in part: the text breaks off in line " +
                           std::to_string(std::count(head.begin(), head.end(), '\n') + 1) +
                           ", in scenario 2 of the text.";
  EXPECT_EQ(Run("draw @cut.txt --output @cut.svg"), kDoneWithMessages) << err.str();
  EXPECT_THAT(Read("cut.svg"), HasSubstr(note));
  EXPECT_EQ(Run("report @cut.txt --output @cut.html"), kDoneWithMessages) << err.str();
  EXPECT_THAT(Read("cut.html"), HasSubstr("<p class=\"error\">" + note));

  folder.Write("cut.txt", text.substr(0, text.find("Scenario List")));
  EXPECT_EQ(Run("report @cut.txt --output @cut.html --force"), kDoneWithMessages) << err.str();
  EXPECT_THAT(Read("cut.html"),
              AllOf(HasSubstr("in front of its scenarios."), HasSubstr("class=\"error\">Error<")));
  ExpectFailures({{"draw @cut.txt --output @cut.svg --force", kFailed, ""},
                  {"report @gone.txt --output @cut.html --force", kFailed, "cannot open"}});
}

TEST_F(BatchWithPlan, AChartSaysWhereItsDatesComeFromAndIsRefusedWithoutATask) {
  const std::string chart = "chart @plan.mdb --project 1 --output @plan.svg --force";
  Succeed(chart);
  const std::string computed = "dates computed from durations and links";
  EXPECT_THAT(out.str(), HasSubstr(computed));
  EXPECT_THAT(Read("plan.svg"), HasSubstr(computed));
  Replace("plan.xml", "Set up the desk", "Set up the old desk");
  const std::string whole = Read("plan.xml");
  const std::size_t start = whole.find("<Start>", whole.find("<UID>2</UID>"));
  Replace("plan.xml", whole.substr(start, whole.find("</Start>", start) - start),
          "<Start>2001-02-03T09:30:00");
  Copy("plan.mdb", "old.mdb");
  Sql("delete from MSP_TASKS where TASK_UID = 2");
  for (const std::string before : {"@plan.xml", "@old.mdb"}) {
    Succeed(chart + " --columns --against " + before);
    EXPECT_THAT(Read("plan.svg"), HasSubstr("No longer in the plan"));
    EXPECT_EQ(Read("plan.svg").find("before: Feb 3, 2001 9:30") != std::string::npos,
              before == "@plan.xml");
  }
  ExpectFailures({{chart + " --against %bakery.txt", kFailed, "bakery.txt"}});
  Sql("delete from MSP_TASKS where TASK_UID > 0");
  ExpectFailures({{chart, kFailed, "holds no task"}});
}

}  // namespace
}  // namespace merivane::test
