#include "outline.h"

#include <map>
#include <utility>
#include <vector>

namespace merivane::workbench {

namespace {

std::string Joined(const std::vector<std::string>& texts) {
  std::string joined;
  for (const std::string& text : texts) joined += (joined.empty() ? "" : "\n") + text;
  return joined;
}

class Outline {
 public:
  explicit Outline(FileView& view) : view_(view), isTaken_(view.model.scenarios.size()) {
    for (std::size_t place = 0; place < isTaken_.size(); ++place) {
      places_.emplace(Scenarios()[place].number, place);
    }
  }

  // What decomposes units in a circle hangs below none of them, and comes last.
  void Add() {
    for (std::size_t place = 0; place < isTaken_.size(); ++place) {
      if (Scenarios()[place].parent == 0) AddFrom(place);
    }
    for (std::size_t place = 0; place < isTaken_.size(); ++place) AddFrom(place);
  }

 private:
  struct Open {
    std::size_t scenario;
    std::size_t level;
    std::size_t unit = 0;           // the next one
    std::size_t decomposition = 0;  // the next one of the unit before it
  };

  const std::vector<ModelScenario>& Scenarios() const { return view_.model.scenarios; }

  void AddFrom(std::size_t top) {
    Begin(top, 0);
    while (!open_.empty()) Step();
  }

  void Begin(std::size_t scenario, std::size_t level) {
    if (isTaken_[scenario]) return;
    isTaken_[scenario] = true;
    AddScenario(scenario, level);
    open_.push_back({scenario, level});
  }

  void Step() {
    Open& at = open_.back();
    const std::vector<ModelUnit>& units = Scenarios()[at.scenario].units;
    if (at.unit > 0 && at.decomposition < units[at.unit - 1].decompositions.size()) {
      const std::int32_t number = units[at.unit - 1].decompositions[at.decomposition++];
      const auto place = places_.find(number);
      if (place != places_.end()) Begin(place->second, at.level + 2);
    } else if (at.unit < units.size()) {
      at.decomposition = 0;
      AddUnit(units[at.unit++], at);
    } else {
      open_.pop_back();
    }
  }

  void AddScenario(std::size_t place, std::size_t level) {
    const ModelScenario& scenario = Scenarios()[place];
    Element element{.kind = Element::Kind::kScenario,
                    .number = scenario.number,
                    .name = scenario.name,
                    .level = level,
                    .scenario = place};
    element.figure = DiagramId(scenario.number);
    AddProperty(element, "Scenario", scenario.name);
    AddProperty(element, "Number", std::to_string(scenario.number));
    if (scenario.parent != 0) {
      AddProperty(element, "Decomposes",
                  "unit " + std::to_string(scenario.parent) + " '" + scenario.parentName + "'");
    }
    AddProperty(element, "Description", scenario.description);
    AddProperty(element, "Constraints", scenario.constraints);
    view_.elements.push_back(std::move(element));
  }

  void AddUnit(const ModelUnit& unit, const Open& at) {
    Element element{.kind = Element::Kind::kUnit,
                    .number = unit.number,
                    .name = unit.name,
                    .level = at.level + 1,
                    .scenario = at.scenario};
    element.figure = UnitId(unit.number);
    element.whyOut = unit.whyLeft;
    AddProperty(element, "Unit", unit.name);
    AddProperty(element, "Number", std::to_string(unit.number));
    AddProperty(element, "Reference", unit.reference);
    AddProperty(element, "Not in the plan", unit.whyLeft);
    AddProperty(
        element, "Duration",
        unit.duration.empty() ? "" : unit.duration + (unit.duration == "1" ? " day" : " days"));
    AddProperty(element, "Labor rule", unit.laborRule);
    AddProperty(element, "Objects", Joined(unit.objects));
    AddProperty(element, "Facts", unit.facts);
    AddProperty(element, "Constraints", unit.constraints);
    AddProperty(element, "Elaboration", unit.glossary);
    for (const std::int32_t number : unit.decompositions) {
      const auto place = places_.find(number);
      if (place == places_.end()) continue;
      if (!element.decomposed) element.decomposed = place->second;
      AddProperty(element, "Decomposed by", Scenarios()[place->second].name);
    }
    view_.elements.push_back(std::move(element));
  }

  FileView& view_;
  std::vector<bool> isTaken_;
  std::map<std::int32_t, std::size_t> places_;  // of scenarios by number, the first of each
  std::vector<Open> open_;
};

}  // namespace

void AddModel(FileView& view) { Outline(view).Add(); }

void AddProperty(Element& element, const char* name, const std::string& text) {
  if (!text.empty()) element.properties.push_back({name, text});
}

}  // namespace merivane::workbench
