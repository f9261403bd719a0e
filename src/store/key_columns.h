// The columns that the program's statements look rows up by: the template has an index on each,
// and a database that lacks some gets them in a copy.
#pragma once

#include <array>
#include <string_view>

namespace merivane::store {

// An index on `columns` of `table`. Within a table the entries stand from the most selective to the
// least; a statement that names several is served by the first.
struct KeyColumns {
  std::string_view table;
  std::string_view columns;  // separated by ", "
};

inline constexpr auto kKeyColumns = std::to_array<KeyColumns>({
    {"Activity_Pool", "Num"},
    {"Activity_Pool", "Name"},
    {"Object_Pool", "Num"},
    {"Fact_Pool", "Num"},
    {"Scenario", "Num"},
    {"Scenario", "Parent_Num"},
    {"Scenario", "Project_Order"},
    {"Activity_in_Scenario", "Use_Num"},
    {"Activity_in_Scenario", "Scenario_Num"},
    {"Object_in_Activity_in_Scenario", "Activity_Num"},
    {"Object_in_Activity_in_Scenario", "Object_Name"},
    {"Junctions_in_Scenario", "Num"},
    {"Junctions_in_Scenario", "ID"},
    {"Junctions_in_Scenario", "Scenario_Num"},
    {"Facts_in_Junction", "Junction_Num"},
    {"Links_in_Scenario", "Origin_Num"},
    {"Links_in_Scenario", "Destination_Num"},
    {"Links_in_Scenario", "Destination_Name"},
    {"Links_in_Scenario", "Scenario_Num"},
    {"ProjectAct", "PID"},
    {"ProjectRes", "PID"},
    {"ProjectResReqts", "ActivityPID"},
    {"MSP_TASKS", "TASK_UID"},
    {"MSP_TASKS", "KV7_PROCOCC_HEX"},
    {"MSP_TASKS", "KV7_PROCOCC_P_ORDER"},
    {"MSP_TASKS", "TASK_OUTLINE_LEVEL, TASK_OUTLINE_NUM"},
    {"MSP_TASKS", "KV7_SCENARIO_HEX"},
    {"MSP_RESOURCES", "KV7_OBJ_HEX"},
    {"MSP_RESOURCES", "RES_NAME"},
    {"MSP_LINKS", "LINK_PRED_UID"},
    {"MSP_LINKS", "LINK_SUCC_UID"},
    {"MSP_LINKS", "LINK_TYPE"},
});

// Columns that nearly every statement names and that tell few rows apart: no index on them.
inline constexpr auto kProjectColumns = std::to_array<std::string_view>({"Msp_ProjID", "PROJ_ID"});

}  // namespace merivane::store
