#include "writer_fixture.h"

namespace merivane::test {

namespace {

using Pools = WriterFixture;

// Task 3 has no pool record, which ends the process pool. Of the objects that stayed out of the
// plan those of other projects are written too.
TEST_F(Pools, OfAModelAndItsPlanComeOutTogether) {
  AddTask(1, "1", "New");
  AddTask(2, "2", "Plain");
  AddTask(3, "3", "Without its record");
  SqlFile("pools_and_plan.sql");
  EXPECT_EQ(Part(Generate(), "  Property List\n", "Scenario List"),
            Expected("pools_of_a_model.txt"));
  EXPECT_EQ(desktop.MessageTexts().front(), ErrorText(kNoCurrentRecord));
}

TEST_F(Pools, ColumnThatIsSpeltOtherwiseLeavesResourcesBareAndUnsentObjectsOut) {
  Sql("alter table MSP_RESOURCES rename column KV7_OBJ_HEX to KV7_Obj_Hex;"
      "insert into MSP_RESOURCES (PROJ_ID, RES_UID, KV7_Obj_Hex) values (1, 3, 5);"
      "insert into Object_Pool (Num, Msp_ProjID, Send_to_Project) values (8, 1, 0)");
  const std::string pool = Part(Generate(), "Object Pool\n", "State Pool\n");
  EXPECT_TRUE(pool.starts_with("Object Pool\nObject  3\n  Name:  \n")) << pool;
  EXPECT_EQ(pool.find("Object  8"), pool.npos);
}

TEST_F(Pools, ModelWithoutFactsTableEndsItsPoolsThereAndGoesOn) {
  Sql("drop table Fact_Pool");
  EXPECT_EQ(Generate(), Expected("model_without_facts_table.txt"));
  EXPECT_EQ(desktop.boxes.size(), 1U);
  EXPECT_TRUE(result);
}

}  // namespace
}  // namespace merivane::test
