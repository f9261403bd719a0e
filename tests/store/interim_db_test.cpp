// The interim database, and what the template that it is made of promises.
#include "store/interim_db.h"

#include <tuple>

#include "store_fixture.h"

namespace merivane::test {

namespace {

class InterimDb : public StoreFixture {
 protected:
  InterimDb() { workspace.CopyDatabase(MERIVANE_BIN "/MerivaneTemplate.mdb", plan); }

  std::string Counts(Connection& on) {
    std::string counts;
    for (const char* table : kTables) {
      counts += std::to_string(Static(std::string("select * from ") + table, on).RecordCount());
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
  RawDatabase(plan).Run("drop table ProjectAct");
  EXPECT_FALSE(CheckTemplateDb(workspace, plan)) << "no table for the plans that come back";
}

TEST_F(InterimDb, LooksUpTablesWithTheirCase) {
  EXPECT_EQ(TableExists(&connection, "Empty"), 1);
  EXPECT_EQ(TableExists(&connection, "empty"), 0);
  EXPECT_EQ(ErrorOf([] { TableExists(nullptr, "T"); }), kObjectNotSet);
}

// A value that is given to one column; the value of it, or of another column of that row.
TEST_F(InterimDb, ColumnsOfTheTemplateHaveTheirTypesAndDefaults) {
  const std::tuple<std::string, std::string, Value, std::string, Value> cases[] = {
      {"Object_Pool", "Num", 7, "Send_to_Project", 0},
      {"Object_in_Activity_in_Scenario", "Qty", 0.5, "Qty", 0.5},
      {"Links_in_Scenario", "Orgin_Num", 7, "Orgin_Type", {}},
      {"MSP_PROJECTS", "PROJ_CREATION_DATE", "never", "PROJ_CREATION_DATE", "never"},
  };
  Opened made(workspace, plan);
  for (const char* table : {"MSP_TASKS", "MSP_RESOURCES"}) {
    Recordset set = Dynamic(std::string("select * from ") + table, made);
    EXPECT_EQ(Rest(set, "PROJ_ID"), "0 ") << table << " begins with a row of number zero";
  }
  for (const auto& [table, given, value, asked, expected] : cases) {
    Recordset set = Dynamic("select * from " + table, made);
    set.AddNew({given}, {value});
    set.MoveLast();
    EXPECT_EQ(set.Field(asked), expected) << table << "." << asked;
  }
  Recordset projects = Dynamic("select * from MSP_PROJECTS", made);
  EXPECT_EQ(ErrorOf([&] { projects.AddNew({"PROJ_ID"}, {32768}); }), kOverflow);
}

}  // namespace
}  // namespace merivane::test
