#include <algorithm>
#include <cstdint>
#include <optional>
#include <string>

#include "going_on.h"
#include "merge_statements.h"
#include "merge_steps.h"
#include "plan_outline.h"
#include "runtime/conversions.h"
#include "runtime/run_time_error.h"

namespace merivane::roundtrip {

namespace {

// The scenarios that the tasks of a plan lie in, by its outline: for one pass over the plan, which
// adds scenarios through it alone.
class TaskScenarios {
 public:
  TaskScenarios(ProjectToModel& state, const PlanOutline& outline)
      : state_(state), outline_(outline) {}

  // The scenario's number; made where there is none. `task` is a set of ProjectAct on the task. A
  // task that lies deep without a row above it is error 3021.
  std::int16_t ScenarioForTask(Recordset& task);

 private:
  std::int16_t DecompositionOf(const std::string& parent, Recordset& scenarios);
  std::int16_t Add(Recordset& scenarios, std::int16_t number, const Value& parent);
  std::int16_t NextNumber();

  ProjectToModel& state_;
  const PlanOutline& outline_;
  std::optional<std::int16_t> highest_;  // asked for once
};

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

std::string NotesOf(Recordset& task) { return Joined(task.Field("Notes")); }

std::int16_t AddActivity(ProjectToModel& state, Recordset& task, std::int16_t lastActivity) {
  Recordset pool =
      Ask(state.gInterimConn.get(), "Select * from Activity_Pool ", WhereMspProjId(state));
  pool.AddNew();
  const std::int16_t activity = AddInt16(lastActivity, 1);
  pool.SetField("Num", activity);
  pool.SetField("Name", task.Field("Name"));
  pool.SetField("Creator", "Merivane");
  pool.SetField("Msp_ProjID", state.gInterimProjId);
  pool.SetField("Glossary", NotesOf(task));
  pool.Update();
  return activity;
}

std::int16_t AddOccurrence(ProjectToModel& state, Recordset& task, std::int16_t activity,
                           std::int16_t lastUse) {
  const std::int16_t use = AddInt16(lastUse, 1);
  Recordset occurrences = Ask(state.gInterimConn.get(),
                              "Select * from MSP_TASKS  Where TASK_UID > 0", AndProjId(state));
  occurrences.AddNew();
  occurrences.SetField("TASK_UID", activity);
  occurrences.SetField("KV7_Scenario_HEX", state.gCurrentScenario);
  occurrences.SetField("KV7_Proc_HEX", activity);
  occurrences.SetField("KV7_PROCOCC_HEX", use);
  occurrences.SetField("TASK_Name", task.Field("Name"));
  occurrences.SetField("KV7_PROCOCC_Duration", task.Field("Duration"));
  occurrences.SetField("Proj_ID", state.gInterimProjId);
  occurrences.SetField("KV7_PROCOCC_Brought_Back", 1);
  occurrences.Update();
  return use;
}

void AddNewActivity(ProjectToModel& state, Recordset& task) {
  GreatestNumbers& greatest = NumbersOf(state);
  const std::int16_t activity = AddActivity(state, task, greatest.activity);
  const std::int16_t use = AddOccurrence(state, task, activity, greatest.use);
  task.SetField("Text1", use);
  task.Update();
  greatest = {use, activity};
}

// What would take a moved task out of its old scenario wants a record set and is handed the fields
// of one, so that a plan with a moved task is refused.
[[noreturn]] void DetachMovedTask() { throw RunTimeError(kTypeMismatch); }

void TakeOverNameAndNotes(ProjectToModel& state, Recordset& task, const Value& activity) {
  Recordset pool = Ask(state.gInterimConn.get(),
                       "Select * from Activity_Pool where Num = ", activity, AndMspProjId(state));
  if (pool.Eof()) return;
  pool.SetField("Name", task.Field("Name"));
  pool.SetField("Glossary", NotesOf(task));
  pool.Update();
}

// Brings a new task into the model (its Text1 takes the new occurrence's number), or the name,
// duration and notes of a known one. A duration that the model keeps as an expression stays; a
// number that no occurrence bears is passed over. A known task of another scenario than
// gCurrentScenario is error 13.
void MergeTask(ProjectToModel& state, Recordset& task) {
  const Value text1 = task.Field("Text1");
  if (IsBlank(text1) || ToDouble(text1) == 0) {
    AddNewActivity(state, task);
    return;
  }
  Recordset occurrence =
      Ask(state.gInterimConn.get(), "Select * from MSP_TASKS where KV7_PROCOCC_HEX = ", text1,
          AndProjId(state));
  if (occurrence.Eof()) return;
  const Value scenario = occurrence.Field("KV7_Scenario_HEX");
  if (!scenario.IsNull() && !Equal(scenario, state.gCurrentScenario)) DetachMovedTask();
  occurrence.SetField("TASK_Name", task.Field("Name"));
  const Value stored = occurrence.Field("KV7_PROCOCC_Duration");
  if (IsBlank(stored) || IsNumeric(stored)) {
    occurrence.SetField("KV7_PROCOCC_Duration", task.Field("Duration"));
  }
  TakeOverNameAndNotes(state, task, occurrence.Field("KV7_PROC_HEX"));
  occurrence.SetField("KV7_PROCOCC_Brought_back", 1);
  occurrence.Update();
}

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
    TryTask(state.desktop, listener, MergeStep::kTask, tasks, [&] {
      state.gCurrentScenario = scenarios.ScenarioForTask(tasks);
      MergeTask(state, tasks);
      outline.SetText1(row, tasks.Field("Text1"));
    });
  }
}

}  // namespace merivane::roundtrip
