#include "pictures/process_model.h"

#include <algorithm>
#include <deque>
#include <map>
#include <set>
#include <utility>
#include <vector>

#include "runtime/conversions.h"
#include "runtime/text.h"
#include "store/recordset.h"

namespace merivane::pictures {

namespace {

class ModelTableRows {
 public:
  ModelTableRows(Connection& connection, const std::string& table, std::int32_t project,
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
  ModelTableRows Rows(const char* table) const { return {connection_, table, project_}; }

  void ReadSummary() {
    ModelTableRows rows(connection_, "MSP_PROJECTS", project_, "PROJ_ID");
    rows.ForEach([&] {
      model_.name = rows.Text("PROJ_NAME");
      model_.author = rows.Text("PROJ_PROP_AUTHOR");
      model_.description = rows.Text("PROJ_PROP_SUBJECT");
    });
    ModelTableRows misc = Rows("Misc");
    misc.ForEach([&] { model_.constraintPool = misc.Block("Constraint_Pool"); });
  }

  void ReadPools() {
    ModelTableRows objects = Rows("Object_Pool");
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
    ModelTableRows facts = Rows("Fact_Pool");
    facts.ForEach([&] {
      model_.facts.push_back({.number = facts.Number("Num"),
                              .name = facts.Text("Name"),
                              .glossary = facts.Block("Glossary")});
    });
  }

  void ReadScenarios() {
    ModelTableRows rows = Rows("Scenario");
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
    ModelTableRows rows = Rows("Object_in_Activity_in_Scenario");
    rows.ForEach([&] {
      objects[{rows.Number("Scenario_Num"), rows.Number("Activity_Num")}].push_back(
          rows.Text("Object_Name"));
    });
    return objects;
  }

  void ReadUnits() {
    std::map<std::int32_t, std::string> glossaries;
    ModelTableRows processes = Rows("Activity_Pool");
    processes.ForEach([&] { glossaries[processes.Number("Num")] = processes.Block("Glossary"); });
    ObjectsOfUnits objects = ReadObjectsOfUnits();
    ModelTableRows rows = Rows("Activity_in_Scenario");
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
    ModelTableRows rows = Rows("Junctions_in_Scenario");
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
    ModelTableRows rows = Rows("Links_in_Scenario");
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

// One scenario of which a part was sent.
class PartlySent {
 public:
  explicit PartlySent(const ModelScenario& scenario) {
    for (const ModelJunction& junction : scenario.junctions)
      junctions_[junction.number] = &junction;
    for (const ModelUnit& unit : scenario.units) {
      if (unit.sent) sent_.insert(unit.number);
    }
    for (const ModelLink& link : scenario.links) {
      if (link.kind == FlowKind::kPrecedence) origins_[link.destination].push_back(link.origin);
    }
  }

  // The nearest junction in front of the unit that parts alternative paths, over elements that were
  // left out themselves; null without one.
  const ModelJunction* DecidedBy(std::int32_t unit) const {
    std::deque<std::int32_t> open{unit};
    std::set<std::int32_t> seen{unit};
    for (; !open.empty(); open.pop_front()) {
      const auto junction = junctions_.find(open.front());
      if (junction != junctions_.end() && !junction->second->fanIn &&
          junction->second->kind != JunctionKind::kAnd) {
        return junction->second;
      }
      const auto origins = origins_.find(open.front());
      if (origins == origins_.end()) continue;
      for (const std::int32_t origin : origins->second) {
        if (!sent_.contains(origin) && seen.insert(origin).second) open.push_back(origin);
      }
    }
    return nullptr;
  }

 private:
  std::map<std::int32_t, const ModelJunction*> junctions_;
  std::map<std::int32_t, std::vector<std::int32_t>> origins_;  // of the links into an element
  std::set<std::int32_t> sent_;
};

std::string Why(const ModelJunction* junction) {
  if (junction == nullptr) return "the paths that were taken don't come to it";
  return "junction " + junction->id + " (" + junction->type + ") takes another path";
}

// Fills in whyLeft of each unit that isn't sent, from what was sent around it: the nearest junction
// in front that takes another path, the unit above it, or the choice of another scenario.
// REQUIRES: a scenario stands behind the one whose unit it decomposes.
void TellWhyLeft(ProcessModel& model) {
  std::map<std::int32_t, bool> sent;  // of units, by number
  for (const ModelScenario& scenario : model.scenarios) {
    for (const ModelUnit& unit : scenario.units) sent[unit.number] = unit.sent;
  }
  for (ModelScenario& scenario : model.scenarios) {
    const auto isSent = [](const ModelUnit& unit) { return unit.sent; };
    const bool whole = std::none_of(scenario.units.begin(), scenario.units.end(), isSent);
    const auto parent = sent.find(scenario.parent);
    const PartlySent paths(scenario);
    for (ModelUnit& unit : scenario.units) {
      if (unit.sent) continue;
      if (!whole) {
        const ModelJunction* junction = paths.DecidedBy(unit.number);
        unit.whyLeft = Why(junction);
        if (junction != nullptr) unit.decidedBy = junction->number;
      } else if (parent != sent.end() && !parent->second) {
        unit.whyLeft = "unit " + std::to_string(scenario.parent) + " '" + scenario.parentName +
                       "', which its scenario decomposes, stays out";
      } else {
        unit.whyLeft = "another scenario was chosen in the place of '" + scenario.name + "'";
      }
    }
  }
}

}  // namespace

ProcessModel ReadProcessModel(Connection& connection, std::int32_t project) {
  const ReadScope scope(&connection);
  ProcessModel model = ModelReader(connection, project).Read();
  TellWhyLeft(model);
  return model;
}

}  // namespace merivane::pictures
