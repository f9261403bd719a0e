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
    Sql("update MSP_TASKS set KV7_PROC_HEX = 11, KV7_PROCOCC_HEX = 31, KV7_SCENARIO_HEX = 20,"
        " KV7_PROCOCC_ID = 6, KV7_PROCOCC_REF = 'A1', KV7_PROCOCC_COLUMN = '3',"
        " KV7_PROCOCC_ROW = '4', KV7_PROCOCC_FACT_LIST = 'f', KV7_PROCOCC_CONSTRAINT_LIST = 'c',"
        " KV7_PROCOCC_DURATION = '2.5' where TASK_UID = 1;"
        "update MSP_TASKS set KV7_PROC_HEX = 12, KV7_PROCOCC_HEX = 32, KV7_SCENARIO_HEX = 21,"
        " KV7_PROCOCC_DURATION = '1' where TASK_UID = 2;"
        "insert into Activity_Pool (Num, Msp_ProjID) values (11, 1), (12, 1);"
        "insert into Scenario (Num, Msp_ProjID, Parent_Num, Type, Creator, ID) values"
        " (21, 1, 31, 'Process View', 'Bob', 0); insert into Scenario values (20, 1, 'House', 0,"
        " '', 'Role View', 'Ann', 8, 1.5, 'Draft', '1', '2', 'pu', 'vi', 'co', 'de', 'oo', 'ff',"
        " 'cc', 'nn', 'ss', 'rr', 'right', 0, 1);"
        "insert into Junctions_in_Scenario values (40, 1, 20, 'X1', 'Fan Out', 'OR', '1', '2',"
        " '5', '6', 'g', 'o', 'f', 'c', 'n', 'p', 0); insert into Junctions_in_Scenario"
        " (Num, Msp_ProjID, Scenario_Num) values (41, 1, 20);"
        "insert into Links_in_Scenario (Num, Msp_ProjID, Scenario_Num, Origin_Num, Destination_Num,"
        " ID, Type, Glossary, Object_Occ_List, Fact_List, Constraint_List, Property_List) values"
        " (50, 1, 20, 31, 40, 3, 'Relational', 'g', 'o', 'f', 'c', 'p');"
        "insert into Links_in_Scenario (Num, Msp_ProjID, Scenario_Num, Origin_Num, Destination_Num)"
        " values (51, 1, 20, 41, 40), (52, 1, 20, 31, 32), (53, 1, 20, 31, 99);"
        "insert into MSP_RESOURCES (PROJ_ID, RES_UID, KV7_OBJ_HEX, KV7_OBJ_CELVAR_TYPE,"
        " KV7_OBJ_ALIAS) values (1, 1, 60, 'Entity', 'e'), (1, 2, 61, 'Transport', 't'),"
        " (1, 3, 62, 'Shared Resource', 'mason'), (1, 4, 63, 'Shared Resource', 'crane'),"
        " (1, 5, 64, null, 'x'); alter table MSP_RESOURCES add column num int;"
        "alter table MSP_RESOURCES add column Msp_ProjID int;"
        "alter table MSP_RESOURCES add column Alias text;"
        "update MSP_RESOURCES set num = KV7_OBJ_HEX, Msp_ProjID = 1, Alias = upper(KV7_OBJ_ALIAS);"
        "insert into Object_in_Activity_in_Scenario (Scenario_Num, Activity_Num, Object_Occ_Num,"
        " Msp_ProjID, Labor_Rule, Qty, Brought_from_Project) values (20, 31, 60, 1, 'own', 1, 0),"
        " (20, 31, 60, 1, 'None', 1, 0), (20, 31, 61, 1, 'x', 1, 0), (20, 31, 64, 1, 'x', 1, 0),"
        " (20, 31, 65, 1, 'x', 1, 0), (20, 31, 60, 2, 'x', 1, 0), (21, 32, 60, 1, 'x', 1, 0),"
        " (21, 32, 62, 1, '', 2, 1), (21, 32, 61, 1, '', 9, 1), (21, 32, 63, 1, '', 1, 1)");
  }

  std::string Rebuild() {
    OpenPlan();
    WriteRebuiltScenarioList(state, state.gProjectConn.get());
    return Written();
  }
};

TEST_F(StoredScenarios, PlanOfAModelComesOutAsTheModelSaid) {
  Sql("update MSP_TASKS set KV7_PROCOCC_DURATION = null where TASK_UID = 2");
  EXPECT_EQ(Part(Generate(), "Scenario List\n"), Expected("scenarios_of_a_model.txt"));
  EXPECT_TRUE(desktop.shown.empty());
}

TEST_F(StoredScenarios, RebuiltModelComesOutFlatInTableOrder) {
  EXPECT_EQ(Rebuild(), Expected("scenarios_of_a_rebuilt_model.txt"));
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
  ASSERT_EQ(desktop.shown.size(), 1U);
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
  EXPECT_TRUE(desktop.shown.empty());
}

}  // namespace
}  // namespace merivane::test
