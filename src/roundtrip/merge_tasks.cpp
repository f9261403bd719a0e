#include <algorithm>
#include <cstdint>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

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
  std::optional<std::int16_t> highest_;                  // asked for once
  std::unordered_map<std::string, std::int16_t> found_;  // below a parent
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
  const auto known = found_.find(parent);
  if (known != found_.end()) return known->second;
  Recordset scenario =
      Ask(state_.gInterimConn.get(), "Select * from Scenario where Parent_Num = ", parent,
          " and Send_To_Project = 1", AndMspProjId(state_));
  if (scenario.Eof()) return Add(scenarios, NextNumber(), parent);
  return found_[parent] = ToInt16(scenario.Field("Num"));
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

// Gives the number of the new occurrence.
std::int16_t AddNewActivity(ProjectToModel& state, Recordset& task) {
  GreatestNumbers& greatest = NumbersOf(state);
  const std::int16_t activity = AddActivity(state, task, greatest.activity);
  const std::int16_t use = AddOccurrence(state, task, activity, greatest.use);
  greatest = {use, activity};
  return use;
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

// Brings a new task into the model, whose new number is the result, or the name, duration and notes
// of a known one. A duration that the model keeps as an expression stays; a number that no
// occurrence bears is passed over. A known task of another scenario than gCurrentScenario is error
// 13.
std::optional<std::int16_t> MergeTask(ProjectToModel& state, Recordset& task, const Value& text1) {
  if (IsBlank(text1) || ToDouble(text1) == 0) return AddNewActivity(state, task);
  Recordset occurrence =
      Ask(state.gInterimConn.get(), "Select * from MSP_TASKS where KV7_PROCOCC_HEX = ", text1,
          AndProjId(state));
  if (occurrence.Eof()) return std::nullopt;
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
  return std::nullopt;
}

void ForgetEarlierMerges(ProjectToModel& state) {
  Recordset occurrences =
      Ask(state.gInterimConn.get(), "Select * from MSP_TASKS where TASK_UID > 0", AndProjId(state));
  for (; !occurrences.Eof(); occurrences.MoveNext()) {
    occurrences.SetField("KV7_PROCOCC_Brought_Back", 0);
    occurrences.Update();
  }
}

}  // namespace

void BringBackTasks(ProjectToModel& state, MergeListener* listener) {
  ForgetEarlierMerges(state);
  Recordset tasks =
      Ask(state.gInterimConn.get(), "Select * from ProjectAct", WhereMspProjId(state));
  const bool areAllNew = state.gRebuildModel == 1;
  if (areAllNew && !tasks.Eof()) tasks.SetField("Text1", 0);  // where the column takes a number
  tasks.MoveLast();
  tasks.MoveFirst();
  PlanOutline outline;
  outline.Read(tasks);
  tasks.MoveFirst();
  std::vector<bool> isNew(outline.Size(), areAllNew);
  for (std::size_t row = 0; areAllNew && row < outline.Size(); ++row) outline.SetText1(row, 0);
  state.progress.Begin("Merging the tasks", static_cast<std::int64_t>(outline.Size()));
  TaskScenarios scenarios(state, outline);
  const auto merge = [&] {
    for (std::size_t row = 0; !tasks.Eof(); tasks.MoveNext(), ++row) {
      state.progress.Step();
      if (outline.Level(row) <= 0) continue;  // the plan's summary of the whole project
      TryTask(state.desktop, listener, MergeStep::kTask, tasks, [&] {
        state.gCurrentScenario = scenarios.ScenarioForTask(tasks);
        const auto number = MergeTask(state, tasks, outline.Text1(row));
        if (!number) return;
        outline.SetText1(row, *number);
        isNew[row] = true;
      });
    }
  };
  WithEnd(state, merge, [&] {
    for (std::size_t row = 0; row < outline.Size(); ++row) {
      if (!isNew[row]) continue;
      tasks.MoveTo(outline.Bookmark(row));
      tasks.SetField("Text1", outline.Text1(row));
      tasks.Update();
    }
  });
}

}  // namespace merivane::roundtrip
