#include <string_view>

#include "merge_statements.h"
#include "merge_steps.h"
#include "runtime/conversions.h"

namespace merivane::roundtrip {

namespace {

// Copies a column of the first row that the statement finds; leaves the requirement without one.
void TakeOver(ProjectToModel& state, const std::string& sql, const char* from,
              Recordset& requirement, const char* to) {
  Recordset found = Ask(state.gInterimConn.get(), sql);
  if (found.Eof()) return;
  requirement.SetField(to, found.Field(from));
}

// A column of another type may hold a number where a text is set.
bool MayBeNumber(const Value& value) {
  const std::string text = Joined(value);
  const std::size_t first = text.find_first_not_of(" \t\n\v\f\r");
  constexpr std::string_view kFirst = "0123456789+-.";
  return first != std::string::npos && kFirst.find(text[first]) != std::string_view::npos;
}

void ResolveResourceRequirement(ProjectToModel& state, Recordset& requirement) {
  TakeOver(state,
           "Select * from ProjectAct where PID = " + Joined(requirement.Field("ActivityPID")) +
               AndMspProjId(state),
           "Text1", requirement, "ActIdInDunmar");
  TakeOver(state,
           "Select * from ProjectRes where PID = " + Joined(requirement.Field("ResourcePID")) +
               AndMspProjId(state),
           "Name", requirement, "ResName");
  if (MayBeNumber(requirement.Field("ResName"))) requirement.Update();
  const Value name = requirement.Field("ResName");
  if (name.IsNull()) return;
  TakeOver(state,
           "Select * from MSP_RESOURCES where RES_UID > 0 AND RES_Name = '" + Joined(name) + "'" +
               AndProjId(state),
           "KV7_OBJ_HEX", requirement, "ResIdInDunmar");
}

void ResolveResourceRequirements(ProjectToModel& state) {
  Recordset requirements =
      Ask(state.gInterimConn.get(), "Select * from ProjectResReqts", WhereMspProjId(state));
  for (; !requirements.Eof(); requirements.MoveNext()) {
    WithEnd(
        state, [&] { ResolveResourceRequirement(state, requirements); },
        [&] { requirements.Update(); });
  }
}

void ForgetEarlierAssignments(ProjectToModel& state) {
  Recordset objects = Ask(state.gInterimConn.get(), "Select * from Object_in_Activity_in_Scenario",
                          WhereMspProjId(state));
  for (; !objects.Eof(); objects.MoveNext()) {
    objects.SetField("Brought_from_Project", 0);
    objects.Update();
  }
}

// A task that no occurrence stands for gets no object.
void AddObject(ProjectToModel& state, Recordset& requirement, Recordset& objects) {
  Recordset occurrence = Ask(state.gInterimConn.get(),
                             "Select * from MSP_TASKS where TASK_UID > 0 AND KV7_PROCOCC_HEX = ",
                             requirement.Field("ActIdInDunmar"), AndProjId(state));
  if (occurrence.Eof()) return;
  objects.AddNew();
  objects.SetField("Scenario_Num", occurrence.Field("KV7_Scenario_HEX"));
  objects.SetField("Activity_Num", requirement.Field("ActIdInDunmar"));
  objects.SetField("Object_Occ_Num", requirement.Field("ResIdInDunmar"));
  objects.SetField("Object_Name", requirement.Field("ResName"));
  objects.SetField("Qty", requirement.Field("Qty"));
  objects.SetField("Brought_From_Project", 1);
  objects.SetField("Msp_ProjID", state.gInterimProjId);
  objects.Update();
}

void MergeRequirement(ProjectToModel& state, Recordset& requirement) {
  const Value activity = requirement.Field("ActIdInDunmar");
  const Value object = requirement.Field("ResIdInDunmar");
  if (activity.IsNull() || object.IsNull()) return;
  Recordset objects =
      Ask(state.gInterimConn.get(),
          "Select * from Object_in_Activity_in_Scenario where Activity_Num = ", activity,
          " and Object_Occ_Num = ", object, AndMspProjId(state));
  if (objects.Eof()) {
    AddObject(state, requirement, objects);
    return;
  }
  const Value quantity = requirement.Field("Qty");
  objects.SetField("Qty", Equal(quantity, 0) ? Value(1) : quantity);
  objects.SetField("Brought_From_Project", 1);
  objects.Update();
}

// Objects that were sent to the plan and aren't assigned there any more; those of a decomposed
// occurrence stay.
void DeleteDroppedObjects(ProjectToModel& state) {
  Recordset objects =
      Ask(state.gInterimConn.get(),
          "Select * from Object_in_Activity_in_Scenario where Send_To_Project = 1 and "
          "Brought_from_Project = 0",
          AndMspProjId(state));
  for (; !objects.Eof(); objects.MoveNext()) {
    Recordset decomposition =
        Ask(state.gInterimConn.get(),
            "Select * from Scenario where Parent_num = ", objects.Field("Activity_num"),
            AndMspProjId(state));
    if (decomposition.Eof()) objects.Delete();
  }
}

}  // namespace

void MergeResourceRequirements(ProjectToModel& state) {
  state.progress.Begin("Merging the assignments", 0);
  ResolveResourceRequirements(state);
  ForgetEarlierAssignments(state);
  Recordset requirements =
      Ask(state.gInterimConn.get(), "Select * from ProjectResReqts", WhereMspProjId(state));
  for (; !requirements.Eof(); requirements.MoveNext(), state.progress.Step()) {
    MergeRequirement(state, requirements);
  }
  if (state.gRebuildModel == 1) DeleteDroppedObjects(state);
}

}  // namespace merivane::roundtrip
