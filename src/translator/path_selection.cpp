#include "path_pruning.h"
#include "translation_steps.h"

namespace merivane::translator {

namespace {

// True when the UOB that the scenario decomposes is out of the plan, and with it the scenario.
bool LeftOutWithParent(ModelToProject& state, Recordset& scenario) {
  const Value parentNum = scenario.Field("Parent_Num");
  if (Equal(parentNum, 0)) return false;
  Recordset parent = ActivityByUse(state, parentNum);
  if (parent.Eof() || !Equal(parent.Field("Send_to_Project"), 0)) return false;
  Recordset activities = ActivitiesOfScenario(state, scenario.Field("Num"));
  for (; !activities.Eof(); activities.MoveNext()) {
    activities.SetField("send_to_project", 0);
    activities.Update();
  }
  return true;
}

void PruneScenario(ModelToProject& state, PathPruning& pruning) {
  Recordset fanOuts =
      Ask(state.gMspConn.get(),
          "Select * from junctions_in_scenario where Msp_ProjID = ", state.gMspProjId,
          " and scenario_num = ", state.currentScenarioNum,
          " and processed = 0 and cardinality = 'Fan Out' and ",
          "Type in ('XOR', 'Async. OR', 'Sync. OR')");
  for (; !fanOuts.Eof(); fanOuts.MoveNext()) {
    pruning.Prune(fanOuts.Field("Num"));
    fanOuts.SetField("Processed", 1);
    fanOuts.Update();
  }
}

void NumberTasks(ModelToProject& state) {
  Recordset tasks = Ask(state.gMspConn.get(),
                        "Select * from Activity_in_Scenario where Msp_ProjID = ", state.gMspProjId,
                        " and Send_to_Project = 1 order by P_Order");
  std::int16_t counter = 1;
  for (; !tasks.Eof(); tasks.MoveNext()) {
    tasks.SetField("Project_ID", counter);
    tasks.Update();
    counter = AddInt16(counter, 1);
  }
}

}  // namespace

void SelectPathsAndNumberTasks(ModelToProject& state) {
  PathPruning pruning(state);
  Recordset scenarios =
      Ask(state.gMspConn.get(), "Select * from Scenario where Msp_ProjID = ", state.gMspProjId);
  for (; !scenarios.Eof(); scenarios.MoveNext()) {
    if (LeftOutWithParent(state, scenarios)) continue;
    state.currentScenarioNum = ToInt16(scenarios.Field("Num"));
    PruneScenario(state, pruning);
  }
  scenarios.Close();
  ChooseScenarios(state);
  NumberTasks(state);
}

}  // namespace merivane::translator
