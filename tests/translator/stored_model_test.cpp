// The model of a database, planned again.
#include "round_fixture.h"

namespace merivane::test {

namespace {

using Lines = std::vector<std::vector<std::string>>;

class PlanAgain : public RoundFixture {
 protected:
  Lines RowsOf(const std::string& sql) { return RawDatabase(databasePath).Rows(sql); }

  // All that a translation gives: every table, the MPX file, the XML.
  Lines Outcome() {
    Lines outcome = {{ReadFile(mpx_), WritePlan()}};
    for (const auto& table : RowsOf("select name from sqlite_master where type = 'table'")) {
      outcome.push_back(table);
      for (auto& row : RowsOf("select * from " + table[0])) outcome.push_back(std::move(row));
    }
    return outcome;
  }

  void ExpectSameAgain(const std::string& model) {
    Translate(model, mpx_);
    const Lines first = Outcome();
    TranslateAgain(mpx_);
    EXPECT_EQ(Outcome(), first);
  }

  // Plans the model of a database again that a plan was brought back into. `wanted`: the tasks
  // of that plan.
  void ExpectPlanAgain() {
    const Lines wanted = RowsOf(
        "select cast(Text1 as integer), Name, Outline, cast(Duration as real) from ProjectAct"
        " where Outline > 0 order by 1, 2");
    TranslateAgain(mpx_);
    EXPECT_EQ(RowsOf("select KV7_PROCOCC_HEX, TASK_NAME, TASK_OUTLINE_LEVEL,"
                     " cast(KV7_PROCOCC_DURATION as real) from MSP_TASKS where TASK_UID > 0"
                     " order by 1, 2"),
              wanted);
  }

  std::string mpx_ = folder.Path("plan.mpx");
};

using PlanAgainOfRandomModels = OfRandomModels<PlanAgain>;
INSTANTIATE_TEST_SUITE_P(Seeds, PlanAgainOfRandomModels, testing::Range(0u, 6u));

TEST_P(PlanAgainOfRandomModels, AFirstTranslationIsTheSameByteByByte) {
  ForSeeds(50, [this](const std::string& model) { ExpectSameAgain(model); });
}

TEST_P(PlanAgainOfRandomModels, ThePlanThatWasBroughtBackComesOut) {
  const auto changed = [](const std::string& plan) {
    return With(plan, {{"<Name>Process 1<", "<Name>Anew<"},
                       {"</Tasks>",
                        "<Task><UID>900</UID><ID>900</ID><Name>Extra</Name><OutlineLevel>1"
                        "</OutlineLevel><Duration>PT24H0M0S</Duration></Task></Tasks>"}});
  };
  int nBroughtBack = 0;
  ForSeeds(5, [&](const std::string& model) {
    Translate(model);
    const std::string plan = changed(WritePlan());
    for (const std::int16_t flag : {std::int16_t{-1}, std::int16_t{0}}) {
      if (flag == 0) Begin();
      State().gMspConn.reset();
      if (!BringBack(plan, flag)) continue;
      ++nBroughtBack;
      ExpectPlanAgain();
    }
  });
  EXPECT_GE(nBroughtBack, 5);
}

TEST_F(PlanAgain, SamplesAreTheSameByteByByte) {
  for (const char* sample : {"bakery", "clinic", "festival", "onboarding"}) {
    SCOPED_TRACE(sample);
    ExpectSameAgain(std::string(MERIVANE_SAMPLES "/") + sample + ".txt");
  }
}

// Resources that a plan brought have no alias, which a translation assigns by; the start date would
// keep the head out of the MPX file.
TEST_F(PlanAgain, ARebuiltModelKeepsItsAssignmentsAndItsStart) {
  Translate(MERIVANE_SAMPLES "/onboarding.txt");
  const Lines before = RowsOf("select TASK_UID, RES_UID from MSP_ASSIGNMENTS");
  const std::string plan = WritePlan();
  Begin();
  State().gMspConn.reset();
  ASSERT_TRUE(BringBack(plan, 0));
  const std::string start = RowsOf("select KV7_PROJ_START_DATE from MSP_PROJECTS").at(0).at(0);
  TranslateAgain(mpx_);
  EXPECT_EQ(RowsOf("select TASK_UID, RES_UID from MSP_ASSIGNMENTS"), before);
  EXPECT_EQ(RowsOf("select KV7_PROJ_START_DATE from MSP_PROJECTS").at(0).at(0), start);
  EXPECT_NE(start, "Null");
  EXPECT_NE(ReadFile(mpx_).find("\r\n30,"), std::string::npos);
}

}  // namespace
}  // namespace merivane::test
