#include <string_view>

#include "mpx_tables.h"
#include "sql_pieces.h"

namespace merivane::roundtrip {

namespace {

void DeleteRows(ProjectToModel& state, std::string_view sql) {
  Recordset rows;
  rows.OpenDynamic(sql, state.gInterimConn.get());
  for (; !rows.Eof(); rows.MoveNext()) rows.Delete();
}

void KeepHeader(ProjectToModel& state, const std::string& text) {
  Recordset misc;
  misc.OpenDynamic("SELECT * FROM P_Misc", state.gInterimConn.get());
  misc.AddNew();
  misc.SetField("Header", text);
  misc.SetField("Msp_ProjID", state.gInterimProjId);
  misc.Update();
}

}  // namespace

void ClearWorkTables(ProjectToModel& state, const MpxHeader& header) {
  const bool rebuild = state.gRebuildModel == 1;
  if (rebuild) {
    DeleteRows(state, "SELECT * FROM MSP_PROJECTS");
    DeleteRows(state, "SELECT * FROM MSP_TASKS Where Proj_ID = " +
                          std::to_string(state.gInterimProjId) + " AND TASK_UID > 0");
  }
  DeleteRows(state, "SELECT * FROM P_Misc");
  KeepHeader(state, header.text);
  DeleteRows(state, "SELECT * FROM ProjectRes");
  if (rebuild) DeleteRows(state, "SELECT * FROM Activity_Pool");
  DeleteRows(state, "SELECT * FROM ProjectAct");
  DeleteRows(state, "SELECT * FROM ProjectResReqts");
}

}  // namespace merivane::roundtrip
