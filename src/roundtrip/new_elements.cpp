#include "new_elements.h"

#include "program/error_boxes.h"
#include "runtime/conversions.h"
#include "sql_pieces.h"

namespace merivane::roundtrip {

namespace {

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
  Recordset project = Ask(state.gInterimConn.get(),
                          "Select * from MSP_PROJECTS  Where Proj_ID = ", state.gInterimProjId);
  const std::int16_t lastActivity = ToInt16(project.Field("KV7_PROJ_Max_Act_Id"));
  const std::int16_t lastUse = ToInt16(project.Field("KV7_PROJ_Max_Use_Id"));
  const std::int16_t activity = AddActivity(state, task, lastActivity);
  const std::int16_t use = AddOccurrence(state, task, activity, lastUse);
  task.SetField("Text1", use);
  task.Update();
  project.SetField("KV7_PROJ_Max_Act_Id", activity);
  project.SetField("KV7_PROJ_Max_Use_Id", use);
  project.Update();
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

}  // namespace

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

std::int16_t ModelIdOfTask(ProjectToModel& state, std::int16_t pid) {
  Recordset task = Ask(state.gInterimConn.get(), "Select * from ProjectAct Where PID = ", pid,
                       AndMspProjId(state));
  if (task.Eof()) return 0;
  const Value text1 = task.Field("Text1");
  return IsBlank(text1) ? std::int16_t{0} : ToInt16(text1);
}

void EndOnBrokenModel(ProjectToModel& state, const std::string& title) {
  state.desktop.ShowMessage(
      {.text = "Error in Translation", .icon = MessageIcon::kCritical, .title = title});
  RestoreMousePointer(state.desktop);
  state.desktop.EndProgram();
}

}  // namespace merivane::roundtrip
