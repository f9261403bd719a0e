#include <gmock/gmock.h>

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
