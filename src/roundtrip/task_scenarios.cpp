#include "task_scenarios.h"

#include <algorithm>

#include "new_elements.h"
#include "runtime/conversions.h"
#include "sql_pieces.h"

namespace merivane::roundtrip {

std::int16_t TaskScenarios::ScenarioForTask(Recordset& task) {
  Recordset topScenarios = Ask(
      state_.gInterimConn.get(),
      "Select * from Scenario where Parent_Num = 0 and Send_to_Project = 1", AndMspProjId(state_));
  if (Equal(task.Field("Outline"), 1)) {
    if (topScenarios.Eof()) return Add(topScenarios, 1, 0);
    return ToInt16(topScenarios.Field("Num"));
  }
  const std::size_t parent = outline_.ParentOf(task.Field("PID"));
  return DecompositionOf(OccurrenceText(outline_.Text1(parent)), topScenarios);
}

std::int16_t TaskScenarios::DecompositionOf(const std::string& parent, Recordset& scenarios) {
  Recordset scenario =
      Ask(state_.gInterimConn.get(), "Select * from Scenario where Parent_Num = ", parent,
          " and Send_To_Project = 1", AndMspProjId(state_));
  if (!scenario.Eof()) return ToInt16(scenario.Field("Num"));
  return Add(scenarios, NextNumber(), parent);
}

std::int16_t TaskScenarios::Add(Recordset& scenarios, std::int16_t number, const Value& parent) {
  scenarios.AddNew();
  scenarios.SetField("Num", number);
  scenarios.SetField("Name", "Scenario#" + std::to_string(number));
  scenarios.SetField("Parent_Num", parent);
  scenarios.SetField("Msp_ProjID", state_.gInterimProjId);
  scenarios.Update();
  if (highest_) highest_ = std::max(*highest_, number);
  return number;
}

std::int16_t TaskScenarios::NextNumber() {
  if (!highest_) {
    Recordset maximum = Ask(state_.gInterimConn.get(), "Select Max(Num) as Max_ID from Scenario",
                            WhereMspProjId(state_));
    if (maximum.Eof()) EndOnBrokenModel(state_, "Project to Celvar Translator");
    highest_ = ToInt16(maximum.Field(0));
  }
  return AddInt16(*highest_, 1);
}

}  // namespace merivane::roundtrip
