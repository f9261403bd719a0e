// A stored plan written as an MPX file and as tables.
#include <gmock/gmock.h>

#include "batch_fixture.h"
#include "raw_database.h"

namespace merivane::test {

namespace {

using ::testing::HasSubstr;
using ::testing::StartsWith;

class ExportCommand : public Batch {
 protected:
  ExportCommand() {
    Succeed({"to-project", Sample("onboarding.txt"), "--database", plan, "--mpx", mpx});
  }
  int Export(const std::vector<std::string>& more) {
    return Run({"export", plan, "--project", "1", "--today", "11/26/2026"}, more);
  }
  static std::string WithoutHeader(const std::string& text) {
    const std::size_t at = text.find("\r\n30,") + 2;
    return text.substr(0, at) + text.substr(text.find("\r\n", at));
  }
  std::string again = folder.Path("again.mpx");
  std::string csv = folder.Path("plan.csv");
};

TEST_F(ExportCommand, GivesTheMpxFileOfTheTranslation) {
  Succeed({"export", plan, "--project", "1", "--mpx", again});
  EXPECT_EQ(WithoutHeader(ReadFile(again)), WithoutHeader(ReadFile(mpx)));
  Succeed({"to-model", "--mpx", again, "--interim", plan, "--merge", "1", "--output", model});
}

TEST_F(ExportCommand, TellsWhatAnMpxFileCantHold) {
  RawDatabase(plan).Ask(
      "update MSP_TASKS set TASK_NAME = 'The \"big\" desk' || char(10) || 'and chair' where "
      "TASK_ID = 2");
  EXPECT_EQ(Export({"--mpx", again}), kDoneWithMessages);
  EXPECT_THAT(ReadFile(again), HasSubstr("70,2,2,The 'big' desk and chair,1.50d,"));
  EXPECT_THAT(err.str(), HasSubstr("1 text held quotes or line ends"));
  RawDatabase(plan).Ask("update MSP_TASKS set TASK_ID = TASK_ID + 32767");
  EXPECT_EQ(Export({"--mpx", again, "--force"}), kFailed);
  EXPECT_THAT(err.str(), HasSubstr("plan.mdb: the plan as planning XML, line "));
}

TEST_F(ExportCommand, WritesTablesForASpreadsheet) {
  RawDatabase(plan).Ask("update MSP_TASKS set TASK_NAME = '=Set, up' where TASK_ID = 2");
  EXPECT_EQ(Export({"--csv", csv}), kDone) << err.str();
  EXPECT_THAT(ReadFile(csv), StartsWith("\xEF\xBB\xBFID,Level,Task,Start,Finish,Days,"));
  EXPECT_THAT(ReadFile(csv),
              HasSubstr("\r\n2,1,\"'=Set, up\",2026-11-27 08:00,2026-11-30 12:00,1.50,1,System "
                        "administrator,no,yes,0.00\r\n"));
  EXPECT_EQ(Export({"--csv", csv, "--table", "resources", "--force"}), kDone) << err.str();
  EXPECT_THAT(ReadFile(csv), HasSubstr("\r\n2,System administrator,2.00,2.00,160.00\r\n"));
  EXPECT_EQ(Export({"--csv", csv, "--table", "assignments", "--force"}), kDone) << err.str();
  EXPECT_THAT(ReadFile(csv), HasSubstr("\r\n5,Work on the first task with the mentor,3,Mentor,"));
}

TEST_F(ExportCommand, CountsTheCostOfARateByItsUnit) {
  RawDatabase(plan).Ask("update MSP_RESOURCES set RES_STD_RATE = 400, RES_STD_RATE_FMT = 3");
  EXPECT_EQ(Export({"--csv", csv, "--table", "resources"}), kDone) << err.str();
  EXPECT_THAT(ReadFile(csv), HasSubstr("\r\n2,System administrator,2.00,2.00,800.00\r\n"));
  RawDatabase(plan).Ask("update MSP_RESOURCES set RES_STD_RATE_FMT = 8");
  EXPECT_EQ(Export({"--csv", csv, "--table", "resources", "--force"}), kDone) << err.str();
  EXPECT_THAT(ReadFile(csv), HasSubstr("\r\n2,System administrator,2.00,2.00,\r\n"));
}

TEST_F(ExportCommand, RefusesWrongNamesAndLeavesWhatStands) {
  const auto before = Files();
  EXPECT_EQ(Export({}), kRefused);
  EXPECT_EQ(Export({"--csv", mpx}), kRefused);
  EXPECT_EQ(Export({"--mpx", mpx}), kRefused);
  EXPECT_THAT(err.str(), HasSubstr("--force to replace it"));
  EXPECT_EQ(Export({"--mpx", again, "--table", "tasks"}), kRefused);
  EXPECT_EQ(Export({"--csv", csv, "--table", "links"}), kRefused);
  // Both are written, or none.
  EXPECT_EQ(Export({"--csv", csv, "--mpx", folder.Path("none/plan.mpx")}), kRefused);
  EXPECT_EQ(Files(), before);
}

}  // namespace
}  // namespace merivane::test
