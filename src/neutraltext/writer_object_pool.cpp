#include "neutraltext/modProjectToIDEF3.h"
#include "program/error_boxes.h"
#include "runtime/conversions.h"
#include "store/interim_db.h"
#include "writer_lines.h"

namespace merivane::neutraltext {

namespace {

constexpr std::string_view kDefaultDunmarType = "Agent";
constexpr std::string_view kDefaultCelvarType = "Shared Resource";

// Has its own guard: a failure shows the description and the caller goes on.
void WriteSimulationProperty(ProjectToModel& state, double maximumUnits, bool shared) {
  try {
    LineWriter out(state);
    out.Lines({"    Property", "      Name:  @Simulation Information", "      Glossary",
               "Sim_Widget", "Icon:  1", "End  Sim_Widget"});
    if (shared) {
      out.Line("Sim_Shared");
      out.Keyword("Quantity:  ", maximumUnits);
      out.Line("End Sim_Shared");
    }
    out.Lines({"      End  Glossary", "    End  Property"});
  } catch (const RunTimeError& error) {
    ShowDescription(state.desktop, error);
  }
}

void WriteResourceProperty(ProjectToModel& state, LineWriter& out, Recordset& resource) {
  out.Line("  Property List");
  const Value units = resource.Field("Res_MAX_Units");
  if (!units.IsNull()) {
    const double maximumUnits = ToDouble(units);
    const Value type = resource.Field("Res_Type");
    WriteSimulationProperty(state, maximumUnits, !type.IsNull() && ToDouble(type) != 0);
  }
  out.Closing("  Property List");
}

void WriteStoredResource(ProjectToModel& state, LineWriter& out, Recordset& resource) {
  out.Keyword("Object  ", resource.Field("KV7_Obj_Hex"));
  out.Keyword("  Name:  ", resource.Field("Res_Name"));
  out.Keyword("  Creator:  ", resource.Field("KV7_OBJ_CREATOR"));
  out.Keyword("  Date Created:  ", resource.Field("KV7_OBJ_DATE_CREATED"));
  out.Keyword("  Last Modified:  ", resource.Field("KV7_OBJ_LAST_MODIFIED"));
  out.Block("  Glossary", resource, "KV7_OBJ_GLOSSARY", NullBlock::kEmptyLine);
  out.Block("  Note List", resource, "KV7_OBJ_NOTE_LIST", NullBlock::kEmptyLine);
  out.Block("  Source List", resource, "KV7_OBJ_SOURCE_LIST", NullBlock::kEmptyLine);
  WriteResourceProperty(state, out, resource);
  out.Keyword("  Type:  ", resource.Field("KV7_OBJ_Dunmar_Type"), kDefaultDunmarType);
  out.Keyword("  Type:  ", resource.Field("KV7_OBJ_Celvar_Type"), kDefaultCelvarType);
  out.Elaboration("  ", resource,
                  {"KV7_OBJOCC_LIST", "KV7_OBJ_FACT_LIST", "KV7_OBJ_CONSTRAINT_LIST"},
                  NullBlock::kEmptyLine);
  out.Keyword("End  Object ", resource.Field("KV7_Obj_Hex"));
  out.EmptyLine();
}

void WriteBareResource(ProjectToModel& state, LineWriter& out, Recordset& resource) {
  out.Keyword("Object  ", resource.Field("RES_UID"));
  out.Keyword("  Name:  ", resource.Field("RES_NAME"));
  out.Lines({"  Creator:  ", "  Date Created:  ", "  Last Modified:  "});
  out.EmptyBlock("  Glossary");
  out.EmptyBlock("  Note List");
  out.EmptyBlock("  Source List");
  WriteResourceProperty(state, out, resource);
  out.Lines({"  Type:  Agent", "  Type:  Shared Resource"});
  out.EmptyElaboration("  ");
  out.Keyword("End  Object ", resource.Field("RES_UID"));
  out.EmptyLine();
}

void WriteUnsentObject(LineWriter& out, Recordset& object) {
  out.Keyword("Object  ", object.Field("NUM"));
  out.Keyword("  Name:  ", object.Field("Name"));
  out.Keyword("  Creator:  ", object.Field("Creator"));
  out.Keyword("  Date Created:  ", object.Field("DATE_CREATED"));
  out.Keyword("  Last Modified:  ", object.Field("LAST_MODIFIED"));
  out.Block("  Glossary", object, "GLOSSARY", NullBlock::kEmptyLine);
  out.EmptyBlock("  Note List");
  out.EmptyBlock("  Source List");
  out.EmptyBlock("  Property List");
  out.Keyword("  Type:  ", object.Field("Dunmar_Type"), kDefaultDunmarType);
  out.Keyword("  Type:  ", object.Field("Celvar_Type"), kDefaultCelvarType);
  out.Elaboration("  ", object, {}, NullBlock::kEmptyLine);
  out.Keyword("End  Object ", object.Field("NUM"));
  out.EmptyLine();
}

// Objects of the model that never went to the plan, of every project in the file.
void WriteUnsentObjects(LineWriter& out, Connection* connection) {
  Recordset objects =
      AskStatic(connection, "SELECT * FROM [Object_Pool] WHERE SEND_TO_PROJECT = 0");
  for (; !objects.Eof(); objects.MoveNext()) {
    if (AboveZero(objects.Field("Num"))) WriteUnsentObject(out, objects);
  }
}

}  // namespace

void WriteObjectPool(ProjectToModel& state) {
  try {
    LineWriter out(state);
    Recordset resources = AskStatic(
        state.gProjectConn.get(),
        "SELECT * FROM [MSP_RESOURCES] WHERE RES_UID > 0 AND [PROJ_ID] = ", state.gInterimProjId);
    if (resources.RecordCount() < 1) return;
    resources.MoveLast();
    resources.MoveFirst();
    out.Lines({"", "Object Pool"});
    const bool hasNumber = FieldExists(resources, "KV7_OBJ_HEX") == 1;
    bool storedSeen = false;
    for (; !resources.Eof(); resources.MoveNext()) {
      if (hasNumber && AboveZero(resources.Field("KV7_Obj_Hex"))) {
        storedSeen = true;
        WriteStoredResource(state, out, resources);
      } else {
        WriteBareResource(state, out, resources);
      }
    }
    if (storedSeen) WriteUnsentObjects(out, state.gProjectConn.get());
    out.Lines({"", "End  Object Pool"});
  } catch (const RunTimeError& error) {
    ShowDescription(state.desktop, error);
  }
}

}  // namespace merivane::neutraltext
