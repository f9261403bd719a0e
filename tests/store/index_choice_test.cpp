// Statements find their rows by the keys' indexes, in the template and in files that lack them.
#include "index_choice.h"

#include <gmock/gmock.h>

#include "open_database.h"
#include "statement.h"
#include "store_fixture.h"

namespace merivane::test {

namespace {

using ::testing::HasSubstr;

class IndexChoice : public StoreFixture {};

std::string HintIn(sqlite3* database, const std::string& sql) {
  SplitStatement split;
  SplitLiterals(sql, split);
  std::optional<TableSchema> schema;
  const StatementParts statement =
      ReadSelect(database, split.shape, sql, [&](std::string_view table) -> const TableSchema& {
        schema = TableSchema::Read(database, "test", table);
        return *schema;
      });
  return IndexHint(statement);
}

TEST_F(IndexChoice, TakesTheNarrowestKeyOfTheTemplate) {
  const DatabaseHandle database =
      OpenHandle(MERIVANE_BIN "/MerivaneTemplate.mdb", SQLITE_OPEN_READONLY);
  EXPECT_FALSE(LacksKeyIndexes(database.get(), "template"));
  const std::pair<std::string, const char*> cases[] = {
      {"MSP_TASKS", " not indexed"},  // by the order of insertion
      {"MSP_TASKS where TASK_UID > 0 AND PROJ_ID = 1", "MSP_TASKS_by_project"},
      {"MSP_TASKS where PROJ_ID = 1 and TASK_UID = 5", "TASK_UID"},
      {"MSP_TASKS WHERE TASK_UID > 0 AND TASK_OUTLINE_LEVEL = 2 AND [PROJ_ID] = 1"
       " AND Task_Outline_Num Like '3.%'",
       "TASK_OUTLINE_LEVEL"},
      {"MSP_TASKS where TASK_UID > 0 AND KV7_Scenario_HEX = 3And KV7_PROCOCC_HEX = 4 And PROJ_ID = "
       "1",
       "PROCOCC_HEX"},
      {"MSP_TASKS where KV7_PROCOCC_P_ORDER = '00001'", "P_ORDER"},
      {"MSP_TASKS where KV7_PROCOCC_HEX = 1 or KV7_SCENARIO_HEX = 2", " not indexed"},
      {"MSP_LINKS WHERE LINK_PRED_UID = 4AND PROJ_ID = 1 AND LINK_TYPE = 1", "PRED_UID"},
      {"Activity_in_Scenario where Msp_ProjID = 1 and scenario_num = 2 and Use_Num = 3", "Use_Num"},
      {"Activity_in_Scenario where Msp_ProjID = 1 and scenario_Num = 2 and Processed = 1",
       "Scenario_Num"},
      {"Activity_in_Scenario where Msp_ProjID = 1", "by_project"},
      {"junctions_in_scenario where Msp_ProjID = 1 and scenario_num = 2 and processed = 0 and "
       "cardinality = 'Fan Out' and Type in ('XOR', 'Async. OR')",
       "Scenario_Num"},
      {"Links_in_Scenario where Scenario_Num = 1 and Origin_Num = 2 and Msp_ProjID = 3",
       "Origin_Num"},
  };
  for (const auto& [rest, index] : cases) {
    EXPECT_THAT(HintIn(database.get(), "select * from " + rest), HasSubstr(index)) << rest;
  }
}

TEST_F(IndexChoice, AddsTheKeysThatAForeignFileLacks) {
  RawDatabase(path).Run(
      "create table MSP_LINKS (PROJ_ID integer, LINK_PRED_UID integer, LINK_TYPE integer);"
      "create table MSP_RESOURCES (RES_NAME text); create index Own on MSP_RESOURCES (RES_NAME);"
      "insert into MSP_LINKS values (1, 2, 1), (1, 3, 1), (1, 2, 1);"
      "insert into MSP_RESOURCES values ('Anna'), ('ANNA')");
  connection.Close();
  const DatabaseHandle database = OpenHandle(path, SQLITE_OPEN_READWRITE);
  EXPECT_TRUE(LacksKeyIndexes(database.get(), path));
  const std::string before = ReadFile(path);
  Opened reader(workspace, path, OpenMode::kReadOnly);
  EXPECT_EQ(ReadFile(path), before);
  const char* questions[] = {"select * from MSP_LINKS where LINK_PRED_UID = 2AND PROJ_ID = 1",
                             "select * from MSP_RESOURCES where RES_Name = 'anna'"};
  for (const char* sql : questions) EXPECT_EQ(Static(sql, reader).RecordCount(), 2) << sql;
  WorkListener nobody;
  AddMissingKeyIndexes(database.get(), path, nobody);
  EXPECT_FALSE(LacksKeyIndexes(database.get(), path));
  for (const char* sql : questions) {
    EXPECT_THAT(HintIn(database.get(), sql), HasSubstr(" indexed by \"merivane key"));
  }
}

}  // namespace
}  // namespace merivane::test
