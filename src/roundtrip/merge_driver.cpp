#include "merge_driver.h"

#include "new_elements.h"
#include "plan_outline.h"
#include "runtime/conversions.h"
#include "sql_pieces.h"
#include "task_links.h"
#include "task_scenarios.h"

namespace merivane::roundtrip {

namespace {

void ForgetEarlierMerges(ProjectToModel& state) {
  Recordset occurrences =
      Ask(state.gInterimConn.get(), "Select * from MSP_TASKS where TASK_UID > 0", AndProjId(state));
  for (; !occurrences.Eof(); occurrences.MoveNext()) {
    occurrences.SetField("KV7_PROCOCC_Brought_Back", 0);
    occurrences.Update();
  }
}

void MakeAllTasksNew(Recordset& tasks) {
  for (; !tasks.Eof(); tasks.MoveNext()) {
    tasks.SetField("Text1", 0);
    tasks.Update();
  }
}

}  // namespace

void BringBackTasks(ProjectToModel& state, MergeListener* listener) {
  ForgetEarlierMerges(state);
  Recordset tasks =
      Ask(state.gInterimConn.get(), "Select * from ProjectAct", WhereMspProjId(state));
  if (state.gRebuildModel == 1) MakeAllTasksNew(tasks);
  tasks.MoveLast();
  tasks.MoveFirst();
  PlanOutline outline;
  outline.Read(tasks);
  tasks.MoveFirst();
  state.progress.Begin("Merging the tasks", static_cast<std::int64_t>(outline.Size()));
  TaskScenarios scenarios(state, outline);
  for (std::size_t row = 0; !tasks.Eof(); tasks.MoveNext(), ++row) {
    state.progress.Step();
    if (outline.Level(row) <= 0) continue;  // the plan's summary of the whole project
    if (listener) listener->OnTask(MergeStep::kTask, tasks.Field("PID"));
    state.gCurrentScenario = scenarios.ScenarioForTask(tasks);
    MergeTask(state, tasks);
    outline.SetText1(row, tasks.Field("Text1"));
  }
}

void MergeLinks(ProjectToModel& state, MergeListener* listener) {
  state.progress.Begin("Merging the links of the tasks", 0);
  MergeTopLevelLinks(state, listener);
  MergeDecompositionLinks(state, listener);
}

void MergeTopLevelLinks(ProjectToModel& state, MergeListener* listener) {
  Recordset topScenarios = Ask(
      state.gInterimConn.get(),
      "Select * from Scenario Where Parent_Num = 0 and Send_To_Project = 1", AndMspProjId(state));
  if (topScenarios.Eof()) {
    state.gNoTopScenario = 1;
  } else {
    state.gCurrentScenario = ToInt16(topScenarios.Field("Num"));
  }
  if (state.gNoTopScenario == 1) EndOnBrokenModel(state, "Project to Celvar Translator.");
  Recordset tasks = Ask(state.gInterimConn.get(), "Select * from ProjectAct where Outline = 1",
                        AndMspProjId(state));
  for (; !tasks.Eof(); tasks.MoveNext()) MergeLinksOfTask(state, tasks, listener);
}

}  // namespace merivane::roundtrip
