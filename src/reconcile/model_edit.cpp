#include "model_edit.h"

#include <algorithm>
#include <set>
#include <utility>

#include "program/model_words.h"
#include "runtime/run_time_error.h"

namespace merivane::reconcile {

using namespace program;

namespace {

using Kind = TableChange::Kind;

constexpr const char* kUnits = "Activity_in_Scenario";
constexpr const char* kProcesses = "Activity_Pool";
constexpr const char* kObjects = "Object_Pool";
constexpr const char* kUses = "Object_in_Activity_in_Scenario";
constexpr const char* kScenarios = "Scenario";
constexpr const char* kJunctions = "Junctions_in_Scenario";
constexpr const char* kLinks = "Links_in_Scenario";
constexpr const char* kCreator = "Merivane";

RunTimeError NoNumberLeft(std::int32_t most = kMostNumber) {
  return {kOverflow, "The model holds so many elements that no number up to " +
                         std::to_string(most) +
                         " is free for another one, and a text takes no greater one."};
}

template <typename Elements>
std::int32_t FreeNumber(const Elements& elements) {
  std::int32_t number = elements.empty() ? 1 : std::max(0, elements.rbegin()->first) + 1;
  if (number > kMostNumber) number = 1;
  while (elements.contains(number)) ++number;
  if (number > kMostNumber) throw NoNumberLeft();
  return number;
}

void Erase(std::vector<std::int32_t>& numbers, std::int32_t number) { std::erase(numbers, number); }

}  // namespace

ModelEdit::ModelEdit(ModelRows model) : model_(std::move(model)) {
  for (const std::int32_t number : model_.linkOrder) {
    const ModelRows::Link& link = model_.links[number];
    place_.emplace(number, place_.size());
    from_[link.origin].push_back(number);
    to_[link.destination].push_back(number);
  }
  for (const auto& [number, unit] : model_.units) lastElement_ = std::max(lastElement_, number);
  for (const auto& [number, link] : model_.links) {
    lastElement_ = std::max(lastElement_, link.number);
  }
  for (const auto& [number, each] : model_.junctions) lastElement_ = std::max(lastElement_, number);
}

const std::vector<std::int32_t>& ModelEdit::LinksFrom(std::int32_t element) const {
  static const std::vector<std::int32_t> kNone;
  const auto found = from_.find(element);
  return found == from_.end() ? kNone : found->second;
}

const std::vector<std::int32_t>& ModelEdit::LinksTo(std::int32_t element) const {
  static const std::vector<std::int32_t> kNone;
  const auto found = to_.find(element);
  return found == to_.end() ? kNone : found->second;
}

std::set<std::int32_t> ModelEdit::DecomposedUnits() const {
  std::set<std::int32_t> units;
  for (const auto& [number, scenario] : model_.scenarios) units.insert(scenario.parent);
  return units;
}

bool ModelEdit::IsSentUnit(std::int32_t element) const {
  const auto unit = model_.units.find(element);
  return unit != model_.units.end() && unit->second.sent;
}

bool ModelEdit::IsSyncAnd(std::int32_t element) const {
  const auto junction = model_.junctions.find(element);
  return junction != model_.junctions.end() && junction->second.type == kSyncAnd;
}

std::int32_t ModelEdit::NextNumber(std::int32_t most) {
  const auto isTaken = [this](std::int32_t number) {
    return model_.units.contains(number) || model_.junctions.contains(number) ||
           model_.links.contains(number);
  };
  if (lastElement_ >= most) lastElement_ = 0;
  while (isTaken(++lastElement_)) {
  }
  if (lastElement_ > most) throw NoNumberLeft(most);
  return lastElement_;
}

std::int32_t ModelEdit::AddProcess(const std::string& name) {
  const std::int32_t number = FreeNumber(model_.processes);
  model_.processes[number] = {name, ""};
  Note({Kind::kAdd,
        kProcesses,
        {{"Num", number}},
        {{"Name", name}, {"Creator", kCreator}, {"ID", number}}});
  return number;
}

std::int32_t ModelEdit::CopyProcess(std::int32_t process, const std::string& name) {
  const std::int32_t number = FreeNumber(model_.processes);
  model_.processes[number] = {name, model_.processes[process].note};
  Note({Kind::kCopy, kProcesses, {{"Num", process}}, {{"Num", number}, {"Name", name}}});
  return number;
}

void ModelEdit::NameProcess(std::int32_t process, const std::string& name) {
  model_.processes[process].name = name;
  Note({Kind::kSet, kProcesses, {{"Num", process}}, {{"Name", name}}});
}

void ModelEdit::SetNote(std::int32_t process, const std::string& note) {
  model_.processes[process].note = note;
  const Value glossary = note.empty() ? Value() : Value(note + "\r\n");
  Note({Kind::kSet, kProcesses, {{"Num", process}}, {{"Glossary", glossary}}});
}

void ModelEdit::AddUnit(std::int32_t unit, std::int32_t scenario, std::int32_t process,
                        const std::string& name) {
  model_.units[unit] = {
      .scenario = scenario, .process = process, .name = name, .laborRule = "", .sent = true};
  Note({Kind::kAdd,
        kUnits,
        {{"Use_Num", unit}, {"Scenario_Num", scenario}, {"Process_Num", process}},
        {{"Name", name}, {"ID", 1}}});
}

void ModelEdit::NameUnit(std::int32_t unit, std::int32_t process, const std::string& name) {
  auto& row = model_.units[unit];
  row.process = process;
  row.name = name;
  Note({Kind::kSet, kUnits, {{"Use_Num", unit}}, {{"Name", name}, {"Process_Num", process}}});
  for (const auto& [element, column] :
       {std::pair("Origin_Num", "Origin_Name"), std::pair("Destination_Num", "Destination_Name")}) {
    Note({Kind::kSet, kLinks, {{element, unit}}, {{column, name}}});
  }
  for (const auto& [number, scenario] : model_.scenarios) {
    if (scenario.parent == unit) {
      Note({Kind::kSet, kScenarios, {{"Num", number}}, {{"Parent", name}}});
    }
  }
}

void ModelEdit::SetDuration(std::int32_t unit, const std::string& days) {
  Note({Kind::kSet, kUnits, {{"Use_Num", unit}}, {{"Duration", days}}});
}

void ModelEdit::SetLaborRule(std::int32_t unit, const std::string& rule) {
  model_.units[unit].laborRule = rule;
  Note({Kind::kSet, kUnits, {{"Use_Num", unit}}, {{"Labor_Rule", rule}}});
}

void ModelEdit::MoveUnit(std::int32_t unit, std::int32_t scenario) {
  for (const auto* links : {&from_[unit], &to_[unit]}) {
    while (!links->empty()) RemoveLink(links->front());
  }
  model_.units[unit].scenario = scenario;
  Note({Kind::kSet, kUnits, {{"Use_Num", unit}}, {{"Scenario_Num", scenario}}});
  Note({Kind::kSet, kUses, {{"Activity_Num", unit}}, {{"Scenario_Num", scenario}}});
}

void ModelEdit::NumberUnits(const std::map<std::int32_t, std::int32_t>& numbers) {
  if (numbers.empty()) return;
  const auto renumber = [&](std::int32_t& number) {
    const auto found = numbers.find(number);
    if (found != numbers.end()) number = found->second;
  };
  for (const auto& [unit, number] : numbers) {
    auto row = model_.units.extract(unit);
    row.key() = number;
    model_.units.insert(std::move(row));
    for (const auto& [table, column] :
         {std::pair(kUnits, "Use_Num"), std::pair(kUses, "Activity_Num"),
          std::pair(kScenarios, "Parent_Num"), std::pair(kLinks, "Origin_Num"),
          std::pair(kLinks, "Destination_Num")}) {
      Note({Kind::kSet, table, {{column, unit}}, {{column, number}}});
    }
    for (auto* links : {&from_, &to_}) {
      auto ends = links->extract(unit);
      if (ends.empty()) continue;
      ends.key() = number;
      links->insert(std::move(ends));
    }
  }
  for (auto& [unit, object] : model_.uses) renumber(unit);
  for (auto& [number, scenario] : model_.scenarios) renumber(scenario.parent);
  for (auto& [number, link] : model_.links) {
    renumber(link.origin);
    renumber(link.destination);
  }
}

void ModelEdit::RemoveUnit(std::int32_t unit) {
  for (const auto* links : {&from_[unit], &to_[unit]}) {
    while (!links->empty()) RemoveLink(links->front());
  }
  std::vector<std::int32_t> below;
  for (const auto& [number, scenario] : model_.scenarios) {
    if (scenario.parent == unit) below.push_back(number);
  }
  for (const std::int32_t scenario : below) RemoveScenario(scenario);
  const std::int32_t process = model_.units[unit].process;
  std::erase_if(model_.uses, [unit](const auto& use) { return use.first == unit; });
  model_.units.erase(unit);
  Note({Kind::kRemove, kUses, {{"Activity_Num", unit}}, {}});
  Note({Kind::kRemove, kUnits, {{"Use_Num", unit}}, {}});
  RemoveProcessUnlessUsed(process);
}

void ModelEdit::RemoveProcessUnlessUsed(std::int32_t process) {
  const bool isUsed = std::any_of(model_.units.begin(), model_.units.end(),
                                  [&](const auto& unit) { return unit.second.process == process; });
  if (isUsed || model_.processes.erase(process) == 0) return;
  Note({Kind::kRemove, kProcesses, {{"Num", process}}, {}});
}

std::int32_t ModelEdit::AddScenario(const std::string& name, std::int32_t parent) {
  const std::int32_t number = FreeNumber(model_.scenarios);
  model_.scenarios[number] = {.parent = parent, .sent = true};
  Note({Kind::kAdd,
        kScenarios,
        {{"Num", number}, {"Parent_Num", parent}},
        {{"Name", name}, {"Parent", name}, {"Creator", kCreator}, {"ID", 1}}});
  return number;
}

void ModelEdit::RemoveScenario(std::int32_t scenario) {
  std::vector<std::int32_t> units;
  for (const auto& [number, unit] : model_.units) {
    if (unit.scenario == scenario) units.push_back(number);
  }
  for (const std::int32_t unit : units) {
    if (model_.units.contains(unit)) RemoveUnit(unit);
  }
  std::vector<std::int32_t> junctions;
  for (const auto& [number, junction] : model_.junctions) {
    if (junction.scenario == scenario) junctions.push_back(number);
  }
  for (const std::int32_t junction : junctions) RemoveJunction(junction);
  model_.scenarios.erase(scenario);
  Note({Kind::kRemove, kScenarios, {{"Num", scenario}}, {}});
}

std::int32_t ModelEdit::AddJunction(std::int32_t scenario, std::string_view cardinality,
                                    std::string_view type) {
  const std::int32_t number = NextElement();
  std::set<std::string> ids;
  for (const auto& [other, junction] : model_.junctions) ids.insert(junction.id);
  std::int32_t digits = number;
  while (ids.contains("J" + std::to_string(digits))) ++digits;
  const std::string id = "J" + std::to_string(digits);
  model_.junctionOrder.push_back(number);
  model_.junctions[number] = {scenario, cardinality == kFanOut, std::string(type), id};
  Note({Kind::kAdd,
        kJunctions,
        {{"Num", number}, {"Scenario_Num", scenario}},
        {{"ID", id}, {"Cardinality", cardinality}, {"Type", type}}});
  return number;
}

void ModelEdit::SetJunctionType(std::int32_t junction, std::string_view type) {
  model_.junctions.at(junction).type = type;
  Note({Kind::kSet, kJunctions, {{"Num", junction}}, {{"Type", type}}});
}

std::int32_t ModelEdit::ScenarioOf(std::int32_t element) const {
  const auto unit = model_.units.find(element);
  return unit == model_.units.end() ? model_.junctions.at(element).scenario : unit->second.scenario;
}

void ModelEdit::AddLink(std::int32_t origin, std::int32_t destination) {
  const std::int32_t number = NextElement();
  const std::int32_t scenario = ScenarioOf(origin);
  model_.links[number] = {number, scenario, origin, destination};
  place_[number] = model_.linkOrder.size();
  model_.linkOrder.push_back(number);
  Hang(from_[origin], number);
  Hang(to_[destination], number);
  Note({Kind::kAdd,
        kLinks,
        {{"Num", number}, {"Scenario_Num", scenario}},
        {{"ID", number}, {"Type", "Precedence"}}});
  SetEnd(number, "Origin", origin);
  SetEnd(number, "Destination", destination);
}

TableChange::Key ModelEdit::KeyOf(std::int32_t link) const {
  const ModelRows::Link& row = model_.links.at(link);
  return {{"Num", row.number}, {"Scenario_Num", row.scenario}};
}

void ModelEdit::SetEnd(std::int32_t link, const char* end, std::int32_t element) {
  const bool isOrigin = std::string_view(end) == "Origin";
  const bool isUnit = IsUnit(element);
  const std::string& name =
      isUnit ? model_.units.at(element).name : model_.junctions.at(element).id;
  const std::string_view type = isUnit ? kProcessOccurrence : kJunction;
  Note({Kind::kSet,
        kLinks,
        KeyOf(link),
        {{isOrigin ? "Origin_Num" : "Destination_Num", element},
         {isOrigin ? "Origin_Type" : "Destination_Type", type},
         {isOrigin ? "Origin_Name" : "Destination_Name", name}}});
}

void ModelEdit::SetOrigin(std::int32_t link, std::int32_t origin) {
  auto& row = model_.links.at(link);
  Erase(from_[row.origin], link);
  row.origin = origin;
  Hang(from_[origin], link);
  SetEnd(link, "Origin", origin);
}

void ModelEdit::SetDestination(std::int32_t link, std::int32_t destination) {
  auto& row = model_.links.at(link);
  Erase(to_[row.destination], link);
  row.destination = destination;
  Hang(to_[destination], link);
  SetEnd(link, "Destination", destination);
}

void ModelEdit::Hang(std::vector<std::int32_t>& links, std::int32_t link) const {
  const auto behind = std::find_if(links.begin(), links.end(), [&](std::int32_t other) {
    return place_.at(other) > place_.at(link);
  });
  links.insert(behind, link);
}

void ModelEdit::TakeOutLink(std::int32_t link) {
  const auto row = model_.links.find(link);
  Note({Kind::kRemove, kLinks, KeyOf(link), {}});
  Erase(from_[row->second.origin], link);
  Erase(to_[row->second.destination], link);
  model_.links.erase(row);
}

void ModelEdit::RemoveLink(std::int32_t link) {
  const ModelRows::Link row = model_.links.at(link);
  TakeOutLink(link);
  ClearUp(row.origin);
  ClearUp(row.destination);
}

// Only a junction that has just lost a link comes here; the others stay as they are.
void ModelEdit::ClearUp(std::int32_t junction) {
  const auto row = model_.junctions.find(junction);
  if (row == model_.junctions.end()) return;
  const std::size_t in = LinksTo(junction).size();
  const std::size_t out = LinksFrom(junction).size();
  const bool isAnd = row->second.type == kSyncAnd || row->second.type == kAsyncAnd;
  const bool hasNoBranch = (row->second.isFanOut ? out : in) == 0;
  if (hasNoBranch || (isAnd && in + out <= 1)) {
    RemoveJunction(junction);
  } else if (isAnd && in == 1 && out == 1) {
    const std::int32_t first = LinksTo(junction).front();
    const std::int32_t second = LinksFrom(junction).front();
    if (!IsJoinable(first, second)) return;
    const std::int32_t destination = model_.links.at(second).destination;
    TakeOutLink(second);
    SetDestination(first, destination);
    RemoveJunction(junction);
  }
}

// Whether one link can stand for the two: a path that no fact takes must not lead further by it,
// and a branch of a "Sync. AND" must not come to be.
bool ModelEdit::IsJoinable(std::int32_t in, std::int32_t out) const {
  const std::int32_t origin = model_.links.at(in).origin;
  const std::int32_t destination = model_.links.at(out).destination;
  return IsSentUnit(origin) && !IsSyncAnd(destination) && origin != destination;
}

void ModelEdit::RemoveJunction(std::int32_t junction) {
  if (model_.junctions.erase(junction) == 0) return;
  Erase(model_.junctionOrder, junction);
  Note({Kind::kRemove, kJunctions, {{"Num", junction}}, {}});
  Note({Kind::kRemove, "Facts_in_Junction", {{"Junction_Num", junction}}, {}});
  for (const auto* links : {&from_[junction], &to_[junction]}) {
    while (!links->empty()) RemoveLink(links->front());
  }
}

std::string ModelEdit::FreeAlias(std::int32_t object) const {
  std::set<std::string> taken;
  for (const auto& [number, each] : model_.objects) taken.insert(each.alias);
  std::int32_t digits = object;
  while (taken.contains("R" + std::to_string(digits))) ++digits;
  return "R" + std::to_string(digits);
}

std::int32_t ModelEdit::AddObject(const std::string& name) {
  const std::int32_t number = FreeNumber(model_.objects);
  const std::string alias = FreeAlias(number);
  model_.objects[number] = {.name = name, .alias = alias, .sent = true};
  Note({Kind::kAdd,
        kObjects,
        {{"Num", number}},
        {{"Name", name},
         {"Creator", kCreator},
         {"Alias", alias},
         {"Dunmar_Type", "Agent"},
         {"Celvar_Type", kSharedResource}}});
  return number;
}

void ModelEdit::NameObject(std::int32_t object, const std::string& name) {
  model_.objects[object].name = name;
  Note({Kind::kSet, kObjects, {{"Num", object}}, {{"Name", name}}});
  Note({Kind::kSet, kUses, {{"Object_Occ_Num", object}}, {{"Object_Name", name}}});
}

void ModelEdit::SetObject(std::int32_t object, const char* column, Value value) {
  Note({Kind::kSet, kObjects, {{"Num", object}}, {{column, std::move(value)}}});
}

void ModelEdit::RemoveObject(std::int32_t object) {
  model_.objects.erase(object);
  std::erase_if(model_.uses, [object](const auto& use) { return use.second == object; });
  Note({Kind::kRemove, kUses, {{"Object_Occ_Num", object}}, {}});
  Note({Kind::kRemove, kObjects, {{"Num", object}}, {}});
}

void ModelEdit::AddUse(std::int32_t unit, std::int32_t object) {
  model_.uses.emplace_back(unit, object);
  Note({Kind::kAdd,
        kUses,
        {{"Activity_Num", unit},
         {"Object_Occ_Num", object},
         {"Scenario_Num", model_.units[unit].scenario}},
        {{"Object_Name", model_.objects[object].name}}});
}

void ModelEdit::RemoveUse(std::int32_t unit, std::int32_t object) {
  std::erase(model_.uses, std::pair(unit, object));
  Note({Kind::kRemove, kUses, {{"Activity_Num", unit}, {"Object_Occ_Num", object}}, {}});
}

bool ModelEdit::HasObjects(std::int32_t unit) const {
  return std::any_of(model_.uses.begin(), model_.uses.end(),
                     [unit](const auto& use) { return use.first == unit; });
}

}  // namespace merivane::reconcile
