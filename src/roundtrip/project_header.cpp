#include "project_counters.h"

namespace merivane::roundtrip {

void StoreProjectHeader(ProjectToModel& state, const std::string& date) {
  Recordset project = Ask(state.gInterimConn.get(),
                          "SELECT * FROM MSP_Projects Where Proj_ID = ", state.gInterimProjId);
  if (project.Eof()) {
    project.AddNew();
    project.SetField("Proj_ID", state.gInterimProjId);
    project.SetField("PROJ_PROP_AUTHOR", "Merivane");
    project.SetField("KV7_PROJ_Max_Use_Id", 0);
    project.SetField("KV7_PROJ_Max_Act_Id", 0);
  }
  if (!date.empty()) project.SetField("KV7_PROJ_Start_Date", date);
  project.Update();
}

}  // namespace merivane::roundtrip
