#include "work_tables.h"

#include <string_view>

#include "merge_statements.h"
#include "runtime/conversions.h"

namespace merivane::roundtrip {

namespace {

void DeleteRows(ProjectToModel& state, std::string_view sql) {
  Recordset rows = Ask(state.gInterimConn.get(), sql);
  for (; !rows.Eof(); rows.MoveNext()) rows.Delete();
}

}  // namespace

void WorkTables::KeepHead(const std::string& text) {
  Recordset misc = Ask(state_.gInterimConn.get(), "SELECT * FROM P_Misc");
  misc.AddNew();
  misc.SetField("Header", text);
  misc.SetField("Msp_ProjID", state_.gInterimProjId);
  misc.Update();
}

void WorkTables::Clear(const PlanHead& head) {
  const bool rebuild = state_.gRebuildModel == 1;
  if (rebuild) {
    DeleteRows(state_, "SELECT * FROM MSP_PROJECTS");
    DeleteRows(state_, "SELECT * FROM MSP_TASKS Where Proj_ID = " +
                           std::to_string(state_.gInterimProjId) + " AND TASK_UID > 0");
  }
  DeleteRows(state_, "SELECT * FROM P_Misc");
  KeepHead(head.text);
  DeleteRows(state_, "SELECT * FROM ProjectRes");
  if (rebuild) DeleteRows(state_, "SELECT * FROM Activity_Pool");
  DeleteRows(state_, "SELECT * FROM ProjectAct");
  DeleteRows(state_, "SELECT * FROM ProjectResReqts");
}

WorkTables::ResourceNumbers WorkTables::LastResourceNumbers() {
  Recordset resources = Ask(state_.gInterimConn.get(),
                            "SELECT * FROM MSP_RESOURCES where KV7_OBJ_HEX > 0", AndProjId(state_));
  if (resources.Eof()) return {};
  resources.MoveLast();
  return {ToInt16(resources.Field("KV7_OBJ_HEX")), ToInt16(resources.Field("RES_UID"))};
}

// Until it is seen in the plan, a resource that was sent there counts as dropped from it.
void WorkTables::MarkSentResourcesUnseen() {
  Recordset resources = Ask(state_.gInterimConn.get(),
                            "SELECT * FROM MSP_RESOURCES Where Proj_ID = ", state_.gInterimProjId,
                            " AND RES_UID > 0 ");
  for (; !resources.Eof(); resources.MoveNext()) {
    resources.SetField("KV7_OBJ_Brought_Back", resources.Field("KV7_OBJ_Send_To_Project"));
    resources.Update();
  }
}

void WorkTables::BeginResources() {
  numbers_ = LastResourceNumbers();
  MarkSentResourcesUnseen();
}

void WorkTables::EndResources() {
  Recordset resources =
      Ask(state_.gInterimConn.get(),
          "SELECT * FROM MSP_RESOURCES where RES_UID >0 AND KV7_OBJ_Brought_Back = 1 ",
          AndProjId(state_));
  for (; !resources.Eof(); resources.MoveNext()) resources.Delete();
}

void WorkTables::AddResource(const MergedResource& resource) {
  resource_.AddNew();
  numbers_.object = AddInt16(numbers_.object, 1);
  numbers_.uid = AddInt16(numbers_.uid, 1);
  resource_.SetField("RES_UID", numbers_.uid);
  resource_.SetField("KV7_OBJ_HEX", numbers_.object);
  resource_.SetField("RES_Name", resource.name);
  resource_.SetField("KV7_OBJ_Quantity", resource.quantity);
  resource_.SetField("KV7_OBJ_brought_back", 0);
  resource_.SetField("KV7_OBJ_send_to_project", 1);
  resource_.SetField("KV7_OBJ_Celvar_Type", "Shared Resource");
  resource_.SetField("KV7_OBJ_Dunmar_Type", "Agent");
  resource_.SetField("Proj_ID", state_.gInterimProjId);
}

void WorkTables::AddPlanResource(const MergedResource& resource) {
  Recordset rows = Ask(state_.gInterimConn.get(), "SELECT * FROM ProjectRes");
  rows.AddNew();
  rows.SetField("PID", resource.id);
  rows.SetField("Name", resource.name);
  rows.SetField("Qty", resource.quantity);
  rows.SetField("Msp_ProjID", state_.gInterimProjId);
  rows.Update();
}

void WorkTables::BeginResource(const MergedResource& resource) {
  resource_ = Recordset();
  resource_.OpenDynamic("SELECT * FROM MSP_RESOURCES where RES_UID > 0 AND RES_Name = '" +
                            resource.name + "'" + AndProjId(state_),
                        state_.gInterimConn.get());
  if (resource_.Eof()) {
    AddResource(resource);
  } else {
    resource_.SetField("KV7_OBJ_Quantity", resource.quantity);
    resource_.SetField("KV7_OBJ_Brought_Back", 0);
  }
  AddPlanResource(resource);
}

void WorkTables::EndResource(const std::optional<std::string>& note) {
  if (note) resource_.SetField("KV7_OBJ_Glossary", *note);
  resource_.Update();
}

void WorkTables::AddTask(const MergedTask& task) {
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

bool WorkTables::MayBeAssigned(const MergedAssignment& assignment) {
  const std::string resource = Joined(assignment.resource);
  constexpr std::size_t kMostDigits = 9;
  arePlain_ = arePlain_ && resource.size() <= kMostDigits && !resource.starts_with('0') &&
              resource.find_first_not_of("0123456789") == std::string::npos;
  return !arePlain_ || !assigned_.emplace(assignment.task, ToInt32(assignment.resource)).second;
}

void WorkTables::AddAssignment(const MergedAssignment& assignment) {
  Recordset requirement = Ask(state_.gInterimConn.get(),
                              "SELECT * FROM ProjectResReqts where Activitypid = ", assignment.task,
                              " and ResourcePID = ", assignment.resource, AndMspProjId(state_));
  if (MayBeAssigned(assignment) && !requirement.Eof()) return;
  requirement.AddNew();
  requirement.SetField("ActivityPID", assignment.task);
  requirement.SetField("ResourcePID", assignment.resource);
  requirement.SetField("Qty", assignment.units);
  requirement.SetField("Msp_ProjID", state_.gInterimProjId);
  requirement.Update();
}

}  // namespace merivane::roundtrip
