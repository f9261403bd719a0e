#include "writer_fixture.h"

namespace merivane::test {

namespace {

// A model of two scenarios: 20 holds occurrence 31, which scenario 21 with occurrence 32
// decomposes.
class StoredScenarios : public WriterFixture {
 protected:
  StoredScenarios() {
    AddTask(1, "1", "Build");
    AddTask(2, "1.1", "Lay");
    Sql("update MSP_TASKS set KV7_PROC_HEX = 11, KV7_PROCOCC_HEX = 31, KV7_SCENARIO_HEX = 20,"
        " KV7_PROCOCC_ID = 6, KV7_PROCOCC_REF = 'A1', KV7_PROCOCC_COLUMN = '3',"
        " KV7_PROCOCC_ROW = '4', KV7_PROCOCC_FACT_LIST = 'f', KV7_PROCOCC_CONSTRAINT_LIST = 'c',"
        " KV7_PROCOCC_DURATION = '2.5' where TASK_UID = 1;"
        "update MSP_TASKS set KV7_PROC_HEX = 12, KV7_PROCOCC_HEX = 32, KV7_SCENARIO_HEX = 21,"
        " KV7_PROCOCC_DURATION = '1' where TASK_UID = 2");
    Sql("insert into Activity_Pool (Num, Msp_ProjID) values (11, 1), (12, 1)");
    Sql("insert into Scenario (Num, Msp_ProjID, Parent_Num, Type, Creator, ID) values"
        " (21, 1, 31, 'Process View', 'Bob', 0); insert into Scenario values (20, 1, 'House', 0,"
        " '', 'Role View', 'Ann', 8, 1.5, 'Draft', '1', '2', 'pu', 'vi', 'co', 'de', 'oo', 'ff',"
        " 'cc', 'nn', 'ss', 'rr', 'right', 0, 1)");
    Sql("insert into Junctions_in_Scenario values (40, 1, 20, 'X1', 'Fan Out', 'OR', '1', '2',"
        " '5', '6', 'g', 'o', 'f', 'c', 'n', 'p', 0); insert into Junctions_in_Scenario"
        " (Num, Msp_ProjID, Scenario_Num) values (41, 1, 20)");
    Sql("insert into Links_in_Scenario (Num, Msp_ProjID, Scenario_Num, Origin_Num, Destination_Num,"
        " ID, Type, Glossary, Object_Occ_List, Fact_List, Constraint_List, Property_List) values"
        " (50, 1, 20, 31, 40, 3, 'Relational', 'g', 'o', 'f', 'c', 'p');"
        "insert into Links_in_Scenario (Num, Msp_ProjID, Scenario_Num, Origin_Num, Destination_Num)"
        " values (51, 1, 20, 41, 40), (52, 1, 20, 31, 32), (53, 1, 20, 31, 99)");
    AddLink(1, 1, 2, 1);
  }

  std::string Rebuild() {
    OpenPlan();
    WriteRebuiltScenarioList(state, state.gProjectConn.get());
    return Written();
  }

