// The interim database, and the command that writes notes into it.
#include "store/interim_db.h"

#include "store/command.h"
#include "store_fixture.h"

namespace merivane::test {

namespace {

class InterimDb : public StoreFixture {
 protected:
  InterimDb() { workspace.CopyDatabase(MERIVANE_BIN "/MerivaneTemplate.mdb", plan); }

  std::string Counts(Connection& on) {
    std::string counts;
    for (const char* table : kTables) {
      Recordset set;
      set.OpenStatic(std::string("select * from ") + table, &on);
      counts += std::to_string(set.RecordCount());
    }
    return counts;
  }

  static constexpr const char* kTables[] = {"MSP_PROJECTS",
                                            "Activity_Pool",
                                            "Object_Pool",
                                            "Fact_Pool",
                                            "Misc",
                                            "Scenario",
                                            "Junctions_in_Scenario",
                                            "Facts_in_Junction",
                                            "Links_in_Scenario",
                                            "OSTN_List",
                                            "Activity_in_Scenario",
                                            "Object_in_Activity_in_Scenario",
                                            "MSP_TASKS",
                                            "MSP_LINKS"};
  std::string plan = folder.Path("plan.mdb");
  std::unique_ptr<Connection> gMspConn;
};

TEST_F(InterimDb, OverwritingEmptiesTheTablesOfTheModelButItsOccurrences) {
  OpenInterimDb(workspace, gMspConn, false, plan);
  for (const char* table : kTables) {
    Recordset set;
    set.OpenDynamic(std::string("select * from ") + table, gMspConn.get());
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
  Recordset set;
  set.OpenDynamic("select * from Object_in_Activity_in_Scenario", gMspConn.get());
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

TEST_F(InterimDb, LooksUpTablesAndColumnsWithTheirCase) {
  Recordset set = Dynamic("select * from T where Num = 99");
  EXPECT_EQ(FieldExists(set, "Name"), 1);
  EXPECT_EQ(FieldExists(set, "NAME"), 0);
  EXPECT_EQ(FieldExists(set, "Nmu"), 0);
  EXPECT_EQ(TableExists(&connection, "Empty"), 1);
  EXPECT_EQ(TableExists(&connection, "empty"), 0);
  EXPECT_EQ(ErrorOf([] { TableExists(nullptr, "T"); }), kObjectNotSet);
}

TEST_F(InterimDb, ACommandWritesItsBytesWhereTheConditionHolds) {
  Command command;
  EXPECT_EQ(ErrorOf([&] { command.Execute(); }), kObjectNotSet);
  command.ActiveConnection(&connection);
  command.AppendBinaryParameter(8);
  Recordset seen = Dynamic("select * from T where Num = 3");
  EXPECT_TRUE(seen.Field("Data").IsNull());
  for (const int num : {3, 4}) {
    command.CommandText("update T set Data = ? , Odd = 7 where Num = " + std::to_string(num) +
                        " and Size is null");
    command.ParameterValue(Bytes(static_cast<std::size_t>(num), 0xE4));
    command.Execute();
  }
  EXPECT_EQ(seen.Field("Data"), Value(Bytes(3, 0xE4)));
  EXPECT_EQ(All("select * from T where Odd = 7"), "c d ");
  command.ParameterValue(Bytes(8, 1));
  EXPECT_EQ(ErrorOf([&] { command.Execute(); }), 0);
  command.ParameterValue(Bytes(9, 1));
  EXPECT_EQ(ErrorOf([&] { command.Execute(); }), kDatabaseError);
  command.ParameterValue({});
  const struct {
    const char* sql;
    int number;
  } refused[] = {{"update T set Num = 1", kStatementError},
                 {"update T set Num = ? where Odd = ?", kStatementError},
                 {"update T set Nmu = ?", kUnknownName},
                 {"update Nowhere set Num = ?", kUnknownTable},
                 {"update T set Num = ?; drop table T", kStatementError},
                 {"select * from T", kStatementError}};
  for (const auto& item : refused) {
    command.CommandText(item.sql);
    EXPECT_EQ(ErrorOf([&] { command.Execute(); }), item.number) << item.sql;
  }
  EXPECT_EQ(All("select * from T"), "a b c d e ");
}

}  // namespace
}  // namespace merivane::test
