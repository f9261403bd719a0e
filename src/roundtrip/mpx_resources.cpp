#include "mpx/mpx_fields.h"
#include "mpx_tables.h"
#include "runtime/conversions.h"
#include "runtime/text.h"
#include "sql_pieces.h"

namespace merivane::roundtrip {

using namespace mpx;

namespace {

// The numbers of the last resource that bears an object's number.
struct ResourceNumbers {
  std::int16_t object = 0;
  std::int16_t uid = 0;
};

struct PlanResource {
  std::string id;
  std::string name;
  Value quantity;  // Null where the field is empty
};

ResourceNumbers LastResourceNumbers(ProjectToModel& state) {
  Recordset resources;
  resources.OpenDynamic("SELECT * FROM MSP_RESOURCES where KV7_OBJ_HEX > 0" + AndProjId(state),
                        state.gInterimConn.get());
  if (resources.Eof()) return {};
  resources.MoveLast();
  return {ToInt16(resources.Field("KV7_OBJ_HEX")), ToInt16(resources.Field("RES_UID"))};
}

// Until it is seen in the file, a resource that was sent to the plan counts as dropped from it.
void MarkSentResourcesUnseen(ProjectToModel& state) {
  Recordset resources;
  resources.OpenDynamic("SELECT * FROM MSP_RESOURCES Where Proj_ID = " +
                            std::to_string(state.gInterimProjId) + " AND RES_UID > 0 ",
                        state.gInterimConn.get());
  for (; !resources.Eof(); resources.MoveNext()) {
    resources.SetField("KV7_OBJ_Brought_Back", resources.Field("KV7_OBJ_Send_To_Project"));
    resources.Update();
  }
}

void DeleteDroppedResources(ProjectToModel& state) {
  Recordset resources;
  resources.OpenDynamic(
      "SELECT * FROM MSP_RESOURCES where RES_UID >0 AND KV7_OBJ_Brought_Back = 1 " +
          AndProjId(state),
      state.gInterimConn.get());
  for (; !resources.Eof(); resources.MoveNext()) resources.Delete();
}

std::string ResourceName(const ProjectToModel& state, const MpxLines& lines) {
  if (state.mpxLayout == kNameThird) return lines.Field(3);
  std::string name = lines.Field(4);
  if (state.mpxLayout == kInitialsThird && name.empty()) return lines.Field(3);
  return name;
}

Value Quantity(const ProjectToModel& state, const MpxLines& lines) {
  const std::string text =
      state.mpxLayout == kNameThird ? GetLastField(lines.Text()) : lines.Field(6);
  return text.empty() ? Value() : Value(text);
}

void AddResource(ProjectToModel& state, Recordset& resources, ResourceNumbers& numbers,
                 const PlanResource& resource) {
  resources.AddNew();
  numbers.object = AddInt16(numbers.object, 1);
  numbers.uid = AddInt16(numbers.uid, 1);
  resources.SetField("RES_UID", numbers.uid);
  resources.SetField("KV7_OBJ_HEX", numbers.object);
  resources.SetField("RES_Name", resource.name);
  resources.SetField("KV7_OBJ_Quantity", resource.quantity);
  resources.SetField("KV7_OBJ_brought_back", 0);
  resources.SetField("KV7_OBJ_send_to_project", 1);
  resources.SetField("KV7_OBJ_Celvar_Type", "Shared Resource");
  resources.SetField("KV7_OBJ_Dunmar_Type", "Agent");
  resources.SetField("Proj_ID", state.gInterimProjId);
}

void AddPlanResource(ProjectToModel& state, const PlanResource& resource) {
  Recordset rows;
  rows.OpenDynamic("SELECT * FROM ProjectRes", state.gInterimConn.get());
  rows.AddNew();
  rows.SetField("PID", resource.id);
  rows.SetField("Name", resource.name);
  rows.SetField("Qty", resource.quantity);
  rows.SetField("Msp_ProjID", state.gInterimProjId);
  rows.Update();
}

// Leaves the first line behind the note in hand.
void ReadNote(MpxLines& lines, Recordset& resources) {
  lines.Advance();
  if (lines.AtEnd() || lines.Record() != 51) return;
  std::string note = lines.TextBehindFirstComma().append(kCrLf);
  for (lines.Advance(); !lines.AtEnd() && lines.Record() == 0; lines.Advance()) {
    note.append(lines.Text()).append(kCrLf);
  }
  resources.SetField("KV7_OBJ_Glossary", NoteWithLineBreaks(note));
}

bool BelongsToResource(std::int16_t record) {
  return record == 0 || record == 51 || (record >= 55 && record <= 57);
}

// Leaves the first line behind the resource's records in hand.
void ReadResource(ProjectToModel& state, MpxLines& lines, ResourceNumbers& numbers) {
  const PlanResource resource{lines.Field(2), ResourceName(state, lines), Quantity(state, lines)};
  CheckResourceName(state.desktop, resource.name);
  if (resource.name.empty()) {
    lines.Advance();
    return;
  }
  Recordset resources;
  resources.OpenDynamic("SELECT * FROM MSP_RESOURCES where RES_UID > 0 AND RES_Name = '" +
                            resource.name + "'" + AndProjId(state),
                        state.gInterimConn.get());
  if (resources.Eof()) {
    AddResource(state, resources, numbers, resource);
  } else {
    resources.SetField("KV7_OBJ_Quantity", resource.quantity);
    resources.SetField("KV7_OBJ_Brought_Back", 0);
  }
  AddPlanResource(state, resource);
  ReadNote(lines, resources);
  resources.Update();
  while (!lines.AtEnd() && BelongsToResource(lines.Record())) lines.Advance();
}

}  // namespace

void ReadResources(ProjectToModel& state, MpxLines& lines) {
  ResourceNumbers numbers = LastResourceNumbers(state);
  MarkSentResourcesUnseen(state);
  lines.Advance();
  while (!lines.AtEnd() && lines.Record() <= kLastKnownRecord) {
    if (lines.Record() == 60) {
      DeleteDroppedResources(state);
      return;
    }
    if (lines.Record() == 50) {
      ReadResource(state, lines, numbers);
    } else {
      lines.Advance();
    }
  }
}

}  // namespace merivane::roundtrip
