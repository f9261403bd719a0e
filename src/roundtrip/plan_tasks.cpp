#include "plan_source.h"
#include "runtime/conversions.h"
#include "sql_pieces.h"

namespace merivane::roundtrip {

void WorkTables::AddTask(const PlanTask& task) {
  Recordset row =
      Ask(state_.gInterimConn.get(), "SELECT * FROM ProjectAct", WhereMspProjId(state_));
  row.AddNew();
  row.SetField("PID", task.id);
  row.SetField("Name", task.name);
  row.SetField("Msp_ProjID", state_.gInterimProjId);
  row.SetField("Duration", task.duration);
  row.SetField("Outline", task.level);
  row.SetField("Predecessor", task.predecessors);
  if (IsNumericText(task.text1)) row.SetField("Text1", task.text1);
  if (task.notes) row.SetField("notes", *task.notes);
  row.Update();
}

void WorkTables::AddAssignment(const PlanAssignment& assignment) {
  Recordset requirement = Ask(state_.gInterimConn.get(),
                              "SELECT * FROM ProjectResReqts where Activitypid = ", assignment.task,
                              " and ResourcePID = ", assignment.resource, AndMspProjId(state_));
  if (!requirement.Eof()) return;
  requirement.AddNew();
  requirement.SetField("ActivityPID", assignment.task);
  requirement.SetField("ResourcePID", assignment.resource);
  requirement.SetField("Qty", assignment.units);
  requirement.SetField("Msp_ProjID", state_.gInterimProjId);
  requirement.Update();
}

}  // namespace merivane::roundtrip
