#include "pictures/process_model.h"

#include <algorithm>
#include <map>
#include <set>
#include <utility>

#include "left_out.h"
#include "runtime/conversions.h"
#include "runtime/text.h"
#include "store/recordset.h"

namespace merivane::pictures {

namespace {

class ProjectRows {
 public:
  ProjectRows(Connection& connection, const std::string& table, std::int32_t project,
              const char* key = "Msp_ProjID") {
    rows_.OpenStatic("select * from " + table + " where " + key + " = " + std::to_string(project),
                     &connection);
  }
  template <typename Read>
  void ForEach(Read read) {
    for (; !rows_.Eof(); rows_.MoveNext()) read();
  }
  std::string Text(const char* column) { return Joined(rows_.Field(column)); }
  std::int32_t Number(const char* column) {
    const Value value = rows_.Field(column);
    return IsNumeric(value) ? ToInt32(value) : 0;
  }
  bool IsZero(const char* column) {
    const Value value = rows_.Field(column);
    return IsNumeric(value) && ToInt32(value) == 0;
  }
  // A block without its indent, blank lines and the last line's end.
  std::string Block(const char* column) {
    std::string block;
    std::string line;
    for (const char letter : Text(column) + '\n') {
      if (letter != '\n') {
        line += letter == '\r' || letter == '\t' ? ' ' : letter;
        continue;
      }
      line = Trim(line);
      if (!line.empty()) block += (block.empty() ? "" : "\n") + line;
      line.clear();
    }
    return block;
  }

 private:
  Recordset rows_;
};

using ObjectsOfUnits = std::map<std::pair<std::int32_t, std::int32_t>, std::vector<std::string>>;

class ModelReader {
 public:
  ModelReader(Connection& connection, std::int32_t project)
      : connection_(connection), project_(project) {}

  ProcessModel Read() {
    ReadSummary();
    ReadPools();
    ReadScenarios();
    ReadUnits();
    ReadJunctions();
    ReadLinks();
    Order();
    return std::move(model_);
  }

 private:
  ProjectRows Rows(const char* table) const { return {connection_, table, project_}; }

  void ReadSummary() {
    ProjectRows rows(connection_, "MSP_PROJECTS", project_, "PROJ_ID");
    rows.ForEach([&] {
      model_.name = rows.Text("PROJ_NAME");
      model_.author = rows.Text("PROJ_PROP_AUTHOR");
      model_.description = rows.Text("PROJ_PROP_SUBJECT");
    });
    ProjectRows misc = Rows("Misc");
    misc.ForEach([&] { model_.constraintPool = misc.Block("Constraint_Pool"); });
  }

  void ReadPools() {
    ProjectRows objects = Rows("Object_Pool");
    objects.ForEach([&] {
      const std::string kind = objects.Text("Celvar_Type");
      model_.objects.push_back({.number = objects.Number("Num"),
                                .name = objects.Text("Name"),
                                .kind = kind.empty() ? objects.Text("Dunmar_Type") : kind,
                                .quantity = objects.Text("Quantity"),
                                .alias = objects.Text("Alias"),
                                .glossary = objects.Block("Glossary"),
                                .constraints = objects.Block("Constraint_List")});
    });
    ProjectRows facts = Rows("Fact_Pool");
    facts.ForEach([&] {
      model_.facts.push_back({.number = facts.Number("Num"),
                              .name = facts.Text("Name"),
                              .glossary = facts.Block("Glossary")});
    });
  }

  void ReadScenarios() {
    ProjectRows rows = Rows("Scenario");
    rows.ForEach([&] {
      places_.emplace(rows.Number("Num"), model_.scenarios.size());
      ModelScenario scenario;
      scenario.number = rows.Number("Num");
      scenario.name = rows.Text("Name");
      scenario.parent = rows.Number("Parent_Num");
      scenario.parentName = Trim(rows.Text("Parent"));
      scenario.description = rows.Block("Description");
      scenario.constraints = rows.Block("Constraint_List");
      decompositions_[scenario.parent].push_back(scenario.number);
      model_.scenarios.push_back(std::move(scenario));
    });
  }

  ObjectsOfUnits ReadObjectsOfUnits() const {
    ObjectsOfUnits objects;
    ProjectRows rows = Rows("Object_in_Activity_in_Scenario");
    rows.ForEach([&] {
      objects[{rows.Number("Scenario_Num"), rows.Number("Activity_Num")}].push_back(
          rows.Text("Object_Name"));
    });
    return objects;
  }

