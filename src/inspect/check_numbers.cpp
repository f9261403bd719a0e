#include <map>
#include <unordered_map>

#include "model_checks.h"
#include "runtime/text.h"

namespace merivane::inspect {

namespace {

// Elements that are asked for by number alone must differ in it.
class UsedNumbers {
 public:
  UsedNumbers(const Model& model, std::vector<Finding>& findings,
              Severity severity = Severity::kError)
      : model_(model), findings_(findings), severity_(severity) {}

  void Take(std::size_t place) {
    const ElementEntry& here = model_.At(place);
    if (!here.isNumberKnown) return;
    const auto [first, isNew] = places_.try_emplace(here.number, place);
    if (isNew) return;
    findings_.push_back(FindingAt(
        severity_, here, "It has the number of " + WithLine(model_.At(first->second)) + ".",
        "Give each of the two a number of its own, and change what refers to it."));
  }

 private:
  const Model& model_;
  std::vector<Finding>& findings_;
  Severity severity_;
  std::map<std::int32_t, std::size_t> places_;
};

// Elements of a pool are looked up by name as well.
class UsedNames {
 public:
  UsedNames(const Model& model, std::vector<Finding>& findings, const char* what)
      : model_(model), findings_(findings), what_(what) {}

  void Take(std::size_t place) {
    const ElementEntry& here = model_.At(place);
    const auto [first, isNew] = places_.try_emplace(UpperCase(here.name), place);
    if (isNew || here.name.empty()) return;
    findings_.push_back(FindingAt(
        Severity::kWarning, here,
        "It has the name of " + WithLine(model_.At(first->second)) + ", so that " + what_ + ".",
        "Give each of the two a name of its own, here and wherever it is used."));
  }

 private:
  const Model& model_;
  std::vector<Finding>& findings_;
  const char* what_;
  std::unordered_map<std::string, std::size_t> places_;
};

// Junctions are looked up by ID, whatever their scenario.
void CheckJunctionIds(const Model& model, std::vector<Finding>& findings) {
  std::map<std::string, std::size_t> places;
  for (const JunctionEntry& junction : model.junctions) {
    const ElementEntry& here = model.At(junction.place);
    const auto [first, isNew] = places.try_emplace(here.name, junction.place);
    if (isNew) continue;
    findings.push_back(FindingAt(Severity::kError, here,
                                 "It has the ID of " + WithLine(model.At(first->second)) +
                                     ", so that the links of the two are mixed up in the plan.",
                                 "Give each junction of the model an ID of its own."));
  }
}

// Links are looked up by their ends; a number that comes twice in a scenario is a slip all the
// same.
void CheckLinkNumbers(const Model& model, std::vector<Finding>& findings) {
  std::map<decltype(LinkEntry::scenario), UsedNumbers> scenarios;
  for (const LinkEntry& link : model.links) {
    scenarios.try_emplace(link.scenario, model, findings, Severity::kWarning)
        .first->second.Take(link.place);
  }
}

}  // namespace

void CheckNumbers(const Model& model, std::vector<Finding>& findings) {
  UsedNumbers processes(model, findings);
  UsedNames processNames(model, findings, "the tasks of both get the note of the first");
  for (const ProcessEntry& process : model.processes) {
    processes.Take(process.place);
    processNames.Take(process.place);
  }
  UsedNumbers objects(model, findings);
  UsedNames objectNames(model, findings, "both are used as the last one is");
  for (const ObjectEntry& object : model.objects) {
    objects.Take(object.place);
    objectNames.Take(object.place);
  }
  UsedNumbers facts(model, findings);
  for (const std::size_t fact : model.facts) facts.Take(fact);
  UsedNumbers scenarios(model, findings);
  for (const ScenarioEntry& scenario : model.scenarios) scenarios.Take(scenario.place);
  UsedNumbers ends(model, findings);
  for (const UnitEntry& unit : model.units) ends.Take(unit.place);
  for (const JunctionEntry& junction : model.junctions) ends.Take(junction.place);
  CheckJunctionIds(model, findings);
  CheckLinkNumbers(model, findings);
}

}  // namespace merivane::inspect
