#include <algorithm>
#include <utility>

#include "difference_words.h"
#include "inspect/model_snapshot.h"
#include "reconcile/plan_content.h"

namespace merivane::inspect {

using namespace reconcile;
using namespace runtime;

namespace {

class SnapshotComparison {
 public:
  SnapshotComparison(const ModelSnapshot& before, const ModelSnapshot& after)
      : before_(before),
        after_(after),
        wasMerged_(std::any_of(before.units.begin(), before.units.end(),
                               [](const auto& unit) { return unit.second.cameBack; })) {}

  std::vector<MergeChange> Run() {
    CompareUnits();
    CompareJunctions();
    CompareLinks();
    CompareResources();
    CompareAssignments();
    return std::move(changes_);
  }

  std::vector<MergeChange> TakenOut() {
    for (const auto& [number, unit] : before_.units) {
      if (after_.units.contains(number)) continue;
      Add(ChangeKind::kRemoved, Unit(number), "The plan no longer has it.");
    }
    for (const auto& [key, assignment] : before_.assignments) {
      if (after_.assignments.contains(key) || !WasInPlan(assignment)) continue;
      AddAssignment(
          ChangeKind::kRemoved, key.first,
          "Of " + Described(Resource(key.second)) + " for " + Described(Unit(key.first)) + ".");
    }
    return std::move(changes_);
  }

 private:
  void Add(ChangeKind kind, ElementName element, std::string sentence,
           std::optional<std::int32_t> row = {}, std::string advice = {}) {
    changes_.push_back({kind, std::move(element), std::move(sentence), std::move(advice), row});
  }

  void AddAssignment(ChangeKind kind, std::int32_t unit, std::string sentence) {
    Add(kind, {"assignment", std::nullopt, ""}, std::move(sentence), RowOf(unit));
    changes_.back().unit = unit;
  }

  std::optional<std::int32_t> RowOf(std::int32_t unit) const {
    const auto known = after_.units.find(unit);
    return known == after_.units.end() ? std::nullopt : known->second.planRow;
  }

  // As the merged model names it, or the earlier one.
  ElementName Unit(std::int32_t number) const {
    for (const ModelSnapshot* model : {&after_, &before_}) {
      const auto unit = model->units.find(number);
      if (unit != model->units.end()) return {"unit", number, unit->second.name};
    }
    const auto other = after_.unitNames.find(number);  // its path was left out of the plan
    return {"unit", number, other == after_.unitNames.end() ? "" : other->second};
  }

  ElementName End(std::int32_t number) const {
    const bool isUnit = after_.units.contains(number) || before_.units.contains(number) ||
                        after_.unitNames.contains(number);
    if (isUnit) return Unit(number);
    const bool isThere = after_.junctions.contains(number) || before_.junctions.contains(number);
    return isThere ? ElementName{"junction", number, ""} : ElementName{"nothing", std::nullopt, ""};
  }

  ElementName Resource(std::int32_t number) const {
    for (const ModelSnapshot* model : {&after_, &before_}) {
      const auto resource = model->resources.find(number);
      if (resource != model->resources.end()) return {"resource", number, resource->second.name};
    }
    return {"resource", number, ""};
  }

  void CompareUnits() {
    for (const auto& [number, unit] : after_.units) {
      const auto old = before_.units.find(number);
      if (old == before_.units.end()) {
        AddUnit(number, unit);
        continue;
      }
      if (!unit.cameBack) {
        if (old->second.sent) {
          Add(ChangeKind::kKept, Unit(number),
              "The plan no longer has it; it lives on in the model.");
        }
        continue;
      }
      CompareUnit(number, old->second, unit);
    }
  }

  void AddUnit(std::int32_t number, const ModelSnapshot::Unit& unit) {
    if (unit.isWritten) {
      Add(ChangeKind::kAdded, Unit(number), "It comes new from the plan.", unit.planRow);
      return;
    }
    const bool linked =
        std::any_of(after_.links.begin(), after_.links.end(), [&](const ModelSnapshot::Link& link) {
          return std::get<1>(link) == number || std::get<2>(link) == number;
        });
    const auto scenario = after_.scenarios.find(unit.scenario);
    const std::string place = scenario == after_.scenarios.end()
                                  ? "its scenario"
                                  : "the scenario '" + scenario->second + "'";
    Add(ChangeKind::kAdded, Unit(number),
        std::string("It comes new from the plan. The merged text holds its process but not the "
                    "unit") +
            (linked ? ", so that its links lead to nothing." : "."),
        unit.planRow,
        "Add the unit to " + place + " in Celvar, or build a new model by overwriting.");
  }

  void CompareUnit(std::int32_t number, const ModelSnapshot::Unit& old,
                   const ModelSnapshot::Unit& unit) {
    if (unit.name != old.name) {
      Add(ChangeKind::kChanged, Unit(number), NameSentence(old.name), unit.planRow);
    }
    if (unit.process != old.process && old.process != 0) {
      Add(ChangeKind::kChanged, Unit(number), ProcessSentence(number, old, unit), unit.planRow);
    }
    if (!IsSameNumber(old.duration, unit.duration)) {
      Add(ChangeKind::kChanged, Unit(number), DaysSentence(old.duration, unit.duration),
          unit.planRow);
    }
    CompareNotes(Unit(number), old.note, unit.note, unit.planRow);
  }

