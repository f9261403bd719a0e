// The interim database.
#include "store/interim_db.h"

#include "store_fixture.h"

namespace merivane::test {

namespace {

class InterimDb : public StoreFixture {
 protected:
  InterimDb() { workspace.CopyDatabase(MERIVANE_BIN "/MerivaneTemplate.mdb", plan); }

  std::string Counts(Connection& on) {
    std::string counts;
    for (const char* table : kTables) {
      Recordset set = Static(std::string("select * from ") + table, on);
      counts += std::to_string(set.RecordCount());
    }
    return counts;
  }

  // clang-format off
  static constexpr const char* kTables[] = {
      "MSP_PROJECTS", "Activity_Pool", "Object_Pool", "Fact_Pool", "Misc", "Scenario",
      "Junctions_in_Scenario", "Facts_in_Junction", "Links_in_Scenario", "OSTN_List",
      "Activity_in_Scenario", "Object_in_Activity_in_Scenario", "MSP_TASKS", "MSP_LINKS"};
  // clang-format on
  std::string plan = folder.Path("plan.mdb");
  std::unique_ptr<Connection> gMspConn;
};

TEST_F(InterimDb, OverwritingEmptiesTheTablesOfTheModelButItsOccurrences) {
  OpenInterimDb(workspace, gMspConn, false, plan);
  for (const char* table : kTables) {
    Recordset set = Dynamic(std::string("select * from ") + table, *gMspConn);
    set.AddNew();
    set.Update();
  }
  OpenInterimDb(workspace, gMspConn, false, plan);
  EXPECT_EQ(Counts(*gMspConn), "11111111111121");
  OpenInterimDb(workspace, gMspConn, true, plan);
  EXPECT_EQ(Counts(*gMspConn), "00000000001121");
  EXPECT_EQ(ErrorOf([&] { OpenInterimDb(workspace, gMspConn, true, folder.Path("none.mdb")); }),
            kFileNotFound);
  ASSERT_NE(gMspConn, nullptr);
  EXPECT_FALSE(gMspConn->IsOpen());
}

TEST_F(InterimDb, HalvesAreKeptWhereAnEarlierVersionMadeTheColumnOfWholeNumbers) {
  RawDatabase(plan).Run(
      "drop table Object_in_Activity_in_Scenario;"
      "create table Object_in_Activity_in_Scenario (Scenario_Num INTEGER, Qty INTEGER)");
  OpenInterimDb(workspace, gMspConn, false, plan);
  Recordset set = Dynamic("select * from Object_in_Activity_in_Scenario", *gMspConn);
  for (const double quantity : {0.5, 2.0}) set.AddNew({"Qty"}, {quantity});
  set.MoveFirst();
  EXPECT_EQ(Rest(set, "Qty"), "0.5 2 ");
}

TEST_F(InterimDb, OnlyADatabaseWithThePlansTablesIsATemplate) {
  EXPECT_TRUE(CheckTemplateDb(workspace, plan));
  EXPECT_FALSE(CheckTemplateDb(workspace, path));
  EXPECT_FALSE(CheckTemplateDb(workspace, folder.Path("missing.mdb")));
  EXPECT_FALSE(CheckTemplateDb(workspace, folder.Write("text.mdb", "text")));
  EXPECT_FALSE(CheckTemplateDb(workspace, folder.Path(".")));
  folder.Write("cut.mdb", ReadFile(plan).substr(0, 100000));
  EXPECT_FALSE(CheckTemplateDb(workspace, folder.Path("cut.mdb")));
  RawDatabase(plan).Run("drop table ProjectAct");
  EXPECT_FALSE(CheckTemplateDb(workspace, plan)) << "no table for the plans that come back";
}

TEST_F(InterimDb, LooksUpTablesWithTheirCase) {
  EXPECT_EQ(TableExists(&connection, "Empty"), 1);
  EXPECT_EQ(TableExists(&connection, "empty"), 0);
  EXPECT_EQ(ErrorOf([] { TableExists(nullptr, "T"); }), kObjectNotSet);
}

}  // namespace
}  // namespace merivane::test
