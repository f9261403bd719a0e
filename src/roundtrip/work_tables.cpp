#include <string_view>

#include "plan_source.h"
#include "sql_pieces.h"

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

}  // namespace merivane::roundtrip
