#include "plan_source.h"
#include "runtime/conversions.h"
#include "sql_pieces.h"

namespace merivane::roundtrip {

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

void WorkTables::AddResource(const PlanResource& resource) {
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

void WorkTables::AddPlanResource(const PlanResource& resource) {
  Recordset rows = Ask(state_.gInterimConn.get(), "SELECT * FROM ProjectRes");
  rows.AddNew();
  rows.SetField("PID", resource.id);
  rows.SetField("Name", resource.name);
  rows.SetField("Qty", resource.quantity);
  rows.SetField("Msp_ProjID", state_.gInterimProjId);
  rows.Update();
}

void WorkTables::BeginResource(const PlanResource& resource) {
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

}  // namespace merivane::roundtrip
