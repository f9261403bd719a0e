#include "plan_source.h"
#include "runtime/conversions.h"
#include "sql_pieces.h"

namespace merivane::roundtrip {

void WorkTables::AddTask(const PlanTask& task) {
  Recordset row;
  row.OpenDynamic("SELECT * FROM ProjectAct" + WhereMspProjId(state_), state_.gInterimConn.get());
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
  Recordset requirement;
  requirement.OpenDynamic(
      "SELECT * FROM ProjectResReqts where Activitypid = " + std::to_string(assignment.task) +
          " and ResourcePID = " + Joined(assignment.resource) + AndMspProjId(state_),
      state_.gInterimConn.get());
  if (!requirement.Eof()) return;
  requirement.AddNew();
  requirement.SetField("ActivityPID", assignment.task);
  requirement.SetField("ResourcePID", assignment.resource);
  requirement.SetField("Qty", assignment.units);
  requirement.SetField("Msp_ProjID", state_.gInterimProjId);
  requirement.Update();
}

}  // namespace merivane::roundtrip
