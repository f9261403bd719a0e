#include <algorithm>
#include <string_view>

#include "project_counters.h"
#include "runtime/conversions.h"
#include "sql_pieces.h"

namespace merivane::roundtrip {

namespace {

// 0 where no row has a number.
std::int16_t MaxId(ProjectToModel& state, const std::string& sql) {
  Recordset maximum = AskStatic(state.gInterimConn.get(), sql);
  const Value highest = maximum.Field("Max_ID");
  return highest.IsNull() ? std::int16_t{0} : ToInt16(highest);
}

}  // namespace

void UpdateMaxIds(ProjectToModel& state) {
  const std::int16_t activity =
      MaxId(state, "SELECT Max(Num) as Max_ID FROM Activity_Pool" + WhereMspProjId(state));
  const std::int16_t task =
      MaxId(state, "SELECT Max(KV7_PROCOCC_HEX) as Max_ID FROM MSP_TASKS where TASK_UID > 0" +
                       AndProjId(state));
  const std::int16_t link =
      MaxId(state, "SELECT Max(Num) as Max_ID FROM Links_in_Scenario" + WhereMspProjId(state));
  const std::int16_t junction =
      MaxId(state, "SELECT Max(Num) as Max_ID FROM Junctions_in_Scenario" + WhereMspProjId(state));

  Recordset project = Ask(state.gInterimConn.get(),
                          "SELECT * FROM MSP_PROJECTS Where Proj_ID = ", state.gInterimProjId);
  if (project.Eof()) {
    project.AddNew();
    project.SetField("Proj_ID", state.gInterimProjId);
  }
  project.SetField("KV7_PROJ_Max_Use_ID", std::max({task, link, junction}));
  project.SetField("KV7_PROJ_Max_Act_ID", activity);
  project.Update();
}

}  // namespace merivane::roundtrip