  const std::string topHead =
      "Scenario  20|  Name:  House|  ID  8|  Revision Number  1.5|  Review Status:  Draft|"
      "  Date Created:  1|  Last Modified:  2|[  Purpose=pu][  Viewpoint=vi][  Context=co]"
      "[  Description=de]{  =oo=ff=cc}[  Note List=nn][  Source List=ss]|"
      "Process Occurrence List||";
  const std::string childFront = "Scenario  21|  Name:  Scenario 1|  Parent:  Process  #31|";
  const std::string childValues =
      "  ID  1|  Revision Number  1|  Review Status:  Working|  Date Created:  |"
      "  Last Modified:  |";
  const std::string junctions =
      "Junction List||Junction  40|  ID  X1|  Cardinality:  Fan Out|  Type:  OR|"
      "  Date Created:  1|  Last Modified:  2|  User Placement Column:  5|"
      "  User Placement Row:  6|[  Glossary=g]{  =o=f=c}[  Note List=n]|[Property List=p]"
      "End  Junction||Junction  41|  ID  J1|  Cardinality:  |  Type:  |  Date Created:  |"
      "  Last Modified:  |[  Glossary]{  ===}[  Note List=]|[Property List=]End  Junction|"
      "End  Junction List||";
  const std::string links =
      "Link List|Link  50|  Origin  #31|  Destination  #40|  ID  3|  Type:  Relational|"
      "[  Glossary=g]{  =o=f=c}|[Property List=p]End  Link|"
      "Link  51|  Origin  #41|  Destination  #40|  ID  1|  Type:  Precedence|"
      "[  Glossary]{  ===}|[Property List=]End  Link|End  Link List|";
};

TEST_F(StoredScenarios, PlanOfAModelComesOutAsTheModelSaid) {
  EXPECT_EQ(Lines(Part(Generate(), "Scenario List|")),
            Lines("Scenario List|" + topHead +
                  "  Process  11  #31|    Name:  Build|    ID:  1|    IDEF0 Ref:  A1|"
                  "    User Placement Column:  3|    User Placement ROW:  4|    Elaboration|"
                  "[      Object Occurrence List][      Fact List=f][      Constraint List=c]"
                  "    End  Elaboration|  End  Process |End  Process Occurrence List|" +
                  junctions + links + "[Referent List=rr]End  Scenario||" + childFront +
                  "  Type:  Process View|  Creator:  Bob|" + childValues +
                  "[  Purpose=][  Viewpoint=][  Context=][  Description=]{  ===}[  Note List=]"
                  "[  Source List=]|Process Occurrence List||"
                  "  Process  12  #32|    Name:  Lay|    ID:  2|    IDEF0 Ref:  |"
                  "    User Placement Column:  |    User Placement ROW:  |    Elaboration|"
                  "[      Object Occurrence List][      Fact List=][      Constraint List=]"
                  "    End  Elaboration|  End  Process |End  Process Occurrence List|"
                  "[Junction List]|[Link List][Referent List]End  Scenario||End  Scenario List|"));
  EXPECT_TRUE(desktop.shown.empty());
}

TEST_F(StoredScenarios, RebuiltModelComesOutFlatInTableOrder) {
  EXPECT_EQ(
      Lines(Rebuild()),
      Lines("Scenario List||" + childFront + "  Type:  Role View|  Creator:  |" + childValues +
            "[  Purpose][  Viewpoint][  Context][  Description]{  }[  Note List][  Source List]|"
            "Process Occurrence List||  Process  32  #32|    Name:  Lay|    ID:  1|"
            "    IDEF0 Ref:  |{    }  End  Process |End  Process Occurrence List||"
            "[Junction List]|[Referent List]|[Link List]End  Scenario|" +
            topHead +
            "  Process  31  #31|    Name:  Build|    ID:  6|    IDEF0 Ref:  A1|"
            "    User Placement Column:  3|    User Placement Row:  4|    Elaboration|"
            "[      Object Occurrence List][      Fact List=f][      Constraint List=c]"
            "    End  Elaboration|  End  Process |End  Process Occurrence List||" +
            junctions + "[Referent List=rr]|" + links +
            "Decomp-rightmost:  right|End  Scenario|End  Scenario List||"));
}

// Occurrence 31 requires objects of all kinds; for 32, resources were brought back from a plan.
class ObjectOccurrences : public StoredScenarios {
 protected:
  ObjectOccurrences() {
    Sql("insert into MSP_RESOURCES (PROJ_ID, RES_UID, KV7_OBJ_HEX, KV7_OBJ_CELVAR_TYPE,"
        " KV7_OBJ_ALIAS) values (1, 1, 60, 'Entity', 'e'), (1, 2, 61, 'Transport', 't'),"
        " (1, 3, 62, 'Shared Resource', 'mason'), (1, 4, 63, 'Shared Resource', 'crane'),"
        " (1, 5, 64, null, 'x')");
    Sql("insert into Object_in_Activity_in_Scenario (Scenario_Num, Activity_Num, Object_Occ_Num,"
        " Msp_ProjID, Labor_Rule, Qty, Brought_from_Project) values (20, 31, 60, 1, 'own', 1, 0),"
        " (20, 31, 60, 1, 'None', 1, 0), (20, 31, 61, 1, 'x', 1, 0), (20, 31, 64, 1, 'x', 1, 0),"
        " (20, 31, 65, 1, 'x', 1, 0), (20, 31, 60, 2, 'x', 1, 0), (21, 32, 60, 1, 'x', 1, 0),"
        " (21, 32, 62, 1, '', 2, 1), (21, 32, 61, 1, '', 9, 1), (21, 32, 63, 1, '', 1, 1)");
  }

