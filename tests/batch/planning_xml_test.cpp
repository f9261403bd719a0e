#include <gmock/gmock.h>

#include <algorithm>
#include <nlohmann/json.hpp>

#include "batch_fixture.h"
#include "raw_database.h"

namespace merivane::test {

namespace {

using testing::HasSubstr;

class BatchXml : public Batch {
 protected:
  int ToModel(const std::vector<std::string>& more) {
    return Run({"to-model", "--xml", xml, "--interim", plan, "--output", model}, more);
  }
  std::string xml = folder.Path("plan.xml");
};

TEST_F(BatchXml, PlanGoesOutIsChangedAndComesBack) {
  ASSERT_EQ(ToProject(Sample("onboarding.txt"), {"--xml", xml, "--mpx", mpx}), 0) << err.str();
  EXPECT_THAT(out.str(), HasSubstr("plan.xml"));
  EXPECT_EQ(Run({"export", plan, "--project", "1", "--xml", folder.Path("again.xml")}), 0);
  EXPECT_EQ(ReadFile(folder.Path("again.xml")), ReadFile(xml));
  Replace(xml, "<Name>Set up the desk</Name>", "<Name>Set up the room</Name>");
  EXPECT_EQ(ToModel({"--merge", "1"}), 0) << err.str();
  EXPECT_THAT(ReadFile(model), HasSubstr("Set up the room"));
  EXPECT_TRUE(fs::exists(plan + ".bak"));
  EXPECT_EQ(Run({"export", plan, "--project", "1", "--xml", xml, "--force"}), 0) << err.str();
  EXPECT_THAT(ReadFile(xml), HasSubstr("<Name>Set up the room</Name>"));
}

// Units that start or end together among others: the table tells such a pair at the one task, the
// file at the other. A note of MPX comes with its quotation marks.
TEST_F(BatchXml, APlanMergesAsXmlAsItDoesAsMpx) {
  ASSERT_EQ(ToProject(Sample("festival.txt"), {"--xml", xml, "--mpx", mpx}), 0) << err.str();
  const std::string other = folder.Path("other.mdb");
  fs::copy_file(plan, other);
  ASSERT_EQ(ToModel({"--merge", "1"}), 0) << err.str();
  const std::string byXml = ReadFile(model);
  const std::string byMpx = folder.Path("mpx.txt");
  ASSERT_EQ(Run({"to-model", "--mpx", mpx, "--interim", other, "--output", byMpx, "--merge", "1"}),
            0)
      << err.str();
  const auto withoutMarks = [](std::string text) {
    std::erase_if(text, [](char c) { return c == '"' || c == '\r'; });
    const auto sameLineEnds = [](char a, char b) { return a == '\n' && b == '\n'; };
    text.erase(std::unique(text.begin(), text.end(), sameLineEnds), text.end());
    return text;
  };
  EXPECT_EQ(withoutMarks(byXml), withoutMarks(ReadFile(byMpx)));
  const std::string read =
      "select PID || ':' || coalesce(Predecessor, '') || char(10) from ProjectAct";
  EXPECT_EQ(RawDatabase(plan).Ask(read), RawDatabase(other).Ask(read));
}

TEST_F(BatchXml, RunThatFailsOrIsRefusedLeavesEveryFile) {
  ASSERT_EQ(ToProject(Sample("onboarding.txt"), {"--xml", xml}), 0);
  const std::string bad = folder.Write("bad.xml", "<Project><Tasks><Task><UID>x</UID></Task>");
  folder.Write("taken.xml", "old");
  const auto files = Files();
  struct Case {
    int status;
    std::vector<std::string> arguments;
    const char* told;
  };
  const std::vector<Case> cases = {
      {1,
       {"to-model", "--xml", bad, "--interim", plan, "--output", model, "--merge", "1"},
       "line 1"},
      {1,
       {"to-model", "--xml", bad, "--interim", plan, "--output", model, "--overwrite"},
       "line 1"},
      {2,
       {"to-model", "--xml", xml, "--interim", plan, "--output", model},
       "--overwrite or --merge"},
      {2, {"to-model", "--xml", xml, "--mpx", mpx, "--interim", plan, "--output", model}, "--mpx"},
      {2, {"export", plan, "--project", "1", "--xml", folder.Path("taken.xml")}, "--force"},
      {2, {"export", plan, "--project", "7", "--xml", folder.Path("new.xml")}, "no project '7'"},
      {2, {"export", plan, "--project", "1", "--xml", plan}, "no name of planning XML"},
      {2,
       {"to-project", Sample("clinic.txt"), "--database", folder.Path("new.mdb"), "--xml", xml},
       "--force"},
  };
  for (const Case& failure : cases) {
    EXPECT_EQ(Run(failure.arguments), failure.status) << err.str();
    EXPECT_THAT(err.str(), HasSubstr(failure.told));
    EXPECT_EQ(Files(), files) << failure.told;
  }
}

// Of all that a foreign plan may hold; a resource that doesn't work comes back as what it was.
TEST_F(BatchXml, WhatAModelDoesNotTakeIsToldInOneMessage) {
  xml = folder.Write(
      "plan.xml",
      "<Project xmlns=\"http://schemas.microsoft.com/project\"><Name>P</Name>"
      "<MinutesPerDay>420</MinutesPerDay><Tasks>"
      "<Task><UID>1</UID><ID>1</ID><Name>Dig</Name><OutlineLevel>1</OutlineLevel><Manual>1</Manual>"
      "<Duration>PT14H0M0S</Duration><ConstraintType>4</ConstraintType>"
      "<PercentComplete>50</PercentComplete></Task>"
      "<Task><UID>2</UID><ID>2</ID><Name>Dropped</Name><OutlineLevel>1</OutlineLevel>"
      "<Active>0</Active><Manual>1</Manual></Task>"
      "<Task><UID>3</UID><ID>3</ID><Name>Dropped too</Name><OutlineLevel>2</OutlineLevel>"
      "<Active>0</Active></Task>"
      "<Task><UID>4</UID><ID>4</ID><Name>Stays above</Name><OutlineLevel>1</OutlineLevel>"
      "<Active>0</Active></Task>"
      "<Task><UID>5</UID><ID>5</ID><Name>Pour</Name><OutlineLevel>2</OutlineLevel>"
      "<Duration>PT7H0M0S</Duration><DurationFormat>8</DurationFormat>"
      "<PredecessorLink><PredecessorUID>1</PredecessorUID><Type>1</Type><LinkLag>4200</LinkLag>"
      "</PredecessorLink><PredecessorLink><PredecessorUID>3</PredecessorUID><Type>1</Type>"
      "</PredecessorLink><PredecessorLink><PredecessorUID>5</PredecessorUID><Type>1</Type>"
      "<CrossProject>1</CrossProject></PredecessorLink></Task></Tasks>"
      "<Resources><Resource><UID>1</UID><ID>1</ID><Name>Cement</Name><Type>0</Type>"
      "<MaterialLabel>t</MaterialLabel><Notes>grey</Notes></Resource>"
      "<Resource><UID>2</UID><ID>2</ID><Name>Travel</Name><Type>0</Type>"
      "<IsCostResource>1</IsCostResource></Resource></Resources>"
      "<Assignments><Assignment><UID>1</UID><TaskUID>1</TaskUID><ResourceUID>1</ResourceUID>"
      "<Units>12</Units></Assignment></Assignments></Project>");
  ASSERT_EQ(ToModel({"--overwrite"}), 3) << err.str();
  EXPECT_THAT(
      err.str(),
      HasSubstr("A model doesn't take everything of this plan:\n2 inactive tasks: left out\n"
                "1 task scheduled by hand: the duration is taken, the dates aren't\n"
                "1 material resource: an object whose glossary tells the kind\n"
                "1 cost resource: an object whose glossary tells the kind\n"
                "1 lag of a link: left out\n"
                "1 duration that runs day and night: taken as working time\n"
                "1 link to another project: left out\n1 constraint of a task: left out\n"
                "1 task with progress: the progress is left out"));
  const std::string text = ReadFile(model);
  EXPECT_THAT(text, testing::AllOf(HasSubstr("Resource kind: Material (t)\r\n"), HasSubstr("grey"),
                                   HasSubstr("Stays above"), testing::Not(HasSubstr("Dropped"))));
  EXPECT_EQ(RawDatabase(plan).Ask("select Duration from ProjectAct where Name = 'Dig'"), "2.00");
  const std::string again = folder.Path("again.xml");
  EXPECT_EQ(Run({"export", plan, "--project", "1", "--xml", again}), 0) << err.str();
  EXPECT_THAT(ReadFile(again),
              testing::AllOf(HasSubstr("<MaterialLabel>t</MaterialLabel>"),
                             HasSubstr("<IsCostResource>1</IsCostResource>"),
                             HasSubstr("<Notes>grey</Notes>"), HasSubstr("<Work>PT12H0M0S</Work>"),
                             testing::Not(HasSubstr("PT192H"))));
  ASSERT_EQ(ToProject(Sample("onboarding.txt"), {"--overwrite"}), 0);  // one that can be merged
  Run({"to-model", "--xml", xml, "--interim", plan, "--merge", "1", "--dry-run", "--json"});
  const auto left = nlohmann::json::parse(out.str())["notTaken"];
  EXPECT_EQ(left["inactiveTasks"], (std::vector{2, 3}));
  EXPECT_EQ(left["lags"], std::vector{5});
}

// By what the file is, not by how it is called.
TEST_F(BatchXml, PlansInOtherFormsAreToldWhatToDoWithThem) {
  const std::string file("\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1 plan", 13);
  const std::string mpp = folder.Write("plan.mpp", file);
  const std::string renamed = folder.Write("renamed.mdb", file);
  const std::string mpd = folder.Write("plan.mpd", "x");
  const auto files = Files();
  const auto told = [&](const std::vector<std::string>& arguments) {
    EXPECT_EQ(Run(arguments), 2);
    EXPECT_EQ(Files(), files);
    return err.str();
  };
  const std::string saveAsXml = "Save it there as XML";
  EXPECT_THAT(told({"projects", mpp}), HasSubstr(saveAsXml));
  EXPECT_THAT(told({"to-model", "--database", renamed, "--project", "1", "--output", model}),
              HasSubstr(saveAsXml));
  EXPECT_THAT(told({"to-model", "--database", mpp, "--project", "1", "--output", model}),
              testing::AllOf(HasSubstr("Incorrect File Type"), HasSubstr(saveAsXml)));
  EXPECT_THAT(told({"to-model", "--database", mpd, "--project", "1", "--output", model}),
              HasSubstr("a copy of it whose name ends in .mdb"));
  EXPECT_THAT(told({"projects", mpd}), testing::Not(HasSubstr("Save it")));
}

// A real database whose table of projects bears another name stands for one of an earlier edition.
TEST_F(BatchXml, DatabaseOfAnEarlierEditionIsToldAsSuch) {
  const std::string real = std::string(MERIVANE_PLANS) + "/mpp9relations.mpd";
  if (!fs::exists(real)) GTEST_SKIP() << real << " is not there";
  std::string bytes = ReadFile(real);
  const std::string name = "MSP_PROJECTS";
  std::string wide;
  for (const char letter : name) wide += {letter, '\0'};
  for (const std::string& form : {name, wide}) {
    for (std::size_t at = bytes.find(form); at != std::string::npos; at = bytes.find(form, at)) {
      bytes[at] = 'X';
    }
  }
  const std::string early = folder.Write("early.mdb", bytes);
  EXPECT_EQ(Run({"projects", early}), 2);
  EXPECT_THAT(err.str(), testing::AllOf(HasSubstr("No table"), HasSubstr("Microsoft Project 98")));
  EXPECT_NE(Run({"export", early, "--project", "1", "--xml", folder.Path("early.xml")}), 0);
  EXPECT_THAT(err.str(), HasSubstr("open it once in a later edition"));
}

TEST_F(BatchXml, ExportTellsWhatCannotBeInOneMessage) {
  ASSERT_EQ(ToProject(Sample("onboarding.txt"), {"--xml", xml}), 0);
  std::string sql =
      "update MSP_PROJECTS set PROJ_OPT_MINUTES_PER_DAY = 0;"
      "insert into MSP_CALENDARS (PROJ_ID, CAL_UID, CAL_IS_BASE_CAL, CAL_NAME)"
      " values (1, 1, -1, 'Standard');";
  for (int day = 1; day <= 7; ++day) {
    sql +=
        "insert into MSP_CALENDAR_DATA (PROJ_ID, CAL_UID, CD_DAY_OR_EXCEPTION, CD_WORKING)"
        " values (1, 1, " +
        std::to_string(day) + ", 0);";
  }
  EXPECT_EQ(RawDatabase(plan).Run(sql), 0);
  EXPECT_EQ(Run({"export", plan, "--project", "1", "--xml", xml, "--force"}), 3);
  EXPECT_THAT(err.str(), testing::AllOf(HasSubstr("0 minutes a day"),
                                        HasSubstr("'Standard' has no working time")));
  EXPECT_THAT(out.str() + err.str(), HasSubstr("1 message was shown"));
  EXPECT_THAT(ReadFile(xml), HasSubstr("<MinutesPerDay>480</MinutesPerDay>"));
}

TEST_F(BatchXml, CircleOfLinksStopsTheExportAndPutsTheRunBack) {
  ASSERT_EQ(ToProject(Sample("onboarding.txt"), {"--xml", xml}), 0);
  const std::string once = "<PredecessorUID>1</PredecessorUID>";
  Replace(xml, once, "<PredecessorUID>5</PredecessorUID>");
  EXPECT_EQ(ToModel({"--overwrite"}), 0) << err.str();
  const auto files = Files();
  EXPECT_EQ(Run({"export", plan, "--project", "1", "--xml", xml, "--force"}), 1);
  EXPECT_THAT(err.str(), HasSubstr("run in a circle through the tasks"));
  EXPECT_EQ(Files(), files);
}

}  // namespace
}  // namespace merivane::test
