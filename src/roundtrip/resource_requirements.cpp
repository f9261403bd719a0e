#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>

#include "merge_statements.h"
#include "merge_steps.h"
#include "runtime/conversions.h"

namespace merivane::roundtrip {

namespace {

// A column of the first row that a statement finds for a value, asked for once: the tables stay as
// they are while the requirements are walked. Without a row there is nothing.
class LookUp {
 public:
  LookUp(ProjectToModel& state, std::string front, const char* column, std::string back)
      : database_(*state.gInterimConn),
        front_(std::move(front)),
        column_(column),
        back_(std::move(back)) {}

  const std::optional<Value>& Find(const Value& value) {
    const std::string text = Joined(value);
    if (const auto known = known_.find(text); known != known_.end()) return known->second;
    Recordset found = Ask(&database_, front_, text, back_);
    std::optional<Value> answer;
    if (!found.Eof()) answer = found.Field(column_);
    return known_[text] = std::move(answer);
  }

 private:
  Connection& database_;
  std::string front_;
  const char* column_;
  std::string back_;
  std::unordered_map<std::string, std::optional<Value>> known_;
};

void TakeOver(LookUp& source, const char* from, Recordset& requirement, const char* to) {
  const auto& found = source.Find(requirement.Field(from));
  if (found) requirement.SetField(to, *found);
}

// A column of another type may hold a number where a text is set.
bool MayBeNumber(const Value& value) {
  const std::string text = Joined(value);
  const std::size_t first = text.find_first_not_of(" \t\n\v\f\r");
  constexpr std::string_view kFirst = "0123456789+-.";
  return first != std::string::npos && kFirst.find(text[first]) != std::string_view::npos;
}

class Resolver {
 public:
  explicit Resolver(ProjectToModel& state)
      : activities_(state, "Select * from ProjectAct where PID = ", "Text1", AndMspProjId(state)),
        resources_(state, "Select * from ProjectRes where PID = ", "Name", AndMspProjId(state)),
        objects_(state, "Select * from MSP_RESOURCES where RES_UID > 0 AND RES_Name = '",
                 "KV7_OBJ_HEX", "'" + AndProjId(state)) {}

  void Resolve(Recordset& requirement) {
    TakeOver(activities_, "ActivityPID", requirement, "ActIdInDunmar");
    TakeOver(resources_, "ResourcePID", requirement, "ResName");
    if (MayBeNumber(requirement.Field("ResName"))) requirement.Update();
    if (requirement.Field("ResName").IsNull()) return;
    TakeOver(objects_, "ResName", requirement, "ResIdInDunmar");
  }

 private:
  LookUp activities_;
  LookUp resources_;
  LookUp objects_;
};

void ResolveResourceRequirements(ProjectToModel& state) {
  Resolver resolver(state);
  Recordset requirements =
      Ask(state.gInterimConn.get(), "Select * from ProjectResReqts", WhereMspProjId(state));
  for (; !requirements.Eof(); requirements.MoveNext()) {
    WithEnd(
        state, [&] { resolver.Resolve(requirements); }, [&] { requirements.Update(); });
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
void AddObject(ProjectToModel& state, LookUp& scenarios, Recordset& requirement,
               Recordset& objects) {
  const auto& scenario = scenarios.Find(requirement.Field("ActIdInDunmar"));
  if (!scenario) return;
  objects.AddNew();
  objects.SetField("Scenario_Num", *scenario);
  objects.SetField("Activity_Num", requirement.Field("ActIdInDunmar"));
  objects.SetField("Object_Occ_Num", requirement.Field("ResIdInDunmar"));
  objects.SetField("Object_Name", requirement.Field("ResName"));
  objects.SetField("Qty", requirement.Field("Qty"));
  objects.SetField("Brought_From_Project", 1);
  objects.SetField("Msp_ProjID", state.gInterimProjId);
  objects.Update();
}

void MergeRequirement(ProjectToModel& state, LookUp& scenarios, Recordset& requirement) {
  const Value activity = requirement.Field("ActIdInDunmar");
  const Value object = requirement.Field("ResIdInDunmar");
  if (activity.IsNull() || object.IsNull()) return;
  Recordset objects =
      Ask(state.gInterimConn.get(),
          "Select * from Object_in_Activity_in_Scenario where Activity_Num = ", activity,
          " and Object_Occ_Num = ", object, AndMspProjId(state));
  if (objects.Eof()) {
    AddObject(state, scenarios, requirement, objects);
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
  LookUp scenarios(state, "Select * from MSP_TASKS where TASK_UID > 0 AND KV7_PROCOCC_HEX = ",
                   "KV7_Scenario_HEX", AndProjId(state));
  Recordset requirements =
      Ask(state.gInterimConn.get(), "Select * from ProjectResReqts", WhereMspProjId(state));
  for (; !requirements.Eof(); requirements.MoveNext(), state.progress.Step()) {
    MergeRequirement(state, scenarios, requirements);
  }
  if (state.gRebuildModel == 1) DeleteDroppedObjects(state);
}

}  // namespace merivane::roundtrip
