// What the built template promises to the rest of the program.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "runtime/run_time_error.h"
#include "store/connection.h"
#include "store/recordset.h"
#include "temporary_folder.h"

namespace merivane::test {

using namespace store;

namespace {

class Template : public ::testing::Test {
 protected:
  Template() {
    std::filesystem::copy_file(MERIVANE_BIN "/MerivaneTemplate.mdb", path_);
    connection_.Open(ConnectionText(path_));
  }

  Recordset Open(const std::string& table) {
    Recordset set;
    set.OpenDynamic("select * from " + table, &connection_);
    return set;
  }

  TemporaryFolder folder_;
  std::string path_ = folder_.Path("plan.mdb");
  Workspace workspace_;
  Connection connection_{workspace_};
};

// A value that is given to one column; the value of it, or of another column of that row.
TEST_F(Template, ColumnsHaveTheirTypesAndDefaults) {
  const struct {
    const char* table;
    const char* given;
    Value value;
    const char* asked;
    Value expected;
  } cases[] = {
      {"Object_Pool", "Num", 7, "Send_to_Project", 0},
      {"Scenario", "Num", 7, "Send_to_Project", 1},
      {"Scenario", "Num", 7, "Project_Order", 9999},
      {"Activity_in_Scenario", "Use_Num", 7, "Send_to_Project", 1},
      {"Activity_in_Scenario", "p_order", 99999, "p_order", "99999"},
      {"Object_in_Activity_in_Scenario", "Qty", 0.5, "Qty", 0.5},
      {"Object_in_Activity_in_Scenario", "Qty", 2, "Send_to_Project", 1},
      {"Junctions_in_Scenario", "Num", 7, "Processed", 0},
      {"Links_in_Scenario", "Orgin_Num", 7, "Orgin_Type", {}},
      {"ProjectAct", "PID", 7, "SelectedForProcessing", 0},
      {"MSP_PROJECTS", "PROJ_CREATION_DATE", "never", "PROJ_CREATION_DATE", "never"},
      {"MSP_TASKS", "KV7_SCENARIO_HEX", 12, "KV7_SCNEARIO_HEX", 12},
      {"MSP_LINKS", "LINK_UID", 7, "LINK_TYPE", 1},
      {"MSP_ASSIGNMENTS", "ASSN_UNITS", 2, "ASSN_UNITS", "2"},
  };
  for (const auto& item : cases) {
    Recordset set = Open(item.table);
    set.AddNew({item.given}, {item.value});
    set.MoveLast();
    EXPECT_EQ(set.Field(item.asked), item.expected) << item.table << "." << item.asked;
  }
  EXPECT_THROW(Open("MSP_PROJECTS").AddNew({"PROJ_ID"}, {32768}), RunTimeError);
}

TEST_F(Template, TasksAndResourcesBeginWithARowOfNumberZero) {
  for (const char* table : {"MSP_TASKS", "MSP_RESOURCES"}) {
    Recordset set = Open(table);
    EXPECT_TRUE(set.FieldName(1).ends_with("_UID")) << table;
    EXPECT_EQ(set.Field("PROJ_ID"), Value(0)) << table;
    EXPECT_EQ(set.Field(1), Value(0)) << table;
    set.MoveNext();
    EXPECT_TRUE(set.Eof()) << table;
  }
}

}  // namespace
}  // namespace merivane::test
