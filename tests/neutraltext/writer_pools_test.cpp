#include "writer_fixture.h"

namespace merivane::test {

namespace {

using Pools = WriterFixture;

TEST_F(Pools, TaskOfTheModelTakesItsPoolRecordUnderThePlansName) {
  Sql("insert into Activity_Pool (Num, Msp_ProjID, Name, Creator, Last_Modified, Glossary, ID, Ref,"
      " Fact_List) values (7, 2, 'other', 'x', 'x', 'x', 1, 'x', 'x'),"
      " (7, 1, 'Old', 'Ann', '3/4/1999', 'Two\r\nlines', 12, 'A1', '  Fact  #1')");
  AddTask(1, "1", "New");
  AddTask(2, "2", "Plain");
  AddTask(3, "3", "Without its record");
  Sql("update MSP_TASKS set KV7_PROC_HEX = case TASK_UID when 1 then 7 when 3 then 8 else 0 end");
  OpenPlan();
  WriteProcessPool(state);
  const std::string text = Written();
  EXPECT_TRUE(text.ends_with("End  Process 2||")) << text;
  EXPECT_EQ(desktop.MessageTexts().size(), 1U);
  EXPECT_EQ(Lines(Part(text, "Process Pool|", "  Name:  Plain")),
            Lines("Process Pool|Process  7|  Name:  New|  Creator:  Ann|  Date Created:  |"
                  "  Last Modified:  3/4/1999|[  Glossary=Two|lines][  Note List=][  Source List=]"
                  "[  Property List=]  ID:  71|  IDEF0 Ref:  12|{  ==  Fact  #1=}"
                  "End  Process 7||Process  2|"));
}

TEST_F(Pools, ResourcesOfTheModelComeWithTheObjectsThatStayedOutOfThePlan) {
  Sql("insert into MSP_RESOURCES (PROJ_ID, RES_UID, RES_NAME, RES_MAX_UNITS, RES_TYPE, KV7_OBJ_HEX,"
      " KV7_OBJ_CREATOR, KV7_OBJ_DATE_CREATED, KV7_OBJ_LAST_MODIFIED, KV7_OBJ_GLOSSARY,"
      " KV7_OBJ_NOTE_LIST, KV7_OBJ_SOURCE_LIST, KV7_OBJ_PROPERTY_LIST, KV7_OBJ_DUNMAR_TYPE,"
      " KV7_OBJ_CELVAR_TYPE, KV7_OBJOCC_LIST, KV7_OBJ_FACT_LIST, KV7_OBJ_CONSTRAINT_LIST) values"
      " (1, 1, 'Mason', 2, -1, 5, 'Ann', '1', '2', 'g', 'n', 's', 'p', 'Tool', 'Entity', 'o', 'f',"
      " 'c'), (1, 2, 'Crane', null, -1, 6, null, null, null, null, null, null, null, null, null,"
      " null, null, null)");
  Sql("insert into Object_Pool (Num, Msp_ProjID, Name, Glossary, Note_List, Dunmar_Type,"
      " Constraint_List, Send_to_Project) values (8, 2, 'Heat', 'hot', 'lost', 'Law', 'cc', 0),"
      " (0, 1, 'no number', '', '', '', '', 0), (9, 1, 'sent', '', '', '', '', 1)");
  EXPECT_EQ(
      Lines(Part(Generate(), "Object Pool|", "|State Pool")),
      Lines("Object Pool|Object  5|  Name:  Mason|  Creator:  Ann|  Date Created:  1|"
            "  Last Modified:  2|[  Glossary=g][  Note List=n][  Source List=s]  Property List|"
            "    Property|      Name:  @Simulation Information|[      Glossary=Sim_Widget|Icon:  1|"
            "End  Sim_Widget|Sim_Shared|Quantity:  2|End Sim_Shared]    End  Property|"
            "  End  Property List|  Type:  Tool|  Type:  Entity|{  =o=f=c}End  Object 5||"
            "Object  6|  Name:  Crane|  Creator:  |  Date Created:  |  Last Modified:  |"
            "[  Glossary=][  Note List=][  Source List=][  Property List]  Type:  Agent|"
            "  Type:  Shared Resource|{  ===}End  Object 6||"
            "Object  8|  Name:  Heat|  Creator:  |  Date Created:  |  Last Modified:  |"
            "[  Glossary=hot][  Note List][  Source List][  Property List]  Type:  Law|"
            "  Type:  Shared Resource|{  ===cc}End  Object 8|||End  Object Pool|"));
}

TEST_F(Pools, ColumnThatIsSpeltOtherwiseLeavesResourcesBareAndUnsentObjectsOut) {
  Sql("alter table MSP_RESOURCES rename column KV7_OBJ_HEX to KV7_Obj_Hex;"
      "insert into MSP_RESOURCES (PROJ_ID, RES_UID, KV7_Obj_Hex) values (1, 3, 5);"
      "insert into Object_Pool (Num, Msp_ProjID, Send_to_Project) values (8, 1, 0)");
  const std::string pool = Part(Generate(), "Object Pool|", "State Pool|");
  EXPECT_TRUE(pool.starts_with("Object Pool|Object  3|  Name:  |")) << pool;
  EXPECT_EQ(pool.find("Object  8"), pool.npos);
}

TEST_F(Pools, PoolsOfTheModelStandInTheirOwnLayout) {
  Sql("insert into MSP_PROJECTS (PROJ_ID, KV7_PROJ_PROPERTY_LIST) values (1, 'kept');"
      "insert into Misc values (2, 'x', 'x', 'x', 'x', 'x', 'x'),"
      " (1, 'st\r\n', 'pr', null, 'no', null, 'un')");
  Sql("insert into Fact_Pool values (4, 1, 'Cold', 'Ann', '1', '2', 'g', 'n', 's', 'p'),"
      " (5, 1, null, null, null, null, null, null, null, null),"
      " (6, 2, null, null, null, null, null, null, null, null)");
  EXPECT_EQ(Lines(Part(Generate(), "  Property List|", "Scenario List")),
            Lines("[  Property List=kept]End  Project Properties|||[State Pool=st|]|||"
                  "Fact Pool|Fact  4|  Name:  Cold|  Creator:  Ann|  Date Created:  1|"
                  "  Last Modified:  2|[  Glossary=g][  Note List=n][  Source List=s]|"
                  "[  Property List=p]End  Fact 4||Fact  5|  Name:  |  Creator:  |"
                  "  Date Created:  |  Last Modified:  |[  Glossary][  Note List][  Source List]|"
                  "[  Property List]End  Fact 5||End  Fact Pool||||[Property Pool=pr]||"
                  "[Constraint Pool]||[Note Pool=no]||[Source Pool]||[Unknown Pool=un]||||"));
}

TEST_F(Pools, ModelWithoutFactsTableEndsItsPoolsThereAndGoesOn) {
  Sql("drop table Fact_Pool");
  EXPECT_EQ(Lines(Generate()),
            Lines("Dunmar Neutral Text; Version:2.20;  |Project Summary|"
                  "  Creator: Merivane version 3.0|  Used At: |  Project: |  Date Created: |"
                  "  Last Modified: |[  Description]End  Project Summary||Project Properties||"
                  "[  Property List=]End  Project Properties|||[State Pool]||[Scenario List]"));
  EXPECT_EQ(desktop.shown.size(), 1U);
  EXPECT_TRUE(result);
}

}  // namespace
}  // namespace merivane::test
