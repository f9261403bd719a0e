#include "store/interim_db.h"

#include <exception>

#include "runtime/run_time_error.h"
#include "store/recordset.h"

namespace merivane::store {

namespace {

void EmptyTable(const char* sql, Connection& connection) {
  Recordset rows;
  rows.OpenDynamic(sql, &connection);
  while (!rows.Eof()) {
    rows.Delete();
    rows.MoveNext();
  }
  rows.Close();
}

}  // namespace

void ProveTemplateDb(Workspace& workspace, const std::string& path) {
  Connection connection(workspace);
  connection.Open(ConnectionText(path), OpenMode::kReadOnly);
  for (const char* table :
       {"MSP_PROJECTS", "MSP_TASKS", "MSP_RESOURCES", "MSP_LINKS", "MSP_ASSIGNMENTS",
        "Activity_Pool", "Object_Pool", "Fact_Pool", "Misc", "Scenario", "Activity_in_Scenario",
        "Object_in_Activity_in_Scenario", "Junctions_in_Scenario", "Facts_in_Junction",
        "Links_in_Scenario", "OSTN_List", "ProjectAct", "ProjectRes", "ProjectResReqts"}) {
    Recordset rows;
    rows.OpenDynamic("select * from " + std::string(table), &connection);
    rows.Eof();
  }
}

bool CheckTemplateDb(Workspace& workspace, const std::string& path) {
  try {
    ProveTemplateDb(workspace, path);
    return true;
  } catch (const std::exception&) {
    return false;
  }
}

void OpenInterimDb(Workspace& workspace, std::unique_ptr<Connection>& gMspConn, bool gOverwriteDb,
                   const std::string& path) {
  gMspConn = std::make_unique<Connection>(workspace);
  gMspConn->Open(ConnectionText(path));
  if (!gOverwriteDb) return;
  for (const char* sql :
       {"select * from MSP_PROJECTS", "select * from Activity_Pool", "select * from Object_Pool",
        "select * from Fact_Pool", "select * from Misc", "select * from Scenario",
        "select * from Junctions_in_Scenario", "select * from Facts_in_Junction",
        "select * from Links_in_Scenario", "select * from OSTN_List"}) {
    EmptyTable(sql, *gMspConn);
  }
}

int FieldExists(Recordset& recordset, const std::string& name) {
  const int field = recordset.FindField(name);
  return field >= 0 && recordset.FieldName(field) == name ? 1 : 0;
}

int TableExists(Connection* connection, const std::string& name) {
  if (connection == nullptr) throw RunTimeError(kObjectNotSet);
  Recordset tables;
  connection->OpenSchema(adSchemaTables, tables);
  for (; !tables.Eof(); tables.MoveNext()) {
    if (tables.Field("TABLE_NAME") == Value(name)) return 1;
  }
  return 0;
}

}  // namespace merivane::store
