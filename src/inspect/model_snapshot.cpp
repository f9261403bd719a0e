#include "inspect/model_snapshot.h"

#include "runtime/conversions.h"
#include "store/recordset.h"

namespace merivane::inspect {

namespace {

// A note comes back from a plan with the quotes around it, and with other line ends behind it.
std::string NoteText(std::string text) {
  const bool quoted = text.starts_with('"');
  if (quoted) text.erase(0, 1);
  const auto isEnd = [&](char letter) {
    return letter == '\r' || letter == '\n' || (quoted && letter == '"');
  };
  while (!text.empty() && isEnd(text.back())) text.pop_back();
  return text;
}

bool IsSet(const Value& flag) { return !flag.IsNull() && !Equal(flag, 0); }

class Reader {
 public:
  Reader(Connection& connection, std::int32_t project)
      : connection_(connection), project_(std::to_string(project)) {}

  ModelSnapshot Read() {
    ReadNotes();
    ReadUnits();
    ReadStructure();
    ReadResources();
    ReadAssignments();
    return std::move(model_);
  }

 private:
  template <typename Take>
  void ForEach(const std::string& columnsAndTable, const std::string& condition, Take take) {
    Recordset rows;
    rows.OpenStatic("Select " + columnsAndTable + " where " + condition + project_, &connection_);
    for (; !rows.Eof(); rows.MoveNext()) take(rows);
  }

  void ReadNotes() {
    ForEach("Num, Glossary from Activity_Pool", "Msp_ProjID = ", [&](Recordset& row) {
      notes_[ToInt32(row.Field("Num"))] = NoteText(Joined(row.Field("Glossary")));
    });
  }

  void ReadUnits() {
    ForEach(
        "KV7_PROCOCC_HEX, KV7_PROC_HEX, TASK_NAME, KV7_PROCOCC_DURATION, "
        "KV7_PROCOCC_SEND_TO_PROJECT, KV7_PROCOCC_BROUGHT_BACK, TASK_UID from MSP_TASKS",
        "TASK_UID > 0 and Proj_ID = ", [&](Recordset& row) {
          const Value number = row.Field("KV7_PROCOCC_HEX");
          if (number.IsNull()) return;
          const Value process = row.Field("KV7_PROC_HEX");
          const std::int32_t unit = ToInt32(number);
          model_.units[unit] = {Joined(row.Field("TASK_NAME")),
                                Joined(row.Field("KV7_PROCOCC_DURATION")),
                                process.IsNull() ? "" : notes_[ToInt32(process)],
                                IsSet(row.Field("KV7_PROCOCC_SEND_TO_PROJECT")),
                                IsSet(row.Field("KV7_PROCOCC_BROUGHT_BACK"))};
          unitOfTask_[ToInt32(row.Field("TASK_UID"))] = unit;
        });
  }

  void ReadStructure() {
    ForEach("Num, Cardinality, Type from Junctions_in_Scenario",
            "Msp_ProjID = ", [&](Recordset& row) {
              model_.junctions[ToInt32(row.Field("Num"))] =
                  Joined(row.Field("Cardinality")) + ", " + Joined(row.Field("Type"));
            });
    ForEach("Scenario_Num, Origin_Num, Destination_Num from Links_in_Scenario",
            "Msp_ProjID = ", [&](Recordset& row) {
              const Value origin = row.Field("Origin_Num");
              const Value end = row.Field("Destination_Num");
              if (origin.IsNull() || end.IsNull()) return;
              model_.links.emplace(ToInt32(row.Field("Scenario_Num")), ToInt32(origin),
                                   ToInt32(end));
            });
  }

  void ReadResources() {
    ForEach("KV7_OBJ_HEX, RES_NAME, KV7_OBJ_QUANTITY, KV7_OBJ_GLOSSARY, RES_UID from MSP_RESOURCES",
            "RES_UID > 0 and Proj_ID = ", [&](Recordset& row) {
              const Value number = row.Field("KV7_OBJ_HEX");
              if (number.IsNull()) return;
              model_.resources[ToInt32(number)] = {Joined(row.Field("RES_NAME")),
                                                   Joined(row.Field("KV7_OBJ_QUANTITY")),
                                                   NoteText(Joined(row.Field("KV7_OBJ_GLOSSARY")))};
              objectOfResource_[ToInt32(row.Field("RES_UID"))] = ToInt32(number);
            });
  }

  // The rows of the plan stand as it was sent; those of the model tell what came back.
  void ReadAssignments() {
    std::map<std::pair<std::int32_t, std::int32_t>, std::string> planned;
    ForEach("TASK_UID, RES_UID, ASSN_UNITS from MSP_ASSIGNMENTS",
            "Proj_ID = ", [&](Recordset& row) {
              const auto unit = unitOfTask_.find(ToInt32(row.Field("TASK_UID")));
              const auto object = objectOfResource_.find(ToInt32(row.Field("RES_UID")));
              if (unit == unitOfTask_.end() || object == objectOfResource_.end()) return;
              planned[{unit->second, object->second}] = Joined(row.Field("ASSN_UNITS"));
            });
    ForEach(
        "Activity_Num, Object_Occ_Num, Qty, Brought_from_Project from "
        "Object_in_Activity_in_Scenario",
        "Msp_ProjID = ", [&](Recordset& row) {
          const std::pair key(ToInt32(row.Field("Activity_Num")),
                              ToInt32(row.Field("Object_Occ_Num")));
          const auto plan = planned.find(key);
          const Value quantity = row.Field("Qty");
          const bool sent = plan != planned.end();
          model_.assignments[key] = {sent && quantity.IsNull() ? plan->second : Joined(quantity),
                                     sent, IsSet(row.Field("Brought_from_Project"))};
        });
  }

  Connection& connection_;
  std::string project_;
  ModelSnapshot model_;
  std::map<std::int32_t, std::string> notes_;  // by process number
  std::map<std::int32_t, std::int32_t> unitOfTask_;
  std::map<std::int32_t, std::int32_t> objectOfResource_;
};

}  // namespace

ModelSnapshot ReadSnapshot(Connection& connection, std::int32_t project) {
  const ReadScope scope(&connection);
  return Reader(connection, project).Read();
}

}  // namespace merivane::inspect
