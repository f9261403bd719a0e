#include <algorithm>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

#include "inspect/finding.h"
#include "model_checks.h"
#include "runtime/text.h"

namespace merivane::inspect {

namespace {

class Decompositions {
 public:
  Decompositions(const Model& model, std::vector<Finding>& findings)
      : model_(model), findings_(findings) {
    for (const UnitEntry& unit : model.units) {
      scenarioOf_[model.At(unit.place).number] = unit.scenario;
      filled_.insert(unit.scenario);
      hasUnknownUnit_ = hasUnknownUnit_ || !model.At(unit.place).isNumberKnown;
    }
    for (const ScenarioEntry& scenario : model.scenarios) {
      byNumber_.try_emplace(model.At(scenario.place).number, &scenario);
    }
  }

  void Check() {
    if (model_.scenarios.empty()) {
      findings_.push_back({Severity::kWarning,
                           1,
                           {},
                           "The text has no scenario, so that the plan has no task.",
                           "Draw a scenario in Celvar, and export the model anew."});
    }
    for (const ScenarioEntry& scenario : model_.scenarios) {
      CheckUnits(scenario);
      if (model_.At(scenario.place).name.empty()) {
        findings_.push_back(FindingAt(Severity::kWarning, model_.At(scenario.place),
                                      "It has no name, so that no fact can choose it.",
                                      "Give it a name."));
      }
      if (scenario.parent == 0 || !scenario.isParentKnown) continue;
      const auto unit = scenarioOf_.find(scenario.parent);
      if (unit == scenarioOf_.end() && hasUnknownUnit_) continue;
      if (unit == scenarioOf_.end()) {
        findings_.push_back(FindingAt(
            Severity::kWarning, model_.At(scenario.place),
            "There is no unit " + std::to_string(scenario.parent) +
                " that it could decompose, so that its units end up behind the others of the plan, "
                "outside its outline.",
            "Name the unit that it decomposes, or leave the scenario out."));
      } else {
        FollowUp(scenario);
      }
    }
  }

 private:
  void CheckUnits(const ScenarioEntry& scenario) {
    const ElementEntry& place = model_.At(scenario.place);
    if (filled_.contains(place.number)) return;
    findings_.push_back(FindingAt(Severity::kWarning, place,
                                  "It has no unit, so that nothing of it reaches the plan.",
                                  "Add the units of the scenario, or leave it out."));
  }

  // Goes up from scenario to scenario; a circle is told once, at its first scenario in the text.
  void FollowUp(const ScenarioEntry& start) {
    std::vector<const ScenarioEntry*> way;
    const ScenarioEntry* at = &start;
    while (at != nullptr && done_.insert(at).second) {
      way.push_back(at);
      at = Above(*at);
    }
    const auto circle = std::find(way.begin(), way.end(), at);
    if (at == nullptr || circle == way.end()) return;
    const auto* first = *std::min_element(circle, way.end());
    std::string names;
    for (auto step = circle; step != way.end(); ++step) {
      names += (names.empty() ? "" : ", ") + Described(NameOf(model_.At((*step)->place)));
    }
    findings_.push_back(FindingAt(
        Severity::kError, model_.At(first->place),
        "It is part of a circle of decompositions: " + names + ".",
        "Let one of them decompose a unit outside the circle, or make it a top scenario."));
  }

  const ScenarioEntry* Above(const ScenarioEntry& scenario) const {
    const auto unit = scenarioOf_.find(scenario.parent);
    if (scenario.parent == 0 || unit == scenarioOf_.end()) return nullptr;
    const auto above = byNumber_.find(unit->second);
    return above == byNumber_.end() ? nullptr : above->second;
  }

  const Model& model_;
  std::vector<Finding>& findings_;
  std::unordered_map<std::int32_t, std::int32_t> scenarioOf_;  // of each unit
  bool hasUnknownUnit_ = false;
  std::unordered_set<std::int32_t> filled_;  // scenarios that have units
  std::unordered_map<std::int32_t, const ScenarioEntry*> byNumber_;
  std::unordered_set<const ScenarioEntry*> done_;
};

// Facts that steer the translation by their name, and those that seem to.
void CheckFacts(const Model& model, std::vector<Finding>& findings) {
  constexpr std::string_view kChoose = "CHOOSE ";
  std::vector<std::string_view> names;
  std::unordered_set<std::string> known;
  for (const ScenarioEntry& scenario : model.scenarios) {
    names.push_back(model.At(scenario.place).name);
    known.insert(UpperCase(model.At(scenario.place).name));
  }
  for (const std::size_t fact : model.facts) {
    const ElementEntry& place = model.At(fact);
    if (!UpperCase(place.name).starts_with(kChoose)) continue;
    const std::string name = place.name.substr(kChoose.size());
    if (known.contains(UpperCase(name))) continue;
    findings.push_back(FindingAt(
        Severity::kWarning, place,
        "There is no scenario '" + name + "' that it could choose." + Suggestion(name, names),
        "Write 'Choose ' and the name of a scenario."));
  }
  for (const JunctionFact& fact : model.junctionFacts) {
    const JunctionEntry& junction = model.junctions[fact.junction];
    if (!HoldsNoCase(fact.name, "PathAt") || OffersPaths(junction)) continue;
    findings.push_back(FindingAt(Severity::kWarning, model.At(junction.place),
                                 "Its path fact '" + fact.name +
                                     "' does nothing, since only a fan-out of the types XOR, "
                                     "Async. OR and Sync. OR has paths to choose from.",
                                 "Take the fact off the junction, or change its type."));
  }
}

}  // namespace

void CheckScenarios(const Model& model, std::vector<Finding>& findings) {
  Decompositions(model, findings).Check();
  CheckFacts(model, findings);
}

}  // namespace merivane::inspect
