#include "writer_fixture.h"

namespace merivane::test {

namespace {

// A model of two scenarios: 20 holds occurrence 31, which scenario 21 with occurrence 32
// decomposes. Occurrence 31 requires objects of all kinds; for 32, resources were brought back from
// a plan, in a database that has the columns by which they are looked up.
class StoredScenarios : public WriterFixture {
 protected:
  StoredScenarios() {
    AddTask(1, "1", "Build");
    AddTask(2, "1.1", "Lay");
    AddLink(1, 1, 2, 1);
    SqlFile("two_scenarios.sql");
  }
};

TEST_F(StoredScenarios, PlanOfAModelComesOutAsTheModelSaid) {
  Sql("update MSP_TASKS set KV7_PROCOCC_DURATION = null where TASK_UID = 2");
  EXPECT_EQ(Part(Generate(), "Scenario List\n"), Expected("scenarios_of_a_model.txt"));
  EXPECT_TRUE(desktop.boxes.empty());
}

TEST_F(StoredScenarios, RebuiltModelComesOutFlatInTableOrder) {
  OpenPlan();
  WriteRebuiltScenarioList(state, state.gProjectConn.get());
  EXPECT_EQ(Written(), Expected("scenarios_of_a_rebuilt_model.txt"));
}

struct Fault {
  const char* name;
  const char* sql;
  const char* box;  // how the only box begins
  const char* end;  // how the scenario list ends behind the fault
};

void PrintTo(const Fault& fault, std::ostream* out) { *out << fault.name; }

class FaultyModel : public StoredScenarios, public ::testing::WithParamInterface<Fault> {};

TEST_P(FaultyModel, EndsItsScenarioAtTheBox) {
  Sql(GetParam().sql);
  const std::string text = Generate();
  const std::string end = GetParam().end + std::string("End  Scenario List\n");
  EXPECT_TRUE(text.ends_with(end)) << text;
  ASSERT_EQ(desktop.boxes.size(), 1U);
  EXPECT_TRUE(desktop.MessageTexts().front().starts_with(GetParam().box));
  EXPECT_TRUE(result);
}

constexpr const char* kNull = "Invalid use of Null";
constexpr const char* kEndOfTop = "Referent List\nrr\nEnd  Referent List\nEnd  Scenario\n\n";

INSTANTIATE_TEST_SUITE_P(
    Models, FaultyModel,
    ::testing::Values(
        Fault{"NullIdOfAScenario", "update Scenario set ID = null where Num = 21", kNull,
              "  Parent:  Process  #31\n  Type:  Process View\n  Creator:  Bob\n"},
        Fault{
            "NullScenarioOfALinksEnd",
            "update MSP_TASKS set KV7_SCENARIO_HEX = null, KV7_PROC_HEX = null where TASK_UID = 2",
            kNull, "End  Property List\nEnd  Link\nEnd  Link List\nEnd  Scenario\n\n"},
        Fault{"NullEndOfALink",
              "update Links_in_Scenario set Scenario_Num = 21, Destination_Num = null", kNull,
              "End  Junction List\n\nLink List\n"},
        Fault{"EndOfALinkBeyond16Bits",
              "update Links_in_Scenario set Scenario_Num = 21, Origin_Num = 32768", "Overflow",
              "End  Junction List\n\nLink List\n"},
        Fault{"ReferentColumnGone", "alter table Scenario rename column Referent_List to Gone",
              "Item cannot be found", "End  Link List\nReferent List\n"},
        Fault{"ScenarioRowGone", "delete from Scenario where Num = 21", "Either BOF or EOF is True",
              kEndOfTop},
        Fault{"TaskNumberBeyond16Bits", "update MSP_TASKS set TASK_UID = 40000 where TASK_UID = 2",
              "Overflow", "      End  Constraint List\n    End  Elaboration\n  End  Process \n"},
        Fault{"NullOutlineNumberOfAParent",
              "update MSP_TASKS set TASK_OUTLINE_NUM = null where TASK_UID = 1", kNull, kEndOfTop},
        Fault{"QuoteInAnOutlineNumber",
              "update MSP_TASKS set TASK_OUTLINE_NUM = '1'';' where TASK_UID = 1", "Syntax error",
              kEndOfTop},
        Fault{"ColumnOfBroughtResourcesGone", "alter table MSP_RESOURCES drop column num",
              "No column 'num'", "Sim_Entity\nCycle-Time:  1\n"}),
    [](const auto& info) { return std::string(info.param.name); });

TEST_F(StoredScenarios, RebuiltListHandsItsFailuresOnAndDefaultsANullId) {
  Sql("update Scenario set ID = null where Num = 21;"
      "update MSP_TASKS set KV7_PROCOCC_DURATION = null where TASK_UID = 1");
  OpenPlan();
  EXPECT_THROW(WriteRebuiltScenarioList(state, state.gProjectConn.get()), RunTimeError);
  const std::string text = Written();
  EXPECT_NE(text.find("  Creator:  \n  ID  1\n"), text.npos);
  EXPECT_TRUE(text.ends_with("    Elaboration\n      Object Occurrence List\n")) << text;
  EXPECT_TRUE(desktop.boxes.empty());
}

}  // namespace
}  // namespace merivane::test
