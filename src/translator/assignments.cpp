#include "mpx/mpx_format.h"
#include "runtime/text.h"
#include "translation_steps.h"

namespace merivane::translator {

using namespace mpx;

namespace {

constexpr double kWorkInHour = 60000;  // thousandths of a minute

const std::string& AliasOf(Pass& pass, const Value& objectNum) {
  const auto [known, isNew] = pass.memory.aliases.try_emplace(Joined(objectNum));
  if (isNew) {
    Recordset object = Ask(pass.state.gMspConn.get(),
                           "Select * from Object_Pool where Msp_ProjID = ", pass.state.gMspProjId,
                           " and Num = ", objectNum);
    if (!object.Eof()) known->second = Joined(object.Field("Alias"));
  }
  return known->second;
}

void AddAssignment(Pass& pass, const Value& pid, const Value& projectId, const std::string& units) {
  const std::string hours = FixedTwo(ToDouble(units) * pass.taskHours);
  pass.assignmentUID = AddInt16(pass.assignmentUID, 1);
  if (!pass.IsStored(PlanRow::kAssignment)) return;
  Recordset& assignments = pass.Opened(pass.assignments, "Select * from MSP_ASSIGNMENTS");
  assignments.AddNew();
  assignments.SetField("PROJ_ID", pass.state.gMspProjId);
  assignments.SetField("ASSN_UID", pass.assignmentUID);
  assignments.SetField("RES_UID", pid);
  assignments.SetField("TASK_UID", projectId);
  assignments.SetField("ASSN_UNITS", units);
  assignments.SetField("ASSN_WORK", ToDouble(hours) * kWorkInHour);
  assignments.SetField("EXT_EDIT_REF_DATA", 1);
  assignments.Update();
  pass.PrintMpx(MpxAssignment(pid, units, hours));
}

}  // namespace

std::string UnitsInRule(const std::string& rule, const std::string& alias) {
  const std::size_t position = Find(rule, alias);
  if (position == 0) return "1";
  std::string units = Mid(rule, static_cast<std::ptrdiff_t>(position + alias.size() + 1), 1);
  return IsNumericText(units) ? units : "1";
}

void WriteAssignments(Pass& pass, Recordset& task) {
  ModelToProject& state = pass.state;
  const Value useNum = task.Field("Use_Num");
  if (IsDecomposed(pass, useNum)) return;
  const std::string rule = Joined(task.Field("Labor_rule"));
  const Value projectId = task.Field("Project_ID");
  Recordset occurrences =
      Ask(state.gMspConn.get(),
          "Select * from Object_in_Activity_in_Scenario where Msp_ProjID = ", state.gMspProjId,
          " and send_to_project = 1 and Activity_Num = ", useNum);
  for (; !occurrences.Eof(); occurrences.MoveNext()) {
    const std::string& alias = AliasOf(pass, occurrences.Field("Object_Occ_Num"));
    if (alias.empty()) continue;
    AddAssignment(pass, occurrences.Field("PID"), projectId, UnitsInRule(rule, alias));
  }
}

}  // namespace merivane::translator
