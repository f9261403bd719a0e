#include "inspect/model_snapshot.h"

#include "reconcile/plan_content.h"
#include "runtime/conversions.h"
#include "store/recordset.h"

namespace merivane::inspect {

using namespace reconcile;

namespace {

constexpr std::int32_t kNoRow = -1;

bool IsSet(const Value& flag) { return NumberIn(flag).value_or(0) != 0; }

class SnapshotReader {
 public:
  SnapshotReader(Connection& connection, std::int32_t project)
      : connection_(connection), project_(std::to_string(project)) {}

  ModelSnapshot Read() {
    ReadNotes();
    ReadRows();
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
      const auto process = NumberIn(row.Field("Num"));
      if (process) notes_[*process] = NoteText(Joined(row.Field("Glossary")));
    });
  }

  // The rows of the plan that came in last.
  void ReadRows() {
    ForEach("PID, Text1 from ProjectAct", "Msp_ProjID = ", [&](Recordset& row) {
      const auto unit = NumberIn(row.Field("Text1"));
      if (unit) rowOfUnit_.emplace(*unit, NumberIn(row.Field("PID")));
    });
    ForEach("PID, Name from ProjectRes", "Msp_ProjID = ", [&](Recordset& row) {
      rowOfResource_.emplace(Joined(row.Field("Name")), NumberIn(row.Field("PID")));
    });
  }

  template <typename Key>
  static std::optional<std::int32_t> RowIn(const std::map<Key, std::optional<std::int32_t>>& rows,
                                           const Key& key) {
    const auto row = rows.find(key);
    return row == rows.end() ? std::nullopt : row->second;
  }

  void ReadUnits() {
    ForEach(
        "KV7_PROCOCC_HEX, KV7_PROC_HEX, TASK_NAME, KV7_PROCOCC_DURATION, "
        "KV7_PROCOCC_SEND_TO_PROJECT, KV7_PROCOCC_BROUGHT_BACK, TASK_UID, TASK_OUTLINE_LEVEL, "
        "KV7_SCENARIO_HEX from MSP_TASKS",
        "TASK_UID > 0 and Proj_ID = ", [&](Recordset& row) {
          const auto unit = NumberIn(row.Field("KV7_PROCOCC_HEX"));
          if (!unit) return;
          const auto process = NumberIn(row.Field("KV7_PROC_HEX"));
          model_.units[*unit] = {Joined(row.Field("TASK_NAME")),
                                 Joined(row.Field("KV7_PROCOCC_DURATION")),
                                 process ? notes_[*process] : "",
                                 IsSet(row.Field("KV7_PROCOCC_SEND_TO_PROJECT")),
                                 IsSet(row.Field("KV7_PROCOCC_BROUGHT_BACK")),
                                 NumberIn(row.Field("TASK_OUTLINE_LEVEL")).has_value(),
                                 NumberIn(row.Field("KV7_SCENARIO_HEX")).value_or(0),
                                 process.value_or(0),
                                 RowIn(rowOfUnit_, *unit)};
          unitOfTask_[NumberIn(row.Field("TASK_UID")).value_or(kNoRow)] = *unit;
        });
  }

  void ReadStructure() {
    ForEach("Use_Num, Name from Activity_in_Scenario", "Msp_ProjID = ", [&](Recordset& row) {
      const auto unit = NumberIn(row.Field("Use_Num"));
      if (unit) model_.unitNames[*unit] = Joined(row.Field("Name"));
    });
    ForEach("Num, Name from Scenario", "Msp_ProjID = ", [&](Recordset& row) {
      const auto scenario = NumberIn(row.Field("Num"));
      if (scenario) model_.scenarios[*scenario] = Joined(row.Field("Name"));
    });
    ForEach("Num, Cardinality, Type from Junctions_in_Scenario",
            "Msp_ProjID = ", [&](Recordset& row) {
              const auto junction = NumberIn(row.Field("Num"));
              if (!junction) return;
              model_.junctions[*junction] =
                  Joined(row.Field("Cardinality")) + ", " + Joined(row.Field("Type"));
            });
    ForEach("Scenario_Num, Origin_Num, Destination_Num from Links_in_Scenario",
            "Msp_ProjID = ", [&](Recordset& row) {
              const auto scenario = NumberIn(row.Field("Scenario_Num"));
              const auto origin = NumberIn(row.Field("Origin_Num"));
              const auto end = NumberIn(row.Field("Destination_Num"));
              if (scenario && origin && end) model_.links.emplace(*scenario, *origin, *end);
            });
  }

  void ReadResources() {
    ForEach("KV7_OBJ_HEX, RES_NAME, KV7_OBJ_QUANTITY, KV7_OBJ_GLOSSARY, RES_UID from MSP_RESOURCES",
            "RES_UID > 0 and Proj_ID = ", [&](Recordset& row) {
              const auto object = NumberIn(row.Field("KV7_OBJ_HEX"));
              if (!object) return;
              model_.resources[*object] = {Joined(row.Field("RES_NAME")),
                                           Joined(row.Field("KV7_OBJ_QUANTITY")),
                                           NoteText(Joined(row.Field("KV7_OBJ_GLOSSARY"))),
                                           RowIn(rowOfResource_, Joined(row.Field("RES_NAME")))};
              objectOfResource_[NumberIn(row.Field("RES_UID")).value_or(kNoRow)] = *object;
            });
  }

  // The rows of the plan stand as it was sent; those of the model tell what came back.
  void ReadAssignments() {
    std::map<std::pair<std::int32_t, std::int32_t>, std::string> planned;
    ForEach(
        "TASK_UID, RES_UID, ASSN_UNITS from MSP_ASSIGNMENTS", "Proj_ID = ", [&](Recordset& row) {
          const auto unit = unitOfTask_.find(NumberIn(row.Field("TASK_UID")).value_or(0));
          const auto object = objectOfResource_.find(NumberIn(row.Field("RES_UID")).value_or(0));
          if (unit == unitOfTask_.end() || object == objectOfResource_.end()) return;
          planned[{unit->second, object->second}] = Joined(row.Field("ASSN_UNITS"));
        });
    ForEach(
        "Activity_Num, Object_Occ_Num, Qty, Brought_from_Project from "
        "Object_in_Activity_in_Scenario",
        "Msp_ProjID = ", [&](Recordset& row) {
          const auto unit = NumberIn(row.Field("Activity_Num"));
          const auto object = NumberIn(row.Field("Object_Occ_Num"));
          if (!unit || !object) return;
          const std::pair key(*unit, *object);
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
  std::map<std::int32_t, std::optional<std::int32_t>> rowOfUnit_;
  std::map<std::string, std::optional<std::int32_t>> rowOfResource_;
  // By number of the row in the plan, above 0: an assignment without one belongs to nothing.
  std::map<std::int32_t, std::int32_t> unitOfTask_;
  std::map<std::int32_t, std::int32_t> objectOfResource_;
};

}  // namespace

ModelSnapshot ReadSnapshot(Connection& connection, std::int32_t project) {
  const ReadScope scope(&connection);
  return SnapshotReader(connection, project).Read();
}

}  // namespace merivane::inspect