  static std::string Object(const std::string& number, const std::string& entity = "") {
    return "        Object-Occurrence  " + number +
           "||          Property List|            Property|"
           "              Name:  @Simulation Information|              Glossary|" +
           entity +
           "              End  Glossary|            End  Property|          End  Property List|"
           "        End  Object-Occurrence|";
  }
  static std::string Entity(const std::string& cycleTime, const std::string& labor) {
    return Object("60", "Sim_Entity|Cycle-Time:  " + cycleTime + "|Labor-Rule:  " + labor +
                            "|End  Sim_Entity|");
  }
  static std::string ObjectsOf(const std::string& text, const std::string& occurrence) {
    return Part(Part(text, "#" + occurrence + "|    Name"), "        Object-Occurrence",
                "      End  Object Occ");
  }
};

TEST_F(ObjectOccurrences, EntityTellsItsCycleTimeAndTheRuleOfADecomposedProcess) {
  const std::string text = Generate();
  EXPECT_EQ(Lines(ObjectsOf(text, "31")), Lines(Entity("2.5", "own") + Entity("2.5", "") +
                                                Object("61") + Object("64") + Object("65")));
  // The template lacks the columns that the look-up of brought resources names.
  EXPECT_TRUE(text.ends_with("Sim_Entity|Cycle-Time:  1|End  Scenario List|"));
  EXPECT_EQ(desktop.shown.size(), 1U);
}

TEST_F(ObjectOccurrences, ResourcesBroughtFromThePlanBecomeLaborTerms) {
  Sql("alter table MSP_RESOURCES add column num int; alter table MSP_RESOURCES add column"
      " Msp_ProjID int; alter table MSP_RESOURCES add column Alias text;"
      "update MSP_RESOURCES set num = KV7_OBJ_HEX, Msp_ProjID = 1, Alias = upper(KV7_OBJ_ALIAS);"
      "update MSP_TASKS set KV7_PROCOCC_DURATION = null where TASK_UID = 2");
  EXPECT_EQ(Lines(ObjectsOf(Generate(), "32")), Lines(Entity("1.0", "mason#2 AND CRANE#1") +
                                                      Object("62") + Object("61") + Object("63")));
}

TEST_F(ObjectOccurrences, RebuiltModelLooksThoseResourcesUpByTheirKey) {
  EXPECT_TRUE(ObjectsOf(Rebuild(), "32").starts_with(Entity("1", "mason#2 AND crane#1")));
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
  const std::string end = GetParam().end + std::string("End  Scenario List|");
  EXPECT_TRUE(text.ends_with(end)) << Lines(text);
  ASSERT_EQ(desktop.shown.size(), 1U);
  EXPECT_TRUE(desktop.MessageTexts().front().starts_with(GetParam().box));
  EXPECT_TRUE(result);
}

constexpr const char* kNull = "Invalid use of Null";
constexpr const char* kEndOfTop = "Referent List|rr|End  Referent List|End  Scenario||";

INSTANTIATE_TEST_SUITE_P(
    Models, FaultyModel,
    ::testing::Values(
        Fault{"NullIdOfAScenario", "update Scenario set ID = null where Num = 21", kNull,
              "  Parent:  Process  #31|  Type:  Process View|  Creator:  Bob|"},
        Fault{
            "NullScenarioOfALinksEnd",
            "update MSP_TASKS set KV7_SCENARIO_HEX = null, KV7_PROC_HEX = null where TASK_UID = 2",
            kNull, "End  Property List|End  Link|End  Link List|End  Scenario||"},
        Fault{"NullEndOfALink",
              "update Links_in_Scenario set Scenario_Num = 21, Destination_Num = null", kNull,
              "End  Junction List||Link List|"},
        Fault{"EndOfALinkBeyond16Bits",
              "update Links_in_Scenario set Scenario_Num = 21, Origin_Num = 32768", "Overflow",
              "End  Junction List||Link List|"},
        Fault{"ReferentColumnGone", "alter table Scenario rename column Referent_List to Gone",
              "Item cannot be found", "End  Link List|Referent List|"},
        Fault{"ScenarioRowGone", "delete from Scenario where Num = 21", "Either BOF or EOF is True",
              kEndOfTop},
        Fault{"TaskNumberBeyond16Bits", "update MSP_TASKS set TASK_UID = 40000 where TASK_UID = 2",
              "Overflow", "      End  Constraint List|    End  Elaboration|  End  Process |"},
        Fault{"NullOutlineNumberOfAParent",
              "update MSP_TASKS set TASK_OUTLINE_NUM = null where TASK_UID = 1", kNull, kEndOfTop},
        Fault{"QuoteInAnOutlineNumber",
              "update MSP_TASKS set TASK_OUTLINE_NUM = '1'';' where TASK_UID = 1", "Syntax error",
              kEndOfTop}),
    [](const auto& info) { return std::string(info.param.name); });

TEST_F(StoredScenarios, RebuiltListHandsItsFailuresOnAndDefaultsANullId) {
  Sql("update Scenario set ID = null where Num = 21;"
      "update MSP_TASKS set KV7_PROCOCC_DURATION = null where TASK_UID = 1");
  OpenPlan();
  EXPECT_THROW(WriteRebuiltScenarioList(state, state.gProjectConn.get()), RunTimeError);
  const std::string text = Written();
  EXPECT_NE(text.find("  Creator:  |  ID  1|"), text.npos);
  EXPECT_TRUE(text.ends_with("    Elaboration|      Object Occurrence List|")) << Lines(text);
  EXPECT_TRUE(desktop.shown.empty());
}

}  // namespace
}  // namespace merivane::test