  void ReadUnits() {
    std::map<std::int32_t, std::string> glossaries;
    ProjectRows processes = Rows("Activity_Pool");
    processes.ForEach([&] { glossaries[processes.Number("Num")] = processes.Block("Glossary"); });
    ObjectsOfUnits objects = ReadObjectsOfUnits();
    ProjectRows rows = Rows("Activity_in_Scenario");
    rows.ForEach([&] {
      const auto place = places_.find(rows.Number("Scenario_Num"));
      if (place == places_.end()) return;
      ModelUnit unit;
      unit.number = rows.Number("Use_Num");
      unit.name = rows.Text("Name");
      unit.reference = rows.Text("Ref");
      unit.duration = Trim(rows.Text("Duration"));
      unit.laborRule = Trim(rows.Text("Labor_Rule"));
      unit.glossary = glossaries[rows.Number("Process_Num")];
      unit.facts = rows.Block("Fact_List");
      unit.constraints = rows.Block("Constraint_List");
      unit.objects = std::move(objects[{place->first, unit.number}]);
      if (unit.number != 0) unit.decompositions = decompositions_[unit.number];
      unit.sent = !rows.IsZero("Send_to_Project");
      model_.scenarios[place->second].units.push_back(std::move(unit));
    });
  }

  void ReadJunctions() {
    ProjectRows rows = Rows("Junctions_in_Scenario");
    rows.ForEach([&] {
      const auto place = places_.find(rows.Number("Scenario_Num"));
      if (place == places_.end()) return;
      ModelJunction junction;
      junction.number = rows.Number("Num");
      junction.id = rows.Text("ID");
      junction.type = rows.Text("Type");
      junction.synchronous =
          HoldsNoCase(junction.type, "Sync") && !HoldsNoCase(junction.type, "Async");
      junction.kind = HoldsNoCase(junction.type, "XOR")  ? JunctionKind::kXor
                      : HoldsNoCase(junction.type, "OR") ? JunctionKind::kOr
                                                         : JunctionKind::kAnd;
      junction.fanIn = HoldsNoCase(rows.Text("Cardinality"), "In");
      junction.facts = rows.Block("Fact_List");
      model_.scenarios[place->second].junctions.push_back(std::move(junction));
    });
  }

  void ReadLinks() {
    ProjectRows rows = Rows("Links_in_Scenario");
    rows.ForEach([&] {
      const auto place = places_.find(rows.Number("Scenario_Num"));
      if (place == places_.end()) return;
      const std::string type = rows.Text("Type");
      const FlowKind kind = HoldsNoCase(type, "Relation") ? FlowKind::kRelation
                            : HoldsNoCase(type, "Object") ? FlowKind::kObjectFlow
                                                          : FlowKind::kPrecedence;
      model_.scenarios[place->second].links.push_back(
          {.origin = rows.Number("Origin_Num"),
           .destination = rows.Number("Destination_Num"),
           .kind = kind,
           .id = rows.Text("ID")});
    });
  }

  // Each scenario behind the one that it belongs to; those in a circle keep the table's order.
  void Order() {
    std::vector<ModelScenario> ordered;
    std::set<std::size_t> taken;
    for (std::size_t first = 0; first < 2 * model_.scenarios.size(); ++first) {
      const bool rest = first >= model_.scenarios.size();
      const std::size_t start = first % model_.scenarios.size();
      if (!rest && model_.scenarios[start].parent != 0) continue;
      std::vector<std::size_t> open{start};
      while (!open.empty()) {
        const std::size_t place = open.back();
        open.pop_back();
        if (!taken.insert(place).second) continue;
        for (auto unit = model_.scenarios[place].units.rbegin();
             unit != model_.scenarios[place].units.rend(); ++unit) {
          for (auto below = unit->decompositions.rbegin(); below != unit->decompositions.rend();
               ++below) {
            open.push_back(places_.at(*below));
          }
        }
        ordered.push_back(std::move(model_.scenarios[place]));
        model_.scenarios[place].units.clear();
      }
    }
    model_.scenarios = std::move(ordered);
  }

  Connection& connection_;
  std::int32_t project_;
  ProcessModel model_;
  std::map<std::int32_t, std::size_t> places_;  // of scenarios by number, the first of each
  std::map<std::int32_t, std::vector<std::int32_t>> decompositions_;  // by unit
};

}  // namespace

ProcessModel ReadProcessModel(Connection& connection, std::int32_t project) {
  const ReadScope scope(&connection);
  ProcessModel model = ModelReader(connection, project).Read();
  TellWhyLeft(model);
  return model;
}

}  // namespace merivane::pictures
