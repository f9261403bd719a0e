#include <unordered_map>

#include "mpx/mpx_format.h"
#include "translation_steps.h"

namespace merivane::translator {

using namespace mpx;

namespace {

constexpr std::string_view kObjects = "Select * from Object_Pool where Msp_ProjID = ";

// From Object_Pool.
constexpr CopiedColumn kModelColumns[] = {
    {"KV7_OBJ_HEX", "Num"},
    {"KV7_OBJ_CREATOR", "Creator"},
    {"KV7_OBJ_DATE_CREATED", "Date_created"},
    {"KV7_OBJ_LAST_MODIFIED", "Last_Modified"},
    {"KV7_OBJ_GLOSSARY", "Glossary"},
    {"KV7_OBJ_NOTE_LIST", "Note_List"},
    {"KV7_OBJ_SOURCE_LIST", "Source_List"},
    {"KV7_OBJ_PROPERTY_LIST", "Property_List"},
    {"KV7_OBJ_DUNMAR_TYPE", "Dunmar_Type"},
    {"KV7_OBJ_CELVAR_TYPE", "Celvar_Type"},
    {"KV7_OBJOCC_LIST", "Object_Occ_List"},
    {"KV7_OBJ_FACT_LIST", "Fact_List"},
    {"KV7_OBJ_CONSTRAINT_LIST", "Constraint_List"},
    {"KV7_OBJ_QUANTITY", "Quantity"},
    {"KV7_OBJ_SEND_TO_PROJECT", "Send_to_Project"},
    {"KV7_OBJ_BROUGHT_BACK", "brought_back"},
    {"KV7_OBJ_ALIAS", "Alias"},
    {"KV7_OBJ_PID", "PID"},
};

bool IsResource(const Value& type) {
  const std::string text = Joined(type);
  return text == kSharedResource || text == kDedicatedResource || text == kTransport;
}

// By name.
void MarkOccurrences(ModelToProject& state, Recordset& object) {
  const Value sent = object.Field("Send_to_Project");
  const Value pid = object.Field("PID");
  Recordset occurrences =
      Ask(state.gMspConn.get(),
          "select * from Object_in_Activity_in_scenario where Msp_ProjID = ", state.gMspProjId,
          " and Object_Name = '", object.Field("Name"), "'");
  for (; !occurrences.Eof(); occurrences.MoveNext()) {
    occurrences.SetField("Send_to_Project", sent);
    occurrences.SetField("PID", pid);
    occurrences.Update();
  }
}

void FillResource(const Pass& pass, Recordset& object, Recordset& resource) {
  const Value pid = object.Field("PID");
  const Value name = object.Field("Name");
  const Value quantity = object.Field("Quantity");
  resource.SetField("Proj_ID", pass.state.gMspProjId);
  resource.SetField("Res_UID", pid);
  resource.SetField("Res_ID", pid);
  resource.SetField("Res_Name", name);
  resource.SetField("Res_Initials", name);
  resource.SetField("RES_TYPE", -1);
  resource.SetField("Res_Max_Units", quantity.IsNull() ? Value(1) : quantity);
  resource.SetField("Res_STD_RATE", 10);
  resource.SetField("Res_OVT_RATE", 15);
  CopyColumns(kModelColumns, object, resource);
}

void AddResource(Pass& pass, Recordset& object, Recordset& resources) {
  resources.AddNew();
  FillResource(pass, object, resources);
  const Value glossary = object.Field("Glossary");
  if (!glossary.IsNull()) pass.PrintMpx(MpxNote(kMpxResourceNote, Joined(glossary)));
  pass.PrintMpx(kMpxResourceCalendar);
  resources.Update();
  resources.MoveNext();
}

}  // namespace

void MarkResources(Pass& pass) {
  ModelToProject& state = pass.state;
  std::unordered_map<std::string, int> objectsToCome;  // of each name
  Recordset objects = Ask(state.gMspConn.get(), kObjects, state.gMspProjId);
  for (; !objects.Eof(); objects.MoveNext()) {
    ++objectsToCome[Joined(objects.Field("Name"))];
    if (!IsResource(objects.Field("Celvar_Type"))) continue;
    objects.SetField("Send_to_Project", 1);
    objects.SetField("PID", pass.resourceCounter);
    pass.resourceCounter = AddInt16(pass.resourceCounter, 1);
    objects.Update();
  }
  objects.Close();
  objects = Ask(state.gMspConn.get(), kObjects, state.gMspProjId);
  for (; !objects.Eof(); objects.MoveNext()) {
    // Objects of one name share the marks of the last.
    if (--objectsToCome[Joined(objects.Field("Name"))] == 0) MarkOccurrences(state, objects);
  }
}

void WriteResources(Pass& pass) {
  ModelToProject& state = pass.state;
  Recordset objects =
      Ask(state.gMspConn.get(), kObjects, state.gMspProjId, " and Send_to_Project = 1");
  Recordset resources = Ask(state.gMspConn.get(), "Select * from MSP_RESOURCES");
  if (!resources.Eof()) resources.MoveLast();
  for (; !objects.Eof(); objects.MoveNext()) {
    pass.PrintMpx(
        MpxResource(objects.Field("PID"), objects.Field("Name"), objects.Field("Quantity")));
    if (!resources.Bof() && !resources.Eof()) AddResource(pass, objects, resources);
  }
}

}  // namespace merivane::translator