  std::string ProcessSentence(std::int32_t number, const ModelSnapshot::Unit& old,
                              const ModelSnapshot::Unit& unit) const {
    const bool isShared = std::ranges::any_of(after_.units, [&](const auto& other) {
      return other.first != number && other.second.process == unit.process;
    });
    return (isShared ? "It is of process " : "It has a process of its own now, ") +
           std::to_string(unit.process) + " instead of " + std::to_string(old.process) + ".";
  }

  void CompareNotes(const ElementName& element, const std::string& old, const std::string& note,
                    std::optional<std::int32_t> row) {
    if (note == old) return;
    Add(ChangeKind::kChanged, element, NoteSentence(note), row);
  }

  void CompareJunctions() {
    for (const auto& [number, kind] : after_.junctions) {
      const auto old = before_.junctions.find(number);
      const ElementName name{"junction", number, ""};
      if (old == before_.junctions.end()) {
        Add(ChangeKind::kAdded, name, "It is new: " + kind + ".");
      } else if (old->second != kind) {
        Add(ChangeKind::kChanged, name, "It is " + kind + " instead of " + old->second + ".");
      }
    }
    for (const auto& [number, kind] : before_.junctions) {
      if (!after_.junctions.contains(number)) {
        Add(ChangeKind::kRemoved, {"junction", number, ""}, "It joined nothing any more.");
      }
    }
  }

  void CompareLinks() {
    ReportLinks(after_.links, before_.links, ChangeKind::kAdded);
    ReportLinks(before_.links, after_.links, ChangeKind::kRemoved);
  }

  void ReportLinks(const std::multiset<ModelSnapshot::Link>& here,
                   const std::multiset<ModelSnapshot::Link>& there, ChangeKind kind) {
    std::multiset<ModelSnapshot::Link> rest = there;
    for (const ModelSnapshot::Link& link : here) {
      const auto same = rest.find(link);
      if (same != rest.end()) {
        rest.erase(same);
        continue;
      }
      Add(kind, {"link", std::nullopt, ""},
          LinkSentence(End(std::get<1>(link)), End(std::get<2>(link))), RowOf(std::get<2>(link)));
      changes_.back().unit = UnitAt(link);
    }
  }

  bool IsUnit(std::int32_t number) const { return End(number).kind == "unit"; }

  // The unit at the end of a link, at its origin, or else one behind the junction that it leads to.
  std::optional<std::int32_t> UnitAt(const ModelSnapshot::Link& link) const {
    const auto& [scenario, origin, end] = link;
    if (IsUnit(end)) return end;
    if (IsUnit(origin)) return origin;
    for (const ModelSnapshot* model : {&after_, &before_}) {
      const auto from = model->links.lower_bound({scenario, end, 0});
      for (auto next = from; next != model->links.end(); ++next) {
        if (std::get<0>(*next) != scenario || std::get<1>(*next) != end) break;
        if (IsUnit(std::get<2>(*next))) return std::get<2>(*next);
      }
    }
    return std::nullopt;
  }

  void CompareResources() {
    for (const auto& [number, resource] : after_.resources) {
      const auto old = before_.resources.find(number);
      if (old == before_.resources.end()) {
        Add(ChangeKind::kAdded, Resource(number), "It comes new from the plan.", resource.planRow);
        continue;
      }
      if (resource.name != old->second.name) {
        Add(ChangeKind::kChanged, Resource(number), NameSentence(old->second.name),
            resource.planRow);
      }
      if (!IsSameNumber(old->second.quantity, resource.quantity)) {
        Add(ChangeKind::kChanged, Resource(number),
            CountSentence(old->second.quantity, resource.quantity), resource.planRow);
      }
      CompareNotes(Resource(number), old->second.note, resource.note, resource.planRow);
    }
    for (const auto& [number, resource] : before_.resources) {
      if (!after_.resources.contains(number)) {
        Add(ChangeKind::kRemoved, Resource(number), "The plan no longer has it.");
      }
    }
  }

  // Until a first merge the plan has what was sent.
  bool WasInPlan(const ModelSnapshot::Assignment& assignment) const {
    return assignment.cameBack || (assignment.sent && !wasMerged_);
  }

  void CompareAssignments() {
    for (const auto& [key, assignment] : after_.assignments) {
      const auto old = before_.assignments.find(key);
      const bool was = old != before_.assignments.end() && WasInPlan(old->second);
      const std::string what =
          Described(Resource(key.second)) + " for " + Described(Unit(key.first));
      if (assignment.cameBack && !was) {
        AddAssignment(ChangeKind::kAdded, key.first,
                      "Of " + what + ": " + assignment.quantity + ".");
      } else if (!assignment.cameBack && was) {
        AddAssignment(ChangeKind::kRemoved, key.first, "Of " + what + ".");
      } else if (assignment.cameBack && !IsSameNumber(old->second.quantity, assignment.quantity)) {
        AddAssignment(ChangeKind::kChanged, key.first,
                      "Of " + what + ": " + assignment.quantity + " instead of " +
                          old->second.quantity + ".");
      }
    }
  }

  const ModelSnapshot& before_;
  const ModelSnapshot& after_;
  bool wasMerged_;
  std::vector<MergeChange> changes_;
};

}  // namespace

std::vector<MergeChange> ChangesBetween(const ModelSnapshot& before, const ModelSnapshot& after) {
  return SnapshotComparison(before, after).Run();
}

std::vector<MergeChange> TakenOutBetween(const ModelSnapshot& before, const ModelSnapshot& after) {
  return SnapshotComparison(before, after).TakenOut();
}

}  // namespace merivane::inspect
