#include "mpx_assignments.h"

#include "runtime/conversions.h"
#include "sql_pieces.h"

namespace merivane::roundtrip {

void ReadAssignment(ProjectToModel& state, const MpxLines& lines, std::int32_t taskPid) {
  const std::string resourcePid = lines.Field(2);
  const std::string quantity = lines.Field(3);
  if (!IsNumericText(resourcePid) || !IsNumericText(quantity) || taskPid <= 0) return;
  Recordset requirement;
  requirement.OpenDynamic(
      "SELECT * FROM ProjectResReqts where Activitypid = " + std::to_string(taskPid) +
          " and ResourcePID = " + resourcePid + AndMspProjId(state),
      state.gInterimConn.get());
  if (!requirement.Eof()) return;
  requirement.AddNew();
  requirement.SetField("ActivityPID", taskPid);
  requirement.SetField("ResourcePID", resourcePid);
  requirement.SetField("Qty", quantity);
  requirement.SetField("Msp_ProjID", state.gInterimProjId);
  requirement.Update();
}

}  // namespace merivane::roundtrip
